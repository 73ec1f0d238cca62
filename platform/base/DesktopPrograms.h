#pragma once

#include <QMimeType>
#include <QString>
#include <QStringList>

#include <optional>

/// The programs that the desktop's entries name, and which of them a media type's files are for.
namespace Platform {

struct DesktopProgram {
    /// The entry's file, native form.
    QString strEntry;
    QString strName;
    QString strIcon;
    /// The words of its command, field codes as they stand.
    QStringList command;
    /// The folder to start it in, native form; may be empty.
    QString strFolder;
    bool bTerminal = false;
};

/// The program for files of the type: the person's choice, the desktop's, the first that offers itself; then
/// the same for what the type is a kind of. An entry whose program isn't installed doesn't count. Of a
/// program with an action "Edit" that takes files, the command is that one's.
std::optional<DesktopProgram> FindDesktopProgram(const QMimeType& type);

/// What to start so that the program opens the file (native form): program and arguments. Where the command
/// has no place for a file it comes last.
QStringList CommandWithFile(const DesktopProgram& program, const QString& strFile);

} // namespace Platform
