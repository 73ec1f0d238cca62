#include "platform/ui/MediaPlayer.h"
#include "platform/ui/MediaKinds.h"
#include "platform/ui/MediaView.h"
#include "tests/support/WindowHelp.h"

#include <QSlider>

namespace {

constexpr int c_nClipMilliseconds = 1000;

/// One second of a moving picture, as Windows Media, without sound; or another film.
QByteArray Clip(const QString& strName = u"clip.wmv"_s) {
    QFile file(QStringLiteral(VOREL_MEDIA_SAMPLES "/") + strName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class MediaPlayerTest : public ::testing::Test {
protected:
    void Show(QWidget& widget) {
        widget.resize(480, 360);
        widget.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    }
    CTempFolder m_folder;
};

TEST_F(MediaPlayerTest, AFilmPlaysToItsEndAndAgain) {
    m_folder.Write(u"片 #1%20.wmv"_s, Clip());
    CMediaPlayer player;
    Show(player);
    QSignalSpy loaded(&player, &CMediaPlayer::Loaded);
    QSignalSpy ended(&player, &CMediaPlayer::Ended);
    player.Load(m_folder.Path(u"片 #1%20.wmv"_s));
    player.Play();
    ASSERT_TRUE(loaded.wait(20000));
    EXPECT_NEAR(player.GetDuration(), c_nClipMilliseconds, 200);
    EXPECT_TRUE(player.HasPicture() && player.CanSeek());
    ASSERT_TRUE(ended.wait(20000));
    EXPECT_EQ(player.GetPicture().size(), QSize(64, 48));
    EXPECT_SOON(player.GetState() == EMediaState::Stopped);
    EXPECT_EQ(player.GetPosition(), player.GetDuration());
    player.Play();
    EXPECT_TRUE(ended.wait(20000));
}

// Films of one colour, #ff3020: of high definition, which the file doesn't say, and in the full range.
TEST_F(MediaPlayerTest, ColoursAreThoseOfTheFilm) {
    CMediaPlayer player;
    Show(player);
    for (const QString& strFilm : {u"hd.avi"_s, u"full.avi"_s}) {
        m_folder.Write(strFilm, Clip(strFilm));
        player.Load(m_folder.Path(strFilm));
        player.Play();
        ASSERT_SOON(!player.GetPicture().isNull()) << strFilm;
        const QColor colour = player.GetPicture().pixelColor(20, 20);
        EXPECT_NEAR(colour.red(), 0xFF, 6) << strFilm;
        EXPECT_NEAR(colour.green(), 0x30, 6) << strFilm;
        EXPECT_NEAR(colour.blue(), 0x20, 6) << strFilm;
    }
}

TEST_F(MediaPlayerTest, APausedFilmStandsWhereItIsTaken) {
    m_folder.Write(u"a.wmv"_s, Clip());
    CMediaPlayer player;
    Show(player);
    player.Load(m_folder.Path(u"a.wmv"_s));
    player.Play();
    ASSERT_SOON(player.GetPosition() > 0);
    player.Pause();
    ASSERT_SOON(player.GetState() == EMediaState::Paused);
    // As a person drags the slider: the last place counts.
    for (int nPlace = 0; nPlace <= 600; nPlace += 100)
        player.Seek(nPlace);
    EXPECT_SOON(qAbs(player.GetPosition() - 600) < 150) << player.GetPosition();
    EXPECT_EQ(player.GetState(), EMediaState::Paused);
    // The file goes while it plays, and another is asked for and dropped at once.
    player.Play();
    QFile::remove(m_folder.Native(u"a.wmv"_s));
    player.Load(m_folder.Path(u"a.wmv"_s));
    player.Unload();
    EXPECT_TRUE(player.GetPicture().isNull());
    EXPECT_EQ(player.GetState(), EMediaState::Stopped);
}

TEST_F(MediaPlayerTest, WhatCannotBePlayedEndsInASentence) {
    const QByteArray clip = Clip();
    m_folder.Write(u"empty.wmv"_s, {});
    m_folder.Write(u"text.wmv"_s, QByteArray("no film at all\n").repeated(1000));
    m_folder.Write(u"head.wmv"_s, clip.left(200));
    m_folder.Write(u"picture.avi"_s, "RIFF\xff\xff\xff\xff"
                                     "AVI LIST\xff\xff\xff\xff"
                                     "hdrl");
    // The decoders' library would follow this one, also to the network.
    m_folder.Write(u"good.wmv"_s, clip);
    m_folder.Write(u"list.wmv"_s, "#EXTM3U\n#EXTINF:1,\ngood.wmv\n#EXT-X-ENDLIST\n");
    m_folder.Write(u"concat.wmv"_s, "ffconcat version 1.0\nfile good.wmv\n");
    ASSERT_EQ(mkfifo(qPrintable(m_folder.Native(u"pipe.wmv"_s)), 0600), 0);
    CMediaPlayer player;
    Show(player);
    QSignalSpy failed(&player, &CMediaPlayer::Failed);
    for (const char* szName : {"missing.wmv", "empty.wmv", "text.wmv", "head.wmv", "picture.avi", "list.wmv",
                               "concat.wmv", "pipe.wmv", "."}) {
        failed.clear();
        player.Load(m_folder.Path(QString::fromLatin1(szName)));
        player.Play();
        ASSERT_TRUE(failed.wait(20000)) << szName;
        EXPECT_TRUE(failed.first().first().toString().startsWith(u"对不起"_s)) << szName;
    }
    // And the next good file plays all the same. Damage in the middle costs pictures, not the program.
    QByteArray damaged = clip;
    for (qsizetype i = 2500; i < damaged.size(); i += 41)
        damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
    m_folder.Write(u"damaged.wmv"_s, damaged);
    m_folder.Write(u"cut.wmv"_s, clip.left(clip.size() / 2));
    for (const char* szName : {"damaged.wmv", "cut.wmv"}) {
        QSignalSpy ended(&player, &CMediaPlayer::Ended);
        player.Load(m_folder.Path(QString::fromLatin1(szName)));
        player.Play();
        EXPECT_SOON(ended.size() + failed.size() > 1) << szName;
        failed.clear();
        failed.append(QList<QVariant>());
    }
}

TEST_F(MediaPlayerTest, TheViewPlaysOrTellsWhatTheFileIs) {
    m_folder.Write(u"a.wmv"_s, Clip());
    m_folder.Write(u"动画.swf"_s, "FWS");
    CMediaView view;
    Show(view);
    auto& play = *view.findChild<QPushButton*>(u"mediaPlay"_s);
    auto& place = *view.findChild<QSlider*>(u"mediaPlace"_s);
    auto& text = *view.findChild<QLabel*>(u"mediaText"_s);
    view.ShowFile(m_folder.Path(u"a.wmv"_s));
    ASSERT_SOON(play.text() == u"暂停(&P)"_s && place.value() > 0);
    QTest::mouseClick(&play, Qt::LeftButton);
    EXPECT_SOON(play.text() == u"播放(&P)"_s);
    EXPECT_FALSE(text.isVisible());

    QSignalSpy outside(&view, &CMediaView::OpenOutside);
    view.ShowFile(m_folder.Path(u"动画.swf"_s));
    EXPECT_TRUE(text.isVisible() && text.text().contains(u"这是 Flash 动画。"_s)) << text.text();
    EXPECT_FALSE(play.isVisible());
    QTest::mouseClick(view.findChild<QPushButton*>(u"mediaOutside"_s), Qt::LeftButton);
    ASSERT_EQ(outside.size(), 1);
    EXPECT_EQ(outside.first().first().toString(), m_folder.Path(u"动画.swf"_s));

    // No program could open what isn't there.
    view.ShowFile(m_folder.Path(u"gone.pdf"_s));
    EXPECT_TRUE(text.text().contains(u"这个文件不存在"_s)) << text.text();

    view.ShowFile(m_folder.Path(u"a.wmv"_s));
    view.hide();
    EXPECT_FALSE(QTest::qWaitFor([&] { return play.text() == u"暂停(&P)"_s; }, 500));
}

// From every way in there is a way out, and the picture comes back to its place.
TEST_F(MediaPlayerTest, AFilmFillsTheScreenAndComesBack) {
    m_folder.Write(u"a.wmv"_s, Clip());
    CMediaView view;
    Show(view);
    auto& player = *view.findChild<CMediaPlayer*>();
    auto& fill = *view.findChild<QPushButton*>(u"mediaFullScreen"_s);
    auto& place = *view.findChild<QSlider*>(u"mediaPlace"_s);
    view.ShowFile(m_folder.Path(u"a.wmv"_s));
    EXPECT_FALSE(fill.isEnabled());
    ASSERT_SOON(player.isVisible() && !player.GetPicture().isNull());
    player.Pause();
    const std::function<void()> ins[] = {[&] { fill.click(); },
                                         [&] { QTest::mouseDClick(&player, Qt::LeftButton); },
                                         [&] { QTest::keyClick(&place, Qt::Key_F11); }};
    const std::function<void()> outs[] = {[&] { QTest::keyClick(&player, Qt::Key_Escape); },
                                          [&] { QTest::mouseDClick(&player, Qt::LeftButton); },
                                          [&] { QTest::keyClick(&player, Qt::Key_F11); }};
    for (int nWay = 0; nWay < 3; ++nWay) {
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        const QRect own = player.geometry();
        ins[nWay]();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&player)) << nWay;
        EXPECT_TRUE(player.isFullScreen()) << nWay;
        QTest::keyClick(&player, Qt::Key_Right);
        outs[nWay]();
        EXPECT_SOON(player.isVisible() && player.geometry() == own) << nWay;
    }
    fill.click();
    view.Clear();
    EXPECT_FALSE(player.isWindow() || player.isVisible());
}

TEST_F(MediaPlayerTest, AClickBesideTheHandleGoesThere) {
    m_folder.Write(u"a.wmv"_s, Clip());
    CMediaView view;
    Show(view);
    auto& player = *view.findChild<CMediaPlayer*>();
    auto& place = *view.findChild<QSlider*>(u"mediaPlace"_s);
    view.ShowFile(m_folder.Path(u"a.wmv"_s));
    ASSERT_SOON(place.isEnabled() && player.GetPosition() > 0);
    player.Pause();
    ASSERT_SOON(player.GetState() == EMediaState::Paused);
    QTest::mouseClick(&place, Qt::LeftButton, {}, place.rect().center());
    const auto nHalf = player.GetDuration() / 2;
    EXPECT_SOON(qAbs(player.GetPosition() - nHalf) < 200) << player.GetPosition();
}

TEST(MediaKindsTest, EachFileGoesToWhatShowsIt) {
    using MediaKinds::EWay;
    // The letter case, a dot in a folder's name, what the desktop's data say, and what they don't.
    const std::pair<QString, EWay> files[] = {
        {u"Z:\\a\\x.WMV"_s, EWay::Player}, {u"Z:\\a.wmv\\x"_s, EWay::Browser},
        {u"x.docx"_s, EWay::Program},      {u"x.jpeg"_s, EWay::Browser},
        {u"x.mht"_s, EWay::Browser},       {u"x.nobodyknows"_s, EWay::Browser},
    };
    for (const auto& [strPath, way] : files)
        EXPECT_EQ(MediaKinds::OfFile(strPath).Way, way) << strPath;
}

} // namespace
