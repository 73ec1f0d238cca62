#include "platform/ui/engine/SurfacePage.h"

#include "platform/ui/MediaKinds.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/engine/NetGate.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTimer>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>

namespace {

/// How long after the program's own script a new window counts as the program's wish.
constexpr qint64 c_nNewWindowMilliseconds = 5000;
/// How long after a person's click a link counts as the person's.
constexpr qint64 c_nClickMilliseconds = 2000;
/// How soon a card is there for the file of a frame, and how often that is waited for while the page loads.
constexpr int c_nCardMilliseconds = 300;
constexpr int c_nCardTries = 20;

CAccessRules::EResource ResourceOf(QWebEngineUrlRequestInfo::ResourceType type) {
    switch (type) {
    case QWebEngineUrlRequestInfo::ResourceTypeMainFrame:
        return CAccessRules::EResource::MainPage;
    case QWebEngineUrlRequestInfo::ResourceTypeSubFrame:
        return CAccessRules::EResource::Frame;
    case QWebEngineUrlRequestInfo::ResourceTypeImage:
    case QWebEngineUrlRequestInfo::ResourceTypeMedia:
        return CAccessRules::EResource::PictureOrMedia;
    default:
        return CAccessRules::EResource::Other;
    }
}

/// Every other address the engine hands to the desktop, unless the page that is asked refuses.
bool IsForTheEngine(const QUrl& url) {
    static const QStringList s_schemes{QStringLiteral("file"),  QStringLiteral("http"),
                                       QStringLiteral("https"), QStringLiteral("about"),
                                       QStringLiteral("data"),  QStringLiteral("blob")};
    return s_schemes.contains(url.scheme());
}

} // namespace

void CRequestGuard::interceptRequest(QWebEngineUrlRequestInfo& info) {
    const auto verdict = m_rules.Judge(info.requestUrl(), ResourceOf(info.resourceType()));
    if (verdict.Kind == CAccessRules::SVerdict::EKind::Refuse)
        info.block(true);
    else if (verdict.Kind == CAccessRules::SVerdict::EKind::Redirect)
        info.redirect(verdict.Target);
    else if (verdict.bOfWeb)
        CNetGate::Instance().Allow(this, info.requestUrl());
}

CRequestGuard::~CRequestGuard() {
    CNetGate::Instance().Withdraw(this);
}

void CRequestGuard::SetRules(const CAccessRules& rules) {
    CNetGate::Instance().Withdraw(this);
    m_rules = rules;
}

CSurfacePage::CSurfacePage(QWebEngineProfile* pProfile, CRequestGuard& guard, QObject* pParent)
    : QWebEnginePage(pProfile, pParent), m_guard(guard),
      m_strToken(QStringLiteral("vorel-caret-%1").arg(QRandomGenerator::system()->generate64(), 0, 36)) {
    QWebEngineSettings& s = *settings();
    s.setDefaultTextEncoding(QStringLiteral("GB18030"));
    using S = QWebEngineSettings;
    // The files of a course may speak with one another; the guard keeps them within their folders.
    s.setAttribute(S::LocalContentCanAccessFileUrls, true);
    s.setAttribute(S::LocalContentCanAccessRemoteUrls, false);
    // New windows come as a wish to the program, which decides.
    s.setAttribute(S::JavascriptCanOpenWindows, true);
    s.setAttribute(S::JavascriptCanAccessClipboard, false);
    s.setAttribute(S::JavascriptCanPaste, false);
    s.setAttribute(S::PluginsEnabled, false);
    s.setAttribute(S::FullScreenSupportEnabled, false);
    s.setAttribute(S::ScreenCaptureEnabled, false);
    s.setAttribute(S::HyperlinkAuditingEnabled, false);
    s.setAttribute(S::DnsPrefetchEnabled, false);
    s.setAttribute(S::NavigateOnDropEnabled, false);
    s.setAttribute(S::WebRTCPublicInterfacesOnly, true);
    s.setAttribute(S::AllowWindowActivationFromJavaScript, false);
    // The page is asked about them, and refuses them all.
    s.setUnknownUrlSchemePolicy(S::AllowUnknownUrlSchemesFromUserInteraction);
    connect(this, &QWebEnginePage::loadStarted, this, [this] {
        ++m_nLoads;
        m_named.clear();
    });
    RefuseWishes();
    ReportFrames();
    ReportClicks();
    ReportBeginnings();
    SettleAtAnchors();
    KeepOpen();
}

/// The engine tells of its main frame alone.
void CSurfacePage::ReportFrames() {
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(
        QStringLiteral("if (window !== window.top)\n  console.info('%1');").arg(FrameToken()));
    scripts().insert(script);
}

/// The engine calls a link clicked also when a script of the page has clicked it.
void CSurfacePage::ReportClicks() {
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(
        QStringLiteral("addEventListener('click', (e) => e.isTrusted && console.info('%1'), true);")
            .arg(ClickToken()));
    scripts().insert(script);
}

/// The engine tells when it has all of a page, which may be never. Its own page about a failure is none.
void CSurfacePage::ReportBeginnings() {
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setSourceCode(QStringLiteral("if (/^https?:$/.test(location.protocol))\n  console.info('%1');")
                             .arg(BeginningToken()));
    scripts().insert(script);
}

void CSurfacePage::SettleAtAnchors() {
    QFile file(QStringLiteral(":/vorel/anchors.js"));
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString());
    scripts().insert(script);
}

/// The engine stops loading a page that closes its window, long before it asks whether the window may go.
void CSurfacePage::KeepOpen() {
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(QStringLiteral("window.close = function close() {};"));
    scripts().insert(script);
}

/// The requests of a call pass no guard. The engine runs no script in the empty document that a frame begins
/// with: what a page sends from there ends at the gate.
void CSurfacePage::SetCalling(bool bMayCall) {
    const QString strName = QStringLiteral("noCalls");
    const QList<QWebEngineScript> known = scripts().find(strName);
    if (known.isEmpty() == bMayCall)
        return;
    if (bMayCall) {
        scripts().remove(known.first());
        return;
    }
    QWebEngineScript script;
    script.setName(strName);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(
        QStringLiteral("delete window.RTCPeerConnection; delete window.webkitRTCPeerConnection;"
                       "delete window.RTCDataChannel;"));
    scripts().insert(script);
}

void CSurfacePage::SetMediaReplaced(bool bReplaced) {
    const QString strName = QStringLiteral("media");
    const QList<QWebEngineScript> known = scripts().find(strName);
    if (known.isEmpty() != bReplaced)
        return;
    if (!bReplaced) {
        scripts().remove(known.first());
        return;
    }
    QFile file(QStringLiteral(":/vorel/media.js"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    QWebEngineScript script;
    script.setName(strName);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(
        QString::fromUtf8(file.readAll()) +
        QStringLiteral("(%1, '%2', '%3');").arg(MediaKinds::AsJson(), MediaToken(), NamedToken()));
    scripts().insert(script);
}

void CSurfacePage::RefuseWishes() {
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature what) {
                setFeaturePermission(origin, what, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this,
            [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](QWebEngineNewWindowRequest& request) { OnNewWindow(request); });
}

void CSurfacePage::SetEditing(bool bEditing, bool bFollowsLinks) {
    m_bEditing = bEditing;
    m_bFollowsLinks = bFollowsLinks;
    using S = QWebEngineSettings;
    settings()->setAttribute(S::JavascriptEnabled, !bEditing);
    // Courseware begins by itself, and whoever looks at it has clicked for it; nobody wants music to write
    // by.
    settings()->setAttribute(S::PlaybackRequiresUserGesture, bEditing);
    // Without the page's scripts, only the editor's commands are left to touch the clipboard.
    settings()->setAttribute(S::JavascriptCanAccessClipboard, bEditing);
    settings()->setAttribute(S::JavascriptCanPaste, bEditing);
}

void CSurfacePage::ExpectNewWindow() {
    m_expected.start();
}

void CSurfacePage::OnNewWindow(const QWebEngineNewWindowRequest& request) {
    const bool bExpected = m_expected.isValid() && m_expected.elapsed() < c_nNewWindowMilliseconds;
    m_expected.invalidate();
    if (!bExpected && !request.isUserInitiated())
        return;
    if (m_guard.Rules().MayOpen(request.requestedUrl()))
        Q_EMIT WantsNewWindow(request.requestedUrl(), true);
    else if (m_guard.Rules().IsMissing(request.requestedUrl()))
        Q_EMIT LinkMissing(request.requestedUrl());
}

bool CSurfacePage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool bMainFrame) {
    if (m_bProgramLoads && bMainFrame && IsForTheEngine(url))
        return true;
    // The guard redirects to the letter case of the disk.
    const bool bByLink = type == NavigationTypeLinkClicked || type == NavigationTypeRedirect;
    const bool bMayLead = !m_bEditing || (m_bFollowsLinks && bByLink);
    const bool bByClick = type == NavigationTypeLinkClicked;
    if ((bMayLead && (bByLink || bMainFrame) && LeaveToProgram(url, bByClick)) ||
        (bMainFrame && (!bMayLead || GoToMeant(url))))
        return false;
    const auto resource = bMainFrame ? CAccessRules::EResource::MainPage : CAccessRules::EResource::Frame;
    const bool bAllowed = m_guard.Rules().Judge(url, resource).Kind != CAccessRules::SVerdict::EKind::Refuse;
    if (!bAllowed && bByClick)
        TellOfRefused(url);
    return bAllowed && IsForTheEngine(url);
}

void CSurfacePage::TellOfRefused(const QUrl& url) {
    if (m_guard.Rules().MayOpen(url))
        Q_EMIT WantsNewWindow(url, TakeClick());
    else if (m_guard.Rules().IsMissing(url) && TakeClick())
        Q_EMIT LinkMissing(url);
}

void CSurfacePage::TellOfDownload(const QUrl& url) {
    const bool bMayLead = !m_bEditing || m_bFollowsLinks;
    const bool bTold = url.isLocalFile() && url == m_guard.Rules().ProgramPage();
    if (!bMayLead || bTold || !m_guard.Rules().MayOpen(url))
        return;
    if (url.isLocalFile() && MediaKinds::HasCard(url.path()))
        TellUnlessNamed(url, TakeClick(), c_nCardTries);
    else
        Q_EMIT WantsNewWindow(url, TakeClick());
}

/// A card stands for the file of a frame that names it, as soon as the page around it has been read. Where a
/// script has sent the frame there, none does.
void CSurfacePage::TellUnlessNamed(const QUrl& url, bool bByClick, int nTries) {
    QTimer::singleShot(c_nCardMilliseconds, this, [=, this, nLoad = m_nLoads] {
        if (nLoad != m_nLoads || m_named.contains(SurfaceUrls::FindOnDisk(url)))
            return;
        if (isLoading() && nTries > 0)
            TellUnlessNamed(url, bByClick, nTries - 1);
        else
            Q_EMIT WantsNewWindow(url, bByClick);
    });
}

bool CSurfacePage::TakeClick() {
    const bool bClicked = m_clicked.isValid() && m_clicked.elapsed() < c_nClickMilliseconds;
    m_clicked.invalidate();
    return bClicked;
}

/// A link to a file that the engine would only offer to download is the program's.
bool CSurfacePage::LeaveToProgram(const QUrl& url, bool bByClick) {
    const QUrl meant = SurfaceUrls::MeantByLink(url);
    if (!meant.isLocalFile() || MediaKinds::OfFile(meant.path()).Way == MediaKinds::EWay::Browser ||
        !m_guard.Rules().MayOpen(meant))
        return false;
    Q_EMIT WantsNewWindow(meant, bByClick && TakeClick());
    return true;
}

/// A link may hold what ends a path in an address as part of a file's name: links into a course are written
/// without escapes by rule. True when the page goes to that file instead.
bool CSurfacePage::GoToMeant(const QUrl& url) {
    const QUrl meant = SurfaceUrls::MeantByLink(url);
    if (meant == url)
        return false;
    // Not from within the engine's own call.
    QMetaObject::invokeMethod(
        this, [this, meant] { load(meant); }, Qt::QueuedConnection);
    return true;
}

// A box of a page would stand in the way of a call that waits, and an endless row of them is a known way to
// take a program hostage. So a page's boxes are answered at once.
void CSurfacePage::javaScriptAlert(const QUrl&, const QString&) {}

bool CSurfacePage::javaScriptConfirm(const QUrl&, const QString& strText) {
    // The engine asks the same way whether a page may be left: for the program's own loads it always may.
    static const char* const s_szLeave = QT_TRANSLATE_NOOP(
        "QWebEnginePage",
        "Are you sure you want to leave this page? Changes that you made may not be saved.");
    return m_bProgramLoads && strText == QCoreApplication::translate("QWebEnginePage", s_szLeave);
}

bool CSurfacePage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) {
    return false;
}

void CSurfacePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& strText, int,
                                            const QString&) {
    if (strText == m_strToken)
        Q_EMIT CaretMoved();
    else if (strText == ClickToken())
        m_clicked.start();
    else if (strText == FrameToken())
        Q_EMIT FrameShown();
    else if (strText == BeginningToken())
        Q_EMIT Begun();
    else if (strText == m_strToken + QStringLiteral("-paste"))
        Q_EMIT WantsPaste(IWebEngine::EPaste::All);
    else if (strText == m_strToken + QStringLiteral("-paste-text"))
        Q_EMIT WantsPaste(IWebEngine::EPaste::Text);
    else if (strText == m_strToken + QStringLiteral("-paste-selection"))
        Q_EMIT WantsPaste(IWebEngine::EPaste::Selection);
    else if (strText.startsWith(NamedToken()))
        m_named.insert(SurfaceUrls::FindOnDisk(QUrl(strText.mid(NamedToken().size()))));
    else if (strText.startsWith(MediaToken()))
        TellMedium(QUrl(strText.mid(MediaToken().size())));
}

void CSurfacePage::TellMedium(const QUrl& url) {
    // Of a file that isn't there the person is told so.
    if (m_guard.Rules().MayOpen(url) || (url.isLocalFile() && SurfaceUrls::FindOnDisk(url).isEmpty()))
        Q_EMIT WantsNewWindow(url, true);
}

QStringList CSurfacePage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) {
    return {};
}
