#pragma once

#include "content/BookTreeActions.h"
#include "content/Texts.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/content_ui/RecordingHost.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <limits>

/// The tree of a real course with its commands. The test plays the window in front of it and the person, who
/// agrees with everything unless a test says otherwise; it can compare the tree with the store and the
/// folders.
class CTreeOnDisk : public ITreeWindow, public ITreeDialogs, public CScriptedPeople {
public:
    /// What the content wizard was opened with, and its answers.
    std::vector<ContentPreset> Presets;
    std::deque<std::optional<CNodeFileParams>> Contents;

    CCourseOnDisk Disk{{}, CTempFolder::InMemory()};
    CRecordingHost Host;
    CBookTree Tree;
    CBookTreeActions Actions{Tree, *this, *this, Host, *this};
    QPersistentModelIndex Edited;
    QSet<qint32> Expanded;
    /// A long step shows its window, and is given up, after so many pieces.
    qint64 nPieces = std::numeric_limits<qint64>::max();

    void Open() {
        Expanded.clear();
        Actions.Open(*Disk.pCourse);
    }
    /// The tree and the course, as when the server's session is lost.
    void CloseCourse() {
        Actions.Close();
        m_pRaw.reset();
        Disk.pCourse->Close();
    }
    void ReopenCourse() {
        CloseCourse();
        ASSERT_TRUE(Disk.pCourse->Open());
        Open();
    }
    /// The open store, behind its back.
    SQLite::Database& Raw() {
        if (!m_pRaw)
            m_pRaw = std::make_unique<SQLite::Database>(
                Platform::ToNativeExact(Disk.pCourse->GetPaths().GetDatabasePath()).toStdString(),
                SQLite::OPEN_READWRITE);
        return *m_pRaw;
    }
    /// The store refuses to change a row, or to take one beyond an id. (It runs no triggers.)
    void RefuseChangesOf(qint32 nId) {
        Refuse("Id <> " + std::to_string(nId) + " OR coalesce(ParentId, [Index], Title, Type) IS NULL");
    }
    void RefuseBeyond(qint32 nId) { Refuse("Id <= " + std::to_string(nId)); }

    /// All lines but the headings, and whether each can be seen; parents before their children.
    QList<std::pair<QModelIndex, bool>> Lines() const {
        QList<std::pair<QModelIndex, bool>> lines{{Tree.GetRoot(), true}};
        for (qsizetype n = 0; n < lines.size(); ++n) {
            const auto [line, bSeen] = lines[n];
            for (int nRow = 0; nRow < Tree.rowCount(line); ++nRow)
                lines.append({Tree.index(nRow, 0, line), bSeen && IsOpen(line)});
        }
        return lines;
    }
    bool IsOpen(const QModelIndex& line) const { return Expanded.contains(Tree.IdOf(line)); }

    /// The rows from the root on.
    QList<qint32> Ids() {
        SQLite::Statement rows(Raw(), "SELECT Id FROM Book WHERE Id >= 3 ORDER BY Id");
        QList<qint32> ids;
        while (rows.executeStep())
            ids.append(rows.getColumn(0).getInt());
        return ids;
    }
    /// What is wrong with the table or the folders by themselves; empty for nothing.
    QString StoreFault() {
        SQLite::Statement misplaced(
            Raw(), "WITH RECURSIVE Reached(Id) AS "
                   "(VALUES (3) UNION SELECT Book.Id FROM Book JOIN Reached ON ParentId = Reached.Id) "
                   "SELECT Id FROM (SELECT Id, [Index] AS Place, row_number() OVER "
                   "(PARTITION BY ParentId ORDER BY [Index], Id) AS Due FROM Book WHERE Id > 3) "
                   "WHERE Place <> Due OR Id NOT IN Reached");
        if (misplaced.executeStep())
            return u"%1 hangs nowhere, or beside its place"_s.arg(misplaced.getColumn(0).getInt());
        const QStringList found = QDir(Disk.Folder.Native(Disk.NodePath(0).section(u'\\', 0, -3)))
                                      .entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        QSet<QString> folders(found.begin(), found.end());
        folders.remove(u"N3"_s);
        for (const qint32 nId : Ids().sliced(1)) {
            if (!folders.remove(u"N%1"_s.arg(nId)))
                return u"no folder of %1"_s.arg(nId);
        }
        return folders.isEmpty() ? QString() : *folders.constBegin() + u" has no row"_s;
    }

    /// Where the tree differs from the store; empty for nowhere. With bBroken a line need not have been read,
    /// and what the store names in two places or in a circle need not be shown.
    QString TreeFault(bool bBroken = false) {
        const auto lines = Lines();
        for (const auto& [line, bSeen] : lines) {
            QList<NodeHeader> children;
            Disk.Store().GetChildren(Tree.IdOf(line), children);
            if (bBroken) {
                QSet<qint32> seen;
                erase_if(children, [&](const NodeHeader& child) {
                    const bool bAgain = seen.contains(child.Id);
                    seen.insert(child.Id);
                    return bAgain || Tree.Find(child.Id).parent() != line;
                });
            }
            const int nRows = Tree.rowCount(line);
            if (nRows != children.size() && (nRows != 0 || bSeen || bBroken))
                return At(line) + u"%1 lines for %2 rows"_s.arg(nRows).arg(children.size());
            QSet<QString> titles;
            for (int nRow = 0; nRow < nRows; ++nRow) {
                const QModelIndex child = Tree.index(nRow, 0, line);
                const CBookNode& node = *Tree.NodeOf(child);
                const NodeHeader& row = children[nRow];
                if (node.GetId() != row.Id || node.GetType() != row.Type || Tree.Find(row.Id) != child ||
                    child.parent() != line)
                    return At(child) + u"another row %1"_s.arg(row.Id);
                // As the store gives a title back: a quote is doubled, half a pair is no character.
                QString strTitle = CodePage::Decode(CodePage::Encode(node.GetTitle()));
                if (row.Title != strTitle && row.Title != strTitle.replace(u'\'', QLatin1String("''")))
                    return At(child) + row.Title;
                if (!bBroken && !row.Title.contains(u'\'') && !row.Title.contains(QChar(0xFFFD)) &&
                    titles.contains(row.Title))
                    return At(child) + u"a sibling of one title"_s;
                titles.insert(row.Title);
            }
        }
        const QModelIndex selected = Actions.GetSelection().currentIndex();
        const QModelIndexList marked = Actions.GetSelection().selectedIndexes();
        const bool bLive = lines.contains(std::pair(selected, true)) && marked == QModelIndexList{selected};
        return bLive ? QString() : u"the selection is no line in sight"_s;
    }

    /// A box: the sign of its form (? i ! x, ¿ where Enter cancels) before its text. One that has no known
    /// form begins with "#".
    virtual BoxAnswer OnBox(const QString& strBox) {
        EXPECT_NE(strBox[0], u'#') << strBox;
        return BoxAnswer::Ok;
    }
    bool ConfirmDeletion(const QString&) override { return true; }
    std::optional<QString> AskTitles(const QString&) override { return std::nullopt; }
    std::optional<qint32> AskOpenType(qint32) override { return std::nullopt; }
    std::optional<QStringList> AskCustomTitles(const QStringList&, bool) override { return std::nullopt; }

    void Expand(const QModelIndex& index) override {
        if (Tree.rowCount(index) == 0 || IsOpen(index))
            return;
        Expanded.insert(Tree.IdOf(index));
        Actions.LoadAhead(index);
    }
    std::optional<CNodeFileParams> AskContent(const ContentPreset& preset, CBookNode&) override {
        Presets.push_back(preset);
        return NextAnswer(Contents);
    }
    void EditTitle(const QModelIndex& index) override { Edited = index; }
    BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                  BoxDefault byEnter) override {
        const bool bCancel = buttons == BoxButtons::OkCancel;
        QChar sign = u'#';
        if (strTitle == u"提示" && bCancel == (icon == BoxIcon::Question))
            sign = bCancel                        ? (byEnter == BoxDefault::First ? u'?' : u'¿')
                   : icon == BoxIcon::Information ? u'i'
                   : icon == BoxIcon::Warning     ? u'!'
                                                  : sign;
        else if (strTitle == u"警告" && !bCancel && icon == BoxIcon::Warning)
            sign = u'!';
        else if (strTitle == u"错误" && !bCancel && icon == BoxIcon::Stop)
            sign = u'x';
        return OnBox(sign + strText);
    }
    qint64 GetPatience() override {
        if (nPieces-- > 0)
            return std::numeric_limits<qint64>::max();
        GiveUps = {true};
        return 0;
    }

private:
    void Refuse(const std::string& check) {
        // Else the row that is there could not stay.
        Raw().exec("PRAGMA ignore_check_constraints = ON;"
                   "ALTER TABLE Book ADD COLUMN Refused INTEGER DEFAULT 0 CHECK (" +
                   check + ")");
    }
    QString At(const QModelIndex& line) const { return u"node %1: "_s.arg(Tree.IdOf(line)); }
    std::unique_ptr<SQLite::Database> m_pRaw;
};

/// Agrees to every box, and notes it.
class CNotingTree : public CTreeOnDisk {
public:
    QStringList Noted;
    BoxAnswer OnBox(const QString& strBox) override {
        Noted.append(strBox);
        return BoxAnswer::Ok;
    }
};
