#include "editor/Texts.h"
#include "tests/journey/ContentSteps.h"
#include "tests/journey/Journey.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

const char* const c_szWebPage = "HTTP/1.0 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n\r\n"
                                "<h1>兄弟院校的课程</h1><p>这一页在网络上。</p>";

/// Every view of a node, for each kind of content, and what the person can do there.
class CShower : public CContentSteps {
public:
    using CContentSteps::CContentSteps;

    void Run() {
        m_robot.WaitForWidget(u"tabs"_s, c_strStartup);
        m_robot.Shot(u"没有课程"_s);
        OpenCourse();
        ShowChildren();
        ShowVideo();
        AddNode(u"空栏目"_s);
        m_robot.WaitForWidget(u"createContent"_s);
        m_robot.Shot(u"空栏目"_s);
        ShowPages();
        ShowFiles();
        ShowWebPage();
        ShowLinks();
        ShowWindows();
        Close();
    }

private:
    std::pair<QString, QString> File(const QString& strName) const {
        return {u"externalFile"_s, m_strMaterial + u'/' + strName};
    }

    void ShowChildren() {
        ClickLine(c_strTree, RootText());
        ClickLine(u"childrenList"_s);
        m_robot.WaitFor("the child's title", [] {
            const auto* pTitle = qobject_cast<QLabel*>(Robot::Find(u"selectedTitle"_s));
            return pTitle && !pTitle->text().isEmpty();
        });
        m_robot.Shot(u"目录栏目"_s);
    }

    /// The caller has made a recorded lecture of the last of the top nodes.
    void ShowVideo() {
        const QString strLast = Robot::Ask<QString>([] {
            const QModelIndex root = Line(c_strTree).siblingAtRow(2);
            return root.model()->index(root.model()->rowCount(root) - 1, 0, root).data().toString();
        });
        ClickLine(c_strTree, strLast);
        m_robot.WaitFor("the video's card", [] {
            const auto* pKind = qobject_cast<QLabel*>(Robot::Find(u"fileKind"_s));
            return pKind && pKind->text() == EditorTexts::c_strVideo;
        });
        m_robot.Shot(u"视频课件"_s);
        m_robot.Click(u"download"_s);
        m_robot.WaitFor("the film", [] {
            const auto* pStatus = qobject_cast<QLabel*>(Robot::Find(u"status"_s));
            return Robot::Find(u"outline"_s) && pStatus && pStatus->text().startsWith(u" 00:00:0"_s);
        });
        m_robot.Shot(u"视频课件-preview"_s);
        ClickLine(c_strTree, RootText());
        ClickLine(c_strTree, strLast);
        m_robot.WaitForWidget(u"fileKind"_s);
        // Nothing records here: the message stands before the prompt.
        m_robot.Click(u"edit"_s);
        m_robot.WaitForWidget(u"ok"_s, u"messageBox"_s);
        Robot::OnGui([] { ShownBox()->move(ShownBox()->pos() + QPoint(0, 2 * ShownBox()->height())); });
        m_robot.Shot(u"视频课件-prompt"_s);
        m_robot.Click(u"ok"_s, u"messageBox"_s);
    }

    void ShowPages() {
        Make({u"内部编辑器"_s, 0, {}});
        LeaveEditor();
        m_robot.Shot(u"内部编辑器-left"_s);
        const QString strM = m_strMaterial + u'/';
        for (const Made& made : QList<Made>{
                 {u"站点"_s,
                  3,
                  {{u"siteFolder"_s, strM + u"站点"_s}, {u"homePage"_s, strM + u"站点/index.html"_s}}},
                 {u"课件"_s, 5, {{u"coursewareFolder"_s, strM + u"课件"_s}}},
                 {u"站内链接"_s, 8, {{u"setLink"_s, u"站点"_s}}},
                 {u"媒体网页"_s, 1, {File(u"媒体.htm"_s)}},
                 {u"框架网页"_s, 1, {File(u"框架.htm"_s)}},
                 {u"图片"_s, 1, {File(u"图.png"_s)}},
                 {u"无扩展名"_s, 1, {File(u"README"_s)}},
                 {u"无扩展名的数据"_s, 1, {File(u"DATA"_s)}},
             })
            Make(made);
        // What a page leads to is offered and not opened.
        Make({u"链接网页"_s, 1, {File(u"链接.htm"_s)}});
        m_robot.Click(u"content"_s);
        m_robot.WaitForWidget(u"openOutside"_s);
        m_robot.Shot(u"链接网页-offer"_s);
    }

    void ShowFiles() {
        for (const Made& made : QList<Made>{
                 {u"视频文件"_s, 1, {File(u"课 #1.wmv"_s)}},
                 {u"损坏的视频"_s, 1, {File(u"坏.avi"_s)}},
                 {u"动画"_s, 1, {File(u"演示.swf"_s)}},
                 {u"文件"_s, 1, {File(u"资料.pdf"_s)}},
                 {u"未知"_s, 1, {File(u"数据.xyz"_s)}},
                 {u"文档"_s, 1, {File(u"讲义.doc"_s), {u"comment"_s, u"课前阅读"_s}}, false, true},
             })
            Make(made);
        m_robot.Click(u"download"_s);
        m_robot.WaitFor("the dialog to save in", [] { return QApplication::activeModalWidget(); });
        m_robot.Shot(u"文档-download"_s);
        m_robot.Press(u"Escape"_s);
        m_robot.Click(u"edit"_s);
        m_robot.WaitForWidget(u"refresh"_s);
        m_robot.Shot(u"文档-prompt"_s);
        m_robot.Click(u"refresh"_s);
        m_robot.Click(u"toHtml"_s);
        const auto isThere = [] {
            return Robot::Find(u"CShowContentView"_s) && !QApplication::activeModalWidget();
        };
        // Where it takes long enough to be told.
        m_robot.WaitFor("the conversion", [&] { return Robot::Find(u"statusWindow"_s) || isThere(); });
        m_robot.Shot(u"文档-converting"_s);
        m_robot.WaitFor("the page of the document", isThere, 120);
        m_robot.Shot(u"文档-converted"_s);
    }

    /// While its server is silent a text stands there.
    void ShowWebPage() {
        QTcpServer* pServer = nullptr;
        Robot::OnGui([&] {
            pServer = new QTcpServer(qApp);
            pServer->listen(QHostAddress::LocalHost);
        });
        const QString strUrl = u"http://127.0.0.1:%1/course.htm"_s.arg(pServer->serverPort());
        Enter({u"外部链接"_s, 4, {{u"linkUrl"_s, strUrl}}});
        m_robot.WaitForWidget(u"webNote"_s);
        m_robot.Shot(u"外部链接-waiting"_s);
        Robot::OnGui([&] {
            while (QTcpSocket* pSocket = pServer->nextPendingConnection()) {
                pSocket->write(c_szWebPage);
                pSocket->disconnectFromHost();
            }
        });
        m_robot.WaitFor("the page of the web", [] { return !Robot::Find(u"webNote"_s); });
        m_robot.Shot(u"外部链接-shown"_s);
    }

    /// The dialog of in-site links wherever it has something else to say, and a link to a place in a page.
    void ShowLinks() {
        Make({u"演示文稿"_s, 1, {File(u"讲稿.ppt"_s)}, true});
        Make({u"断开的链接"_s, 1, {File(u"断链.htm"_s)}});
        const QString strOwn = u"链接到一处"_s, strDialog = u"CInSiteLinkDialog"_s;
        OpenWizard(strOwn, 8);
        m_robot.Click(u"setLink"_s, u"CCreateNodeFileWizard"_s);
        const auto show = [&](const QString& strNode, const QString& strPlace) {
            ClickLine(u"nodes"_s, strNode);
            m_robot.WaitFor("the place", [&] {
                const auto* pPlace = qobject_cast<QLineEdit*>(Robot::Find(u"location"_s));
                return pPlace && pPlace->text().contains(strPlace);
            });
        };
        const auto answer = [&](const QString& strShot) {
            m_robot.WaitForWidget(u"ok"_s, u"messageBox"_s);
            m_robot.Shot(strShot);
            m_robot.Click(u"ok"_s, u"messageBox"_s);
        };
        show(u"空栏目"_s, u"about:blank"_s);
        m_robot.Shot(u"站内链接-empty-node"_s);
        m_robot.Click(u"ok"_s, strDialog);
        answer(u"站内链接-nothing-chosen"_s);
        ClickLine(u"nodes"_s, strOwn);
        answer(u"站内链接-to-itself"_s);
        show(u"演示文稿"_s, u"slide0001.htm"_s);
        ClickLine(u"places"_s, u"slide0002.htm"_s);
        m_robot.WaitFor("the slide", [] {
            return qobject_cast<QLineEdit*>(Robot::Find(u"location"_s))->text().endsWith(u"slide0002.htm"_s);
        });
        m_robot.Shot(u"站内链接-slides"_s);
        show(u"文件"_s, u".pdf"_s);
        m_robot.Shot(u"站内链接-file"_s);
        show(u"断开的链接"_s, u".htm"_s);
        m_robot.Click(u"preview"_s, strDialog);
        m_robot.WaitForWidget(u"note"_s, strDialog);
        m_robot.Shot(u"站内链接-missing"_s);
        show(u"站点"_s, u"index.html"_s);
        ClickLine(u"places"_s, u"End"_s);
        m_robot.WaitFor("the anchor", [] {
            return qobject_cast<QLineEdit*>(Robot::Find(u"location"_s))->text().endsWith(u"#End"_s);
        });
        m_robot.Shot(u"站内链接-anchors"_s);
        m_robot.Click(u"ok"_s, strDialog);
        m_robot.Shot(strOwn + u"-fields"_s);
        m_robot.Click(u"finish"_s, u"CCreateNodeFileWizard"_s);
        m_robot.WaitForWidget(u"content"_s);
        m_robot.Shot(strOwn + u"-shown"_s);
    }

    void ShowWindows() {
        const QString titles[] = {u"新窗口"_s, u"最大化"_s, u"全屏"_s};
        for (int nForm = 1; nForm <= 3; ++nForm) {
            const QString& strTitle = titles[nForm - 1];
            Make({strTitle, 1, {File(u"媒体.htm"_s)}});
            ClickLine(c_strTree, strTitle, 3);
            m_robot.ClickMenuEntry(u"设置打开类型..."_s);
            ClickButton(u"openType%1"_s.arg(nForm), u"COpenTypeDialog"_s);
            m_robot.Shot(strTitle + u"-dialog"_s);
            m_robot.Click(u"ok"_s, u"COpenTypeDialog"_s);
            m_robot.WaitForWidget(u"content"_s, u"contentWindow"_s);
            m_robot.Shot(strTitle + u"-window"_s);
            LeaveWindow();
            m_robot.WaitForWidget(u"CPromptView"_s);
            m_robot.Shot(strTitle + u"-prompt"_s);
        }
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
};

} // namespace

void ShowViews(const QString& strFolder) {
    CShower(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).Run();
}
