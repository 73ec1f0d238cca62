#include "editor/ui/EditorView.h"

#include "content/Texts.h"
#include "editor/Download.h"
#include "editor/Texts.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/EditorToolBars.h"
#include "editor/ui/OfferBar.h"
#include "editor/ui/ShowFailure.h"
#include "editor/ui/SourceBox.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/ui/PastedData.h"
#include "platform/ui/WebBrowser.h"

#include <QApplication>
#include <QPointer>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>

#include <utility>

using namespace EditorCommands;

namespace {

const QString c_strBlank = QStringLiteral("about:blank");
/// The engine takes longer for larger pages than anybody waits, and in the end too long for itself.
constexpr quint32 c_nMaxPageBytes = 20 * 1024 * 1024;

} // namespace

CEditorView::CEditorView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
    : CBookShowView(host, pParent), m_people(people), m_pBars(new CEditorToolBars(this)),
      m_pTabs(new QTabBar(this)), m_pSource(new CSourceBox(this)), m_pDesign(new CWebBrowser2Ex(this)),
      m_pPreviewPane(new QWidget(this)), m_pOffer(new COfferBar(m_pPreviewPane)),
      m_pPreview(new CWebBrowser2Ex(m_pPreviewPane)), m_saver(*this, people, &DownloadUrlToFile),
      m_keeper([this](const CPageKeeper::Answer& answer) { AskLiveText(answer); },
               [this](const QString& strFailure) { TellKeepFailure(strFailure); }) {
    m_keeper.SetStillWanted(&SPastedData::HtmlOfClipboard);
    setObjectName(QStringLiteral("CEditorView"));
    m_pDesign->setObjectName(QStringLiteral("design"));
    m_pPreview->setObjectName(QStringLiteral("preview"));
    m_pSource->setObjectName(QStringLiteral("source"));
    m_pSource->setAccessibleName(EditorTexts::c_strSourceTab);
    m_pTabs->setObjectName(QStringLiteral("editorTabs"));
    m_pTabs->setShape(QTabBar::RoundedSouth);
    m_pTabs->setExpanding(false);
    m_pTabs->setDrawBase(false);
    for (const QString& strText :
         {EditorTexts::c_strDesignTab, EditorTexts::c_strSourceTab, EditorTexts::c_strPreviewTab})
        m_pTabs->addTab(strText);
    connect(m_pTabs, &QTabBar::currentChanged, this,
            [this](int nTab) { SwitchTo(static_cast<EMode>(nTab)); });
    connect(m_pBars, &CEditorToolBars::CommandTriggered, this, &CEditorView::RunCommand);
    connect(m_pBars, &CEditorToolBars::ValueChosen, this, &CEditorView::RunBox);
    connect(m_pBars, &CEditorToolBars::BoxLeft, this, [this] {
        FocusLive();
        ShowStates();
    });
    m_pDesign->addActions(m_pBars->ActionsOf(PageMenu()));
    for (const int nStep : {1, -1}) {
        auto* pKeys = new QShortcut(nStep > 0 ? QKeySequence(Qt::CTRL | Qt::Key_PageDown)
                                              : QKeySequence(Qt::CTRL | Qt::Key_PageUp),
                                    this);
        pKeys->setContext(Qt::WidgetWithChildrenShortcut);
        connect(pKeys, &QShortcut::activated, this, [this, nStep] {
            m_pTabs->setCurrentIndex((m_pTabs->currentIndex() + m_pTabs->count() + nStep) % m_pTabs->count());
        });
    }
    connect(m_pDesign, &CWebBrowser2Ex::SelectionChanged, this, [this] {
        m_keeper.Touch();
        ShowStates();
    });
    connect(m_pDesign, &CWebBrowser2Ex::PasteWanted, this, &CEditorView::Paste);
    connect(m_pDesign, &CWebBrowser2Ex::PageLost, this, &CEditorView::PageLost);
    m_pPreview->SetMediaReplaced(true);
    auto* pPreviewLayout = new QVBoxLayout(m_pPreviewPane);
    pPreviewLayout->setContentsMargins(0, 0, 0, 0);
    pPreviewLayout->setSpacing(0);
    pPreviewLayout->addWidget(m_pOffer);
    pPreviewLayout->addWidget(m_pPreview, 1);
    m_pOffer->Serve(*m_pPreview);
    connect(m_pOffer, &COfferBar::FileWanted, this, [this](const QString& strUrl) {
        if (m_pNode != nullptr)
            CContentWindow::OpenForPage(m_pNode->GetTitle(), strUrl, m_pPreview->GetAllowedFolders(),
                                        window());
    });
    connect(m_pOffer, &COfferBar::NotOpened, this,
            [this](const QString& strWhat) { m_people.Error(ContentText::c_strFileNotOpened.arg(strWhat)); });
    connect(m_pPreview, &CWebBrowser2Ex::PageLost, this, &CEditorView::PreviewLost);
    connect(m_pSource, &QPlainTextEdit::textChanged, this, [this] { m_keeper.Touch(); });
    connect(m_pSource, &CSourceBox::Full, this, [this] { m_people.Warn(EditorTexts::c_strSourceTooLong); });
    SetMode(EMode::Design);
}

CEditorView::~CEditorView() = default;

void CEditorView::ShowNode() {
    if (m_pNode == nullptr)
        return;
    CBookNode* const pNode = m_pNode;
    QString strPath;
    bool bTooLarge = false;
    // A message waits, and so does loading: whatever closes the window meanwhile takes this view or its node
    // along.
    const QPointer<CEditorView> pThis(this);
    ShowFailure(this, [&] {
        strPath = pNode->GetContentPath();
        // A node may have been made from a template without a page: editing begins with an empty one.
        if (!Torvane::File::IsFile(strPath))
            pNode->SaveContent(QString());
        bTooLarge = Torvane::File::GetFileSizeOf(strPath) > c_nMaxPageBytes;
    });
    if (!pThis || m_pNode != pNode)
        return;
    m_keeper.Close();
    m_bInSource = m_bPageLost = m_bPreviewLost = m_bPreviewLoaded = false;
    m_recovered.invalidate();
    m_atCaret = {};
    m_pSource->clear();
    SetMode(EMode::Design);

    const CCoursePaths& paths = pNode->GetCourse().GetPaths();
    const QStringList folders = {paths.GetCourseFolder(false), CSysInfo::Instance().GetSysDataFolder(false)};
    // The preview, too, shows pictures that lie elsewhere until the next save.
    m_pDesign->SetAllowedFolders(folders, true);
    m_pPreview->SetAllowedFolders(folders, true);
    m_pPreview->SetFollowsLinks(true);

    m_pDesign->SetBrowserDesignMode(false);
    const bool bLoaded = !bTooLarge && m_pDesign->NavigateAndWait(strPath);
    const bool bEditing = pThis && bLoaded && m_pDesign->SetBrowserDesignMode(true);
    if (!pThis)
        return;
    m_saver.Open(strPath, paths.GetNodeResourceFolder(true), [this, pNode, strPath](const QString& strHtml) {
        const bool bWritten = pNode->SaveContent(strHtml);
        m_bPreviewLoaded = false;
        if (bWritten)
            m_keeper.Saved(strHtml, KeptPages::HashOfPage(strPath));
        return bWritten;
    });
    if (!bEditing)
        m_people.Error(bTooLarge ? EditorTexts::c_strPageTooLarge : EditorTexts::c_strDesignModeFailed);
    if (pThis && m_pNode == pNode)
        BeginKeeping(bEditing);
    if (!pThis)
        return;
    // The preview loads the page when its tab is chosen: a second page kept alive behind the first would be
    // heard and not seen.
    FocusLive();
    ShowStates();
}

bool CEditorView::LeaveNode(bool bCanCancel) {
    if (bCanCancel && CWebBrowser2Ex::IsCallRunning())
        return false;
    const QPointer<CEditorView> pThis(this);
    if (m_bPageLost)
        RecoverPage();
    if (pThis)
        m_pDesign->FinishPastes();
    QString strUrl;
    if (!pThis)
        return true;
    if (!m_bInSource && m_pDesign->GetURL(strUrl) && strUrl == c_strBlank) {
        m_keeper.Close();
        return true;
    }
    if (!m_saver.MayLeave(bCanCancel))
        return false;
    // A text that nobody decided about, as when it could not be had or written, is offered another time.
    if (pThis)
        m_saver.IsSettled() ? m_keeper.Drop() : m_keeper.Close();
    if (pThis)
        m_bInSource = false;
    if (pThis)
        m_pDesign->SetBrowserDesignMode(false);
    if (pThis)
        Blank(*m_pDesign);
    if (pThis)
        Blank(*m_pPreview);
    return true;
}

/// Takes the page out of a surface, so that it neither sounds nor counts as open.
void CEditorView::Blank(CWebBrowser2Ex& surface) {
    QString strUrl;
    if (!surface.GetURL(strUrl) || strUrl != c_strBlank)
        surface.NavigateAndWait(c_strBlank);
}

bool CEditorView::GetCurrentHtml(QString& strHtml) {
    const QPointer<CEditorView> pThis(this);
    if (m_bInSource)
        strHtml = ReadSource().strHtml;
    else if (!m_pDesign->GetBrowserBodyInnerHTML(strHtml))
        return false;
    if (pThis)
        m_keeper.Know({strHtml, m_bInSource});
    return true;
}

bool CEditorView::SetCurrentHtml(const QString& strHtml) {
    if (!m_bInSource)
        return m_pDesign->WriteBackBody(strHtml);
    m_pSource->ChangeText(strHtml);
    return true;
}

/// The surface doesn't know what was typed into the box.
const CSourceReferences& CEditorView::ReadSource() {
    if (const QString strText = m_pSource->GetText(); strText != m_strSourceRead) {
        m_source = CSourceReferences::Of(strText);
        m_strSourceRead = strText;
    }
    return m_source;
}

bool CEditorView::GetFromSource(QStringList CSourceReferences::*pReferences, QStringList& list) {
    list = ReadSource().*pReferences;
    return m_source.bKnown;
}

bool CEditorView::GetAllImageSrc(QStringList& list) {
    if (m_bInSource)
        return GetFromSource(&CSourceReferences::Images, list);
    return m_pDesign->GetAllImageSrc(list);
}

bool CEditorView::GetAllEmbededSrc(QStringList& list) {
    if (m_bInSource)
        return GetFromSource(&CSourceReferences::Embeds, list);
    return m_pDesign->GetAllEmbededSrc(list);
}

bool CEditorView::GetAllAnchorHref(QStringList& list) {
    if (m_bInSource)
        return GetFromSource(&CSourceReferences::Anchors, list);
    return m_pDesign->GetAllAnchorHref(list);
}

bool CEditorView::GetURL(QString& strUrl) {
    return m_pDesign->GetURL(strUrl);
}

std::shared_ptr<void> CEditorView::ShowBusy() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    return {nullptr, [](void*) { QApplication::restoreOverrideCursor(); }};
}

void CEditorView::SwitchTo(EMode mode) {
    if (mode == m_mode)
        return;
    const QPointer<CEditorView> pThis(this);
    m_pDesign->FinishPastes();
    if (!pThis)
        return;
    // It is neither seen nor heard from here on, and its page need not be loaded for the next time.
    if (m_mode == EMode::Preview) {
        m_bPreviewLost = false;
        m_pPreview->ClearLater();
    }
    bool bMoved = true;
    if (mode == EMode::Design && m_bInSource)
        bMoved = SwapToDesign();
    else if (mode == EMode::Source && !m_bInSource)
        bMoved = SwapToSource();
    else if (mode == EMode::Preview)
        ShowPreview();
    if (!pThis)
        return;
    // A text that could not be moved stays where it is, and its tab with it: the other side holds an older
    // one.
    const EMode live = m_bInSource ? EMode::Source : EMode::Design;
    SetMode(bMoved ? mode : live);
    FocusLive();
    ShowStates();
}

bool CEditorView::SwapToSource() {
    QString strHtml;
    const QPointer<CEditorView> pThis(this);
    if (!m_saver.SurfaceHoldsPage() || !m_pDesign->GetBrowserBodyInnerHTML(strHtml)) {
        if (pThis)
            m_people.Error(EditorTexts::c_strNoContent);
        return false;
    }
    if (!CSourceBox::Fits(strHtml)) {
        m_people.Warn(EditorTexts::c_strSourceTooLong);
        return false;
    }
    m_pSource->SetText(strHtml);
    m_bInSource = true;
    return true;
}

bool CEditorView::SwapToDesign() {
    const QPointer<CEditorView> pThis(this);
    if (!m_pDesign->SetBrowserBodyInnerHTML(m_pSource->GetText())) {
        if (pThis)
            m_people.Error(EditorTexts::c_strClearFailed);
        return false;
    }
    m_bInSource = false;
    return true;
}

/// The unsaved text at the page's own place, so that its relative references are found.
void CEditorView::ShowPreview() {
    const QPointer<CEditorView> pThis(this);
    QString strHtml;
    m_pOffer->hide();
    if (!m_bPreviewLoaded)
        Blank(*m_pPreview);
    if (!pThis || !GetCurrentHtml(strHtml) || !pThis)
        return;
    const bool bShown = m_pPreview->ShowTextAt(m_saver.GetPagePath(), strHtml);
    if (pThis)
        m_bPreviewLoaded = bShown;
}

void CEditorView::SetMode(EMode mode) {
    m_mode = mode;
    const QSignalBlocker blocker(m_pTabs);
    m_pTabs->setCurrentIndex(static_cast<int>(mode));
    m_pBars->setVisible(mode != EMode::Preview);
    UpdateOffered();
    if (mode != EMode::Design)
        m_pBars->ShowStates({});
    LayOut();
    Q_EMIT CommandsChanged();
}

void CEditorView::LayOut() {
    const int nTabs = m_pTabs->sizeHint().height();
    const int nBars = m_pBars->sizeHint().height();
    const int nBottom = qMax(height() - nTabs, nBars);
    m_pBars->setGeometry(0, 0, width(), nBars);
    m_pTabs->setGeometry(0, nBottom, width(), nTabs);
    const QRect below(0, nBars, width(), nBottom - nBars);
    // The surfaces are moved out of sight rather than hidden, so that they go on working, and keep their
    // size, since a large page takes long to be laid out anew. No key may reach a text that nobody sees.
    const auto place = [&](QWidget* pWidget, EMode mode, const QRect& area) {
        pWidget->setGeometry(m_mode == mode ? area : area.translated(-2 * width() - 1, 0));
        pWidget->setEnabled(m_mode == mode);
    };
    place(m_pDesign, EMode::Design, below);
    place(m_pSource, EMode::Source, below);
    place(m_pPreviewPane, EMode::Preview, QRect(0, 0, width(), nBottom));
}

void CEditorView::FocusLive() {
    if (m_mode == EMode::Design)
        m_pDesign->setFocus();
    else if (m_mode == EMode::Source)
        m_pSource->setFocus();
    else
        m_pPreview->setFocus();
}

/// The bars' actions stand in the page's menu too.
void CEditorView::UpdateOffered() {
    m_pBars->UpdateEnabled([this](int nCommand) { return IsOffered(nCommand, m_mode, m_atCaret); });
}

/// Presses the buttons of what is in force at the caret, and disables those that would do nothing there.
void CEditorView::ShowStates() {
    if (m_mode != EMode::Design || m_pNode == nullptr || !isVisible())
        return;
    QStringList names;
    for (const Command& command : All()) {
        if (command.Family == EFamily::Toggle)
            names.append(command.strName.toString());
    }
    const QPointer<CEditorView> pThis(this);
    m_pDesign->AskCaretState(names, [pThis](const CWebBrowser2Ex::SCaretState& state) {
        if (!pThis || pThis->m_mode != EMode::Design)
            return;
        pThis->m_pBars->ShowStates(state.Pressed);
        pThis->m_pBars->ShowFont(state.strFont, state.strSize);
        const SAtCaret atCaret{state.bCanUndo, state.bCanRedo, state.bHasSelection, state.bInLink};
        if (atCaret != std::exchange(pThis->m_atCaret, atCaret))
            pThis->UpdateOffered();
    });
}

void CEditorView::resizeEvent(QResizeEvent* pEvent) {
    CBookShowView::resizeEvent(pEvent);
    LayOut();
}
