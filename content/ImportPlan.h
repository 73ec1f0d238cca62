#pragma once

#include "foundation/FolderWalk.h"

#include <QList>
#include <QString>
#include <QStringList>

/// Which files an import takes: patterns separated by ";". "*.*" anywhere takes all. "*.doc" takes an
/// extension, ignoring case; any other piece is compared with an extension as it stands, so that an empty
/// piece takes the files without one.
class CImportFilter {
public:
    explicit CImportFilter(const QString& strPatterns);
    bool Takes(const QString& strName) const;

private:
    bool m_bAll = false;
    QStringList m_extensions;
};

/// A node that an import makes.
struct ImportEntry {
    /// Full, in backslash form.
    QString strPath;
    QString strTitle;
    bool bFolder = false;
    /// Among the entries; -1 for the node that is imported into.
    qsizetype nParent = -1;
    quint64 nSize = 0;
    /// A saved web page brings the folder of its files along.
    bool bFilesFolder = false;
};

struct ImportPlan {
    /// In the order in which they are made: parents before their children, siblings by the time of their
    /// creation and then by name.
    QList<ImportEntry> Entries;
    /// What can't be imported, and why, a line each with the path in native form: it is hidden, it can't be
    /// read or named, or its path is too long.
    QStringList LeftOut;
    void LeaveOut(const QString& strPath, const QString& strReason);
};

/// Looks through the folder with all below it, which must not be empty. Hidden entries are left out as well;
/// links to folders are not followed, and a folder ".files" goes with its page. Ends early when the filter,
/// which may be null, says so. Throws Torvane::CRunException when the folder itself can't be listed.
ImportPlan PlanDirectoryImport(const QString& strFolder, const CImportFilter& taken,
                               Torvane::File::IWalkFilter* pFilter = nullptr);

/// The path in at most so many code page bytes or a few more: its first component, "/...", and its end.
QString ShortenPath(const QString& strPath, qsizetype nBytes, QChar cSeparator);
