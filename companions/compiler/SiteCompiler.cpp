#include "companions/compiler/SiteCompiler.h"

#include "companions/compiler/ApplicationSite.h"
#include "companions/compiler/CompileInput.h"
#include "companions/compiler/OutputFolder.h"
#include "companions/compiler/SiteRun.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "platform/base/NativePath.h"

#include <exception>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// To let go of many thousands of small texts takes a while, for which nobody need wait.
void LetGoBeside(std::unique_ptr<CCompileInput> pInput, std::vector<std::unique_ptr<COutputFolder>> outputs) {
    try {
        std::thread([pInput = std::move(pInput), outputs = std::move(outputs)] {}).detach();
    } catch (const std::system_error&) { // NOLINT: then it has been done here
    }
}

/// One compiling, from the course to its folders.
class CCompiling {
public:
    CCompiling(const CompileRequest& request, CompileProgress& progress)
        : m_request(request), m_progress(progress), m_pInput(std::make_unique<CCompileInput>(request)) {}

    CompileReport Run();

private:
    using OutputOpening = std::future<std::unique_ptr<COutputFolder>>;
    QString ChooseFolder();
    OutputOpening Open(const QString& strFolder) const;
    void WriteSite(COutputFolder& output);
    QStringList WriteApplicationSite(COutputFolder& output, const QString& strSite) const;
    void RememberFolder(const QString& strFolder);

    const CompileRequest& m_request;
    CompileProgress& m_progress;
    std::unique_ptr<CCompileInput> m_pInput;
    CompileReport m_report;
};

QString CCompiling::ChooseFolder() {
    CompileRequest request = m_request;
    if (request.OutputFolder.isEmpty()) {
        QString strRemark;
        request.OutputFolder = RememberedFolder(m_pInput->Model(), &strRemark);
        if (!strRemark.isEmpty())
            m_report.Notes.append(strRemark);
    }
    request.OutputFolder = OutputFolderFor(request.OutputFolder);
    if (const QString strFault = FaultOfOutput(request); !strFault.isEmpty())
        throw Torvane::CRunException(strFault);
    return request.OutputFolder;
}

CompileReport CCompiling::Run() {
    StopIfCancelled(m_progress);
    const QString strFolder = ChooseFolder();
    const QStringList folders = FoldersOf(m_request.Form);
    // What there was is read while it is planned what there shall be.
    std::vector<OutputOpening> openings;
    for (const QString& strName : folders)
        openings.push_back(Open(strFolder + u'/' + strName));
    m_pInput->Plan(m_request.Form);
    std::vector<std::unique_ptr<COutputFolder>> outputs;
    for (OutputOpening& opening : openings)
        outputs.push_back(opening.get());
    m_report.Notes += m_pInput->Plan().Notes();
    if (m_pInput->Model().UnreachableCount() > 0)
        m_report.Notes.append(CompilerText::c_strNoteUnreachable.arg(m_pInput->Model().UnreachableCount()));
    m_progress.Stage = CompileProgress::EStage::Writing;
    std::future<QStringList> application;
    if (outputs.size() > 1)
        application =
            std::async(std::launch::async, [&] { return WriteApplicationSite(*outputs[1], folders[0]); });
    WriteSite(*outputs[0]);
    if (application.valid()) {
        m_report.Notes += application.get();
        m_report.ApplicationFolder = outputs[1]->Path();
    }
    RememberFolder(strFolder);
    // Only now that no thread of its own is at work in it any more.
    for (const auto& pOutput : outputs)
        pOutput->Close();
    LetGoBeside(std::move(m_pInput), std::move(outputs));
    return m_report;
}

CCompiling::OutputOpening CCompiling::Open(const QString& strFolder) const {
    return std::async(std::launch::async, [this, strFolder] {
        const CCoursePaths& paths = m_pInput->Model().Paths();
        return std::make_unique<COutputFolder>(strFolder, Platform::ToNative(paths.GetCourseFolder(false)),
                                               Platform::ToNative(paths.GetDataFolder(false)),
                                               QString::number(m_pInput->Model().CourseId()),
                                               [this] { return m_progress.bCancelled.load(); });
    });
}

void CCompiling::WriteSite(COutputFolder& output) {
    CSiteRun run(*m_pInput, m_request.Form, m_progress);
    run.Run(output);
    StopIfCancelled(m_progress);
    output.Finish();
    m_report.OutputFolder = output.Path();
    m_report.Pages = run.PageCount();
    m_report.Files = int(output.FileCount()) - run.PageCount();
    m_report.Changed += output.ChangedCount();
    m_report.Notes += run.Notes() + output.Notes();
}

/// Answers what there is to say of it.
QStringList CCompiling::WriteApplicationSite(COutputFolder& output, const QString& strSite) const {
    CApplicationSite(*m_pInput, strSite, output, m_progress).Run();
    output.Finish();
    return output.Notes();
}

void CCompiling::RememberFolder(const QString& strFolder) {
    const CSiteModel& model = m_pInput->Model();
    const QString strStored = Platform::FromNative(strFolder);
    const QString strCourse = model.Paths().GetCourseFolder(false);
    if (strStored == model.LastDir() && strCourse == model.LastCourseDir())
        return;
    try {
        WriteProfileStrings(
            {{u"Compile"_s, u"LastDir"_s, strStored}, {u"Compile"_s, u"CourseDir"_s, strCourse}},
            m_request.ProjectPath);
    } catch (const Torvane::CException& failure) {
        m_report.Notes.append(CompilerText::c_strNotRemembered.arg(failure.GetMessage()));
    }
}

TaskOutcome OutcomeOf(const CompileReport& report) {
    QString strText = CompilerText::c_strDone.arg(report.Pages)
                          .arg(report.Files)
                          .arg(report.Changed)
                          .arg(report.OutputFolder);
    if (!report.ApplicationFolder.isEmpty())
        strText += u'\n' + CompilerText::c_strDoneApplication.arg(report.ApplicationFolder);
    return {TaskOutcome::EEnd::Done, strText, report.Notes};
}

} // namespace

CompileReport CompileSite(const CompileRequest& request, CompileProgress& progress) {
    return CCompiling(request, progress).Run();
}

CompileReport CompileSite(const CompileRequest& request) {
    CompileProgress progress;
    return CompileSite(request, progress);
}

TaskOutcome Compile(const CompileRequest& request, CompileProgress& progress, QString* pStartPage) {
    using EEnd = TaskOutcome::EEnd;
    try {
        const CompileReport report = CompileSite(request, progress);
        if (pStartPage)
            *pStartPage = report.OutputFolder + "/index.html"_L1;
        return OutcomeOf(report);
    } catch (const Torvane::CException& failure) {
        // A copy that was given up fails in words of its own.
        if (progress.bCancelled)
            return {EEnd::Cancelled, CompilerText::c_strCancelled, {}};
        return {EEnd::Failed, CompilerText::c_strFailed.arg(failure.GetMessage()), {}};
    } catch (const std::exception& failure) {
        const QString strWhat = CompilerText::c_strUnexpected.arg(QString::fromLocal8Bit(failure.what()));
        return {EEnd::Failed, CompilerText::c_strFailed.arg(strWhat), {}};
    }
}

QString DescribeProgress(const CompileProgress& progress) {
    if (progress.bCancelled)
        return CompilerText::c_strCancelling;
    if (progress.Stage == CompileProgress::EStage::ReadingCourse || progress.nTotal == 0)
        return CompilerText::c_strReadingCourse;
    const QString strDone = CompilerText::c_strWriting.arg(progress.nDone).arg(progress.nTotal);
    const QStringList films = progress.Films();
    if (films.isEmpty())
        return strDone;
    const QString strLectures =
        CompilerText::c_strLectures.arg(progress.nLecturesDone).arg(progress.nLectures);
    return strDone + CompilerText::c_strConverting.arg(strLectures, films.first());
}
