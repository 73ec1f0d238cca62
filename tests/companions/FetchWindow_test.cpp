#include "companions/fetch/ui/FetchWindow.h"
#include "tests/support/StrangeServer.h"
#include "tests/support/WindowHelp.h"

#include <QProgressBar>

namespace {

constexpr int c_nPatienceMilliseconds = 10000;

FetchRequest Request(const CStrangeServer& server, const CTempFolder& folder) {
    return ReadFetchArgument(QString::fromUtf8(server.Url("/?Name=x")) + u',' +
                             folder.Path(u"SysData\\T\\甲<b>"_s));
}

TEST(FetchWindow, KeepsAFaultToBeRead) {
    const CTempFolder folder;
    const CStrangeServer server("HTTP/1.0 500 <i>\r\n\r\n");
    CFetchWindow window(Request(server, folder));
    WhenDialogOpens([](QDialog& dialog) {
        auto* pButton = dialog.findChild<QPushButton*>(u"cancel"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pButton->text() == u"关闭"_s; }, c_nPatienceMilliseconds));
        EXPECT_EQ(dialog.findChild<QLabel*>(u"title"_s)->text(),
                  u"下载模板失败：服务器没有给出模板（Http 500 错误）。"_s);
        EXPECT_FALSE(dialog.findChild<QProgressBar*>(u"progress"_s)->isVisible());
        QTest::keyClick(pButton, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(QTest::qWaitFor([&] { return pButton->isDefault(); }, c_nPatienceMilliseconds));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(window.exec(), QDialog::Rejected);
}

TEST(FetchWindow, EscapeStopsTheFetching) {
    const CTempFolder folder;
    const CStrangeServer server("HTTP/1.0 200 OK\r\nContent-Length: 4\r\n\r\nPK", CStrangeServer::EEnd::Hang);
    CFetchWindow window(Request(server, folder));
    WhenDialogOpens([](QDialog& dialog) {
        const auto* pBar = dialog.findChild<QProgressBar*>(u"progress"_s);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return pBar->value() == pBar->maximum() / 2 && pBar->maximum() > 0; },
                            c_nPatienceMilliseconds));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(window.exec(), QDialog::Rejected);
    EXPECT_FALSE(folder.Exists(u"SysData/.vorel-fetch"_s));
}

} // namespace
