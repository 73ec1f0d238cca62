#include "app/ui/MainFrame.h"

#include "app/CommandTable.h"
#include "app/Texts.h"
#include "app/ui/ProgramIcon.h"
#include "editor/ui/DisplayViews.h"
#include "editor/ui/EditorView.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/Pictures.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace {

constexpr int c_nTreeWidth = 200;
constexpr int c_nLeastTreeWidth = 150;
constexpr int c_nToolBarPicture = 35;

QString Text(const char16_t* pText) {
    return QString::fromUtf16(pText);
}

/// The two panes. The bar moves from 150 pixels off the left edge to half of the width.
class CFrameSplitter : public QSplitter {
public:
    using QSplitter::QSplitter;

protected:
    void resizeEvent(QResizeEvent* pEvent) override {
        if (count() > 0)
            widget(0)->setMaximumWidth(qMax(c_nLeastTreeWidth, width() / 2));
        QSplitter::resizeEvent(pEvent);
    }
};

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

    m_pStatusText = new QLabel(AppTexts::c_strReady, this);
    m_pStatusText->setObjectName(QStringLiteral("statusText"));
    statusBar()->addWidget(m_pStatusText, 1);
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
    auto* pAction = new QAction(Text(pCommand->pText), this);
    pAction->setObjectName(QStringLiteral("command_%1").arg(nId));
    pAction->setStatusTip(Text(pCommand->pStatusText));
    if (pCommand->pShortcut[0] != 0)
        pAction->setShortcut(QKeySequence(Text(pCommand->pShortcut)));
    connect(pAction, &QAction::triggered, this, [this, nId] { RunCommand(nId); });
    // An action on no menu still has its shortcut.
    addAction(pAction);
    m_actions.insert(nId, pAction);
    return pAction;
}

void CMainFrame::MakeMenus() {
    for (const Commands::Menu& menu : Commands::MainMenu()) {
        QMenu* pMenu = menuBar()->addMenu(Text(menu.pTitle));
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
    ActionOf(Commands::c_nSave);
    ActionOf(Commands::c_nRename);
    for (const int nId : {Commands::c_nToolBar, Commands::c_nStatusBar}) {
        ActionOf(nId)->setCheckable(true);
        ActionOf(nId)->setChecked(true);
    }
}

void CMainFrame::MakeToolBar() {
    m_pToolBar = addToolBar(QStringLiteral("工具栏"));
    m_pToolBar->setObjectName(QStringLiteral("mainToolBar"));
    m_pToolBar->setMovable(false);
    m_pToolBar->setIconSize(QSize(c_nToolBarPicture, c_nToolBarPicture));
    m_pToolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    QSize largest(c_nToolBarPicture, c_nToolBarPicture);
    QList<QToolButton*> buttons;
    for (const int nId : Commands::ToolBar()) {
        if (nId == 0) {
            m_pToolBar->addSeparator();
            continue;
        }
        QAction* pAction = ActionOf(nId);
        // A button follows its action, so the picture and the short text are the action's own.
        pAction->setIcon(Pictures::ToolbarIcon(CSysInfo::Instance().GetSysDataFolder(false), nId));
        pAction->setIconText(Text(Commands::Find(nId)->pToolText));
        pAction->setIconVisibleInMenu(false);
        pAction->setToolTip(pAction->iconText());
        auto* pButton = new QToolButton(m_pToolBar);
        pButton->setDefaultAction(pAction);
        pButton->setAccessibleName(pAction->iconText());
        pButton->setObjectName(QStringLiteral("tool_%1").arg(nId));
        pButton->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        pButton->setIconSize(m_pToolBar->iconSize());
        pButton->setAutoRaise(true);
        m_pToolBar->addWidget(pButton);
        largest = largest.expandedTo(pButton->sizeHint());
        buttons.append(pButton);
    }
    for (QToolButton* pButton : buttons)
        pButton->setMinimumSize(largest);
}

void CMainFrame::MakePanes() {
    auto* pSplitter = new CFrameSplitter(Qt::Horizontal, this);
    pSplitter->setObjectName(QStringLiteral("splitter"));
    pSplitter->setChildrenCollapsible(false);
    m_pTree = new CBookTreeView(*this, m_people, pSplitter);
    m_pTree->setMinimumWidth(c_nLeastTreeWidth);
    m_pStack = new QStackedWidget(pSplitter);
    m_pStack->setObjectName(QStringLiteral("rightPane"));
    pSplitter->addWidget(m_pTree);
    pSplitter->addWidget(m_pStack);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setSizes({c_nTreeWidth, width() - c_nTreeWidth});
    setCentralWidget(pSplitter);
    connect(m_pTree, &QTreeWidget::currentItemChanged, this, &CMainFrame::UpdateCommandsSoon);
    m_pStack->addWidget(ViewOf(EViewKind::Empty));
    for (const QString& strKey : {QStringLiteral("F6"), QStringLiteral("Shift+F6")})
        connect(new QShortcut(QKeySequence(strKey), this), &QShortcut::activated, this,
                &CMainFrame::SwitchPane);
}

void CMainFrame::SwitchPane() {
    QWidget* const pView = m_pStack->currentWidget();
    if (pView->isAncestorOf(QApplication::focusWidget()))
        m_pTree->setFocus(Qt::ShortcutFocusReason);
    else if (QWidget* const pLast = pView->focusWidget(); pLast && pLast->isVisible())
        pLast->setFocus(Qt::ShortcutFocusReason);
    else
        pView->setFocus(Qt::ShortcutFocusReason);
}

CBookShowView* CMainFrame::ViewOf(EViewKind kind) {
    if (CBookShowView* pKnown = m_views.value(static_cast<int>(kind)))
        return pKnown;
    CBookShowView* pView = nullptr;
    switch (kind) {
    case EViewKind::ShowContent:
        pView = DisplayViews::MakeShowContentView(*this, m_pStack);
        break;
    case EViewKind::Editor:
        pView = m_pEditor = new CEditorView(*this, m_people, m_pStack);
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
    case EViewKind::VideoPreview:
        // Nodes of these kinds are shown as far as the browser can show them.
        return ViewOf(EViewKind::ShowContent);
    case EViewKind::Nothing:
    default:
        if (kind != EViewKind::Nothing)
            return ViewOf(EViewKind::Nothing);
        pView = DisplayViews::MakeNothingView(*this, m_pStack);
        break;
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
    // The node may go while its view is out of sight.
    if (CBookShowView* pLeft = CurrentView())
        pLeft->m_pNode = nullptr;
    CBookShowView* pView = ViewOf(kind);
    m_nCurrentView = static_cast<int>(kind);
    pView->m_pNode = pNode;
    pView->m_pViewParam = nParam;
    m_pStack->setCurrentWidget(pView);
    pView->ShowNode();
    UpdateCommandsSoon();
    return true;
}

bool CMainFrame::LeaveCurrentView(bool bCanCancel) {
    CBookShowView* pView = CurrentView();
    return !pView || pView->LeaveNode(bCanCancel);
}

bool CMainFrame::IsEditorShowing() const {
    return m_nCurrentView == static_cast<int>(EViewKind::Editor);
}

void CMainFrame::SelectNode(qint32 nId) {
    m_pTree->SelectNode(nId);
}

void CMainFrame::RunCommand(int nId) {
    const bool bDone = (IsEditorShowing() && m_pEditor->RunCommand(nId)) || RunApplicationCommand(nId) ||
                       m_pTree->RunCommand(nId);
    if (!bDone)
        qWarning("command %d is bound to nothing", nId);
    UpdateCommandsSoon();
}

bool CMainFrame::RunApplicationCommand(int nId) {
    switch (nId) {
    case Commands::c_nNewCourse:
        m_owner.NewCourse();
        return true;
    case Commands::c_nOpenCourse:
        m_owner.OpenCourseCommand();
        return true;
    case Commands::c_nCompile:
        m_owner.Compile();
        return true;
    case Commands::c_nSetTemplate:
        m_owner.SetTemplate();
        return true;
    case Commands::c_nOverallPreview:
        m_owner.ShowOverallPreview();
        return true;
    case Commands::c_nChangePassword:
        m_owner.ChangePassword();
        return true;
    case Commands::c_nServerAddress:
        m_owner.ChangeServerAddress();
        return true;
    case Commands::c_nOptions:
        m_owner.ShowOptions();
        return true;
    case Commands::c_nAbout:
        m_owner.ShowAbout();
        return true;
    case Commands::c_nExit:
        close();
        return true;
    case Commands::c_nToolBar:
        m_pToolBar->setVisible(ActionOf(nId)->isChecked());
        return true;
    case Commands::c_nStatusBar:
        statusBar()->setVisible(ActionOf(nId)->isChecked());
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
    state.bEditorShowing = IsEditorShowing();
    for (auto action = m_actions.cbegin(); action != m_actions.cend(); ++action) {
        state.bTreeSaysYes = m_pTree->IsCommandEnabled(action.key());
        state.bViewSaysYes = state.bEditorShowing && m_pEditor->IsCommandEnabled(action.key());
        action.value()->setEnabled(Commands::IsEnabled(*Commands::Find(action.key()), state));
    }
}

void CMainFrame::ShowStatusText(const QString& strText) {
    m_pStatusText->setText(strText);
    m_pStatusText->repaint();
}

void CMainFrame::SetRecentCourses(const QStringList& paths) {
    m_pRecent->setEnabled(!paths.isEmpty());
    m_pRecent->clear();
    int nId = Commands::c_nFirstRecent;
    for (const QString& strPath : paths) {
        const QString strNative = Platform::ToNativeExact(strPath);
        // A single "&" would be taken for a mnemonic.
        QAction* pEntry =
            m_pRecent->addAction(QString(strNative).replace(QLatin1Char('&'), QStringLiteral("&&")));
        pEntry->setObjectName(QStringLiteral("command_%1").arg(nId++));
        connect(pEntry, &QAction::triggered, this, [this, strPath] { m_owner.OpenCourse(strPath); });
    }
}

void CMainFrame::ComeToFront() {
    if (!isVisible())
        show();
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    if (QWidget* pDialog = QApplication::activeModalWidget()) {
        pDialog->raise();
        pDialog->activateWindow();
    }
}

bool CMainFrame::event(QEvent* pEvent) {
    const bool bDone = QMainWindow::event(pEvent);
    if (pEvent->type() == QEvent::Paint && !m_bPainted) {
        m_bPainted = true;
        QMetaObject::invokeMethod(this, &CMainFrame::FirstPainted, Qt::QueuedConnection);
    }
    return bDone;
}

void CMainFrame::closeEvent(QCloseEvent* pEvent) {
    if (!LeaveCurrentView(true)) {
        pEvent->ignore();
        return;
    }
    m_owner.CloseCourse();
    pEvent->accept();
}
