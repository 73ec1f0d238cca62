#pragma once

#include <QByteArray>
#include <QString>

/// Makes the desktop open a kind of file with this program, for the person who runs it. What stood there for
/// the kind before, of an older version or of a program that has moved, is replaced.
namespace Platform {

struct FileType {
    /// Without its dot.
    QString strExtension;
    /// The system's name of the kind: ASCII letters, digits and "-".
    QString strName;
    /// What a person reads of such a file.
    QString strDescription;
};

struct ProgramEntry {
    QString strName;
    QString strComment;
    /// Backslash form.
    QString strPath;
    /// The icon in its sizes, "128-16.png" to "128-256.png" for "128". Backslash form, without "-16.png".
    QString strIconStem;
};

/// Writes what differs from what should stand. False when the person has no place for it or a part could not
/// be written, which does no harm.
bool RegisterFileType(const FileType& type, const ProgramEntry& program);

/// Has the desktop read its registrations anew when they are newer than what it read last. Waits for nothing.
void RefreshFileTypes(const FileType& type);

/// The texts of the registration, UTF-8.
namespace FileTypeTexts {

QByteArray MimeType(const FileType& type);
QByteArray MimePackage(const FileType& type, const QString& strIcon);
/// The program's path in native form.
QByteArray DesktopEntry(const FileType& type, const ProgramEntry& program, const QString& strNativePath,
                        const QString& strIcon);
/// The person's list of default programs with this one as the default for the type; what it says of other
/// types stays to the byte.
QByteArray WithDefaultProgram(const QByteArray& list, const QByteArray& mimeType, const QByteArray& entry);

} // namespace FileTypeTexts

} // namespace Platform
