#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

class QProcess;

namespace Platform {

/// Splits a command line into program and arguments as the programs' own command lines are read: blanks
/// separate, double quotes join, a backslash before a double quote makes it plain.
QStringList SplitCommandLine(const QString& strCommandLine);

/// Starts the program of a command line and waits for its end with no time limit, calling whileWaiting every
/// few milliseconds. The program's path is in backslash form; on a platform without the ending ".exe" it is
/// looked up without it, and arguments are passed in native form when they begin with a drive. Behind a
/// program that is not quoted, tabs part arguments that may hold blanks. False when it could not start.
bool RunAndWait(const QString& strCommandLine, const std::function<void()>& whileWaiting);

/// Starts a program (a name on the search path or a native path) with its arguments as they stand, in a
/// session of its own and with no streams of this one. It starts in the folder (native form), else in the
/// person's home. Waits for nothing. False when it could not start.
bool StartQuietly(const QStringList& command, const QString& strFolder = {});

/// A program of the system to be run without a person: full native path, and arguments as they stand.
struct CProgramCall {
    QString strProgram;
    QStringList arguments;
    /// Joined to the environment; a value that is null takes the name out of it.
    QMap<QString, QString> environment;
    /// How many bytes of memory each process may take; 0 for any number.
    quint64 nMaxBytes = 0;
    /// How many bytes a file may have that one writes; 0 for any number.
    quint64 nMaxFileBytes = 0;
};

enum class EProgramEnd { Ended, NotStarted, Stopped };

/// Runs it and waits for its end, asking mayGoOn every few milliseconds: false ends it at once with every
/// program that it started itself. What it says goes nowhere, but for the end of what stands on its error
/// stream, some kilobytes, for whom asks. Any thread may call.
EProgramEnd RunGroup(const CProgramCall& call, const std::function<bool()>& mayGoOn,
                     QByteArray* pFaults = nullptr);

/// Has a program that is yet to be started told to end when this one does, however it does. The thread that
/// starts it must live as long as the program runs.
void EndWithUs(QProcess& process);

/// The native path of a program that stands where this system keeps programs; empty for none.
QString FindSystemProgram(const QString& strName);

/// Whether a program stands at the path (backslash form), looked up with and without ".exe" as when it is
/// started.
bool IsProgram(const QString& strPath);

/// The running program's own path, in backslash form.
QString OwnProgramPath();

} // namespace Platform
