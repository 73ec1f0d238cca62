#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"
#include "tests/companions/SampleCourse.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the compiler says when it fails; empty when it doesn't.
std::string MessageOf(const CSampleCourse& course) {
    try {
        course.Compile();
    } catch (const Torvane::CRunException& failure) {
        return failure.GetMessage().toStdString();
    }
    return "";
}

} // namespace

TEST(CompilerFailures, SaysWhatIsWrongWithTheCourse) {
    using Harm = std::function<void(const CSampleCourse&)>;
    const auto cut = [](const QString CSampleCourse::*file, qsizetype nBytes) -> Harm {
        return [=](const CSampleCourse& c) { c.Folder.Write(c.*file, c.Folder.Read(c.*file).left(nBytes)); };
    };
    const auto remove = [](const QString CSampleCourse::*file) -> Harm {
        return [=](const CSampleCourse& c) { QFile::remove(c.Folder.Native(c.*file)); };
    };
    const auto damage = [](const char* szStatement) -> Harm {
        return [=](const CSampleCourse& c) { c.Damage(QString::fromLatin1(szStatement)); };
    };
    const std::pair<Harm, std::string> cases[] = {
        {remove(&CSampleCourse::strProject), "找不到课程文件"},
        {cut(&CSampleCourse::strProject, 0), "读取课程文件"},
        {remove(&CSampleCourse::strStore), "找不到课程数据库"},
        {cut(&CSampleCourse::strStore, 5000), "数据库已损坏"},
        {[](const CSampleCourse& c) { c.Folder.Write(c.strStore, QByteArray(9000, 'x')); }, "数据库已损坏"},
        {damage("DROP TABLE Book"), "数据库已损坏"},
        {damage("DELETE FROM Book WHERE Id = 3"), "没有课程的根栏目"},
    };
    for (const auto& [harm, strMessage] : cases) {
        const CSampleCourse course;
        harm(course);
        EXPECT_NE(MessageOf(course).find(strMessage), std::string::npos) << MessageOf(course);
        EXPECT_FALSE(course.Folder.Exists(CSampleCourse::Site(u"index.html"_s))) << strMessage;
    }
    const CSampleCourse course;
    SQLite::Database other(course.Folder.Native(course.strStore).toStdString(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_NE(MessageOf(course).find("正被其他程序使用"), std::string::npos) << MessageOf(course);
}

TEST(CompilerFailures, AFolderThatCanNotBeListedIsNoEmptyCourse) {
    CSampleCourse course;
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"第一讲"_s, u"<p>一</p>"_s);
    course.Compile();
    const auto putAway = [](const CSampleCourse& c) {
        const QString strResources =
            c.Folder.Native(CSampleCourse::Below(u"Data\\Courseware\\NodeResource"_s));
        ASSERT_TRUE(QDir().rename(strResources, strResources + u".away"_s));
    };
    putAway(course);
    EXPECT_THROW(course.Compile(), Torvane::CRunException);
    EXPECT_TRUE(course.Bytes(nPage).contains("<p>一</p>"));

    const CSampleCourse empty;
    putAway(empty);
    EXPECT_EQ(MessageOf(empty), "") << "where no node has content there need be no folder for it";
}

TEST(CompilerFailures, LeavesOutWhatMayNotBeRead) {
    CSampleCourse course;
    const qint32 nClosed = course.AddPage(c_nRootNodeId, u"关"_s, u"<p>closed</p>"_s);
    const qint32 nOpen = course.AddPage(c_nRootNodeId, u"开"_s,
                                        u"<p>open</p><a href=\"../N%1/Content.htm\">x</a>"_s.arg(nClosed));
    course.WriteResource(nOpen, u"res\\a.bin"_s, "a");
    course.Folder.MakeFolder(u"出"_s);
    const QString strOut = course.Folder.Native(u"出"_s);
    ::chmod(course.Folder.Native(CSampleCourse::Resource(u"N%1\\Content.htm"_s.arg(nClosed))).toUtf8(), 0);
    ::chmod(course.Folder.Native(CSampleCourse::Resource(u"N%1\\res\\a.bin"_s.arg(nOpen))).toUtf8(), 0);
    // Root may read everything: as nobody, who must get there and may write the site.
    ::chmod(course.Folder.Native().toUtf8(), 0755);
    ::chmod(strOut.toUtf8(), 0777);
    const bool bRoot = ::geteuid() == 0;
    ASSERT_TRUE(!bRoot || ::seteuid(65534) == 0);
    std::string strNotes;
    try {
        strNotes = CompileSite({course.Folder.Path(course.strProject), ESiteForm::Site, strOut})
                       .Notes.join(u'\n')
                       .toStdString();
    } catch (const Torvane::CRunException& failure) {
        ADD_FAILURE() << failure.GetMessage().toStdString();
    }
    ASSERT_TRUE(!bRoot || ::seteuid(0) == 0);
    EXPECT_NE(strNotes.find("栏目“关”的内容“N%1\\Content.htm”无法打开：没有读取它"_ba.replace(
                  "%1", QByteArray::number(nClosed))),
              std::string::npos)
        << strNotes;
    EXPECT_NE(strNotes.find("有 2 个文件或文件夹没有读取权限"), std::string::npos) << strNotes;
    EXPECT_NE(strNotes.find("res/a.bin"), std::string::npos) << strNotes;
    EXPECT_TRUE(QFile::exists(strOut + u"/课程网站/N%1/Content.htm"_s.arg(nOpen)));
    EXPECT_TRUE(QFile::exists(strOut + u"/课程网站/N%1/index.html"_s.arg(nClosed)))
        << "says that it is missing";
}

TEST(CompilerFailures, ReadsItsArgument) {
    const struct {
        QString strArgument, strPath;
        ESiteForm form;
    } rows[] = {
        {u"/home/li/课程 一/a.vcp"_s, u"Z:\\home\\li\\课程 一\\a.vcp"_s, ESiteForm::Site},
        {u"/home/a|b/a.vcp|H"_s, u"Z:\\home\\a|b\\a.vcp"_s, ESiteForm::Html},
        {u"/home/a|b.vcp"_s, u"Z:\\home\\a|b.vcp"_s, ESiteForm::Site},
        {u"Z:\\home\\li\\a.vcp|S"_s, u"Z:\\home\\li\\a.vcp"_s, ESiteForm::Classroom},
        {u"\\\\server\\li\\a.vcp|H"_s, u"\\\\server\\li\\a.vcp"_s, ESiteForm::Html},
        {u"a:b.vcp"_s, Platform::FromNative(QDir::currentPath()) + u"\\a:b.vcp"_s, ESiteForm::Site},
    };
    for (const auto& row : rows) {
        const CompileRequest request = ReadArgument(row.strArgument);
        EXPECT_EQ(request.ProjectPath, row.strPath);
        EXPECT_EQ(request.Form, row.form);
    }
    for (const QString& strBad : {u"a.vcp|X"_s, u"a.vcp|"_s, u"|H"_s, QString()})
        EXPECT_THROW(ReadArgument(strBad), Torvane::CRunException) << strBad;
}
