// The text of the page is kept while it is edited, and outlives the engine.
#include "course/Course.h"
#include "editor/KeptPageOffer.h"
#include "editor/Texts.h"
#include "editor/ui/EditorView.h"
#include "editor/ui/SourceBox.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowser.h"

#include <QApplication>
#include <QPointer>
#include <QTabBar>
#include <QTimer>

#include <utility>

using namespace EditorCommands;

namespace {

constexpr int c_nRetryMilliseconds = 200;
/// A page that takes the engine down again so soon would do it for ever.
constexpr int c_nSoonMilliseconds = 10000;

/// A box that came into a dialog or a step would not be read.
bool IsFreeForBox() {
    return !IsThreadHeld() && QApplication::activeModalWidget() == nullptr;
}

} // namespace

void CEditorView::AskLiveText(const CPageKeeper::Answer& answer) {
    if (m_bInSource)
        return answer(CPageKeeper::Text{m_pSource->GetText(), true});
    m_pDesign->AskChangedHtml([answer](const std::optional<QString>& html) {
        answer(html ? std::optional(CPageKeeper::Text{*html, false}) : std::nullopt);
    });
}

void CEditorView::TellKeepFailure(const QString& strFailure) {
    if (!IsFreeForBox())
        QTimer::singleShot(c_nRetryMilliseconds, this, [this, strFailure] { TellKeepFailure(strFailure); });
    else if (m_keeper.IsOpen())
        m_people.Warn(EditorTexts::c_strKeepFailed.arg(strFailure));
}

void CEditorView::BeginKeeping(bool bEditing) {
    const CCourse& course = m_pNode->GetCourse();
    const qint32 nNode = m_pNode->GetId();
    std::optional<KeptPage> kept = std::exchange(m_takeUp, std::nullopt);
    const QPointer<CEditorView> pThis(this);
    if (!kept || kept->nNode != nNode)
        kept = OfferKeptPages(course, m_people, nNode);
    if (!pThis || m_pNode == nullptr || m_pNode->GetId() != nNode)
        return;
    KeptPage about;
    about.strPath = KeptPages::NewPath(course.GetPaths(), nNode);
    about.nNode = nNode;
    about.strTitle = m_pNode->GetTitle();
    about.PageHash = KeptPages::HashOfPage(m_saver.GetPagePath());
    about.strHtml = m_keeper.GetText().strHtml;
    if (!kept && (!bEditing || !m_keeper.HasText()))
        return;
    m_keeper.Open(about);
    if (kept) {
        m_keeper.TakeUp(*kept);
        const bool bBack = PutBack({kept->strHtml, kept->bInSource});
        if (!pThis || bBack || m_pNode == nullptr || m_pNode->GetId() != nNode)
            return;
        // Its file is left to the text, and the page goes on with what it has on disk.
        m_keeper.Open(about);
        kept->strTitle = about.strTitle;
        PutTooLongBeside(*kept, course, m_people);
    }
}

/// Into the surface, or where that can't take it, into the source box; false when that has no room either.
bool CEditorView::PutBack(const CPageKeeper::Text& text) {
    const QPointer<CEditorView> pThis(this);
    if (!text.bInSource && m_pDesign->SetBrowserBodyInnerHTML(text.strHtml))
        return true;
    if (!pThis || !CSourceBox::Fits(text.strHtml))
        return false;
    m_pSource->SetText(text.strHtml);
    m_bInSource = true;
    SetMode(EMode::Source);
    return true;
}

void CEditorView::PageLost() {
    if (!m_keeper.IsOpen())
        return;
    m_bPageLost = true;
    // Once the step is over in which it happened, if there was one.
    QTimer::singleShot(0, this, &CEditorView::RecoverWhenFree);
}

void CEditorView::PreviewLost() {
    if (m_mode != EMode::Preview)
        return;
    m_bPreviewLost = true;
    QTimer::singleShot(0, this, &CEditorView::LeavePreviewWhenFree);
}

/// The text stands elsewhere: back to it.
void CEditorView::LeavePreviewWhenFree() {
    if (!m_bPreviewLost)
        return;
    if (!IsFreeForBox()) {
        QTimer::singleShot(c_nRetryMilliseconds, this, &CEditorView::LeavePreviewWhenFree);
        return;
    }
    m_bPreviewLost = false;
    const QPointer<CEditorView> pThis(this);
    m_pTabs->setCurrentIndex(static_cast<int>(m_bInSource ? EMode::Source : EMode::Design));
    if (pThis)
        m_people.Warn(EditorTexts::c_strPreviewLost);
}

void CEditorView::RecoverWhenFree() {
    if (!IsFreeForBox())
        QTimer::singleShot(c_nRetryMilliseconds, this, &CEditorView::RecoverWhenFree);
    else
        RecoverPage();
}

/// Loads the page anew, with the text that was known last.
void CEditorView::RecoverPage() {
    if (!std::exchange(m_bPageLost, false) || !m_keeper.IsOpen())
        return;
    const bool bAgain = m_recovered.isValid() && m_recovered.elapsed() < c_nSoonMilliseconds;
    m_recovered.start();
    const bool bUnsaved = m_keeper.HasUnsaved();
    CPageKeeper::Text text = m_keeper.GetText();
    const QPointer<CEditorView> pThis(this);
    const bool bShown = !bAgain && m_pDesign->NavigateAndWait(m_saver.GetPagePath()) && pThis &&
                        m_pDesign->SetBrowserDesignMode(true);
    if (!pThis || !m_keeper.IsOpen())
        return;
    bool bBack = true;
    if (!m_bInSource && (bUnsaved || !bShown)) {
        text.bInSource = !bShown;
        bBack = PutBack(text);
    }
    if (!pThis || m_pNode == nullptr)
        return;
    if (!bBack) {
        KeptPage page;
        page.strTitle = m_pNode->GetTitle();
        page.Time = QDateTime::currentDateTime();
        page.strHtml = text.strHtml;
        // It stays kept as well: the surface now holds another text, or none.
        m_keeper.Close();
        PutTooLongBeside(page, m_pNode->GetCourse(), m_people);
        return;
    }
    m_people.Warn(m_bInSource && !bShown ? EditorTexts::c_strPageInSource : EditorTexts::c_strPageRecovered);
    if (pThis)
        FocusLive();
    if (pThis)
        ShowStates();
}
