#include "companions/docexport/DocExport.h"

#include "companions/compiler/SourceFile.h"
#include "companions/docexport/Package.h"
#include "companions/docexport/Pieces.h"
#include "companions/docexport/WordConverter.h"
#include "companions/docexport/WordXml.h"
#include "tests/companions/SampleCourse.h"

#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

const QByteArray c_png = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR4nGNgYGD4DwABBAEAX+XDSwAAAABJRU5ErkJggg==");

/// Takes what is the picture above, and nothing else.
PictureTaker TakerFor(const QString& strFolder) {
    return [strFolder](const QString& strPath, const auto&) -> std::optional<ReadyPicture> {
        QFile file(strPath);
        const QString strName = QFileInfo(strPath).completeBaseName() + u".png"_s;
        if (!file.open(QIODevice::ReadOnly) || file.readAll() != c_png ||
            (!QFileInfo::exists(strFolder + u'/' + strName) &&
             !QFile::copy(strPath, strFolder + u'/' + strName)))
            return std::nullopt;
        return ReadyPicture{strName, 200, 100};
    };
}

DocOutcome Export(const CSampleCourse& course, const QString& strTarget) {
    DocProgress progress;
    return ExportDocument({course.Folder.Path(course.strProject), strTarget}, TakerFor, progress);
}

/// The document as another reader understands it.
QString ReadBack(const QString& strDocument) {
    QProcess reader;
    reader.start(u"pandoc"_s, {u"-f"_s, u"docx"_s, u"-t"_s, u"html"_s, u"--wrap=none"_s, strDocument});
    EXPECT_TRUE(reader.waitForFinished());
    EXPECT_EQ(reader.exitCode(), 0);
    EXPECT_EQ(reader.readAllStandardError(), QByteArray());
    return QString::fromUtf8(reader.readAllStandardOutput());
}

/// All text of the paragraphs of a style, a line each.
QString TextOf(const QByteArray& document, const QString& strStyle) {
    QString strText;
    bool bWanted = false;
    bool bInstruction = false;
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            bInstruction = xml.name() == "instrText"_L1;
            if (xml.name() == "p"_L1)
                bWanted = false;
            else if (xml.name() == "pStyle"_L1)
                bWanted = xml.attributes().value("w:val"_L1) == strStyle;
            else if (bWanted && xml.name() == "tab"_L1)
                strText += u'|';
        } else if (token == QXmlStreamReader::Characters && bWanted && !bInstruction) {
            strText += xml.text();
        } else if (token == QXmlStreamReader::EndElement && bWanted && xml.name() == "p"_L1) {
            strText += u'\n';
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString();
    return strText;
}

bool HasWordFillIn(const QString& strDocument) {
    return Package::Read(strDocument, "word/settings.xml").contains("<w:updateFields w:val=\"true\"/>");
}

QStringList FilesAndTimes(const QString& strFolder) {
    QStringList files;
    QDirIterator walk(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QFileInfo file(walk.next());
        files.append(file.filePath() + file.lastModified().toString(Qt::ISODateWithMs));
    }
    files.sort();
    return files;
}

} // namespace

// One course with every kind of content; the document is read back by the program that knows the format best
// and by another one, and its pages were counted by a third.
TEST(DocExport, WritesACourseThatOtherProgramsRead) {
    CSampleCourse course;
    const qint32 nChapter = course.Add(c_nRootNodeId, u"第一章 <极限> & \"x\""_s);
    course.AddPage(nChapter, u"前"_s,
                   u"<a href=../n6/Content.htm#B>后</a><a href=../n7/content.htm#c>无</a>"_s);
    const qint32 nPage = course.AddPage(
        nChapter, u"课程介绍"_s,
        u"<p id=a>正文</p><p id=b>后文</p><img src=res/PIC.png><img src=res/gone.gif><img "
        u"src=res/bad.png><script>坏</script>"
        "<table border=1><tr><td>甲<td>乙</table><ul><li>一<ol><li>二</ol></ul><embed src=m.swf>"_s);
    course.WriteResource(nPage, u"res\\pic.png"_s, c_png);
    course.WriteResource(nPage, u"res\\bad.png"_s, "x");
    course.AddPage(nPage, u"链接"_s,
                   u"<a href=../n%1/content.htm#a>站内</a><a href=http://a.edu.cn/?b=1&c=2>站外</a>"
                   "<a href=javascript:x()>无</a>"_s.arg(nPage));
    course.AddPage(nPage, u"太深"_s, u"<div>"_s.repeated(5000));
    qint32 nDeep = nPage;
    for (int i = 3; i <= 10; ++i)
        nDeep = course.Add(nDeep, u"第%1级"_s.arg(i));
    const qint32 nFile = course.Add(c_nRootNodeId, u"文档"_s, NodeType::c_nExternalFile, u"a.doc"_s, 0,
                                    u"原讲义.doc"_s, u"请看"_s);
    course.WriteResource(nFile, u"a.doc"_s, QByteArray(2048, 'x'));
    const qint32 nOffice = course.Add(c_nRootNodeId, u"转换的"_s, NodeType::c_nExternalFile, u"a.htm"_s);
    course.WriteResource(nOffice, u"a.htm"_s, "<html><meta charset=utf-8><body><h2>报告</h2></body></html>");
    const qint32 nSlides =
        course.Add(c_nRootNodeId, u"讲稿"_s, NodeType::c_nExternalFile, u"a.files\\torvaneframe.htm"_s);
    course.WriteResource(nSlides, u"a.files\\torvaneframe.htm"_s, "<frameset>");
    course.WriteResource(nSlides, u"a.files\\slide0001.png"_s, c_png);
    course.Add(c_nRootNodeId, u"外部"_s, NodeType::c_nExternalLink, u"http://b.edu.cn/"_s);
    course.Add(c_nRootNodeId, u"见"_s, NodeType::c_nInSiteLink, u"\\n%1\\content.htm"_s.arg(nPage));
    course.Add(c_nRootNodeId, u"丢了"_s, NodeType::c_nEditorPage, u"Content.htm"_s);
    const QString strFolder = course.Folder.Native(CSampleCourse::Below(u"Data"_s));
    const QStringList before = FilesAndTimes(strFolder);
    const QString strTarget = DefaultTarget(course.Folder.Path(course.strProject));

    const DocOutcome outcome = Export(course, strTarget);

    ASSERT_EQ(outcome.End, DocOutcome::EEnd::Done) << outcome.Text;
    EXPECT_EQ(FilesAndTimes(strFolder), before) << "exporting changed the course";
    EXPECT_EQ(QFileInfo(strTarget).fileName(), u"课程.docx"_s);
    const std::string notes = outcome.Notes.join(u'\n').toStdString();
    for (const char* szNote : {"gone.gif”。", "“bad.png”已损坏", "1 处多媒体", "嵌套过深", "栏目“丢了”的内容",
                               "1 个外部文件", "有 1 个栏目深于九级"})
        EXPECT_THAT(notes, HasSubstr(szNote));
    EXPECT_THAT(notes, Not(HasSubstr("页码"))) << "the layout program had no pages to tell";
    EXPECT_FALSE(HasWordFillIn(strTarget));

    const QByteArray document = Package::Read(strTarget, "word/document.xml");
    EXPECT_EQ(TextOf(document, u"Heading3"_s), u"链接\n太深\n第3级\n"_s);
    EXPECT_EQ(TextOf(document, u"Heading9"_s), u"第9级\n第10级\n"_s);
    static const QRegularExpression entry(u"^第一章 <极限> & \"x\"\\|[0-9]+\n"_s);
    EXPECT_TRUE(entry.match(TextOf(document, u"TOC1"_s)).hasMatch()) << TextOf(document, u"TOC1"_s);
    const QByteArray place = 'n' + QByteArray::number(nPage);
    const QByteArray link = "w:anchor=\"" + place;
    ASSERT_EQ(nPage, 6);
    EXPECT_EQ(document.count(QByteArray(link + '"')), 2) << "contents, and the node that leads there";
    EXPECT_EQ(document.count(QByteArray(link + '_')), 2)
        << "to a place of a page behind it, and of one before";
    EXPECT_EQ(document.count(QByteArray("w:name=\"" + place + '_')), 2)
        << "not a bookmark that nothing leads to";
    EXPECT_THAT(notes, HasSubstr("引用了不存在的“../n7/content.htm#c”"));
    EXPECT_EQ(Package::Read(strTarget, "word/header1.xml").count("&lt;高等&gt;数学"), 1);
    EXPECT_THAT(Package::Read(strTarget, "word/footer1.xml").toStdString(), HasSubstr(" NUMPAGES "));

    const std::string text = ReadBack(strTarget).toStdString();
    for (const char* szPiece :
         {"href=\"http://a.edu.cn/?b=1&amp;c=2\"", "href=\"http://b.edu.cn/\"", "原讲义.doc（2.0 KB）",
          "说明：请看", "报告", "style=\"width:2.08333in;height:1.04167in\"", "第 1 页", "<td>甲</td>",
          "<ol type=\"1\">\n<li>二</li>", "测试大学", "主讲教师：李老师", "见“课程介绍”",
          "［多媒体内容 m.swf］", "内容缺失"})
        EXPECT_THAT(text, HasSubstr(szPiece));
    for (const char* szPiece : {"坏", "javascript"})
        EXPECT_THAT(text, Not(HasSubstr(szPiece)));
}

// A long text goes through the converter in pieces, each with names and numbers that others have too.
TEST(DocExport, JoinsPiecesWithoutMixingUpTheirParts) {
    CTempFolder folder;
    folder.Write(u"p.png"_s, c_png);
    QStringList pieces;
    for (int i = 0; i < 3; ++i) {
        const QByteArray number = QByteArray::number(i);
        folder.Write(u"a.html"_s, "<p><span id=\"n" + number + "\"></span><a href=\"http://a/" + number +
                                      "?b&amp;c\">l</a><a href=\"#n0\">i</a><img src=\"p.png\"></p>"
                                      "<ol start=\"2\"><li>a</li></ol><ol start=\"2\"><li>b</li></ol>"
                                      "<ul><li>x<ol type=\"A\"><li>y</li></ol></li></ul><table><tr><td>" +
                                      number + "</td></tr></table>");
        pieces.append(folder.Native(u"%1.docx"_s.arg(i)));
        QProcess pandoc;
        pandoc.setWorkingDirectory(folder.Native({}));
        pandoc.start(u"pandoc"_s, {u"a.html"_s, u"-o"_s, pieces.last()});
        ASSERT_TRUE(pandoc.waitForFinished());
    }
    const QString strJoined = folder.Native(u"joined.docx"_s);
    JoinPieces(pieces, strJoined);

    const QString strText = ReadBack(strJoined);
    QString strExpected;
    for (const QString& strPiece : pieces)
        strExpected += ReadBack(strPiece);
    // What differs are the names of pictures, and links to a piece that was not there.
    static const QRegularExpression names(u"media/[a-zA-Z0-9]+\\.png| id=\"n[0-9]\"| class=\"anchor\""_s);
    EXPECT_EQ(QString(strText).remove(names), QString(strExpected).remove(names));
    const QByteArray document = Package::Read(strJoined, "word/document.xml");
    for (const char* szUnique :
         {"<w:bookmarkStart w:id=\"([0-9]+)\"", "r:embed=\"([^\"]+)\"", "<wp:docPr [^>]*id=\"([0-9]+)\""}) {
        QStringList found;
        auto matches = QRegularExpression(QLatin1String(szUnique)).globalMatch(QString::fromUtf8(document));
        while (matches.hasNext())
            found.append(matches.next().captured(1));
        EXPECT_EQ(found.size(), 3) << szUnique;
        EXPECT_EQ(found.removeDuplicates(), 0) << szUnique;
    }
}

// A course may come from a stranger, with names and addresses that no program of the system writes.
TEST(DocExport, TakesNothingButWhatTheCourseHoldsFromAHostileOne) {
    CSampleCourse course;
    course.Folder.Write(u"secret\\p.png"_s, c_png);
    course.Folder.MakeFolder(CSampleCourse::Resource(u"http:"_s));
    for (const QString& strName : {u"@9999999"_s, u"%009999999"_s, u"@1"_s})
        course.Folder.Write(CSampleCourse::Resource(strName), "x");
    const qint32 nLink = course.Add(c_nRootNodeId, u"外"_s, NodeType::c_nExternalLink,
                                    u"http://../../../../../secret/p.png"_s);
    const qint32 nLarge = course.Add(c_nRootNodeId, u"大"_s);
    course.WriteResource(nLarge, u"p.htm"_s, {});
    ASSERT_TRUE(QFile::resize(course.Folder.Native(CSampleCourse::Resource(u"N%1\\p.htm"_s.arg(nLarge))),
                              c_nMaxSourceText + 1));
    course.AddPage(c_nRootNodeId, u"页"_s,
                   u"<a href=../@9999999>a</a><a href=../@1>b</a><a href=../%25009999999>c</a>"
                   "<a href=../n%1/p.htm#a>d</a><img src=../n%2/><img src=../n%1/>"
                   "<img src=../http:/../../../../../secret/p.png>"_s.arg(nLarge)
                       .arg(nLink));
    const QString strTarget = DefaultTarget(course.Folder.Path(course.strProject));
    const QString strElsewhere = u"secret\\precious.txt"_s;
    course.Folder.Write(strElsewhere, "precious");
    ASSERT_TRUE(QFile::link(course.Folder.Native(strElsewhere), strTarget));

    const DocOutcome outcome = Export(course, strTarget);

    ASSERT_EQ(outcome.End, DocOutcome::EEnd::Done) << outcome.Text;
    EXPECT_EQ(course.Folder.Read(strElsewhere), "precious");
    EXPECT_FALSE(QFileInfo(strTarget).isSymLink());
    const std::string notes = outcome.Notes.join(u'\n').toStdString();
    for (const char* szNote : {"“@9999999”不在文档中", "“@1”不在文档中", "“%009999999”不在文档中"})
        EXPECT_THAT(notes, HasSubstr(szNote));
    EXPECT_THAT(outcome.Text.toStdString(), HasSubstr("，0 幅图片"));

    QFile::remove(strTarget);
    ASSERT_TRUE(QFile::link(course.Folder.Native(course.strStore), strTarget));
    EXPECT_NE(FaultOfTarget({course.Folder.Path(course.strProject), strTarget}), QString());

    // The site has the large page as it stands, and links to any place in it.
    const std::string said = course.Compile().Notes.join(u'\n').toStdString();
    EXPECT_THAT(said, HasSubstr("p.htm”过大"));
    EXPECT_THAT(said, Not(HasSubstr("p.htm#a")));
}

// Much text on few sheets: addresses.
TEST(DocExport, CountsTheSheetsOfALargeCourseThatIsLaidOutInParts) {
    CSampleCourse course;
    const qint32 nChapter = course.Add(c_nRootNodeId, u"一"_s);
    QString strLinks;
    for (int i = 0; i < 32; ++i)
        strLinks += u"<a href='http://a.cn/%1%2'>链</a>"_s.arg(i).arg(QString(100'000, u'x'));
    course.AddPage(nChapter, u"大"_s, strLinks);
    course.AddPage(nChapter, u"小"_s, u"甲"_s);
    course.AddPage(c_nRootNodeId, u"二"_s, u"乙"_s);
    const QString strTarget = DefaultTarget(course.Folder.Path(course.strProject));
    ASSERT_EQ(Export(course, strTarget).End, DocOutcome::EEnd::Done);
    const QByteArray document = Package::Read(strTarget, "word/document.xml");
    EXPECT_EQ(TextOf(document, u"TOC1"_s), u"一|3\n二|5\n"_s);
    EXPECT_EQ(TextOf(document, u"TOC2"_s), u"大|3\n小|4\n"_s);
}

TEST(DocExport, HasWordFillInThePageNumbersThatItCannotTell) {
    CSampleCourse course;
    course.AddPage(c_nRootNodeId, u"页"_s, u"x"_s);
    course.Folder.MakeFolder(u"bin"_s);
    ASSERT_TRUE(
        QFile::link(QStandardPaths::findExecutable(u"pandoc"_s), course.Folder.Native(u"bin\\pandoc"_s)));
    const QString strTarget = DefaultTarget(course.Folder.Path(course.strProject));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", course.Folder.Native(u"bin"_s).toUtf8());
    const DocOutcome outcome = Export(course, strTarget);
    qputenv("PATH", path);
    EXPECT_THAT(outcome.Notes.join(u'\n').toStdString(), HasSubstr("页码"));
    EXPECT_TRUE(HasWordFillIn(strTarget));
}

TEST(DocExport, LeavesNothingBehindWhenItCannot) {
    const struct {
        const char* Why;
        std::function<void(const CSampleCourse&)> Break;
        const char* Says;
    } rows[] = {
        {"store is none", [](const auto& c) { c.Folder.Write(c.strStore, "no database"); }, "数据库已损坏"},
        {"no converter", [](const auto&) { qputenv("PATH", "/nonexistent"); }, "软件包 pandoc"},
    };
    const QByteArray path = qgetenv("PATH");
    for (const auto& row : rows) {
        CSampleCourse course;
        course.AddPage(c_nRootNodeId, u"页"_s, u"x"_s);
        const QString strTarget = course.Folder.Native(u"旧.docx"_s);
        course.Folder.Write(u"旧.docx"_s, "old");
        row.Break(course);
        const DocOutcome outcome = Export(course, strTarget);
        qputenv("PATH", path);
        EXPECT_EQ(outcome.End, DocOutcome::EEnd::Failed) << row.Why;
        EXPECT_THAT(outcome.Text.toStdString(), HasSubstr(row.Says)) << row.Why;
        EXPECT_EQ(course.Folder.Read(u"旧.docx"_s), "old") << row.Why;
    }
}

TEST(DocExport, RefusesPlacesWhereNoDocumentMayGo) {
    CSampleCourse course;
    course.Folder.MakeFolder(u"夹.docx"_s);
    const QString strProject = course.Folder.Path(course.strProject);
    for (const QString& strTarget : {u"课程\\Data\\a.docx"_s, CSampleCourse::Resource(u"a.docx"_s),
                                     u"没有\\a.docx"_s, u"夹.docx"_s, u"a.doc"_s, u".docx"_s})
        EXPECT_NE(FaultOfTarget({strProject, course.Folder.Native(strTarget)}), QString()) << strTarget;
    EXPECT_EQ(FaultOfTarget({strProject, DefaultTarget(strProject)}), QString());

    DocProgress progress;
    progress.bCancelled = true;
    EXPECT_EQ(ExportDocument({strProject, DefaultTarget(strProject)}, TakerFor, progress).End,
              DocOutcome::EEnd::Cancelled);
    EXPECT_FALSE(QFileInfo::exists(DefaultTarget(strProject)));
}
