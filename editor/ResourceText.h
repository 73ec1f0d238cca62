#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// Text work on a page so that it stands alone: which resources come into the page's folder, and what its
/// references become. Pure functions of text, lists and the file system; paths in backslash form.
namespace ResourceText {

/// One planned resource.
struct ResourceCopy {
    bool bCopy = false;
    bool bRemote = false;
    QString strSource;
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

/// The same conversions as AddressToPath and PathToAddress of the floor below, under the editor's names.
QString FileUrlToPath(const QString& strUrl);
QString PathToFileUrl(const QString& strPath);
bool IsLocalRef(const QString& strText);
QString MakeRelativeUrl(const QString& strUrl, const QString& strBaseFolder);

/// A name for a resource in the folder. pNames null: the bare time-stamp name.
QString MakeResourceName(const QString& strSource, const QString& strFolder, const QStringList* pNames);

/// False when the source is a local file that doesn't exist: the reference stays as it is.
bool PlanResource(const QString& strSource, const PageFolders& folders, const QStringList* pNames,
                  ResourceCopy& out);

/// Rewrites the references in the text and plans the copies.
QString ProcessResources(const QString& strHtml, const References& references, const PageFolders& folders,
                         QList<ResourceCopy>& copies);

} // namespace ResourceText
