#include "companions/common/ProjectArgument.h"
#include "companions/common/ui/Program.h"
#include "companions/docexport/DocExport.h"
#include "companions/docexport/Texts.h"
#include "companions/docexport/ui/ExportWindow.h"
#include "companions/docexport/ui/PictureFiles.h"
#include "platform/base/EndRequest.h"

#include <QApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <memory>
#include <thread>

namespace {

constexpr int c_nDone = 0;
constexpr int c_nFailed = 1;
constexpr char c_silent[] = "--silent";

bool IsAmong(int argc, char** argv, const char* szOption) {
    return std::any_of(argv + 1, argv + argc,
                       [=](const char* szArgument) { return qstrcmp(szArgument, szOption) == 0; });
}

PictureTaker TakerFor(const QString& strFolder) {
    auto pPictures = std::make_shared<CPictureFiles>(strFolder);
    return [pPictures](const QString& strPath, const std::function<bool()>& mayGoOn) {
        return pPictures->Take(strPath, mayGoOn);
    };
}

int RunSilently(QStringList arguments) {
    arguments.removeAll(QLatin1String(c_silent));
    if (arguments.isEmpty() || arguments.size() > 2) {
        CompanionProgram::SayFault(DocText::c_strUsage);
        return c_nFailed;
    }
    const QString strProject = ReadProjectArgument(arguments[0]);
    const QString strTarget =
        arguments.size() > 1 ? QFileInfo(arguments[1]).absoluteFilePath() : DefaultTarget(strProject);
    DocProgress progress;
    const Platform::CEndRequest end([&progress] { progress.bCancelled = true; });
    DocOutcome outcome;
    QEventLoop loop;
    std::thread worker([&] {
        outcome = ExportDocument({strProject, strTarget}, TakerFor, progress);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    if (outcome.End != DocOutcome::EEnd::Done) {
        CompanionProgram::SayFault(outcome.Text);
        return c_nFailed;
    }
    QTextStream out(stdout);
    for (const QString& strNote : outcome.Notes)
        out << strNote << '\n';
    out << outcome.Text << Qt::endl;
    return c_nDone;
}

int RunInWindow(const QStringList& arguments) {
    try {
        if (arguments.size() != 1)
            throw Torvane::CRunException(DocText::c_strHowToExport);
        const QString strProject = ReadProjectArgument(arguments[0]);
        CExportWindow window(strProject, NameOfCourse(strProject), TakerFor);
        const Platform::CEndRequest end([&window] { window.close(); });
        return window.exec() == QDialog::Accepted ? c_nDone : c_nFailed;
    } catch (const Torvane::CException& failure) {
        CompanionProgram::ShowFault(DocText::c_strTitle, failure.GetMessage());
        return c_nFailed;
    }
}

} // namespace

int main(int argc, char** argv) {
    if (IsAmong(argc, argv, "--help") || IsAmong(argc, argv, "-h")) {
        QTextStream(stdout) << DocText::c_strUsage << Qt::endl;
        return c_nDone;
    }
    if (IsAmong(argc, argv, c_silent) || !CompanionProgram::HasScreen()) {
        const QCoreApplication application(argc, argv);
        return RunSilently(QCoreApplication::arguments().mid(1));
    }
    const QApplication application(argc, argv);
    CompanionProgram::PrepareWindows();
    return RunInWindow(QCoreApplication::arguments().mid(1));
}
