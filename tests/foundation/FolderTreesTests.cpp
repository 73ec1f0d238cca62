#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <QDirIterator>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace Torvane::File;

namespace {

// Everything below a folder, links and hidden entries too, sorted; folders end with "/".
QStringList Tree(const CTempFolder& folder, const QString& strBelow) {
    QStringList list;
    const QString strRoot = folder.Native(strBelow);
    QDirIterator it(strRoot, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString strPath = it.next().mid(strRoot.size() + 1);
        list.append(it.fileInfo().isDir() && !it.fileInfo().isSymLink() ? strPath + u'/' : strPath);
    }
    list.sort();
    return list;
}

// Writes down what a walk tells.
class CDiary : public IFileVisitor, public IWalkFilter {
public:
    class CFolders : public IFolderVisitor {
    public:
        CFolders(QStringList& log, QString strMark) : m_log(log), m_strMark(std::move(strMark)) {}
        void Visit(const QString& strPath) override { m_log.append(m_strMark + strPath); }

    private:
        QStringList& m_log;
        QString m_strMark;
    };

    void Visit(const QString& strPath, const FindRecord& record) override {
        Log.append(u"%1 %2 %3"_s.arg(strPath, record.strName).arg(record.nSize));
    }
    bool Cancelled() override { return nEntriesAllowed-- == 0; }
    bool AcceptFile(const QString& strPath) override { return !strPath.endsWith(strRefused); }
    bool AcceptFolder(const QString& strPath) override { return !strPath.endsWith(strRefused); }

    QStringList Log;
    QString strRefused = u"refused"_s;
    int nEntriesAllowed = -1;

    void Walk(const CTempFolder& folder, bool bRecursive, bool bSkipSpecial, bool bFilter) {
        CFolders enter(Log, u">"_s);
        CFolders leave(Log, u"<"_s);
        WalkFolder(folder.Path(u"w"_s), this, &enter, &leave, bRecursive, bFilter ? this : nullptr,
                   bSkipSpecial);
        Log.replaceInStrings(folder.Path(QString()), QString());
    }
};

class FolderTrees : public testing::Test {
protected:
    void MakeWalked() const {
        m_folder.Write(u"w\\b.txt"_s, "12");
        m_folder.Write(u"w\\A.txt"_s, "1");
        m_folder.Write(u"w\\.h"_s, "hid");
        m_folder.Write(u"w\\d\\x"_s, "123");
        m_folder.Write(u"w\\d\\.h\\y"_s, "hid");
        m_folder.Write(u"w\\refused\\z"_s, "z");
    }
    void Link(const QString& strTarget, const QString& strBelow) const {
        QDir().mkpath(QFileInfo(m_folder.Native(strBelow)).path());
        ASSERT_TRUE(QFile::link(strTarget, m_folder.Native(strBelow)));
    }
    QString Path(const QString& str) const { return m_folder.Path(str); }

    CTempFolder m_folder;
};

TEST_F(FolderTrees, AWalkTellsOfEverythingInItsOrder) {
    MakeWalked();
    CDiary all;
    all.Walk(m_folder, true, false, false);
    EXPECT_EQ(all.Log, (QStringList{u">w\\"_s, u"w\\.h .h 3"_s, u"w\\A.txt A.txt 1"_s, u"w\\b.txt b.txt 2"_s,
                                    u">w\\d\\"_s, u"w\\d\\x x 3"_s, u"<w\\d\\"_s, u">w\\refused\\"_s,
                                    u"w\\refused\\z z 1"_s, u"<w\\refused\\"_s, u"<w\\"_s}));
    CDiary filtered;
    filtered.Walk(m_folder, true, true, true);
    EXPECT_EQ(filtered.Log, (QStringList{u">w\\"_s, u"w\\A.txt A.txt 1"_s, u"w\\b.txt b.txt 2"_s,
                                         u">w\\d\\"_s, u"w\\d\\x x 3"_s, u"<w\\d\\"_s, u"<w\\"_s}));
    CDiary flat;
    flat.Walk(m_folder, false, true, false);
    EXPECT_EQ(flat.Log, (QStringList{u">w\\"_s, u"w\\A.txt A.txt 1"_s, u"w\\b.txt b.txt 2"_s, u"<w\\"_s}));
    // Stopped inside "d": nobody leaves any folder.
    CDiary stopped;
    stopped.nEntriesAllowed = 4;
    stopped.Walk(m_folder, true, true, true);
    EXPECT_EQ(stopped.Log,
              (QStringList{u">w\\"_s, u"w\\A.txt A.txt 1"_s, u"w\\b.txt b.txt 2"_s, u">w\\d\\"_s}));
}

TEST_F(FolderTrees, AFolderThatCanNotBeListedIsEnteredAndLeft) {
    CDiary diary;
    diary.Walk(m_folder, true, true, false);
    EXPECT_EQ(diary.Log, (QStringList{u">w\\"_s, u"<w\\"_s}));
}

TEST_F(FolderTrees, ACopyLeavesHiddenEntriesAndSpecialOnesOut) {
    MakeWalked();
    m_folder.Write(u"outside\\secret"_s, "s");
    Link(u"../outside/secret"_s, u"w\\link.txt"_s);
    Link(u"../outside"_s, u"w\\linkdir"_s);
    Link(u"nowhere"_s, u"w\\dangling"_s);
    ASSERT_EQ(::mkfifo(m_folder.Native(u"w\\pipe"_s).toUtf8().constData(), 0600), 0);
    ForceCopyFolder(Path(u"W\\"_s), Path(u"t\\deep\\target"_s), false);
    EXPECT_EQ(Tree(m_folder, u"t\\deep\\target"_s),
              (QStringList{u"A.txt"_s, u"b.txt"_s, u"d/"_s, u"d/x"_s, u"link.txt"_s, u"refused/"_s,
                           u"refused/z"_s}));
    EXPECT_EQ(m_folder.Read(u"t\\deep\\target\\link.txt"_s), "s");
    EXPECT_FALSE(QFileInfo(m_folder.Native(u"t\\deep\\target\\link.txt"_s)).isSymLink());
}

TEST_F(FolderTrees, ACopyOverwritesOnlyWhenToldAndTakesNamesInAnyCase) {
    m_folder.Write(u"s\\Res\\Pic.jpg"_s, "new");
    m_folder.Write(u"s\\z.txt"_s, "z");
    m_folder.Write(u"t\\res\\pic.JPG"_s, "old");
    m_folder.Write(u"t\\kept"_s, "k");
    EXPECT_THROW(ForceCopyFolder(Path(u"s"_s), Path(u"t"_s), false), CFileException);
    EXPECT_EQ(m_folder.Read(u"t\\res\\pic.JPG"_s), "old");
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"t"_s)));
    EXPECT_EQ(Tree(m_folder, u"t"_s), (QStringList{u"kept"_s, u"res/"_s, u"res/pic.JPG"_s, u"z.txt"_s}));
    EXPECT_EQ(m_folder.Read(u"t\\res\\pic.JPG"_s), "new");
    // A missing source makes the empty target.
    EXPECT_TRUE(TryCopyFolder(Path(u"none"_s), Path(u"t2"_s)));
    EXPECT_EQ(GetPathKind(Path(u"t2"_s)), EPathKind::Folder);
    EXPECT_FALSE(TryCopyFolder(Path(u"s"_s), Path(u"t\\kept"_s)));
    EXPECT_EQ(m_folder.Read(u"t\\kept"_s), "k");
}

TEST_F(FolderTrees, ACopyIntoItselfEnds) {
    m_folder.Write(u"s\\a"_s, "1");
    m_folder.Write(u"s\\sub\\b"_s, "2");
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"s\\sub\\copy"_s)));
    EXPECT_EQ(Tree(m_folder, u"s\\sub\\copy"_s), (QStringList{u"a"_s, u"sub/"_s, u"sub/b"_s}));
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"s"_s)));
    EXPECT_EQ(m_folder.Read(u"s\\sub\\b"_s), "2");
}

// The copy would have a path that nobody can name.
TEST_F(FolderTrees, ACopyToAnOverlongPathIsRefusedAndOneFromThereIsWhole) {
    QString strDeep = u"s"_s;
    while (m_folder.Path(strDeep).size() < 300)
        strDeep += u"\\folder"_s;
    m_folder.Write(strDeep + u"\\f"_s, "deep");
    EXPECT_FALSE(TryCopyFolder(Path(u"s"_s), Path(u"other"_s)));
    const QString strHigh = strDeep.left(200);
    EXPECT_EQ(GetFolderSize(Path(u"s"_s)), 4.0);
    EXPECT_TRUE(TryCopyFolder(Path(strHigh.left(strHigh.lastIndexOf(u'\\'))), Path(u"short"_s)));
    EXPECT_EQ(GetFolderSize(Path(u"short"_s)), 4.0);
    EXPECT_TRUE(TryDeleteFolder(Path(u"s"_s)));
    EXPECT_FALSE(m_folder.Exists(u"s"_s));
}

TEST_F(FolderTrees, DeletingRemovesLinksAndNeverWhatTheyLeadTo) {
    m_folder.Write(u"outside\\kept"_s, "k");
    m_folder.Write(u"s\\a\\b"_s, "x");
    m_folder.Write(u"s\\.top"_s, "x");
    Link(u"../outside"_s, u"s\\linkdir"_s);
    Link(u"../../outside/kept"_s, u"s\\a\\link"_s);
    DeleteFolder(Path(u"s"_s), true);
    EXPECT_FALSE(m_folder.Exists(u"s"_s));
    Link(u"outside"_s, u"root"_s);
    DeleteFolder(Path(u"root\\"_s), true);
    EXPECT_FALSE(QFileInfo(m_folder.Native(u"root"_s)).isSymLink());
    Link(u"outside"_s, u"root"_s);
    EXPECT_FALSE(TryClearFolder(Path(u"root\\"_s)));
    EXPECT_EQ(m_folder.Read(u"outside\\kept"_s), "k");
}

TEST_F(FolderTrees, AHiddenEntryDeeperDownKeepsItsFolder) {
    m_folder.Write(u"s\\a\\.hidden"_s, "x");
    m_folder.Write(u"s\\a\\b"_s, "x");
    try {
        DeleteFolder(Path(u"s"_s), true);
        FAIL();
    } catch (const CFileException& e) {
        EXPECT_EQ(e.GetMessage(),
                  QString(u"无法删除目录"_s + m_folder.Native(u"s/a"_s) + u"！(Directory not empty)"_s));
    }
    EXPECT_EQ(Tree(m_folder, u"s"_s), (QStringList{u"a/"_s, u"a/.hidden"_s}));
}

TEST_F(FolderTrees, ClearingKeepsTheRootOnlyWithItsBackslash) {
    m_folder.Write(u"s\\a\\b"_s, "x");
    ClearFolder(Path(u"s\\"_s), true);
    EXPECT_TRUE(m_folder.Exists(u"s"_s));
    EXPECT_TRUE(IsFolderEmpty(Path(u"s"_s)));
    ClearFolder(Path(u"s"_s), true);
    EXPECT_FALSE(m_folder.Exists(u"s"_s));
}

TEST_F(FolderTrees, AFilterSparesWhatItRefuses) {
    m_folder.Write(u"s\\refused"_s, "x");
    m_folder.Write(u"s\\a"_s, "x");
    CDiary diary;
    EXPECT_THROW(DeleteFolder(Path(u"s"_s), true, &diary), CFileException);
    EXPECT_EQ(Tree(m_folder, u"s"_s), QStringList{u"refused"_s});
    diary.nEntriesAllowed = 0;
    DeleteFolder(Path(u"s"_s), true, &diary);
    EXPECT_TRUE(m_folder.Exists(u"s\\refused"_s));
}

// Names that our paths can't hold must not make an operation touch the file that they look like.
TEST_F(FolderTrees, NamesThatAreNoTextAreNeverTouched) {
    m_folder.Write(u"s\\x\uFFFD"_s, "twin");
    m_folder.Write(u"outer"_s, "o");
    const QByteArray root = m_folder.Native(u"s"_s).toUtf8();
    const QByteArray noText = root + "/x\xFF";
    const QByteArray backslash = root + "/..\\outer";
    ASSERT_EQ(::mknod(noText.constData(), S_IFREG | 0600, 0), 0);
    ASSERT_EQ(::mknod(backslash.constData(), S_IFREG | 0600, 0), 0);
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"t"_s)));
    EXPECT_EQ(Tree(m_folder, u"t"_s), QStringList{u"x\uFFFD"_s});
    EXPECT_FALSE(TryDeleteFolder(Path(u"s"_s)));
    EXPECT_EQ(::unlink(noText.constData()), 0);
    EXPECT_EQ(m_folder.Read(u"outer"_s), "o");
}

// An empty or relative-to-nothing path must not become the root of everything.
TEST_F(FolderTrees, NobodyDeletesADrive) {
    for (const QString& str :
         {QString(), u"\\"_s, u"Z:"_s, u"Z:\\"_s, u"C:\\"_s, u"/"_s, Path(u"."_s), Path(u".."_s)}) {
        EXPECT_FALSE(TryDeleteFolder(str)) << str.toStdString();
        EXPECT_FALSE(TryClearFolder(str)) << str.toStdString();
    }
    EXPECT_TRUE(m_folder.Exists(QString()));
    EXPECT_TRUE(TryCopyFolder(QString(), Path(u"t"_s)));
    EXPECT_TRUE(IsFolderEmpty(Path(u"t"_s)));
}

TEST_F(FolderTrees, ASizeSumsWhatACopyWouldTake) {
    MakeWalked();
    Link(u"b.txt"_s, u"w\\link"_s);
    double dSize = 0;
    EXPECT_TRUE(TryGetFolderSize(Path(u"w"_s), dSize));
    EXPECT_EQ(dSize, 2.0 + 1 + 3 + 1 + 2);
    EXPECT_EQ(GetFolderSize(Path(u"none"_s)), 0.0);
    QFile file(m_folder.Native(u"w\\large"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize((qint64{5} << 32) + 1));
    EXPECT_EQ(GetFolderSize(Path(u"w"_s)), 9.0 + 5 * 4294967296.0 + 1);
}

} // namespace
