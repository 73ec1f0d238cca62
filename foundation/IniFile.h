#pragma once

#include <QList>
#include <QString>

/// INI files in the code page, shared with the companion programs. Section and key names match ignoring ASCII
/// case; a write replaces one key and keeps every other byte of the file. A file path is cut at 260 code page
/// bytes.

/// The value, of any length; the default when the file, section or key is missing. Blanks around the value
/// and one pair of quotes around it are taken away, as INI readers do.
QString ReadProfileString(const QString& strSection, const QString& strKey, const QString& strDefault,
                          const QString& strPath);

/// A decimal number; the default when the key or the file is missing.
qint32 ReadProfileInt(const QString& strSection, const QString& strKey, qint32 nDefault,
                      const QString& strPath);

/// Creates the file and the section when needed. The file is replaced as a whole or not at all. Throws
/// Torvane::CRunException with the text of the system's error. Line breaks in a value would forge keys; they
/// are written as blanks.
void WriteProfileString(const QString& strSection, const QString& strKey, const QString& strValue,
                        const QString& strPath);

/// The same for several keys in their order, in one writing of the file.
struct ProfileEntry {
    QString strSection;
    QString strKey;
    QString strValue;
};
void WriteProfileStrings(const QList<ProfileEntry>& entries, const QString& strPath);
