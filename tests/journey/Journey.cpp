#include "tests/journey/Journey.h"

#include "foundation/CodePage.h"
#include "tests/journey/Steps.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

const QString c_strTyped = u"本课程面向全校本科生，讲授数据结构与算法。"_s;
const QString c_strBold = u"欢迎选课！"_s;
const QString c_strLater = u"第二学期补充实验。"_s;
const QString c_strNewNode = u"学生作品展示"_s;
const QString c_strNewPassword = u"vorel2026"_s;

const QString c_strFileName = u"fileNameEdit"_s;

/// One part of the way.
class CTeacher : public CSteps {
public:
    using CSteps::Close;
    using CSteps::CSteps;

    void ChooseCourse() {
        m_robot.WaitForWidget(u"ok"_s, c_strStartup);
        m_robot.Shot(u"start"_s);
        m_robot.Click(u"ok"_s, c_strStartup);

        const QString strInitial = qEnvironmentVariable("VOREL_JOURNEY_PASSWORD");
        m_robot.WaitForWidget(u"courseList"_s, c_strWizard);
        ClickLine(u"courseList"_s);
        m_robot.Fill(u"password"_s, strInitial, c_strWizard);
        GoOn(u"choose-course"_s);

        // The sample course still has its initial password, and the wizard does not go on with it.
        m_robot.Fill(u"old"_s, strInitial);
        m_robot.Fill(u"new"_s, c_strNewPassword);
        m_robot.Fill(u"confirm"_s, c_strNewPassword);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"密码已修改，请您牢记！"_s, u"ok"_s);
    }

    void ChooseFolderAndTemplate() {
        m_robot.WaitForWidget(u"courseFolder"_s, c_strWizard);
        const auto strFolder = Robot::Ask<QString>(
            [] { return qobject_cast<QLineEdit*>(Robot::Find(u"courseFolder"_s))->text(); });
        GoOn(u"choose-folder"_s);
        ClickLine(u"templateList"_s);
        GoOn(u"choose-template"_s);
        GoOn(u"summary"_s, u"finish"_s);
        WaitForOpenCourse();
        Note(u"course"_s, strFolder);
        m_robot.Shot(u"course-open"_s);
    }

    void WritePage() {
        SelectFirstLeaf();
        m_robot.Shot(u"page"_s);
        EnterEditor();

        m_robot.Press(u"Return"_s);
        m_robot.Type(c_strTyped);
        PressBold(true);
        m_robot.Type(c_strBold);
        PressBold(false);
        m_robot.Press(u"Return"_s);
        InsertPicture();
        m_robot.Shot(u"typed"_s);

        m_robot.Press(u"ctrl+s"_s);
        WaitForSaved(u"<b>"_s + c_strBold + u"</b>"_s);
        const QString strPage = SavedPage();
        if (!strPage.contains(u"res/"_s) || strPage.contains(u"校园"_s))
            throw Robot::Failure("the picture of the saved page does not lie in its own folder: " +
                                 strPage.toStdString());
        m_robot.Shot(u"saved"_s);
    }

    void LeaveWithQuestion() {
        m_robot.Click(u"design"_s);
        m_robot.Press(u"ctrl+End"_s);
        m_robot.Type(c_strLater);
        ClickLine(c_strTree, RootText());
        AnswerBox(u"该文件内容已改变，您需要保存已修改的内容吗？"_s, u"yes"_s);
        WaitForSaved(c_strLater);
    }

    void AddNode() {
        ClickLine(c_strTree, RootText(), 3);
        m_robot.Shot(u"context-menu"_s);
        m_robot.ClickMenuEntry(u"添加子栏目"_s);
        m_robot.WaitForWidget(u"titleEdit"_s);
        m_robot.Press(u"ctrl+a"_s);
        m_robot.Type(c_strNewNode);
        m_robot.Press(u"Return"_s);
        m_robot.WaitFor("the new node", [] { return Line(c_strTree, c_strNewNode).isValid(); });
        m_robot.Shot(u"node-added"_s);
    }

    void OpenAgain() {
        OpenRecent();
        Login(c_strNewPassword);
        m_robot.Shot(u"open-again"_s);
    }

    void FindAllAsLeft() {
        m_robot.WaitFor("the node that was added", [] { return Line(c_strTree, c_strNewNode).isValid(); });
        ClickLine(c_strTree, c_strNewNode);
        if (!SavedPage().contains(c_strLater))
            throw Robot::Failure("what was saved last is gone");
        m_robot.Shot(u"empty-node"_s);
    }

    void Compile() {
        m_robot.Click(u"tool_32855"_s);
        const QString strSite = Fact(u"course"_s) + u"/课程网站"_s;
        m_robot.WaitFor(
            "the compiled site", [&] { return QFile::exists(strSite + u"/index.html"_s); }, 60);
        m_robot.WaitForWidget(u"tool_32855"_s);
        Note(u"site"_s, strSite);
        m_robot.Shot(u"compiled"_s);
    }

private:
    /// The page that holds the typed text, as it lies on the disk; empty when there is none.
    QString SavedPage() const {
        const QDir nodes(Fact(u"course"_s) + u"/Data/Courseware/NodeResource"_s);
        for (const QString& strNode : nodes.entryList({u"N*"_s}, QDir::Dirs)) {
            QFile page(nodes.filePath(strNode + u"/Content.htm"_s));
            const QString strText =
                page.open(QIODevice::ReadOnly) ? CodePage::Decode(page.readAll()) : QString();
            if (strText.contains(c_strTyped))
                return strText;
        }
        return QString();
    }

    void WaitForSaved(const QString& strText) {
        m_robot.WaitFor("the page on the disk", [&] { return SavedPage().contains(strText); });
    }

    void PressBold(bool bOn) {
        m_robot.Click(c_strBoldButton);
        m_robot.WaitFor("the button to follow the caret", [&] {
            return qobject_cast<QAbstractButton*>(Robot::Find(c_strBoldButton))->isChecked() == bOn;
        });
    }

    void InsertPicture() {
        m_robot.Click(u"button_32790"_s);
        m_robot.Fill(c_strFileName, m_strFolder + u"/校园 照片.png"_s);
        m_robot.Shot(u"choose-picture"_s);
        m_robot.Press(u"Return"_s);
        m_robot.WaitFor("the file dialog to go", [] { return !Robot::Find(c_strFileName); });
    }
};

} // namespace

void RunJourney(const QString& strFolder, int nPart) {
    CTeacher teacher(strFolder);
    if (nPart == 1) {
        teacher.ChooseCourse();
        teacher.ChooseFolderAndTemplate();
        teacher.WritePage();
        teacher.LeaveWithQuestion();
        teacher.AddNode();
    } else {
        teacher.OpenAgain();
        teacher.FindAllAsLeft();
        teacher.Compile();
    }
    teacher.Close();
}

void CompileInWindow(const QString& strFolder) {
    Robot robot(strFolder + u"/shots"_s);
    robot.WaitForWidget(u"start"_s);
    robot.Shot(u"compile-where"_s);
    robot.Press(u"Return"_s);
    robot.WaitFor(
        "the report",
        [] {
            const auto* pClose = qobject_cast<QAbstractButton*>(Robot::Find(u"cancel"_s));
            return pClose && pClose->text() == u"关闭"_s;
        },
        60);
    robot.Shot(u"compile-report"_s);
    robot.Press(u"Return"_s);
}
