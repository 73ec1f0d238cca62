#include "editor/ui/ShowContentView.h"

#include "content/InSiteLink.h"
#include "editor/DisplayRules.h"
#include "editor/NodeFile.h"
#include "editor/Texts.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowser.h"

#include <QDesktopServices>
#include <QHideEvent>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace {
constexpr int c_nRetryMs = 200;
constexpr int c_nShownUrlWidth = 600;
} // namespace

CShowContentView::CShowContentView(INodeViewHost& host, QWidget* pParent)
    : CBookShowView(host, pParent), m_pBrowser(new CWebBrowser2Ex(this)),
      m_pOpenOutside(new QPushButton(this)) {
    setObjectName(QStringLiteral("CShowContentView"));
    m_pBrowser->setObjectName(QStringLiteral("content"));
    m_pOpenOutside->setObjectName(QStringLiteral("openOutside"));
    m_pOpenOutside->hide();
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pOpenOutside);
    pLayout->addWidget(m_pBrowser, 1);
    connect(m_pBrowser, &CWebBrowser2Ex::NewWindowRequested, this, &CShowContentView::TakeNewWindow);
    connect(m_pOpenOutside, &QPushButton::clicked, this, [this] {
        m_pOpenOutside->hide();
        QDesktopServices::openUrl(QUrl(m_strOutsideUrl));
    });
}

QStringList CShowContentView::AllowedFolders() const {
    return {m_pNode->GetCourse().GetPaths().GetCourseFolder(false),
            CSysInfo::Instance().GetSysDataFolder(false)};
}

void CShowContentView::ShowNode() {
    m_pOpenOutside->hide();
    if (m_pNode == nullptr)
        return;
    ShowFailure(this, [this] { ShowContent(); });
}

/// The pane would stay empty for a file that the browser doesn't show: it goes back to what else can be done
/// with the file.
void CShowContentView::ShowFile(EViewKind kind) {
    CBookNode* const pNode = m_pNode;
    const QPointer<CShowContentView> pSelf(this);
    if (m_pViewParam == ContentCode::c_nDownload) {
        CQtPeople people;
        people.SetParent(this);
        NodeFile::SaveCopy(*pNode, people);
    }
    if (pSelf != nullptr && m_pNode == pNode)
        m_host.ShowNodeView(kind, pNode);
}

void CShowContentView::ShowContent() {
    const EViewKind kind = KindView(*m_pNode);
    if (kind == EViewKind::ToolButtons && m_pNode->GetType() == NodeType::c_nExternalFile) {
        ShowFile(kind);
        return;
    }
    const auto [strTarget, bNetwork] = InSiteLink::AddressOf(*m_pNode);
    if (const auto form = DisplayRules::WindowFormOf(m_pNode->GetOpenType())) {
        const QStringList folders = AllowedFolders();
        const QString strTitle = m_pNode->GetTitle();
        m_host.ShowNodeView(EViewKind::Prompt, m_pNode, PromptCode::c_nNewWindow);
        CContentWindow::Open(strTitle, strTarget, folders, bNetwork, *form, window());
        return;
    }
    m_pBrowser->SetAllowedFolders(AllowedFolders(), false);
    m_pBrowser->SetNetworkAllowed(bNetwork);
    m_pBrowser->NavigateAndWait(strTarget);
}

void CShowContentView::hideEvent(QHideEvent* pEvent) {
    CBookShowView::hideEvent(pEvent);
    // Not when the whole window is minimised.
    if (!pEvent->spontaneous())
        QTimer::singleShot(0, this, &CShowContentView::ClearWhenHidden);
}

/// Sound and plug-ins of a page that no longer shows stop. Loading waits, so that it is done from the event
/// loop, and when no other surface is waiting.
void CShowContentView::ClearWhenHidden() {
    QString strUrl;
    if (isVisible() || !m_pBrowser->GetURL(strUrl) || strUrl == QLatin1StringView("about:blank"))
        return;
    if (IsThreadHeld())
        QTimer::singleShot(c_nRetryMs, this, &CShowContentView::ClearWhenHidden);
    else
        m_pBrowser->NavigateAndWait(QStringLiteral("about:blank"));
}

/// A window of the course's own opens at once. An address of the web comes from a page that nobody has
/// vouched for: it is offered, and the teacher decides.
void CShowContentView::TakeNewWindow(const QString& strUrl) {
    const QUrl url(strUrl);
    if (url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("https")) {
        m_strOutsideUrl = strUrl;
        const QString strShown =
            fontMetrics().elidedText(url.toDisplayString(), Qt::ElideMiddle, c_nShownUrlWidth);
        m_pOpenOutside->setText(
            EditorTexts::c_strOpenOutside.arg(QString(strShown).replace(u'&', QStringLiteral("&&"))));
        m_pOpenOutside->setToolTip(url.toDisplayString());
        m_pOpenOutside->show();
    } else if (m_pNode != nullptr && strUrl.startsWith(QLatin1StringView("file:"), Qt::CaseInsensitive)) {
        CContentWindow::Open(m_pNode->GetTitle(), strUrl, AllowedFolders(), false,
                             DisplayRules::EWindowForm::Normal, window());
    }
}
