#include "content/ui/CreateProjectWizard.h"

#include "content/ui/PicturePane.h"
#include "courseserver/CourseService.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/TempFolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

class CNoDialogs : public ISessionDialogs {
public:
    std::optional<QString> AskPassword(const CCourseInfo&) override { return std::nullopt; }
    std::optional<PasswordChange> AskPasswordChange(const QString&) override { return std::nullopt; }
};

/// The wizard of an installation with two templates, against a course server with the sample courses.
class CreateProjectWizardTest : public ::testing::Test {
protected:
    CTempFolder m_folder;
    CScriptedPeople m_people;
    CNoDialogs m_dialogs;
    CServerSession m_session{m_people, m_dialogs};
    CCourseService m_service{Options()};
    std::thread m_serving{[this] { m_service.Run(); }};

    CreateProjectWizardTest() {
        Configure(u"示范大学"_s);
        const QString strTemplates = CSysInfo::Instance().GetTemplatesFolder(true);
        Put(strTemplates + u"蓝\\icon.bmp"_s, Picture("BMP", 32, 32));
        Put(strTemplates + u"红\\Preview.jpg"_s, Picture("JPG", 400, 100));
        Put(strTemplates + u"红\\eht\\htm\\简介.htm"_s, "x");
        Put(strTemplates + u"红\\InitialNodes.txt"_s, "a,-1,-1,,1\r\n");
    }
    ~CreateProjectWizardTest() override {
        m_service.Stop();
        m_serving.join();
    }

    CourseServiceOptions Options() const {
        CourseServiceOptions options;
        options.strDataFolder = m_folder.Native(u"server"_s);
        options.strSampleSchool = u"示范大学"_s;
        return options;
    }
    void Configure(const QString& strSchool) {
        Put(m_folder.Path(u"程序\\AppInfo.ini"_s), {});
        WriteTextFile(m_folder.Path(u"程序\\AppInfo.ini"_s),
                      u"[SysInfo]\nServerURL=http://127.0.0.1:%1/\nProvince=0\nSchoolName=%2\n"_s
                          .arg(m_service.GetPort())
                          .arg(strSchool));
        CSysInfo::Reset(m_folder.Path(u"程序\\Vorel.exe"_s));
    }
    static void Put(const QString& strPath, const QByteArray& bytes) {
        Torvane::File::CreateFolderPath(Torvane::File::ParentFolder(strPath));
        ReplaceFile(strPath, bytes);
    }
    static QByteArray Picture(const char* pszFormat, int nWidth, int nHeight) {
        QImage image(nWidth, nHeight, QImage::Format_RGB32);
        image.fill(Qt::red);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, pszFormat);
        return buffer.data();
    }

    /// Runs the wizard while a script of a person's steps plays in it.
    bool Run(CCreateProjectWizard& wizard, std::function<void()> script) {
        QTimer::singleShot(0, &wizard, [&] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&wizard));
            script();
            if (wizard.isVisible()) {
                ADD_FAILURE() << "the wizard is still open";
                wizard.reject();
            }
        });
        return wizard.Run();
    }
};

TEST_F(CreateProjectWizardTest, FromTheListToTheRecord) {
    m_folder.Write(u"满\\x"_s, "x");
    CCreateProjectWizard wizard(m_people, m_session, nullptr);
    const auto press = [&](const QString& strButton) {
        QTest::mouseClick(wizard.findChild<QAbstractButton*>(strButton), Qt::LeftButton);
    };
    const auto edit = [&](const QString& strName) { return wizard.findChild<QLineEdit*>(strName); };
    const auto title = [&] { return wizard.currentPage()->title(); };

    const bool bFinished = Run(wizard, [&] {
        EXPECT_EQ(wizard.windowTitle(), u"新建课程向导"_s);
        EXPECT_EQ(title(), u"新建课程向导－选择课程"_s);
        auto* pList = wizard.findChild<QListWidget*>(u"courseList"_s);
        auto* pDetails = wizard.findChild<QPlainTextEdit*>(u"courseDetails"_s);
        EXPECT_EQ(pList->count(), 5);
        m_people.Expect(u"请您先选择课程!"_s);
        press(u"next"_s);
        // What is typed selects, and stays as typed; what is picked is copied.
        edit(u"courseSearch"_s)->setText(u"计算"_s);
        EXPECT_EQ(pDetails->toPlainText(), u"课程编号:005\n课程名称:计算机网络\n教师名称:陈强"_s);
        EXPECT_EQ(edit(u"courseSearch"_s)->text(), u"计算"_s);
        pList->setCurrentRow(0);
        EXPECT_EQ(edit(u"courseSearch"_s)->text(), u"大学物理"_s);
        pList->setCurrentRow(4);
        m_people.Expect(u"请您输入密码!"_s);
        press(u"next"_s);
        m_people.Expect(u"密码错误，请您重新输入!"_s);
        QTest::keyClicks(edit(u"password"_s), u"wrong1"_s);
        press(u"next"_s);
        EXPECT_EQ(QApplication::focusWidget(), edit(u"password"_s));
        QTest::keyClicks(edit(u"password"_s), u"wangluo8"_s);
        QTest::keyClick(edit(u"password"_s), Qt::Key_Return);

        EXPECT_EQ(title(), u"新建课程向导－设置课程目录"_s);
        EXPECT_EQ(edit(u"courseName"_s)->text(), u"计算机网络"_s);
        EXPECT_EQ(edit(u"courseFolder"_s)->text(), m_folder.Native(u"程序/Projects/计算机网络/申报网站"_s));
        edit(u"courseName"_s)->setText(u"网络"_s);
        edit(u"courseFolder"_s)->setText(m_folder.Native(u"满"_s));
        m_people.Expect(u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s);
        press(u"next"_s);
        m_people.Folders.push_back(m_folder.Path(u"新"_s));
        press(u"browse"_s);
        EXPECT_EQ(edit(u"courseFolder"_s)->text(), m_folder.Native(u"新/网络/申报网站"_s));
        press(u"next"_s);
        EXPECT_TRUE(m_folder.Exists(u"新\\网络\\申报网站"_s));

        EXPECT_EQ(title(), u"新建课程向导－选择课程模板"_s);
        m_people.Expect(u"请您选择一个模板!"_s);
        press(u"next"_s);
        auto* pTemplates = wizard.findChild<QListWidget*>(u"templateList"_s);
        auto* pPages = wizard.findChild<QComboBox*>(u"pageCombo"_s);
        auto* pPreview = wizard.findChild<CPicturePane*>(u"preview"_s);
        const QList<QListWidgetItem*> red = pTemplates->findItems(u"红"_s, Qt::MatchExactly);
        ASSERT_EQ(red.size(), 1);
        pTemplates->setCurrentItem(red.first());
        EXPECT_EQ(pPages->count(), 2);
        EXPECT_EQ(pPages->currentText(), u"整体预览"_s);
        EXPECT_FALSE(pPreview->IsEmpty());
        // Four times as wide as high, at the pane's full width.
        const QImage shown = pPreview->grab().toImage();
        const QPoint centre = shown.rect().center();
        EXPECT_GT(shown.pixelColor(3, centre.y()).red(), 200);
        EXPECT_LT(shown.pixelColor(3, centre.y()).green(), 60);
        EXPECT_GT(shown.pixelColor(centre.x(), centre.y() - shown.width() / 6).green(), 200);
        EXPECT_FALSE(wizard.findChild<QWidget*>(u"previewPrevious"_s)->isEnabled());
        press(u"previewNext"_s);
        EXPECT_EQ(pPages->currentText(), u"简介"_s);
        EXPECT_TRUE(pPreview->IsEmpty());
        EXPECT_FALSE(wizard.findChild<QWidget*>(u"previewNext"_s)->isEnabled());
        // What was typed is still there, and the folder made before is empty.
        press(u"back"_s);
        EXPECT_EQ(edit(u"courseName"_s)->text(), u"网络"_s);
        press(u"next"_s);
        EXPECT_EQ(pTemplates->currentItem()->text(), u"红"_s);
        press(u"next"_s);

        EXPECT_EQ(title(), u"新建课程向导－显示用户选择"_s);
        EXPECT_EQ(wizard.findChild<QPlainTextEdit*>(u"summary"_s)->toPlainText(),
                  u"课 程 名：计算机网络\n教 师 名：陈强\n工 程 名：网络\n路    径："_s +
                      m_folder.Native(u"新/网络/申报网站"_s) + u"\n模    板：红"_s);
        press(u"finish"_s);
    });
    EXPECT_TRUE(bFinished);
    const CreateRecord& record = wizard.GetRecord();
    EXPECT_EQ(record.Info, (CCourseInfo{5, u"计算机网络"_s, u"陈强"_s}));
    EXPECT_EQ(record.FileTitle, u"网络"_s);
    EXPECT_EQ(record.Folder, m_folder.Path(u"新\\网络\\申报网站\\"_s));
    EXPECT_EQ(record.TemplateName, u"红"_s);
    EXPECT_EQ(record.InitialNodes.size(), 1);
}

TEST_F(CreateProjectWizardTest, EscapeCancelsAndASchoolWithoutCoursesNeverShowsIt) {
    {
        CCreateProjectWizard wizard(m_people, m_session, nullptr);
        EXPECT_FALSE(Run(wizard, [&] { QTest::keyClick(&wizard, Qt::Key_Escape); }));
    }
    Configure(u"别的学校"_s);
    m_people.Expect(u"对不起，服务器暂无课程！"_s);
    CCreateProjectWizard wizard(m_people, m_session, nullptr);
    QTimer::singleShot(0, &wizard, [&] {
        if (wizard.isVisible()) {
            ADD_FAILURE() << "the wizard shows";
            wizard.reject();
        }
    });
    EXPECT_FALSE(wizard.Run());
}

} // namespace
