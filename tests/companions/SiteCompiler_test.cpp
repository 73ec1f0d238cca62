#include "companions/compiler/Lecture.h"
#include "companions/compiler/SearchIndex.h"
#include "platform/base/NativePath.h"
#include "tests/companions/SampleCourse.h"
#include "tests/companions/SiteCheck.h"
#include "video/AsfFile.h"
#include "video/Outline.h"
#include "video/VideoScripts.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QProcess>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace {

/// Every file of a folder with its content and time, to see that nothing changed.
QByteArray Fingerprint(const QString& strFolder) {
    QMap<QString, QByteArray> files;
    QDirIterator walk(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        files[file.fileName()] = QFileInfo(file).lastModified().toString(Qt::ISODateWithMs).toUtf8() +
                                 QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
    }
    return files.keys().join(u'\n').toUtf8() + files.values().join();
}

std::string Notes(const CompileReport& report) {
    return report.Notes.join(u'\n').toStdString();
}

} // namespace

// One course with every kind of content, written as the editor writes it: links in lower case, in the code
// page.
TEST(SiteCompiler, CompilesEveryKindOfNode) {
    CSampleCourse course;
    course.Folder.Write(CSampleCourse::Resource(u"skin\\page.css"_s), "p{}");
    const qint32 nFolder = course.Add(c_nRootNodeId, u"第一章"_s);
    const qint32 nPage =
        course.AddPage(nFolder, u"<b>标题</b> & \"引号\""_s,
                       u"<link rel=\"stylesheet\" href=\"../skin/page.css\"><h2 id=\"a\">正文😀</h2>"
                       "<p>输入的文字<IMG src='res/pic.gif'><a href=\"#a\">上</a></p>"_s);
    course.WriteResource(nPage, u"res\\Pic.GIF"_s, "GIF89a");
    const qint32 nLinking = course.AddPage(
        nFolder, u"有链接"_s,
        u"<a id=\"innerlink\" href=\"../n%1/content.htm#a\">站内</a></div></main></body><b>未闭合"_s.arg(
            nPage));
    const qint32 nWord = course.Add(nFolder, u"文档"_s, NodeType::c_nExternalFile, u"讲义 1.doc"_s, 0,
                                    u"原讲义.doc"_s, u"请先看<第一页>"_s);
    course.WriteResource(nWord, u"讲义 1.doc"_s, QByteArray(2048, 'x'));
    const qint32 nSite = course.Add(c_nRootNodeId, u"导入站点"_s, NodeType::c_nSite, u"Site\\Index.htm"_s);
    course.WriteResource(
        nSite, u"Site\\Index.htm"_s,
        CodePage::Encode(u"<HTML><a href=NEXT.HTM>下一页</a><a href='next.htm'>同</a></HTML>"));
    course.WriteResource(nSite, u"Site\\style.css"_s, "/* \xff\xff */ p{background:url(NEXT.htm)}");
    course.WriteResource(nSite, u"Site\\next.htm"_s, "<p id=x>next</p>");
    course.Add(c_nRootNodeId, u"外部"_s, NodeType::c_nExternalLink, u"http://www.example.edu.cn/?a=1&b=2"_s);
    const qint32 nToPage =
        course.Add(c_nRootNodeId, u"站内"_s, NodeType::c_nInSiteLink, u"\\n%1\\content.htm#a"_s.arg(nPage));
    course.Add(c_nRootNodeId, u"站内二"_s, NodeType::c_nInSiteLink, u"\\n%1\\site\\next.htm#x"_s.arg(nSite));
    const qint32 nVideo = course.Add(c_nRootNodeId, u"录像"_s, NodeType::c_nVideo, u"200711131620"_s);
    course.WriteResource(nVideo, u"200711131620\\ppt.htm"_s, "<p>slides</p>");
    const QByteArray before = Fingerprint(course.Folder.Native(CSampleCourse::Below(u"Data"_s)));

    const CompileReport report = course.Compile();

    EXPECT_EQ(Notes(report), "");
    EXPECT_EQ(report.OutputFolder, QFileInfo(course.SiteNative()).canonicalFilePath());
    EXPECT_EQ(DeadLinks(course.SiteNative()), "");
    EXPECT_EQ(Fingerprint(course.Folder.Native(CSampleCourse::Below(u"Data"_s))), before)
        << "compiling changed the course";
    EXPECT_FALSE(course.Folder.Exists(CSampleCourse::Site(u"N%1"_s.arg(nToPage))));
    const std::string strPageLink = "N" + std::to_string(nPage) + "/Content.htm#a\">";
    const struct {
        QByteArray File;
        std::vector<std::string> Pieces;
    } rows[] = {
        {course.Bytes(nPage),
         {"<h2 id=\"a\">正文😀</h2>", "<IMG src=\"res/Pic.GIF\">", "aria-current=\"page\"",
          "<h1 class=\"node-title\">&lt;b&gt;标题&lt;/b&gt; &amp; &quot;引号&quot;</h1>", "lang=\"zh-CN\"",
          "page.css\">\n<link rel=\"stylesheet\" href=\"../vorel/site.css\">"}},
        {course.Bytes(nLinking), {"<a id=\"innerlink\" href=\"../" + strPageLink}},
        {course.Bytes(nFolder, u"index.html"_s),
         {"<ul class=\"children\">", "<span class=\"title\">文档</span><span class=\"kind\">文件</span>"}},
        {course.Bytes(nWord, u"index.html"_s), {"download=\"原讲义.doc\"", "2.0 kB", "请先看&lt;第一页&gt;"}},
        {course.Bytes(nVideo, u"index.html"_s), {"src=\"200711131620/ppt.htm\""}},
        {course.Bytes(u"index.html"_s),
         {"<a href=\"" + strPageLink + "站内</a>", "<h1>&lt;高等&gt;数学</h1>"}},
    };
    for (const auto& row : rows) {
        for (const std::string& strPiece : row.Pieces)
            EXPECT_THAT(row.File.toStdString(), HasSubstr(strPiece));
    }
    EXPECT_EQ(course.Bytes(nSite, u"Site\\Index.htm"_s),
              CodePage::Encode(u"<HTML><meta charset=\"gb18030\"><a href=\"next.htm\">下一页</a>"
                               "<a href='next.htm'>同</a></HTML>"))
        << "an imported page keeps its bytes but for letter case, and says its coding";
    EXPECT_EQ(course.Bytes(nSite, u"Site\\style.css"_s), "/* \xff\xff */ p{background:url(\"next.htm\")}")
        << "a sheet of no known coding keeps its bytes too";
    QFile::remove(course.Folder.Native(CSampleCourse::Site(u"N%1\\res\\Pic.GIF"_s.arg(nPage))));
    EXPECT_THAT(DeadLinks(course.SiteNative()), HasSubstr(": res/Pic.GIF\n")) << "the check can see";
}

// Every form in which a link into a course is stored: by the wizard, by the editor, by old editors, and
// within imported sites. Each leads to its page and to its place there, in the very spelling.
TEST(VorelCompiler, LeavesNoLinkDead) {
    CSampleCourse course;
    const auto anchors = u"<h1 id=\"ChapterOne\">一</h1><a name=\"第二节 A\">二</a><p id=a>a</p>"
                         "<a href='#chapterone'>上</a><a href=\"#top\">顶</a>"_s;
    const qint32 nFolder = course.Add(c_nRootNodeId, u"目录"_s);
    const qint32 nPage = course.AddPage(nFolder, u"页"_s, anchors);
    const qint32 nSite = course.Add(nFolder, u"站点"_s, NodeType::c_nSite, u"Site\\Index.htm"_s);
    course.WriteResource(nSite, u"Site\\Index.htm"_s,
                         CodePage::Encode(u"<frameset cols=50%,*><frame src=MENU.HTM><frame name=main src="
                                          "sub/page.htm#END></frameset>"));
    course.WriteResource(nSite, u"Site\\menu.htm"_s,
                         CodePage::Encode(u"<a target=main href=SUB\\Page.htm#end>1</a><a target=main "
                                          "href='sub/page.htm#%B5%DA%B6%FE%BD%DA%20A'>2</a>"));
    course.WriteResource(nSite, u"Site\\Sub\\Page.htm"_s,
                         CodePage::Encode(QString(anchors + u"<a name=End></a><a href=../menu.htm>回</a>")));
    const qint32 nSlides =
        course.Add(nFolder, u"演示"_s, NodeType::c_nExternalFile, u"讲稿.files\\torvaneframe.htm"_s);
    for (const QString& strName : {u"torvaneframe.htm"_s, u"frame.htm"_s, u"fullscreen.htm"_s, u"pres.xml"_s,
                                   u"slide0001.htm"_s, u"Slide0003.htm"_s})
        course.WriteResource(nSlides, u"讲稿.files\\"_s + strName, "<p>slide</p>");
    const qint32 nFile = course.Add(nFolder, u"文件"_s, NodeType::c_nExternalFile, u"50% C#?.HTM"_s);
    course.WriteResource(nFile, u"50% C#?.HTM"_s, CodePage::Encode(anchors));
    course.WriteResource(nFile, u"a%20b.htm"_s, "<p id=X>x");

    const auto page = u"n%1\\content.htm"_s.arg(nPage), odd = u"n%1\\50% c#?.htm"_s.arg(nFile);
    const QStringList places = {page,
                                page + u"#a"_s,
                                page + u"#chapterone"_s,
                                page + u"#第二节 a"_s,
                                odd,
                                odd + u"#chapterone"_s,
                                u"n%1\\a%20b.htm#x"_s.arg(nFile),
                                u"n%1\\site\\index.htm"_s.arg(nSite),
                                u"n%1\\site\\sub\\page.htm#第二节 a"_s.arg(nSite),
                                u"n%1\\讲稿.files\\torvaneframe.htm#slide0003.htm"_s.arg(nSlides)};
    QString strLinks = u"<a id=\"innerlink\" href=\"http://example.com/#x\">外</a>"_s;
    for (const QString& strPlace : places) {
        course.Add(nFolder, u"链接"_s, NodeType::c_nInSiteLink, u'\\' + strPlace);
        strLinks += u"<a id=\"innerlink\" href=\"../"_s + QString(strPlace).replace(u'\\', u'/') +
                    u"\" style=\"{cursor:hand}\"><font color=\"#0000FF\">站内</font></a>"_s;
    }
    course.Add(nFolder, u"外"_s, NodeType::c_nInSiteLink, u"http://example.com/#x"_s);
    course.AddPage(nFolder, u"链接页"_s, strLinks + u"<a href=\"../n%1/\">目录</a>"_s.arg(nFolder));

    QProcess process;
    process.start(QString::fromUtf8(VOREL_COMPILER),
                  {u"--silent"_s, course.Folder.Native(course.strProject)});
    ASSERT_TRUE(process.waitForFinished());
    const QString strSaid = QString::fromUtf8(process.readAllStandardOutput());
    EXPECT_EQ(strSaid.count(u'\n'), 2) << strSaid.toStdString();
    EXPECT_EQ(DeadLinks(course.SiteNative()), "");
    EXPECT_GT(CountLinks(course.SiteNative()), 10 * places.size()) << "the check sees them";
    const qint32 nDead = course.AddPage(
        nFolder, u"断"_s, u"<a href=../%1#gone>x</a>"_s.arg(QString(page).replace(u'\\', u'/')));
    EXPECT_THAT(Notes(course.Compile()), HasSubstr("Content.htm#gone")) << "the teacher is told";
    EXPECT_THAT(DeadLinks(course.SiteNative()), HasSubstr("N" + std::to_string(nDead) + "/Content.htm: "));
}

// A recorded lecture plays in browsers of today: the film is made into one that they know, once, and the
// slide page is told what to show.
TEST(SiteCompiler, PlaysARecordedLecture) {
    CSampleCourse course;
    // The school's name is the key to the scripts.
    course.Folder.Write(u"程序\\AppInfo.ini"_s, CodePage::Encode(u"[SysInfo]\r\nSchoolName=测试大学\r\n"));
    CSysInfo::Reset(course.Folder.Path(u"程序\\Vorel"_s));
    const qint32 nVideo = course.Add(c_nRootNodeId, u"录像"_s, NodeType::c_nVideo, u"V"_s);
    const auto write = [&](const QString& strName, const QByteArray& bytes) {
        course.WriteResource(nVideo, u"V\\"_s + strName, bytes);
    };
    write(u"Template.prj"_s, "[OutputStream]\r\nFileName=film\r\n");
    write(u"kept2.film"_s, "x");
    write(u"PPT.htm"_s, "<HTML><HEAD><title>s</title></HEAD><p>x</p>");
    write(u"CourseInfo\\Outline.js"_s, MakeOutline({u"一<1>"_s, u"二"_s}));
    write(u"CourseInfo\\s.esf"_s,
          MakeVideoScripts({u"Show('</script>')"_s}, {u"(1,2)"_s},
                           *CVideoKey(CSysInfo::Instance().GetSchoolName()).GetRecorderKey()));
    WriteAsfScript(Platform::FromNative(QStringLiteral(VOREL_FILM)),
                   course.Folder.Path(CSampleCourse::Resource(u"N%1\\V\\film.asf"_s.arg(nVideo))),
                   {{{0, u"S"_s, u"-1"_s}, {1500, u"P"_s, u"0"_s}}, {{0, u"a"_s}, {1500, u"b"_s}}});
    const bool bPlays = !FilmProgram().isEmpty();
    const CompileReport report = course.Compile();
    EXPECT_FALSE(course.Folder.Exists(CSampleCourse::Site(u"N%1\\V\\kept2.film"_s.arg(nVideo))));
    EXPECT_EQ(report.Notes.isEmpty(), bPlays) << Notes(report);
    EXPECT_EQ(DeadLinks(course.SiteNative()), "");
    const std::string strPage = course.Bytes(nVideo, u"index.html"_s).toStdString();
    EXPECT_THAT(strPage, AllOf(HasSubstr("一&lt;1&gt;"), HasSubstr("src=\"V/PPT.htm\""),
                               HasSubstr("film.asf\" download")));
    EXPECT_EQ(course.Bytes(nVideo, u"V\\PPT.htm"_s),
              "<HTML><HEAD><script src=\"../../vorel/slides.js\"></script><title>s</title></HEAD><p>x</p>");
    if (!bPlays)
        return;
    EXPECT_THAT(strPage, AllOf(HasSubstr("src=\"V/film.mp4\""), HasSubstr("film.mp4#t=1.500\""),
                               HasSubstr("[[0,\"Show('\\u003c/script>')\",1],[1500,\"MoveMouse(1,2)\",0]]")));
    EXPECT_EQ(course.Bytes(nVideo, u"V\\film.mp4"_s).mid(4, 4), "ftyp");
    course.AddPage(c_nRootNodeId, u"新"_s, u"x"_s);
    const QString strFilm = course.Folder.Native(CSampleCourse::Site(u"N%1\\V\\film.mp4"_s.arg(nVideo)));
    const QDateTime made = QFileInfo(strFilm).lastModified();
    course.Compile();
    EXPECT_EQ(QFileInfo(strFilm).lastModified(), made) << "a changed tree made the film anew";
    write(u"CourseInfo\\s.esf"_s, MakeVideoScripts({u"Show('</script>')"_s}, {u"(1,2)"_s},
                                                   *CVideoKey(u"别的大学"_s).GetRecorderKey()));
    EXPECT_THAT(Notes(course.Compile()), HasSubstr("脚本无法读取")) << "of another school";
    EXPECT_THAT(course.Bytes(nVideo, u"index.html"_s).toStdString(), Not(HasSubstr("MoveMouse")));
}

// What the search reads: each node's text in its part, and a filter that never hides a word that is there.
TEST(SiteCompiler, IndexesTitlesAndTexts) {
    CSampleCourse course;
    const qint32 nPage = course.AddPage(
        c_nRootNodeId, u"极限"_s,
        u"<style>p{}</style><p>函<b>数</b>的 &lt;定义&gt;<br>\"Fourier\"&nbsp;变换 \\ &#x6781;值</p>"
        "<script>var x = '<p>秘密';</script><!-- 注 --><table><tr><td>甲<td>乙</table>1<2"_s);
    const qint32 nText = course.Add(c_nRootNodeId, u"文本"_s, NodeType::c_nExternalFile, u"a.txt"_s);
    course.WriteResource(nText, u"a.txt"_s, CodePage::Encode(u"第一行\r\n<第二行>"));
    const qint32 nSite = course.Add(c_nRootNodeId, u"站点"_s, NodeType::c_nSite, u"S\\a.htm"_s);
    course.WriteResource(nSite, u"S\\a.htm"_s, "<p>first");
    course.WriteResource(nSite, u"S\\sub\\B b.htm"_s, "<title>Second &amp; last</title><p>behind");
    course.Compile();
    EXPECT_THAT(course.Bytes(u"vorel\\search\\n%1-0.js"_s.arg(nSite)).toStdString(),
                HasSubstr("[\"S/sub/B%20b.htm\",\"Second & last\",\"behind\"]"));
    EXPECT_THAT(course.Bytes(u"vorel\\search\\index.js"_s).toStdString(),
                HasSubstr("sites:[\n[\"n" + std::to_string(nSite) + "-0.js\",3,\""));
    const std::string strPart = course.Bytes(u"vorel\\search\\0.js"_s).toStdString();
    EXPECT_THAT(strPart,
                AllOf(HasSubstr("\"函数的 <定义> \\\"Fourier\\\" 变换 \\\\ 极值 甲 乙 1<2\""),
                      HasSubstr("\"第一行 <第二行>\""), Not(HasSubstr("秘密")), Not(HasSubstr("p{}"))));
    EXPECT_THAT(course.Bytes(u"vorel\\search\\index.js"_s).toStdString(),
                HasSubstr("[\"极限\",\"N" + std::to_string(nPage) + "/Content.htm\",0,0]"));
    const QByteArray filter =
        QByteArray::fromBase64(SearchIndex::FilterOf(course.Bytes(u"vorel\\search\\0.js"_s)));
    // As the site's script looks them up.
    for (const QString& strPair :
         {u"函数"_s, u"数的"_s, u"fo"_s, u"极限"_s, u"二行"_s, u"的<"_s, u"值甲"_s}) {
        const quint32 nHash = ((strPair[0].unicode() * 40503u + strPair[1].unicode() * 30011u) >> 2) %
                              quint32(filter.size() * 8);
        EXPECT_TRUE(filter[qsizetype(nHash / 8)] & (1 << (nHash % 8))) << strPair.toStdString();
    }
    EXPECT_THAT(course.Bytes(nText, u"index.html"_s).toStdString(), HasSubstr("&lt;第二行&gt;</pre>"))
        << "a text file stands in the page, whatever its coding";
}

TEST(SiteCompiler, KeepsOpenTypes) {
    for (int nOpen = 0; nOpen <= 4; ++nOpen) {
        CSampleCourse course;
        const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, u"<p>x</p>"_s, nOpen);
        const qint32 nSite = course.Add(c_nRootNodeId, u"站"_s, NodeType::c_nSite, u"s\\a.htm"_s, nOpen);
        course.WriteResource(nSite, u"s\\a.htm"_s, "<p>a</p>");
        course.Add(c_nRootNodeId, u"外"_s, NodeType::c_nExternalLink, u"http://example.com/"_s, nOpen);
        course.Compile();
        const bool bWindow = nOpen >= 1 && nOpen <= 3;
        const auto links = [&](const QString& strAddress) {
            const QString strMark = u"\" target=\"_blank\" rel=\"noopener\" data-open=\"%1\">"_s.arg(nOpen);
            const QString strLink = u"<a href=\""_s + strAddress + (bWindow ? strMark : u"\">"_s);
            return course.Bytes(u"index.html"_s).count(strLink.toUtf8());
        };
        EXPECT_EQ(links(u"N%1/Content.htm"_s.arg(nPage)), 2) << nOpen << " in the tree and in the list";
        EXPECT_EQ(links((bWindow ? u"N%1/s/a.htm"_s : u"N%1/index.html"_s).arg(nSite)), 2) << nOpen;
        EXPECT_EQ(links(u"http://example.com/"_s), bWindow ? 2 : 0) << nOpen;
        EXPECT_EQ(course.Bytes(nPage).contains("class=\"site-nav\""), !bWindow)
            << nOpen << " content in a window of its own stands without the tree";
    }
}

TEST(SiteCompiler, CompilesWhatABrokenStoreStillHolds) {
    CSampleCourse course;
    const qint32 nGone = course.AddPage(c_nRootNodeId, u"丢\u202e失"_s, u"x"_s);
    const qint32 nSelf = course.Add(c_nRootNodeId, u"自己"_s);
    course.Add(c_nRootNodeId, u"越界"_s, NodeType::c_nSite, u"..\\..\\..\\DataBase\\VorelCourse.mdb"_s);
    course.Add(c_nRootNodeId, u"脚本"_s, NodeType::c_nExternalLink, u"javascript:alert(1)//://"_s);
    course.Add(c_nRootNodeId, u"无处"_s, NodeType::c_nInSiteLink, u"\\n999\\content.htm"_s);
    QFile::remove(course.Folder.Native(CSampleCourse::Resource(u"N%1\\Content.htm"_s.arg(nGone))));
    course.Damage(u"UPDATE Book SET ParentId = %1 WHERE Id = %1"_s.arg(nSelf));
    course.Damage(u"INSERT INTO Book (Id, ParentId, [Index]) VALUES (900, 901, 1), (901, 900, 1), "
                  "(902, 12345, 1)"_s);

    const CompileReport report = course.Compile();

    EXPECT_EQ(report.Notes.size(), 5) << Notes(report);
    EXPECT_THAT(Notes(report), AllOf(HasSubstr("有 4 个栏目不在课程树上"), HasSubstr("“丢失”")));
    EXPECT_EQ(DeadLinks(course.SiteNative()), "");
    EXPECT_THAT(course.Bytes(u"index.html"_s).toStdString(),
                AllOf(Not(HasSubstr("javascript:")), Not(HasSubstr("VorelCourse.mdb"))));
}

// What pages show comes along, wherever it lies in the course; what is being made, put aside or outside of
// the course does not, and the teacher hears of it.
TEST(SiteCompiler, TakesAlongWhatPagesReferTo) {
    CSampleCourse course;
    const qint32 nPage =
        course.AddPage(c_nRootNodeId, u"页"_s,
                       u"<img src=../n900/res/a.gif><img src=../top.gif><a href=../index.html>x"
                       "</a><iframe src='../n900/x.htm'></iframe><img src='../~/N4/b.gif'>"_s);
    course.Add(c_nRootNodeId, u"链"_s, NodeType::c_nInSiteLink, u"\\n901\\y.htm"_s);
    for (const QString& strName :
         {u"N900\\res\\A.gif"_s, u"N900\\res\\c.gif"_s, u"N900\\res\\unused.gif"_s, u"top.gif"_s,
          u"index.html"_s, u"~\\N4\\b.gif"_s, u"N4.old\\b.gif"_s, u"N%1\\.git\\x"_s.arg(nPage)})
        course.Folder.Write(CSampleCourse::Resource(strName), "x");
    course.Folder.Write(CSampleCourse::Resource(u"N900\\x.htm"_s), "<base href=RES/x.htm><img src=C.gif>");
    course.Folder.Write(CSampleCourse::Resource(u"N901\\y.htm"_s), "<p>y");
    QFile::link(u"/etc/passwd"_s, course.Folder.Native(CSampleCourse::Resource(u"N%1\\p.txt"_s.arg(nPage))));
    const auto there = [&](const QString& strName) {
        return course.Folder.Exists(CSampleCourse::Site(strName));
    };
    for (int nRun = 0; nRun < 2; ++nRun) {
        const CompileReport report = course.Compile();
        EXPECT_EQ(report.Changed == 0, nRun == 1);
        EXPECT_THAT(Notes(report),
                    AllOf(HasSubstr("有 1 个隐藏的"), HasSubstr("有 1 个符号链接"),
                          HasSubstr("“index.html”与网站"), HasSubstr("不存在的“../~/N4/b.gif”")));
        for (const QString& strName :
             {u"N900\\res\\A.gif"_s, u"N900\\res\\c.gif"_s, u"top.gif"_s, u"N901\\y.htm"_s})
            EXPECT_TRUE(there(strName)) << strName.toStdString();
        for (const QString& strName :
             {u"N900\\res\\unused.gif"_s, u"~"_s, u"N4.old"_s, u"N%1\\p.txt"_s.arg(nPage)})
            EXPECT_FALSE(there(strName)) << strName.toStdString();
        EXPECT_EQ(course.Bytes(u"N900\\x.htm"_s), "<base href=\"res/x.htm\"><img src=\"c.gif\">");
    }
    course.Folder.Write(CSampleCourse::Resource(u"N900\\x.htm"_s), "<p>");
    course.Compile();
    EXPECT_FALSE(there(u"N900\\res\\c.gif"_s)) << "nothing refers to it any more";
}

// A large course shows a page's own branch, so that the site doesn't grow with the square of the course; a
// chain of any length ends.
TEST(SiteCompiler, LargeAndDeepCourses) {
    CSampleCourse course;
    course.Damage(
        u"WITH RECURSIVE n(i) AS (VALUES(10) UNION ALL SELECT i + 1 FROM n WHERE i < 2009) "
        "INSERT INTO Book (Id, ParentId, [Index]) SELECT i, CASE WHEN i < 1010 THEN 3 ELSE i - 1 END, i "
        "FROM n"_s);
    course.Compile();
    EXPECT_LT(course.Bytes(500, u"index.html"_s).size(), 40000);
    EXPECT_LT(course.Bytes(2009, u"index.html"_s).size(), 40000);
    EXPECT_EQ(DeadLinks(course.SiteNative()), "");
    EXPECT_TRUE(course.Bytes(500, u"index.html"_s).contains("href=\"../N501/index.html\""));
    EXPECT_EQ(course.Bytes(u"index.html"_s).count("class=\"kind\""), 1000) << "every node can be reached";
    EXPECT_TRUE(course.Bytes(u"index.html"_s).contains(">未命名栏目 10</span>"))
        << "no link is without a word";
}

// A node's content switches the list of its children off. Two names that differ in letter case alone would be
// one file on many servers. The template's skin is used as it is named.
TEST(SiteCompiler, ShowsContentUnderTheSkinAndTellsNamesApart) {
    CSampleCourse course;
    const qint32 nPage =
        course.AddPage(c_nRootNodeId, u"有内容"_s, u"<img src=res/A.gif><img src=\"res/a.gif\">"_s);
    course.Add(nPage, u"下级"_s);
    course.WriteResource(nPage, u"res\\A.gif"_s, "upper");
    course.WriteResource(nPage, u"res\\a.gif"_s, "lower");
    course.Folder.Write(CSampleCourse::Resource(u"Skin\\site.css"_s), "body{}");
    course.Compile();
    EXPECT_THAT(course.Bytes(nPage).toStdString(),
                AllOf(HasSubstr("<img src=res/A.gif><img src=\"res/a~2.gif\">"),
                      HasSubstr("href=\"../Skin/site.css\""), Not(HasSubstr("class=\"children\"")),
                      HasSubstr("<li class=\"branch\"><a href=\"../N" + std::to_string(nPage) +
                                "/Content.htm\" aria-current=\"page\">有内容</a><details open>"),
                      HasSubstr(">下级</a>")));
    EXPECT_EQ(course.Bytes(nPage, u"res\\a~2.gif"_s), "lower");
    EXPECT_FALSE(course.Folder.Exists(CSampleCourse::Site(u"vorel\\site.css"_s)));
}

// A page that can't stand within the frame is shown in a frame of its own; nothing of it is lost.
TEST(SiteCompiler, EmbedsAPageThatCanNotBeTakenApart) {
    CSampleCourse course;
    const QString strHtml = u"<div>"_s.repeated(5000) + u"深"_s;
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, strHtml);
    for (int nRun = 0; nRun < 2; ++nRun) {
        EXPECT_EQ(course.Compile().Notes.size(), 1) << "and it is known for the compiler's own";
        EXPECT_TRUE(course.Bytes(nPage).contains("src=\"raw-Content.htm\""));
        EXPECT_TRUE(course.Bytes(nPage, u"raw-Content.htm"_s).endsWith(CodePage::Encode(strHtml)));
    }
}

TEST(SiteCompiler, RemembersTheFolderAndNothingElse) {
    CSampleCourse course;
    const QByteArray project = course.Folder.Read(course.strProject) + "[Other]\r\nkey = kept \r\n";
    course.Folder.Write(course.strProject, project);
    const auto remembered = [](const QString& strFolder) -> QByteArray {
        return "[Compile]\r\nLastDir=" + CodePage::Encode(strFolder) + "\r\n";
    };
    course.Folder.MakeFolder(u"别 处"_s);
    CompileRequest request{course.Folder.Path(course.strProject), ESiteForm::Site,
                           course.Folder.Native(u"别 处"_s)};
    EXPECT_TRUE(CompileSite(request).OutputFolder.endsWith(u"/别 处/课程网站"_s));
    EXPECT_FALSE(course.Folder.Exists(CSampleCourse::Site(u"index.html"_s)));
    const QByteArray expected = project + remembered(course.Folder.Path(u"别 处"_s)) +
                                "CourseDir=" + CodePage::Encode(course.Folder.Path(u"课程"_s)) + "\r\n";
    EXPECT_EQ(course.Folder.Read(course.strProject), expected);
    request.OutputFolder.clear();
    EXPECT_EQ(CompileSite(request).Changed, 0) << "the same folder again";
    request.OutputFolder = course.Folder.Native(u"别 处\\课程网站"_s);
    EXPECT_EQ(CompileSite(request).Changed, 0) << "the site's own folder stands for that around it";
    const QString strNew = course.Folder.Native(u"新课\\申报网站"_s);
    course.Folder.Write(u"新课\\申报网站\\Data\\DataBase\\VorelCourse.mdb"_s, {});
    EXPECT_EQ(OutputFolderFor(strNew), strNew) << "a new course has the name of a form";
    request.OutputFolder.clear();

    // The folder of another machine, and of the course that this one was copied from.
    course.Folder.Write(u"别 处\\Data\\DataBase\\VorelCourse.mdb"_s, "x");
    // What another place of the same course was compiled into: this one is a copy of it.
    course.Folder.Write(u"已发布\\课程网站\\.vorel-site"_s, "VorelCompiler 2\t7\tabc\n");
    for (const QString& strGone : {u"Q:\\旧机器\\站点"_s, course.Folder.Path(u"别 处"_s),
                                   course.Folder.Path(u"改名之前"_s), course.Folder.Path(u"已发布"_s)}) {
        course.Folder.Write(course.strProject, project + remembered(strGone));
        const CompileReport report = CompileSite(request);
        EXPECT_EQ(report.OutputFolder, QFileInfo(course.SiteNative()).canonicalFilePath());
        EXPECT_EQ(report.Notes.size(), 1) << "the teacher is told";
    }
}

// What is published goes on at its place when the course moves, and a copy does not write over it.
TEST(SiteCompiler, TellsAMovedCourseFromACopy) {
    CSampleCourse course;
    course.Folder.MakeFolder(u"发布"_s);
    const QString strSite = course.Folder.Native(u"发布"_s) + u"/课程网站"_s;
    CompileSite({course.Folder.Path(course.strProject), ESiteForm::Site, course.Folder.Native(u"发布"_s)});
    ASSERT_TRUE(QDir().rename(course.Folder.Native(u"课程"_s), course.Folder.Native(u"新学期"_s)));
    const CompileRequest moved{course.Folder.Path(u"新学期\\课程.vcp"_s), ESiteForm::Site};
    const CompileReport report = CompileSite(moved);
    EXPECT_EQ(report.OutputFolder, strSite);
    EXPECT_TRUE(report.Notes.isEmpty());

    for (const QString& strFile : {u"课程.vcp"_s, u"Data\\DataBase\\VorelCourse.mdb"_s})
        course.Folder.Write(u"副本\\"_s + strFile, course.Folder.Read(u"新学期\\"_s + strFile));
    course.Folder.MakeFolder(u"副本\\Data\\Courseware\\NodeResource"_s);
    const CompileReport copy = CompileSite({course.Folder.Path(u"副本\\课程.vcp"_s), ESiteForm::Site});
    EXPECT_EQ(copy.OutputFolder, course.Folder.Native(u"副本"_s) + u"/课程网站"_s);
    EXPECT_EQ(copy.Notes.size(), 1);
    EXPECT_EQ(CompileSite(moved).Changed, 0);
}

// The teacher uploads what changed: one edited page must not touch a whole site.
TEST(SiteCompiler, TouchesOnlyWhatAnEditChanges) {
    CSampleCourse course;
    QList<qint32> pages;
    const qint32 nFolder = course.Add(c_nRootNodeId, u"章"_s);
    for (int i = 0; i < 5; ++i)
        pages.append(course.AddPage(nFolder, u"页%1"_s.arg(i), u"<h2 id=a>%1</h2>"_s.arg(i)));
    course.WriteResource(pages[1], u"Content.htm"_s,
                         "<a href=\"../n" + QByteArray::number(pages[0]) + "/content.htm#A\">x</a>");
    course.WriteResource(pages[2], u"res\\p.gif"_s, "GIF89a");
    QMap<QString, qint64> times;
    const auto touched = [&] {
        const int nChanged = course.Compile().Changed;
        QMap<QString, qint64> now;
        QStringList list;
        QDirIterator walk(course.SiteNative(), QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString strFile = walk.next();
            now[strFile] = QFileInfo(strFile).lastModified().toMSecsSinceEpoch();
            if (times.value(strFile) != now[strFile])
                list.append(strFile.mid(course.SiteNative().size() + 1));
        }
        times = now;
        EXPECT_EQ(nChanged, list.size());
        list.sort();
        return list;
    };
    const auto pageOf = [&](int i) { return u"N%1/Content.htm"_s.arg(pages[i]); };
    EXPECT_GT(touched().size(), 7);
    EXPECT_EQ(touched(), QStringList());
    course.WriteResource(pages[3], u"Content.htm"_s, "<p>new</p>");
    EXPECT_EQ(touched(), (QStringList{pageOf(3), u"vorel/search/0.js"_s, u"vorel/search/index.js"_s}))
        << "the page, and what the search finds it by";
    course.WriteResource(pages[2], u"res\\p.gif"_s, "GIF89a+");
    EXPECT_EQ(touched(), QStringList{u"N%1/res/p.gif"_s.arg(pages[2])});
    course.WriteResource(pages[0], u"Content.htm"_s, "<h2 id=A>0</h2>");
    EXPECT_EQ(touched(), (QStringList{pageOf(0), pageOf(1)})) << "a link is spelled as its target is";
    QFile::remove(course.SiteNative() + u'/' + pageOf(4));
    EXPECT_EQ(touched(), QStringList{pageOf(4)}) << "what is gone comes back";
    course.WriteResource(pages[4], u"Content.htm"_s, "<h2 id=a>4</h2>");
    EXPECT_EQ(touched(), QStringList()) << "the same bytes at another time";
    course.WriteResource(pages[4], u"new.txt"_s, "x");
    EXPECT_EQ(touched(), QStringList{u"N%1/new.txt"_s.arg(pages[4])});
}

// The other forms, of a course with content of most kinds: no link in them is dead, and each keeps its
// promise.
TEST(SiteCompiler, CompilesTheOtherForms) {
    CSampleCourse course;
    const qint32 nFolder = course.Add(c_nRootNodeId, u"第</script>章"_s);
    const qint32 nPage = course.AddPage(nFolder, u"页"_s, u"<p id=A>正文</p>"_s);
    const qint32 nSite = course.Add(nFolder, u"站点"_s, NodeType::c_nSite, u"s\\a.htm"_s, 3);
    course.WriteResource(nSite, u"s\\a.htm"_s, CodePage::Encode(u"<p>没有说明编码</p><img src=/x.gif>"));
    course.WriteResource(nSite, u"s\\b.TXT"_s, CodePage::Encode(u"文本"));
    course.Add(nFolder, u"外"_s, NodeType::c_nExternalLink, u"http://example.com/"_s, 1);
    course.Add(nFolder, u"站内"_s, NodeType::c_nInSiteLink, u"\\n%1\\content.htm#a"_s.arg(nPage));
    const qint32 nText = course.Add(nFolder, u"文"_s, NodeType::c_nExternalFile, u"c.TXT"_s);
    course.WriteResource(nText, u"c.TXT"_s, CodePage::Encode(u"说明"));
    const auto compile = [&](ESiteForm form) -> QString {
        return CompileSite({course.Folder.Path(course.strProject), form}).OutputFolder + u'/';
    };
    const auto read = [](const QString& strFile) {
        QFile file(strFile);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const auto nodeFile = [](qint32 nId, const QString& strName) -> QString {
        return u"N%1/"_s.arg(nId) + strName;
    };

    const QString strApplication = compile(ESiteForm::Site) + u"../申报网站/"_s;
    EXPECT_EQ(DeadLinks(QDir::cleanPath(strApplication)), "");
    EXPECT_THAT(read(strApplication + u"contents1.html"_s).toStdString(),
                AllOf(HasSubstr("<td>1.2</td>"), HasSubstr("href=\"../课程网站/N5/Content.htm#A\"")));

    const QString strHtml = compile(ESiteForm::Html);
    EXPECT_FALSE(read(strHtml + u"index.html"_s).contains("<script"));
    EXPECT_FALSE(read(strHtml + u"index.html"_s).contains("<form"));
    EXPECT_EQ(read(strHtml + nodeFile(nSite, u"s/b.TXT"_s)), "\xEF\xBB\xBF文本");

    const QString strClassroom = compile(ESiteForm::Classroom);
    const QByteArray script = read(strClassroom + u"vorel/course.js"_s);
    EXPECT_EQ(script.count('\n'), 9) << script.toStdString();
    EXPECT_THAT(script.toStdString(), AllOf(HasSubstr("[\"第\\u003c/script>章\",1,\"N4/index.html\",0]"),
                                            HasSubstr("[\"站点\",2,\"N6/s/a.htm\",0]"),
                                            HasSubstr("[\"外\",2,\"http://example.com/\",1]"),
                                            HasSubstr("[\"站内\",2,\"N5/Content.htm#A\",0]"),
                                            HasSubstr("[\"文\",2,\"N9/index.html\",0]")));
    EXPECT_THAT(read(strClassroom + nodeFile(nPage, u"Content.htm"_s)).toStdString(),
                AllOf(HasSubstr("data-step=\"2\""), HasSubstr("href=\"../N6/s/a.htm\">下一页"),
                      HasSubstr("<p id=A>正文</p>")));
    QFile::remove(strHtml + nodeFile(nSite, u"s/a.htm"_s));
    EXPECT_EQ(DeadLinks(strClassroom.chopped(1)), strClassroom.toStdString() + "N6/s/a.htm: /x.gif\n");
}

TEST(SiteCompiler, StopsWhenToldAndLeavesWholeFiles) {
    CSampleCourse course;
    const qint32 nPage = course.AddPage(c_nRootNodeId, u"页"_s, u"<p>旧</p>"_s);
    course.Compile();
    const QByteArray before = course.Bytes(nPage);
    course.WriteResource(nPage, u"Content.htm"_s, "<p>new</p>");
    CompileProgress progress;
    progress.bCancelled = true;
    const TaskOutcome outcome = Compile({course.Folder.Path(course.strProject)}, progress);
    EXPECT_EQ(outcome.End, TaskOutcome::EEnd::Cancelled);
    EXPECT_EQ(course.Bytes(nPage), before);
    EXPECT_NE(course.Compile().Changed, 0);
}

TEST(VorelCompiler, TellsAScriptWhetherItCompiled) {
    const CSampleCourse course;
    const QString strProject = course.Folder.Native(course.strProject);
    const QString strOther = course.Folder.Native(u"别处"_s);
    const struct {
        QStringList Arguments;
        int nExit;
    } rows[] = {{{u"--silent"_s, strProject}, 0},
                {{u"--silent"_s, u"--output"_s, strOther, strProject + u"|H"_s}, 0},
                {{u"--help"_s}, 0},
                {{u"--silent"_s, strProject + u".gone"_s}, 1},
                {{u"--silent"_s, strProject, u"--output="_s + strProject}, 1},
                {{u"--silent"_s}, 2},
                {{u"--silent"_s, strProject + u"|X"_s}, 2},
                {{u"--silent"_s, u"--quiet"_s, strProject}, 2}};
    for (const auto& row : rows) {
        QProcess process;
        process.start(QString::fromUtf8(VOREL_COMPILER), row.Arguments);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), row.nExit) << row.Arguments.join(u' ').toStdString();
        EXPECT_EQ(process.readAllStandardError().isEmpty(), row.nExit == 0);
    }
    EXPECT_TRUE(QFile::exists(strOther + u"/合成/HTML/index.html"_s));
}
