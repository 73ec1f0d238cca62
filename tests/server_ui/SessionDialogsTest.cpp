#include "server/ui/SessionDialogs.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "server/ui/TemplateDownloadDialog.h"
#include "tests/support/CourseServiceThread.h"
#include "tests/support/ScriptedDialogs.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/StrangeServer.h"
#include "tests/support/WindowHelp.h"

#include <QBuffer>

using Torvane::Dialog::MFC::BoxIcon;

namespace {

QLineEdit& Field(QDialog& dialog, const QString& strName) {
    return The<QLineEdit>(dialog, strName);
}

/// Fills the fields, presses Enter, and answers where the focus is then.
QString Enter(QDialog& dialog, const QMap<QString, QString>& fields) {
    for (auto it = fields.begin(); it != fields.end(); ++it)
        Field(dialog, it.key()).setText(it.value());
    QTest::keyClick(&dialog, Qt::Key_Return);
    return dialog.isVisible() ? dialog.focusWidget()->objectName() : u"closed"_s;
}

TEST(PasswordDialogs, AskForThePasswordOfACourse) {
    CScriptedPeople people;
    CSessionDialogs dialogs(people);
    const CCourseInfo info{1, u"<b>课程</b>"_s, u"教师"_s};
    WhenDialogOpens([&](QDialog& dialog) {
        EXPECT_EQ(Field(dialog, u"course"_s).text(), info.Name);
        EXPECT_EQ(Field(dialog, u"teacher"_s).text(), info.TeacherName);
        EXPECT_EQ(Field(dialog, u"password"_s).echoMode(), QLineEdit::Password);
        QTest::keyClicks(dialog.focusWidget(), u"a b1"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskPassword(info), u"a b1"_s);
    WhenDialogOpens([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(dialogs.AskPassword(info), std::nullopt);
    WhenDialogOpens([](QDialog& dialog) {
        QTest::keyClick(dialog.findChild<QPushButton*>(u"cancel"_s), Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.AskPassword(info), std::nullopt) << "Enter on 取消 is no 确定";
}

TEST(PasswordDialogs, StayUntilAChangesFieldsAreRight) {
    CScriptedPeople people;
    CSessionDialogs dialogs(people);
    people.Expect(u"请您填写原密码！"_s);
    people.Expect(u"两次输入密码不一致，请您重新输入！"_s);
    people.Expect(u"为了保障您的课程的安全，密码不得低于6位!"_s);
    WhenDialogOpens([&](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>(u"prompt"_s)->text(), u"说明"_s);
        EXPECT_EQ(Enter(dialog, {}), u"old"_s);
        EXPECT_EQ(Enter(dialog, {{u"old"_s, u"旧"_s}, {u"new"_s, u"密码"_s}, {u"confirm"_s, u"密"_s}}),
                  u"confirm"_s);
        EXPECT_EQ(Field(dialog, u"confirm"_s).text(), u""_s);
        EXPECT_EQ(Enter(dialog, {{u"confirm"_s, u"密码"_s}}), u"new"_s);
        EXPECT_EQ(Enter(dialog, {{u"new"_s, u"密码密"_s}, {u"confirm"_s, u"密码密"_s}}), u"closed"_s);
    });
    const auto change = dialogs.AskPasswordChange(u"说明"_s);
    EXPECT_TRUE(change && change->strOld == u"旧"_s && change->strNew == u"密码密"_s);
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
    People.Expect(u"请您填写服务器地址！"_s);
    People.Expect(u"您输入的服务器地址格式不正确，如有疑问，请您向管理员咨询。"_s);
    People.Expect(u"无法与服务器建立连接。"_s);
    People.Expect(u"对不起，服务器出错，请您与系统管理员联系！"_s);
    const CStrangeServer garbage("what is this");
    WhenDialogOpens([&](QDialog& dialog) {
        EXPECT_EQ(Field(dialog, u"address"_s).text(), u"http://"_s);
        EXPECT_EQ(Enter(dialog, {{u"address"_s, u"  "_s}}), u"address"_s);
        Enter(dialog, {{u"address"_s, u"FTP://x"_s}});
        EXPECT_EQ(Field(dialog, u"address"_s).text(), u"ftp://x"_s) << "lowered in the field too";
        Enter(dialog, {{u"address"_s, u"http://127.0.0.1:1"_s}});
        Enter(dialog, {{u"address"_s, QString::fromLatin1(garbage.Url())}});
        EXPECT_EQ(Enter(dialog, {{u"address"_s, u' ' + Server.Url().toUpper()}}), u"closed"_s);
    });
    EXPECT_EQ(AskServerAddress(u"http://"_s, Session, People, nullptr), Server.Url());
    EXPECT_EQ(People.Boxes.back().Icon, BoxIcon::Warning);
    EXPECT_EQ(People.Boxes.back().strTitle, u"提示"_s);
}

TEST_F(ServerWindowTest, TheCompanionPutsATemplateAmongTheLocalOnes) {
    const QString strPage = u"\\甲 乙\\eht\\htm\\通用页面.htm"_s;
    QFile::link(QStringLiteral(VOREL_FETCH), Program.Native(u"VorelFetch"_s));
    CTemplateDownload download(People);
    for (const QByteArray text : {"first", "second"}) {
        Offered.Write(u"ReportTemplates"_s + strPage, text);
        EXPECT_TRUE(download.Fetch(u"甲 乙"_s));
        EXPECT_EQ(Program.Read(u"SysData\\VorelTemplates"_s + strPage), text);
        if (text == "first")
            People.Expect(Program.Native(u"SysData/VorelTemplates/甲 乙"_s) + u"已经存在，是否继续更新？"_s,
                          Torvane::Dialog::MFC::BoxAnswer::Yes);
    }
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
    Offered.Write(u"ReportTemplates\\c 坏\\Preview.jpg"_s, "<html>");
    CTemplateDownload download(People);
    ASSERT_TRUE(download.FetchList());
    CTemplateDownloadDialog dialog(download, nullptr);
    auto* pList = dialog.findChild<QListWidget*>(u"templates"_s);
    const auto centre = [&] {
        const QImage shown = dialog.findChild<QLabel*>(u"preview"_s)->pixmap().toImage();
        return shown.isNull() ? QColor() : shown.pixelColor(shown.width() / 2, shown.height() / 2);
    };
    WhenDialogOpens([&](QDialog& shown) {
        EXPECT_SOON(centre().red() > 200);
        QTest::keyClick(shown.focusWidget(), Qt::Key_Down);
        EXPECT_GT(centre().blue(), 200);
        People.Expect(u"获取预览图失败！"_s);
        QTest::keyClick(pList, Qt::Key_End);
        EXPECT_GT(centre().blue(), 200) << "what is no picture leaves the old one";
        People.Expect(u"请您选择一个模板！"_s);
        pList->clearSelection();
        QTest::keyClick(&shown, Qt::Key_Return);
        EXPECT_TRUE(shown.isVisible());
        QTest::keyClick(pList, Qt::Key_Up);
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
