#pragma once

#include "foundation/Exceptions.h"

#include <QHash>
#include <QString>

/// A message with a place for an entry's name, of which only the beginning and what can be seen is shown: it
/// may be anything.
Torvane::CRunException Refusal(const QString& strMessage, const QString& strName);

/// The names in an archive from outside: each becomes a path below the template's folder, or the archive is
/// refused with Torvane::CRunException.
class CEntryNames {
public:
    /// The template's folder in its final place, native; the whole path must be one that the program can use.
    explicit CEntryNames(const QString& strTargetFolder);

    /// The entry's path with "/" between its names; empty for the archive's own root. Refused are names that
    /// lead out of the folder or that the program could not name itself, too long or too deep ones, and those
    /// that stand there already, also in other letter case.
    QString Accept(const QString& strName, bool bFolder);

    /// All files and folders so far, with those that stand only in the path of another.
    qsizetype Count() const { return m_known.size(); }

private:
    struct Known {
        QString strName;
        bool bFolder = false;
    };

    qsizetype m_nTargetBytes;
    /// By the name without letter case.
    QHash<QString, Known> m_known;
};
