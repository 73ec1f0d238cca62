#include "app/ui/MainFrame.h"

#include "app/Texts.h"
#include "app/ui/FrameBars.h"
#include "app/ui/PaneSplitter.h"
#include "app/ui/ProgramIcon.h"
#include "content/TreeCommands.h"
#include "content/VideoMaker.h"
#include "editor/KeptPageOffer.h"
#include "editor/ui/DisplayViews.h"
#include "editor/ui/EditorView.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/Pictures.h"
#include "platform/ui/QtPeople.h"
#include "video/ui/VideoPreviewView.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QStatusTipEvent>
#include <QTimer>
#include <QWindow>

#include <functional>

namespace {

/// The time after which a window manager has chosen who comes after a dialog.
constexpr int c_nActivateMilliseconds = 100;

constexpr int c_nTreeWidth = 200;

} // namespace

CMainFrame::CMainFrame(IFrameOwner& owner, Torvane::Dialog::MFC::IPeople& people)
    : m_owner(owner), m_people(people),
      m_ports(CSysInfo::Instance().GetProgramFolder(true) + QStringLiteral("Port.txt")) {
    setObjectName(QStringLiteral("CMainFrame"));
    m_ports.Run();
    setWindowIcon(LoadProgramIcon());
    setContextMenuPolicy(Qt::NoContextMenu);
    resize(1024, 700);
    MakeMenus();
    MakeToolBar();
    MakePanes();

    m_pStatusBar = new CFrameStatusBar(this);
    setStatusBar(m_pStatusBar);
    UpdateCommands();
}

// The views go before the members that they were given.
CMainFrame::~CMainFrame() {
    delete m_pStack;
    delete m_pTree;
}

QAction* CMainFrame::ActionOf(int nId) {
    if (QAction* pKnown = m_actions.value(nId))
        return pKnown;
    const Commands::Command* pCommand = Commands::Find(nId);
    Q_ASSERT(pCommand);
    auto* pAction = new QAction(pCommand->strText.toString(), this);
    pAction->setObjectName(QStringLiteral("command_%1").arg(nId));
    pAction->setStatusTip(pCommand->strStatus.toString());
    if (!pCommand->strShortcut.isEmpty())
        pAction->setShortcut(QKeySequence(pCommand->strShortcut.toString()));
    connect(pAction, &QAction::triggered, this, [this, nId] { RunCommand(nId); });
    // An action on no menu still has its shortcut.
    addAction(pAction);
    m_actions.insert(nId, pAction);
    return pAction;
}

void CMainFrame::MakeMenus() {
    for (const Commands::Menu& menu : Commands::MainMenu()) {
        QMenu* pMenu = menuBar()->addMenu(menu.strTitle.toString());
        for (const int nId : menu.Items) {
            if (nId == 0) {
                pMenu->addSeparator();
            } else if (nId == Commands::c_nRecentPlaceholder) {
                m_pRecent = pMenu->addMenu(AppTexts::c_strRecent);
                m_pRecent->setObjectName(QStringLiteral("recentMenu"));
            } else {
                pMenu->addAction(ActionOf(nId));
            }
        }
        connect(pMenu, &QMenu::aboutToShow, this, &CMainFrame::UpdateCommands);
    }
    for (const Commands::Accelerator& accelerator : Commands::Accelerators())
        ActionOf(accelerator.nId);
    for (const Commands::DropDown& dropDown : Commands::DropDowns()) {
        for (const int nId : dropDown.Items)
            ActionOf(nId);
    }
    for (const int nId : {Commands::c_nToolBar, Commands::c_nStatusBar}) {
        ActionOf(nId)->setCheckable(true);
        ActionOf(nId)->setChecked(true);
    }
}

void CMainFrame::MakeToolBar() {
    m_pToolBar = new CFrameToolBar(this);
    addToolBar(m_pToolBar);
    for (const int nId : Commands::ToolBar()) {
        if (nId == 0) {
            m_pToolBar->addSeparator();
            continue;
        }
        QAction* pAction = ActionOf(nId);
        // A button follows its action, so the picture and the short text are the action's own.
        pAction->setIcon(Pictures::ToolbarIcon(CSysInfo::Instance().GetSysDataFolder(false), nId));
        pAction->setIconText(Commands::Find(nId)->strButton.toString());
        pAction->setIconVisibleInMenu(false);
        pAction->setToolTip(pAction->iconText());
        const Commands::DropDown* pDropDown = Commands::DropDownOf(nId);
        m_pToolBar->AddButton(*pAction, QStringLiteral("tool_%1").arg(nId),
                              pDropDown ? MakeDropDown(*pDropDown) : nullptr, pDropDown && pDropDown->bArrow);
    }
}

QMenu* CMainFrame::MakeDropDown(const Commands::DropDown& dropDown) {
    auto* pMenu = new QMenu(this);
    pMenu->setObjectName(QStringLiteral("menu_%1").arg(dropDown.nMenu));
    for (const int nId : Commands::ItemsOf(dropDown, m_owner.Videos().HasEncoder()))
        pMenu->addAction(ActionOf(nId));
    return pMenu;
}

void CMainFrame::MakePanes() {
    auto* pSplitter = new CPaneSplitter(this);
    pSplitter->setObjectName(QStringLiteral("splitter"));
    m_pTree = new CBookTreeView(*this, m_people, pSplitter);
    m_pTree->SetVideoMaker(m_owner.Videos());
    m_pStack = new QStackedWidget(pSplitter);
    m_pStack->setObjectName(QStringLiteral("rightPane"));
    pSplitter->addWidget(m_pTree);
    pSplitter->addWidget(m_pStack);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setSizes({c_nTreeWidth, width() - c_nTreeWidth});
    setCentralWidget(pSplitter);
    m_pPaneMark = new CPaneMark(this);
    connect(m_pTree, &CBookTreeView::SelectionMoved, this, &CMainFrame::UpdateCommandsSoon);
    m_pStack->addWidget(GetViewByKind(EViewKind::Empty));
    m_pTree->setFocus();
}

void CMainFrame::SwitchPane() {
    QWidget* const pView = m_pStack->currentWidget();
    if (pView->isAncestorOf(QApplication::focusWidget()) || pView->hasFocus()) {
        m_pTree->setFocus(Qt::ShortcutFocusReason);
        m_pPaneMark->ShowAround(m_pTree);
        return;
    }
    // Where the person was in the view, or its first control, or the view as a whole.
    QWidget* pTarget = pView->focusWidget();
    if (pTarget == nullptr || !pTarget->isVisible()) {
        pTarget = pView->nextInFocusChain();
        while (pView->isAncestorOf(pTarget) &&
               !((pTarget->focusPolicy() & Qt::TabFocus) && pTarget->isVisible() && pTarget->isEnabled()))
            pTarget = pTarget->nextInFocusChain();
    }
    (pView->isAncestorOf(pTarget) ? pTarget : pView)->setFocus(Qt::ShortcutFocusReason);
    m_pPaneMark->ShowAround(m_pStack);
}

CBookShowView* CMainFrame::GetViewByKind(EViewKind kind) {
    if (CBookShowView* pKnown = m_views.value(static_cast<int>(kind)))
        return pKnown;
    CBookShowView* pView = nullptr;
    switch (kind) {
    case EViewKind::ShowContent:
        pView = DisplayViews::MakeShowContentView(*this, m_pStack);
        break;
    case EViewKind::Editor:
        pView = m_pEditor = new CEditorView(*this, m_people, m_pStack);
        connect(m_pEditor, &CEditorView::CommandsChanged, this, &CMainFrame::UpdateCommandsSoon);
        break;
    case EViewKind::ChildrenList:
        pView = DisplayViews::MakeChildrenNodeListView(*this, m_pStack);
        break;
    case EViewKind::Prompt:
        pView = DisplayViews::MakePromptView(*this, m_pStack);
        break;
    case EViewKind::Empty:
        pView = DisplayViews::MakeEmptyView(*this, m_pStack);
        break;
    case EViewKind::ToolButtons:
        pView = DisplayViews::MakeToolBtnView(*this, m_people, m_owner.Videos(), m_pStack);
        break;
    case EViewKind::Nothing:
        pView = DisplayViews::MakeNothingView(*this, m_pStack);
        break;
    case EViewKind::VideoPreview:
        if (m_owner.Videos().HasPlayer()) {
            pView = new CVideoPreviewView(*this, m_people, m_pStack);
            break;
        }
        [[fallthrough]];
    default:
        // A number that is no kind shows nothing either.
        return GetViewByKind(EViewKind::Nothing);
    }
    m_views.insert(static_cast<int>(kind), pView);
    m_pStack->addWidget(pView);
    return pView;
}

CBookShowView* CMainFrame::CurrentView() const {
    return m_nCurrentView < 0 ? nullptr : static_cast<CBookShowView*>(m_pStack->currentWidget());
}

bool CMainFrame::ShowNodeView(EViewKind kind, CBookNode* pNode, int nParam) {
    if (!LeaveCurrentView(true))
        return false;
    SwitchTo(kind, pNode, nParam);
    return true;
}

void CMainFrame::ShowEmptyView() {
    LeaveCurrentView(false);
    SwitchTo(EViewKind::Empty, nullptr, 0);
}

void CMainFrame::SwitchTo(EViewKind kind, CBookNode* pNode, int nParam) {
    // The node may go while its view is out of sight.
    if (CBookShowView* pLeft = CurrentView())
        pLeft->m_pNode = nullptr;
    CBookShowView* pView = GetViewByKind(kind);
    m_nCurrentView = m_views.key(pView);
    pView->m_pNode = pNode;
    pView->m_pViewParam = nParam;
    m_pStack->setCurrentWidget(pView);
    // A view may take long to show its node, and what can be done has changed already.
    UpdateCommands();
    pView->ShowNode();
    UpdateCommandsSoon();
}

void CMainFrame::OfferKeptPages(const CCourse& course) {
    const std::optional<KeptPage> kept = ::OfferKeptPages(course, m_people);
    if (!kept)
        return;
    m_pTree->SelectNode(kept->nNode);
    const CBookNode* pNode = m_pTree->GetSelectedNode();
    // A node that a damaged tree doesn't lead to can't be edited; its text is offered again.
    if (pNode == nullptr || pNode->GetId() != kept->nNode)
        return;
    GetViewByKind(EViewKind::Editor);
    m_pEditor->TakeUpNext(*kept);
    RunCommand(TreeCommand::c_nEditContent);
}

bool CMainFrame::LeaveCurrentView(bool bCanCancel) {
    CBookShowView* pView = CurrentView();
    return !pView || pView->LeaveNode(bCanCancel);
}

bool CMainFrame::IsEditorShowing() const {
    return m_nCurrentView == static_cast<int>(EViewKind::Editor);
}

bool CMainFrame::IsShowing(const CBookNode* pNode) const {
    const CBookShowView* pView = CurrentView();
    return pView != nullptr && pView->m_pNode == pNode;
}

void CMainFrame::SelectNode(qint32 nId) {
    m_pTree->SelectNode(nId);
}

void CMainFrame::RunCommand(int nId) {
    // A screen reader presses buttons without any input, a long step or not.
    if (CQtPeople::IsKeepingPainting())
        return;
    m_pTree->FinishTyping();
    const bool bDone = (IsEditorShowing() && m_pEditor->RunCommand(nId)) || RunApplicationCommand(nId) ||
                       m_pTree->RunCommand(nId);
    if (!bDone)
        qWarning("command %d is bound to nothing", nId);
    UpdateCommandsSoon();
}

bool CMainFrame::RunApplicationCommand(int nId) {
    using namespace Commands;
    const QHash<int, std::function<void()>> steps{
        {c_nNewCourse, [this] { m_owner.NewCourse(); }},
        {c_nOpenCourse, [this] { m_owner.OpenCourseCommand(); }},
        {c_nCompile, [this] { m_owner.Compile(Companions::ECompileForm::Site); }},
        {c_nCompileHtml, [this] { m_owner.Compile(Companions::ECompileForm::Html); }},
        {c_nCompileClassroom, [this] { m_owner.Compile(Companions::ECompileForm::Classroom); }},
        {c_nExportWord, [this] { m_owner.ExportWord(); }},
        {c_nSetTemplate, [this] { m_owner.SetTemplate(); }},
        {c_nDownloadTemplate, [this] { m_owner.DownloadTemplate(); }},
        {c_nOverallPreview, [this] { m_owner.ShowOverallPreview(); }},
        {c_nChangePassword, [this] { m_owner.ChangePassword(); }},
        {c_nServerAddress, [this] { m_owner.ChangeServerAddress(); }},
        {c_nOptions, [this] { m_owner.ShowOptions(); }},
        {c_nAbout, [this] { m_owner.ShowAbout(); }},
    };
    const auto step = steps.find(nId);
    if (step == steps.end())
        return RunOwnCommand(nId);
    (*step)();
    return true;
}

bool CMainFrame::RunOwnCommand(int nId) {
    switch (nId) {
    case Commands::c_nExit:
        close();
        return true;
    case Commands::c_nToolBar:
        m_pToolBar->setVisible(ActionOf(nId)->isChecked());
        return true;
    case Commands::c_nStatusBar:
        m_pStatusBar->setVisible(ActionOf(nId)->isChecked());
        return true;
    case Commands::c_nNextPane:
    case Commands::c_nPreviousPane:
        SwitchPane();
        return true;
    default:
        return false;
    }
}

void CMainFrame::UpdateCommandsSoon() {
    if (m_bUpdatePending)
        return;
    m_bUpdatePending = true;
    QTimer::singleShot(0, this, &CMainFrame::UpdateCommands);
}

void CMainFrame::UpdateCommands() {
    m_bUpdatePending = false;
    Commands::State state;
    state.bCourseOpen = m_owner.IsCourseOpen();
    for (auto action = m_actions.cbegin(); action != m_actions.cend(); ++action) {
        state.bTreeSaysYes = m_pTree->IsCommandEnabled(action.key());
        state.bViewSaysYes = IsEditorShowing() && m_pEditor->IsCommandEnabled(action.key());
        action.value()->setEnabled(Commands::IsEnabled(*Commands::Find(action.key()), state));
    }
}

void CMainFrame::ShowStatusText(const QString& strText) {
    m_pStatusBar->SetText(strText);
}

void CMainFrame::SetRecentCourses(const QStringList& paths) {
    // Once grey, the popup stays so until the next start.
    if (paths.isEmpty()) {
        m_pRecent->setEnabled(false);
        return;
    }
    m_pRecent->clear();
    int nId = Commands::c_nFirstRecent;
    for (const QString& strPath : paths) {
        const QString strNative = Platform::ToNativeExact(strPath);
        // A single "&" would be taken for a mnemonic.
        QAction* pEntry =
            m_pRecent->addAction(QString(strNative).replace(QLatin1Char('&'), QStringLiteral("&&")));
        pEntry->setObjectName(QStringLiteral("command_%1").arg(nId));
        pEntry->setStatusTip(Commands::Find(nId++)->strStatus.toString());
        connect(pEntry, &QAction::triggered, this, [this, strPath] {
            if (!CQtPeople::IsKeepingPainting())
                m_owner.OpenCourse(strPath);
        });
    }
}

void CMainFrame::ComeToFront() {
    // What took the window off the screen may have been someone else.
    if (!isVisible() || (!windowHandle()->isExposed() && !isMinimized())) {
        hide();
        show();
    }
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    if (QWidget* pDialog = QApplication::activeModalWidget()) {
        pDialog->raise();
        pDialog->activateWindow();
    }
}

void CMainFrame::TakeActivation() {
    if (QApplication::activeWindow() == nullptr && isVisible())
        activateWindow();
}

bool CMainFrame::event(QEvent* pEvent) {
    if (pEvent->type() == QEvent::StatusTip) {
        m_pStatusBar->ShowHint(static_cast<QStatusTipEvent*>(pEvent)->tip());
        return true;
    }
    if (pEvent->type() == QEvent::WindowBlocked || pEvent->type() == QEvent::WindowUnblocked) {
        m_pStatusBar->ShowHint(QString());
        // The button hears of the mouse after its window hears of the dialog.
        QTimer::singleShot(0, m_pToolBar, &CFrameToolBar::DropHover);
        if (pEvent->type() == QEvent::WindowUnblocked &&
            QGuiApplication::applicationState() == Qt::ApplicationActive)
            QTimer::singleShot(c_nActivateMilliseconds, this, &CMainFrame::TakeActivation);
    }
    const bool bDone = QMainWindow::event(pEvent);
    if (pEvent->type() == QEvent::Paint && !m_bPainted) {
        m_bPainted = true;
        QMetaObject::invokeMethod(this, &CMainFrame::FirstPainted, Qt::QueuedConnection);
    }
    return bDone;
}

void CMainFrame::closeEvent(QCloseEvent* pEvent) {
    m_pTree->FinishTyping();
    if (!m_owner.MayClose() || !LeaveCurrentView(true)) {
        pEvent->ignore();
        return;
    }
    m_owner.CloseCourse();
    pEvent->accept();
}
