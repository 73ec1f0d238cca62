#include "platform/ui/WebBrowser.h"

#include "foundation/Paths.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"
#include "platform/ui/AccessRules.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/LinkDialog.h"
#include "platform/ui/PageEncoding.h"
#include "platform/ui/PastedData.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/Texts.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebEngine.h"
#include "platform/ui/WebEngineLoader.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QFocusEvent>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QThread>
#include <QTimer>

#include <utility>

namespace {

constexpr int c_nScriptMilliseconds = 10000;
constexpr int c_nLoadMilliseconds = 30000;
/// A page that runs scripts of its own may be at one that never ends, and the person can't go on meanwhile.
constexpr int c_nStrangerMilliseconds = 1000;
/// The same right behind its load, when nothing depends on the answer.
constexpr int c_nMendMilliseconds = 500;
/// How long a page of the course is waited for that doesn't answer while it loads, when nobody is held up.
constexpr int c_nLateMilliseconds = 8000;
constexpr int c_nRetryMilliseconds = 50;
constexpr int c_nWishMilliseconds = 500;
constexpr int c_nNoteMilliseconds = 300;
constexpr int c_nNoteMargin = 24;
constexpr int c_nMaxTableSize = 1000;
const QLatin1String c_strBlank("about:blank");
/// As the parser makes it of a text without a document's tags: without a document type.
const QString c_strEmptyDocument = QStringLiteral("<html><head></head><body></body></html>");

int s_nCalls = 0;

bool IsTrue(const SEngineAnswer& answer) {
    return answer.HasValue() && answer.Value.toBool();
}

/// What becomes of the local references in a page's text: those that aren't in canonical form.
QJsonObject NewNames(const QJsonArray& references) {
    QJsonObject names;
    for (const QJsonValue& reference : references) {
        const QString strText = reference.toString();
        const auto strCanonical = SurfaceUrls::CanonicalReference(strText);
        if (strCanonical && *strCanonical != strText)
            names.insert(strText, *strCanonical);
    }
    return names;
}

/// A larger page is none that anybody wrote, and what is read is in memory several times over.
constexpr qint64 c_nMaxPage = 64 * 1024 * 1024;

/// The bytes of a page's file; nothing when they can't be read or are too many.
std::optional<QByteArray> PageBytes(const QString& strNativeFile) {
    QByteArray bytes;
    const int nError = Platform::ReadFileBytes(QFile::encodeName(strNativeFile), bytes, c_nMaxPage + 1);
    return nError != 0 || bytes.size() > c_nMaxPage ? std::nullopt : std::optional(bytes);
}

/// The text of a page's file that is a body's text and says no encoding of its own. Such a text is put into
/// an empty document: the inverse of how it was had from one, where the parser of whole pages takes its
/// beginning for a head, and for large pages several times as long.
std::optional<QString> BodyTextOf(const QUrl& url) {
    if (!url.isLocalFile() || !Torvane::File::IsHtmlFile(url.toLocalFile()))
        return std::nullopt;
    const auto bytes = PageBytes(url.toLocalFile());
    if (!bytes || !PageEncoding::IsBodyText(*bytes) || PageEncoding::SaysItsEncoding(*bytes))
        return std::nullopt;
    return PageEncoding::TextOf(*bytes);
}

/// Whether the engine may run anything of a page without the person's doing.
bool MayRun(const QByteArray& bytes) {
    static const QRegularExpression s_active(
        QStringLiteral("<(?:script|i?frame|object|embed)\\b|\\bon[a-z]+\\s*="),
        QRegularExpression::CaseInsensitiveOption);
    return bytes.contains('\0') || s_active.match(QString::fromLatin1(bytes)).hasMatch();
}

QString ShownUrl(const QUrl& url) {
    return url.isLocalFile() ? Platform::ToNativeExact(url.toLocalFile()) : url.toDisplayString();
}

bool IsWebUrl(const QUrl& url) {
    return url.isValid() && !url.isLocalFile() && url.scheme() != u"about";
}

} // namespace

/// Refuses a call while another one runs. Holds nothing of the surface, which may go during the call.
class CWebBrowser2Ex::CCallGuard {
public:
    CCallGuard() : m_bMine(s_nCalls == 0) { ++s_nCalls; }
    ~CCallGuard() { --s_nCalls; }
    Q_DISABLE_COPY_MOVE(CCallGuard)
    bool IsRefused() const { return !m_bMine; }

private:
    bool m_bMine;
};

CWebBrowser2Ex::CWebBrowser2Ex(QWidget* pParent) : QWidget(pParent) {
    setObjectName(QStringLiteral("webBrowser"));
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

CWebBrowser2Ex::~CWebBrowser2Ex() = default;

bool CWebBrowser2Ex::IsCallRunning() {
    return s_nCalls > 0;
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

bool CWebBrowser2Ex::EnsureDocument() {
    const bool bHadEngine = m_pEngine != nullptr;
    if (!EnsureEngine())
        return false;
    return bHadEngine || NavigateNow(c_strBlank);
}

void CWebBrowser2Ex::ApplyAccess(bool bWebPage) {
    m_pEngine->SetAccess({m_allowedFolders, m_bEditing, m_bNetwork, bWebPage, m_bFollowsLinks,
                          !m_bEditing || m_bReplaceMedia});
}

bool CWebBrowser2Ex::ShowFailure(const QString& strText) {
    const QString strHtml =
        QStringLiteral("<!DOCTYPE html><meta charset=utf-8><body style=\"font:14px sans-serif;margin:24px;"
                       "white-space:pre-wrap;overflow-wrap:anywhere\">") +
        strText.toHtmlEscaped();
    m_pEngine->ShowOwnPage(strHtml, c_nLoadMilliseconds);
    return false;
}

bool CWebBrowser2Ex::BeginWebPage(const QUrl& url) {
    m_waiting = url;
    QTimer::singleShot(c_nNoteMilliseconds, this, [this, url] {
        if (m_waiting == url)
            ShowNote(UiTexts::c_strPageOpening, ShownUrl(url));
    });
    return m_pEngine->Begin(url, c_nLoadMilliseconds,
                            [this, url](const SEngineAnswer& answer) { EndWaiting(url, answer); });
}

/// A page of the course that has been waited for in vain: the person goes on, and may see it yet.
void CWebBrowser2Ex::AwaitPage(const QUrl& url) {
    m_waiting = url;
    ShowNote(UiTexts::c_strPageOpening, ShownUrl(url));
    m_pEngine->Await(c_nLateMilliseconds,
                     [this, url](const SEngineAnswer& answer) { EndWaiting(url, answer); });
}

void CWebBrowser2Ex::EndWaiting(const QUrl& url, const SEngineAnswer& answer) {
    m_waiting.clear();
    m_bPageLoaded = IsTrue(answer);
    const bool bLate = answer.State == SEngineAnswer::EState::TimeOut;
    if (m_bPageLoaded)
        ShowNote({});
    else
        ShowNote(bLate ? UiTexts::c_strPageTimeOut : UiTexts::c_strPageFailed, ShownUrl(url));
    Q_EMIT NavigateComplete2();
}

void CWebBrowser2Ex::ShowNote(const QString& strText, const QString& strUrl) {
    if (m_pNote == nullptr && !strText.isEmpty()) {
        m_pNote = new QLabel(this);
        m_pNote->setObjectName(QStringLiteral("webNote"));
        m_pNote->setTextFormat(Qt::PlainText);
        m_pNote->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        m_pNote->setMargin(c_nNoteMargin);
        m_pNote->setBackgroundRole(QPalette::Base);
        m_pNote->setForegroundRole(QPalette::Text);
        m_pNote->setAutoFillBackground(true);
    }
    if (m_pNote == nullptr)
        return;
    const QString strShown = fontMetrics().elidedText(strUrl, Qt::ElideMiddle, width() - 2 * c_nNoteMargin);
    m_pNote->setText(strText + u'\n' + strShown);
    m_pNote->setToolTip(DialogParts::TipOf(strUrl));
    m_pNote->setGeometry(rect());
    m_pNote->setVisible(!strText.isEmpty());
    m_pNote->raise();
}

bool CWebBrowser2Ex::NavigateNow(const QString& strUrl, bool bForText) {
    const QUrl url = SurfaceUrls::EngineUrl(strUrl);
    const bool bWebPage = IsWebUrl(url);
    m_bPageLoaded = false;
    m_waiting.clear();
    ForgetPastes();
    ShowNote({});
    ApplyAccess(bWebPage);
    if (!url.isValid())
        return ShowFailure((CAccessRules::IsForDesktop(QUrl(strUrl)) ? UiTexts::c_strAddressNotShown
                                                                     : UiTexts::c_strPageFailed) +
                           u'\n' + strUrl);
    if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile())
        return ShowFailure(UiTexts::c_strPageMissing + u'\n' + Platform::ToNativeExact(url.toLocalFile()));
    if (bWebPage && !m_bNetwork)
        return ShowFailure(UiTexts::c_strNoNetwork + u'\n' + url.toString());
    if (bWebPage)
        return BeginWebPage(url);
    const QPointer<CWebBrowser2Ex> pAlive(this);
    // The engine takes a step to another place in the same page for no load at all.
    const auto bare = [](const QUrl& full) { return full.adjusted(QUrl::RemoveFragment); };
    if (url.hasFragment() && bare(url) == bare(m_pEngine->Url())) {
        m_pEngine->Load(QUrl(c_strBlank), c_nLoadMilliseconds);
        if (!pAlive)
            return false;
    }
    const std::optional<QString> bodyText = m_bEditing ? BodyTextOf(url) : std::nullopt;
    const SEngineAnswer answer = bodyText
                                     ? m_pEngine->LoadDocument(c_strEmptyDocument, url, c_nLoadMilliseconds)
                                     : m_pEngine->Load(url, c_nLoadMilliseconds);
    if (!pAlive)
        return false;
    if (answer.State == SEngineAnswer::EState::Stopped && url.isLocalFile()) {
        const QString strPath = SurfaceUrls::UrlToPath(url);
        QMetaObject::invokeMethod(
            this, [this, strPath] { Q_EMIT FileNotShown(strPath); }, Qt::QueuedConnection);
        return ShowFailure(UiTexts::c_strNotShownHere + u'\n' + Platform::ToNativeExact(url.toLocalFile()));
    }
    if (!IsTrue(answer)) {
        const bool bLate = answer.State == SEngineAnswer::EState::TimeOut;
        if (bLate && !m_bEditing) {
            AwaitPage(url);
            return false;
        }
        return ShowFailure((bLate ? UiTexts::c_strPageTimeOut : UiTexts::c_strPageFailed) + u'\n' +
                           url.toDisplayString(QUrl::PreferLocalFile));
    }
    m_bPageLoaded = true;
    if (bodyText)
        return bForText || PutBody(QStringLiteral("loadBodyHtml"), {*bodyText, !m_bFollowsLinks});
    return !url.isLocalFile() || MendPage(url.toLocalFile());
}

int CWebBrowser2Ex::Patience() const {
    return m_bEditing ? c_nScriptMilliseconds : c_nStrangerMilliseconds;
}

SEngineAnswer CWebBrowser2Ex::Ask(const QString& strFunction, const QJsonArray& arguments) {
    return m_pEngine->Call(strFunction, arguments, Patience());
}

bool CWebBrowser2Ex::PutBody(const QString& strFunction, const QJsonArray& arguments) {
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const SEngineAnswer answer = Ask(strFunction, arguments);
    if (!pAlive || !answer.HasValue())
        return false;
    const QJsonObject names = NewNames(answer.Value.toArray());
    return names.isEmpty() || IsTrue(Ask(QStringLiteral("rename"), {names}));
}

bool CWebBrowser2Ex::MendPage(const QString& strNativeFile) {
    const auto bytes = PageBytes(strNativeFile);
    if (!bytes)
        return !m_bEditing;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const int nLimit = m_bEditing || !MayRun(*bytes) ? c_nScriptMilliseconds : c_nMendMilliseconds;
    const SEngineAnswer answer = m_pEngine->Call(QStringLiteral("encoding"), {}, nLimit);
    if (!pAlive)
        return false;
    // A page that has scripts of its own, or doesn't answer, stays as the engine took it.
    if (!answer.HasValue() || (!m_bEditing && answer.Value[QLatin1String("scripts")].toBool()))
        return !m_bEditing;
    const auto strText =
        PageEncoding::TextIfMisread(*bytes, answer.Value[QLatin1String("set")].toString(), m_bEditing);
    if (strText && !IsTrue(m_pEngine->Call(QStringLiteral("replaceDocument"), {*strText}, nLimit)))
        return false;
    return pAlive &&
           (!m_bEditing || IsTrue(Ask(QStringLiteral("prepare"), {PageEncoding::IsBodyText(*bytes)})));
}

bool CWebBrowser2Ex::NavigateAndWait(const QString& strUrl) {
    const CCallGuard guard;
    if (guard.IsRefused())
        return false;
    // The empty page before the first page is there without an engine.
    if (!m_pEngine && strUrl == c_strBlank)
        return true;
    return EnsureEngine() && NavigateNow(strUrl);
}

bool CWebBrowser2Ex::ShowTextAt(const QString& strPath, const QString& strHtml) {
    const CCallGuard guard;
    if (guard.IsRefused() || !EnsureEngine())
        return false;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const bool bThere =
        m_bPageLoaded && SurfaceUrls::EngineUrl(strPath) == m_pEngine->Url().adjusted(QUrl::RemoveFragment);
    if (!bThere && (!NavigateNow(strPath, true) || !pAlive))
        return false;
    const SEngineAnswer staged = Ask(QStringLiteral("stage"), {strHtml});
    if (!pAlive || !staged.HasValue())
        return false;
    const QJsonObject names = NewNames(staged.Value[QLatin1String("local")].toArray());
    const SEngineAnswer begun = Ask(QStringLiteral("showStaged"), {names});
    if (pAlive && IsTrue(begun))
        ShowMoreLater();
    return pAlive && begun.HasValue();
}

void CWebBrowser2Ex::ShowMoreLater() {
    m_pEngine->CallLater(QStringLiteral("showMore"), {}, [this](const SEngineAnswer& answer) {
        if (IsTrue(answer))
            ShowMoreLater();
    });
}

bool CWebBrowser2Ex::SetBrowserDesignMode(bool bOn) {
    const CCallGuard guard;
    if (guard.IsRefused())
        return false;
    if (!m_bPageLoaded)
        return !bOn;
    return IsTrue(Ask(QStringLiteral("designMode"), {bOn}));
}

bool CWebBrowser2Ex::GetURL(QString& strUrl) {
    if (m_bPageLoaded)
        strUrl = SurfaceUrls::DocumentUrl(m_pEngine->Url());
    else
        strUrl = m_waiting.isEmpty() ? QString(c_strBlank) : SurfaceUrls::DocumentUrl(m_waiting);
    return true;
}

bool CWebBrowser2Ex::GetBrowserBodyInnerHTML(QString& strHtml) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    for (int nTry = 0; nTry < 2; ++nTry) {
        const SEngineAnswer answer = Ask(QStringLiteral("bodyHtml"), {});
        if (!pAlive || !answer.HasValue())
            return false;
        const QJsonObject names = NewNames(answer.Value[QLatin1String("local")].toArray());
        if (names.isEmpty() || nTry == 1) {
            strHtml = answer.Value[QLatin1String("html")].toString();
            return true;
        }
        // References that came in by another way, as by pasting, get the one form first.
        if (!IsTrue(Ask(QStringLiteral("rename"), {names})) || !pAlive)
            return false;
    }
    return false;
}

void CWebBrowser2Ex::AskChangedHtml(std::function<void(std::optional<QString>)> answer) {
    if (!m_bPageLoaded)
        return answer(std::nullopt);
    m_pEngine->CallLater(QStringLiteral("changedHtml"), {},
                         [answer = std::move(answer)](const SEngineAnswer& reply) {
                             answer(reply.HasValue() ? std::optional(reply.Value.toString()) : std::nullopt);
                         });
}

void CWebBrowser2Ex::ClearLater() {
    if (m_bPageLoaded)
        m_pEngine->CallLater(QStringLiteral("loadBodyHtml"), {QString()}, [](const SEngineAnswer&) {});
}

bool CWebBrowser2Ex::SetBrowserBodyInnerHTML(const QString& strHtml) {
    const CCallGuard guard;
    return !guard.IsRefused() && EnsureDocument() && m_bPageLoaded &&
           PutBody(QStringLiteral("setBodyHtml"), {strHtml});
}

bool CWebBrowser2Ex::WriteBackBody(const QString& strHtml) {
    const CCallGuard guard;
    return !guard.IsRefused() && EnsureDocument() && m_bPageLoaded &&
           PutBody(QStringLiteral("writeBack"), {strHtml});
}

bool CWebBrowser2Ex::ExecuteIHTMLDocumentCmd(const QString& strCommand, bool bShowUi, const QVariant& value) {
    if (bShowUi && strCommand.compare(u"CreateLink", Qt::CaseInsensitive) == 0)
        return CreateLinkWithDialog();
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    QString strValue = value.toString();
    if (value.typeId() != QMetaType::QString && strCommand.endsWith(u"Color", Qt::CaseInsensitive)) {
        const uint nColour = value.toUInt();
        strValue = QColor(nColour & 0xFF, (nColour >> 8) & 0xFF, (nColour >> 16) & 0xFF).name();
    }
    return IsTrue(Ask(QStringLiteral("command"), {strCommand, strValue}));
}

bool CWebBrowser2Ex::CreateLinkWithDialog() {
    const QPointer<CWebBrowser2Ex> pAlive(this);
    SEngineAnswer answer;
    {
        const CCallGuard guard;
        if (guard.IsRefused() || !m_bPageLoaded)
            return false;
        answer = Ask(QStringLiteral("linkAtCaret"), {});
        if (!pAlive || !answer.HasValue())
            return false;
    }
    const auto strAddress = AskLinkAddress(this, answer.Value[QLatin1String("href")].toString());
    const CCallGuard guard;
    if (!pAlive || !strAddress || guard.IsRefused() || !m_bPageLoaded)
        return false;
    // What a person types for a file is its native path.
    const QString strText = strAddress->startsWith(u'/') ? Platform::FromNative(*strAddress) : *strAddress;
    const QString strReference = SurfaceUrls::CanonicalReference(strText).value_or(strText);
    return IsTrue(Ask(QStringLiteral("createLink"), {strReference}));
}

bool CWebBrowser2Ex::InsertBrowserText(const QString& strHtml, bool* pbLate) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const SEngineAnswer answer = Ask(QStringLiteral("localReferences"), {strHtml});
    if (!pAlive || !answer.HasValue())
        return false;
    const SEngineAnswer done =
        Ask(QStringLiteral("insert"), {strHtml, NewNames(answer.Value.toArray())});
    if (pbLate)
        *pbLate = done.State == SEngineAnswer::EState::TimeOut;
    return IsTrue(done);
}

bool CWebBrowser2Ex::IsOwnCopy(const QString& strHtml) const {
    // It stands behind what the platform puts before markup.
    constexpr qsizetype c_nHead = 2000;
    return m_pEngine && QStringView(strHtml).left(c_nHead).contains(m_pEngine->CopyMark());
}

CWebBrowser2Ex::EPasted CWebBrowser2Ex::PasteBrowserText(const QString& strHtml) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return EPasted::No;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    QString strOwn = strHtml;
    if (IsOwnCopy(strHtml)) {
        const SEngineAnswer answer = Ask(QStringLiteral("ownCopy"), {strHtml, m_pEngine->CopyMark()});
        if (!pAlive || !answer.HasValue())
            return EPasted::No;
        strOwn = answer.Value.toString();
    }
    const SEngineAnswer answer = Ask(QStringLiteral("localReferences"), {strOwn});
    if (!pAlive || !answer.HasValue())
        return EPasted::No;
    const SEngineAnswer done = Ask(QStringLiteral("paste"), {strOwn, NewNames(answer.Value.toArray())});
    if (done.State == SEngineAnswer::EState::TimeOut)
        return EPasted::Late;
    return IsTrue(done) ? EPasted::Yes : EPasted::No;
}

void CWebBrowser2Ex::PasteWhenFree(std::function<SPastedData()> read, std::optional<QPoint> place) {
    // A wish from the page before comes while the next one loads.
    if (!m_bPageLoaded)
        return;
    m_pastes.push_back({std::move(read), place});
    PasteNext();
}

void CWebBrowser2Ex::FinishPastes() {
    const QPointer<CWebBrowser2Ex> pAlive(this);
    if (m_bPageLoaded && m_bEditing && !m_bPasting)
        HearOfPastes();
    if (pAlive && !m_pastes.empty())
        PasteNext();
}

/// The page comes to the keys before it comes to a call; its word of what they want is then on its way.
void CWebBrowser2Ex::HearOfPastes() {
    const CCallGuard guard;
    if (guard.IsRefused())
        return;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const qsizetype nWanted =
        Ask(QStringLiteral("pastesWanted"), {}).Value.toInt();
    const QDeadlineTimer end(c_nWishMilliseconds);
    while (pAlive && m_bPageLoaded && qsizetype(m_pastes.size()) < nWanted && !end.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
}

/// They were for a page that goes.
void CWebBrowser2Ex::ForgetPastes() {
    m_pastes.clear();
    m_toPaste.stop();
}

/// A box in front of the page may be about its text, and what answers it goes on with the text that was read.
bool CWebBrowser2Ex::IsFreeToPaste() const {
    const QWidget* pModal = QApplication::activeModalWidget();
    return !IsThreadHeld() && (pModal == nullptr || pModal == window());
}

/// One right behind the other, so that no key comes between, however long each takes.
void CWebBrowser2Ex::PasteNext() {
    if (m_bPasting)
        return;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    while (pAlive && !m_pastes.empty()) {
        if (!IsFreeToPaste()) {
            m_toPaste.start(c_nRetryMilliseconds, this);
            return;
        }
        const SPaste next = std::move(m_pastes.front());
        m_pastes.pop_front();
        if (!m_bPageLoaded)
            continue;
        m_bPasting = true;
        const int nTyped = BeginPaste(next.Place);
        if (pAlive)
            Q_EMIT PasteWanted(next.Read());
        if (pAlive && nTyped > 0) {
            const CCallGuard guard;
            if (!guard.IsRefused() && m_bPageLoaded)
                Ask(QStringLiteral("pasteEnds"), {nTyped});
        }
        if (pAlive)
            m_bPasting = false;
    }
}

/// The caret to where it was dropped, or was when the person wanted to paste. How many characters were typed
/// behind that meanwhile.
int CWebBrowser2Ex::BeginPaste(std::optional<QPoint> place) {
    const CCallGuard guard;
    if (guard.IsRefused())
        return 0;
    if (!place) {
        const SEngineAnswer answer = Ask(QStringLiteral("pasteBegins"), {});
        return answer.HasValue() ? answer.Value.toInt() : 0;
    }
    Ask(QStringLiteral("caretAt"), {place->x(), place->y()});
    return 0;
}

void CWebBrowser2Ex::timerEvent(QTimerEvent* pEvent) {
    if (pEvent->timerId() != m_toPaste.timerId())
        return QWidget::timerEvent(pEvent);
    m_toPaste.stop();
    PasteNext();
}

bool CWebBrowser2Ex::HasSelection() {
    const CCallGuard guard;
    return !guard.IsRefused() && m_bPageLoaded && IsTrue(Ask(QStringLiteral("hasSelection"), {}));
}

bool CWebBrowser2Ex::GetSelectedText(QString& strText) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("selectedText"), {});
    if (!answer.HasValue())
        return false;
    strText = answer.Value.toString();
    return true;
}

bool CWebBrowser2Ex::HasSelectTable() {
    STableInfo info;
    return GetSelectedTableInfo(info);
}

bool CWebBrowser2Ex::GetSelectedTableInfo(STableInfo& info) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("tableInfo"), {});
    if (!answer.HasValue())
        return false;
    const auto text = [&](QLatin1String strKey) { return answer.Value[strKey].toString(); };
    info = {answer.Value[QLatin1String("rows")].toInt(),
            answer.Value[QLatin1String("columns")].toInt(),
            text(QLatin1String("width")),
            text(QLatin1String("background")),
            text(QLatin1String("borderColour")),
            text(QLatin1String("border")),
            text(QLatin1String("cellSpacing")),
            text(QLatin1String("cellPadding"))};
    return true;
}

bool CWebBrowser2Ex::EditSelectedTable(const STableInfo& info) {
    const auto mayBe = [](int nWanted, int nNow) {
        return nWanted == nNow || (nWanted >= 1 && nWanted <= c_nMaxTableSize);
    };
    const QPointer<CWebBrowser2Ex> pAlive(this);
    STableInfo now;
    if (!GetSelectedTableInfo(now) || !pAlive || !mayBe(info.nRows, now.nRows) ||
        !mayBe(info.nColumns, now.nColumns))
        return false;
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QJsonObject arguments{{QStringLiteral("rows"), info.nRows},
                                {QStringLiteral("columns"), info.nColumns},
                                {QStringLiteral("width"), info.strWidth},
                                {QStringLiteral("background"), info.strBackground},
                                {QStringLiteral("borderColour"), info.strBorderColour},
                                {QStringLiteral("border"), info.strBorder},
                                {QStringLiteral("cellSpacing"), info.strCellSpacing},
                                {QStringLiteral("cellPadding"), info.strCellPadding}};
    return IsTrue(Ask(QStringLiteral("editTable"), {arguments}));
}

bool CWebBrowser2Ex::ListReferences(const QString& strSelector, const QString& strAttribute,
                                    QStringList& list) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("references"), {strSelector, strAttribute});
    if (!answer.HasValue())
        return false;
    list.clear();
    const QJsonArray references = answer.Value.toArray();
    for (const QJsonValue& reference : references)
        list.append(SurfaceUrls::ReportedReference(reference[QLatin1String("text")].toString(),
                                                   reference[QLatin1String("url")].toString()));
    return true;
}

bool CWebBrowser2Ex::GetAllImageSrc(QStringList& list) {
    return ListReferences(QStringLiteral("img"), QStringLiteral("src"), list);
}

bool CWebBrowser2Ex::GetAllEmbededSrc(QStringList& list) {
    return ListReferences(QStringLiteral("embed"), QStringLiteral("src"), list);
}

bool CWebBrowser2Ex::GetAllAnchorHref(QStringList& list) {
    return ListReferences(QStringLiteral("a"), QStringLiteral("href"), list);
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

void CWebBrowser2Ex::AskCaretState(const QStringList& commands,
                                   std::function<void(const SCaretState&)> answer) {
    if (!m_bPageLoaded)
        return;
    QJsonArray arguments;
    arguments.append(QJsonArray::fromStringList(commands));
    m_pEngine->CallLater(
        QStringLiteral("caretState"), arguments, [answer = std::move(answer)](const SEngineAnswer& reply) {
            if (!reply.HasValue())
                return;
            SCaretState state;
            const QJsonArray pressed = reply.Value[QLatin1String("pressed")].toArray();
            for (const QJsonValue& name : pressed)
                state.Pressed.append(name.toString());
            state.strFont = reply.Value[QLatin1String("font")].toString();
            state.strSize = reply.Value[QLatin1String("size")].toString();
            const auto isSo = [&](QLatin1String strKey) { return reply.Value[strKey].toBool(); };
            state.bCanUndo = isSo(QLatin1String("canUndo"));
            state.bCanRedo = isSo(QLatin1String("canRedo"));
            state.bHasSelection = isSo(QLatin1String("hasSelection"));
            state.bInLink = isSo(QLatin1String("inLink"));
            answer(state);
        });
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
