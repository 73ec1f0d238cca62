#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Text work on a page so that it stands alone: which resources come into the page's folder, and what its
/// references become. Pure functions of text, lists and the file system; paths in backslash form.
namespace ResourceText {

/// One planned resource.
struct ResourceCopy {
    bool bCopy = false;
    bool bRemote = false;
    QString strSource;
    /// The local source spelled as the page spells it. strSource is lower-cased, which on a disk that tells
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

/// A name for a resource in the folder. pNames null: the bare time-stamp name; otherwise the name holds a
/// random number in brackets and is neither in the list nor in the folder.
QString MakeResourceName(const QString& strSource, const QString& strFolder, const QStringList* pNames);

/// False when the source is a local file that doesn't exist: the reference stays as it is.
bool PlanResource(const QString& strSource, const PageFolders& folders, const QStringList* pNames,
                  ResourceCopy& out);

/// One change of the text: every occurrence of strFrom, telling case, becomes strTo.
struct Replacement {
    QString strFrom;
    QString strTo;
    /// Index of the planned resource that strTo names; -1 for a link.
    qsizetype nCopy = -1;
};

/// What becomes of each reference, in the order in which the changes are to be made; fills copies.
QList<Replacement> PlanReplacements(const References& references, const PageFolders& folders,
                                    QList<ResourceCopy>& copies);

/// The changes one after the other, each over the whole text.
QString ApplyReplacements(QString strHtml, const QList<Replacement>& replacements);

/// Rewrites the references in the text and plans the copies: both of the above.
QString ProcessResources(const QString& strHtml, const References& references, const PageFolders& folders,
                         QList<ResourceCopy>& copies);

/// The bare names of the files in the resource folder that the text doesn't refer to, folders left out. A
/// name counts as referred to also when the text spells it in other case or with escapes.
QStringList FindGarbage(const QString& strHtml, const QString& strResFolder);

} // namespace ResourceText
