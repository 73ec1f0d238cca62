#pragma once

#include "editor/Replacements.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// Text work on a page so that it stands alone: which resources come into the page's folder, and what its
/// references become. Pure functions of text, lists and the file system; paths in backslash form.
namespace ResourceText {

/// One planned resource.
struct ResourceCopy {
    bool bCopy = false;
    bool bRemote = false;
    QString strSource;
    /// The local source as it is spelled on the disk. strSource is lower-cased, which on a disk that tells
    /// case could name another file; this is the one to open.
    QString strOpenPath;
    QString strName;
    QString strDest;
    QString strUrl;
};

/// The absolute references that the surface reports, in document order.
struct References {
    QStringList Images;
    QStringList Embeds;
    QStringList Anchors;
    /// The document's own URL in the form "file://Z:\…"; empty when unknown.
    QString strDocumentUrl;
};

struct PageFolders {
    /// The page's resource folder, with a trailing backslash.
    QString strResFolder;
    /// The course's node resource folder, with a trailing backslash.
    QString strNodeResourceFolder;
};

/// "…\res\" beside a page.
QString ResFolderOfPage(const QString& strPagePath);

/// The names for the resources of one save. Each is given once, and none stands in the folder yet.
class CResourceNames {
public:
    /// The folder is read when the first name is asked for.
    explicit CResourceNames(QString strFolder) : m_strFolder(std::move(strFolder)) {}
    /// "<time stamp>[<random number>]<the source's extension>".
    QString Make(const QString& strSource);

private:
    QString m_strFolder;
    /// Lower-cased. Empty until the folder has been read.
    std::optional<QSet<QString>> m_taken;
    /// What the names with an extension begin with.
    QHash<QString, QString> m_stems;
};

/// A name for a resource in the folder. pNames null: the bare time-stamp name.
QString MakeResourceName(const QString& strSource, const QString& strFolder, CResourceNames* pNames);

/// False when the source is a local file that doesn't exist: the reference stays as it is.
bool PlanResource(const QString& strSource, const PageFolders& folders, CResourceNames* pNames,
                  ResourceCopy& out);

/// What becomes of each reference, in the order in which the changes are to be made; fills copies.
QList<Replacement> PlanReplacements(const References& references, const PageFolders& folders,
                                    QList<ResourceCopy>& copies);

/// Takes out of a plan the resources that the text doesn't name by the reported reference, as one below a
/// <base>: nothing would refer to their copies.
void LeaveOutUnnamed(const QString& strHtml, QList<Replacement>& replacements, QList<ResourceCopy>& copies);

/// The native paths of the pictures and embeds, each once, that the text names by their local files and that
/// no plan takes, since their paths are too long.
QStringList FindTooLong(const QString& strHtml, const References& references);

/// Rewrites the references in the text and plans the copies: both of the above.
QString ProcessResources(const QString& strHtml, const References& references, const PageFolders& folders,
                         QList<ResourceCopy>& copies);

/// The bare names of the files in the resource folder that the text doesn't refer to, folders left out. A
/// name counts as referred to also when the text spells it in other case or with escapes.
QStringList FindGarbage(const QString& strHtml, const QString& strResFolder);

} // namespace ResourceText
