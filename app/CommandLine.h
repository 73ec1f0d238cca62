#pragma once

#include <QString>
#include <QStringList>

/// What the program was started with.
struct CommandLine {
    /// The project file to open, absolute, in backslash form; empty when none was named.
    QString strFile;
    bool bShowSplash = true;
};

/// Reads the arguments without the program's own name. The first that is no option is the file, in native or
/// in backslash form, relative to the current folder (native form). "--no-splash" keeps the splash away, "--"
/// ends the options; options that mean nothing here are passed over.
CommandLine ParseCommandLine(const QStringList& arguments, const QString& strCurrentFolder);
