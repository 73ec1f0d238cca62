#include "companions/common/Program.h"
#include "companions/compiler/Console.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/WindowModule.h"
#include "foundation/Exceptions.h"
#include "platform/base/Module.h"

#include <QCoreApplication>
#include <QTextStream>

#include <malloc.h>

namespace {

/// The part with the windows; null where there is no display, or where the program stands without that part.
CompileInWindow LoadWindows(int& argc, char** argv) {
    if (!CompanionProgram::HasScreen())
        return nullptr;
    // Gone again before the one with windows is made.
    const QCoreApplication application(argc, argv);
    Platform::CModule module(QString::fromLatin1(c_szWindowModule));
    if (!module.IsThere())
        return nullptr;
    const auto pWindows = reinterpret_cast<CompileInWindow>(module.Load(c_szCompileInWindow));
    if (!pWindows)
        CompanionProgram::SayFault(CompilerText::c_strNoWindows.arg(module.Reason()));
    return pWindows;
}

int RunWithoutWindows(const CompilerConsole::Options& options, const QString& strFault) {
    if (options.bHelp) {
        QTextStream(stdout) << CompilerText::c_strUsage << Qt::endl;
        return CompilerConsole::c_nDone;
    }
    if (strFault.isEmpty())
        return CompilerConsole::Run(options);
    CompanionProgram::SayFault(strFault + u'\n' + CompilerText::c_strUsage);
    return CompilerConsole::c_nBadCommand;
}

} // namespace

int main(int argc, char** argv) {
    // Else the heaps of the threads grow by a call to the system for every few pages, in which all threads
    // wait.
    constexpr int c_nHeapStep = 16 << 20;
    mallopt(M_TOP_PAD, c_nHeapStep);
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
    if (!options.bHelp && !arguments.contains(QStringLiteral("--silent"))) {
        if (const CompileInWindow pWindows = LoadWindows(argc, argv))
            return pWindows(argc, argv, options, strFault);
    }
    const QCoreApplication application(argc, argv);
    return RunWithoutWindows(options, strFault);
}
