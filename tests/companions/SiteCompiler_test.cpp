#include "companions/compiler/SiteCompiler.h"

#include "foundation/CodePage.h"
#include "tests/companions/SampleCourse.h"
#include "tests/companions/SiteCheck.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

CompileReport Compile(const CSampleCourse& course) {
    return CompileSite({course.ProjectPath(), ESiteForm::Site});
}

std::string Joined(const QStringList& list) {
    return list.join(u'\n').toStdString();
}

/// Every file of a folder with its content and time, to see that nothing changed.
QByteArray Fingerprint(const QString& strFolder) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QStringList files;
    QDirIterator walk(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(walk.next());
    files.sort();
    for (const QString& strFile : files) {
        QFile file(strFile);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        hash.addData((strFile + QFileInfo(file).lastModified().toString(Qt::ISODateWithMs)).toUtf8());
        hash.addData(file.readAll());
    }
    return hash.result();
}

} // namespace

// One course with every kind of content, written as the editor writes it: links in lower case, in the code
// page.
TEST(SiteCompiler, CompilesEveryKindOfNode) {
    CSampleCourse course;
    course.WriteResource(u"skin\\page.css"_s, "p{}");
    const qint32 nFolder = course.Add(c_nRootNodeId, u"第一章"_s);
    const qint32 nPage =
        course.AddPage(nFolder, u"<b>标题</b> & \"引号\""_s,
                       u"<link rel=\"stylesheet\" href=\"../skin/page.css\"><h2 id=\"a\">正文😀</h2>"
                       "<p>输入的文字<IMG src='res/pic.gif'><a href=\"#a\">上</a></p>"_s);
    course.WriteResource(u"N%1\\res\\Pic.GIF"_s.arg(nPage), "GIF89a");
    const qint32 nLinking = course.AddPage(
        nFolder, u"有链接"_s,
        u"<a id=\"innerlink\" href=\"../n%1/content.htm#a\">站内</a></div></main></body><b>未闭合"_s.arg(
            nPage));
    const qint32 nWord = course.Add(nFolder, u"文档"_s, NodeType::c_nExternalFile, u"讲义 1.doc"_s);
    course.WriteResource(u"N%1\\讲义 1.doc"_s.arg(nWord), QByteArray(2048, 'x'));
    course.SetContent(nWord, {NodeType::c_nExternalFile, u"N%1\\讲义 1.doc"_s.arg(nWord), 0, u"原讲义.doc"_s,
                              u"请先看<第一页>"_s});
    const qint32 nSite = course.Add(c_nRootNodeId, u"导入站点"_s, NodeType::c_nSite, u"Site\\Index.htm"_s);
    course.WriteResource(
        u"N%1\\Site\\Index.htm"_s.arg(nSite),
        CodePage::Encode(u"<HTML><a href=NEXT.HTM>下一页</a><a href='next.htm'>同</a></HTML>"));
    course.WriteResource(u"N%1\\Site\\style.css"_s.arg(nSite), "/* \xff\xff */ p{background:url(NEXT.htm)}");
    course.WriteResource(u"N%1\\Site\\next.htm"_s.arg(nSite), "<p id=x>next</p>");
    course.Add(c_nRootNodeId, u"外部"_s, NodeType::c_nExternalLink, u"http://www.example.edu.cn/?a=1&b=2"_s);
    const qint32 nToPage =
        course.Add(c_nRootNodeId, u"站内"_s, NodeType::c_nInSiteLink, u"\\n%1\\content.htm#a"_s.arg(nPage));
    course.Add(c_nRootNodeId, u"站内二"_s, NodeType::c_nInSiteLink, u"\\n%1\\site\\next.htm#x"_s.arg(nSite));
    const qint32 nVideo = course.Add(c_nRootNodeId, u"录像"_s, NodeType::c_nVideo, u"200711131620"_s);
    course.WriteResource(u"N%1\\200711131620\\ppt.htm"_s.arg(nVideo), "<p>slides</p>");
    course.WriteResource(u"N%1\\200711131620\\lecture.asf"_s.arg(nVideo), "asf");
    course.Add(c_nRootNodeId, u"空"_s);
    const QByteArray before = Fingerprint(course.Folder().Native(CSampleCourse::Below(u"Data"_s)));

    const CompileReport report = Compile(course);

    EXPECT_TRUE(report.Notes.isEmpty()) << Joined(report.Notes);
    EXPECT_EQ(report.OutputFolder, QFileInfo(course.SiteNative()).canonicalFilePath());
    const QStringList dead = DeadLinks(course.SiteNative());
    EXPECT_TRUE(dead.isEmpty()) << Joined(dead);
    const QStringList broken = BrokenFrames(course.SiteNative());
    EXPECT_TRUE(broken.isEmpty()) << Joined(broken);
    EXPECT_EQ(Fingerprint(course.Folder().Native(CSampleCourse::Below(u"Data"_s))), before)
        << "compiling changed the course";

    const QString strPage = course.Text(u"N%1\\Content.htm"_s.arg(nPage));
    EXPECT_TRUE(strPage.contains(u"<h2 id=\"a\">正文😀</h2>"_s)) << "typed text stays as it was typed";
    EXPECT_TRUE(strPage.contains(u"<IMG src=\"res/Pic.GIF\">"_s));
    EXPECT_TRUE(
        strPage.contains(u"<h1 class=\"node-title\">&lt;b&gt;标题&lt;/b&gt; &amp; &quot;引号&quot;</h1>"_s));
    EXPECT_EQ(strPage.count(u"page.css"_s), 1);
    EXPECT_LT(strPage.indexOf(u"page.css"_s), strPage.indexOf(u"</head>"_s));
    EXPECT_TRUE(strPage.contains(u"aria-current=\"page\""_s));
    EXPECT_TRUE(strPage.contains(u"<html lang=\"zh-CN\">"_s));
    EXPECT_TRUE(course.Text(u"N%1\\Content.htm"_s.arg(nLinking))
                    .contains(u"<a id=\"innerlink\" href=\"../N%1/Content.htm#a\">"_s.arg(nPage)));

    const QString strList = course.Text(u"N%1\\index.html"_s.arg(nFolder));
    EXPECT_TRUE(strList.contains(u"<ul class=\"children\">"_s));
    EXPECT_TRUE(strList.contains(u"<span class=\"title\">文档</span><span class=\"kind\">文件</span>"_s));
    const QString strCard = course.Text(u"N%1\\index.html"_s.arg(nWord));
    EXPECT_TRUE(strCard.contains(u"download=\"原讲义.doc\""_s) && strCard.contains(u"2.0 kB"_s) &&
                strCard.contains(u"请先看&lt;第一页&gt;"_s))
        << strCard.toStdString();
    EXPECT_EQ(course.Folder().Read(CSampleCourse::Site(u"N%1\\Site\\Index.htm"_s.arg(nSite))),
              CodePage::Encode(u"<HTML><a href=\"next.htm\">下一页</a><a href='next.htm'>同</a></HTML>"))
        << "an imported page keeps its bytes but for letter case";
    EXPECT_TRUE(
        course.Text(u"index.html"_s).contains(u"<a href=\"N%1/Content.htm#a\">站内</a>"_s.arg(nPage)));
    EXPECT_EQ(course.Folder().Read(CSampleCourse::Site(u"N%1\\Site\\style.css"_s.arg(nSite))),
              "/* \xff\xff */ p{background:url(\"next.htm\")}")
        << "a sheet of no known coding keeps its bytes too";
    EXPECT_FALSE(course.Folder().Exists(CSampleCourse::Site(u"N%1"_s.arg(nToPage))));
    EXPECT_TRUE(course.Text(u"N%1\\index.html"_s.arg(nVideo)).contains(u"lecture.asf"_s));
    EXPECT_TRUE(course.Text(u"index.html"_s).contains(u"<h1>&lt;高等&gt;数学</h1>"_s));
}

// Content of a node with children switches the automatic list off.
TEST(SiteCompiler, ListsChildrenOnlyForNodesWithoutContent) {
    CSampleCourse course;
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"有内容"_s, u"<p>x</p>"_s);
    course.Add(nPage, u"下级"_s);
    Compile(course);
    const QString strPage = course.Text(u"N%1\\Content.htm"_s.arg(nPage));
    EXPECT_FALSE(strPage.contains(u"class=\"children\""_s));
    EXPECT_TRUE(
        strPage.contains(u"<details open><summary><a href=\"Content.htm\" aria-current=\"page\">有内容"_s));
    EXPECT_TRUE(strPage.contains(u">下级</a>"_s)) << "the tree still leads there";
}

TEST(SiteCompiler, KeepsOpenTypes) {
    for (int nOpen = 0; nOpen <= 4; ++nOpen) {
        CSampleCourse course;
        const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, u"<p>x</p>"_s, nOpen);
        const qint32 nSite = course.Add(c_nRootNodeId, u"站"_s, NodeType::c_nSite, u"s\\a.htm"_s, nOpen);
        course.WriteResource(u"N%1\\s\\a.htm"_s.arg(nSite), "<p>a</p>");
        course.Add(c_nRootNodeId, u"外"_s, NodeType::c_nExternalLink, u"http://example.com/"_s, nOpen);
        Compile(course);
        const bool bWindow = nOpen >= 1 && nOpen <= 3;
        const QString strWindow =
            bWindow ? u" target=\"_blank\" rel=\"noopener\" data-open=\"%1\""_s.arg(nOpen) : QString();
        const QString strStart = course.Text(u"index.html"_s);
        const QString strPageLink = u"<a href=\"N%1/Content.htm\""_s.arg(nPage) + strWindow + u'>';
        const QString strSiteLink =
            (bWindow ? u"<a href=\"N%1/s/a.htm\""_s : u"<a href=\"N%1/index.html\""_s).arg(nSite) +
            strWindow + u'>';
        EXPECT_EQ(strStart.count(strPageLink), 2) << nOpen << " in the tree and in the list";
        EXPECT_EQ(strStart.count(strSiteLink), 2) << nOpen;
        EXPECT_EQ(strStart.contains(u"<a href=\"http://example.com/\""_s + strWindow + u'>'), bWindow)
            << nOpen;
        EXPECT_EQ(course.Text(u"N%1\\Content.htm"_s.arg(nPage)).contains(u"class=\"site-nav\""_s), !bWindow)
            << nOpen << " content in a window of its own stands without the tree";
        EXPECT_TRUE(DeadLinks(course.SiteNative()).isEmpty()) << nOpen;
    }
}

TEST(SiteCompiler, CompilesWhatABrokenStoreStillHolds) {
    CSampleCourse course;
    const qint32 nA = course.Add(c_nRootNodeId, u"甲"_s);
    const qint32 nB = course.Add(nA, u"乙"_s);
    const qint32 nC = course.Add(nB, u"丙"_s);
    const qint32 nGone = course.AddPage(c_nRootNodeId, u"丢失"_s, u"x"_s);
    const qint32 nSelf = course.Add(c_nRootNodeId, u"自己"_s);
    course.Add(c_nRootNodeId, u"越界"_s, NodeType::c_nSite, u"..\\..\\..\\DataBase\\VorelCourse.mdb"_s);
    course.Add(c_nRootNodeId, u"脚本"_s, NodeType::c_nExternalLink, u"javascript:alert(1)//://"_s);
    course.Add(c_nRootNodeId, u"无处"_s, NodeType::c_nInSiteLink, u"\\n999\\content.htm"_s);
    QFile::remove(course.Folder().Native(
        CSampleCourse::Below(u"Data\\Courseware\\NodeResource\\N%1\\Content.htm"_s.arg(nGone))));
    course.Damage(qPrintable(u"UPDATE Book SET ParentId = %1 WHERE Id = %1"_s.arg(nSelf)));
    course.Damage(
        "INSERT INTO Book (Id, ParentId, [Index]) VALUES (900, 901, 1), (901, 900, 1), (902, 12345, 1)");
    course.Damage(qPrintable(u"UPDATE Book SET ParentId = 3 WHERE Id = %1"_s.arg(nC)));

    const CompileReport report = Compile(course);

    EXPECT_EQ(report.Notes.size(), 5) << Joined(report.Notes);
    EXPECT_TRUE(report.Notes.join(u'\n').contains(u"有 4 个栏目不在课程树上"_s));
    const QStringList dead = DeadLinks(course.SiteNative());
    EXPECT_TRUE(dead.isEmpty()) << Joined(dead);
    EXPECT_FALSE(course.Text(u"index.html"_s).contains(u"javascript:"_s));
    EXPECT_FALSE(course.Text(u"index.html"_s).contains(u"VorelCourse.mdb"_s));
    EXPECT_TRUE(course.Folder().Exists(CSampleCourse::Site(u"N%1\\index.html"_s.arg(nC))));
}

// A large course shows a page's own branch, so that the site doesn't grow with the square of the course; a
// chain of any length ends.
TEST(SiteCompiler, LargeAndDeepCourses) {
    CSampleCourse course;
    course.Damage(
        "WITH RECURSIVE n(i) AS (VALUES(10) UNION ALL SELECT i + 1 FROM n WHERE i < 2009) "
        "INSERT INTO Book (Id, ParentId, [Index]) SELECT i, CASE WHEN i < 1010 THEN 3 ELSE i - 1 END, i "
        "FROM n");
    Compile(course);
    EXPECT_LT(course.Text(u"N500\\index.html"_s).size(), 40000);
    EXPECT_LT(course.Text(u"N2009\\index.html"_s).size(), 40000);
    EXPECT_TRUE(course.Text(u"N500\\index.html"_s).contains(u"href=\"../N501/index.html\""_s));
    EXPECT_EQ(course.Text(u"index.html"_s).count(u"class=\"kind\""_s), 1000) << "every node can be reached";
}

// Two names that differ in letter case alone would be one file on many servers.
TEST(SiteCompiler, TellsNamesApartThatDifferInLetterCase) {
    CSampleCourse course;
    const qint32 nPage =
        course.AddPage(c_nRootNodeId, u"页"_s, u"<img src=res/A.gif><img src=\"res/a.gif\">"_s);
    course.WriteResource(u"N%1\\res\\A.gif"_s.arg(nPage), "upper");
    course.WriteResource(u"N%1\\res\\a.gif"_s.arg(nPage), "lower");
    Compile(course);
    EXPECT_TRUE(course.Text(u"N%1\\Content.htm"_s.arg(nPage))
                    .contains(u"<img src=res/A.gif><img src=\"res/a~2.gif\">"_s));
    EXPECT_EQ(course.Text(u"N%1\\res\\a~2.gif"_s.arg(nPage)), u"lower"_s);
}

// A page that can't stand within the frame is shown in a frame of its own; nothing of it is lost.
TEST(SiteCompiler, EmbedsAPageThatCanNotBeTakenApart) {
    CSampleCourse course;
    const QString strHtml = u"<div>"_s.repeated(5000) + u"深"_s;
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, strHtml);
    EXPECT_EQ(Compile(course).Notes.size(), 1);
    EXPECT_TRUE(course.Text(u"N%1\\Content.htm"_s.arg(nPage)).contains(u"src=\"raw-Content.htm\""_s));
    EXPECT_EQ(course.Folder().Read(CSampleCourse::Site(u"N%1\\raw-Content.htm"_s.arg(nPage))),
              CodePage::Encode(strHtml));
    Compile(course);
    EXPECT_FALSE(course.Folder().Exists(CSampleCourse::Site(u"N%1\\raw-Content.htm.bak"_s.arg(nPage))));
}

TEST(SiteCompiler, UsesTheSkinOfTheTemplate) {
    CSampleCourse course;
    course.WriteResource(u"Skin\\site.css"_s, "body{}");
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, u"x"_s);
    Compile(course);
    EXPECT_TRUE(course.Text(u"N%1\\Content.htm"_s.arg(nPage)).contains(u"href=\"../Skin/site.css\""_s));
    EXPECT_FALSE(course.Folder().Exists(CSampleCourse::Site(u"vorel\\site.css"_s)));
}

TEST(SiteCompiler, CompilesIntoTheLastFolderUnlessItIsGone) {
    CSampleCourse course;
    course.AddPage(c_nRootNodeId, u"页"_s, u"x"_s);
    QByteArray project = course.Folder().Read(CSampleCourse::Below(u"课程.vcp"_s));
    const auto setLastDir = [&](const QString& strFolder) {
        course.Folder().Write(CSampleCourse::Below(u"课程.vcp"_s),
                              project + "[Compile]\r\nLastDir=" + CodePage::Encode(strFolder) + "\r\n");
    };
    setLastDir(course.Folder().Path(u"别处"_s));
    EXPECT_TRUE(Compile(course).OutputFolder.endsWith(u"/别处"_s));
    EXPECT_TRUE(course.Folder().Exists(u"别处\\index.html"_s));
    EXPECT_FALSE(course.Folder().Exists(CSampleCourse::Site(u"index.html"_s)));

    setLastDir(u"Q:\\旧机器\\站点"_s);
    const CompileReport report = Compile(course);
    EXPECT_EQ(report.OutputFolder, QFileInfo(course.SiteNative()).canonicalFilePath());
    EXPECT_EQ(report.Notes.size(), 1) << "the teacher is told";
}

// Run as the application runs it: one argument, and an exit code that a script can use.
TEST(VorelCompiler, RunsWithTheApplicationsCommandLine) {
    CSampleCourse course;
    course.AddPage(c_nRootNodeId, u"页"_s, u"x"_s);
    const QString strProject = course.Folder().Native(CSampleCourse::Below(u"课程.vcp"_s));
    const struct {
        QString strArgument;
        int nExit;
    } rows[] = {
        {strProject, 0},           {strProject + u"|H"_s, 0},    {course.ProjectPath() + u"|S"_s, 0},
        {strProject + u"|Q"_s, 1}, {strProject + u".gone"_s, 1},
    };
    for (const auto& row : rows) {
        QDir(course.SiteNative()).removeRecursively();
        QProcess process;
        process.start(QString::fromUtf8(VOREL_COMPILER), {row.strArgument});
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), row.nExit) << row.strArgument.toStdString();
        EXPECT_EQ(process.readAllStandardError().isEmpty(), row.nExit == 0) << row.strArgument.toStdString();
        EXPECT_EQ(course.Folder().Exists(CSampleCourse::Site(u"index.html"_s)), row.nExit == 0);
    }
}
