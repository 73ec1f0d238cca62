#include "tests/journey/Journey.h"

#include "foundation/CodePage.h"
#include "tests/journey/Robot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTabBar>
#include <QTabWidget>
#include <QThread>
#include <QTreeWidget>

#include <array>

namespace {

const QString c_strTyped = QStringLiteral("本课程面向全校本科生，讲授数据结构与算法。");
const QString c_strBold = QStringLiteral("欢迎选课！");
const QString c_strLater = QStringLiteral("第二学期补充实验。");
const QString c_strNewNode = QStringLiteral("学生作品展示");
const QString c_strNewPassword = QStringLiteral("vorel2026");

const QString c_strFrame = QStringLiteral("CMainFrame");
const QString c_strStartup = QStringLiteral("CStartupDialog");
const QString c_strTree = QStringLiteral("CBookTreeView");
const QString c_strWizard = QStringLiteral("CCreateProjectWizard");
const QString c_strFileName = QStringLiteral("fileNameEdit");

/// One part of the way. What a later part or the caller must know stands in "facts.txt", a line "key: value"
/// each.
class CTeacher {
public:
    explicit CTeacher(const QString& strFolder)
        : m_strFolder(strFolder), m_robot(strFolder + QStringLiteral("/shots")) {}

    void ChooseCourse();
    void ChooseFolderAndTemplate();
    void WritePage();
    void LeaveWithQuestion();
    void AddNode();
    void OpenAgain();
    void FindAllAsLeft();
    void Compile();
    void CloseProgram();

private:
    void ClickFirstRow(const QString& strList);
    void SelectFirstLeaf();
    void ClickItem(const QString& strText, int nButton = 1);
    void InsertPicture();
    void WaitForOpenCourse();
    void AnswerBox(const QString& strText, const QString& strButton);
    void EnterEditor();
    QString SavedPage() const;
    void WaitForSaved(const QString& strText);
    void Note(const QString& strKey, const QString& strValue) const;
    QString Fact(const QString& strKey) const;

    QString m_strFolder;
    Robot m_robot;
};

// What follows up to the class's first member runs on the interface thread.

QString FieldText(const QString& strName) {
    auto* pEdit = qobject_cast<QLineEdit*>(Robot::Find(strName));
    return pEdit ? pEdit->text() : QString();
}

QTreeWidgetItem* Item(const QString& strText) {
    auto* pTree = qobject_cast<QTreeWidget*>(Robot::Find(c_strTree));
    if (!pTree)
        return nullptr;
    const auto found = pTree->findItems(strText, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

QRect ItemPlace(QWidget* pWidget, const QString& strText) {
    auto* pTree = qobject_cast<QTreeWidget*>(pWidget);
    QTreeWidgetItem* pItem = Item(strText);
    if (!pItem)
        return {};
    pTree->scrollToItem(pItem);
    return pTree->visualItemRect(pItem).translated(pTree->viewport()->pos());
}

QMessageBox* ShownBox() {
    auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return pBox && pBox->isVisible() ? pBox : nullptr;
}

void CTeacher::Note(const QString& strKey, const QString& strValue) const {
    QFile facts(m_strFolder + QStringLiteral("/facts.txt"));
    if (!facts.open(QIODevice::Append))
        throw Robot::Failure("facts.txt is not writable");
    facts.write((strKey + QStringLiteral(": ") + strValue + QLatin1Char('\n')).toUtf8());
}

QString CTeacher::Fact(const QString& strKey) const {
    QFile facts(m_strFolder + QStringLiteral("/facts.txt"));
    if (!facts.open(QIODevice::ReadOnly))
        throw Robot::Failure("facts.txt is not there");
    for (const QString& strLine : QString::fromUtf8(facts.readAll()).split(QLatin1Char('\n'))) {
        if (strLine.startsWith(strKey + QStringLiteral(": ")))
            return strLine.mid(strKey.size() + 2);
    }
    return QString();
}

/// The page that holds the typed text, as it lies on the disk; empty when there is none.
QString CTeacher::SavedPage() const {
    const QDir nodes(Fact(QStringLiteral("course")) + QStringLiteral("/Data/Courseware/NodeResource"));
    for (const QString& strNode : nodes.entryList({QStringLiteral("N*")}, QDir::Dirs)) {
        QFile page(nodes.filePath(strNode + QStringLiteral("/Content.htm")));
        if (!page.open(QIODevice::ReadOnly))
            continue;
        const QString strText = CodePage::Decode(page.readAll());
        if (strText.contains(c_strTyped))
            return strText;
    }
    return QString();
}

void CTeacher::WaitForSaved(const QString& strText) {
    m_robot.WaitFor("the page on the disk", [&] { return SavedPage().contains(strText); });
}

void CTeacher::AnswerBox(const QString& strText, const QString& strButton) {
    m_robot.WaitFor("a message box", [] { return ShownBox() != nullptr; });
    QString strSeen;
    bool bFound = false;
    Robot::OnGui([&] {
        strSeen = ShownBox()->text();
        for (QAbstractButton* pButton : ShownBox()->buttons()) {
            if (pButton->text().startsWith(strButton)) {
                pButton->setObjectName(QStringLiteral("journeyAnswer"));
                bFound = true;
            }
        }
    });
    if (strSeen != strText || !bFound)
        throw Robot::Failure("another box came: " + strSeen.toStdString());
    m_robot.Click(QStringLiteral("journeyAnswer"));
    m_robot.WaitFor("the box to go", [] { return Robot::Find(QStringLiteral("journeyAnswer")) == nullptr; });
}

void CTeacher::ClickFirstRow(const QString& strList) {
    m_robot.WaitForWidget(strList);
    m_robot.WaitFor("a row in the list", [&] {
        auto* pList = qobject_cast<QListWidget*>(Robot::Find(strList));
        return pList && pList->count() > 0;
    });
    m_robot.ClickAt(strList, [](QWidget* pWidget) {
        auto* pList = qobject_cast<QListWidget*>(pWidget);
        return pList->visualItemRect(pList->item(0)).translated(pList->viewport()->pos());
    });
}

void CTeacher::ClickItem(const QString& strText, int nButton) {
    m_robot.WaitFor("the node in the tree", [&] { return Item(strText) != nullptr; });
    m_robot.ClickAt(
        c_strTree, [&](QWidget* pTree) { return ItemPlace(pTree, strText); }, nButton);
}

void CTeacher::WaitForOpenCourse() {
    m_robot.WaitFor("the course to open", [] {
        const QWidget* pFrame = Robot::Find(c_strFrame);
        return pFrame && pFrame->windowTitle().endsWith(QStringLiteral(" - Vorel")) &&
               !QApplication::activeModalWidget();
    });
}

void CTeacher::ChooseCourse() {
    m_robot.WaitForWidget(QStringLiteral("ok"), c_strStartup);
    m_robot.Shot(QStringLiteral("start"));
    m_robot.Click(QStringLiteral("ok"), c_strStartup);

    const QString strInitial = qEnvironmentVariable("VOREL_JOURNEY_PASSWORD");
    m_robot.WaitForWidget(QStringLiteral("courseList"), c_strWizard);
    ClickFirstRow(QStringLiteral("courseList"));
    m_robot.ClickInto(QStringLiteral("password"), c_strWizard);
    m_robot.Type(strInitial);
    m_robot.Shot(QStringLiteral("choose-course"));
    m_robot.Click(QStringLiteral("next"), c_strWizard);

    // The sample course still has its initial password, and the wizard does not go on with it.
    m_robot.ClickInto(QStringLiteral("old"));
    m_robot.Type(strInitial);
    m_robot.Press(QStringLiteral("Tab"));
    m_robot.Type(c_strNewPassword);
    m_robot.Press(QStringLiteral("Tab"));
    m_robot.Type(c_strNewPassword);
    m_robot.Shot(QStringLiteral("change-password"));
    m_robot.Press(QStringLiteral("Return"));
    AnswerBox(QStringLiteral("密码已修改，请您牢记！"), QStringLiteral("确定"));
}

void CTeacher::ChooseFolderAndTemplate() {
    m_robot.WaitForWidget(QStringLiteral("courseFolder"), c_strWizard);
    const auto strName = Robot::Ask<QString>([] { return FieldText(QStringLiteral("courseName")); });
    const auto strFolder = Robot::Ask<QString>([] { return FieldText(QStringLiteral("courseFolder")); });
    m_robot.Shot(QStringLiteral("choose-folder"));
    m_robot.Click(QStringLiteral("next"), c_strWizard);

    ClickFirstRow(QStringLiteral("templateList"));
    m_robot.Shot(QStringLiteral("choose-template"));
    m_robot.Click(QStringLiteral("next"), c_strWizard);
    m_robot.WaitForWidget(QStringLiteral("summary"), c_strWizard);
    m_robot.Shot(QStringLiteral("summary"));
    m_robot.Click(QStringLiteral("finish"), c_strWizard);

    WaitForOpenCourse();
    Note(QStringLiteral("course"), strFolder);
    Note(QStringLiteral("name"), strName);
    m_robot.Shot(QStringLiteral("course-open"));
}

void CTeacher::SelectFirstLeaf() {
    // The tree opens one level at a time, as it is clicked.
    QString strNext = Robot::Ask<QString>([] {
        auto* pTree = qobject_cast<QTreeWidget*>(Robot::Find(c_strTree));
        const QTreeWidgetItem* pRoot = pTree->topLevelItem(2);
        return pRoot && pRoot->childCount() > 0 ? pRoot->child(0)->text(0) : QString();
    });
    while (!strNext.isEmpty()) {
        ClickItem(strNext);
        Note(QStringLiteral("node"), strNext);
        const QString strBranch = strNext;
        strNext = Robot::Ask<QString>([&] {
            QTreeWidgetItem* pItem = Item(strBranch);
            if (pItem->childCount() == 0)
                return QString();
            pItem->setExpanded(true);
            return pItem->child(0)->text(0);
        });
    }
}

void CTeacher::EnterEditor() {
    m_robot.Click(QStringLiteral("tool_32815"));
    m_robot.WaitForWidget(QStringLiteral("design"));
    m_robot.WaitFor("the editing commands", [] {
        const QWidget* pBold = Robot::Find(QStringLiteral("button_32779"));
        return pBold && pBold->isEnabled();
    });
}

void CTeacher::InsertPicture() {
    m_robot.Click(QStringLiteral("button_32790"));
    m_robot.ClickInto(c_strFileName);
    m_robot.Press(QStringLiteral("ctrl+a"));
    m_robot.Type(m_strFolder + QStringLiteral("/校园 照片.png"));
    m_robot.Shot(QStringLiteral("choose-picture"));
    m_robot.Press(QStringLiteral("Return"));
    m_robot.WaitFor("the file dialog to go", [] { return Robot::Find(c_strFileName) == nullptr; });
}

void CTeacher::WritePage() {
    SelectFirstLeaf();
    m_robot.WaitForWidget(QStringLiteral("tool_32815"));
    QThread::msleep(1500);
    m_robot.Shot(QStringLiteral("page"));
    EnterEditor();
    m_robot.Shot(QStringLiteral("editor"));

    m_robot.Click(QStringLiteral("design"));
    m_robot.Press(QStringLiteral("ctrl+End"));
    m_robot.Press(QStringLiteral("Return"));
    m_robot.Type(c_strTyped);
    m_robot.Click(QStringLiteral("button_32779"));
    m_robot.Type(c_strBold);
    m_robot.Click(QStringLiteral("button_32779"));
    m_robot.Press(QStringLiteral("Return"));
    InsertPicture();
    m_robot.Shot(QStringLiteral("typed"));

    m_robot.Press(QStringLiteral("ctrl+s"));
    WaitForSaved(c_strBold);
    const QString strPage = SavedPage();
    if (!strPage.contains(QStringLiteral("res/")) || strPage.contains(QStringLiteral("校园")))
        throw Robot::Failure("the picture of the saved page does not lie in its own folder: " +
                             strPage.toStdString());
    m_robot.Shot(QStringLiteral("saved"));
}

void CTeacher::LeaveWithQuestion() {
    m_robot.Click(QStringLiteral("design"));
    m_robot.Press(QStringLiteral("ctrl+End"));
    m_robot.Type(c_strLater);
    const auto strRoot = Robot::Ask<QString>(
        [] { return qobject_cast<QTreeWidget*>(Robot::Find(c_strTree))->topLevelItem(2)->text(0); });
    ClickItem(strRoot);
    m_robot.WaitFor("the question", [] { return ShownBox() != nullptr; });
    m_robot.Shot(QStringLiteral("question"));
    AnswerBox(QStringLiteral("该文件内容已改变，您需要保存已修改的内容吗？"), QStringLiteral("是"));
    WaitForSaved(c_strLater);
    m_robot.Shot(QStringLiteral("left"));
}

void CTeacher::AddNode() {
    const auto strRoot = Robot::Ask<QString>(
        [] { return qobject_cast<QTreeWidget*>(Robot::Find(c_strTree))->topLevelItem(2)->text(0); });
    ClickItem(strRoot, 3);
    m_robot.Shot(QStringLiteral("context-menu"));
    m_robot.ClickMenuEntry(QStringLiteral("添加子栏目"));
    m_robot.WaitFor("the title field", [] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); });
    m_robot.Press(QStringLiteral("ctrl+a"));
    m_robot.Type(c_strNewNode);
    m_robot.Press(QStringLiteral("Return"));
    m_robot.WaitFor("the new node", [] { return Item(c_strNewNode) != nullptr; });
    m_robot.Shot(QStringLiteral("node-added"));
}

void CTeacher::CloseProgram() {
    // The last thing that this thread asks: the program goes, and the plug-in with it.
    QMetaObject::invokeMethod(
        qApp, [] { Robot::Find(c_strFrame)->close(); }, Qt::QueuedConnection);
}

void CTeacher::OpenAgain() {
    m_robot.WaitForWidget(QStringLiteral("tabs"), c_strStartup);
    m_robot.ClickAt(QStringLiteral("tabs"), [](QWidget* pWidget) {
        const QTabBar* pBar = qobject_cast<QTabWidget*>(pWidget)->tabBar();
        return pBar->tabRect(1).translated(pBar->pos());
    });
    m_robot.WaitForWidget(QStringLiteral("recentList"), c_strStartup);
    m_robot.Shot(QStringLiteral("recent"));
    m_robot.Click(QStringLiteral("ok"), c_strStartup);
    m_robot.WaitForWidget(QStringLiteral("password"));
    m_robot.ClickInto(QStringLiteral("password"));
    m_robot.Type(c_strNewPassword);
    m_robot.Shot(QStringLiteral("password"));
    m_robot.Press(QStringLiteral("Return"));
    WaitForOpenCourse();
    m_robot.Shot(QStringLiteral("open-again"));
}

void CTeacher::FindAllAsLeft() {
    m_robot.WaitFor("the node that was added", [] { return Item(c_strNewNode) != nullptr; });
    const QString strBefore = SavedPage();
    SelectFirstLeaf();
    QThread::msleep(1500);
    m_robot.Shot(QStringLiteral("page-again"));
    // Opened for editing and left untouched, the page asks nothing and stays what it is.
    EnterEditor();
    ClickItem(c_strNewNode);
    m_robot.WaitFor("the editor to be left",
                    [] { return Robot::Find(QStringLiteral("CEditorView")) == nullptr; });
    if (SavedPage() != strBefore || strBefore.isEmpty())
        throw Robot::Failure("a page that nobody touched has changed");
    m_robot.Shot(QStringLiteral("empty-node"));
}

void CTeacher::Compile() {
    m_robot.Click(QStringLiteral("tool_32855"));
    const QString strSite = Fact(QStringLiteral("course")) + QStringLiteral("/课程网站");
    m_robot.WaitFor(
        "the compiled site", [&] { return QFile::exists(strSite + QStringLiteral("/index.html")); }, 60);
    m_robot.WaitForWidget(QStringLiteral("tool_32855"));
    Note(QStringLiteral("site"), strSite);
    m_robot.Shot(QStringLiteral("compiled"));
}

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
    teacher.CloseProgram();
}
