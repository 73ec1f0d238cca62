// What the person pastes or drops, in her order and at her places.
#include "platform/ui/WebBrowser.h"

#include "platform/ui/PastedData.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowserCalls.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QThread>

using namespace SurfaceCalls;

namespace {

constexpr int c_nWishMilliseconds = 500;

} // namespace

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

/// What the page has come to of its keys, and its word of what they want, are both still on their way.
void CWebBrowser2Ex::HearOfPastes() {
    const CCallGuard guard;
    if (guard.IsRefused())
        return;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const QDeadlineTimer end(c_nWishMilliseconds);
    // Some never come there, such as one that was for a frame: the last time they are taken as come.
    for (SEngineAnswer come; pAlive && m_bPageLoaded && !IsTrue(come);) {
        come = Ask(QStringLiteral("keysCome"), {m_pEngine->KeysGiven(), end.hasExpired()});
        if (!come.HasValue())
            return;
    }
    if (!pAlive || !m_bPageLoaded)
        return;
    const qsizetype nWanted = Ask(QStringLiteral("pastesWanted"), {}).Value.toInt();
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
        if (pAlive) {
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
