#include "companions/VRM/FilmRun.h"
#include "companions/VRM/Lecture.h"
#include "foundation/Exceptions.h"
#include "tests/support/Testing.h"
#include "video/Outline.h"
#include "video/Recording.h"
#include "video/VideoScripts.h"

namespace {

class RecorderTest : public ::testing::Test {
protected:
    RecorderTest() {
        m_folder.Write(u"课 一\\Template.prj"_s, "[Course]\r\nName=C++\r\n");
        m_request = ReadRecorderRequest({m_folder.Native(u"课 一/Template.prj"_s),
                                         QString::fromLatin1(m_key.GetRecorderKey()->Modulus), u"219"_s});
    }
    CTempFolder m_folder;
    CVideoKey m_key{u"示范大学"_s};
    SRecorderRequest m_request;
};

// What the recorder writes is what the preview reads: each command of the film leads to its script.
TEST_F(RecorderTest, ALectureReadsBackAsItWasRecorded) {
    const SSlides slides{
        {u"slides.files/slide0001.htm"_s, u"slides.files/slide0002.htm"_s}, {}, {u"一"_s, u"\"二\""_s}};
    CLectureTimes times(slides.Titles);
    times.MovePointer(5, 5, 0);
    times.ShowSlide(1, 700);
    times.ShowSlide(0, 0);
    times.MovePointer(100, 200, 1000);
    times.MovePointer(300, 300, 1100);
    times.MovePointer(101, 201, 1500);
    times.ShowSlide(1, 3000);
    times.MovePointer(400, 500, 2900);
    times.ShowSlide(0, 6000);
    // Turned to and fro in a pause.
    times.ShowSlide(1, 7000);
    times.MovePointer(7, 7, 7000);
    times.ShowSlide(0, 7000);
    m_folder.Write(u"课 一\\recorded.part"_s, ReadTestFile(VOREL_FILM));
    WriteLecture(m_request, slides, 1.5, times, {});

    const QString strFolder = m_request.strFolder;
    EXPECT_EQ(FilmPath(strFolder), strFolder + u"\\lecture.asf"_s);
    EXPECT_FALSE(m_folder.Exists(u"课 一\\recorded.part"_s));
    QStringList outline;
    EXPECT_TRUE(ReadOutline(strFolder + OutlineFileBelow(), outline));
    EXPECT_EQ(outline, (QStringList{u"一"_s, u"\"二\""_s, u"一"_s}));
    const SVideoScripts scripts = ReadVideoScripts(strFolder, m_key);
    QStringList called;
    const SAsfScript film = ReadAsfScript(FilmPath(strFolder));
    for (const SAsfCommand& command : film.Commands)
        called.append(QString::number(command.nTime) + u' ' + scripts.Called(command.strParameter));
    EXPECT_EQ(called, (QStringList{u"0 ShowSlide(1)"_s, u"1000 MoveMouse(100,200)"_s, u"3000 ShowSlide(2)"_s,
                                   u"3000 MoveMouse(400,500)"_s, u"6000 ShowSlide(1)"_s}));
    ASSERT_EQ(film.Markers.size(), 3);
    EXPECT_EQ(film.Markers[2].nTime, 6000);
    const QByteArray page = m_folder.Read(u"课 一\\ppt.htm"_s);
    EXPECT_TRUE(page.contains("\"slides.files/slide0002.htm\"") && page.contains("g_dRatio = 1.5000") &&
                !page.contains("%PAGES%"));

    RemoveLecture(strFolder);
    EXPECT_EQ(QDir(m_folder.Native(u"课 一"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"Template.prj"_s});
}

// A recorder that was killed behind the joining: the parts are in the whole already.
TEST_F(RecorderTest, PartsAreJoinedOnce) {
    const QString strFolder = m_request.strFolder;
    m_folder.Write(u"课 一\\recorded.part"_s, "1");
    m_folder.Write(u"课 一\\recorded2.part"_s, "2");
    m_folder.Write(u"课 一\\recorded.part.joined"_s, "12");
    JoinParts(strFolder, WorkingFilmPath, {}, false, {});
    EXPECT_EQ(m_folder.Read(u"课 一\\recorded.part"_s), "12");
    EXPECT_FALSE(m_folder.Exists(u"课 一\\recorded2.part"_s));
    EXPECT_FALSE(m_folder.Exists(u"课 一\\recorded.part.joined"_s));
}

TEST_F(RecorderTest, ArgumentsThatAreNoneAreRefused) {
    const QString strProject = m_folder.Native(u"课 一/Template.prj"_s);
    const QString strModulus = QString::fromLatin1(m_request.Key.Modulus);
    EXPECT_EQ(
        ReadRecorderRequest({strProject.section(u' ', 0, 0), strProject.section(u' ', 1), strModulus, u"7"_s})
            .strProject,
        m_request.strProject)
        << "a path in pieces";
    for (const QStringList& arguments :
         {QStringList{}, QStringList{strProject}, QStringList{strProject, u"12"_s, u"7"_s},
          QStringList{strProject, strModulus, u"x"_s},
          QStringList{m_folder.Native(u"none"_s), strModulus, u"7"_s}})
        EXPECT_THROW(ReadRecorderRequest(arguments), Torvane::CRunException) << arguments.size();
}

// A name that the encoder would take for an option, a list or an address is a file's all the same.
TEST_F(RecorderTest, NamesOfFilesAreNamesOfFiles) {
    const QStringList arguments =
        EncoderArguments({SFilmSource::EKind::File, u"concat:a|b"_s, {}}, true, u"-y.asf"_s);
    EXPECT_TRUE(arguments.contains(u"file:concat:a|b"_s) && arguments.last() == u"file:-y.asf"_s);
    EXPECT_FALSE(arguments.contains(u"alsa"_s) || arguments.contains(u"pulse"_s));
}

} // namespace
