#include "course/Course.h"

#include "course/DataInfo.h"
#include "course/ProjectFile.h"
#include "course/TemplateStore.h"
#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

#include <QDeadlineTimer>
#include <QThread>

using namespace CourseText;

namespace {

constexpr int c_nReadingMilliseconds = 1000;
constexpr int c_nPaintMilliseconds = 10;

} // namespace

CCourse::CCourse(const QString& strProjectPath, const CourseServices& services)
    : m_paths(strProjectPath), m_services(services) {}

CCourse::~CCourse() = default;

bool CCourse::Open() {
    try {
        const auto pStatus = m_services.People.OpenStatus();
        pStatus->ShowStatus(c_strReadingInfo);
        ReadProject();
        pStatus->ShowStatus(c_strConnecting);
        OpenDatabase(c_strConnectFailed);
        pStatus->ShowStatus(c_strVerifying);
        if (!m_services.Session.ReportStatus(*this, StatusType::c_nOpened, FiguresToReport(), true))
            return false;
        pStatus->ShowStatus(c_strCheckingTemplate);
        if (!CheckTemplate())
            return false;
    } catch (const Torvane::CRunException&) {
        throw;
    } catch (...) {
        throw Torvane::CRunException(c_strOpenFailed);
    }
    m_bOpen = true;
    m_nChanges = 0;
    return true;
}

void CCourse::ReadProject() {
    if (!Torvane::File::IsFile(GetProjectPath()))
        throw Torvane::CRunException(c_strProjectMissing);
    CProjectFile file;
    if (!file.SetPath(GetProjectPath()) || !file.Load())
        throw Torvane::CRunException(c_strReadProjectFailed);
    m_info = file.GetCourseInfo();
    m_strTemplateName = file.GetTemplateName();
}

/// The person is told what could not be done; why is the engine's word, which helps nobody here.
void CCourse::OpenDatabase(const QString& strFailure) {
    auto pDatabase = std::make_unique<CBookDatabase>(m_paths.GetDatabasePath(), m_info.Id);
    try {
        if (!pDatabase->Open())
            throw Torvane::CRunException(strFailure);
    } catch (const Torvane::COM::CCOMException&) {
        throw Torvane::CRunException(strFailure);
    }
    m_pDatabase = std::move(pDatabase);
}

/// What the database says, with a total that it can't express left empty: a course of more than two
/// gigabytes can be opened and closed like any other.
CourseFigures CCourse::CountFigures() {
    CourseFigures figures;
    figures.Count = m_pDatabase->GetNodeCount();
    try {
        figures.Size = m_pDatabase->GetTotalSize();
    } catch (const Torvane::COM::CCOMException&) {
        figures.Size = CourseFigures().Size;
    }
    return figures;
}

CourseFigures CCourse::FiguresToReport() {
    const CourseFigures saved = ReadDataInfo(m_paths.GetDataInfoPath());
    if (saved.Count != CourseFigures().Count && saved.Size != CourseFigures().Size)
        return saved;
    CourseFigures figures = CountFigures();
    figures.Changed = saved.Changed;
    return figures;
}

bool CCourse::CheckTemplate() {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strFolder = store.GetTemplateFolder(m_strTemplateName);
    if (!strFolder.isEmpty() && Torvane::File::IsFolder(strFolder))
        return true;
    m_services.People.Ask(c_strTemplateMissing, c_strNoticeTitle, Torvane::Dialog::MFC::BoxButtons::Ok,
                          Torvane::Dialog::MFC::BoxIcon::Warning);
    const auto chosen = m_services.Templates.ChooseTemplate(m_strTemplateName);
    if (!chosen)
        return false;
    SetTemplateName(*chosen);
    return true;
}

bool CCourse::Close() {
    if (!m_bOpen)
        return true;
    try {
        const auto pStatus = m_services.People.OpenStatus();
        pStatus->ShowStatus(c_strClosing);
        ReportClosing(*pStatus);
        m_pDatabase.reset();
    } catch (...) {
        // The person may always leave. What was not reported is counted anew at the next opening.
        m_pDatabase.reset();
    }
    m_bOpen = false;
    return true;
}

void CCourse::ReportClosing(Status& status) {
    CourseFigures figures;
    try {
        figures = CountFigures();
    } catch (const Torvane::COM::CCOMException&) {
        figures = {};
    }
    figures.Changed = m_nChanges;
    bool bReported = false;
    try {
        bReported = m_services.Session.ReportStatus(*this, StatusType::c_nClosed, figures, false);
    } catch (...) {
        bReported = false;
    }
    if (bReported) {
        figures.Changed = CourseFigures().Changed;
    } else {
        status.ShowStatus(c_strReportFailed);
        WaitPainting(c_nReadingMilliseconds);
    }
    WriteDataInfo(m_paths.GetDataInfoPath(), figures);
}

void CCourse::WaitPainting(int nMilliseconds) {
    const QDeadlineTimer deadline(nMilliseconds);
    while (!deadline.hasExpired()) {
        m_services.People.KeepPainting();
        QThread::msleep(c_nPaintMilliseconds);
    }
}

/// The cycle that keeps every other value of the project file.
bool CCourse::SaveProject(const QString* pTemplateName) {
    CProjectFile file;
    return file.SetPath(GetProjectPath()) && file.Load() && file.SetCourseInfo(m_info) &&
           (pTemplateName == nullptr || file.SetTemplateName(*pTemplateName)) && file.Save();
}

bool CCourse::SetTemplateName(const QString& strName) {
    if (strName == m_strTemplateName)
        return true;
    m_strTemplateName = strName;
    return SaveProject(&m_strTemplateName);
}

void CCourse::TakeServerInfo(const CCourseInfo& info) {
    if (!info.IsValid())
        return;
    m_info.Name = info.Name;
    m_info.TeacherName = info.TeacherName;
    SaveProject(nullptr);
    if (m_pDatabase)
        m_pDatabase->SetSeedTitles(CSysInfo::Instance().GetSchoolName(), m_info.Name, m_info.TeacherName);
}
