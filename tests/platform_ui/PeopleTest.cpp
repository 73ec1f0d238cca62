#include "platform/ui/QtPeople.h"

#include "platform/ui/Pictures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WindowHelp.h"

#include <QFileDialog>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
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
    BoxAnswer Answer(BoxButtons buttons, const std::function<void(QDialog&)>& act) {
        WhenDialogOpens(act);
        return m_people.Ask(u"<b>文字</b>"_s, u"提示"_s, buttons, BoxIcon::Question);
    }

    QMainWindow m_window;
    CQtPeople m_people;
};

void Click(QDialog& dialog, const char* szName) {
    auto* pButton = dialog.findChild<QPushButton*>(QLatin1String(szName));
    ASSERT_NE(pButton, nullptr) << szName;
    pButton->click();
}

} // namespace

TEST_F(CPeople, EveryButtonAnswersForItself) {
    const struct {
        BoxButtons Buttons;
        QList<std::pair<const char*, BoxAnswer>> Answers;
        BoxAnswer Closed;
        QString strTexts;
    } rows[] = {
        {BoxButtons::Ok, {{"ok", BoxAnswer::Ok}}, BoxAnswer::Ok, u"确定"_s},
        {BoxButtons::OkCancel,
         {{"ok", BoxAnswer::Ok}, {"cancel", BoxAnswer::Cancel}},
         BoxAnswer::Cancel,
         u"确定 取消"_s},
        {BoxButtons::YesNo,
         {{"yes", BoxAnswer::Yes}, {"no", BoxAnswer::No}},
         BoxAnswer::No,
         u"是(&Y) 否(&N)"_s},
        {BoxButtons::YesNoCancel,
         {{"yes", BoxAnswer::Yes}, {"no", BoxAnswer::No}, {"cancel", BoxAnswer::Cancel}},
         BoxAnswer::Cancel,
         u"是(&Y) 否(&N) 取消"_s},
        {BoxButtons::RetryCancel,
         {{"retry", BoxAnswer::Retry}, {"cancel", BoxAnswer::Cancel}},
         BoxAnswer::Cancel,
         u"重试(&R) 取消"_s},
    };
    for (const auto& row : rows) {
        QStringList texts;
        for (const auto& [szName, answer] : row.Answers) {
            EXPECT_EQ(Answer(row.Buttons,
                             [&, szName = szName](QDialog& dialog) {
                                 texts.append(dialog.findChild<QPushButton*>(QLatin1String(szName))->text());
                                 Click(dialog, szName);
                             }),
                      answer)
                << szName;
        }
        EXPECT_EQ(texts.join(u' '), row.strTexts);
        const auto closing = [&](QDialog& dialog, bool bByKey) {
            bByKey ? QTest::keyClick(&dialog, Qt::Key_Escape) : (void)dialog.close();
            EXPECT_EQ(dialog.isVisible(), row.Buttons == BoxButtons::YesNo);
            if (dialog.isVisible())
                Click(dialog, "no");
        };
        for (const bool bByKey : {false, true})
            EXPECT_EQ(Answer(row.Buttons, [&](QDialog& dialog) { closing(dialog, bByKey); }), row.Closed);
        EXPECT_EQ(Answer(row.Buttons, [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }),
                  row.Answers[0].second);
    }
}

TEST_F(CPeople, ABoxShowsItsTextAsItStands) {
    Answer(BoxButtons::Ok, [](QDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), u"messageBox"_s);
        EXPECT_EQ(dialog.windowTitle(), u"提示"_s);
        auto& box = static_cast<QMessageBox&>(dialog);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), u"<b>文字</b>"_s);
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        box.accept();
    });
}

TEST_F(CPeople, ABoxOverADialogStandsOverIt) {
    QDialog below(&m_window);
    below.setModal(true);
    below.show();
    Answer(BoxButtons::Ok, [&](QDialog& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &below);
        dialog.accept();
    });
}

TEST_F(CPeople, TheStatusWindowIsPaintedAtOnce) {
    auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(u"正在保存..."_s);
    auto* pWindow = m_window.findChild<QWidget*>(u"statusWindow"_s);
    ASSERT_NE(pWindow, nullptr);
    const QImage image = m_window.screen()->grabWindow(pWindow->winId()).toImage();
    EXPECT_EQ(image.pixelColor(image.width() / 2, 6), QColor(0xD4, 0xD0, 0xC8)) << "not on the screen yet";
    EXPECT_NEAR(pWindow->frameGeometry().center().x(), m_window.frameGeometry().center().x(), 2);
    EXPECT_EQ(pWindow->findChild<QLabel*>()->text(), u"正在保存..."_s);
    auto* pBar = pWindow->findChild<QProgressBar*>();
    EXPECT_FALSE(pBar->isVisible());
    pStatus->ShowProgress(qint64(3) << 40, qint64(4) << 40);
    EXPECT_TRUE(pBar->isVisible());
    EXPECT_EQ(pBar->value() * 4, pBar->maximum() * 3);
    pStatus->ShowProgress(0, 0);
    EXPECT_FALSE(pBar->isVisible());
    auto pInner = m_people.OpenStatus();
    pInner->ShowStatus(u"正在连接..."_s);
    EXPECT_EQ(m_window.findChildren<QWidget*>(u"statusWindow"_s).size(), 2);
    pInner.reset();
    pStatus.reset();
    EXPECT_EQ(m_window.findChild<QWidget*>(u"statusWindow"_s), nullptr);
}

TEST_F(CPeople, AStatusWindowOutlivesTheMainWindow) {
    auto pWindow = std::make_unique<QMainWindow>();
    m_people.SetParent(pWindow.get());
    auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(u"a"_s);
    pWindow.reset();
    pStatus->ShowStatus(u"b"_s);
    pStatus->ShowProgress(1, 2);
}

TEST_F(CPeople, KeepPaintingPaintsAndTakesNoInput) {
    QPushButton button(&m_window);
    button.resize(80, 30);
    button.show();
    bool bClicked = false;
    QObject::connect(&button, &QPushButton::clicked, [&] { bClicked = true; });
    QTest::qWait(50);
    // A handler that is called from inside must not come in again.
    int nDepth = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        EXPECT_TRUE(CQtPeople::IsKeepingPainting());
        EXPECT_EQ(++nDepth, 1);
        QTest::qSleep(30);
        m_people.KeepPainting();
        --nDepth;
    });
    timer.start(0);
    QTest::qSleep(30);
    m_people.KeepPainting();
    timer.stop();
    EXPECT_FALSE(CQtPeople::IsKeepingPainting());
    EXPECT_FALSE(bClicked);
}

TEST_F(CPeople, PickersGiveBackslashPaths) {
    const CTempFolder folder;
    folder.Write(u"图 片.png"_s, "x");
    WhenDialogOpens([&](QDialog& dialog) {
        auto& picker = static_cast<QFileDialog&>(dialog);
        EXPECT_EQ(picker.objectName(), u"fileDialog"_s);
        EXPECT_EQ(picker.nameFilters().value(0), u"所有图片文件 (*.gif *.png)"_s);
        EXPECT_EQ(picker.directory().path(), folder.Native());
        EXPECT_EQ(picker.labelText(QFileDialog::Reject), u"取消"_s);
        picker.selectFile(folder.Native(u"图 片.png"_s));
        static_cast<QDialog&>(picker).accept();
    });
    EXPECT_EQ(m_people.PickOpenFile(u"打开"_s, folder.Path(), u"所有图片文件(*.gif;*.png)|*.gif;*.png||"_s),
              folder.Path(u"图 片.png"_s));
    WhenDialogOpens([](QDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(m_people.PickOpenFile(u"打开"_s, folder.Path(), QString()), std::nullopt);
    WhenDialogOpens([&](QDialog& dialog) { static_cast<QDialog&>(dialog).accept(); });
    EXPECT_EQ(m_people.PickFolder(u"请您选择导入目录"_s, folder.Path()), folder.Path());
}

TEST(Pictures, MissingFilesGiveEmptyPicturesAndWhiteIsClear) {
    const CTempFolder folder;
    EXPECT_TRUE(Pictures::Resource(folder.Path(), 324).isNull());
    EXPECT_TRUE(Pictures::ToolbarIcon(folder.Path(), 32771).isNull());
    EXPECT_TRUE(Pictures::EditorIcon(folder.Path(), u"Bold.bmp"_s).isNull());
    folder.MakeFolder(u"Images\\HtmlEditorToolBarImgs"_s);
    QImage image(16, 15, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixelColor(3, 3, Qt::black);
    ASSERT_TRUE(image.save(folder.Native(u"Images\\HtmlEditorToolBarImgs\\Bold.bmp"_s), "BMP"));
    const QImage icon = Pictures::EditorIcon(folder.Path(), u"Bold.bmp"_s).pixmap(16, 15).toImage();
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(3, 3), QColor(Qt::black));
}
