#include "content/ui/CreateProjectWizard.h"

#include "content/ui/CourseNodesPage.h"
#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"
#include "platform/ui/PicturePane.h"
#include "tests/support/CourseServiceThread.h"
#include "tests/support/ScriptedDialogs.h"
#include "tests/support/WindowHelp.h"

#include <QTreeWidget>

namespace {

/// A person who sees whether the wizard stands there while something is fetched.
class CWatchingPeople : public CScriptedPeople {
public:
    QString strSeen;
    std::function<void()> onBox;

    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override {
        if (const QWidget* pWizard = QApplication::activeModalWidget()) {
            const auto* pList = pWizard->findChild<QListWidget*>(u"courseList"_s);
            strSeen += pWizard->isVisible() ? (pList->isEnabled() ? u"list "_s : u"waiting "_s) : u"none "_s;
        }
        return CScriptedPeople::OpenStatus();
    }
    BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                  BoxDefault byEnter) override {
        if (onBox)
            onBox();
        return CScriptedPeople::Ask(strText, strTitle, buttons, icon, byEnter);
    }
};

class NewCourseWizardTest : public ::testing::Test {
protected:
    CCourseServiceThread m_server{u"示范大学"_s};
    CTempFolder m_folder;
    CWatchingPeople m_people;
    CScriptedDialogs m_dialogs;
    CServerSession m_session{m_people, m_dialogs};
    std::unique_ptr<CCreateProjectWizard> m_pWizard;

    NewCourseWizardTest() {
        const auto write = [&](const QString& strBelow, const QString& strText) {
            m_folder.Write(u"程序\\"_s + strBelow, CodePage::Encode(strText));
        };
        write(u"AppInfo.ini"_s,
              u"[SysInfo]\r\nProvince=0\r\nSchoolName=示范大学\r\nServerURL="_s + m_server.Url());
        write(u"SysData\\InitialNodes.txt"_s, u"章,1,3,,1\n一,-1,2,,1\n二,-1,-1,,0\n尾,-1,-1,,1\n"_s);
        write(u"SysData\\VorelTemplates\\空\\InitialNodes.txt"_s, u"空,-1,-1,,1\n"_s);
        write(u"SysData\\VorelTemplates\\红\\InitialNodes.txt"_s, u"红,-1,-1,,1\n"_s);
        for (const QString& strPage : {u"甲"_s, u"乙"_s})
            write(u"SysData\\VorelTemplates\\红\\eht\\htm\\%1.htm"_s.arg(strPage), u"<p></p>"_s);
        Picture(u"Preview.jpg"_s, {1600, 800});
        Picture(u"PreviewImgs\\乙.jpg"_s, {60, 40});
        CSysInfo::Reset(m_folder.Path(u"程序\\Vorel"_s));
    }
    void Picture(const QString& strBelow, const QSize& size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        m_folder.Write(u"程序\\SysData\\VorelTemplates\\红\\"_s + strBelow, {});
        ASSERT_TRUE(image.save(m_folder.Native(u"程序\\SysData\\VorelTemplates\\红\\"_s + strBelow)));
    }
    /// Runs the wizard and plays its teacher, if any, as soon as it stands there.
    bool Run(const std::function<void()>& teacher) {
        m_pWizard = std::make_unique<CCreateProjectWizard>(m_people, m_session, nullptr);
        if (teacher) {
            WhenDialogOpens([&](QDialog&) {
                teacher();
                if (m_pWizard->isVisible())
                    m_pWizard->reject();
            });
        }
        return m_pWizard->Run();
    }
    template <typename CWidget = QLineEdit>
    CWidget& The(const QString& strName) {
        return ::The<CWidget>(*m_pWizard, strName);
    }
    /// Types into whatever has the focus, over what stands there, and presses a key.
    void Type(const QString& strText, Qt::Key key) {
        auto* pField = qobject_cast<QLineEdit*>(m_pWizard->focusWidget());
        ASSERT_NE(pField, nullptr);
        pField->clear();
        QInputMethodEvent event;
        event.setCommitString(strText);
        QApplication::sendEvent(pField, &event);
        QTest::keyClick(pField, key);
    }
    void ChooseCourse(const QString& strSearch, const QString& strPassword) {
        EXPECT_SOON(The<QListWidget>(u"courseList"_s).isEnabled());
        Type(strSearch, Qt::Key_Tab);
        The(u"password"_s).setFocus();
        Type(strPassword, Qt::Key_Return);
    }
    QString Title() const { return m_pWizard->currentPage()->title().section(u'－', 1); }
};

TEST_F(NewCourseWizardTest, WaitsForTheListAndIsCancelledWithoutOne) {
    m_server.Stop();
    m_people.onBox = [&] { m_server.Start(); };
    m_people.Expect(u"对不起，无法获取课程列表，请您与系统管理员联系！"_s, CScriptedPeople::BoxAnswer::Retry);
    EXPECT_FALSE(Run([&] { EXPECT_SOON(The<QListWidget>(u"courseList"_s).count() == 5); }));
    EXPECT_EQ(m_people.strSeen, u"waiting waiting "_s);

    CSysInfo::Instance().SetServerURL(CCourseServiceThread().Url());
    m_people.onBox = nullptr;
    m_people.Expect(u"对不起，无法获取课程列表，请您与系统管理员联系！"_s,
                    CScriptedPeople::BoxAnswer::Cancel);
    EXPECT_FALSE(Run(nullptr));
    const CCourseServiceThread empty;
    CSysInfo::Instance().SetServerURL(empty.Url());
    m_people.Expect(u"对不起，服务器暂无课程！"_s);
    EXPECT_FALSE(Run(nullptr));
}

TEST_F(NewCourseWizardTest, KeepsWhatWasTypedUntilAnotherCourseIsChosen) {
    const QString strPicked = m_folder.Path(u"别处"_s);
    m_people.Folders = {strPicked};
    m_people.Expect(u"请您先选择课程!"_s);
    m_people.Expect(u"请您填写课程名"_s);
    m_dialogs.Changes = {ISessionDialogs::PasswordChange{u"123456"_s, u"abcdef"_s}};
    m_people.Expect(u"密码已修改，请您牢记！"_s);
    Run([&] {
        EXPECT_SOON(The<QListWidget>(u"courseList"_s).isEnabled());
        QTest::keyClick(m_pWizard->focusWidget(), Qt::Key_Return);
        ChooseCourse(u"计算"_s, u"wangluo8"_s);
        EXPECT_EQ(The<QPlainTextEdit>(u"courseDetails"_s).toPlainText(),
                  u"课程编号:005\n课程名称:计算机网络\n教师名称:陈强"_s);
        EXPECT_EQ(The(u"courseSearch"_s).text(), u"计算"_s) << "what is typed stays as typed";
        EXPECT_EQ(The(u"courseName"_s).text(), u"计算机网络"_s);
        Type(u""_s, Qt::Key_Return);
        EXPECT_EQ(m_pWizard->focusWidget(), &The(u"courseName"_s));
        Type(u"网络"_s, Qt::Key_Tab);
        QTest::keyClick(&The<QPushButton>(u"browse"_s), Qt::Key_Return);
        const QString strFolder = m_folder.Native(u"别处\\网络\\申报网站"_s);
        EXPECT_EQ(The(u"courseFolder"_s).text(), strFolder);

        m_pWizard->back();
        ChooseCourse(u"计算"_s, u"wangluo8"_s);
        EXPECT_EQ(The(u"courseName"_s).text() + The(u"courseFolder"_s).text(), u"网络"_s + strFolder);
        m_pWizard->back();
        auto& list = The<QListWidget>(u"courseList"_s);
        list.clearSelection();
        list.setCurrentItem(nullptr);
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Down);
        EXPECT_EQ(list.currentRow(), 0) << "the first line was passed over";
        The(u"courseSearch"_s).setFocus();
        EXPECT_EQ(The(u"courseSearch"_s).text(), u"大学物理"_s);
        ChooseCourse(u"大学物理"_s, u"123456"_s);
        EXPECT_EQ(The(u"courseName"_s).text(), u"大学物理"_s);
        EXPECT_TRUE(The(u"courseFolder"_s).text().endsWith(u"/Projects/大学物理/申报网站"_s));
    });
}

TEST_F(NewCourseWizardTest, ShowsPreviewsAndFinishesWithTheRecord) {
    m_people.Expect(u"请您选择一个模板!"_s);
    const bool bFinished = Run([&] {
        ChooseCourse(u"计算"_s, u"wangluo8"_s);
        QTest::keyClick(m_pWizard->focusWidget(), Qt::Key_Return);
        EXPECT_EQ(Title(), u"选择课程模板"_s);
        QTest::keyClick(m_pWizard->focusWidget(), Qt::Key_Return);
        auto& list = The<QListWidget>(u"templateList"_s);
        const auto& preview = The<CPicturePane>(u"preview"_s);
        auto &previous = The<QToolButton>(u"previewPrevious"_s), &next = The<QToolButton>(u"previewNext"_s);
        list.setCurrentItem(list.findItems(u"红"_s, Qt::MatchExactly).first());
        EXPECT_SOON(preview.GetPicture().width() == preview.width());
        EXPECT_EQ(preview.GetPicture().height(), preview.width() / 2) << "in its proportions";
        EXPECT_TRUE(!previous.isEnabled() && next.isEnabled());
        QTest::keyClick(&next, Qt::Key_Space);
        EXPECT_TRUE(previous.isEnabled() && next.isEnabled());
        EXPECT_SOON(preview.GetPicture().size() == QSize(60, 40)); // no larger than it is
        next.setFocus();
        QTest::keyClick(&next, Qt::Key_Return);
        EXPECT_TRUE(previous.isEnabled() && !next.isEnabled());
        EXPECT_EQ(m_pWizard->focusWidget(), &The<QComboBox>(u"pageCombo"_s))
            << "not the wizard's own buttons";
        EXPECT_EQ(The<QComboBox>(u"pageCombo"_s).currentText(), u"甲"_s);
        EXPECT_SOON(preview.GetPicture().isNull()); // it has no picture

        QTest::keyClick(&list, Qt::Key_Return);
        const auto& summary = The<QPlainTextEdit>(u"summary"_s);
        EXPECT_EQ(m_pWizard->focusWidget(), &summary);
        EXPECT_EQ(summary.toPlainText().section(u'\n', 0, 2),
                  u"课 程 名：计算机网络\n教 师 名：陈强\n工 程 名：计算机网络"_s);
        m_pWizard->back();
        EXPECT_EQ(list.currentItem()->text(), u"红"_s);
        QTest::keyClick(&list, Qt::Key_Return);
        QTest::keyClick(m_pWizard->focusWidget(), Qt::Key_Return);
    });
    EXPECT_TRUE(bFinished);
    const CreateRecord& record = m_pWizard->GetRecord();
    EXPECT_EQ(record.Info.Id, 5);
    EXPECT_EQ(record.FileTitle + record.TemplateName, u"计算机网络红"_s);
    EXPECT_TRUE(record.Folder.endsWith(u"\\Projects\\计算机网络\\申报网站\\"_s));
    ASSERT_EQ(record.InitialNodes.size(), 1);
    EXPECT_EQ(record.InitialNodes.first().Title, u"红"_s);
}

TEST_F(NewCourseWizardTest, ThePageOfNodesGivesBackTheBoxes) {
    CreateRecord record;
    QWizard wizard;
    auto* pPage = new CSelectCourseNodePropertyPage(m_people, record);
    wizard.addPage(pPage);
    wizard.show();
    auto* pTree = pPage->findChild<QTreeWidget*>(u"nodeTree"_s);
    QTreeWidgetItem* pChapter = pTree->topLevelItem(0);
    EXPECT_EQ(pChapter->checkState(0), Qt::PartiallyChecked);
    pTree->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
    const auto back = [&] {
        pPage->validatePage();
        QString strSelected;
        for (const InitialNode& node : record.InitialNodes)
            strSelected += node.Selected ? node.Title : u"-"_s;
        return strSelected;
    };
    EXPECT_EQ(back(), u"章一--"_s);
    pChapter->setCheckState(0, Qt::Checked);
    EXPECT_EQ(back(), u"章一二-"_s);
    pChapter->setCheckState(0, Qt::Unchecked);
    EXPECT_EQ(back(), u"----"_s);

    m_folder.Write(u"程序\\SysData\\InitialNodes.txt"_s, "a,1,-1,,1\nb,1,-1,,1\n");
    m_people.Expect(u"系统文件读取错误"_s);
    wizard.restart();
    EXPECT_FALSE(wizard.isVisible());
}

} // namespace
