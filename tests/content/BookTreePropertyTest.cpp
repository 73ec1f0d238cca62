// Whatever a person does in the tree, in whatever order, and whatever refuses: tree, store and folders agree.
#include "course/CustomTitles.h"
#include "foundation/IniFile.h"
#include "tests/content/TreeOnDisk.h"

#include <QAbstractItemModelTester>

#include <random>

namespace {

/// Sequences to run: "300" for those of the seeds 1 to 300, "17-17" for one of them again.
const char c_szSequences[] = "VOREL_SEQUENCES";
constexpr unsigned c_nSequences = 300;
constexpr unsigned c_nLeastSteps = 20;
constexpr unsigned c_nMostSteps = 40;

QStringList s_modelFaults;
void NoteModelFault(QtMsgType, const QMessageLogContext&, const QString& strText) {
    s_modelFaults.append(strText);
}

class CPlay : public CTreeOnDisk {
public:
    CPlay() {
        for (const QString& strFile :
             {u"a.txt"_s, u"p.htm"_s, u"p.files\\x.png"_s, u"节\\a.txt"_s, u"a.png"_s})
            Disk.Folder.Write(u"来\\"_s + strFile, "x");
        Host.OnShow = [this] {
            if (m_bInStep)
                MayLoseCourse();
        };
    }
    /// One sequence from a small course; false when something was wrong.
    bool Run(unsigned nSeed) {
        m_random.seed(nSeed);
        m_trace.clear();
        m_strFault.clear();
        Begin();
        const auto nSteps = c_nLeastSteps + Pick(c_nMostSteps - c_nLeastSteps + 1);
        for (unsigned nStep = 0; nStep < nSteps && m_strFault.isEmpty(); ++nStep) {
            Step();
            Check();
        }
        EXPECT_TRUE(m_strFault.isEmpty()) << m_strFault << "\nagain with " << c_szSequences << '=' << nSeed
                                          << '-' << nSeed << "\nsteps: " << m_trace.join(u" | "_s);
        return m_strFault.isEmpty();
    }

private:
    unsigned Pick(unsigned nBelow) { return static_cast<unsigned>(m_random() % nBelow); }
    bool Chance(unsigned nPercent) { return Pick(100) < nPercent; }
    void Note(const std::string& name) { m_trace.append(QString::fromStdString(name)); }

    QString Title() {
        static const QStringList c_titles{u"第一章"_s,
                                          u"第二章"_s,
                                          QString(40, u'章'),
                                          QString(41, u'章'),
                                          QString(1, QChar(0xD83D)),
                                          QString(1, QChar(0xDE00)) + u'x',
                                          QString()};
        static const QStringList c_strange =
            u"'|a'b|a''b|新建栏目|新建栏目2|<b>&|A|a| 空 |\u3000|\t|一\r\n二|\u202Eאבג|😀|𠀀€|%1%2%n|\uFFFD|\"\\/:*?| |龘\uE5E5é"_s
                .split(u'|');
        const QStringList& titles = Chance(40) ? c_titles : c_strange;
        return Chance(10) ? u"节"_s + QString::number(Pick(30)) : titles[Pick(unsigned(titles.size()))];
    }

    // The person, and the world behind the person's back.

    bool Agrees(const std::string& name, unsigned nPercentOk) {
        Must(Tree.GetCourse() != nullptr, u"a question behind a closed course"_s);
        const bool bOk = Chance(nPercentOk);
        Note(name + (bOk ? "" : " cancelled"));
        MayLoseCourse();
        return bOk;
    }
    BoxAnswer OnBox(const QString& strBox) override {
        Must(strBox[0] != u'#' && (m_bFailing || m_bMayFail || strBox[0] != u'x'),
             u"an unexpected box: "_s + strBox);
        const bool bOk = Agrees(std::string("box ") + strBox[0].toLatin1(), strBox[0] == u'?' ? 80 : 100);
        return bOk ? BoxAnswer::Ok : BoxAnswer::Cancel;
    }
    bool ConfirmDeletion(const QString&) override { return Agrees("dialog confirm deletion", 80); }
    std::optional<qint32> AskOpenType(qint32) override {
        return Agrees("dialog open type", 80) ? std::optional(qint32(Pick(5))) : std::nullopt;
    }
    std::optional<QString> AskTitles(const QString& strPreset) override {
        if (!Agrees("dialog titles", 85))
            return std::nullopt;
        QString strTitles = strPreset;
        for (unsigned n = Pick(5); n > 0; --n)
            strTitles += (Chance(50) ? u"，"_s : u","_s) + Title();
        return strTitles;
    }
    std::optional<CNodeFileParams> AskContent(const ContentPreset&, CBookNode&) override {
        using enum EContentKind;
        if (!Agrees("dialog content", 85))
            return std::nullopt;
        static constexpr std::array c_kinds{EditorPage, ExternalFile, ExternalEditor,
                                            Site,       ExternalLink, Folder};
        CNodeFileParams params;
        params.Kind = c_kinds[Pick(c_kinds.size())];
        params.LinkUrl = u"http://a"_s;
        const QString strPlace = Disk.Folder.Path(u"来"_s);
        params.ExternalFile = strPlace + u"\\a.txt"_s;
        params.SiteFolder = params.ImportFolder = strPlace;
        params.SiteHomePage = strPlace + (Chance(80) ? u"\\p.htm"_s : u"\\fort.htm"_s);
        params.ImportFilter = Chance(50) ? u"*.*"_s : u"*.htm"_s;
        m_bAddsOrDeletes |= params.Kind == Folder;
        m_bMayFail = nPieces < 6 || params.Kind == ExternalEditor || params.Kind == Site;
        Note("content of kind " + std::to_string(static_cast<int>(params.Kind)));
        return params;
    }
    std::optional<QStringList> AskCustomTitles(const QStringList& present, bool) override {
        if (!Agrees("dialog custom titles", 85))
            return std::nullopt;
        QStringList titles = present;
        for (QString& strTitle : titles)
            strTitle = Chance(40) ? Title() : strTitle;
        return titles;
    }

    QByteArray StoreBytes() const { return ReadFileBytes(Disk.pCourse->GetPaths().GetDatabasePath()); }
    /// The course closes behind what the person has before her.
    void MayLoseCourse() {
        if (!Chance(6) || Tree.GetCourse() == nullptr)
            return;
        Note("course closed behind a question or a view");
        CloseCourse();
        Host.Views.clear();
        m_closed = StoreBytes();
    }

    /// Makes the store refuse some changes, or everything.
    void MakeStoreFail() {
        m_bUnreadable = Chance(25);
        if (m_bUnreadable)
            Raw().exec("ALTER TABLE Book RENAME TO Away");
        else if (Chance(30))
            RefuseBeyond(Ids().last());
        else
            RefuseChangesOf(AnyId());
        m_bFailing = true;
        m_bBroken |= m_bUnreadable;
        Note(m_bUnreadable ? "store made unreadable" : "store made to refuse");
    }
    void MendStore() {
        if (m_bFailing)
            Raw().exec(m_bUnreadable ? "ALTER TABLE Away RENAME TO Book"
                                     : "ALTER TABLE Book DROP COLUMN Refused");
        m_bFailing = false;
    }

    qint32 AnyId() {
        const QList<qint32> ids = Ids();
        return ids[Pick(static_cast<unsigned>(ids.size()))];
    }
    /// One in sight; now and then a heading, or none.
    QModelIndex AnyLine() {
        QList<QModelIndex> lines;
        if (Chance(10))
            lines = {{}, Tree.index(0, 0), Tree.index(1, 0)};
        for (const auto& [line, bSeen] : Lines()) {
            if (bSeen)
                lines.append(line);
        }
        return lines[Pick(unsigned(lines.size()))];
    }

    // Steps.

    void Begin() {
        Actions.Close();
        for (const qint32 nId : Ids().sliced(1))
            Torvane::File::TryDeleteFolder(Disk.Folder.Path(Disk.NodePath(nId)).chopped(1));
        Raw().exec("DELETE FROM Book WHERE Id > 3; UPDATE Book SET Type = -1, Path = '' WHERE Id = 3;"
                   "UPDATE sqlite_sequence SET seq = 3");
        for (const CustomTitles::Role& role : CustomTitles::Roles())
            WriteProfileString(u"Id"_s, role.strKey, QString::number(Pick(12)),
                               Disk.pCourse->GetPaths().GetCustomTitlesPath());
        Grow();
        Host.bRefuse = m_bBroken = false;
        Open();
    }
    /// A few nodes to begin with, some with a page.
    void Grow() {
        CBookDatabase::CTransaction transaction(Disk.Store());
        QList<qint32> ids{c_nRootNodeId};
        for (unsigned nLeft = Pick(16); nLeft > 0; --nLeft) {
            const qint32 nParent = ids[Pick(static_cast<unsigned>(ids.size()))];
            const auto pNode =
                CBookNode(*Disk.pCourse, {nParent, {}, {}}).AddChild(u"第%1节"_s.arg(ids.size()));
            if (Chance(25))
                pNode->CreateEditorPage(0);
            ids.append(pNode->GetId());
        }
        transaction.Commit();
    }

    void Step() {
        Host.bRefuse = Chance(8);
        Host.Views.clear();
        nPieces = Chance(15) ? Pick(6) : std::numeric_limits<qint64>::max();
        m_rows = Ids();
        m_bAddsOrDeletes = m_bMayFail = false;
        if (Chance(10))
            MakeStoreFail();
        m_bInStep = true;
        switch (Pick(10)) {
        case 0:
            Note("expand");
            if (const QModelIndex line = AnyLine(); Tree.IdOf(line) >= 0)
                Expand(line);
            break;
        case 1:
            Note("collapse");
            // A line that closes takes the selection from below it.
            if (const QModelIndex line = Actions.GetSelection().currentIndex(); line.isValid())
                Expanded.remove(Tree.IdOf(line));
            break;
        case 2:
            Note("select");
            if (!Actions.GetSelection().Select(AnyLine()))
                Note("not selected");
            break;
        case 3:
            Note("select by id");
            Actions.SelectNode(
                static_cast<qint32>(Chance(95) ? m_rows[Pick(unsigned(m_rows.size()))] : Pick(3)));
            break;
        case 4:
            Drop();
            break;
        default:
            Command();
        }
        m_bInStep = false;
        const bool bClosed = Tree.GetCourse() == nullptr;
        Must(!bClosed || (Host.Views.empty() && StoreBytes() == m_closed),
             u"it went on behind a closed course"_s);
        MendStore();
        if (bClosed || Chance(3)) {
            Note("course reopened");
            m_bBroken = Host.bRefuse = false;
            ReopenCourse();
        }
    }

    void Drop() {
        Note("drop");
        const QModelIndex source = AnyLine(), target = AnyLine();
        m_trace.last() += u" %1 on %2"_s.arg(source.data().toString(), target.data().toString());
        if (!Actions.MayDrop(source, target))
            Note("drop refused");
        Actions.Drop(source, target);
    }

    void Command() {
        using namespace TreeCommand;
        static constexpr std::array c_commands{32772, 32910, 32773, 32909, 32869, 32869, 32870, 32870,
                                               32775, 32775, 32912, 32774, 32911, 32919, 32918, 32814,
                                               32913, 32815, 32816, 32915, 32817, 32817, 32934, 32939};
        const int nCommand = c_commands[Pick(c_commands.size())];
        const EAction action = ActionOf(nCommand);
        m_bAddsOrDeletes = action >= EAction::AddNode && action <= EAction::Delete;
        Note("command " + std::to_string(nCommand));
        m_trace.last() += u" at "_s + Actions.GetSelection().currentIndex().data().toString();
        if (nPieces < 6 && m_bAddsOrDeletes)
            Note("patience of a few pieces");
        Edited = QPersistentModelIndex();
        Actions.Run(nCommand);
        if (const QModelIndex edited = Edited; edited.isValid()) {
            const std::optional<QString> typed = Chance(70) ? std::optional(Title()) : std::nullopt;
            Note(typed ? "title typed" : "title cancelled");
            Actions.FinishRename(edited, typed);
        }
    }

    void Must(bool bHolds, const QString& strFault) {
        if (!bHolds && m_strFault.isEmpty())
            m_strFault = strFault;
    }
    void Check() {
        for (const QString& strFault : {StoreFault(), TreeFault(m_bBroken)})
            Must(strFault.isEmpty(), strFault);
        Must(m_bAddsOrDeletes || Ids() == m_rows, u"a node came or went that nobody added or deleted"_s);
        Must(s_modelFaults.isEmpty(), s_modelFaults.join(u' '));
        s_modelFaults.clear();
    }

    QAbstractItemModelTester m_tester{&Tree, QAbstractItemModelTester::FailureReportingMode::Warning};
    std::mt19937 m_random;
    QStringList m_trace;
    QString m_strFault;
    QList<qint32> m_rows;
    QByteArray m_closed;
    bool m_bInStep = false;
    bool m_bAddsOrDeletes = false;
    bool m_bFailing = false;
    /// Content was asked for that can't be made, or that is given up.
    bool m_bMayFail = false;
    bool m_bUnreadable = false;
    /// A line may have been left unread since the tree was filled.
    bool m_bBroken = false;
};

TEST(BookTreePropertyTest, TreeStoreAndFoldersAgreeAfterEveryStep) {
    const QStringList range = qEnvironmentVariable(c_szSequences, QString::number(c_nSequences)).split(u'-');
    const unsigned nFirst = range.size() > 1 ? range[0].toUInt() : 1;
    const auto noteBefore = qInstallMessageHandler(NoteModelFault);
    {
        CPlay play;
        for (unsigned nSeed = nFirst, nLast = range.last().toUInt(); nSeed <= nLast; ++nSeed) {
            if (!play.Run(nSeed))
                break;
        }
    }
    qInstallMessageHandler(noteBefore);
}

} // namespace
