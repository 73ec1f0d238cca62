#include "app/ui/MainFrame.h"

#include "app/Texts.h"
#include "content/VideoMaker.h"
#include "foundation/SysInfo.h"
#include "tests/app/WrittenCommands.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/WindowHelp.h"

#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusTipEvent>
#include <QToolBar>

namespace {

/// An application that notes what it is asked for.
class CNotingOwner : public IFrameOwner {
public:
    QStringList Asked;
    bool bOpen = false;
    bool bFree = true;

    void NewCourse() override { Asked.append(u"new"_s); }
    void OpenCourseCommand() override { Asked.append(u"open"_s); }
    void OpenCourse(const QString& strPath) override { Asked.append(strPath); }
    void CloseCourse() override { Asked.append(u"close"_s); }
    void ChangePassword() override { Asked.append(u"password"_s); }
    void ChangeServerAddress() override { Asked.append(u"server"_s); }
    void ShowOptions() override { Asked.append(u"options"_s); }
    void ShowAbout() override { Asked.append(u"about"_s); }
    void Compile(Companions::ECompileForm form) override {
        Asked.append(u"compile "_s + QString::number(static_cast<int>(form)));
    }
    void ExportWord() override { Asked.append(u"word"_s); }
    void DownloadTemplate() override { Asked.append(u"download"_s); }
    void SetTemplate() override { Asked.append(u"template"_s); }
    void ShowOverallPreview() override { Asked.append(u"preview"_s); }
    bool IsCourseOpen() const override { return bOpen; }
    bool MayClose() override { return bFree; }
    IVideoMaker& Videos() override { return m_videos; }

private:
    class CNoVideos : public IVideoMaker {
        QString CreateVideoNode(CBookNode&, const QString&) override { return {}; }
        bool HasPlayer() const override { return false; }
    } m_videos;
};

class MainFrameTest : public ::testing::Test {
protected:
    MainFrameTest() {
        CSysInfo::Reset(m_folder.Path(u"Vorel"_s));
        m_pFrame = std::make_unique<CMainFrame>(m_owner, m_people);
        m_pFrame->resize(1000, 700);
        m_pFrame->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pFrame.get()));
        m_pFrame->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_pFrame.get()));
    }
    template <class T>
    T& Child(const QString& strName) {
        return *m_pFrame->findChild<T*>(strName);
    }
    QAction& Action(int nId) { return Child<QAction>(u"command_%1"_s.arg(nId)); }
    int LeftWidth() { return Child<QSplitter>(u"splitter"_s).sizes().first(); }

    CTempFolder m_folder;
    CScriptedPeople m_people;
    CNotingOwner m_owner;
    std::unique_ptr<CMainFrame> m_pFrame;
};

/// The ids that a menu or bar shows in their order, 0 for a separator, a sub-menu's entries in its place.
QStringList Ids(const QWidget& place) {
    const auto* pBar = qobject_cast<const QToolBar*>(&place);
    QStringList ids;
    for (QAction* pAction : place.actions()) {
        const auto* pButton = pBar ? qobject_cast<QToolButton*>(pBar->widgetForAction(pAction)) : nullptr;
        const QAction* pShown = pButton && pButton->defaultAction() ? pButton->defaultAction() : pAction;
        if (pAction->text().contains(u"最近课程"_s))
            ids.append(u"32938"_s);
        else if (pAction->menu() != nullptr)
            ids += Ids(*pAction->menu());
        else
            ids.append(QString::number(pShown->objectName().section(u'_', -1).toInt()));
    }
    return ids;
}

// A command that the table knows but the window does not show, or shows elsewhere or under other words.
TEST_F(MainFrameTest, ShowsEveryWrittenCommandInItsPlace) {
    QMap<QString, QStringList> ids{{u"toolbar"_s, Ids(Child<QToolBar>(u"mainToolBar"_s))}};
    for (const QAction* pMenu : m_pFrame->menuBar()->actions())
        ids[u"menu "_s + pMenu->text()] = Ids(*pMenu->menu());
    for (const QStringList& place : WrittenCommands(u"place"_s)) {
        if (ids.contains(place[0])) {
            EXPECT_EQ(ids.take(place[0]).join(u' ').toStdString(),
                      QString(place[1]).remove(u"+ "_s).toStdString());
        }
    }
    EXPECT_TRUE(ids.isEmpty()) << ids.firstKey();
    for (const QStringList& written : WrittenCommands(u"command"_s)) {
        const auto* pAction = m_pFrame->findChild<QAction*>(u"command_"_s + written[0]);
        const auto* pButton = m_pFrame->findChild<QToolButton*>(u"tool_"_s + written[0]);
        // The window at rest has no editor and no context menu.
        if (pAction == nullptr || written[0] == u"32825"_s)
            continue;
        const bool bWords = pButton && pButton->toolButtonStyle() != Qt::ToolButtonIconOnly;
        const QStringList said{written[0], pAction->text(), bWords ? pButton->text() : QString(),
                               pAction->statusTip(), pAction->shortcut().toString()};
        for (qsizetype n = 1; n < said.size(); ++n)
            EXPECT_TRUE(written[n] == u"*"_s || written[n] == said[n]) << written[0] << ": " << said[n];
    }
}

TEST_F(MainFrameTest, CommandsReachTheApplicationWhenTheyAreEnabled) {
    for (const int nId : {32855, 32935, 32941})
        Action(nId).trigger();
    EXPECT_EQ(m_owner.Asked, (QStringList{u"download"_s}));
    m_owner.Asked.clear();
    m_owner.bOpen = true;
    m_pFrame->UpdateCommands();
    for (const int nId : {32855, 32928, 32929, 32939, 32941})
        Action(nId).trigger();
    EXPECT_EQ(m_owner.Asked, (QStringList{u"compile 0"_s, u"compile 1"_s, u"compile 2"_s, u"word"_s}));
}

// A window closed in the middle of a step would take the step's course along, or leave it open behind itself.
TEST_F(MainFrameTest, StaysWhileAStepIsUnderWay) {
    m_owner.bFree = false;
    EXPECT_FALSE(m_pFrame->close());
    EXPECT_TRUE(m_owner.Asked.isEmpty());
    m_owner.bFree = true;
    EXPECT_TRUE(m_pFrame->close());
    EXPECT_EQ(m_owner.Asked, (QStringList{u"close"_s}));
}

TEST_F(MainFrameTest, TheBarIsDraggedBetweenItsLimitsAndTheWindowMovesItNot) {
    EXPECT_EQ(LeftWidth(), 200);
    auto& splitter = Child<QSplitter>(u"splitter"_s);
    QSplitterHandle* pHandle = splitter.handle(1);
    const auto drag = [&](const QPoint& from, int nTo) {
        QTest::mousePress(pHandle, Qt::LeftButton, {}, from);
        const QPoint to = pHandle->mapFrom(&splitter, QPoint(nTo, 300));
        QMouseEvent move(QEvent::MouseMove, to, pHandle->mapToGlobal(to), Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(pHandle, &move);
        QTest::mouseRelease(pHandle, Qt::LeftButton, {}, to);
        return LeftWidth();
    };
    EXPECT_EQ(drag({1, 100}, 990), splitter.width() / 2);
    EXPECT_EQ(drag({1, 100}, 3), 150);
    EXPECT_EQ(drag({1, 1}, 400), 150); // too near to the edge
    EXPECT_EQ(drag({1, 100}, 401), 400);
    m_pFrame->resize(640, 700);
    QApplication::processEvents();
    EXPECT_EQ(LeftWidth(), 400);
}

TEST_F(MainFrameTest, KeysGoFromPaneToPane) {
    EXPECT_TRUE(m_pFrame->GetTreeView().hasFocus());
    const auto& pane = Child<QStackedWidget>(u"rightPane"_s);
    QTest::keyClick(m_pFrame.get(), Qt::Key_F6);
    EXPECT_TRUE(QApplication::focusWidget() && pane.isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(m_pFrame.get(), Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_TRUE(m_pFrame->GetTreeView().hasFocus());
}

TEST_F(MainFrameTest, KindsWithoutAViewShowTheEmptyOne) {
    for (const int nKind : {5, 4, 8, -3}) {
        EXPECT_TRUE(m_pFrame->ShowNodeView(EViewKind::Empty, nullptr));
        EXPECT_TRUE(m_pFrame->ShowNodeView(static_cast<EViewKind>(nKind), nullptr));
        const QWidget* pShown = Child<QStackedWidget>(u"rightPane"_s).currentWidget();
        EXPECT_EQ(pShown->objectName(), u"CNothingView"_s) << nKind;
    }
}

TEST_F(MainFrameTest, HintsGiveWayToTheTextThatStoodThere) {
    auto& text = Child<QLabel>(u"statusText"_s);
    const auto hint = [&](const QString& strHint) {
        QStatusTipEvent event(strHint);
        QApplication::sendEvent(&m_pFrame->GetTreeView(), &event);
        return text.text();
    };
    EXPECT_EQ(hint(u"合成"_s), u"合成"_s);
    EXPECT_EQ(hint(QString()), u"就绪"_s);
    m_pFrame->ShowStatusText(AppTexts::c_strLoading);
    EXPECT_EQ(hint(QString()), AppTexts::c_strLoading);
}

TEST_F(MainFrameTest, TheButtonsGrowWithTheDesktopsFont) {
    QApplication::processEvents();
    auto& button = Child<QToolButton>(u"tool_32855"_s);
    const QSize before = button.size();
    EXPECT_EQ(before, Child<QToolButton>(u"tool_32939"_s).size());
    const QFont font = QApplication::font();
    QFont larger = font;
    larger.setPointSize(font.pointSize() * 2);
    QApplication::setFont(larger);
    QTest::qWait(50);
    EXPECT_GT(button.width(), before.width());
    QApplication::setFont(font);
    QTest::qWait(50);
    EXPECT_EQ(button.size(), before);
}

} // namespace
