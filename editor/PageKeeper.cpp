#include "editor/PageKeeper.h"

#include "course/Texts.h"
#include "foundation/Exceptions.h"

#include <exception>
#include <new>

namespace {

constexpr int c_nDelayMilliseconds = 3000;
/// Asking for a large page and writing it takes no more than one part in so many of the time.
constexpr int c_nShareOfTime = 20;
/// A page that has not answered for so long is asked again.
constexpr int c_nPatienceMilliseconds = 30000;

} // namespace

CPageKeeper::CPageKeeper(AskText ask, TellFailure tell)
    : m_ask(std::move(ask)), m_tell(std::move(tell)), m_nDelay(c_nDelayMilliseconds) {
    m_writer.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_context, [this] { Ask(); });
}

CPageKeeper::~CPageKeeper() {
    Close();
}

void CPageKeeper::Open(const KeptPage& about) {
    Close();
    m_bKnown = true;
    m_about = about;
    m_text = {about.strHtml, about.bInSource};
    m_strOnDisk = about.strHtml;
    m_kept.reset();
    m_bFile = false;
    m_timer.setInterval(m_nDelay);
    m_bTold = false;
    m_bOpen = true;
}

void CPageKeeper::TakeUp(const KeptPage& kept) {
    m_about.strPath = kept.strPath;
    m_kept = kept.strHtml;
    m_bFile = true;
    m_text = {kept.strHtml, kept.bInSource};
}

void CPageKeeper::Touch() {
    if (m_bOpen && !m_timer.isActive())
        m_timer.start();
}

void CPageKeeper::Know(const Text& text) {
    m_text = text;
    m_bKnown = true;
    if (m_bOpen && m_text.strHtml != m_kept.value_or(m_strOnDisk))
        Touch();
}

void CPageKeeper::Ask() {
    if (!m_bOpen)
        return;
    const bool bAwaited = m_bAsking && m_asked.elapsed() < c_nPatienceMilliseconds;
    if (bAwaited || m_bWriting)
        return Touch();
    m_bAsking = true;
    m_asked.start();
    m_ask([this, nPage = m_nPage, pAlive = QPointer<QObject>(&m_context)](const std::optional<Text>& text) {
        if (pAlive && nPage == m_nPage && m_bAsking)
            Take(text);
    });
}

void CPageKeeper::Take(const std::optional<Text>& text) {
    m_bAsking = false;
    if (text)
        m_text = *text;
    m_timer.setInterval(qMax<qint64>(m_nDelay, m_asked.elapsed() * c_nShareOfTime));
    if (!HasUnsaved())
        Forget();
    else if (m_text.strHtml != m_kept)
        Keep();
}

void CPageKeeper::Keep() {
    KeptPage page = m_about;
    page.Time = QDateTime::currentDateTime();
    page.bInSource = m_text.bInSource;
    page.strHtml = m_text.strHtml;
    m_kept = page.strHtml;
    m_bFile = m_bWriting = true;
    m_writer.start([this, page, nPage = m_nPage] {
        QString strFailure;
        try {
            KeptPages::Write(page);
        } catch (const Torvane::CRunException& failure) {
            strFailure = failure.GetMessage();
        } catch (const std::bad_alloc&) {
            strFailure = CourseText::c_strSystemNoMemory;
        } catch (const std::exception& failure) {
            strFailure = QString::fromLocal8Bit(failure.what());
        }
        QMetaObject::invokeMethod(
            &m_context,
            [this, strFailure, nPage] {
                if (nPage == m_nPage)
                    Written(strFailure);
            },
            Qt::QueuedConnection);
    });
}

void CPageKeeper::Written(const QString& strFailure) {
    m_bWriting = false;
    m_timer.setInterval(qMax<qint64>(m_timer.interval(), m_asked.elapsed() * c_nShareOfTime));
    if (strFailure.isEmpty())
        return;
    // The next change tries again. An older text may still stand in the file, which beats none.
    m_kept.reset();
    if (!m_bTold)
        m_tell(strFailure);
    m_bTold = true;
}

void CPageKeeper::Forget() {
    if (!m_bFile)
        return;
    m_bFile = false;
    m_kept.reset();
    m_writer.start([strPath = m_about.strPath] { KeptPages::Remove(strPath); });
}

/// Not before the page is left: what is undone may be done again.
void CPageKeeper::ForgetPictures() {
    if (KeptPages::HasPictures(m_about.strPath))
        m_left.append({m_about.strPath, m_strOnDisk});
    if (m_left.isEmpty())
        return;
    const QString strWanted = m_stillWanted ? m_stillWanted() : QString();
    m_left.removeIf([&](const LeftPictures& left) {
        if (KeptPages::RefersToPictures(strWanted, left.strPath))
            return false;
        m_writer.start([left] { KeptPages::RemovePictures(left.strPath, left.strSaved); });
        return true;
    });
}

void CPageKeeper::Saved(const QString& strHtml, const QByteArray& hash) {
    if (!m_bOpen)
        return;
    m_strOnDisk = strHtml;
    m_text.strHtml = strHtml;
    m_about.PageHash = hash;
    Forget();
}

void CPageKeeper::Drop() {
    if (!m_bOpen)
        return;
    Forget();
    ForgetPictures();
    End();
}

void CPageKeeper::Close() {
    if (m_bOpen && HasUnsaved() && m_text.strHtml != m_kept)
        Keep();
    else if (m_bOpen && !HasUnsaved())
        ForgetPictures();
    End();
}

void CPageKeeper::End() {
    m_writer.waitForDone();
    m_timer.stop();
    m_bOpen = m_bKnown = m_bAsking = m_bWriting = false;
    m_text = {};
    m_strOnDisk.clear();
    ++m_nPage;
}
