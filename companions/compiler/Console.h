#pragma once

#include "companions/compiler/CompileRequest.h"

#include <QStringList>

/// The compiler without a window, for scripts: how far it is and what went wrong stand on the error stream,
/// the report on the output.
namespace CompilerConsole {

/// How the program ends.
enum EExit { c_nDone = 0, c_nFailed = 1, c_nBadCommand = 2, c_nCancelled = 3 };

struct Options {
    bool bSilent = false;
    bool bHelp = false;
    CompileRequest Request;
};

/// What the command line asks for, without the program's name. Throws Torvane::CRunException with a message.
Options ReadOptions(const QStringList& arguments);

/// Compiles and answers how the program ends. An interrupt of the terminal and a request to end cancel it.
int Run(const Options& options);

} // namespace CompilerConsole
