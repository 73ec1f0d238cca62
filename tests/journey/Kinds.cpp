#include "content/Texts.h"
#include "tests/journey/Journey.h"
#include "tests/journey/Steps.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

const QString c_strPassword = u"wangluo8"_s;
const QString c_strSheet = u"CCreateNodeFileWizard"_s;

/// A node's content as a person makes it: the kind, and what goes into which field. A name alone is a button
/// or a box to tick.
struct Made {
    QString strTitle;
    int nKind = 0;
    QList<std::pair<QString, QString>> entries;
    /// The question about an Office file comes, and is answered with yes.
    bool bConverts = false;
};

/// Makes a node of each kind with the wizard, from the material that the caller has laid out.
class CMaker : public CSteps {
public:
    CMaker(const QString& strFolder, QString strMaterial)
        : CSteps(strFolder), m_strMaterial(std::move(strMaterial)) {}

    void Run() {
        OpenCourse();
        for (const Made& made : Contents())
            Make(made);
        GiveUp({u"转换中取消"_s, 1, {{u"externalFile"_s, m_strMaterial + u"/长演示.odp"_s}}, true});
        ShowLines();
        Close();
    }

private:
    QList<Made> Contents() const {
        const QString strM = m_strMaterial + u'/';
        return {
            {u"内部编辑器"_s, 0, {}},
            {u"外部文件"_s,
             1,
             {{u"externalFile"_s, strM + u"说明 文字.txt"_s}, {u"comment"_s, u"课前阅读"_s}}},
            {u"网页连同图片"_s, 1, {{u"externalFile"_s, strM + u"网页.htm"_s}}},
            {u"文档转网页"_s, 1, {{u"externalFile"_s, strM + u"讲义.doc"_s}}, true},
            {u"表格转网页"_s, 1, {{u"externalFile"_s, strM + u"成绩.xls"_s}}, true},
            {u"演示转网页"_s, 1, {{u"externalFile"_s, strM + u"演示.ppt"_s}}, true},
            {u"新建文档"_s, 2, {{u"office0"_s, {}}}},
            {u"新建文档网页"_s, 2, {{u"office0"_s, {}}, {u"saveAsHtml"_s, {}}}},
            {u"新建演示网页"_s, 2, {{u"office1"_s, {}}, {u"saveAsHtml"_s, {}}}},
            {u"新建表格"_s, 2, {{u"office2"_s, {}}}},
            {u"站点"_s,
             3,
             {{u"siteFolder"_s, strM + u"站点"_s}, {u"homePage"_s, strM + u"站点/首页/index.html"_s}}},
            {u"外部链接"_s, 4, {{u"linkUrl"_s, u"http://127.0.0.1/kc?a=1&b=2"_s}}},
            {u"课件"_s, 5, {{u"coursewareFolder"_s, strM + u"课件"_s}}},
            {u"目录"_s, 7, {{u"importFolder"_s, strM + u"目录"_s}}},
            {u"站内链接"_s, 8, {{u"setLink"_s, u"站点"_s}}},
        };
    }

    void OpenCourse() {
        m_robot.WaitForWidget(u"tabs"_s, c_strStartup);
        m_robot.Press(u"ctrl+Tab"_s);
        m_robot.Click(u"ok"_s, c_strStartup);
        m_robot.Fill(u"password"_s, c_strPassword);
        m_robot.Press(u"Return"_s);
        WaitForOpenCourse();
    }

    void Make(const Made& made) {
        Enter(made);
        WaitForContent(made);
        Note(u"made"_s, made.strTitle);
        m_robot.Shot(made.strTitle + u"-shown"_s);
        if (made.nKind == 0)
            LeaveEditor();
    }

    /// Long work, given up: the node is as empty as it was.
    void GiveUp(const Made& made) {
        Enter(made);
        m_robot.WaitForWidget(u"statusCancel"_s, u"statusWindow"_s);
        m_robot.Shot(made.strTitle + u"-running"_s);
        m_robot.Click(u"statusCancel"_s, u"statusWindow"_s);
        AnswerBox(ContentText::c_strCancelled, u"ok"_s);
        m_robot.WaitForWidget(u"CNothingView"_s);
        Note(u"made"_s, made.strTitle);
    }

    /// Up to the wizard's end.
    void Enter(const Made& made) {
        AddNode(made.strTitle);
        Command(32814);
        const QString strKind = u"kind%1"_s.arg(made.nKind);
        m_robot.WaitForWidget(strKind, c_strSheet);
        ClickButton(strKind);
        m_robot.Shot(made.strTitle + u"-kind"_s);
        m_robot.Click(u"next"_s, c_strSheet);
        m_robot.WaitForWidget(u"finish"_s, c_strSheet);
        for (const auto& [strField, strText] : made.entries)
            Enter(strField, strText);
        m_robot.Shot(made.strTitle + u"-fields"_s);
        m_robot.Click(u"finish"_s, c_strSheet);
        if (made.bConverts) {
            m_robot.WaitForWidget(u"yes"_s, u"messageBox"_s);
            m_robot.Shot(made.strTitle + u"-question"_s);
            m_robot.Click(u"yes"_s, u"messageBox"_s);
        }
    }

    /// At its beginning: a button to choose by may be wider than what hears the mouse.
    void ClickButton(const QString& strName) {
        m_robot.ClickAt(
            strName, [](QWidget* pButton) { return QRect(0, 0, pButton->height(), pButton->height()); }, 1,
            c_strSheet);
    }

    void AddNode(const QString& strTitle) {
        ClickLine(c_strTree, RootText(), 3);
        m_robot.ClickMenuEntry(u"添加子栏目"_s);
        m_robot.WaitForWidget(u"titleEdit"_s);
        m_robot.Press(u"ctrl+a"_s);
        m_robot.Type(strTitle);
        m_robot.Press(u"Return"_s);
        m_robot.WaitFor("the new node", [&] { return Selected(c_strTree) == strTitle; });
    }

    void Enter(const QString& strField, const QString& strText) {
        m_robot.WaitForWidget(strField, c_strSheet);
        if (strField == u"setLink"_s)
            return SetLink(strText);
        const bool bLine =
            Robot::Ask<bool>([&] { return qobject_cast<QLineEdit*>(Robot::Find(strField)) != nullptr; });
        if (bLine)
            m_robot.Fill(strField, strText, c_strSheet);
        else if (strText.isEmpty())
            ClickButton(strField);
        else
            m_robot.Click(strField, c_strSheet);
        if (!bLine && !strText.isEmpty())
            m_robot.Type(strText);
    }

    /// Chooses another node in the dialog that shows it.
    void SetLink(const QString& strTarget) {
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
    void WaitForContent(const Made& made) {
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

    void LeaveEditor() {
        m_robot.Click(u"button_32826"_s);
        m_robot.WaitFor("the editor to be left", [] { return !Robot::Find(u"CEditorView"_s); });
    }

    void ShowLines() {
        for (const Made& made : Contents()) {
            ClickLine(c_strTree, made.strTitle);
            m_robot.WaitFor("the selected node", [&] { return Selected(c_strTree) == made.strTitle; });
            m_robot.Shot(made.strTitle + u"-again"_s);
        }
    }

    QString m_strMaterial;
};

} // namespace

void MakeKinds(const QString& strFolder) {
    CMaker(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).Run();
}
