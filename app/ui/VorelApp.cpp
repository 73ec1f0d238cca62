#include "app/ui/VorelApp.h"

#include "app/CommandLine.h"
#include "app/CourseFileType.h"
#include "app/StartupCourses.h"
#include "app/Texts.h"
#include "app/ui/AboutDialog.h"
#include "app/ui/OptionsDialog.h"
#include "app/ui/PreviewDialog.h"
#include "app/ui/ProgramIcon.h"
#include "app/ui/SplashWindow.h"
#include "app/ui/StartupDialog.h"
#include "content/ui/CreateProjectWizard.h"
#include "course/Companions.h"
#include "course/ProjectFile.h"
#include "course/SetTemplate.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/base/MediaTools.h"
#include "platform/base/Module.h"
#include "platform/ui/ChineseTexts.h"
#include "platform/ui/Pictures.h"
#include "platform/ui/ThreadHeld.h"
#include "platform/ui/WebBrowser.h"
#include "platform/ui/WebEngineLoader.h"
#include "server/ui/TemplateDownloadDialog.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QSessionManager>

namespace {

constexpr int c_nHeartbeatMilliseconds = 180000;
/// While a dialog is open a lost session can't close the course; the check comes again after this time.
constexpr int c_nHeartbeatRetryMilliseconds = 5000;
/// The desktop's own upkeep waits until the start is over.
constexpr int c_nFileTypesMilliseconds = 3000;
constexpr int c_nEndRetryMilliseconds = 200;
constexpr int c_nSplashPicture = 369;
/// Marks a dialog that was asked to go once.
constexpr char c_szAskedToEnd[] = "askedToEnd";

/// Counts the steps under way, so that neither the heartbeat nor the window's close comes between.
class CBusy {
public:
    explicit CBusy(int& nCount) : m_nCount(nCount) { ++m_nCount; }
    ~CBusy() { --m_nCount; }
    CBusy(const CBusy&) = delete;
    CBusy& operator=(const CBusy&) = delete;

private:
    int& m_nCount;
};

} // namespace

CVorelApp::CVorelApp()
    : m_strName(LoadResString(SharedText::c_nProductTitle)), m_instance(m_strName), m_dialogs(m_people),
      m_session(m_people, m_dialogs) {
    m_heartbeat.setObjectName(QStringLiteral("timer_101"));
    m_heartbeat.setSingleShot(true);
    QObject::connect(&m_heartbeat, &QTimer::timeout, &m_heartbeat, [this] { Heartbeat(); });
    m_endRetry.setSingleShot(true);
    QObject::connect(&m_endRetry, &QTimer::timeout, &m_endRetry, [this] { EndWhenFree(); });
}

// The frame goes first: its views still know the nodes of a course that is open.
CVorelApp::~CVorelApp() {
    m_pFrame.reset();
}

int CVorelApp::Run(const QStringList& arguments) {
    if (m_instance.ActivateOther())
        return 1;
    const CommandLine line = ParseCommandLine(arguments, QDir::currentPath());
    InstallChineseTexts(*qApp);
    QApplication::setApplicationName(m_strName);
    QGuiApplication::setDesktopFileName(m_strName.toLower());
    if (CSysInfo::Instance().GetServerURL().isEmpty() && !AskFirstServerAddress())
        return 1;
    const bool bHasPlayer = Platform::CModule(QStringLiteral("vorelmedia")).IsThere() &&
                            Platform::HasMediaPlayer(QCoreApplication::libraryPaths());
    m_pVideos = std::make_unique<CVideoMaker>(m_people, bHasPlayer, Platform::HasMediaEncoder());
    // The program works as well without, and nothing at the start waits for it.
    m_registration = std::jthread([type = CourseFileType(), program = OwnProgramEntry()] {
        Platform::RegisterFileType(type, program);
    });

    MakeFrame(line.bShowSplash);
    RebuildRecentMenu();
    m_instance.Listen([this] { m_pFrame->ComeToFront(); });
    m_pEndRequest = std::make_unique<Platform::CEndRequest>([this] { EndWhenFree(); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, m_pFrame.get(),
                     [this](QSessionManager& manager) { EndSession(manager); });

    // The first dialog, or a long opening, comes over a window that stands painted on the screen.
    QObject::connect(m_pFrame.get(), &CMainFrame::FirstPainted, m_pFrame.get(),
                     [this, strFile = line.strFile] { FirstPainted(strFile); });
    m_pFrame->showMaximized();
    return QApplication::exec();
}

void CVorelApp::MakeFrame(bool bShowSplash) {
    if (bShowSplash) {
        m_pSplash = std::make_unique<CSplashWindow>(
            Pictures::Resource(CSysInfo::Instance().GetSysDataFolder(false), c_nSplashPicture));
        m_pSplash->ShowNow();
    }
    m_pFrame = std::make_unique<CMainFrame>(static_cast<IFrameOwner&>(*this), m_people);
    m_people.SetParent(m_pFrame.get());
    m_dialogs.SetParent(m_pFrame.get());
    m_templates.SetParent(m_pFrame.get());
    m_pFrame->setWindowTitle(LoadResString(SharedText::c_nWindowTitle));
}

void CVorelApp::FirstPainted(const QString& strFile) {
    if (m_pSplash)
        m_pSplash->MoveInto(*m_pFrame);
    QTimer::singleShot(c_nFileTypesMilliseconds, m_pFrame.get(),
                       [] { Platform::RefreshFileTypes(CourseFileType()); });
    if (strFile.isEmpty())
        ShowStartup();
    else
        OpenCourse(strFile);
}

bool CVorelApp::IsStepUnderWay() const {
    return m_nBusy > 0 || IsThreadHeld();
}

bool CVorelApp::IsInTheMiddle() const {
    return IsStepUnderWay() || QApplication::activeModalWidget() != nullptr ||
           QApplication::activePopupWidget() != nullptr || QApplication::mouseButtons() != Qt::NoButton;
}

// A window that went in the middle of opening would leave the course open at the server.
bool CVorelApp::MayClose() {
    if (!IsStepUnderWay())
        return true;
    m_endRetry.start(c_nEndRetryMilliseconds);
    return false;
}

void CVorelApp::EndWhenFree() {
    // The question that the closing asks is no dialog to be cancelled by another request.
    if (m_bClosing)
        return;
    if (!IsInTheMiddle()) {
        m_bClosing = true;
        m_pFrame->close();
        m_bClosing = false;
        return;
    }
    // An open dialog is cancelled, once: one that stays, or asks in its turn, waits for the person. One whose
    // own step is under way could still end with OK after that.
    auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (pDialog && !IsThreadHeld() && !pDialog->property(c_szAskedToEnd).toBool()) {
        pDialog->setProperty(c_szAskedToEnd, true);
        pDialog->close();
    }
    m_endRetry.start(c_nEndRetryMilliseconds);
}

void CVorelApp::EndSession(QSessionManager& manager) {
    if (!manager.allowsInteraction())
        return;
    if (IsInTheMiddle() || !m_pFrame->close())
        manager.cancel();
    manager.release();
}

bool CVorelApp::AskFirstServerAddress() {
    // There is no frame yet that the dialog could have its icon from.
    QApplication::setWindowIcon(LoadProgramIcon());
    const auto strAddress = AskServerAddress(QStringLiteral("http://"), m_session, m_people, nullptr);
    if (!strAddress)
        return false;
    Guarded([&] { CSysInfo::Instance().SetServerURL(*strAddress); });
    return true;
}

void CVorelApp::ShowStartup() {
    CSysInfo& settings = CSysInfo::Instance();
    if (!settings.GetShowStartupDlg()) {
        const QString strLast = settings.GetLastCourse();
        if (!strLast.isEmpty())
            OpenCourse(strLast);
        return;
    }
    CStartupDialog dialog(m_people, m_pFrame.get());
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (dialog.IsDontShowChecked())
        Guarded([&] { settings.SetShowStartupDlg(false); });
    if (dialog.GetCoursePath().isEmpty())
        NewCourse();
    else
        OpenCourse(dialog.GetCoursePath());
}

bool CVorelApp::Guarded(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const Torvane::CRunException& failure) {
        m_people.Error(failure.GetMessage());
        return false;
    }
}

CourseServices CVorelApp::Services() {
    return {m_people, m_session, m_templates, m_nodes};
}

void CVorelApp::OpenCourse(const QString& strPath) {
    CBusy busy(m_nBusy);
    // Its first page comes at once.
    PrepareWebEngine();
    CloseCourse();
    std::unique_ptr<CCourse> pCourse;
    const bool bDone = Guarded([&] {
        auto pOpening = std::make_unique<CCourse>(strPath, Services());
        if (pOpening->Open())
            pCourse = std::move(pOpening);
    });
    if (bDone && pCourse)
        LoadOpenedCourse(std::move(pCourse));
    m_pFrame->UpdateCommands();
}

void CVorelApp::LoadOpenedCourse(std::unique_ptr<CCourse> pCourse) {
    m_pCourse = std::move(pCourse);
    m_pFrame->ShowStatusText(AppTexts::c_strLoading);
    const bool bLoaded = Guarded([&] { m_pFrame->GetTreeView().LoadTree(*m_pCourse); });
    m_pFrame->ShowStatusText(AppTexts::c_strReady);
    // Without its tree a course is not open.
    if (!bLoaded) {
        CloseCourse();
        return;
    }
    StartHeartbeat(c_nHeartbeatMilliseconds);
    ShowCourseName();
    Guarded([&] {
        CSysInfo::Instance().AddRecentCourse(m_pCourse->GetProjectPath());
        RebuildRecentMenu();
    });
    Guarded([&] { m_pFrame->OfferKeptPages(*m_pCourse); });
}

void CVorelApp::CloseCourse() {
    if (!m_pCourse)
        return;
    CBusy busy(m_nBusy);
    m_heartbeat.stop();
    m_pFrame->ShowEmptyView();
    m_pFrame->GetTreeView().ResetTree();
    m_pFrame->setWindowTitle(LoadResString(SharedText::c_nWindowTitle));
    // What is called while the server is told finds no course open.
    const std::unique_ptr<CCourse> pClosing = std::move(m_pCourse);
    m_pFrame->UpdateCommands();
    pClosing->Close();
}

void CVorelApp::NewCourse() {
    CBusy busy(m_nBusy);
    CCreateProjectWizard wizard(m_people, m_session, m_pFrame.get());
    if (!wizard.Run())
        return;
    m_pFrame->repaint();
    CloseCourse();

    const CreateRecord& record = wizard.GetRecord();
    const QString strPath = Torvane::File::AddBackslash(record.Folder) + record.FileTitle + QLatin1Char('.') +
                            LoadResString(SharedText::c_nExtension);
    const bool bCreated = Guarded([&] { CCourse(strPath, Services()).Create(record); });
    if (bCreated)
        OpenCourse(strPath);
}

void CVorelApp::OpenCourseCommand() {
    const auto strPath = m_people.PickOpenFile(
        AppTexts::c_strOpenCourseTitle, CSysInfo::Instance().GetProjectsFolder(false), ProjectFileFilter());
    if (strPath)
        OpenCourse(*strPath);
}

void CVorelApp::ChangePassword() {
    if (!m_pCourse)
        return;
    CBusy busy(m_nBusy);
    Guarded([&] { m_session.ChangePassword(*m_pCourse); });
    ShowCourseInfo();
}

void CVorelApp::ChangeServerAddress() {
    CBusy busy(m_nBusy);
    const auto strAddress =
        AskServerAddress(CSysInfo::Instance().GetServerURL(), m_session, m_people, m_pFrame.get());
    if (strAddress)
        Guarded([&] { CSysInfo::Instance().SetServerURL(*strAddress); });
}

void CVorelApp::ShowOptions() {
    COptionsDialog dialog(m_pFrame.get());
    if (dialog.exec() == QDialog::Accepted)
        Guarded([&] { dialog.Store(); });
}

void CVorelApp::ShowAbout() {
    CAboutDialog(m_pFrame.get()).exec();
}

void CVorelApp::Compile(Companions::ECompileForm form) {
    if (!m_pCourse)
        return;
    CBusy busy(m_nBusy);
    const bool bValid = m_session.ValidateCourse(*m_pCourse);
    ShowCourseInfo();
    if (!bValid) {
        // The check has said itself what failed; only the full compilation says so once more.
        if (form == Companions::ECompileForm::Site)
            m_people.Error(AppTexts::c_strValidationFailed);
        return;
    }
    RunCompanion(Companions::CompilerCommandLine(CSysInfo::Instance().GetProgramFolder(false),
                                                 m_pCourse->GetProjectPath(), form),
                 AppTexts::c_strCompiling);
}

void CVorelApp::ExportWord() {
    if (!m_pCourse)
        return;
    CBusy busy(m_nBusy);
    RunCompanion(Companions::DocExportCommandLine(CSysInfo::Instance().GetProgramFolder(false),
                                                  m_pCourse->GetProjectPath()),
                 AppTexts::c_strExportingWord);
}

void CVorelApp::RunCompanion(const QString& strCommandLine, const QString& strStatus) {
    const CBookDatabase& database = *m_pCourse->GetDatabase();
    try {
        const auto pStatus = m_people.OpenStatus();
        pStatus->ShowStatus(strStatus);
        Companions::Run(strCommandLine, *m_pCourse->GetDatabase(), m_people);
    } catch (const Torvane::CRunException& failure) {
        const QString strReason = failure.GetMessage();
        m_people.Error(database.IsOpen() ? strReason : AppTexts::c_strStoreLost.arg(strReason));
    }
    // No change would get into the store any more.
    if (!database.IsOpen())
        CloseCourse();
}

void CVorelApp::DownloadTemplate() {
    CBusy busy(m_nBusy);
    Guarded([&] { ::DownloadTemplate(m_people, m_pFrame.get()); });
}

void CVorelApp::SetTemplate() {
    if (!m_pCourse)
        return;
    CBusy busy(m_nBusy);
    Guarded([&] {
        RunSetTemplate(*m_pCourse, m_people, m_templates,
                       [this](quint32 nColor) { m_pFrame->GetTreeView().SetBackColor(nColor); });
    });
}

void CVorelApp::ShowOverallPreview() {
    if (!m_pCourse)
        return;
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    CPreviewDialog(store.GetPreviewPath(m_pCourse->GetTemplateName()), m_pFrame.get()).exec();
}

void CVorelApp::RebuildRecentMenu() {
    m_pFrame->SetRecentCourses(CSysInfo::Instance().GetRecentCourses());
}

void CVorelApp::StartHeartbeat(int nMilliseconds) {
    m_heartbeat.start(nMilliseconds);
}

void CVorelApp::ShowCourseName() {
    m_pFrame->setWindowTitle(m_pCourse->GetInfo().Name + QStringLiteral(" - ") +
                             LoadResString(SharedText::c_nWindowTitle));
}

void CVorelApp::ShowCourseInfo() {
    ShowCourseName();
    m_pFrame->GetTreeView().ShowCourseInfo();
}

void CVorelApp::Heartbeat() {
    if (!m_pCourse)
        return;
    const bool bInTheMiddle = IsInTheMiddle();
    const CBusy busy(m_nBusy);
    const CQtPeople::CPaintInside painting;
    QElapsedTimer lasted;
    lasted.start();
    if (m_session.ReportStatus(*m_pCourse, StatusType::c_nHeartbeat, CourseFigures(), !bInTheMiddle)) {
        StartHeartbeat(c_nHeartbeatMilliseconds);
        ShowCourseInfo();
    } else if (bInTheMiddle) {
        // Who had to wait for a server that doesn't answer is left alone for a while.
        const bool bWaited = lasted.elapsed() > c_nHeartbeatRetryMilliseconds / 2;
        StartHeartbeat(bWaited ? c_nHeartbeatMilliseconds : c_nHeartbeatRetryMilliseconds);
    } else {
        CloseCourse();
    }
}
