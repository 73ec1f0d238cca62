#include "companions/VRM/ui/RecorderWindow.h"
#include "platform/ui/MediaPlayer.h"
#include "tests/support/WindowHelp.h"
#include "video/AsfFile.h"
#include "video/Recording.h"

namespace {

constexpr int c_nPatience = 60000;

/// Stands in for the encoder: the first runs, as many as a file counts, break off once the file "full" is
/// there.
constexpr const char* c_szEncoder = R"(#!/bin/sh
runs=$(cat "${0%/*}/runs")
[ "$runs" -gt 0 ] || PATH="$VOREL_REAL_PATH" exec ffmpeg "$@"
echo $((runs - 1)) >"${0%/*}/runs"
echo out_time_us=1000000 >&2
while [ ! -e "${0%/*}/full" ]; do sleep 0.1; done
echo 'av_interleaved_write_frame(): No space left on device' >&2
exit 1
)";

class RecorderWindowTest : public ::testing::Test {
protected:
    RecorderWindowTest() {
        m_folder.Write(u"课 一\\Template.prj"_s, "[Course]\r\nName=C++\r\n");
        QDirIterator templates(u"/usr/lib/libreoffice/share/template"_s, {u"Candy.otp"_s}, QDir::Files,
                               QDirIterator::Subdirectories);
        EXPECT_TRUE(QFile::copy(templates.next(), Presentation()));
        m_folder.Write(u"bin\\ffmpeg"_s, c_szEncoder);
        QFile::setPermissions(m_folder.Native(u"bin/ffmpeg"_s), QFile::ReadOwner | QFile::ExeOwner);
        FailTimes(0);
        qputenv("VOREL_REAL_PATH", m_path);
        qputenv("PATH", QFile::encodeName(m_folder.Native(u"bin"_s)) + ':' + m_path);
    }
    ~RecorderWindowTest() override { qputenv("PATH", m_path); }

    void FailTimes(int nTimes) { m_folder.Write(u"bin\\runs"_s, QByteArray::number(nTimes)); }
    QString Presentation() const { return m_folder.Native(u"讲 稿.odp"_s); }
    SRecorderRequest Request() const {
        return ReadRecorderRequest({m_folder.Native(u"课 一/Template.prj"_s),
                                    QString::fromLatin1(CVideoKey(u"示范大学"_s).GetRecorderKey()->Modulus),
                                    u"219"_s});
    }
    template <class T>
    T& The(const char* szName) {
        return *m_pWindow->findChild<T*>(QString::fromLatin1(szName));
    }
    void Press(const char* szButton) {
        auto& button = The<QPushButton>(szButton);
        EXPECT_TRUE(button.isVisible() && button.isEnabled()) << szButton;
        QTest::mouseClick(&button, Qt::LeftButton);
    }
    static void Answer(QDialog& dialog, QMessageBox::ButtonRole role) {
        auto& box = static_cast<QMessageBox&>(dialog);
        for (QAbstractButton* pButton : box.buttons()) {
            if (box.buttonRole(pButton) == role)
                return pButton->click();
        }
        ADD_FAILURE() << "no such button";
    }
    void Open() {
        m_pWindow = std::make_unique<CRecorderWindow>(Request());
        m_pWindow->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pWindow.get()));
    }
    /// nSource from the list's end: 0 is the film that is there.
    void Begin(int nSourceFromEnd) {
        The<QLineEdit>("presentation").setText(Presentation());
        auto& source = The<QComboBox>("source");
        source.setCurrentIndex(nSourceFromEnd < 0 ? 0 : source.count() - 1);
        if (nSourceFromEnd == 0)
            The<QLineEdit>("film").setText(QStringLiteral(VOREL_FILM));
        Press("start");
    }
    bool Shows(const char* szName) {
        return QTest::qWaitFor([&] { return The<QWidget>(szName).isVisible(); }, c_nPatience);
    }
    /// Behind its end.
    bool IsDone() {
        return QTest::qWaitFor([&] { return The<QPushButton>("end").text() == u"关闭(&C)"_s; }, c_nPatience);
    }
    SAsfScript Lecture() const { return ReadAsfScript(FilmPath(Request().strFolder)); }

    const QByteArray m_path = qgetenv("PATH");
    CTempFolder m_folder;
    std::unique_ptr<CRecorderWindow> m_pWindow;
};

// The film that is there is copied while the person is at it with the slides: whatever becomes of the copy,
// the times stay.
TEST_F(RecorderWindowTest, TimesOutliveACopyThatFails) {
    FailTimes(2);
    Open();
    Begin(0);
    ASSERT_TRUE(Shows("next"));
    const auto& player = The<CMediaPlayer>("player");
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.GetPosition() > 500; }, c_nPatience));
    Press("next");
    const double dTurned = double(player.GetPosition());
    m_folder.Write(u"bin\\full"_s, {});
    QTest::qWait(1000);
    EXPECT_TRUE(The<QWidget>("next").isVisible()) << "a failure behind it does not disturb";
    QString strAsked;
    WhenDialogOpens([&](QDialog& dialog) {
        strAsked = static_cast<QMessageBox&>(dialog).text();
        FailTimes(0);
        Answer(dialog, QMessageBox::YesRole);
    });
    Press("stop");
    ASSERT_TRUE(IsDone());
    EXPECT_TRUE(strAsked.startsWith(u"磁盘空间不足"_s)) << strAsked;
    ASSERT_EQ(Lecture().Markers.size(), 2);
    EXPECT_NEAR(double(Lecture().Markers[1].nTime), dTurned, 300);
    Press("end");
    EXPECT_EQ(m_pWindow->result(), QDialog::Accepted);
    EXPECT_FALSE(m_folder.Exists(u"课 一/recorded.part"_s));
}

// The power fails in the middle of a lecture. All that is on the disk by then is taken up again.
TEST_F(RecorderWindowTest, TimesOutliveARecorderThatIsKilled) {
    Open();
    Begin(0);
    ASSERT_TRUE(Shows("next"));
    const auto& player = The<CMediaPlayer>("player");
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.GetPosition() > 500; }, c_nPatience));
    Press("next");
    const double dTurned = double(player.GetPosition());
    const QByteArray times = m_folder.Read(u"课 一\\recorded.times"_s);
    EXPECT_EQ(times.count("\nslide "), 2) << times.constData();
    m_pWindow.reset();
    EXPECT_FALSE(m_folder.Exists(u"课 一/recorded.times"_s));

    m_folder.Write(u"课 一\\recorded.times"_s, times + "slide 99");
    m_folder.Write(u"课 一\\recorded.part"_s, "what there is of the copy");
    Open();
    EXPECT_EQ(The<QLineEdit>("film").text(), QStringLiteral(VOREL_FILM));
    EXPECT_EQ(The<QLineEdit>("presentation").text(), Presentation());
    EXPECT_TRUE(The<QCheckBox>("oldTimes").isChecked());
    Press("start");
    ASSERT_TRUE(IsDone());
    ASSERT_EQ(Lecture().Markers.size(), 2);
    EXPECT_NEAR(double(Lecture().Markers[1].nTime), dTurned, 300);
    m_pWindow.reset();
    EXPECT_TRUE(!m_folder.Exists(u"课 一/kept.film"_s) && !m_folder.Exists(u"课 一/kept.times"_s));
}

TEST_F(RecorderWindowTest, GivingUpTheSlidesLeadsBackToTheChoice) {
    Open();
    Begin(0);
    ASSERT_TRUE(Shows("end"));
    Press("end");
    ASSERT_TRUE(Shows("start"));
    EXPECT_EQ(The<QLineEdit>("presentation").text(), Presentation());
    m_pWindow->reject();
    EXPECT_EQ(m_pWindow->result(), QDialog::Rejected);
    m_pWindow.reset();
    EXPECT_EQ(QDir(m_folder.Native(u"课 一"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"Template.prj"_s});
}

// A pause takes no time of the film, and what breaks off goes on where it was.
TEST_F(RecorderWindowTest, ALivePauseCostsNoTime) {
    if (QGuiApplication::platformName() != u"xcb"_s)
        GTEST_SKIP() << "no screen that could be recorded";
    Open();
    Begin(-1);
    ASSERT_TRUE(Shows("next"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return The<QWidget>("pause").isEnabled(); }, c_nPatience));
    EXPECT_SOON(!The<QLabel>("livePicture").pixmap(Qt::ReturnByValue).isNull());
    QTest::qWait(1000);
    Press("pause");
    ASSERT_TRUE(QTest::qWaitFor([&] { return The<QWidget>("pause").isEnabled(); }, c_nPatience));
    Press("next");
    QTest::qWait(2500);
    Press("pause");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return The<QLabel>("time").text().startsWith(u"正在录制"_s); }, c_nPatience));
    QTest::qWait(1000);
    Press("next");
    QTest::qWait(500);
    WhenDialogOpens([](QDialog& dialog) { Answer(dialog, QMessageBox::YesRole); });
    Press("stop");
    ASSERT_TRUE(IsDone());
    const QList<SAsfMarker> markers = Lecture().Markers;
    ASSERT_EQ(markers.size(), 3);
    EXPECT_GT(markers[1].nTime, 500);
    EXPECT_GT(markers[2].nTime, markers[1].nTime + 500);
    EXPECT_LT(markers[2].nTime, 6000) << "the pause is no part of the film";
    EXPECT_FALSE(m_folder.Exists(u"课 一/recorded2.part"_s));
}

TEST_F(RecorderWindowTest, AMicrophoneThatDoesNotOpenIsNamed) {
    qputenv("PULSE_SERVER", "unix:/nonexistent");
    CFilmRun film;
    std::optional<bool> well;
    film.OnEnd = [&](bool bWell) { well = bWell; };
    const SFilmSource microphone{SFilmSource::EKind::Microphone, {}, {}};
    film.Start(EncoderArguments(microphone, true, m_folder.Native(u"a.asf"_s)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return well.has_value(); }, c_nPatience));
    qunsetenv("PULSE_SERVER");
    EXPECT_EQ(well, false);
    EXPECT_TRUE(film.FailureText(microphone.Kind).contains(u"麦克风"_s));
}

// What a recorder that was ended by force has left is no lecture yet, and nobody can give it once more.
TEST_F(RecorderWindowTest, WhatAnEarlierRecorderLeftIsOffered) {
    QFile::copy(QStringLiteral(VOREL_FILM), m_folder.Native(u"课 一/recorded.part"_s));
    Open();
    EXPECT_EQ(The<QLineEdit>("film").text(), m_folder.Native(u"课 一/kept.film"_s));
    EXPECT_TRUE(The<QWidget>("film").isEnabled());
    m_pWindow->reject();
    m_pWindow.reset();
    EXPECT_TRUE(m_folder.Exists(u"课 一/kept.film"_s)) << "who leaves loses nothing";
    EXPECT_TRUE(HoldsRecording(Request().strFolder) && !HasFilm(Request().strFolder));
}

} // namespace
