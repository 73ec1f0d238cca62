#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace Platform {

/// Splits a command line into program and arguments as the programs' own command lines are read: blanks
/// separate, double quotes join, a backslash before a double quote makes it plain.
QStringList SplitCommandLine(const QString& strCommandLine);

/// Starts the program of a command line and waits for its end with no time limit, calling whileWaiting every
/// few milliseconds. The program's path is in backslash form; on a platform without the ending ".exe" it is
/// looked up without it, and arguments are passed in native form when they begin with a drive. False when it
/// could not start.
bool RunAndWait(const QString& strCommandLine, const std::function<void()>& whileWaiting);

/// Starts a program (a name on the search path or a native path) with its arguments as they stand, in a
/// session of its own and with no streams of this one. It starts in the folder (native form), else in the
/// person's home. Waits for nothing. False when it could not start.
bool StartQuietly(const QStringList& command, const QString& strFolder = {});

/// Whether a program stands at the path (backslash form), looked up with and without ".exe" as when it is
/// started.
bool IsProgram(const QString& strPath);

/// The running program's own path, in backslash form.
QString OwnProgramPath();

} // namespace Platform
