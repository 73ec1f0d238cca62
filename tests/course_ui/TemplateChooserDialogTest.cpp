#include "course/ui/TemplateChooserDialog.h"
#include "platform/ui/PicturePane.h"
#include "tests/support/CourseFakes.h"
#include "tests/support/WindowHelp.h"

namespace {

class TemplateChooserTest : public testing::Test {
protected:
    void SetUp() override {
        QImage picture(2000, 1000, QImage::Format_RGB32);
        picture.fill(Qt::red);
        ASSERT_TRUE(picture.save(World.Folder.Native(World.Template(u"Preview.jpg"_s))));
        World.Write(World.Template(u"Preview.jpg"_s, u"模板二"_s), u"no picture"_s);
    }
    std::optional<QString> Choose(const QString& strCurrent, const std::function<void(QDialog&)>& step) {
        WhenDialogOpens(step);
        return CTemplateChooser().ChooseTemplate(strCurrent);
    }
    static QComboBox& List(QDialog& dialog) { return *dialog.findChild<QComboBox*>(u"templateList"_s); }
    static CPicturePane& Picture(QDialog& dialog) {
        return *dialog.findChild<CPicturePane*>(u"templatePicture"_s);
    }
    CCourseWorld World;
};

TEST_F(TemplateChooserTest, ShowsAndGivesTheSelectedTemplate) {
    const auto chosen = Choose(u"模板一"_s, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"设置模板"_s);
        EXPECT_EQ(List(dialog).currentText(), u"模板一"_s);
        EXPECT_SOON(Picture(dialog).GetPicture().size() == QSize(400, 200));
        List(dialog).setCurrentIndex(List(dialog).findText(u"模板二"_s));
        // A picture that doesn't load leaves its place empty.
        EXPECT_SOON(Picture(dialog).GetPicture().isNull());
        dialog.findChild<QPushButton*>(u"ok"_s)->click();
    });
    EXPECT_EQ(chosen, u"模板二"_s);
}

TEST_F(TemplateChooserTest, UnknownNameSelectsTheFirstAndNoneLeavesNothingToAccept) {
    const auto cancel = [](int nSelected, bool bOk) {
        return [=](QDialog& dialog) {
            EXPECT_EQ(List(dialog).currentIndex(), nSelected);
            EXPECT_EQ(dialog.findChild<QPushButton*>(u"ok"_s)->isEnabled(), bOk);
            dialog.findChild<QPushButton*>(u"cancel"_s)->click();
        };
    };
    EXPECT_EQ(Choose(u"gone"_s, cancel(0, true)), std::nullopt);
    CSysInfo::Reset(World.Folder.Path(u"elsewhere\\Vorel"_s));
    EXPECT_EQ(Choose(u"模板一"_s, cancel(-1, false)), std::nullopt);
}

} // namespace
