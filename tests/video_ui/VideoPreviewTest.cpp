#include "video/ui/VideoPreviewView.h"

#include "foundation/SysInfo.h"
#include "platform/ui/MediaPlayer.h"
#include "platform/ui/WebBrowser.h"
#include "tests/editor_ui/ViewHarness.h"
#include "tests/support/WindowHelp.h"
#include "video/Outline.h"
#include "video/PreviewRules.h"
#include "video/Recording.h"

#include <QListView>

namespace {

/// Three slides of a film of nine seconds.
constexpr qint64 c_nSlide = 3000;

class VideoPreviewTest : public ::testing::Test {
protected:
    VideoPreviewTest() {
        m_pNode->CreateEditorPage(0);
        m_world.Store().SetContent(m_pNode->GetId(),
                                   {NodeType::c_nVideo, u"N%1\\课 一"_s.arg(m_pNode->GetId()), 0, {}, {}});
        m_pNode = std::make_unique<CBookNode>(*m_world.pCourse, m_world.Store().GetNode(m_pNode->GetId()));
        m_strFolder = m_pNode->GetContentPath();
        Write(u"Template.prj"_s, "[OutputStream]\r\nFileName=film\r\n");
        Write(u"ppt.htm"_s, "<script>var places = '';\n"
                            "function ShowSlide(n) { document.getElementById('s').src = 's' + n + '.htm'; }\n"
                            "function MoveMouse(x, y) { document.title = places += x + ' '; "
                            "document.body.dataset.places = places; }</script>"
                            "<body><iframe id=s src=s1.htm></iframe></body>");
        for (const char* szSlide : {"s1.htm", "s2.htm", "s3.htm"})
            Write(QString::fromLatin1(szSlide), szSlide);
        Write(u"CourseInfo\\Outline.js"_s, MakeOutline({u"第一页"_s, u"第二页"_s, u"第三页"_s}));
        Write(u"CourseInfo\\s.esf"_s,
              MakeVideoScripts({u"ShowSlide(1)"_s, u"ShowSlide(2)"_s, u"ShowSlide(3)"_s},
                               {u"(10,1)"_s, u"(20,1)"_s},
                               *CVideoKey(CSysInfo::Instance().GetSchoolName()).GetRecorderKey()));
        SAsfScript script;
        for (int i = 0; i < 3; ++i) {
            script.Commands.append({i * c_nSlide, u"SLIDE"_s, QString::number(-i - 1)});
            script.Markers.append({i * c_nSlide, u"第 %1 页"_s.arg(i + 1)});
        }
        script.Commands.append({c_nSlide + 500, u"POINT"_s, u"0"_s});
        script.Commands.append({c_nSlide + 1000, u"POINT"_s, u"1"_s});
        std::ranges::sort(script.Commands, {}, &SAsfCommand::nTime);
        WriteAsfScript(Platform::FromNative(QStringLiteral(VOREL_FILM)), m_strFolder + u"\\film.asf"_s,
                       script);
    }
    void Write(const QString& strName, const QByteArray& bytes) {
        m_world.Folder.Write(CViewWorld::NodePath(m_pNode->GetId(), u"课 一\\"_s + strName), bytes);
    }
    void Remove(const QString& strName) { QFile::remove(Platform::ToNative(m_strFolder + u'\\' + strName)); }
    void Show() {
        m_view.m_pNode = m_pNode.get();
        m_view.ShowNode();
    }
    template <class T>
    T& The(const QString& strName) {
        return *m_view.findChild<T*>(strName);
    }
    CMediaPlayer& Player() { return The<CMediaPlayer>(u"player"_s); }
    QString SlidePage() {
        QString strHtml;
        The<CWebBrowser2Ex>(u"slides"_s).GetBrowserBodyInnerHTML(strHtml);
        return strHtml;
    }
    bool ShowsSlide(int nSlide) {
        return QTest::qWaitFor([&] { return SlidePage().contains(u"s%1.htm"_s.arg(nSlide)); }, 20000);
    }
    int Entry() { return The<QListView>(u"outline"_s).currentIndex().row(); }

    CViewWorld m_world;
    std::unique_ptr<CBookNode> m_pNode = CBookNode::Root(*m_world.pCourse)->AddChild(u"录像"_s);
    QString m_strFolder;
    CVideoPreviewView m_view{m_world.Host, m_world.People, nullptr};
};

TEST_F(VideoPreviewTest, TheSlidesFollowTheFilmAlsoAfterASeek) {
    ShowOnScreen(m_view);
    Show();
    ASSERT_SOON(Player().GetPosition() > 200) << "it plays by itself";
    EXPECT_TRUE(ShowsSlide(1));
    EXPECT_TRUE(ShowsSlide(2));
    EXPECT_NEAR(double(Player().GetPosition()), double(c_nSlide), 1500);
    EXPECT_SOON(Entry() == 1) << "the outline follows";
    const QString strTime = The<QLabel>(u"status"_s).text();
    EXPECT_TRUE(strTime.startsWith(u" 00:00:0"_s) && strTime.endsWith(u"/00:00:09"_s)) << strTime;

    // A person's choice of an entry leads there, and brings its slide.
    auto& outline = The<QListView>(u"outline"_s);
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {},
                      outline.visualRect(outline.model()->index(2, 0)).center());
    EXPECT_TRUE(ShowsSlide(3));
    EXPECT_GE(Player().GetPosition(), 2 * c_nSlide - 300);
    EXPECT_EQ(Entry(), 2);
    QTest::mouseClick(outline.viewport(), Qt::LeftButton, {},
                      outline.visualRect(outline.model()->index(0, 0)).center());
    EXPECT_TRUE(ShowsSlide(1));
    EXPECT_LT(Player().GetPosition(), c_nSlide);
    // The slide's arrival plays the film, whatever it was at.
    QTest::qWait(600);
    EXPECT_EQ(Entry(), 0);

    // The letter is a menu's, too; in the view it is the button's.
    outline.setFocus();
    QTest::keyClick(&outline, Qt::Key_S, Qt::AltModifier);
    EXPECT_SOON(Player().GetState() == EMediaState::Stopped);
    QTest::qWait(600);
    EXPECT_EQ(Player().GetState(), EMediaState::Stopped)
        << "the first slide does not come with its beginning";
    QTest::mouseClick(&The<QPushButton>(u"fullScreen"_s), Qt::LeftButton);
    EXPECT_FALSE(Player().isWindow());
    QTest::mouseClick(&The<QPushButton>(u"play"_s), Qt::LeftButton);
    EXPECT_SOON(Player().GetState() == EMediaState::Playing);
    QTest::mouseClick(&The<QPushButton>(u"fullScreen"_s), Qt::LeftButton);
    EXPECT_TRUE(Player().isWindow() && Player().isFullScreen());
    QTest::keyClick(&Player(), Qt::Key_Escape);
    EXPECT_FALSE(Player().isWindow());
    EXPECT_EQ(Player().geometry(), PreviewRules::LayoutFor(m_view.size()).Player);
    EXPECT_TRUE(m_view.LeaveNode(false));
    EXPECT_SOON(Player().GetState() == EMediaState::Stopped);
}

// A place of the pointer that the film calls is run, but for the last of the list.
TEST_F(VideoPreviewTest, ThePointerMovesAsTheFilmSays) {
    ShowOnScreen(m_view);
    Show();
    ASSERT_SOON(SlidePage().contains(u"s2.htm"_s));
    EXPECT_SOON(Player().GetPosition() > c_nSlide + 1500);
    EXPECT_EQ(SlidePage().count(u"s2.htm"_s), 1);
    QString strPlaces;
    The<CWebBrowser2Ex>(u"slides"_s).ExecuteScript(u"javascript: document.body.append(places)"_s);
    EXPECT_TRUE(SlidePage().endsWith(u"10 20 "_s)) << SlidePage();
}

TEST_F(VideoPreviewTest, WhatIsMissingIsToldAndNothingPlays) {
    ShowOnScreen(m_view);
    auto& people = m_world.People;
    Remove(u"Template.prj"_s);
    people.Expect(u"没有找到视频文件!"_s);
    Show();
    EXPECT_EQ(The<QListView>(u"outline"_s).model()->rowCount(), 3) << "the outline stays";
    Remove(u"CourseInfo\\Outline.js"_s);
    people.Expect(u"载入大纲出错！"_s);
    Show();
    for (const bool bThere : {true, false}) {
        Write(u"CourseInfo\\s.esf"_s, "x");
        if (!bThere)
            Remove(u"CourseInfo\\s.esf"_s);
        people.Boxes.clear();
        people.Expect(bThere ? u"对不起，错误的文件格式！"_s : u"对不起，无法打开视频文件！"_s);
        people.Expect(u"载入脚本出错！"_s);
        Show();
        EXPECT_EQ(people.Boxes.front().strTitle, u"错误信息"_s);
        EXPECT_EQ(people.Boxes.front().Icon, CScriptedPeople::BoxIcon::None);
        EXPECT_EQ(people.Boxes.back().strTitle, u"错误"_s);
    }
    QTest::qWait(300);
    EXPECT_EQ(Player().GetState(), EMediaState::Stopped);
    EXPECT_EQ(The<QLabel>(u"status"_s).text(), u"0000：00001"_s);
}

// A film that is cut, empty or none.
TEST_F(VideoPreviewTest, ADamagedFilmSaysSo) {
    ShowOnScreen(m_view);
    const QByteArray whole =
        m_world.Folder.Read(CViewWorld::NodePath(m_pNode->GetId(), u"课 一\\film.asf"_s));
    for (const QByteArray& film : {QByteArray(), QByteArray("no film"), whole.first(100), whole.first(700)}) {
        Write(u"film.asf"_s, film);
        Show();
        EXPECT_SOON(The<QLabel>(u"status"_s).text().startsWith(u"对不起"_s)) << film.size();
        EXPECT_NE(Player().GetState(), EMediaState::Playing);
    }
}

TEST(PreviewRules, TheFormIsLaidOutByItsSize) {
    const PreviewRules::Layout large = PreviewRules::LayoutFor({1000, 600});
    EXPECT_EQ(large.Player, QRect(10, 10, 222, 167));
    EXPECT_EQ(large.Status, QRect(10, 177, 222, 20));
    EXPECT_EQ(large.Outline, QRect(10, 232, 222, 358));
    EXPECT_EQ(large.Slides, QRect(242, 10, 748, 530));
    EXPECT_EQ(large.Buttons[0].size(), QSize(80, 30));
    EXPECT_EQ(large.Buttons[0].top(), 560);
    EXPECT_EQ(PreviewRules::LayoutFor({492, 600}).Buttons[3].width(), 30);
    EXPECT_GE(PreviewRules::LayoutFor({100, 100}).Slides.width(), 0);
    const std::pair<qint64, const char*> times[] = {{0, "00:00:00"},
                                                    {999, "00:00:00"},
                                                    {59'999, "00:00:59"},
                                                    {3'661'000, "01:01:01"},
                                                    {qint64{3600} * 1000 * 123, "23:00:00"}};
    for (const auto& [nTime, szText] : times)
        EXPECT_EQ(PreviewRules::TimeText(nTime, 0), u' ' + QString::fromLatin1(szText) + u"/00:00:00"_s);
}

} // namespace
