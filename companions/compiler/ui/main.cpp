#include "companions/common/ui/Program.h"
#include "companions/compiler/Console.h"
#include "companions/compiler/SiteModel.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/ui/CompileWindow.h"
#include "foundation/Exceptions.h"

#include <QApplication>
#include <QTextStream>

namespace {

int RunInWindow(const CompileRequest& request) {
    try {
        CCompileWindow window(request, CSiteModel(request.ProjectPath).Course());
        window.exec();
        switch (window.GetEnd()) {
        case TaskOutcome::EEnd::Done:
            return CompilerConsole::c_nDone;
        case TaskOutcome::EEnd::Cancelled:
            return CompilerConsole::c_nCancelled;
        default:
            return CompilerConsole::c_nFailed;
        }
    } catch (const Torvane::CException& failure) {
        CompanionProgram::ShowFault(CompilerText::c_strTitle,
                                    CompilerText::c_strFailed.arg(failure.GetMessage()));
        return CompilerConsole::c_nFailed;
    }
}

int RunWithWindows(int& argc, char** argv, const CompilerConsole::Options& options, const QString& strFault) {
    const QApplication application(argc, argv);
    CompanionProgram::PrepareWindows();
    if (strFault.isEmpty())
        return RunInWindow(options.Request);
    CompanionProgram::ShowFault(CompilerText::c_strTitle, strFault + u'\n' + CompilerText::c_strUsage);
    return CompilerConsole::c_nBadCommand;
}

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    CompilerConsole::Options options;
    QString strFault;
    try {
        options = CompilerConsole::ReadOptions(arguments);
    } catch (const Torvane::CException& failure) {
        strFault = failure.GetMessage();
    }
    const bool bWindow = !options.bSilent && !options.bHelp && CompanionProgram::HasScreen();
    if (bWindow && !arguments.contains(QStringLiteral("--silent")))
        return RunWithWindows(argc, argv, options, strFault);
    const QCoreApplication application(argc, argv);
    if (options.bHelp)
        QTextStream(stdout) << CompilerText::c_strUsage << Qt::endl;
    else if (strFault.isEmpty())
        return CompilerConsole::Run(options);
    else
        CompanionProgram::SayFault(strFault + u'\n' + CompilerText::c_strUsage);
    return options.bHelp ? CompilerConsole::c_nDone : CompilerConsole::c_nBadCommand;
}
