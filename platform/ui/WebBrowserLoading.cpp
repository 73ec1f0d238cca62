// How pages come: what they are read as, and what stands in the place of one that does not show.
#include "platform/ui/WebBrowser.h"

#include "foundation/Paths.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"
#include "platform/ui/AccessRules.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/PageEncoding.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/Texts.h"
#include "platform/ui/WebBrowserCalls.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

using namespace SurfaceCalls;

namespace {

constexpr int c_nLoadMilliseconds = 30000;
/// How long a page that may run scripts of its own is asked right behind its load, when nothing depends on
/// the answer.
constexpr int c_nMendMilliseconds = 500;
/// How long a page of the course is waited for that doesn't answer while it loads, when nobody is held up.
constexpr int c_nLateMilliseconds = 8000;
constexpr int c_nNoteMilliseconds = 300;
constexpr int c_nNoteMargin = 24;
/// As the parser makes it of a text without a document's tags: without a document type.
const QString c_strEmptyDocument = QStringLiteral("<html><head></head><body></body></html>");

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
    if (m_bPageLoaded && url.isLocalFile()) {
        const CCallGuard guard;
        const QPointer<CWebBrowser2Ex> pAlive(this);
        if (!guard.IsRefused())
            MendPage(url.toLocalFile(), true);
        if (!pAlive)
            return;
    }
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

bool CWebBrowser2Ex::PutBody(const QString& strFunction, const QJsonArray& arguments) {
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const SEngineAnswer answer = Ask(strFunction, arguments);
    if (!pAlive || !answer.HasValue())
        return false;
    const QJsonObject names = NewNames(answer.Value.toArray());
    return names.isEmpty() || IsTrue(Ask(QStringLiteral("rename"), {names}));
}

bool CWebBrowser2Ex::MendPage(const QString& strNativeFile, bool bLate) {
    const auto bytes = PageBytes(strNativeFile);
    if (!bytes)
        return !m_bEditing;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const int nLimit =
        !bLate && (m_bEditing || !MayRun(*bytes)) ? c_nScriptMilliseconds : c_nMendMilliseconds;
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
