#include "server/ui/SessionDialogs.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "server/ui/TemplateDownloadDialog.h"
#include "tests/support/CourseServiceThread.h"
#include "tests/support/Printing.h"
#include "tests/support/ScriptedDialogs.h"
#include "tests/support/ScriptedPeople.h"

#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using Torvane::Dialog::MFC::BoxIcon;

namespace {

/// Does the steps as soon as the dialog of this name stands; fails the test and closes it if they leave it
/// open.
void WhenShown(const QString& strName, const std::function<void(QDialog&)>& steps) {
    QTimer::singleShot(0, [=] {
        auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(pDialog, nullptr);
        EXPECT_EQ(pDialog->objectName(), strName);
        steps(*pDialog);
        if (pDialog->isVisible()) {
            ADD_FAILURE() << "still open";
            pDialog->reject();
        }
    });
}

QLineEdit& Field(QDialog& dialog, const QString& strName) {
    auto* pField = dialog.findChild<QLineEdit*>(strName);
    if (pField == nullptr)
        qFatal("no field %s", qPrintable(strName));
    return *pField;
}

void Type(QDialog& dialog, const QString& strName, const QString& strText) {
    QLineEdit& field = Field(dialog, strName);
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    // Characters beyond the keyboard come as one piece, as an input method commits them.
    field.insert(strText);
}

QString FocusOf(const QDialog& dialog) {
    return dialog.focusWidget() ? dialog.focusWidget()->objectName() : u""_s;
}

TEST(PasswordDialog, AsksForThePasswordOfACourse) {
    CScriptedPeople people;
    CSessionDialogs dialogs(people);
    const CCourseInfo info{1, u"<b>课程</b>"_s, u"教师"_s};
    WhenShown(u"CPasswordDialog"_s, [&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"验证密码"_s);
        EXPECT_EQ(dialog.findChild<QLabel*>(u"prompt"_s)->text(),
                  u"请您输入课程密码，如有疑问，请向管理员咨询。"_s);
        EXPECT_EQ(Field(dialog, u"course"_s).text(), info.Name);
        EXPECT_EQ(Field(dialog, u"teacher"_s).text(), info.TeacherName);
        EXPECT_TRUE(Field(dialog, u"course"_s).isReadOnly() && Field(dialog, u"teacher"_s).isReadOnly());
        EXPECT_EQ(Field(dialog, u"password"_s).echoMode(), QLineEdit::Password);
        EXPECT_EQ(FocusOf(dialog), u"password"_s);
        QTest::keyClicks(dialog.focusWidget(), u"a b1"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskPassword(info), u"a b1"_s);
    WhenShown(u"CPasswordDialog"_s, [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(dialogs.AskPassword(info), std::nullopt);
}

TEST(ChangePasswordDialog, StaysUntilItsFieldsAreRight) {
    CScriptedPeople people;
    CSessionDialogs dialogs(people);
    people.Expect(u"请您填写原密码！"_s);
    people.Expect(u"两次输入密码不一致，请您重新输入！"_s);
    people.Expect(u"为了保障您的课程的安全，密码不得低于6位!"_s);
    WhenShown(u"CChangePasswordDialog"_s, [&](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>(u"prompt"_s)->text(), u"说明"_s);
        auto* pOk = dialog.findChild<QPushButton*>(u"ok"_s);
        EXPECT_EQ(pOk->text(), u"确定"_s);
        EXPECT_EQ(dialog.findChild<QPushButton*>(u"cancel"_s)->text(), u"取消"_s);
        QTest::mouseClick(pOk, Qt::LeftButton);
        EXPECT_EQ(FocusOf(dialog), u"old"_s);
        Type(dialog, u"old"_s, u"旧"_s);
        Type(dialog, u"new"_s, u"密码"_s);
        Type(dialog, u"confirm"_s, u"密"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(FocusOf(dialog), u"confirm"_s);
        EXPECT_EQ(Field(dialog, u"confirm"_s).text(), u""_s);
        Type(dialog, u"confirm"_s, u"密码"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(FocusOf(dialog), u"new"_s);
        Type(dialog, u"new"_s, u"密码密"_s);
        Type(dialog, u"confirm"_s, u"密码密"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    const auto change = dialogs.AskPasswordChange(u"说明"_s);
    ASSERT_TRUE(change);
    EXPECT_EQ(change->strOld, u"旧"_s);
    EXPECT_EQ(change->strNew, u"密码密"_s);
    for (const auto& box : people.Boxes)
        EXPECT_TRUE(box.strTitle == u"提示"_s && box.Icon == BoxIcon::Information);
}

class ServerWindowTest : public testing::Test {
protected:
    CTempFolder Offered;
    CTempFolder Program;
    CCourseServiceThread Server{u"示范大学"_s, Offered.Native()};
    CScriptedPeople People;
    CScriptedDialogs Dialogs;
    CServerSession Session{People, Dialogs};

    ServerWindowTest() {
        const QString strIni = u"[SysInfo]\r\nServerURL="_s + Server.Url() + u"\r\n"_s;
        Program.Write(u"AppInfo.ini"_s, CodePage::Encode(strIni));
        CSysInfo::Reset(Program.Path(u"Vorel"_s));
    }
};

TEST_F(ServerWindowTest, AnAddressIsTakenWhenAServerAnswersThere) {
    const QString strDead = u"http://127.0.0.1:1"_s;
    People.Expect(u"请您填写服务器地址！"_s);
    People.Expect(u"您输入的服务器地址格式不正确，如有疑问，请您向管理员咨询。"_s);
    People.Expect(u"无法与服务器建立连接。"_s);
    WhenShown(u"CServerAddressDialog"_s, [&](QDialog& dialog) {
        EXPECT_EQ(Field(dialog, u"address"_s).text(), u"http://"_s);
        Type(dialog, u"address"_s, u"  "_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        Type(dialog, u"address"_s, u"FTP://x"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(Field(dialog, u"address"_s).text(), u"ftp://x"_s) << "lowered in the field too";
        Type(dialog, u"address"_s, strDead);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(FocusOf(dialog), u"address"_s);
        Type(dialog, u"address"_s, u' ' + Server.Url().toUpper());
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(AskServerAddress(u"http://"_s, Session, People, nullptr), Server.Url());
    EXPECT_EQ(People.Boxes.back().Icon, BoxIcon::Warning);
    EXPECT_EQ(People.Boxes.back().strTitle, u"提示"_s);
}

TEST_F(ServerWindowTest, TemplatesAreShownWithTheirPictures) {
    const auto offer = [&](const QString& strName, QRgb color) {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        picture.save(&buffer, "JPG");
        Offered.Write(u"ReportTemplates\\"_s + strName + u"\\Preview.jpg"_s, bytes);
    };
    offer(u"a 红"_s, 0xFFFF0000);
    offer(u"b 蓝"_s, 0xFF0000FF);
    CTemplateDownload download(People);
    ASSERT_TRUE(download.FetchList());
    CTemplateDownloadDialog dialog(download, nullptr);
    auto* pList = dialog.findChild<QListWidget*>(u"templates"_s);
    const auto centre = [&] {
        const QImage shown = dialog.findChild<QLabel*>(u"preview"_s)->pixmap().toImage();
        return shown.isNull() ? QColor() : shown.pixelColor(shown.width() / 2, shown.height() / 2);
    };
    EXPECT_GT(centre().red(), 200);
    WhenShown(u"CTemplateDownloadDialog"_s, [&](QDialog& shown) {
        QTest::keyClick(pList, Qt::Key_Down);
        EXPECT_GT(centre().blue(), 200);
        QTest::mouseClick(shown.findChild<QPushButton*>(u"ok"_s), Qt::LeftButton);
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetChosen(), u"b 蓝"_s);

    CTemplateDownload nothing(People);
    CTemplateDownloadDialog empty(nothing, nullptr);
    EXPECT_EQ(empty.findChild<QListWidget*>(u"templates"_s)->item(0)->text(), u"<暂无模板>"_s);
    EXPECT_FALSE(empty.findChild<QPushButton*>(u"ok"_s)->isEnabled());
}

} // namespace
