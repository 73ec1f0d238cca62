#include "companions/compiler/WindowModule.h"

#include "companions/common/ui/Program.h"
#include "companions/compiler/SiteModel.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/ui/CompileWindow.h"
#include "foundation/Exceptions.h"

#include <QApplication>

namespace {

int Run(const CompileRequest& request) {
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

} // namespace

extern "C" Q_DECL_EXPORT int VorelCompileInWindow(int& argc, char** argv,
                                                  const CompilerConsole::Options& options,
                                                  const QString& strFault) {
    const QApplication application(argc, argv);
    CompanionProgram::PrepareWindows();
    if (strFault.isEmpty())
        return Run(options.Request);
    CompanionProgram::ShowFault(CompilerText::c_strTitle, strFault + u'\n' + CompilerText::c_strHowToCompile);
    return CompilerConsole::c_nBadCommand;
}
