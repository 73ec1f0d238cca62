#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "office/Converter.h"
#include "office/OfficeFiles.h"
#include "tests/support/Environment.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Testing.h"

#include <QTcpServer>

#include <array>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Torvane::Office;

namespace {

/// Runs with a folder for temporary files and with the delivered data of its own, and leaves the one empty.
class OfficeFiles : public ::testing::Test {
protected:
    OfficeFiles() {
        m_folder.MakeFolder(u"tmp"_s);
        m_folder.MakeFolder(u"out"_s);
        m_folder.MakeFolder(u"SysData/OfficeTemplate"_s);
        QFile::copy(QStringLiteral(OFFICE_TEMPLATES "/torvaneframe.htm"),
                    m_folder.Native(u"SysData/OfficeTemplate/torvaneframe.htm"_s));
        CSysInfo::Reset(m_folder.Path(u"Vorel.exe"_s));
    }
    ~OfficeFiles() override { EXPECT_EQ(Names(u"tmp"_s), QStringList()); }

    QStringList Names(const QString& strBelow) const { return m_folder.Names(strBelow); }
    QString Text(const QString& strBelow) const { return QString::fromUtf8(m_folder.Read(strBelow)); }

    /// Puts a shell script in the converter's place. Its own folder is $own, the one for its output $out.
    void InsteadOfConverting(const QByteArray& script) {
        m_folder.WriteProgram(u"bin/soffice"_s, "#!/bin/sh\nown=$(dirname \"$0\")\nfor next; do\n"
                                                "[ \"$last\" = --outdir ] && out=$next\nlast=$next\ndone\n" +
                                                    script);
        TakeProgramsFrom(u"bin"_s);
    }
    void TakeProgramsFrom(const QString& strFolder) {
        m_environment.Set("PATH", m_folder.Native(strFolder) + u':' + qEnvironmentVariable("PATH"));
    }
    /// Starts another program, tells its number, and waits.
    void WaitInsteadOfConverting() { InsteadOfConverting("sleep 600 &\necho $! > \"$own/pid\"\nwait\n"); }
    int WaitingProgram() const { return m_folder.Read(u"bin/pid"_s).trimmed().toInt(); }
    static bool Runs(int nProgram) {
        QFile file(u"/proc/%1/stat"_s.arg(nProgram));
        // One that nobody waits for stays as a zombie.
        return file.open(QIODevice::ReadOnly) && !file.readAll().contains(") Z ");
    }

    CTempFolder m_folder;
    CEnvironment m_environment{{"TMPDIR", m_folder.Native(u"tmp"_s)}};
};

TEST_F(OfficeFiles, EachKindNeedsItsModule) {
    m_folder.WriteProgram(u"lo/program/soffice"_s, "x");
    for (const QString& strFile : {u"lo/share/registry/main.xcd"_s, u"lo/share/registry/writer.xcd"_s})
        m_folder.Write(strFile, "x");
    TakeProgramsFrom(u"lo/program"_s);
    EXPECT_TRUE(IsConverterInstalled() && IsConverterInstalled(u"a.doc"_s));
    EXPECT_FALSE(IsConverterInstalled(u"a.xls"_s));
    m_folder.Write(u"in.ppt"_s, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    EXPECT_EQ(SaveOfficeFileAsHtm(m_folder.Path(u"in.ppt"_s), m_folder.Path(u"out\\a.htm"_s)),
              EConversion::NoConverter);
}

// A document with a name that a command line, an address and a page could each take amiss.
TEST_F(OfficeFiles, ADocumentBecomesOnePageWithItsPictures) {
    const QString strName = u"in\\第1章 \"绪 论\" & 'x' #1%20.rtf"_s;
    const QByteArray picture = "89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c494"
                               "44154789c63f8cfc0000003010100"
                               "c9fe92ef0000000049454e44ae426082";
    m_folder.Write(strName,
                   "{\\rtf1\\ansi\\ansicpg936{\\fonttbl{\\f0\\fcharset134 \\'cb\\'ce\\'cc\\'e5;}}"
                   "{\\header \\pard page head\\par}"
                   "\\pard\\f0 \\'ce\\'c4\\'b1\\'be <x>\\par "
                   "{\\field{\\*\\fldinst HYPERLINK \"file:///home/li/secret.doc\"}{\\fldrslt near}} "
                   "{\\field{\\*\\fldinst HYPERLINK \"http://example.org/\"}{\\fldrslt far}}\\par "
                   "{\\pict\\pngblip\\picw1\\pich1\\picwgoal300\\pichgoal300 " +
                       picture +
                       "}\\par "
                       "\\trowd\\cellx2000\\cellx4000\\intbl A1\\cell B1\\cell\\row\\pard}");
    ASSERT_EQ(SaveOfficeFileAsHtm(m_folder.Path(strName), m_folder.Path(u"out\\讲 义.htm"_s)),
              EConversion::Done);
    EXPECT_EQ(Names(u"in"_s), QStringList{strName.mid(3)});
    EXPECT_EQ(Names(u"out"_s), (QStringList{u"讲 义.files"_s, u"讲 义.htm"_s}));
    EXPECT_EQ(Names(u"out/讲 义.files"_s), QStringList{u"image001.png"_s});
    const QString strPage = Text(u"out/讲 义.htm"_s);
    EXPECT_TRUE(strPage.contains(u"文本"_s) && strPage.contains(u"&lt;x&gt;"_s)) << strPage;
    EXPECT_TRUE(strPage.contains(u"<title>第1章 &quot;绪 论&quot; &amp; 'x' #1%20</title>"_s));
    EXPECT_TRUE(strPage.contains(u"src=\"%E8%AE%B2%20%E4%B9%89.files/image001.png\""_s));
    EXPECT_TRUE(strPage.contains(u"href=\"http://example.org/\""_s));
    EXPECT_TRUE(strPage.contains(QRegularExpression(u"<td.*A1.*</td>.*<td.*B1.*</td>"_s,
                                                    QRegularExpression::DotMatchesEverythingOption)));
    EXPECT_FALSE(strPage.contains(u"secret"_s));
    EXPECT_FALSE(strPage.contains(u"page head"_s));
}

// What other systems export as ".xls" is often Office's XML.
TEST_F(OfficeFiles, AWorkbookShowsEachSheetWithItsName) {
    QByteArray sheets;
    for (const char* szName : {"成绩", "A&amp;B"})
        sheets += QByteArray("<Worksheet ss:Name=\"") + szName +
                  "\"><Table><Row><Cell><Data ss:Type=\"String\">" + szName +
                  " 1</Data></Cell><Cell><Data ss:Type=\"Number\">90</Data></Cell></Row></Table></Worksheet>";
    m_folder.Write(u"in.xls"_s, "<?xml version=\"1.0\"?><?mso-application progid=\"Excel.Sheet\"?>"
                                "<Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadsheet\" "
                                "xmlns:ss=\"urn:schemas-microsoft-com:office:spreadsheet\">" +
                                    sheets + "</Workbook>");
    QString strName;
    ASSERT_EQ(ConvertOfficeToHtml(m_folder.Path(u"in.xls"_s), m_folder.Path(u"out\\"_s), strName),
              EConversion::Done);
    EXPECT_EQ(strName, u"a.htm"_s);
    EXPECT_EQ(Names(u"out"_s), QStringList{u"a.htm"_s});
    const QString strPage = Text(u"out/a.htm"_s);
    EXPECT_TRUE(
        strPage.contains(u"<li><a href=\"#table0\">成绩</a></li><li><a href=\"#table1\">A&amp;B</a></li>"_s))
        << strPage;
    EXPECT_TRUE(strPage.contains(u"<h2 id=\"table1\">A&amp;B</h2>"_s));
    EXPECT_TRUE(strPage.contains(u">A&amp;B 1</td>"_s));
    EXPECT_FALSE(strPage.contains(u"Overview"_s));
}

TEST_F(OfficeFiles, APresentationBecomesAFolderOfSlides) {
    for (const QString& strEnding : {u"odp"_s, u"pptx"_s}) {
        const QString strOut = u"out/"_s + strEnding;
        // Its page's name is free, the folder's is not.
        m_folder.Write(strOut + u"/a.files/mine"_s, "x");
        QFile::copy(QStringLiteral(OFFICE_DATA "/slides.") + strEnding,
                    m_folder.Native(u"课件."_s + strEnding));
        QString strName;
        ASSERT_EQ(ConvertOfficeToHtml(m_folder.Path(u"课件."_s + strEnding),
                                      m_folder.Path(u"out\\"_s + strEnding), strName),
                  EConversion::Done);
        EXPECT_EQ(strName, u"a1.files\\torvaneframe.htm"_s);
        EXPECT_EQ(Names(strOut), (QStringList{u"a.files"_s, u"a1.files"_s, u"a1.htm"_s}));
        const QString strFiles = strOut + u"/a1.files"_s;
        EXPECT_TRUE(IsPptFrameFolder(m_folder.Path(u"out\\"_s + strEnding + u"\\a1.files\\"_s)));
        EXPECT_FALSE(IsPptFrameFolder(m_folder.Path(u"out\\"_s + strEnding)));
        // Three of the four are shown, each with its picture.
        EXPECT_EQ(Names(strFiles).filter(QRegularExpression(u"^slide\\d+\\.(htm|png)$"_s)),
                  (QStringList{u"slide0001.htm"_s, u"slide0001.png"_s, u"slide0002.htm"_s, u"slide0002.png"_s,
                               u"slide0003.htm"_s, u"slide0003.png"_s}));
        const QString strFrame = Text(strFiles + u"/frame.htm"_s);
        EXPECT_TRUE(strFrame.contains(
            u"<li><a href=\"slide0002.htm\" target=\"PPTSld\">第二章 A&lt;B &amp; &quot;C&quot;</a></li>"_s))
            << strFrame;
        const QString strThird = Text(strFiles + u"/slide0003.htm"_s);
        EXPECT_TRUE(strThird.contains(u"<title>第三章 应用</title>"_s));
        EXPECT_TRUE(strThird.contains(u"href=\"http://example.org/?a=1&amp;b=2\">网站</a>"_s)) << strThird;
        EXPECT_TRUE(Text(strFiles + u"/slide0002.htm"_s).contains(u"<li>链路层<ul>\n<li>以太网</li></ul>"_s));
        EXPECT_TRUE(Text(strOut + u"/a1.htm"_s).contains(u"src=\"a1.files/frame.htm\""_s));
        EXPECT_TRUE(
            m_folder.Read(strFiles + u"/torvaneframe.htm"_s).contains("var g_FrameFile =\"../a1.htm\";"));
        for (const QString& strPage : Names(strFiles)) {
            EXPECT_FALSE(Text(strFiles + u'/' + strPage).contains(u"讲稿"_s)) << strPage;
            EXPECT_FALSE(Text(strFiles + u'/' + strPage).contains(u"备用"_s)) << strPage;
        }
    }
}

TEST_F(OfficeFiles, WhatIsNoOfficeFileFailsAndLeavesNothing) {
    m_folder.Write(u"text.doc"_s, "plain text");
    m_folder.Write(u"empty.docx"_s, "");
    m_folder.Write(u"half.pptx"_s, ReadTestFile(OFFICE_DATA "/slides.pptx").first(9000));
    m_folder.Write(u"page.ppt"_s, "<html><body>x</body></html>");
    m_folder.MakeFolder(u"folder.doc"_s);
    m_folder.MakePipe(u"pipe.doc"_s);
    for (const QString& strName : {u"text.doc"_s, u"empty.docx"_s, u"half.pptx"_s, u"page.ppt"_s,
                                   u"folder.doc"_s, u"pipe.doc"_s, u"missing.doc"_s}) {
        QString strResult = u"untouched"_s;
        EXPECT_EQ(ConvertOfficeToHtml(m_folder.Path(strName), m_folder.Path(u"out"_s), strResult),
                  EConversion::Failed)
            << strName;
        EXPECT_EQ(strResult, u"untouched"_s);
    }
    EXPECT_EQ(Names(u"out"_s), QStringList());
}

// A stranger's document asks for a picture of the net, for one of this machine, and to run a macro.
TEST_F(OfficeFiles, ADocumentLoadsAndRunsNothing) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    m_folder.Write(u"own.png"_s, QByteArray::fromHex("89504e470d0a1a0a"));
    const QString strDocument = QString::fromUtf8(ReadTestFile(OFFICE_DATA "/hostile.fodt"));
    m_folder.Write(u"in.doc"_s, strDocument
                                    .arg(m_folder.Native(u"ran"_s), QString::number(server.serverPort()),
                                         m_folder.Native(u"own.png"_s))
                                    .toUtf8());
    ASSERT_EQ(SaveOfficeFileAsHtm(m_folder.Path(u"in.doc"_s), m_folder.Path(u"out\\a.htm"_s)),
              EConversion::Done);
    EXPECT_FALSE(server.waitForNewConnection(0));
    EXPECT_FALSE(m_folder.Exists(u"ran"_s));
    EXPECT_EQ(Names(u"out"_s), QStringList{u"a.htm"_s});
    const QString strPage = Text(u"out/a.htm"_s);
    EXPECT_TRUE(strPage.contains(u"words"_s));
    EXPECT_FALSE(strPage.contains(u"<img"_s)) << strPage;
}

TEST_F(OfficeFiles, ACancelEndsTheConverterAndAllThatItStarted) {
    WaitInsteadOfConverting();
    m_folder.Write(u"in.rtf"_s, "{\\rtf1 x}");
    QElapsedTimer sinceCancel;
    const auto mayGoOn = [&] {
        if (WaitingProgram() > 0 && !sinceCancel.isValid())
            sinceCancel.start();
        return !sinceCancel.isValid();
    };
    EXPECT_EQ(SaveOfficeFileAsHtm(m_folder.Path(u"in.rtf"_s), m_folder.Path(u"out\\a.htm"_s), mayGoOn),
              EConversion::Cancelled);
    EXPECT_LT(sinceCancel.elapsed(), 2000);
    while (Runs(WaitingProgram()) && sinceCancel.elapsed() < 5000)
        ::usleep(10'000);
    EXPECT_FALSE(Runs(WaitingProgram()));
    EXPECT_EQ(Names(u"out"_s), QStringList());
}

TEST_F(OfficeFiles, AConverterThatHangsIsGivenUp) {
    WaitInsteadOfConverting();
    CConverter converter({}, 300);
    EXPECT_EQ(converter.Convert(u"/none"_s, u"html"_s, u"none.html"_s), EConversion::TimedOut);
    EXPECT_EQ(converter.State(), EConversion::TimedOut);
}

// A killed program can't clean up; a second one that runs must not lose its files to the next.
TEST_F(OfficeFiles, FoldersOfKilledProgramsGoAndThoseInUseStay) {
    const CConverter running({}, 10'000);
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t nChild = ::fork();
    if (nChild == 0) {
        const CConverter killed({}, 10'000);
        const QByteArray folder = QFile::encodeName(killed.Path({}));
        (void)!::write(pipe[1], folder.constData(), size_t(folder.size()));
        ::kill(::getpid(), SIGKILL);
    }
    ::waitpid(nChild, nullptr, 0);
    std::array<char, 1000> folder{};
    ASSERT_GT(::read(pipe[0], folder.data(), folder.size() - 1), 0);
    ASSERT_TRUE(QFileInfo::exists(QFile::decodeName(folder.data())));
    RemoveLeftFolders();
    EXPECT_FALSE(QFileInfo::exists(QFile::decodeName(folder.data())));
    EXPECT_TRUE(QFileInfo::exists(running.Path(u"profile"_s)));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(OfficeFiles, WhatTheConverterWritesHasBounds) {
    m_folder.Write(u"in.rtf"_s, "{\\rtf1 x}");
    const auto convert = [this](const QByteArray& script) {
        InsteadOfConverting(script);
        return SaveOfficeFileAsHtm(m_folder.Path(u"in.rtf"_s), m_folder.Path(u"out\\a.htm"_s));
    };
    EXPECT_EQ(convert("echo '<p>x' > \"$out/source.html\"\ntruncate -s 33M \"$out/source.html\"\n"),
              EConversion::Failed);
    EXPECT_EQ(convert("truncate -s 600M \"$own/large\"\n"), EConversion::Failed);
    EXPECT_EQ(m_folder.Read(u"bin/large"_s).size(), 0);
    EXPECT_EQ(Names(u"out"_s), QStringList());
    // A picture that is a page by itself stays behind.
    EXPECT_EQ(convert("echo '<img src=a.svg><img src=b.png>' > \"$out/source.html\"\n"
                      "echo x > \"$out/a.svg\"\necho x > \"$out/b.png\"\n"),
              EConversion::Done);
    EXPECT_EQ(Names(u"out/a.files"_s), QStringList{u"image001.png"_s});
}

// The profile keeps documents from running and loading anything.
TEST_F(OfficeFiles, WithoutItsWholeProfileNothingIsConverted) {
    std::optional<CFileSizeLimit> limit(500);
    CConverter converter({}, 10'000);
    limit.reset();
    EXPECT_FALSE(converter.IsReady());
    EXPECT_EQ(converter.Convert(u"/none"_s, u"html"_s, u"none.html"_s), EConversion::Failed);
}

// The replaced lines to the byte. What becomes shorter leaves its old end behind.
TEST_F(OfficeFiles, TheFramePageNamesThePresentation) {
    const QByteArray page = "<link id=Main-File rel=Main-File href=\"../%PPTName%.htm\">\n"
                            "var g_FrameFile = \"../%PPTName%.htm\";\r\n<!--0123456789abcdef-->";
    m_folder.Write(u"SysData/OfficeTemplate/torvaneframe.htm"_s, page);
    m_folder.MakeFolder(u"f"_s);
    ASSERT_TRUE(FixFramePage(u"a"_s, m_folder.Path(u"f"_s)));
    EXPECT_EQ(m_folder.Read(u"f/torvaneframe.htm"_s),
              "<link id=Main-File rel=Main-File href=\"../a.htm\">\r\n"
              "var g_FrameFile =\"../a.htm\";\r\n<!--0123456789abcdef-->\r\n56789abcdef-->");
    ASSERT_TRUE(FixFramePage(u"很长的演示文稿名字"_s, m_folder.Path(u"f\\"_s)));
    const QByteArray name = CodePage::Encode(u"很长的演示文稿名字"_s);
    EXPECT_EQ(m_folder.Read(u"f/torvaneframe.htm"_s), "<link id=Main-File rel=Main-File href=\"../" + name +
                                                          ".htm\">\r\nvar g_FrameFile =\"../" + name +
                                                          ".htm\";\r\n<!--0123456789abcdef-->\r\n");
    // A name that would end the text around it runs as a script of the page.
    EXPECT_FALSE(FixFramePage(u"a\";alert(1);//"_s, m_folder.Path(u"f"_s)));
    EXPECT_FALSE(FixFramePage(u"a"_s, m_folder.Path(u"missing"_s)));
    QFile::remove(m_folder.Native(u"SysData/OfficeTemplate/torvaneframe.htm"_s));
    EXPECT_FALSE(FixFramePage(u"a"_s, m_folder.Path(u"f"_s)));
}

// The end of the page is what a name of one letter leaves behind: it must show nothing.
TEST_F(OfficeFiles, TheDeliveredFramePageEndsInBlanks) {
    const QByteArray page = m_folder.Read(u"SysData/OfficeTemplate/torvaneframe.htm"_s);
    EXPECT_TRUE(page.contains("<link id=Main-File rel=Main-File href=\"../%PPTName%.htm\">\r\n"));
    EXPECT_TRUE(page.contains("var g_FrameFile = \"../%PPTName%.htm\";\r\n"));
    EXPECT_EQ(page.right(20).trimmed(), "");
}

} // namespace
