#pragma once

#include "app/CommandTable.h"
#include "content/ViewKind.h"
#include "content/ui/BookShowView.h"
#include "content/ui/BookTreeView.h"
#include "course/Companions.h"
#include "platform/base/People.h"
#include "server/PortHolder.h"

#include <QHash>
#include <QMainWindow>
#include <QStringList>
class CEditorView;
class CFrameStatusBar;
class CFrameToolBar;
class CPaneMark;
class QAction;
class QMenu;
class QStackedWidget;
class IVideoMaker;

/// What the frame asks of the application.
class IFrameOwner {
public:
    virtual ~IFrameOwner() = default;
    virtual void NewCourse() = 0;
    virtual void OpenCourseCommand() = 0;
    virtual void OpenCourse(const QString& strPath) = 0;
    virtual void CloseCourse() = 0;
    virtual void ChangePassword() = 0;
    virtual void ChangeServerAddress() = 0;
    virtual void ShowOptions() = 0;
    virtual void ShowAbout() = 0;
    virtual void Compile(Companions::ECompileForm form) = 0;
    virtual void ExportWord() = 0;
    virtual void DownloadTemplate() = 0;
    virtual void SetTemplate() = 0;
    virtual void ShowOverallPreview() = 0;
    virtual bool IsCourseOpen() const = 0;
    /// Whether the window may close now; where not, the owner closes it as soon as it may.
    virtual bool MayClose() = 0;
    virtual IVideoMaker& Videos() = 0;
};

/// The main window: menu, toolbar, status bar, and a splitter with the tree on the left and one right-hand
/// view at a time. Wires parts together and owns no feature: commands go to the view that shows, to the
/// application, and to the tree. Views are made when they are first shown, so that the window comes up
/// without paying for them.
class CMainFrame : public QMainWindow, public INodeViewHost {
    Q_OBJECT
public:
    CMainFrame(IFrameOwner& owner, Torvane::Dialog::MFC::IPeople& people);
    ~CMainFrame() override;

    CBookTreeView& GetTreeView() { return *m_pTree; }
    void ShowStatusText(const QString& strText);
    /// Paths in backslash form, most recent first. An empty list greys the popup, for good.
    void SetRecentCourses(const QStringList& paths);
    /// Shows, restores and raises the window with its last active dialog.
    void ComeToFront();
    /// Brings the enabled states of all commands up to date.
    void UpdateCommands();

    /// Offers the person what was being edited when the program or the machine went away, and opens it in the
    /// editor.
    void OfferKeptPages(const CCourse& course);

    /// Leaves the present view without a way to stay, and shows none of the course any more: its nodes go.
    void ShowEmptyView();

    bool ShowNodeView(EViewKind kind, CBookNode* pNode, int nParam = 0) override;
    bool LeaveCurrentView(bool bCanCancel) override;
    bool IsEditorShowing() const override;
    bool IsShowing(const CBookNode* pNode) const override;
    void SelectNode(qint32 nId) override;
    void RunCommand(int nId) override;

Q_SIGNALS:
    /// The window stands on the screen at its size, painted for the first time.
    void FirstPainted();

protected:
    bool event(QEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;

private:
    void MakeMenus();
    void MakeToolBar();
    QMenu* MakeDropDown(const Commands::DropDown& dropDown);
    void MakePanes();
    /// From the tree to the page and back; with two panes the next one is the previous one.
    void SwitchPane();
    QAction* ActionOf(int nId);
    CBookShowView* GetViewByKind(EViewKind kind);
    CBookShowView* CurrentView() const;
    void SwitchTo(EViewKind kind, CBookNode* pNode, int nParam);
    bool RunApplicationCommand(int nId);
    bool RunOwnCommand(int nId);
    void UpdateCommandsSoon();
    /// The last dialog went. Where a box went together with the dialog below it, some window managers leave
    /// no window active.
    void TakeActivation();

    IFrameOwner& m_owner;
    Torvane::Dialog::MFC::IPeople& m_people;
    CPortHolder m_ports;
    QHash<int, QAction*> m_actions;
    QMenu* m_pRecent = nullptr;
    CFrameToolBar* m_pToolBar = nullptr;
    CFrameStatusBar* m_pStatusBar = nullptr;
    CBookTreeView* m_pTree = nullptr;
    QStackedWidget* m_pStack = nullptr;
    CPaneMark* m_pPaneMark = nullptr;
    CEditorView* m_pEditor = nullptr;
    QHash<int, CBookShowView*> m_views;
    /// The kind of the view showing; -1 before the first switch.
    int m_nCurrentView = -1;
    bool m_bUpdatePending = false;
    bool m_bPainted = false;
};
