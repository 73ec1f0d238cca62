#pragma once

#include "companions/compiler/SourceTree.h"

#include <QHash>
#include <QString>

#include <optional>

/// A path in the site as an address: "%" escapes for what an address may not hold; Chinese stays as it is.
QString EncodeAddress(const QString& strPath);

/// The address that leads from a page in one folder of the site to a file of it. Both are relative to the
/// site's root; the root itself is the empty text.
QString RelativeAddress(const QString& strFromFolder, const QString& strToFile);

/// The folder of a relative name; empty for one in the root.
QString FolderOf(const QString& strName);

/// Whether an address may be offered to a visitor as a link out of the site.
bool IsOutsideAddress(const QString& strAddress);

/// Finds what the references of a page mean. A course is written on systems that don't tell letter case, and
/// its links are lower-cased by rule; the site must work on any server. So each reference into the course is
/// looked up, and written with the real name of what it found.
class CReferences {
public:
    /// strResourceFolder is the node resource folder in backslash form, as it stands in absolute references.
    CReferences(const CSourceTree& tree, const QString& strResourceFolder);

    /// References to a source file shall lead to this page of the site instead.
    void MapToPage(const QString& strSource, const QString& strPage) { m_pages.insert(strSource, strPage); }
    /// References to a node's folder shall lead to this page.
    void MapFolder(const QString& strFolder, const QString& strPage) {
        m_folderPages.insert(strFolder, strPage);
    }

    /// Where a page stands: in the course and in the site.
    struct Place {
        QString SourceFolder;
        QString SiteFolder;
    };

    enum class EFound { Unchanged, Rewritten, Missing };
    struct Result {
        EFound Found = EFound::Unchanged;
        QString Text;
    };

    /// What stands in place of a reference. Missing: it points into the course, but at nothing.
    Result Rewrite(const QString& strReference, const Place& place) const;

    /// The source file that a path stored in the book means ("N7\a.htm"); empty for none.
    QString FindStored(const QString& strPath) const;

private:
    std::optional<QString> TargetOf(const QString& strPath, const QString& strFolder) const;
    QString FindTarget(const QString& strName) const;
    /// A "file:" address or drive path below the resource folder, made relative to it.
    std::optional<QString> BelowResources(const QString& strPath) const;

    const CSourceTree& m_tree;
    QString m_strResourceFolder;
    QHash<QString, QString> m_pages;
    QHash<QString, QString> m_folderPages;
};
