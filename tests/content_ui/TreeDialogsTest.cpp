#include "content/ui/TreeDialogs.h"
#include "content/ui/CustomTitlesDialog.h"
#include "course/CustomTitles.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/WindowHelp.h"

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
        for (const char* pszWay : {"pasted", "committed"}) {
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
            } else if (pszWay[0] == 'p') {
                QApplication::clipboard()->setText(c.strNew);
                QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
            } else {
                Commit(field, c.strNew);
            }
            EXPECT_EQ(field.text(), c.strAfter);
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

TEST(TreeDialogs, TheOpenTypeIsChosenWithTheArrowKeys) {
    CScriptedPeople people;
    CTreeDialogs dialogs(people, nullptr);
    InNextDialog([](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QRadioButton*>(u"openType0"_s)->isChecked());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskOpenType(9), 2) << "from a type that is none";
    InNextDialog([](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QRadioButton*>(u"openType2"_s)->hasFocus());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_F, Qt::AltModifier);
        const auto* pLast = dialog.findChild<QRadioButton*>(u"openType3"_s);
        EXPECT_SOON(pLast->isChecked() && !pLast->isDown());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    });
    EXPECT_EQ(dialogs.AskOpenType(2), std::nullopt);
}

TEST(TreeDialogs, TypingReplacesThePresetAndReturnDeletesNothing) {
    CScriptedPeople people;
    CTreeDialogs dialogs(people, nullptr);
    InNextDialog([](QDialog& dialog) {
        QTest::keyClicks(dialog.focusWidget(), u"a, b"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskTitles(u"新建栏目"_s), u"a, b"_s);
    InNextDialog([](QDialog& dialog) {
        QTest::keyClicks(dialog.focusWidget(), u"First"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskCustomTitles({u"old"_s}, true).value_or(QStringList()).value(0), u"First"_s);
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
    CScriptedPeople people;
    CTreeDialogs dialogs(people, pWindow.get());
    WhenDialogOpens([&](QDialog&) { pWindow.reset(); });
    EXPECT_EQ(dialogs.AskTitles(u"a"_s), std::nullopt);
}

} // namespace
