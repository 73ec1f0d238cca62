#include "companions/compiler/ui/CompileWindow.h"

#include "tests/companions/SampleCourse.h"
#include "tests/support/WindowHelp.h"

namespace {

constexpr int c_nPatienceMilliseconds = 60000;

TEST(CompileWindow, CompilesAndReportsWhatIsLeftOut) {
    CSampleCourse course;
    course.Add(c_nRootNodeId, u"丢了"_s, NodeType::c_nEditorPage, u"Content.htm"_s);
    course.Folder.Write(CSampleCourse::Below(u"坏\\课程网站"_s), "a file in the way");
    course.Folder.Write(course.strProject,
                        course.Folder.Read(course.strProject) + "[Compile]\r\nLastDir=Z:\\gone\r\n");
    CCompileWindow window({course.Folder.Path(course.strProject)}, u"<b>课"_s);
    WhenDialogOpens([&](QDialog& dialog) {
        const auto* pHead = dialog.findChild<QLabel*>(u"head"_s);
        EXPECT_TRUE(pHead->text().contains(u"“/gone”已不存在")) << "she is told before it goes elsewhere";
        auto* pPlace = dialog.findChild<QLineEdit*>(u"target"_s);
        EXPECT_EQ(pPlace->text(), QFileInfo(course.SiteNative()).path()) << "the course's own folder";
        pPlace->setText(course.Folder.Native(course.strProject));
        WhenDialogOpens([](QDialog& warning) { QTest::keyClick(&warning, Qt::Key_Escape); });
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(pPlace->isVisible()) << "a file is no folder";
        auto* pClose = dialog.findChild<QPushButton*>(u"cancel"_s);
        const auto ended = [&] {
            return QTest::qWaitFor([&] { return pClose->text() == u"关闭"_s; }, c_nPatienceMilliseconds);
        };
        pPlace->setText(u"坏"_s);
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(ended());
        EXPECT_TRUE(pHead->text().contains(u"合成失败"));
        EXPECT_TRUE(pPlace->hasFocus()) << "another folder may be tried at once";
        pPlace->setText(u"站点"_s);
        WhenDialogOpens([](QDialog& question) {
            qobject_cast<QMessageBox*>(&question)->button(QMessageBox::Yes)->click();
        });
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(ended());
        EXPECT_TRUE(dialog.findChild<QPlainTextEdit*>(u"report"_s)->toPlainText().contains(u"栏目“丢了”"));
        dialog.findChild<QPushButton*>(u"copy"_s)->click();
        EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u"栏目“丢了”"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(window.exec(), QDialog::Accepted);
    EXPECT_TRUE(course.Folder.Exists(CSampleCourse::Below(u"站点\\课程网站\\index.html"_s)));
    EXPECT_TRUE(course.Folder.Read(course.strProject).contains("LastDir=Z:\\"));
    EXPECT_FALSE(course.Folder.Read(course.strProject).contains("LastDir=Z:\\gone"));
}

} // namespace
