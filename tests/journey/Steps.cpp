#include "tests/journey/Steps.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QKeySequence>
#include <QMenu>
#include <QMessageBox>

using namespace Qt::StringLiterals;

const QString CSteps::c_strBoldButton = u"button_32779"_s;
const QString CSteps::c_strFrame = u"CMainFrame"_s;
const QString CSteps::c_strStartup = u"CStartupDialog"_s;
const QString CSteps::c_strTree = u"CBookTreeView"_s;
const QString CSteps::c_strWizard = u"CCreateProjectWizard"_s;

QModelIndex CSteps::Line(const QString& strView, const QString& strText) {
    auto* pView = qobject_cast<QAbstractItemView*>(Robot::Find(strView));
    const QModelIndex first = pView ? pView->model()->index(0, 0) : QModelIndex();
    if (!first.isValid() || strText.isEmpty())
        return first;
    const auto found =
        pView->model()->match(first, Qt::DisplayRole, strText, 1, Qt::MatchExactly | Qt::MatchRecursive);
    return found.value(0);
}

QMessageBox* CSteps::ShownBox() {
    auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return pBox && pBox->isVisible() ? pBox : nullptr;
}

void CSteps::GoOn(const QString& strShot, const QString& strButton) {
    m_robot.WaitForWidget(strButton, c_strWizard);
    m_robot.Shot(strShot);
    m_robot.Click(strButton, c_strWizard);
}

void CSteps::Note(const QString& strKey, const QString& strValue) const {
    QFile facts(m_strFolder + u"/facts.txt"_s);
    if (!facts.open(QIODevice::Append))
        throw Robot::Failure("facts.txt is not writable");
    facts.write((strKey + u": "_s + strValue + u'\n').toUtf8());
}

QString CSteps::Fact(const QString& strKey) const {
    QFile facts(m_strFolder + u"/facts.txt"_s);
    if (!facts.open(QIODevice::ReadOnly))
        throw Robot::Failure("facts.txt is not there");
    return QString::fromUtf8(facts.readAll()).section(strKey + u": "_s, 1, 1).section(u'\n', 0, 0);
}

void CSteps::AnswerBox(const QString& strText, const QString& strButton) {
    m_robot.WaitForWidget(strButton, u"messageBox"_s);
    m_robot.Shot(u"question"_s);
    const auto strSeen = Robot::Ask<QString>([] { return ShownBox()->text(); });
    if (strSeen != strText)
        throw Robot::Failure("another box came: " + strSeen.toStdString());
    m_robot.Click(strButton, u"messageBox"_s);
    m_robot.WaitFor("the box to go", [] { return !ShownBox(); });
}

std::function<QRect(QWidget*)> CSteps::PlaceOf(const QString& strView, const QString& strText) {
    return [=](QWidget* pWidget) {
        auto* pView = qobject_cast<QAbstractItemView*>(pWidget);
        pView->scrollTo(Line(strView, strText));
        return pView->visualRect(Line(strView, strText)).translated(pView->viewport()->pos());
    };
}

void CSteps::ClickLine(const QString& strView, const QString& strText, int nButton) {
    m_robot.WaitFor("the line", [&] { return Line(strView, strText).isValid(); });
    m_robot.ClickAt(strView, PlaceOf(strView, strText), nButton);
}

void CSteps::DragLine(const QString& strText, const QString& strTarget) {
    m_robot.Drag(c_strTree, PlaceOf(c_strTree, strText), PlaceOf(c_strTree, strTarget));
}

QString CSteps::RootText() {
    return Robot::Ask<QString>([] { return Line(c_strTree).siblingAtRow(2).data().toString(); });
}

void CSteps::SelectFirstLeaf() {
    for (QString strNext = RootText(); !strNext.isEmpty();) {
        ClickLine(c_strTree, strNext);
        m_robot.Press(u"Right"_s);
        strNext = Robot::Ask<QString>([&] {
            const QModelIndex line = Line(c_strTree, strNext);
            return line.model()->index(0, 0, line).data().toString();
        });
    }
    m_robot.WaitForWidget(u"tool_32815"_s);
}

void CSteps::EnterEditor() {
    m_robot.Click(u"tool_32815"_s);
    m_robot.WaitForWidget(c_strBoldButton);
    m_robot.Click(u"design"_s);
    m_robot.Press(u"ctrl+End"_s);
}

void CSteps::WaitForOpenCourse() {
    m_robot.WaitFor("the course to open", [] {
        const QWidget* pFrame = Robot::Find(c_strFrame);
        return pFrame && pFrame->windowTitle().endsWith(u" - Vorel"_s) && !QApplication::activeModalWidget();
    });
}

void CSteps::OpenRecent() {
    m_robot.WaitForWidget(u"tabs"_s, c_strStartup);
    m_robot.Press(u"ctrl+Tab"_s);
    m_robot.Shot(u"recent"_s);
    m_robot.Click(u"ok"_s, c_strStartup);
}

void CSteps::Login(const QString& strPassword) {
    m_robot.Fill(u"password"_s, strPassword);
    m_robot.Shot(u"password"_s);
    m_robot.Press(u"Return"_s);
    WaitForOpenCourse();
}

QString CSteps::Selected(const QString& strView) {
    const auto* pView = qobject_cast<QAbstractItemView*>(Robot::Find(strView));
    return pView ? pView->currentIndex().data().toString() : QString();
}

void CSteps::Command(int nId) {
    m_robot.WaitForWidget(c_strTree, c_strFrame);
    QString strKey;
    QString strText;
    Robot::OnGui([&] {
        const auto* pAction = Robot::Find(c_strFrame)->findChild<QAction*>(u"command_%1"_s.arg(nId));
        for (const QObject* pHolder : pAction ? pAction->associatedObjects() : QList<QObject*>()) {
            if (const auto* pMenu = qobject_cast<const QMenu*>(pHolder); pMenu && pAction->isEnabled()) {
                strKey = QKeySequence::mnemonic(pMenu->title()).toString().toLower();
                strText = pAction->text();
            }
        }
    });
    if (strKey.isEmpty())
        throw Robot::Failure("no menu offers command " + std::to_string(nId));
    m_robot.Press(strKey);
    m_robot.ClickMenuEntry(strText);
}

void CSteps::Close() {
    QMetaObject::invokeMethod(
        qApp, [] { Robot::Find(c_strFrame)->close(); }, Qt::QueuedConnection);
}
