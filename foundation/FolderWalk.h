#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A recursive walk through a folder, on which copying, deleting and measuring are built.
namespace Torvane::File {

/// What a listing tells of one entry.
struct FindRecord {
    QString strName;
    quint64 nSize = 0;
    bool bFolder = false;
    /// Hidden, system or temporary; on a platform without such bits a name with a leading dot.
    bool bSpecial = false;
};

class IFileVisitor {
public:
    virtual ~IFileVisitor() = default;
    virtual void Visit(const QString& strPath, const FindRecord& record) = 0;
};

class IFolderVisitor {
public:
    virtual ~IFolderVisitor() = default;
    /// strPath has its trailing backslash.
    virtual void Visit(const QString& strPath) = 0;
};

class IWalkFilter {
public:
    virtual ~IWalkFilter() = default;
    /// True stops the walk at once. Asked before each entry, and by a copy within large files too, of which
    /// it leaves nothing then.
    virtual bool Cancelled() = 0;
    virtual bool AcceptFile(const QString& strPath) = 0;
    virtual bool AcceptFolder(const QString& strPath) = 0;
};

/// Null visitors and a null filter are allowed. Folders below the first are always walked with bSkipSpecial
/// on, whatever the caller passed. The order is by name, ignoring the case of ASCII letters. Files are plain
/// files and symbolic links to them; links to folders are never walked into, and those, dangling links,
/// devices and names that are no text are passed over.
void WalkFolder(const QString& strFolder, IFileVisitor* pFiles, IFolderVisitor* pEnter,
                IFolderVisitor* pLeave, bool bRecursive, IWalkFilter* pFilter, bool bSkipSpecial);

/// An entry of one folder.
struct FolderEntry {
    QString strName;
    bool bFolder = false;
    quint64 nSize = 0;
    /// When it was created, in nanoseconds since 1970.
    qint64 nBorn = 0;
    /// A name that is no text, here spelled as far as it goes: the entry can't be named, and so not opened.
    bool bNoText = false;
};

/// What stands directly in a folder: plain files, links to such, and folders, in no order. Hidden entries,
/// links to folders, dangling links and devices are left out; the names of the hidden ones come into the last
/// argument, if it isn't null. False when it can't be listed. Returns early when the filter, which may be
/// null, says so.
bool ListFolder(const QString& strFolder, QList<FolderEntry>& entries, IWalkFilter* pFilter = nullptr,
                QStringList* pHidden = nullptr);

} // namespace Torvane::File
