#include "app/ui/SplashWindow.h"
#include "app/ui/StartupDialog.h"

#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/WindowHelp.h"

#include <QMainWindow>
#include <QTabWidget>
#include <QTreeWidget>

namespace {

QPixmap Picture() {
    QPixmap picture(48, 30);
    picture.fill(Qt::blue);
    return picture;
}

// The key that sends the splash away must not start a command as well, and the next one must.
TEST(SplashWindow, TheFirstKeySendsItAwayAndDoesNothingElse) {
    CSplashWindow splash(Picture());
    splash.ShowNow();
    EXPECT_TRUE(splash.isVisible());

    QMainWindow frame;
    frame.resize(400, 300);
    int nRun = 0;
    QAction command;
    command.setShortcut(QKeySequence(u"F2"_s));
    QObject::connect(&command, &QAction::triggered, [&] { ++nRun; });
    frame.addAction(&command);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    splash.MoveInto(frame);
    EXPECT_FALSE(splash.isVisible()) << "it would cover dialogs";
    ASSERT_NE(frame.findChild<QLabel*>(u"splash"_s), nullptr);

    QTest::keyClick(frame.windowHandle(), Qt::Key_F2);
    EXPECT_EQ(frame.findChild<QLabel*>(u"splash"_s), nullptr);
    EXPECT_EQ(nRun, 0);
    QTest::keyClick(frame.windowHandle(), Qt::Key_F2);
    EXPECT_EQ(nRun, 1);
}

TEST(SplashWindow, GoesByItself) {
    CSplashWindow splash(Picture());
    splash.ShowNow();
    EXPECT_SOON(!splash.isVisible());
}

TEST(StartupDialog, OffersWhatIsThereAndNamesTheCourse) {
    CTempFolder program;
    program.Write(u"课程\\大学 物理.vcp"_s, "x");
    const QString strIni = u"[VorelRecentProject]\r\nRecent0="_s + program.Path(u"gone.vcp"_s) +
                           u"\r\nRecent1="_s + program.Path(u"课程\\大学 物理.vcp"_s) + u"\r\n"_s;
    program.Write(u"AppInfo.ini"_s, CodePage::Encode(strIni));
    CSysInfo::Reset(program.Path(u"Vorel"_s));
    CScriptedPeople people;
    CStartupDialog dialog(people, nullptr);
    dialog.show();
    auto* pTabs = dialog.findChild<QTabWidget*>(u"tabs"_s);
    auto* pOk = dialog.findChild<QPushButton*>(u"ok"_s);
    auto* pBrowse = dialog.findChild<QPushButton*>(u"browse"_s);
    auto* pRecent = dialog.findChild<QTreeWidget*>(u"recentList"_s);
    EXPECT_TRUE(pOk->isEnabled() && !pBrowse->isVisible());

    pTabs->setCurrentIndex(1);
    EXPECT_TRUE(pOk->isEnabled() && pBrowse->isVisible());
    ASSERT_EQ(pRecent->topLevelItemCount(), 1);
    EXPECT_EQ(pRecent->topLevelItem(0)->text(0), u"大学 物理"_s);
    EXPECT_EQ(pRecent->topLevelItem(0)->text(1), program.Native(u"课程"_s));
    pRecent->clearSelection();
    EXPECT_FALSE(pOk->isEnabled());
    pTabs->setCurrentIndex(0);
    EXPECT_TRUE(pOk->isEnabled()) << "each tab has its own selection";

    // Given up, the file dialog changes nothing; a chosen file closes this one with it.
    pTabs->setCurrentIndex(1);
    people.Files = {std::nullopt, program.Path(u"b.vcp"_s)};
    pBrowse->click();
    EXPECT_TRUE(dialog.isVisible());
    pBrowse->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetCoursePath(), program.Path(u"b.vcp"_s));
}

} // namespace
