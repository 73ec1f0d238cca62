#include "companions/compiler/ui/CompileWindow.h"

#include "companions/compiler/SiteCompiler.h"
#include "companions/compiler/Texts.h"

#include <QDir>
#include <QFileDialog>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

class CCompileTask : public ITask {
public:
    CCompileTask(const CompileRequest& request, const QString& strProposed)
        : m_request(request), m_strProposed(strProposed) {}

    QString Complete(const QString& strTyped) const override {
        // A bare name goes beside what is proposed; nothing at all means that itself.
        const QString strText = strTyped.trimmed();
        return OutputFolderFor(QDir(m_strProposed).absoluteFilePath(strText));
    }

    QString Browse(QWidget* pParent, const QString& strPlace) override {
        return QFileDialog::getExistingDirectory(pParent, CompilerText::c_strChooseFolder, strPlace);
    }

    QString FaultOf(const QString& strPlace) const override { return FaultOfOutput(RequestFor(strPlace)); }
    QString QuestionFor(const QString& strPlace) const override {
        return QDir(strPlace).exists() ? QString() : CompilerText::c_strMakeFolder.arg(strPlace);
    }

    void Prepare() override { m_progress.emplace(); }
    TaskOutcome Work(const QString& strPlace) override {
        return Compile(RequestFor(strPlace), *m_progress, &m_strStartPage);
    }

    TaskProgress Progress() const override {
        const bool bKnown = m_progress->Stage == CompileProgress::EStage::Writing;
        return {DescribeProgress(*m_progress), m_progress->nDone, bKnown ? m_progress->nTotal.load() : 0,
                !m_progress->bCancelled};
    }
    void Cancel() override { m_progress->bCancelled = true; }
    QString Result() const override { return m_strStartPage; }

private:
    CompileRequest RequestFor(const QString& strPlace) const {
        CompileRequest request = m_request;
        request.OutputFolder = strPlace;
        return request;
    }

    const CompileRequest m_request;
    const QString m_strProposed;
    std::optional<CompileProgress> m_progress{std::in_place};
    QString m_strStartPage;
};

QString IntroductionOf(ESiteForm form) {
    switch (form) {
    case ESiteForm::Html:
        return CompilerText::c_strIntroHtml;
    case ESiteForm::Classroom:
        return CompilerText::c_strIntroClassroom;
    default:
        return CompilerText::c_strIntroSite;
    }
}

FolderProposal Propose(const CompileRequest& request) {
    FolderProposal proposal{request.OutputFolder, {}};
    if (proposal.Folder.isEmpty())
        proposal.Folder = ProposedFolder(request.ProjectPath, &proposal.Remark);
    return proposal;
}

TaskTexts TextsFor(const CompileRequest& request, const QString& strCourse, const QString& strRemark) {
    QString strIntroduction = IntroductionOf(request.Form).arg(strCourse);
    if (!strRemark.isEmpty())
        strIntroduction += u'\n' + strRemark;
    return {CompilerText::c_strTitle,    strIntroduction,         CompilerText::c_strTarget,
            CompilerText::c_strStart,    CompilerText::c_strOpen, CompilerText::c_strProgress,
            CompilerText::c_strNotOpened};
}

} // namespace

CCompileWindow::CCompileWindow(const CompileRequest& request, const QString& strCourse)
    : CCompileWindow(request, strCourse, Propose(request)) {}

CCompileWindow::CCompileWindow(const CompileRequest& request, const QString& strCourse,
                               const FolderProposal& proposal)
    : CTaskWindow(TextsFor(request, strCourse, proposal.Remark),
                  std::make_unique<CCompileTask>(request, proposal.Folder), proposal.Folder) {
    setObjectName(u"CCompileWindow"_s);
}
