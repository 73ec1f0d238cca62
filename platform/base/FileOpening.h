#pragma once

#include <QString>

/// Files in their own programs, by the desktop's associations. Paths are full, in backslash form; an
/// extension has its dot.
namespace Platform {

/// The name of what files with the extension are: a media type here, "application/msword". Empty when
/// unknown.
QString GetFileClass(const QString& strExtension);

/// The same for a person in the program's language, "Word 文档"; empty when unknown.
QString GetFileTypeName(const QString& strExtension);

/// The command line of the program that edits such files, with "%1" where the path (native form) comes. Empty
/// when no program does.
QString GetEditCommand(const QString& strExtension);

/// Opens a file in the program that edits it, or has the desktop ask for a program. Waits for nothing. False
/// when nothing could be started.
bool OpenWithVerb(const QString& strPath);

} // namespace Platform
