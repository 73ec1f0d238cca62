#include "companions/docexport/ui/ExportWindow.h"

#include "companions/docexport/Package.h"
#include "companions/docexport/ui/PictureFiles.h"
#include "tests/companions/SampleCourse.h"
#include "tests/support/WindowHelp.h"

namespace {

constexpr int c_nPatienceMilliseconds = 60000;

PictureTaker NoPictures(const QString&) {
    return [](const QString&, const auto&) { return TakenPicture(std::nullopt); };
}

TEST(ExportWindow, ExportsAndReportsWhatIsLeftOut) {
    CSampleCourse course;
    course.Add(c_nRootNodeId, u"丢了"_s, NodeType::c_nEditorPage, u"Content.htm"_s);
    CExportWindow window(course.Folder.Path(course.strProject), u"<b>课"_s, NoPictures);
    WhenDialogOpens([](QDialog& dialog) {
        auto* pTarget = dialog.findChild<QLineEdit*>(u"target"_s);
        pTarget->setText(u"讲义"_s);
        // Return means the start again when the focus has been on the other button.
        dialog.findChild<QPushButton*>(u"cancel"_s)->setFocus();
        pTarget->setFocus();
        QTest::keyClick(pTarget, Qt::Key_Return);
        auto* pClose = dialog.findChild<QPushButton*>(u"cancel"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pClose->text() == u"关闭"_s; }, c_nPatienceMilliseconds));
        EXPECT_TRUE(dialog.findChild<QPlainTextEdit*>(u"report"_s)->toPlainText().contains(u"栏目“丢了”"));
        EXPECT_EQ(QApplication::focusWidget(), pClose);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(window.exec(), QDialog::Accepted);
    EXPECT_FALSE(
        Package::Read(course.Folder.Native(CSampleCourse::Below(u"讲义.docx"_s)), "word/document.xml")
            .isEmpty());
}

TEST(ExportWindow, AsksBeforeItReplacesAndStopsWhenTold) {
    CSampleCourse course;
    const QString strTarget = CSampleCourse::Below(u"课程.docx"_s);
    course.Folder.Write(strTarget, "old");
    CExportWindow window(course.Folder.Path(course.strProject), u"课"_s, NoPictures);
    WhenDialogOpens([](QDialog& dialog) {
        WhenDialogOpens([](QDialog& question) { QTest::keyClick(&question, Qt::Key_Return); });
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.findChild<QLineEdit*>(u"target"_s)->isVisible()) << "Return must not replace";
        WhenDialogOpens([](QDialog& question) {
            qobject_cast<QMessageBox*>(&question)->button(QMessageBox::Yes)->click();
        });
        QTest::keyClick(&dialog, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(window.exec(), QDialog::Rejected);
    EXPECT_EQ(course.Folder.Read(strTarget), "old");
}

TEST(PictureFiles, TakesWhatADocumentCanShow) {
    const CTempFolder folder;
    const auto save = [&](const QString& strName, const char* szFormat, QSize size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        EXPECT_TRUE(image.save(folder.Native(strName), szFormat));
    };
    save(u"a.bmp"_s, "BMP", {30, 20});
    save(u"large.jpg"_s, "JPG", {3000, 30});
    save(u"really.png.gif"_s, "PNG", {5, 5});
    folder.Write(u"half.png"_s, folder.Read(u"really.png.gif"_s).left(40));
    folder.Write(u"drawing.svg"_s,
                 "<svg xmlns='http://www.w3.org/2000/svg'><image href='/etc/passwd'/></svg>");
    folder.Write(u"drawing.png"_s,
                 "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='6'><rect width='8' "
                 "height='6'/></svg>");
    save(u"photo.svg"_s, "PNG", {7, 7});
    folder.MakeFolder(u"out"_s);
    CPictureFiles pictures(folder.Native(u"out"_s));
    const auto taken = [&](const QString& strName) {
        const auto picture = pictures.Take(folder.Native(strName), [] { return true; }).Picture;
        if (!picture)
            return QString();
        const QImage image(folder.Native(u"out\\"_s + picture->Name));
        return u"%1 %2x%3 %4"_s.arg(picture->Name)
            .arg(picture->Width)
            .arg(picture->Height)
            .arg(image.width());
    };
    EXPECT_EQ(taken(u"a.bmp"_s), u"picture1.png 30x20 30"_s);
    EXPECT_EQ(taken(u"a.bmp"_s), u"picture1.png 30x20 30"_s);
    EXPECT_EQ(taken(u"large.jpg"_s), u"picture2.jpg 3000x30 2000"_s);
    EXPECT_EQ(taken(u"really.png.gif"_s), u"picture3.png 5x5 5"_s);
    EXPECT_FALSE(pictures.Take(folder.Native(u"drawing.png"_s), [] { return false; }).Picture);
    EXPECT_EQ(taken(u"drawing.png"_s), u"picture4.png 8x6 16"_s);
    EXPECT_EQ(taken(u"photo.svg"_s), u"picture5.png 7x7 7"_s);
    for (const QString& strName : {u"half.png"_s, u"drawing.svg"_s, u"none.png"_s})
        EXPECT_EQ(taken(strName), QString()) << strName;
    CPictureFiles nowhere(folder.Native(u"gone"_s));
    for (const QString& strName : {u"a.bmp"_s, u"really.png.gif"_s})
        EXPECT_THROW(nowhere.Take(folder.Native(strName), [] { return true; }), Torvane::CRunException)
            << strName;
}

} // namespace
