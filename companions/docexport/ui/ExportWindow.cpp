#include "companions/docexport/ui/ExportWindow.h"

#include "companions/docexport/Texts.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

class CExportTask : public ITask {
public:
    CExportTask(const QString& strProjectPath, const PictureTakerMaker& pictures)
        : m_strProjectPath(strProjectPath), m_pictures(pictures) {}

    QString Complete(const QString& strTyped) const override {
        QString strTarget = strTyped.trimmed();
        if (!strTarget.isEmpty() && !strTarget.endsWith(".docx"_L1, Qt::CaseInsensitive))
            strTarget += ".docx"_L1;
        // A bare name goes beside the course.
        const QDir beside(QFileInfo(DefaultTarget(m_strProjectPath)).path());
        return QDir::cleanPath(beside.absoluteFilePath(strTarget));
    }

    QString Browse(QWidget* pParent, const QString& strPlace) override {
        QFileDialog dialog(pParent, DocText::c_strTitle, strPlace, DocText::c_strFilter);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(u"docx"_s);
        // The question comes when the export begins, whichever way the name was given.
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
    }

    QString FaultOf(const QString& strPlace) const override {
        return FaultOfTarget({m_strProjectPath, strPlace});
    }
    QString QuestionFor(const QString& strPlace) const override {
        return QFileInfo::exists(strPlace) ? DocText::c_strReplace.arg(strPlace) : QString();
    }

    void Prepare() override { m_progress.emplace(); }
    TaskOutcome Work(const QString& strPlace) override {
        m_strTarget = strPlace;
        return ExportDocument({m_strProjectPath, strPlace}, m_pictures, *m_progress);
    }

    TaskProgress Progress() const override {
        using EStage = DocProgress::EStage;
        const bool bMayCancel = !m_progress->bCancelled && m_progress->Stage != EStage::Saving;
        TaskProgress progress{DescribeProgress(*m_progress), 0, 0, bMayCancel};
        if (m_progress->Stage == EStage::ReadingNodes) {
            progress.nDone = m_progress->nNodes;
            progress.nTotal = m_progress->nTotal;
        } else if (m_progress->Stage == EStage::Converting && m_progress->nPieces > 1) {
            progress.nDone = m_progress->nConverted;
            progress.nTotal = m_progress->nPieces;
        } else if (m_progress->Stage == EStage::Numbering && m_progress->nLayouts > 1) {
            progress.nDone = m_progress->nLaidOut;
            progress.nTotal = m_progress->nLayouts;
        }
        return progress;
    }
    void Cancel() override { m_progress->bCancelled = true; }
    QString Result() const override { return m_strTarget; }

private:
    const QString m_strProjectPath;
    const PictureTakerMaker m_pictures;
    std::optional<DocProgress> m_progress{std::in_place};
    /// Written before anybody may ask for it.
    QString m_strTarget;
};

} // namespace

CExportWindow::CExportWindow(const QString& strProjectPath, const QString& strCourse,
                             const PictureTakerMaker& pictures)
    : CTaskWindow({DocText::c_strTitle, DocText::c_strIntroduction.arg(strCourse), DocText::c_strTarget,
                   DocText::c_strStart, DocText::c_strOpen, DocText::c_strProgress, DocText::c_strNotOpened},
                  std::make_unique<CExportTask>(strProjectPath, pictures), DefaultTarget(strProjectPath)) {
    setObjectName(u"CExportWindow"_s);
}
