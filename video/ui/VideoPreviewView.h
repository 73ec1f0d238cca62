#pragma once

#include "content/ui/BookShowView.h"
#include "platform/base/People.h"
#include "video/CommandClock.h"
#include "video/VideoScripts.h"

#include <QTimer>

#include <array>

class CMediaPlayer;
class CWebBrowser2Ex;
class QLabel;
class QListView;
class QPushButton;
class QStringListModel;

/// Plays a recorded lecture: the film with the outline below it on the left, the slide page on the right,
/// which follows the film by the commands in it.
class CVideoPreviewView : public CBookShowView {
    Q_OBJECT
public:
    CVideoPreviewView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);
    ~CVideoPreviewView() override;

    /// Stops the film.
    bool LeaveNode(bool bCanCancel) override;
    /// Loads the node's film, outline, scripts and slide page, and plays. What can't be loaded is told.
    void ShowNode() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    bool event(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;

private:
    void MakeControls();
    void ConnectPlayer();
    QPushButton* AddButton(int nId, const char* szName, const QString& strText,
                           void (CMediaPlayer::*pStep)());
    QPushButton* ButtonFor(const QKeyEvent& key) const;

    void ShowVideo();
    bool LoadScripts(const QString& strFolder);
    bool LoadOutline(const QString& strFolder);
    void Clear();
    /// The slide page stands elsewhere.
    void OnNavigated();
    void OnPlayState();
    /// Carries out what the film's commands call by now.
    void OnPosition();
    void RunCalled();
    void ShowStatus(const QString& strText);
    void ChooseEntry();
    void FillScreen();

    Torvane::Dialog::MFC::IPeople& m_people;
    SVideoScripts m_scripts;
    CCommandClock m_clock;
    /// Scripts that the film has called and the page has not run yet.
    QStringList m_called;
    bool m_bRunning = false;
    /// The entry is chosen because the film has come to it.
    bool m_bByProgram = false;
    /// The press that is going on has chosen an entry already.
    bool m_bChosen = false;
    bool m_bSlidesShow = false;
    QTimer m_time;
    QTimer m_runSoon;

    CMediaPlayer* m_pPlayer = nullptr;
    /// Over the player: why there is no film, in full. The status line is too narrow.
    QLabel* m_pFailure = nullptr;
    QLabel* m_pStatus = nullptr;
    QLabel* m_pHeading = nullptr;
    QListView* m_pOutline = nullptr;
    QStringListModel* m_pNames = nullptr;
    CWebBrowser2Ex* m_pSlides = nullptr;
    std::array<QPushButton*, 4> m_buttons{};
};
