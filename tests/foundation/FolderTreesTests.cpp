#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "tests/support/Testing.h"

#include <unistd.h>

using namespace Torvane::File;

namespace {

struct CFolderDiary : IFolderVisitor {
    CFolderDiary(QString& strText, QChar cMark) : m_strText(strText), m_cMark(cMark) {}
    void Visit(const QString& strPath) override { m_strText += m_cMark + strPath + u' '; }
    QString& m_strText;
    QChar m_cMark;
};

// Writes down what a walk tells, and refuses whatever ends with "refused".
class CDiary : public IFileVisitor, public IWalkFilter {
public:
    void Visit(const QString& strPath, const FindRecord& record) override {
        m_strText += u"%1=%2:%3 "_s.arg(strPath, record.strName).arg(record.nSize);
    }
    bool Cancelled() override { return nEntriesAllowed-- == 0; }
    bool AcceptFile(const QString& strPath) override { return !strPath.endsWith(u"refused"_s); }
    bool AcceptFolder(const QString& strPath) override { return !strPath.endsWith(u"refused"_s); }

    QString Walk(const CTempFolder& folder, bool bRecursive, bool bSkipSpecial, bool bFilter) {
        CFolderDiary enter(m_strText, u'>'), leave(m_strText, u'<');
        WalkFolder(folder.Path(u"w"_s), this, &enter, &leave, bRecursive, bFilter ? this : nullptr,
                   bSkipSpecial);
        return m_strText.remove(folder.Path(QString())).trimmed();
    }
    int nEntriesAllowed = -1;

private:
    QString m_strText;
};

class FolderTrees : public testing::Test {
protected:
    // Files are named by the blanks between them; what one holds is its own name.
    void Make(const QString& strFiles) const {
        for (const QString& str : strFiles.split(u' '))
            m_folder.Write(str, str.toUtf8());
    }
    QString Path(const QString& str) const { return m_folder.Path(str); }
    CTempFolder m_folder;
};

TEST_F(FolderTrees, AWalkTellsOfEverythingInItsOrder) {
    EXPECT_EQ(CDiary().Walk(m_folder, true, true, false), u">w\\ <w\\"_s) << "what can't be listed";
    Make(u"w\\b w\\A w\\.h w\\d\\x w\\d\\.h\\y w\\refused\\z"_s);
    EXPECT_EQ(CDiary().Walk(m_folder, true, false, false),
              u">w\\ w\\.h=.h:4 w\\A=A:3 w\\b=b:3 >w\\d\\ w\\d\\x=x:5 <w\\d\\ >w\\refused\\ "
              "w\\refused\\z=z:11 <w\\refused\\ <w\\"_s);
    EXPECT_EQ(CDiary().Walk(m_folder, true, true, true),
              u">w\\ w\\A=A:3 w\\b=b:3 >w\\d\\ w\\d\\x=x:5 <w\\d\\ <w\\"_s);
    EXPECT_EQ(CDiary().Walk(m_folder, false, true, false), u">w\\ w\\A=A:3 w\\b=b:3 <w\\"_s);
    // Stopped inside "d": nobody leaves any folder.
    CDiary stopped;
    stopped.nEntriesAllowed = 4;
    EXPECT_EQ(stopped.Walk(m_folder, true, true, true), u">w\\ w\\A=A:3 w\\b=b:3 >w\\d\\"_s);
}

TEST_F(FolderTrees, ACopyAndASizeLeaveHiddenEntriesAndSpecialOnesOut) {
    Make(u"w\\b w\\A w\\.h w\\d\\x w\\d\\.h\\y outside\\secret"_s);
    m_folder.Link(u"../outside/secret"_s, u"w\\link"_s);
    m_folder.Link(u"../outside"_s, u"w\\linkdir"_s);
    m_folder.Link(u"nowhere"_s, u"w\\dangling"_s);
    m_folder.MakePipe(u"w\\pipe"_s);
    QStringList passedOver;
    ForceCopyFolder(Path(u"W\\"_s), Path(u"t\\deep\\target"_s), false, nullptr, &passedOver);
    passedOver.sort();
    EXPECT_EQ(passedOver.join(u' ').remove(m_folder.Native(u"W/"_s)), u"dangling linkdir pipe"_s);
    EXPECT_EQ(m_folder.Tree(u"t\\deep\\target"_s), u"A b d/ d/x link"_s);
    EXPECT_FALSE(QFileInfo(m_folder.Native(u"t\\deep\\target\\link"_s)).isSymLink());
    EXPECT_EQ(GetFolderSize(Path(u"w"_s)), 3.0 + 3 + 5 + 14);
    QFile file(m_folder.Native(u"w\\large"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize((qint64{5} << 32) + 1));
    double dSize = 0;
    EXPECT_TRUE(TryGetFolderSize(Path(u"w"_s), dSize));
    EXPECT_EQ(dSize, 25.0 + 5 * 4294967296.0 + 1);
}

TEST_F(FolderTrees, ACopyOverwritesOnlyWhenToldAndTakesNamesInAnyCase) {
    Make(u"s\\Res\\Pic s\\z t\\res\\pic t\\kept"_s);
    EXPECT_THROW(ForceCopyFolder(Path(u"s"_s), Path(u"t"_s), false), CFileException);
    EXPECT_EQ(m_folder.Read(u"t\\res\\pic"_s), "t\\res\\pic");
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"t"_s)));
    EXPECT_EQ(m_folder.Tree(u"t"_s), u"kept res/ res/pic z"_s);
    EXPECT_EQ(m_folder.Read(u"t\\res\\pic"_s), "s\\Res\\Pic");
    EXPECT_TRUE(TryCopyFolder(Path(u"none"_s), Path(u"t2"_s)));
    EXPECT_TRUE(IsFolder(Path(u"t2"_s))) << "a missing source makes the empty target";
    EXPECT_FALSE(TryCopyFolder(Path(u"s"_s), Path(u"t\\kept"_s)));
    EXPECT_FALSE(TryCopyFolder(Path(u"s\\z"_s), Path(u"t3"_s))) << "a source that can't be listed";
    EXPECT_EQ(m_folder.Read(u"t\\kept"_s), "t\\kept");
    // A copy into itself ends.
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"s\\Res\\copy"_s)));
    EXPECT_EQ(m_folder.Tree(u"s\\Res\\copy"_s), u"Res/ Res/Pic z"_s);
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"s"_s)));
    EXPECT_EQ(m_folder.Read(u"s\\z"_s), "s\\z");
}

// The copy would have a path that nobody can name.
TEST_F(FolderTrees, ACopyToAnOverlongPathIsRefusedAndOneFromThereIsWhole) {
    QString strDeep = u"s"_s;
    while (Path(strDeep).size() < 300)
        strDeep += u"\\folder"_s;
    m_folder.Write(strDeep + u"\\f"_s, "deep");
    EXPECT_FALSE(TryCopyFolder(Path(u"s"_s), Path(u"other"_s)));
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s + u"\\folder"_s.repeated(25)), Path(u"short"_s)));
    EXPECT_EQ(GetFolderSize(Path(u"short"_s)), 4.0);
    EXPECT_TRUE(TryDeleteFolder(Path(u"s"_s)));
    EXPECT_FALSE(m_folder.Exists(u"s"_s));
}

TEST_F(FolderTrees, DeletingRemovesLinksAndNeverWhatTheyLeadTo) {
    Make(u"outside\\kept s\\a\\b s\\.top"_s);
    m_folder.Link(u"../outside"_s, u"s\\linkdir"_s);
    m_folder.Link(u"../../outside/kept"_s, u"s\\a\\link"_s);
    DeleteFolder(Path(u"s"_s), true);
    EXPECT_FALSE(m_folder.Exists(u"s"_s));
    m_folder.Link(u"outside"_s, u"root"_s);
    EXPECT_FALSE(TryClearFolder(Path(u"root\\"_s)));
    DeleteFolder(Path(u"root\\"_s), true);
    EXPECT_EQ(m_folder.Tree(), u"outside/ outside/kept"_s);
}

TEST_F(FolderTrees, DeletingKeepsWhatItMayNotSee) {
    Make(u"s\\a\\.hidden s\\a\\b f\\refused f\\a c\\a\\b"_s);
    EXPECT_FALSE(TryDeleteFolder(Path(u"s"_s))) << "a hidden entry deeper down keeps its folder";
    EXPECT_EQ(m_folder.Tree(u"s"_s), u"a/ a/.hidden"_s);
    CDiary diary;
    EXPECT_THROW(DeleteFolder(Path(u"f"_s), true, &diary), CFileException);
    EXPECT_EQ(m_folder.Tree(u"f"_s), u"refused"_s);
    diary.nEntriesAllowed = 0;
    DeleteFolder(Path(u"f"_s), true, &diary);
    EXPECT_EQ(m_folder.Tree(u"f"_s), u"refused"_s);
    ClearFolder(Path(u"c\\"_s), true);
    EXPECT_TRUE(m_folder.Exists(u"c"_s) && IsFolderEmpty(Path(u"c"_s)));
    ClearFolder(Path(u"c"_s), true);
    EXPECT_FALSE(m_folder.Exists(u"c"_s)) << "kept only with its backslash";
}

// Names that our paths can't hold must not make an operation touch the file that they look like.
TEST_F(FolderTrees, NamesThatAreNoTextAreNeverTouched) {
    Make(u"s\\x\uFFFD outer"_s);
    const QByteArray root = m_folder.Native(u"s"_s).toUtf8();
    const QByteArray noText = root + "/x\xFF";
    ASSERT_EQ(::mknod(noText.constData(), S_IFREG | 0600, 0), 0);
    ASSERT_EQ(::mknod(QByteArray(root + "/..\\outer").constData(), S_IFREG | 0600, 0), 0);
    EXPECT_TRUE(TryCopyFolder(Path(u"s"_s), Path(u"t"_s)));
    EXPECT_EQ(m_folder.Tree(u"t"_s), u"x\uFFFD"_s);
    EXPECT_FALSE(TryDeleteFolder(Path(u"s"_s)));
    EXPECT_EQ(::unlink(noText.constData()), 0) << "still there";
    EXPECT_TRUE(m_folder.Exists(u"outer"_s));
}

// An empty or relative-to-nothing path must not become the root of everything.
TEST_F(FolderTrees, NobodyDeletesADrive) {
    for (const QString& str :
         {QString(), u"\\"_s, u"Z:"_s, u"Z:\\"_s, u"C:\\"_s, u"/"_s, Path(u"."_s), Path(u".."_s)})
        EXPECT_FALSE(TryDeleteFolder(str) || TryClearFolder(str)) << str;
    EXPECT_TRUE(TryCopyFolder(QString(), Path(u"t"_s)));
    EXPECT_TRUE(IsFolderEmpty(Path(u"t"_s)));
}

} // namespace
