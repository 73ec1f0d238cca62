#include "platform/ui/QtPeople.h"

#include "platform/base/Process.h"
#include "platform/ui/Pictures.h"
#include "tests/support/WindowHelp.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QImageWriter>
#include <QMainWindow>
#include <QProcess>
#include <QProgressBar>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace Torvane::Dialog::MFC;

namespace {

class CPeople : public ::testing::Test {
protected:
    CPeople() {
        m_window.resize(600, 400);
        m_window.show();
        m_people.SetParent(&m_window);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    BoxAnswer Answer(BoxButtons buttons, const std::function<void(QDialog&)>& act,
                     BoxDefault byEnter = BoxDefault::First) {
        WhenDialogOpens(act);
        return m_people.Ask(u"<b>文字</b>"_s, u"提示"_s, buttons, BoxIcon::Question, byEnter);
    }
    /// Waits in a step that may be given up, over this window, until the person ends it. She acts as soon as
    /// the button for it shows, or with the first look.
    std::unique_ptr<CShowStatusDlg> WaitFor(QWidget& window, const std::function<void(QPushButton&)>& act,
                                            bool bAtOnce = false) {
        auto pStatus = m_people.OpenStatus();
        EXPECT_EQ(m_people.GetStatus(), pStatus.get());
        pStatus->ShowStatus(u"正在验证课程..."_s);
        pStatus->AllowCancel(true);
        QElapsedTimer waited;
        waited.start();
        QTimer person;
        QObject::connect(&person, &QTimer::timeout, [&] {
            auto* pCancel = window.findChild<QPushButton*>(u"statusCancel"_s);
            if (!bAtOnce && !pCancel->isVisible())
                return;
            person.stop();
            EXPECT_TRUE(bAtOnce || waited.elapsed() >= 1000) << "a quick answer would have made it flash";
            act(*pCancel);
        });
        person.start(20);
        while (pStatus->KeepWaiting() && waited.elapsed() < 10000)
            QTest::qSleep(5);
        EXPECT_LT(waited.elapsed(), 10000) << "nothing ends the wait";
        return pStatus;
    }

    QMainWindow m_window;
    CQtPeople m_people;
};

} // namespace

TEST_F(CPeople, EveryButtonAnswersForItself) {
    const std::pair<const char*, BoxAnswer> ok{"ok", BoxAnswer::Ok}, cancel{"cancel", BoxAnswer::Cancel},
        yes{"yes", BoxAnswer::Yes}, no{"no", BoxAnswer::No}, retry{"retry", BoxAnswer::Retry};
    const std::pair<BoxButtons, QList<std::pair<const char*, BoxAnswer>>> rows[] = {
        {BoxButtons::Ok, {ok}},
        {BoxButtons::OkCancel, {ok, cancel}},
        {BoxButtons::YesNo, {yes, no}},
        {BoxButtons::YesNoCancel, {yes, no, cancel}},
        {BoxButtons::RetryCancel, {retry, cancel}},
    };
    // A box stands over the dialog that is open, else nobody could answer it.
    QDialog below(&m_window);
    below.setModal(true);
    below.show();
    for (const auto& [buttons, answers] : rows) {
        for (const auto& [szName, answer] : answers) {
            const auto click = [&below, szName = szName](QDialog& dialog) {
                EXPECT_EQ(dialog.parentWidget(), &below);
                EXPECT_EQ(static_cast<QMessageBox&>(dialog).textFormat(), Qt::PlainText);
                dialog.findChild<QPushButton*>(QLatin1String(szName))->click();
            };
            EXPECT_EQ(Answer(buttons, click), answer) << szName;
        }
        for (const bool bByKey : {false, true}) {
            const auto close = [&](QDialog& dialog) {
                bByKey ? QTest::keyClick(&dialog, Qt::Key_Escape) : (void)dialog.close();
                // A box without Cancel waits for one of its buttons.
                EXPECT_EQ(dialog.isVisible(), buttons == BoxButtons::YesNo);
                if (dialog.isVisible())
                    dialog.findChild<QPushButton*>(u"no"_s)->click();
            };
            EXPECT_EQ(Answer(buttons, close), answers.last().second);
        }
        const auto enter = [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); };
        EXPECT_EQ(Answer(buttons, enter), answers.first().second);
        EXPECT_EQ(Answer(buttons, enter, BoxDefault::Last), answers.last().second);
    }
}

TEST_F(CPeople, AKeyHeldSinceBeforeAnswersNothing) {
    const auto hold = [](QDialog& dialog) {
        for (const int nKey : {Qt::Key_Return, Qt::Key_Escape}) {
            for (QWidget* pWidget : {dialog.focusWidget(), static_cast<QWidget*>(&dialog)}) {
                QKeyEvent release(QEvent::KeyRelease, nKey, Qt::NoModifier);
                QKeyEvent pressOfOneMoment(QEvent::KeyPress, nKey, Qt::NoModifier);
                QKeyEvent repeat(QEvent::KeyPress, nKey, Qt::NoModifier, QString(), true);
                release.setTimestamp(1000);
                pressOfOneMoment.setTimestamp(1000);
                for (QKeyEvent* pEvent : {&release, &pressOfOneMoment, &repeat})
                    QApplication::sendEvent(pWidget, pEvent);
                EXPECT_TRUE(dialog.isVisible());
            }
        }
        dialog.findChild<QPushButton*>(u"retry"_s)->click();
    };
    EXPECT_EQ(Answer(BoxButtons::RetryCancel, hold), BoxAnswer::Retry);
}

TEST_F(CPeople, OnlyAButtonAnswersForAllThatFollow) {
    struct Case {
        QString strPressed;
        bool bTicked, bYes, bAll;
    };
    for (const Case& c :
         {Case{u"yes"_s, true, true, true}, Case{u"yes"_s, false, true, false},
          Case{u"no"_s, true, false, true}, Case{u"Escape"_s, true, false, false},
          Case{u"close"_s, true, false, false}, Case{u"its window goes"_s, true, false, false}}) {
        auto pBelow = std::make_unique<QWidget>();
        pBelow->show();
        m_people.SetParent(pBelow.get());
        WhenDialogOpens([&](QDialog& dialog) {
            dialog.findChild<QCheckBox*>(u"forAll"_s)->setChecked(c.bTicked);
            if (auto* pButton = dialog.findChild<QPushButton*>(c.strPressed))
                pButton->click();
            else if (c.strPressed == u"Escape")
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else if (c.strPressed == u"close")
                dialog.close();
            else
                pBelow.reset();
        });
        const auto answer = m_people.QueryYesNoAll(u"<b>文字</b>"_s);
        EXPECT_TRUE(answer.bYes == c.bYes && answer.bAll == c.bAll) << c.strPressed;
    }
}

TEST_F(CPeople, TheStatusWindowIsPaintedAtOnce) {
    auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(u"正在保存..."_s);
    auto* pWindow = m_window.findChild<QWidget*>(u"statusWindow"_s);
    ASSERT_NE(pWindow, nullptr);
    const QImage image = m_window.screen()->grabWindow(pWindow->winId()).toImage();
    EXPECT_EQ(image.pixelColor(image.width() / 2, 6), QColor(0xD4, 0xD0, 0xC8)) << "not on the screen yet";
    EXPECT_NEAR(pWindow->frameGeometry().center().x(), m_window.frameGeometry().center().x(), 2);
    auto* pBar = pWindow->findChild<QProgressBar*>();
    EXPECT_FALSE(pBar->isVisible());
    pStatus->ShowProgress(qint64(3) << 40, qint64(4) << 40);
    EXPECT_TRUE(pBar->isVisible());
    EXPECT_EQ(pBar->value() * 4, pBar->maximum() * 3);
    pStatus.reset();
    EXPECT_EQ(m_window.findChild<QWidget*>(u"statusWindow"_s), nullptr);
    // The main window may go first.
    auto pGoing = std::make_unique<QMainWindow>();
    m_people.SetParent(pGoing.get());
    pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(u"a"_s);
    pGoing.reset();
    pStatus->ShowStatus(u"b"_s);
    pStatus->ShowProgress(1, 2);
}

TEST_F(CPeople, ALongWaitCanBeGivenUpOverADialog) {
    QDialog below(&m_window);
    below.setModal(true);
    QLineEdit field(&below);
    QPushButton command(u"a"_s, &below);
    command.move(0, 60);
    QObject::connect(&command, &QPushButton::clicked, [] { ADD_FAILURE() << "a click came through"; });
    below.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&below));
    field.setFocus();
    for (const bool bByKey : {false, true}) {
        field.clear();
        QWindow* pBelow = below.windowHandle();
        auto pStatus = WaitFor(below, [&](QPushButton& cancel) {
            QTest::mouseClick(pBelow, Qt::LeftButton, {}, command.geometry().center());
            QTest::keyClick(pBelow, Qt::Key_A);
            QTest::keyClick(pBelow, Qt::Key_B);
            EXPECT_EQ(field.text(), QString()) << "input while the step runs";
            bByKey ? QTest::keyClick(pBelow, Qt::Key_Escape)
                   : QTest::mouseClick(cancel.window()->windowHandle(), Qt::LeftButton, {},
                                       cancel.geometry().center());
        });
        EXPECT_TRUE(below.isVisible()) << "Escape closed the dialog";
        // The next step begins afresh.
        pStatus->AllowCancel(true);
        EXPECT_FALSE(below.findChild<QPushButton*>(u"statusCancel"_s)->isVisible());
        EXPECT_TRUE(pStatus->KeepWaiting());
        pStatus.reset();
        EXPECT_EQ(m_people.GetStatus(), nullptr);
        EXPECT_EQ(field.text(), QString()) << "input while a step may still go on";
        EXPECT_SOON(field.text() == u"ab"_s) << "typed meanwhile, and lost";
    }
}

TEST_F(CPeople, WhatIsTypedDuringALongWaitComesInItsOrderWhenTheBoxAtItsEndIsGone) {
    QLineEdit field(&m_window), next(&m_window);
    QAction save;
    save.setShortcut(Qt::CTRL | Qt::Key_S);
    m_window.addAction(&save);
    QString strSaved;
    QObject::connect(&save, &QAction::triggered, [&] { strSaved = field.text(); });
    field.show();
    next.show();
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    field.setFocus();
    auto pStatus = WaitFor(m_window, [&](QPushButton&) {
        QWindow* pWindow = m_window.windowHandle();
        QTest::keyClick(pWindow, Qt::Key_A);
        QInputMethodEvent written;
        written.setCommitString(u"文"_s);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &written);
        QTest::keyClick(pWindow, Qt::Key_S, Qt::ControlModifier);
        QTest::keyClick(pWindow, Qt::Key_B);
        QTest::keyClick(pWindow, Qt::Key_Tab);
        QTest::keyClick(pWindow, Qt::Key_C);
        QTest::keyClick(pWindow, Qt::Key_Escape);
    });
    pStatus->AllowCancel(false);
    WhenDialogOpens([&](QDialog& box) {
        QTest::qWait(100);
        EXPECT_EQ(field.text(), QString()) << "behind the box";
        box.reject();
    });
    m_people.Question(u"a"_s);
    pStatus.reset();
    EXPECT_SOON(next.text() == u"c"_s) << "what was typed behind a tab";
    EXPECT_EQ(field.text(), u"a文b"_s);
    EXPECT_EQ(strSaved, u"a文"_s);
}

TEST_F(CPeople, AWindowClosedWhileAStepRunsGoesWhenItIsOver) {
    auto pStatus = WaitFor(m_window, [&](QPushButton&) {
        QCloseEvent close;
        QCoreApplication::sendEvent(m_window.windowHandle(), &close);
        EXPECT_FALSE(close.isAccepted());
        QTest::keyClick(m_window.windowHandle(), Qt::Key_Escape);
    });
    pStatus->AllowCancel(false);
    // The step goes on: its course would be closed under it.
    for (int n = 0; n < 10; ++n) {
        m_people.KeepPainting();
        QTest::qSleep(15);
    }
    EXPECT_TRUE(m_window.isVisible());
    pStatus.reset();
    EXPECT_SOON(!m_window.isVisible());
}

// Input that the toolkit only puts off would come over the course when the other program has ended.
TEST_F(CPeople, WhatIsDoneAtTheWindowsWhileAnotherProgramRunsIsDropped) {
    if (QStandardPaths::findExecutable(u"xdotool"_s).isEmpty() || QApplication::platformName() != u"xcb")
        GTEST_SKIP() << "no hand at the mouse of this display";
    QLineEdit field(&m_window);
    QPushButton held(u"a"_s, &m_window), command(u"b"_s, &m_window);
    held.move(0, 60);
    command.move(0, 120);
    int nHeld = 0, nCommands = 0;
    QObject::connect(&held, &QPushButton::clicked, [&] { ++nHeld; });
    QObject::connect(&command, &QPushButton::clicked, [&] { ++nCommands; });
    QAction save;
    save.setShortcut(Qt::CTRL | Qt::Key_S);
    m_window.addAction(&save);
    QObject::connect(&save, &QAction::triggered, [&] { ++nCommands; });
    for (QWidget* pWidget : std::initializer_list<QWidget*>{&held, &command, &field}) {
        pWidget->setFocusPolicy(pWidget == &field ? Qt::StrongFocus : Qt::NoFocus);
        pWidget->show();
    }
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    field.setFocus();
    const auto at = [](const QWidget& widget) {
        const QPoint place = widget.mapToGlobal(widget.rect().center());
        return u"mousemove %1 %2 "_s.arg(place.x()).arg(place.y());
    };
    const auto hand = [](const QString& strInput) {
        EXPECT_EQ(QProcess::execute(u"xdotool"_s, strInput.split(u' ')), 0);
    };
    hand(at(held) + u"mousedown 1"_s);
    EXPECT_SOON(held.isDown());
    {
        const auto stop = m_people.StopInput();
        const QTemporaryDir folder;
        const QString strLast = folder.filePath(u"last"_s);
        // The last press is there when the program ends, and nobody has looked at it.
        EXPECT_TRUE(Platform::RunAndWait(
            u"Z:\\bin\\sh -c \"xdotool mouseup 1 %1 click 1 click 1 key a key ctrl+s click 4 key alt+F4 sleep 0.2; touch %2; xdotool %1 mousedown 1 sleep 0.3\""_s
                .arg(at(command), strLast),
            [&] {
                if (!QFile::exists(strLast))
                    m_people.KeepPainting();
            }));
        EXPECT_EQ(nHeld, 0) << "input while the program runs";
    }
    EXPECT_SOON(nHeld == 1 && !held.isDown()) << "a button stays down";
    hand(u"mouseup 1 key b"_s);
    EXPECT_SOON(field.text().endsWith(u'b'));
    EXPECT_EQ(field.text(), u"b"_s);
    EXPECT_TRUE(m_window.isVisible());
    EXPECT_EQ(nCommands, 0);
    hand(at(command) + u"click 1 key ctrl+s"_s);
    EXPECT_SOON(nCommands == 2) << "the windows stay deaf";
}

TEST_F(CPeople, ClosingTheDialogThatWaitsEndsTheWaitAtOnce) {
    // Right after it came up, with the first look, and when the button is there.
    for (const int nMoment : {0, 1, 2}) {
        QDialog below(&m_window);
        below.setModal(true);
        below.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&below));
        QWindow* pBelow = below.windowHandle();
        const auto close = [&] {
            QCloseEvent event;
            QCoreApplication::sendEvent(pBelow, &event);
            EXPECT_FALSE(below.isVisible());
        };
        if (nMoment > 0) {
            WaitFor(
                below, [&](QPushButton&) { close(); }, nMoment == 1);
            continue;
        }
        const auto pStatus = m_people.OpenStatus();
        pStatus->ShowStatus(u"正在获取..."_s);
        close();
        pStatus->AllowCancel(true);
        EXPECT_FALSE(pStatus->KeepWaiting());
    }
}

TEST_F(CPeople, ABoxThatATimerOpensBehindTheStatusWindowCanBeAnswered) {
    for (const bool bByKey : {false, true}) {
        WaitFor(m_window, [&](QPushButton& cancel) {
            const auto answer = [bByKey](QDialog& dialog) {
                auto* pOk = dialog.findChild<QPushButton*>(u"ok"_s);
                // Through the windows, as a person's input comes.
                EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
                bByKey ? QTest::keyClick(dialog.windowHandle(), Qt::Key_Return)
                       : QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {},
                                           pOk->mapTo(&dialog, pOk->rect().center()));
                EXPECT_FALSE(dialog.isVisible());
                dialog.reject();
            };
            WhenDialogOpens(answer);
            m_people.Warn(u"无法自动保留"_s);
            // Behind the box the gate holds the step's window as before.
            QTest::keyClick(m_window.windowHandle(), Qt::Key_Escape);
            EXPECT_FALSE(cancel.isEnabled());
        });
    }
}

TEST_F(CPeople, AHandlerCalledWhilePaintingDoesNotComeInAgain) {
    int nDepth = 0, nCalls = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++nCalls;
        EXPECT_TRUE(CQtPeople::IsKeepingPainting());
        EXPECT_EQ(++nDepth, 1);
        QTest::qSleep(30);
        m_people.KeepPainting();
        --nDepth;
    });
    timer.start(0);
    QTest::qSleep(30);
    m_people.KeepPainting();
    EXPECT_GT(nCalls, 0);
    EXPECT_FALSE(CQtPeople::IsKeepingPainting());
}

TEST_F(CPeople, PickersGiveBackslashPaths) {
    const CTempFolder folder;
    folder.Write(u"图 片.png"_s, "x");
    WhenDialogOpens([&](QDialog& dialog) {
        auto& picker = static_cast<QFileDialog&>(dialog);
        EXPECT_EQ(picker.nameFilters(),
                  (QStringList{u"图片(*.gif) (*.gif *.png)"_s, u"所有文件(*.*) (*)"_s}));
        EXPECT_EQ(picker.findChild<QComboBox*>(u"fileTypeCombo"_s)->itemText(0), u"图片(*.gif)"_s);
        EXPECT_EQ(picker.directory().path(), folder.Native());
        picker.selectFile(folder.Native(u"图 片.png"_s));
        dialog.accept();
    });
    EXPECT_EQ(
        m_people.PickOpenFile(u"打开"_s, folder.Path(), u"图片(*.gif)|*.gif;*.png\t|所有文件(*.*)|*.*||"_s),
        folder.Path(u"图 片.png"_s));
    WhenDialogOpens([](QDialog& dialog) {
        EXPECT_EQ(static_cast<QFileDialog&>(dialog).nameFilters(), QStringList{u"所有文件(*.*) (*)"_s});
        dialog.reject();
    });
    EXPECT_EQ(m_people.PickOpenFile(u"打开"_s, folder.Path(), QString()), std::nullopt);
    WhenDialogOpens([](QDialog& dialog) { dialog.accept(); });
    EXPECT_EQ(m_people.PickFolder(u"请您选择导入目录"_s, folder.Path()), folder.Path());
    // The proposed folder is made, and may be taken once it stands.
    for (int nTime = 0; nTime < 2; ++nTime) {
        WhenDialogOpens([](QDialog& dialog) { dialog.accept(); });
        EXPECT_EQ(m_people.PickNewFolder(u"请您选择导出目录"_s, folder.Path(), u"第1.2章"_s),
                  folder.Path(u"第1.2章"_s));
        EXPECT_TRUE(folder.Exists(u"第1.2章"_s));
    }
}

// A mask that is laid on in another scale leaves scraps of the finer file's picture.
TEST(Pictures, AMissingFileGivesAnEmptyPictureAndWhiteIsClear) {
    const CTempFolder folder;
    EXPECT_TRUE(Pictures::Resource(folder.Path(), 324).isNull());
    folder.MakeFolder(u"Images\\HtmlEditorToolBarImgs"_s);
    for (const auto& [strName, size] :
         {std::pair(u"Bold.bmp"_s, QSize(16, 15)), std::pair(u"Bold@2x.bmp"_s, QSize(32, 30))}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        image.setPixelColor(size.width() - 2, size.height() - 2, Qt::black);
        ASSERT_TRUE(image.save(folder.Native(u"Images\\HtmlEditorToolBarImgs\\"_s + strName), "BMP"));
        const QImage icon = Pictures::EditorIcon(folder.Path(), strName).pixmap(size).toImage();
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << strName;
        EXPECT_EQ(icon.pixelColor(icon.width() - 2, icon.height() - 2), QColor(Qt::black)) << strName;
    }
}

TEST(Pictures, FitsAStrangersPictureIntoItsRoom) {
    const CTempFolder folder;
    const auto save = [&folder](const QString& strName, QSize size, bool bTurned) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QImageWriter writer(folder.Native(strName), "jpg");
        if (bTurned)
            writer.setTransformation(QImageIOHandler::TransformationRotate90);
        ASSERT_TRUE(writer.write(image));
    };
    save(u"wide.bmp"_s, {1000, 500}, false);
    save(u"turned.jpg"_s, {1000, 500}, true);
    save(u"small.jpg"_s, {100, 50}, false);
    // A picture's head that claims what no memory holds.
    folder.Write(u"bomb.bmp"_s,
                 QByteArray::fromHex("424d3600000000000000360000002800000060ea000060ea00000100"
                                     "18000000000000000000000000000000000000000000000000000000"));
    folder.Write(u"text.jpg"_s, "<html>");
    const struct {
        QString strName;
        qreal dRatio;
        QSize pixels, shown;
    } rows[] = {
        {u"wide.bmp"_s, 1, {200, 100}, {200, 100}},
        {u"wide.bmp"_s, 2, {400, 200}, {200, 100}},
        {u"turned.jpg"_s, 1, {100, 200}, {100, 200}},
        {u"small.jpg"_s, 2, {100, 50}, {100, 50}},
        {u"bomb.bmp"_s, 1, {}, {}},
        {u"text.jpg"_s, 1, {}, {}},
        {u"missing.jpg"_s, 1, {}, {}},
    };
    for (const auto& row : rows) {
        const QPixmap picture = Pictures::Fitted(folder.Path(row.strName), {200, 200}, row.dRatio);
        EXPECT_EQ(picture.size().expandedTo({0, 0}), row.pixels.expandedTo({0, 0})) << row.strName;
        EXPECT_EQ(picture.deviceIndependentSize().toSize().expandedTo({0, 0}), row.shown.expandedTo({0, 0}))
            << row.strName;
    }
}
