#include "tests/journey/ContentSteps.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

const QString c_strPassword = u"wangluo8"_s;
const QString c_strSheet = u"CCreateNodeFileWizard"_s;

} // namespace

void CContentSteps::OpenCourse() {
    OpenRecent();
    Login(c_strPassword);
}

void CContentSteps::Make(const Made& made) {
    Enter(made);
    WaitForContent(made);
    Note(u"made"_s, made.strTitle);
    WaitForFilm();
    m_robot.Shot(made.strTitle + u"-shown"_s);
}

void CContentSteps::OpenWizard(const QString& strTitle, int nKind) {
    AddNode(strTitle);
    Command(32814);
    const QString strKind = u"kind%1"_s.arg(nKind);
    m_robot.WaitForWidget(strKind, c_strSheet);
    ClickButton(strKind, c_strSheet);
    m_robot.Shot(strTitle + u"-kind"_s);
    m_robot.Click(u"next"_s, c_strSheet);
    m_robot.WaitForWidget(u"finish"_s, c_strSheet);
}

void CContentSteps::Enter(const Made& made) {
    OpenWizard(made.strTitle, made.nKind);
    for (const auto& [strField, strText] : made.entries)
        Enter(strField, strText);
    m_robot.Shot(made.strTitle + u"-fields"_s);
    m_robot.Click(u"finish"_s, c_strSheet);
    if (made.bConverts) {
        m_robot.WaitForWidget(u"yes"_s, u"messageBox"_s);
        m_robot.Shot(made.strTitle + u"-question"_s);
        m_robot.Click(u"yes"_s, u"messageBox"_s);
    }
    if (made.bKeeps)
        m_robot.Click(u"no"_s, u"messageBox"_s);
}

void CContentSteps::ClickButton(const QString& strName, const QString& strWindow) {
    m_robot.ClickAt(
        strName, [](QWidget* pButton) { return QRect(0, 0, pButton->height(), pButton->height()); }, 1,
        strWindow);
}

void CContentSteps::AddNode(const QString& strTitle) {
    ClickLine(c_strTree, RootText(), 3);
    m_robot.ClickMenuEntry(u"添加子栏目"_s);
    m_robot.WaitForWidget(u"titleEdit"_s);
    m_robot.Press(u"ctrl+a"_s);
    m_robot.Type(strTitle);
    m_robot.Press(u"Return"_s);
    m_robot.WaitFor("the new node", [&] { return Selected(c_strTree) == strTitle; });
}

void CContentSteps::Enter(const QString& strField, const QString& strText) {
    m_robot.WaitForWidget(strField, c_strSheet);
    if (strField == u"setLink"_s)
        return SetLink(strText);
    const bool bLine =
        Robot::Ask<bool>([&] { return qobject_cast<QLineEdit*>(Robot::Find(strField)) != nullptr; });
    if (bLine)
        m_robot.Fill(strField, strText, c_strSheet);
    else if (strText.isEmpty())
        ClickButton(strField, c_strSheet);
    else
        m_robot.Click(strField, c_strSheet);
    if (!bLine && !strText.isEmpty())
        m_robot.Type(strText);
}

/// Chooses another node in the dialog that shows it.
void CContentSteps::SetLink(const QString& strTarget) {
    const QString strDialog = u"CInSiteLinkDialog"_s;
    m_robot.Click(u"setLink"_s, c_strSheet);
    ClickLine(u"nodes"_s, strTarget);
    m_robot.WaitFor("the place of the target", [] {
        const auto* pPlace = qobject_cast<QLineEdit*>(Robot::Find(u"location"_s));
        return pPlace && pPlace->text().contains(u"index.html"_s);
    });
    m_robot.Shot(u"站内链接-dialog"_s);
    m_robot.Click(u"ok"_s, strDialog);
}

/// The wizard and what follows it are over when the program takes commands again.
void CContentSteps::WaitForContent(const Made& made) {
    m_robot.WaitFor(
        qPrintable(made.strTitle),
        [&] {
            if (const QMessageBox* pBox = ShownBox())
                throw Robot::Failure(pBox->text().toStdString());
            return !QApplication::activeModalWidget() && !Robot::Find(u"CNothingView"_s) &&
                   (made.nKind != 0 || Robot::Find(c_strBoldButton));
        },
        120);
}

void CContentSteps::LeaveEditor() {
    m_robot.Click(u"button_32826"_s);
    m_robot.WaitFor("the editor to be left", [] { return !Robot::Find(u"CEditorView"_s); });
}

void CContentSteps::WaitForFilm() {
    m_robot.WaitFor("the film", [] {
        const QWidget* pPlay = Robot::Find(u"mediaPlay"_s);
        const auto* pTime = qobject_cast<QLabel*>(Robot::Find(u"mediaTime"_s));
        return pPlay == nullptr || (pTime != nullptr && !pTime->text().startsWith(u"0:00"_s));
    });
}
