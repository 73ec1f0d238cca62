#include "platform/ui/engine/WebEngineModule.h"

#include "platform/ui/Texts.h"
#include "platform/ui/engine/NetGate.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QShortcut>
#include <QWebEngineDownloadRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNotification>
#include <QWebEngineScript>

namespace {

using EState = SEngineAnswer::EState;

constexpr int c_nCoalesceMilliseconds = 100;
constexpr int c_nHangingMilliseconds = 500;
constexpr int c_nMenuMilliseconds = 500;
constexpr qreal c_dZoomStep = 0.1;
/// While a page of the disk loads it is asked as often as this how far it is. It is no longer waited for
/// after so many times without an answer, and taken as it stands when all but what it shows has been there
/// for so long.
constexpr int c_nAliveMilliseconds = 1000;
constexpr int c_nMaxUnanswered = 2;
constexpr int c_nMaxInteractive = 2;

QString ScriptFile(QLatin1StringView strName) {
    QFile file(QStringLiteral(":/vorel/") + strName + QStringLiteral(".js"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

/// Each file is an expression and may use those before it; the last is the function that is called.
const QString& EditorScript() {
    static const QString strScript = [] {
        QString strParts;
        for (const char* const szName : {"document", "undoHistory", "page", "bodyText", "firstSight",
                                         "insertion", "commands", "clipboard", "tables", "typing", "surface"})
            strParts += QStringLiteral("const %1 = %2;\n")
                            .arg(QLatin1StringView(szName), ScriptFile(QLatin1StringView(szName)));
        return QString(QStringLiteral("(function () {\n") + strParts +
                       QStringLiteral("return surface;\n})()"));
    }();
    return strScript;
}

SEngineAnswer AnswerOf(QWebEngineLoadingInfo::LoadStatus status) {
    if (status == QWebEngineLoadingInfo::LoadStoppedStatus)
        return {EState::Stopped, {}, {}};
    return {EState::Value, status == QWebEngineLoadingInfo::LoadSucceededStatus, {}};
}

/// What the editor's script makes of a result: {"value": …}, {"undefined": true} or {"error": "…"}.
SEngineAnswer ReadAnswer(const QVariant& reply) {
    if (reply.typeId() != QMetaType::QString)
        return {EState::ScriptError, {}, QStringLiteral("the script did not run")};
    const QJsonObject answer = QJsonDocument::fromJson(reply.toString().toUtf8()).object();
    if (answer.contains(QLatin1String("error")))
        return {EState::ScriptError, {}, answer.value(QLatin1String("error")).toString()};
    if (!answer.contains(QLatin1String("value")))
        return {EState::Undefined, {}, {}};
    return {EState::Value, answer.value(QLatin1String("value")), {}};
}

/// The script that calls a function of the editor's own.
QString EditorCall(const QString& strFunction, const QJsonArray& arguments) {
    const QJsonArray call{strFunction, arguments};
    return EditorScript() + QStringLiteral("(...") +
           QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact)) + u')';
}

} // namespace

bool CDropView::IsFromOutside(const QDropEvent& event) const {
    const auto* pSource = qobject_cast<const QWidget*>(event.source());
    return m_bEditing && pSource != this && !(pSource && isAncestorOf(pSource));
}

// The engine shows where the text would go in, and is then told that it left again.
void CDropView::dragEnterEvent(QDragEnterEvent* pEvent) {
    QWebEngineView::dragEnterEvent(pEvent);
    if (!IsFromOutside(*pEvent))
        return;
    pEvent->setDropAction(Qt::CopyAction);
    pEvent->accept();
}

void CDropView::dragMoveEvent(QDragMoveEvent* pEvent) {
    QWebEngineView::dragMoveEvent(pEvent);
    if (!IsFromOutside(*pEvent))
        return;
    pEvent->setDropAction(Qt::CopyAction);
    pEvent->accept();
}

void CDropView::dropEvent(QDropEvent* pEvent) {
    if (!IsFromOutside(*pEvent))
        return QWebEngineView::dropEvent(pEvent);
    QDragLeaveEvent leave;
    QWebEngineView::dragLeaveEvent(&leave);
    // Whatever its source proposes, nothing there is moved away.
    pEvent->setDropAction(Qt::CopyAction);
    pEvent->accept();
    setFocus();
    Q_EMIT Dropped(*pEvent->mimeData(), (pEvent->position() / zoomFactor()).toPoint());
}

CWebEngine::CWebEngine(QWidget* pParent) : m_pView(new CDropView(pParent)) {
    m_pView->setObjectName(QStringLiteral("webView"));
    m_pView->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_pView, &QWidget::customContextMenuRequested, this, &CWebEngine::AskForContextMenu);
    connect(m_pView, &CDropView::Dropped, this, [this](const QMimeData& data, const QPoint& place) {
        if (OnDrop)
            OnDrop(data, place);
    });
    // A turn of the wheel with Ctrl makes a page larger, perhaps unmeant: there must be a way back.
    const auto zoom = [this](QKeySequence keys, const std::function<qreal(qreal)>& next) {
        auto* pKeys = new QShortcut(keys, m_pView);
        pKeys->setContext(Qt::WidgetWithChildrenShortcut);
        connect(pKeys, &QShortcut::activated, this,
                [this, next] { m_pPage->setZoomFactor(next(m_pPage->zoomFactor())); });
    };
    zoom(Qt::CTRL | Qt::Key_0, [](qreal) { return 1.0; });
    zoom(QKeySequence::ZoomIn, [](qreal dZoom) { return dZoom + c_dZoomStep; });
    zoom(QKeySequence::ZoomOut, [](qreal dZoom) { return dZoom - c_dZoomStep; });
    m_caretTimer.setSingleShot(true);
    m_caretTimer.setInterval(c_nCoalesceMilliseconds);
    connect(&m_caretTimer, &QTimer::timeout, this, [this] {
        // Who is told asks the page at once, which would be refused during a call.
        if (m_pCall.lock())
            m_caretTimer.start();
        else if (OnSelectionChanged)
            OnSelectionChanged();
    });
    RenewPage(true);
}

CWebEngine::~CWebEngine() {
    if (const auto pCall = m_pCall.lock())
        pCall->Finish({EState::Gone, {}, {}});
    delete m_pView;
}

QWidget* CWebEngine::Widget() {
    return m_pView;
}

/// What pages keep among themselves, as in their local storage, they share with nobody: not with another
/// course, and not with the web.
void CWebEngine::MakeProfile() {
    m_pGuard = std::make_unique<CRequestGuard>();
    m_pProfile = std::make_unique<QWebEngineProfile>();
    m_pProfile->setUrlRequestInterceptor(m_pGuard.get());
    m_pProfile->setNotificationPresenter([](std::unique_ptr<QWebEngineNotification>) {});
    connect(m_pProfile.get(), &QWebEngineProfile::downloadRequested, this,
            [this](QWebEngineDownloadRequest* pDownload) {
                pDownload->cancel();
                // The profile is this page's alone. The engine can't be asked for the page of a download:
                // where the frame that wanted it is gone, it crashes.
                if (m_pPage)
                    m_pPage->TellOfDownload(pDownload->url());
            });
}

/// With a process of its own.
void CWebEngine::RenewPage(bool bOtherProfile) {
    // Until the page is there that comes after it, the old one lives, and what it lives on.
    std::unique_ptr<CRequestGuard> pOldGuard;
    std::unique_ptr<QWebEngineProfile> pOldProfile;
    if (bOtherProfile) {
        pOldGuard = std::move(m_pGuard);
        pOldProfile = std::move(m_pProfile);
        MakeProfile();
    }
    m_pBegun.reset();
    const bool bHadFocus = m_pView->isAncestorOf(QApplication::focusWidget()) || m_pView->hasFocus();
    auto pFresh = std::make_unique<CSurfacePage>(m_pProfile.get(), *m_pGuard, nullptr);
    if (m_pPage)
        pFresh->setZoomFactor(m_pPage->zoomFactor());
    m_pView->setPage(pFresh.get());
    m_pPage = std::move(pFresh);
    m_bPageHangs = m_bPageHadScripts = false;
    ConnectPage();
    if (bHadFocus)
        m_pView->setFocus();
}

/// The engine gives the keys to what draws the page only behind a click on it.
void CWebEngine::LeadKeysToPage() {
    const auto* pQuick = qobject_cast<QQuickWidget*>(m_pView->focusProxy());
    if (!pQuick || !pQuick->rootObject())
        return;
    const QList<QQuickItem*> drawn = pQuick->rootObject()->childItems();
    if (!drawn.isEmpty())
        drawn.last()->setFocus(true);
}

bool CWebEngine::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pEvent->type() == QEvent::KeyPress)
        ++m_nKeysGiven;
    return QObject::eventFilter(pObject, pEvent);
}

void CWebEngine::ConnectPage() {
    // The handlers may call into the engine, so they run from the event loop and not inside the engine.
    connect(m_pPage.get(), &CSurfacePage::CaretMoved, this, [this] {
        if (!m_caretTimer.isActive())
            m_caretTimer.start();
    });
    connect(
        m_pPage.get(), &CSurfacePage::WantsPaste, this,
        [this](EPaste what) {
            if (OnPaste)
                OnPaste(what);
        },
        Qt::QueuedConnection);
    connect(
        m_pPage.get(), &CSurfacePage::WantsNewWindow, this,
        [this](const QUrl& url, bool bByPerson) {
            if (OnNewWindow)
                OnNewWindow(url, bByPerson);
        },
        Qt::QueuedConnection);
    connect(
        m_pPage.get(), &CSurfacePage::LinkMissing, this,
        [this](const QUrl& url) {
            if (OnLinkMissing)
                OnLinkMissing(url);
        },
        Qt::QueuedConnection);
    const auto tellMoved = [this] {
        if (OnMoved)
            OnMoved();
    };
    connect(m_pPage.get(), &QWebEnginePage::urlChanged, this, tellMoved, Qt::QueuedConnection);
    connect(m_pPage.get(), &CSurfacePage::FrameShown, this, tellMoved, Qt::QueuedConnection);
    connect(m_pPage.get(), &QWebEnginePage::renderProcessTerminated, this, [this] {
        m_bPageHangs = true;
        if (const auto pCall = m_pCall.lock())
            pCall->Finish({EState::Gone, {}, {}});
        QTimer::singleShot(0, this, [this] {
            if (OnPageLost)
                OnPageLost();
        });
    });
}

void CWebEngine::SetAccess(const SEngineAccess& access) {
    m_access = access;
}

QUrl CWebEngine::Url() const {
    return m_pPage->url();
}

QString CWebEngine::CopyMark() const {
    static const QString s_strMark =
        QStringLiteral("vorel-copy-%1").arg(QRandomGenerator::system()->generate64(), 0, 36);
    return s_strMark;
}

std::shared_ptr<CBlockingCall> CWebEngine::BeginCall() {
    if (m_pCall.lock())
        return nullptr;
    auto pCall = std::make_shared<CBlockingCall>();
    m_pCall = pCall;
    return pCall;
}

/// A page whose script runs on at loading would let the call wait to its limit, and so would one with a
/// picture of the web that never comes.
void CWebEngine::WatchWhileLoading(const std::shared_ptr<CBlockingCall>& pCall) {
    struct SAskings {
        int nUnanswered = 0;
        int nInteractive = 0;
    };
    const auto pAskings = std::make_shared<SAskings>();
    auto* pTimer = new QTimer(pCall->Context());
    connect(pTimer, &QTimer::timeout, m_pPage.get(),
            [pWeak = std::weak_ptr(pCall), pAskings, pPage = m_pPage.get()] {
                const auto pSelf = pWeak.lock();
                if (pSelf && pAskings->nUnanswered >= c_nMaxUnanswered)
                    return pSelf->Finish({EState::TimeOut, {}, {}});
                if (++pAskings->nUnanswered > 1)
                    return;
                pPage->runJavaScript(QStringLiteral("location.protocol + document.readyState"),
                                     QWebEngineScript::ApplicationWorld,
                                     [pWeak, pAskings](const QVariant& state) {
                                         pAskings->nUnanswered = 0;
                                         const bool bThere = state.toString() == u"file:interactive";
                                         pAskings->nInteractive = bThere ? pAskings->nInteractive + 1 : 0;
                                         if (const auto pLoad = pWeak.lock();
                                             pLoad && pAskings->nInteractive >= c_nMaxInteractive)
                                             pLoad->Finish({EState::Value, true, {}});
                                     });
            });
    pTimer->start(c_nAliveMilliseconds);
}

SEngineAnswer CWebEngine::LoadWith(const std::function<void(CSurfacePage&)>& start, const QUrl& url,
                                   int nMilliseconds) {
    const auto pCall = BeginCall();
    if (!pCall)
        return {EState::Busy, {}, {}};
    m_pBegun.reset();
    CSurfacePage& page = *m_pPage;
    const auto bStarted = std::make_shared<bool>(false);
    connect(&page, &QWebEnginePage::loadingChanged, pCall->Context(),
            [pWeak = std::weak_ptr(pCall), bStarted, url](const QWebEngineLoadingInfo& info) {
                // The end of an earlier load is none of ours. Where one was under way, as after a click on a
                // link, the engine tells no beginning of that which takes its place.
                if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus)
                    *bStarted = true;
                else if (const auto pSelf = pWeak.lock(); pSelf && (*bStarted || info.url() == url))
                    pSelf->Finish(AnswerOf(info.status()));
            });
    page.SetProgramLoads(true);
    start(page);
    if (url.isLocalFile() && !m_access.bEditing)
        WatchWhileLoading(pCall);
    const QPointer<CWebEngine> pAlive(this);
    SEngineAnswer answer = CBlockingCall::Wait(pCall, nMilliseconds);
    if (pAlive) {
        m_pCall.reset();
        m_pPage->SetProgramLoads(false);
        m_bPageHangs = m_bPageHangs || answer.State == EState::TimeOut;
    }
    return answer;
}

void CWebEngine::PreparePage(const QUrl& url) {
    m_pBegun.reset();
    // A page that could run scripts may hold up whatever comes after it in its process. The first page takes
    // what was made with the view.
    const bool bOtherAccess = m_pageAccess && *m_pageAccess != m_access;
    if (m_bPageHangs || m_bPageHadScripts || bOtherAccess)
        RenewPage(bOtherAccess);
    m_pageAccess = m_access;
    m_bPageHadScripts = !m_access.bEditing && url.scheme() != QLatin1String("about");
    CAccessRules rules(m_access);
    rules.SetProgramPage(url);
    m_pGuard->SetRules(rules);
    m_pPage->SetEditing(m_access.bEditing, m_access.bFollowsLinks);
    m_pView->SetEditing(m_access.bEditing);
    m_pPage->SetMediaReplaced(m_access.bReplaceMedia);
    m_pPage->SetCalling(m_access.bNetwork);
}

SEngineAnswer CWebEngine::LoadAt(const QUrl& url, const std::function<void(CSurfacePage&)>& start,
                                 int nMilliseconds) {
    if (m_pCall.lock())
        return {EState::Busy, {}, {}};
    PreparePage(url);
    const QPointer<CWebEngine> pAlive(this);
    SEngineAnswer answer = LoadWith(start, url, nMilliseconds);
    if (pAlive)
        LeadKeysToPage();
    if (pAlive && m_access.bEditing && answer.HasValue()) {
        m_nKeysGiven = 0;
        if (QWidget* const pKeys = m_pView->focusProxy())
            pKeys->installEventFilter(this);
        Call(QStringLiteral("watch"), {m_pPage->Token(), CopyMark()}, nMilliseconds);
    }
    return answer;
}

SEngineAnswer CWebEngine::Load(const QUrl& url, int nMilliseconds) {
    return LoadAt(
        url, [url](CSurfacePage& page) { page.load(url); }, nMilliseconds);
}

/// Told once, from the event loop, how the load that is under way ends.
void CWebEngine::TellOfEnd(int nMilliseconds, std::function<void(const SEngineAnswer&)> told) {
    m_pBegun = std::make_unique<QObject>();
    QObject* const pContext = m_pBegun.get();
    CSurfacePage* const pPage = m_pPage.get();
    const auto finish = [this, pContext, told = std::move(told)](const SEngineAnswer& answer) {
        if (m_pBegun.get() != pContext)
            return;
        m_pBegun.release()->deleteLater();
        m_pPage->SetProgramLoads(false);
        told(answer);
    };
    const auto finishLater = [pContext, finish](const SEngineAnswer& answer) {
        QMetaObject::invokeMethod(
            pContext, [finish, answer] { finish(answer); }, Qt::QueuedConnection);
    };
    connect(pPage, &CSurfacePage::Begun, pContext, [finishLater] { finishLater({EState::Value, true, {}}); });
    connect(
        pPage, &QWebEnginePage::loadingChanged, pContext, [finishLater](const QWebEngineLoadingInfo& info) {
            if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus)
                finishLater({EState::Value, info.status() == QWebEngineLoadingInfo::LoadSucceededStatus, {}});
        });
    connect(pPage, &QWebEnginePage::renderProcessTerminated, pContext, [finishLater] {
        finishLater({EState::Gone, {}, {}});
    });
    QTimer::singleShot(nMilliseconds, pContext, [pPage, finishLater] {
        finishLater({EState::TimeOut, {}, {}});
        pPage->triggerAction(QWebEnginePage::Stop);
    });
}

bool CWebEngine::Begin(const QUrl& url, int nMilliseconds, std::function<void(const SEngineAnswer&)> told) {
    if (m_pCall.lock())
        return false;
    PreparePage(url);
    TellOfEnd(nMilliseconds, std::move(told));
    m_pPage->SetProgramLoads(true);
    m_pPage->load(url);
    return true;
}

void CWebEngine::Await(int nMilliseconds, std::function<void(const SEngineAnswer&)> told) {
    TellOfEnd(nMilliseconds, [this, told = std::move(told)](const SEngineAnswer& answer) {
        m_bPageHangs = answer.State != EState::Value;
        if (m_bPageHangs)
            RenewPage(false);
        told(answer);
    });
    // It has come just as the wait for it was given up, and nothing more will tell of it.
    if (!m_pPage->isLoading())
        Q_EMIT m_pPage->Begun();
}

SEngineAnswer CWebEngine::LoadDocument(const QString& strHtml, const QUrl& url, int nMilliseconds) {
    return LoadAt(
        url, [strHtml, url](CSurfacePage& page) { page.setHtml(strHtml, url); }, nMilliseconds);
}

SEngineAnswer CWebEngine::ShowOwnPage(const QString& strHtml, int nMilliseconds) {
    if (m_pCall.lock())
        return {EState::Busy, {}, {}};
    if (m_bPageHangs || m_bPageHadScripts)
        RenewPage(false);
    return LoadWith(
        [strHtml](CSurfacePage& page) { page.setHtml(strHtml, QUrl(QStringLiteral("about:blank"))); }, {},
        nMilliseconds);
}

SEngineAnswer CWebEngine::RunScript(const QString& strScript, quint32 nWorld, int nMilliseconds) {
    const auto pCall = BeginCall();
    if (!pCall)
        return {EState::Busy, {}, {}};
    const QPointer<CWebEngine> pAlive(this);
    m_pPage->runJavaScript(strScript, nWorld, [pCall, pAlive](const QVariant& reply) {
        // Also a late reply tells that the page goes on.
        if (pAlive && reply.isValid())
            pAlive->m_bPageHangs = false;
        pCall->Finish(ReadAnswer(reply));
    });
    // A page that let a call wait in vain is asked again, but not waited for as long.
    const int nLimit = m_bPageHangs ? qMin(nMilliseconds, c_nHangingMilliseconds) : nMilliseconds;
    SEngineAnswer answer = CBlockingCall::Wait(pCall, nLimit);
    if (pAlive) {
        // A late reply still holds the call, which is over all the same.
        m_pCall.reset();
        m_bPageHangs = m_bPageHangs || answer.State == EState::TimeOut;
    }
    return answer;
}

SEngineAnswer CWebEngine::Call(const QString& strFunction, const QJsonArray& arguments, int nMilliseconds) {
    return RunScript(EditorCall(strFunction, arguments), QWebEngineScript::ApplicationWorld, nMilliseconds);
}

void CWebEngine::CallLater(const QString& strFunction, const QJsonArray& arguments,
                           std::function<void(const SEngineAnswer&)> answer) {
    const QPointer<CWebEngine> pAlive(this);
    m_pPage->runJavaScript(
        EditorCall(strFunction, arguments), QWebEngineScript::ApplicationWorld,
        [pAlive, answer = std::move(answer)](const QVariant& reply) {
            // The end of the page answers too.
            if (pAlive)
                answer(reply.isValid() ? ReadAnswer(reply) : SEngineAnswer{EState::Gone, {}, {}});
        });
}

SEngineAnswer CWebEngine::RunInPage(const QString& strScript, int nMilliseconds) {
    m_pPage->ExpectNewWindow();
    // Wrapped so that an error of the script is told apart from no result.
    const QJsonArray text{strScript};
    const QString strJson = QString::fromUtf8(QJsonDocument(text).toJson(QJsonDocument::Compact));
    const QString strWrapped = QStringLiteral("(function(t){try{(0,eval)(t);return '{\"undefined\":true}';}"
                                              "catch(e){return JSON.stringify({error:String(e)});}})(...") +
                               strJson + u')';
    return RunScript(strWrapped, QWebEngineScript::MainWorld, nMilliseconds);
}

/// The press has moved the caret: what the menu offers follows it first, unless the page takes too long.
void CWebEngine::AskForContextMenu(const QPoint& position) {
    if (!m_access.bEditing || !OnSelectionChanged)
        return ShowContextMenu(position);
    OnSelectionChanged();
    const int nAsked = ++m_nMenusAsked;
    const auto show = [this, position, nAsked] {
        // Not for a press before the last, not twice, and not in front of another page.
        if (nAsked != m_nMenusAsked || !m_pView->isVisible())
            return;
        ++m_nMenusAsked;
        ShowContextMenu(position);
    };
    CallLater(QStringLiteral("hasSelection"), {}, [show](const SEngineAnswer&) { show(); });
    QTimer::singleShot(c_nMenuMilliseconds, this, show);
}

void CWebEngine::ShowContextMenu(const QPoint& position) {
    auto* pMenu = new QMenu(m_pView);
    pMenu->setObjectName(QStringLiteral("webMenu"));
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->addActions(m_pView->parentWidget()->actions());
    if (pMenu->isEmpty()) {
        const auto add = [&](QWebEnginePage::WebAction action, const QString& strText) {
            QAction* pSource = m_pPage->action(action);
            QAction* pAction = pMenu->addAction(strText);
            pAction->setEnabled(pSource->isEnabled());
            connect(pAction, &QAction::triggered, pSource, &QAction::trigger);
        };
        add(QWebEnginePage::Copy, UiTexts::c_strCopy);
        add(QWebEnginePage::SelectAll, UiTexts::c_strSelectAll);
    }
    pMenu->popup(m_pView->mapToGlobal(position));
}

namespace {

/// A variable of the environment that the engine looks at while it starts. It is not for programs that are
/// started later.
class CStartVariable {
public:
    CStartVariable(const char* szName, const QByteArray& value)
        : m_szName(szName), m_before(qgetenv(szName)), m_bWasSet(qEnvironmentVariableIsSet(szName)) {
        qputenv(szName, value);
    }
    ~CStartVariable() {
        if (m_bWasSet)
            qputenv(m_szName, m_before);
        else
            qunsetenv(m_szName);
    }
    Q_DISABLE_COPY_MOVE(CStartVariable)

private:
    const char* m_szName;
    QByteArray m_before;
    bool m_bWasSet;
};

} // namespace

extern "C" Q_DECL_EXPORT void VorelStartWebEngine() {
    // Drawn without the graphics card. Else the first view would turn the window it stands in into one drawn
    // by the card: the window is made anew, and loses its place, the keyboard and its number. Besides it
    // saves some 35 MB, and the drivers of school machines.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // Nor does it need to know whether the card's driver works.
    const CStartVariable noCheck("QT_OPENGL_NO_SANITY_CHECK", "1");
    // Ways to the network that pass no guard of requests. And the process that would start helpers without a
    // sandbox is not needed: the engine's start waits for the other one, which it slows down.
    const char* const szFlags = "QTWEBENGINE_CHROMIUM_FLAGS";
    // All connections go through the gate, also those to this machine itself.
    const QByteArray gate =
        "--proxy-server=socks5://127.0.0.1:" + QByteArray::number(CNetGate::Instance().serverPort());
    const CStartVariable flags(szFlags, qgetenv(szFlags) + ' ' + gate +
                                            " --proxy-bypass-list=<-loopback>"
                                            // Names are the gate's to look up: to ask for one tells it.
                                            " --host-resolver-rules=\"MAP * ~NOTFOUND, EXCLUDE 127.0.0.1\""
                                            " --force-webrtc-ip-handling-policy=disable_non_proxied_udp"
                                            " --disable-blink-features=WebTransport"
                                            " --disable-shared-workers"
                                            " --no-unsandboxed-zygote");
    // The engine starts with its first profile, and stays.
    const QWebEngineProfile first;
}

extern "C" Q_DECL_EXPORT IWebEngine* VorelMakeWebEngine(QWidget* pParent) {
    return new CWebEngine(pParent);
}
