#include "content/Texts.h"
#include "content/TreeCommands.h"
#include "editor/Texts.h"
#include "tests/journey/Journey.h"
#include "tests/journey/Steps.h"
#include "tests/journey/WindowCheck.h"

#include <QAction>
#include <QApplication>
#include <QTabBar>
#include <QToolTip>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

const QString c_strCourse = u"计算机网络"_s;
const QString c_strPassword = u"wangluo8"_s;
/// Nodes that every course begins with: pages and a branch below the root.
const QString c_strPage = u"教学条件"_s;
const QString c_strOtherPage = u"教学效果"_s;
const QString c_strLastPage = u"申报表"_s;
const QString c_strBranch = u"教学内容"_s;

/// Opens every window of the shell once, takes its picture and looks at what it offers without a mouse.
class CVisitor : public CSteps {
public:
    using CSteps::Close;
    using CSteps::CSteps;

    void MakeCourse() {
        Look(u"start-new"_s, c_strStartup);
        m_robot.Press(u"ctrl+Tab"_s);
        Look(u"start-open"_s, c_strStartup);
        m_robot.Press(u"ctrl+Tab"_s);
        m_robot.Click(u"ok"_s, c_strStartup);

        m_robot.WaitForWidget(u"courseList"_s, c_strWizard);
        m_robot.Fill(u"courseSearch"_s, c_strCourse.left(2), c_strWizard);
        m_robot.Fill(u"password"_s, c_strPassword, c_strWizard);
        Look(u"wizard-course"_s, c_strWizard);
        m_robot.Press(u"Return"_s);
        m_robot.WaitForWidget(u"courseFolder"_s, c_strWizard);
        Look(u"wizard-folder"_s, c_strWizard);
        m_robot.Press(u"Return"_s);
        m_robot.WaitForWidget(u"templateList"_s, c_strWizard);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"请您选择一个模板!"_s, u"ok"_s);
        ClickLine(u"templateList"_s);
        m_robot.Click(u"previewNext"_s, c_strWizard);
        Look(u"wizard-template"_s, c_strWizard);
        m_robot.Click(u"next"_s, c_strWizard);
        m_robot.WaitForWidget(u"summary"_s, c_strWizard);
        Look(u"wizard-summary"_s, c_strWizard);
        m_robot.Press(u"Return"_s);
        WaitForOpenCourse();
        Look(u"course-open"_s, c_strFrame);
    }

    void OpenDialogs() {
        VisitDialog(32853, u"COptionsDialog"_s);
        VisitDialog(57664, u"CAboutDialog"_s);
        VisitDialog(32854, u"CServerAddressDialog"_s);
        VisitDialog(32852, u"CChangePasswordDialog"_s);
        VisitDialog(32873, u"CPreviewDialog"_s);
        VisitDialog(32921, u"templateDialog"_s);
        VisitDialog(32935, u"CTemplateDownloadDialog"_s);
        VisitDialog(32778, u"fileDialog"_s);
        VisitDialog(32939, u"CCustomTitlesDialog"_s);
        VisitDialog(32869, u"askTitles"_s);
        VisitDialog(32774, u"confirmDeletion"_s);
        ClickLine(c_strTree, Robot::Ask<QString>([] { return Selected(c_strTree); }), 3);
        m_robot.ClickMenuEntry(u"设置打开类型..."_s);
        Visit(u"COpenTypeDialog"_s);
    }

    /// Both pages for every kind.
    void OpenContentWizard() {
        ClickLine(c_strTree, c_strLastPage);
        m_robot.WaitFor("the page's line", [] { return Selected(c_strTree) == c_strLastPage; });
        Command(TreeCommand::c_nCreateContent);
        AnswerBox(ContentText::c_strOverwriteContent, u"ok"_s);
        const QString strWizard = u"CCreateNodeFileWizard"_s;
        m_robot.WaitForWidget(u"kind0"_s, strWizard);
        m_robot.WaitFor("the advice", [] { return QToolTip::isVisible(); });
        Look(u"content-kinds"_s, strWizard);
        for (int nKind = 0; nKind <= 8; ++nKind) {
            m_robot.Press(u"Return"_s);
            m_robot.WaitFor("the page of the kind", [] { return Robot::Find(u"newWindow"_s); });
            Look(u"content-kind%1"_s.arg(nKind), strWizard);
            m_robot.Press(u"alt+k"_s);
            m_robot.WaitForWidget(u"kind%1"_s.arg(nKind), strWizard);
            if (nKind < 8)
                m_robot.Press(u"Down"_s);
        }
        m_robot.Press(u"Return"_s);
        m_robot.WaitForWidget(u"setLink"_s, strWizard);
        m_robot.Press(u"alt+b"_s);
        Visit(u"CInSiteLinkDialog"_s);
        m_robot.Press(u"Escape"_s);
        m_robot.WaitFor("Escape to close it", [&] { return !Robot::Find(strWizard); });
    }

    void OpenMenus() {
        for (const QString& strKeys : {u"alt+f"_s, u"alt+e"_s, u"alt+v"_s, u"alt+t"_s, u"alt+h"_s}) {
            m_robot.Press(strKeys);
            LookAtMenu(u"menu-"_s + strKeys.back());
            m_robot.Press(u"Escape"_s);
        }
        ClickLine(c_strTree, RootText(), 3);
        LookAtMenu(u"tree-menu-root"_s);
        m_robot.ClickInto(c_strTree);
        for (const QString& strKey : {u"Right"_s, u"Down"_s, u"Right"_s, u"Down"_s})
            m_robot.Press(strKey);
        ClickLine(c_strTree, Robot::Ask<QString>([] { return Selected(c_strTree); }), 3);
        LookAtMenu(u"tree-menu-node"_s);
    }

    void OpenEditor() {
        Command(32815);
        m_robot.WaitForWidget(u"button_32826"_s);
        Look(u"editor"_s, c_strFrame);
        // A page that is being edited is left alone by a branch that is taken elsewhere.
        DragLine(c_strPage, c_strBranch);
        m_robot.WaitFor("the branch to open below the mouse", [] { return IsOpen(c_strBranch); });
        m_robot.Shot(u"tree-drag"_s);
        Robot::LetGo();
        m_robot.WaitFor("the line that was dropped", [] { return IsBelow(c_strPage, c_strBranch); });
        m_robot.Shot(u"tree-dropped"_s);
    }

    void VisitEditor() {
        m_robot.Click(u"design"_s);
        m_robot.ClickAt(u"design"_s, &QWidget::rect, 3);
        LookAtMenu(u"editor-menu"_s);
        for (const QString& strBox : {u"box_32785"_s, u"box_32786"_s}) {
            m_robot.Click(strBox);
            LookAtMenu(strBox);
            m_robot.Press(u"Escape"_s);
            WaitForText();
        }
        for (const auto& [nButton, strDialog] :
             {std::pair(32782, u"colourDialog"_s), std::pair(32837, u"CTableDialog"_s),
              std::pair(32844, u"CInputDialog"_s), std::pair(32851, u"CInputDialog"_s),
              std::pair(32848, u"linkDialog"_s), std::pair(32790, u"fileDialog"_s),
              std::pair(32792, u"fileDialog"_s)}) {
            m_robot.Click(u"button_%1"_s.arg(nButton));
            Visit(strDialog);
            WaitForText();
        }
        // Out of the table in the middle.
        m_robot.Press(u"ctrl+Home"_s);
        m_robot.Click(u"button_32838"_s);
        AnswerBox(EditorTexts::c_strNoTable, u"ok"_s);
        m_robot.Click(u"button_32850"_s);
        AnswerBox(EditorTexts::c_strNoSelection, u"ok"_s);
        VisitPageCommands();
        VisitTabs();
        LeaveChangedPage();
    }

    void ShapeTree() {
        // The question comes when the mouse is free to answer it.
        DragLine(c_strOtherPage, c_strLastPage);
        Robot::LetGo();
        AnswerBox(ContentText::c_strChildBelowContent, u"cancel"_s);
        DragLine(c_strOtherPage, c_strBranch);
        m_robot.Press(u"Escape"_s);
        Robot::LetGo();
        ClickLine(c_strTree, c_strOtherPage);
        m_robot.WaitFor("the click behind the drags", [] { return Selected(c_strTree) == c_strOtherPage; });
        const QString strRoot = RootText();
        if (!Robot::Ask<bool>([&] { return IsBelow(c_strOtherPage, strRoot); }))
            throw Robot::Failure("a drag that was given up has moved its line");
        m_robot.Shot(u"tree"_s);
        m_robot.Press(u"F2"_s);
        m_robot.WaitForWidget(u"titleEdit"_s);
        m_robot.Shot(u"tree-rename"_s);
        m_robot.Press(u"Escape"_s);
        m_robot.WaitFor("the title to close", [] { return !Robot::Find(u"titleEdit"_s); });
    }

    void ChangeTemplate() {
        Command(32921);
        m_robot.WaitForWidget(u"templateList"_s, u"templateDialog"_s);
        m_robot.Click(u"templateList"_s, u"templateDialog"_s);
        m_robot.WaitFor("the list below the box",
                        [] { return QApplication::activePopupWidget() != nullptr; });
        m_robot.Press(u"Escape"_s);
        m_robot.Press(u"Down"_s);
        m_robot.Shot(u"other-template"_s);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"模板修改成功！"_s, u"ok"_s);
        m_robot.Shot(u"template-changed"_s);
    }

    void Finish() {
        if (!m_faults.isEmpty())
            throw Robot::Failure(m_faults.join(u'\n').toStdString());
        Close();
    }

private:
    void VisitPageCommands() {
        m_robot.Click(u"button_32871"_s);
        AnswerBox(EditorTexts::c_strAskTemplate, u"ok"_s);
        Visit(u"fileDialog"_s);
        m_robot.Click(u"button_32908"_s);
        AnswerBox(EditorTexts::c_strAskClear, u"cancel"_s);
        m_robot.Click(u"button_32940"_s);
        AnswerBox(EditorTexts::c_strGarbageCleared, u"ok"_s);
        WaitForText();
    }

    void VisitTabs() {
        const auto isSaving = [] {
            return Robot::Find(c_strFrame)->findChild<QAction*>(u"command_32825"_s)->isEnabled();
        };
        m_robot.ClickAt(u"editorTabs"_s, TabAt(1));
        m_robot.WaitForWidget(u"source"_s);
        Look(u"editor-source"_s, c_strFrame);
        m_robot.ClickAt(u"editorTabs"_s, TabAt(2));
        m_robot.WaitForWidget(u"preview"_s);
        Look(u"editor-preview"_s, c_strFrame);
        m_robot.WaitFor("saving to be off in the preview", [&] { return !isSaving(); });
        m_robot.Press(u"ctrl+Next"_s);
        WaitForText();
        m_robot.WaitFor("saving to be on again", isSaving);
    }

    void LeaveChangedPage() {
        m_robot.Type(u"abc"_s);
        m_robot.Click(u"button_32826"_s);
        AnswerBox(EditorTexts::c_strAskSave, u"cancel"_s);
        m_robot.Click(u"button_32826"_s);
        AnswerBox(EditorTexts::c_strAskSave, u"no"_s);
        m_robot.WaitFor("the editor to be left", [] { return !Robot::Find(u"CEditorView"_s); });
    }

    static std::function<QRect(QWidget*)> TabAt(int nTab) {
        return [nTab](QWidget* pTabs) { return qobject_cast<QTabBar*>(pTabs)->tabRect(nTab); };
    }

    /// Whoever comes back from a dialog goes on typing.
    void WaitForText() {
        m_robot.WaitFor("the text to have the keyboard again", [] {
            const QWidget* pDesign = Robot::Find(u"design"_s);
            return pDesign && pDesign->isAncestorOf(QApplication::focusWidget());
        });
    }

    static bool IsOpen(const QString& strText) {
        return qobject_cast<QTreeView*>(Robot::Find(c_strTree))->isExpanded(Line(c_strTree, strText));
    }
    static bool IsBelow(const QString& strText, const QString& strParent) {
        return Line(c_strTree, strText).parent() == Line(c_strTree, strParent);
    }

    void Look(const QString& strShot, const QString& strWindow) {
        m_robot.WaitFor(qPrintable(strWindow), [&] { return Robot::Find(strWindow); });
        m_robot.Shot(strShot);
        Robot::OnGui([&] {
            const QWidget* pWindow = Robot::Find(strWindow);
            Note(u"window"_s, WindowCheck::Describe(*pWindow));
            m_faults += WindowCheck::Faults(*pWindow);
        });
    }

    void VisitDialog(int nId, const QString& strDialog) {
        Command(nId);
        Visit(strDialog);
    }

    void Visit(const QString& strDialog) {
        m_robot.WaitFor(qPrintable(strDialog), [&] {
            const QWidget* pDialog = Robot::Find(strDialog);
            return pDialog && pDialog->isActiveWindow();
        });
        Look(strDialog, strDialog);
        m_robot.Press(u"Escape"_s);
        m_robot.WaitFor("Escape to close it", [&] { return !Robot::Find(strDialog); });
    }

    void LookAtMenu(const QString& strShot) {
        m_robot.WaitFor("a menu", [] { return QApplication::activePopupWidget(); });
        m_robot.Shot(strShot);
        m_robot.Press(u"Escape"_s);
        m_robot.WaitFor("the menu to go", [] { return !QApplication::activePopupWidget(); });
    }

    QStringList m_faults;
};

} // namespace

void MakeCourse(const QString& strFolder) {
    CVisitor visitor(strFolder);
    visitor.MakeCourse();
    visitor.Close();
}

void RunTour(const QString& strFolder) {
    CVisitor visitor(strFolder);
    visitor.MakeCourse();
    visitor.OpenMenus();
    visitor.OpenEditor();
    visitor.VisitEditor();
    visitor.ShapeTree();
    visitor.OpenDialogs();
    visitor.OpenContentWizard();
    visitor.ChangeTemplate();
    visitor.Finish();
}
