#include "platform/ui/WebBrowser.h"

#include "platform/ui/PastedData.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/Texts.h"
#include "platform/ui/WebBrowserCalls.h"
#include "platform/ui/WebEngineLoader.h"

#include <QFocusEvent>
#include <QLabel>
#include <QPointer>

#include <utility>

using namespace SurfaceCalls;

namespace {

/// A page that runs scripts of its own may be at one that never ends, and the person can't go on meanwhile.
constexpr int c_nStrangerMilliseconds = 1000;

} // namespace

CWebBrowser2Ex::CWebBrowser2Ex(QWidget* pParent) : QWidget(pParent) {
    setObjectName(QStringLiteral("webBrowser"));
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

CWebBrowser2Ex::~CWebBrowser2Ex() = default;

bool CWebBrowser2Ex::IsCallRunning() {
    return CCallGuard::IsAnyRunning();
}

void CWebBrowser2Ex::SetAllowedFolders(const QStringList& folders, bool bEditing) {
    m_allowedFolders = folders;
    m_bEditing = bEditing;
}

void CWebBrowser2Ex::SetFollowsLinks(bool bFollows) {
    m_bFollowsLinks = bFollows;
}

void CWebBrowser2Ex::SetNetworkAllowed(bool bAllowed) {
    m_bNetwork = bAllowed;
}

bool CWebBrowser2Ex::EnsureEngine() {
    if (m_pEngine)
        return true;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    auto pEngine = MakeWebEngine(this);
    if (!pAlive)
        return false;
    m_pEngine = std::move(pEngine);
    if (!m_pEngine) {
        ShowMissingEngine();
        return false;
    }
    ConnectEngine();
    QWidget* pView = m_pEngine->Widget();
    pView->setGeometry(rect());
    pView->show();
    const bool bHadFocus = hasFocus();
    setFocusProxy(pView);
    if (bHadFocus)
        pView->setFocus();
    return true;
}

void CWebBrowser2Ex::ConnectEngine() {
    m_pEngine->OnSelectionChanged = [this] { Q_EMIT SelectionChanged(); };
    m_pEngine->OnNewWindow = [this](const QUrl& url, bool bByPerson) {
        Q_EMIT NewWindowRequested(SurfaceUrls::CanonicalReference(url.toString()).value_or(url.toString()),
                                  bByPerson);
    };
    m_pEngine->OnLinkMissing = [this](const QUrl& url) { Q_EMIT LinkMissing(SurfaceUrls::UrlToPath(url)); };
    m_pEngine->OnPaste = [this](IWebEngine::EPaste what) {
        PasteWhenFree(what == IWebEngine::EPaste::All    ? &SPastedData::FromClipboard
                      : what == IWebEngine::EPaste::Text ? &SPastedData::TextFromClipboard
                                                         : &SPastedData::FromSelection);
    };
    m_pEngine->OnDrop = [this](const QMimeData& mime, const QPoint& place) {
        PasteWhenFree([data = SPastedData::FromMime(mime)] { return data; }, place);
    };
    m_pEngine->OnMoved = [this] { Q_EMIT NavigateComplete2(); };
    m_pEngine->OnPageLost = [this] {
        const bool bWasLoaded = std::exchange(m_bPageLoaded, false);
        ForgetPastes();
        if (bWasLoaded)
            Q_EMIT PageLost();
    };
}

void CWebBrowser2Ex::ShowMissingEngine() {
    if (m_pMissing)
        return;
    m_pMissing = new QLabel(UiTexts::c_strNoEngine, this);
    m_pMissing->setObjectName(QStringLiteral("webMissing"));
    m_pMissing->setAlignment(Qt::AlignCenter);
    m_pMissing->setWordWrap(true);
    m_pMissing->setGeometry(rect());
    m_pMissing->show();
}

int CWebBrowser2Ex::Patience() const {
    return m_bEditing ? c_nScriptMilliseconds : c_nStrangerMilliseconds;
}

SEngineAnswer CWebBrowser2Ex::Ask(const QString& strFunction, const QJsonArray& arguments) {
    return m_pEngine->Call(strFunction, arguments, Patience());
}

bool CWebBrowser2Ex::GetURL(QString& strUrl) {
    if (m_bPageLoaded)
        strUrl = SurfaceUrls::DocumentUrl(m_pEngine->Url());
    else
        strUrl = m_waiting.isEmpty() ? QString(c_strBlank) : SurfaceUrls::DocumentUrl(m_waiting);
    return true;
}

bool CWebBrowser2Ex::ExecuteScript(const QString& strScript) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QLatin1String strPrefix("javascript:");
    const QString strBody =
        strScript.startsWith(strPrefix, Qt::CaseInsensitive) ? strScript.mid(strPrefix.size()) : strScript;
    const auto state = m_pEngine->RunInPage(strBody, Patience()).State;
    return state == SEngineAnswer::EState::Value || state == SEngineAnswer::EState::Undefined;
}

bool CWebBrowser2Ex::GetSlideFrameLocation(QString& strLocation) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("slideFrame"), {});
    if (!answer.HasValue())
        return false;
    strLocation = SurfaceUrls::DocumentUrl(QUrl(answer.Value.toString()));
    return true;
}

bool CWebBrowser2Ex::GoTo(const QString& strName) {
    const CCallGuard guard;
    return !guard.IsRefused() && m_bPageLoaded && IsTrue(Ask(QStringLiteral("goTo"), {strName}));
}

void CWebBrowser2Ex::resizeEvent(QResizeEvent* pEvent) {
    QWidget::resizeEvent(pEvent);
    if (m_pEngine)
        m_pEngine->Widget()->setGeometry(rect());
    if (m_pMissing)
        m_pMissing->setGeometry(rect());
    if (m_pNote)
        m_pNote->setGeometry(rect());
}

void CWebBrowser2Ex::focusInEvent(QFocusEvent* pEvent) {
    QWidget::focusInEvent(pEvent);
    if (m_pEngine)
        m_pEngine->Widget()->setFocus(pEvent->reason());
}
