#include "content/Texts.h"
#include "tests/journey/Journey.h"
#include "tests/journey/Steps.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
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
    /// It comes, and is answered with no.
    bool bKeeps = false;
    int nOpenType = 0;
};

/// Makes a node of each kind with the wizard, from the material that the caller has laid out.
class CMaker : public CSteps {
public:
    CMaker(const QString& strFolder, QString strMaterial)
        : CSteps(strFolder), m_strMaterial(std::move(strMaterial)) {}

    /// The views of what the browser engine doesn't show, and the windows of their own.
    void RunViews() {
        OpenCourse();
        m_robot.Shot(u"目录栏目"_s);
        for (const Made& made : Views())
            Make(made);
        ShowLines(Views());
        Close();
    }

    void Run() {
        OpenCourse();
        for (const Made& made : Contents())
            Make(made);
        GiveUp({u"转换中取消"_s, 1, {{u"externalFile"_s, m_strMaterial + u"/长演示.odp"_s}}, true});
        ShowLines(Contents());
        Close();
    }

private:
    QList<Made> Views() const {
        const auto file = [this](const QString& strName) {
            return std::pair<QString, QString>(u"externalFile"_s, m_strMaterial + u'/' + strName);
        };
        return {
            {u"视频文件"_s, 1, {file(u"课 #1.wmv"_s)}},
            {u"损坏的视频"_s, 1, {file(u"坏.avi"_s)}},
            {u"动画"_s, 1, {file(u"演示.swf"_s)}},
            {u"媒体网页"_s, 1, {file(u"媒体.htm"_s)}},
            {u"图片"_s, 1, {file(u"图.png"_s)}},
            {u"无扩展名"_s, 1, {file(u"README"_s)}},
            {u"文档"_s, 1, {file(u"讲义.doc"_s), {u"comment"_s, u"课前阅读"_s}}, false, true},
            {u"文件"_s, 1, {file(u"资料.pdf"_s)}},
            {u"未知"_s, 1, {file(u"数据.xyz"_s)}},
            {u"新窗口"_s, 1, {file(u"媒体.htm"_s)}, false, false, 1},
            {u"最大化"_s, 1, {file(u"媒体.htm"_s)}, false, false, 2},
            {u"全屏"_s, 1, {file(u"媒体.htm"_s)}, false, false, 3},
        };
    }
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
        WaitForFilm();
        m_robot.Shot(made.strTitle + u"-shown"_s);
        if (made.nOpenType != 0)
            SetOpenType(made);
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
        if (made.bKeeps)
            m_robot.Click(u"no"_s, u"messageBox"_s);
    }

    /// At its beginning: a button to choose by may be wider than what hears the mouse.
    void ClickButton(const QString& strName, const QString& strWindow = c_strSheet) {
        m_robot.ClickAt(
            strName, [](QWidget* pButton) { return QRect(0, 0, pButton->height(), pButton->height()); }, 1,
            strWindow);
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

    /// A player that shows has begun to play, and drawn.
    void WaitForFilm() {
        m_robot.WaitFor("the film", [] {
            const QWidget* pPlay = Robot::Find(u"mediaPlay"_s);
            const auto* pTime = qobject_cast<QLabel*>(Robot::Find(u"mediaTime"_s));
            return pPlay == nullptr || (pTime != nullptr && !pTime->text().startsWith(u"0:00"_s));
        });
    }

    void SetOpenType(const Made& made) {
        ClickLine(c_strTree, made.strTitle, 3);
        m_robot.ClickMenuEntry(u"设置打开类型..."_s);
        ClickButton(u"openType%1"_s.arg(made.nOpenType), u"COpenTypeDialog"_s);
        m_robot.Click(u"ok"_s, u"COpenTypeDialog"_s);
        m_robot.WaitForWidget(u"content"_s, u"contentWindow"_s);
        LeaveWindow();
    }

    /// The way out that every form has; Escape leaves the full screen.
    void LeaveWindow() {
        const bool bFull = Robot::Ask<bool>([] {
            const QWidget* pWindow = Robot::Find(u"contentWindow"_s);
            return pWindow != nullptr && pWindow->isFullScreen();
        });
        if (bFull)
            m_robot.Press(u"Escape"_s);
        else
            Robot::OnGui([] { Robot::Find(u"contentWindow"_s)->close(); });
        m_robot.WaitFor("the window to go", [] { return Robot::Find(u"contentWindow"_s) == nullptr; });
    }

    void ShowLines(const QList<Made>& contents) {
        for (const Made& made : contents) {
            ClickLine(c_strTree, made.strTitle);
            m_robot.WaitFor("the selected node", [&] { return Selected(c_strTree) == made.strTitle; });
            WaitForFilm();
            if (made.nOpenType != 0)
                m_robot.WaitForWidget(u"content"_s, u"contentWindow"_s);
            m_robot.Shot(made.strTitle + u"-again"_s);
            if (made.nOpenType != 0)
                LeaveWindow();
        }
    }

    QString m_strMaterial;
};

} // namespace

void MakeKinds(const QString& strFolder) {
    CMaker(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).Run();
}

void ShowViews(const QString& strFolder) {
    CMaker(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).RunViews();
}
