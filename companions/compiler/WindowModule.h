#pragma once

#include "companions/compiler/Console.h"

#include <QString>

/// The compiler's window with the toolkit that draws it, in a library of its own ("vorelcompilerwindow"): a
/// compile for a script need not load them.
constexpr char c_szWindowModule[] = "vorelcompilerwindow";

/// Its one function. Compiles in a window, or shows there what is wrong with the command line, unless
/// strFault is empty. Answers the exit code. No application object may exist.
using CompileInWindow = int (*)(int& argc, char** argv, const CompilerConsole::Options& options,
                                const QString& strFault);
constexpr char c_szCompileInWindow[] = "VorelCompileInWindow";
