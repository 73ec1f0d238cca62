#pragma once

#include "foundation/FolderWalk.h"
#include "platform/base/FileCalls.h"

#include <QString>

/// The machinery under every walk. It keeps each folder of the way down open, so that whoever copies,
/// measures or deletes works by folder and name and no path is looked up twice.
namespace Torvane::File {

struct TreeFolder {
    /// With a trailing backslash.
    QString strPath;
    /// Its length in the code page.
    qsizetype nPathBytes = 0;
    /// The name in the parent; empty for the root of the walk.
    QByteArray name;
    TreeFolder* pParent = nullptr;
    int nDepth = 0;
    /// Not open when the folder can't be listed.
    Platform::CFolder Folder;
    int nOpenError = 0;
};

class ITreeVisitor {
public:
    virtual ~ITreeVisitor() = default;
    /// Before a folder below the root is entered; false leaves it out.
    virtual bool GoesInto(const TreeFolder&) { return true; }
    virtual void Enter(TreeFolder&) {}
    /// Whatever is no folder: files, links of every kind, devices.
    virtual void Entry(TreeFolder& folder, const Platform::CFolderEntry& entry) = 0;
    virtual void Leave(TreeFolder&) {}
    /// An entry that no path can name, see HasPath; a hidden one is not told of.
    virtual void PassOver(const TreeFolder&, const QByteArray& /*name*/) {}
};

struct TreeOptions {
    bool bRecursive = true;
    bool bSkipSpecial = true;
    /// By name, ignoring the case of ASCII letters, as the file systems list of which courses come; otherwise
    /// as they are found.
    bool bSorted = false;
    /// Whether the root of the walk may be a link to a folder.
    bool bFollowRoot = true;
    IWalkFilter* pFilter = nullptr;
};

void WalkTree(const QString& strFolder, ITreeVisitor& visitor, const TreeOptions& options);

/// The full path of an entry, backslash form.
QString EntryPath(const TreeFolder& folder, const QByteArray& name);

/// Whether a name can be part of a path: it is a text, and holds nothing that separates names in paths.
bool HasPath(const QByteArray& name);

/// How many code page bytes a path takes, given those of its folder.
qsizetype EntryPathBytes(qsizetype nFolderBytes, const QByteArray& name);

/// The state of what a plain file or a link to one holds; false for everything else.
bool GetPlainFile(const TreeFolder& folder, const Platform::CFolderEntry& entry, Platform::CFileState& state);

} // namespace Torvane::File
