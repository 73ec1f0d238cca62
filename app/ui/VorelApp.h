#pragma once

#include "app/ui/MainFrame.h"
#include "content/BookNode.h"
#include "content/VideoMaker.h"
#include "course/Course.h"
#include "course/ui/TemplateChooserDialog.h"
#include "platform/base/EndRequest.h"
#include "platform/base/SingleInstance.h"
#include "platform/ui/QtPeople.h"
#include "server/ServerSession.h"
#include "server/ui/SessionDialogs.h"

#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <thread>

class CSplashWindow;
class QSessionManager;

/// The application: takes the process from its start to the first idle state, owns the one open course, and
/// carries the commands that belong to no view. Joins the subsystems: the interfaces that lower floors
/// declare are implemented above them and handed in here.
class CVorelApp : private IFrameOwner {
public:
    CVorelApp();
    ~CVorelApp() override;

    /// From the single-instance rule to the end of the message loop; the process's result.
    int Run(const QStringList& arguments);

    /// Closes the open course, then opens this one and puts it at the head of the recent list. A failure is
    /// told and leaves no course open.
    void OpenCourse(const QString& strPath) override;
    /// Closes the open course if there is one; a page that is being edited is asked about, without a way to
    /// stay.
    void CloseCourse() override;

    /// Null when no course is open.
    CCourse* GetCourse() const { return m_pCourse.get(); }
    /// Whether what plays lectures and what records them is at hand, as found at the start.
    bool HasPlayer() const { return m_pVideos->HasPlayer(); }
    bool HasEncoder() const { return m_pVideos->HasEncoder(); }

private:
    void NewCourse() override;
    void OpenCourseCommand() override;
    void ChangePassword() override;
    void ChangeServerAddress() override;
    void ShowOptions() override;
    void ShowAbout() override;
    void Compile(Companions::ECompileForm form) override;
    void ExportWord() override;
    void DownloadTemplate() override;
    void SetTemplate() override;
    void ShowOverallPreview() override;
    bool IsCourseOpen() const override { return m_pCourse != nullptr; }
    bool MayClose() override;
    IVideoMaker& Videos() override { return *m_pVideos; }

    bool AskFirstServerAddress();
    void MakeFrame(bool bShowSplash);
    void ShowStartup();
    /// The frame stands on the screen: what comes with it goes on from here.
    void FirstPainted(const QString& strFile);
    /// A step works on the course, and while a page is being asked nobody else can save it.
    bool IsStepUnderWay() const;
    /// The same, or an open dialog or menu, or a mouse button that is down: the course can't close now.
    bool IsInTheMiddle() const;
    /// The process is asked to end: closes the window, as the person would, once nothing is under way.
    void EndWhenFree();
    void EndSession(QSessionManager& manager);
    void LoadOpenedCourse(std::unique_ptr<CCourse> pCourse);
    void RebuildRecentMenu();
    void ShowCourseName();
    /// The server may have given the open course another name or teacher.
    void ShowCourseInfo();
    /// Reports to the server, and closes the course when the session is lost. In the middle of something it
    /// reports in silence to keep the session, and comes again soon when that failed.
    void Heartbeat();
    void StartHeartbeat(int nMilliseconds);
    CourseServices Services();
    void RunCompanion(const QString& strCommandLine, const QString& strStatus);
    /// Runs a step and shows a failure of the CRunException family; false when there was one.
    bool Guarded(const std::function<void()>& step);

    const QString m_strName;
    Platform::CSingleInstance m_instance;
    std::jthread m_registration;
    CQtPeople m_people;
    CSessionDialogs m_dialogs;
    CServerSession m_session;
    CTemplateChooser m_templates;
    CNodeMakerFactory m_nodes;
    /// Made at the start, which finds out what is here to play and to encode with.
    std::unique_ptr<CVideoMaker> m_pVideos;
    std::unique_ptr<CMainFrame> m_pFrame;
    std::unique_ptr<CSplashWindow> m_pSplash;
    std::unique_ptr<Platform::CEndRequest> m_pEndRequest;
    std::unique_ptr<CCourse> m_pCourse;
    /// Timer 101: the session check of the open course.
    QTimer m_heartbeat;
    QTimer m_endRetry;
    bool m_bClosing = false;
    int m_nBusy = 0;
};
