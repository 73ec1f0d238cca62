#include "companions/docexport/DocExport.h"

#include "companions/docexport/WordConverter.h"
#include "course/CoursePaths.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>
#include <exception>
#include <limits>

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

void PutInPlace(const QString& strMade, const QString& strTarget) {
    QByteArray document;
    if (const int nError =
            Platform::ReadFileBytes(QFile::encodeName(strMade), document, std::numeric_limits<qint64>::max()))
        throw CRunException(DocText::c_strCannotRead.arg(strMade, Platform::SystemErrorText(nError)));
    // Written beside, flushed, and renamed over the old one; a link that stands there is replaced itself.
    if (const int nError = Platform::ReplaceFileBytes(QFile::encodeName(strTarget), document))
        throw CRunException(DocText::c_strCannotWrite.arg(strTarget, Platform::SystemErrorText(nError)));
}

DocOutcome Export(const DocRequest& request, const PictureTakerMaker& pictures, DocProgress& progress) {
    if (const QString strFault = FaultOfTarget(request); !strFault.isEmpty())
        throw CRunException(strFault);
    const CSiteModel model(request.ProjectPath);
    const CSourceTree tree(Platform::ToNative(model.Paths().GetNodeResourceFolder(false)));
    const CSitePlan plan(model, tree);
    CWordConverter converter(progress);
    CCourseDocument document(plan, progress, pictures(converter.PictureFolder()));
    const auto written = document.Write([&converter](int nPiece) { return converter.PiecePath(nPiece); });
    const CWordConverter::Result made =
        converter.Make({model.Course(), model.Teacher(), document.Headings(), document.Colors(), written});
    progress.Stage = DocProgress::EStage::Saving;
    if (progress.bCancelled)
        throw CDocCancelled();
    PutInPlace(made.Path, request.TargetPath);
    QStringList notes = document.Notes();
    if (!made.HasPageNumbers)
        notes.prepend(DocText::c_strNoteNoPageNumbers);
    return {DocOutcome::EEnd::Done,
            DocText::c_strDone.arg(document.Headings().size())
                .arg(document.PictureCount())
                .arg(request.TargetPath),
            notes};
}

} // namespace

QString DefaultTarget(const QString& strProjectPath) {
    const QFileInfo project(Platform::ToNativeExact(strProjectPath));
    return project.path() + u'/' + project.completeBaseName() + u".docx"_s;
}

QString FaultOfTarget(const DocRequest& request) {
    const QString& strTarget = request.TargetPath;
    const QFileInfo target(strTarget);
    if (!strTarget.endsWith(".docx"_L1, Qt::CaseInsensitive) || target.fileName().size() <= 5)
        return DocText::c_strNotDocx.arg(strTarget);
    const QString strFolder = QFileInfo(target.path()).canonicalFilePath();
    if (strFolder.isEmpty())
        return DocText::c_strCannotWrite.arg(strTarget, Platform::SystemErrorText(ENOENT));
    // A large course takes minutes, after which it would be late to say so.
    if (!QFileInfo(strFolder).isWritable())
        return DocText::c_strCannotWrite.arg(
            strTarget, Platform::SystemErrorText(QStorageInfo(strFolder).isReadOnly() ? EROFS : EACCES));
    if (target.isDir())
        return DocText::c_strCannotWrite.arg(strTarget, Platform::SystemErrorText(EISDIR));
    const QString strData =
        QFileInfo(Platform::ToNative(CCoursePaths(request.ProjectPath).GetDataFolder(false)))
            .canonicalFilePath();
    const auto isInData = [&](const QString& strPlace) {
        return strPlace == strData || strPlace.startsWith(QString(strData + u'/'));
    };
    // What is there may be a link.
    if (!strData.isEmpty() && (isInData(strFolder) || isInData(target.canonicalFilePath())))
        return DocText::c_strForbiddenTarget.arg(strTarget);
    return QString();
}

QString NameOfCourse(const QString& strProjectPath) {
    return CSiteModel(strProjectPath).Course();
}

DocOutcome ExportDocument(const DocRequest& request, const PictureTakerMaker& pictures,
                          DocProgress& progress) {
    using EEnd = DocOutcome::EEnd;
    try {
        return Export(request, pictures, progress);
    } catch (const CDocCancelled& cancelled) {
        return {EEnd::Cancelled, cancelled.GetMessage(), {}};
    } catch (const Torvane::CException& failure) {
        return {EEnd::Failed, DocText::c_strFailed.arg(failure.GetMessage()), {}};
    } catch (const std::exception& failure) {
        const QString strWhat = DocText::c_strUnexpected.arg(QString::fromLocal8Bit(failure.what()));
        return {EEnd::Failed, DocText::c_strFailed.arg(strWhat), {}};
    }
}

QString DescribeProgress(const DocProgress& progress) {
    using EStage = DocProgress::EStage;
    if (progress.Stage == EStage::Saving)
        return DocText::c_strSaving;
    if (progress.bCancelled)
        return DocText::c_strCancelling;
    switch (progress.Stage) {
    case EStage::ReadingNodes:
        return DocText::c_strReadingNodes.arg(progress.nNodes).arg(progress.nTotal);
    case EStage::Converting:
        return progress.nPieces > 1
                   ? DocText::c_strConvertingPieces.arg(progress.nConverted).arg(progress.nPieces)
                   : DocText::c_strConverting;
    case EStage::Numbering:
        return progress.nLayouts > 1
                   ? DocText::c_strNumberingParts.arg(progress.nLaidOut).arg(progress.nLayouts)
                   : DocText::c_strNumbering;
    default:
        return DocText::c_strReadingCourse;
    }
}
