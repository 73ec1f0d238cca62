#include "content/ui/TreeDialogs.h"
#include "content/ui/BookTreeView.h"
#include "content/ui/CustomTitlesDialog.h"
#include "course/CustomTitles.h"
#include "foundation/CodePage.h"
#include "foundation/IniFile.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/content_ui/RecordingHost.h"
#include "tests/support/WindowHelp.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QLineEdit& Field(QDialog& dialog, int nRole) {
    return *dialog.findChild<QLineEdit*>(u"title%1"_s.arg(nRole));
}

/// Presses keys in the dialog that comes next.
void InNextDialog(const std::function<void(QDialog&)>& act) {
    WhenDialogOpens([act](QDialog& dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        act(dialog);
    });
}

void Commit(QWidget& field, const QString& strText) {
    QInputMethodEvent composing(u"x"_s, {});
    QApplication::sendEvent(&field, &composing);
    QInputMethodEvent event;
    event.setCommitString(strText);
    QApplication::sendEvent(&field, &event);
}

// Which way ever a text comes in, no more than six bytes of it stay, by whole characters.
TEST(CustomTitlesDialogTest, TheIntroductionTakesSixBytes) {
    struct Case {
        QString strPresent;
        int nCursor; // -1: all selected
        QString strNew;
        QString strAfter;
    };
    const Case cases[]{
        {u""_s, 0, u"abcdefgh"_s, u"abcdef"_s},
        {u""_s, 0, u"课程介绍"_s, u"课程介"_s},
        {u"abc"_s, 3, u"课程"_s, u"abc课"_s},
        {u"abcde"_s, 2, u"课"_s, u"abcde"_s},
        {u"课程"_s, 1, u"xyz"_s, u"课xy程"_s},
        {u"课程介"_s, -1, u"简介"_s, u"简介"_s},
        {u"课程介"_s, -1, u"课程简介"_s, u"课程简"_s},
        {u"课程介"_s, 3, u"介"_s, u"课程介"_s},
        {u"ab"_s, 1, u"😀😁"_s, u"a😀b"_s},
        {u"😀"_s, -1, u"😁x好"_s, u"😁x"_s},
        // From the file: whole as long as nothing goes in; then it can only be shortened, or replaced.
        {u"很长的介绍"_s, 2, u"x"_s, u"很长的介绍"_s},
        {u"很长的介绍"_s, 2, u"\b"_s, u"很的介绍"_s},
        {u"很长的介绍"_s, -1, u"简短的介绍"_s, u"简短的"_s},
    };
    for (const Case& c : cases) {
        for (const char* pszWay : {"typed", "pasted", "committed"}) {
            SCOPED_TRACE(std::string(pszWay) + ": " + c.strNew.toStdString());
            QStringList titles(CustomTitles::c_nRoles);
            titles[CustomTitles::c_nIntroduction] = c.strPresent;
            CCustomTitlesDialog dialog(titles, true, nullptr);
            EXPECT_EQ(dialog.GetTitles(), titles);
            QLineEdit& field = Field(dialog, CustomTitles::c_nIntroduction);
            if (c.nCursor < 0)
                field.selectAll();
            else
                field.setCursorPosition(c.nCursor);
            if (c.strNew == u"\b") {
                QTest::keyClick(&field, Qt::Key_Backspace);
            } else if (pszWay[0] == 't') {
                for (qsizetype n = 0; n < c.strNew.size(); ++n) {
                    const bool bPair = c.strNew.at(n).isHighSurrogate();
                    QTest::sendKeyEvent(QTest::Click, &field, Qt::Key_unknown, c.strNew.mid(n, bPair ? 2 : 1),
                                        Qt::NoModifier);
                    n += bPair ? 1 : 0;
                }
            } else if (pszWay[0] == 'p') {
                QApplication::clipboard()->setText(c.strNew);
                QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
            } else {
                Commit(field, c.strNew);
            }
            EXPECT_EQ(field.text().toStdString(), c.strAfter.toStdString());
        }
    }
}

TEST(CustomTitlesDialogTest, ASwitchedOffIntroductionIsPassedOver) {
    CCustomTitlesDialog dialog({}, false, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClicks(dialog.focusWidget(), u"a"_s);
    for (int nRole = 1; nRole < CustomTitles::c_nRoles; ++nRole) {
        if (nRole == CustomTitles::c_nIntroduction)
            continue;
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(dialog.focusWidget(), QString::number(nRole));
    }
    EXPECT_EQ(dialog.GetTitles().join(u'|'), u"a|1|2|3||5|6|7"_s);
}

class TreeDialogsTest : public ::testing::Test {
protected:
    CCourseOnDisk m_disk;
    CRecordingHost m_host;
    CBookTreeView m_tree{m_host, m_disk.People};
    QString m_strIni = m_disk.pCourse->GetPaths().GetCustomTitlesPath();

    TreeDialogsTest() {
        m_tree.resize(300, 400);
        m_tree.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_tree));
    }
    qint32 Add(qint32 nParent, const QString& strTitle) { return m_disk.Store().AddNode(nParent, strTitle); }
    QString TitleOf(qint32 nId) { return m_disk.Store().GetNode(nId).Title; }
};

TEST_F(TreeDialogsTest, CustomTitlesRenameTheNodesOfTheTreeThatAreLoaded) {
    const qint32 nTeam = Add(c_nRootNodeId, u"队伍"_s);
    const qint32 nFirst = Add(nTeam, u"甲"_s);
    const qint32 nSecond = Add(nTeam, u"乙"_s);
    const qint32 nThird = Add(nTeam, u"丙"_s);
    // Two levels below what is open: the tree has not read it.
    const qint32 nDeep = Add(Add(nThird, u"层"_s), u"深"_s);
    const qint32 ids[]{nFirst, nSecond, nThird, nDeep, c_nRootNodeId};
    for (int nRole = 0; nRole < 5; ++nRole)
        WriteProfileString(u"Id"_s, CustomTitles::Roles().at(static_cast<size_t>(nRole)).strKey,
                           QString::number(ids[nRole]), m_strIni);
    m_tree.LoadTree(*m_disk.pCourse);
    m_tree.SelectNode(nTeam);
    m_host.nAsked = 0;

    // A title that a sibling has draws its message, and is stored for the dialog all the same.
    m_disk.People.Expect(u"对不起，父栏目下已有同名栏目存在！"_s);
    InNextDialog([](QDialog& dialog) {
        for (const QString& strTitle : {u"First"_s, u"First"_s, u"Third"_s, u"Deep"_s, u"Root"_s}) {
            QTest::keyClicks(dialog.focusWidget(), strTitle);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        }
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    ASSERT_TRUE(m_tree.IsCommandEnabled(TreeCommand::c_nCustomTitles));
    ASSERT_TRUE(m_tree.RunCommand(TreeCommand::c_nCustomTitles));

    EXPECT_EQ((QStringList{TitleOf(nFirst), TitleOf(nSecond), TitleOf(nThird), TitleOf(nDeep)}),
              (QStringList{u"First"_s, u"乙"_s, u"Third"_s, u"深"_s}));
    EXPECT_EQ(CustomTitles::ReadTitles(m_strIni).mid(0, 5),
              (QStringList{u"First"_s, u"First"_s, u"Third"_s, {}, u"Root"_s}));
    EXPECT_EQ(TitleOf(c_nRootNodeId), u"李老师"_s);
    // Nobody was asked to leave for a title, and the list of children shows the new ones.
    EXPECT_EQ(m_tree.GetSelectedNode()->GetId(), nTeam);
    EXPECT_EQ(m_host.nAsked, 0);
    EXPECT_EQ(m_host.Last(), (CRecordingHost::Shown{EViewKind::ChildrenList, nTeam}));
    m_tree.ResetTree();
    EXPECT_FALSE(m_tree.IsCommandEnabled(TreeCommand::c_nCustomTitles));
}

TEST_F(TreeDialogsTest, TheOpenTypeIsChosenWithTheArrowKeys) {
    const qint32 nId = Add(c_nRootNodeId, u"页"_s);
    m_disk.Store().SetContent(nId, {NodeType::c_nExternalLink, u"http://x/"_s, 9, {}, {}});
    m_tree.LoadTree(*m_disk.pCourse);
    m_tree.SelectNode(nId);
    const size_t nShown = m_host.Views.size();
    InNextDialog([](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QRadioButton*>(u"openType0"_s)->isChecked());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    m_tree.RunCommand(TreeCommand::c_nSetOpenType);
    EXPECT_EQ(m_disk.Store().GetOpenType(nId), 2);
    EXPECT_EQ(m_host.Views.size(), nShown + 1);
    InNextDialog([](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QRadioButton*>(u"openType2"_s)->hasFocus());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_F, Qt::AltModifier);
        const auto* pLast = dialog.findChild<QRadioButton*>(u"openType3"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pLast->isChecked() && !pLast->isDown(); }));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    });
    m_tree.RunCommand(TreeCommand::c_nSetOpenType);
    EXPECT_EQ(m_disk.Store().GetOpenType(nId), 2);
    EXPECT_EQ(m_host.Views.size(), nShown + 1);
}

TEST(TreeDialogs, TypingReplacesThePresetAndReturnDeletesNothing) {
    CTreeDialogs dialogs(nullptr);
    InNextDialog([](QDialog& dialog) {
        QTest::keyClicks(dialog.focusWidget(), u"a, b"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskTitles(u"新建栏目"_s), u"a, b"_s);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        InNextDialog([=](QDialog& dialog) {
            EXPECT_EQ(dialog.findChild<QPlainTextEdit*>(u"titles"_s)->toPlainText(), u"节\n点\n"_s);
            if (key == Qt::Key_Space)
                dialog.findChild<QPushButton*>(u"ok"_s)->setFocus();
            QTest::keyClick(dialog.focusWidget(), key);
        });
        EXPECT_EQ(dialogs.ConfirmDeletion(u"节\r\n点\r\n"_s), key == Qt::Key_Space);
    }
}

// The window under a dialog goes with the course: the dialog goes too, and nothing is read out of it.
TEST(TreeDialogs, ADialogGoesWithItsWindow) {
    auto pWindow = std::make_unique<QWidget>();
    pWindow->show();
    CTreeDialogs dialogs(pWindow.get());
    WhenDialogOpens([&](QDialog&) { pWindow.reset(); });
    EXPECT_EQ(dialogs.AskTitles(u"a"_s), std::nullopt);
}

} // namespace
