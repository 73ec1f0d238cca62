#pragma once

#include "companions/compiler/Fragments.h"
#include "companions/compiler/SourceTree.h"
#include "foundation/Text.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

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

/// An address that a person typed, with "%" escapes for blanks and whatever else no address may hold.
QString EscapedAddress(const QString& strAddress);

/// Finds what the references of a page mean. A course is written on systems that don't tell letter case, and
/// its links are lower-cased by rule; the site must work on any server. So each reference into the course is
/// looked up, and written with the real name of what it found, and of the place in it.
class CReferences {
public:
    /// strResourceFolder is the node resource folder in backslash form, as it stands in absolute references.
    CReferences(const CSourceTree& tree, const QString& strResourceFolder);

    /// References to a node's folder shall lead to this page.
    void MapFolder(const QString& strFolder, const QString& strPage) {
        m_folderPages.insert(LowerAscii(strFolder), strPage);
    }

    /// Only what lies in these folders of the tree goes to the site by itself.
    void Publish(const QStringList& folders) {
        m_published = folders;
        m_isPublished = QSet<QString>(folders.begin(), folders.end());
    }
    const QStringList& Published() const { return m_published; }
    bool IsPublished(const QString& strSource) const {
        return m_isPublished.contains(strSource.left(strSource.indexOf(u'/')));
    }

    /// Where a page stands: in the course and in the site.
    struct Place {
        QString SourceFolder;
        QString SiteFolder;
        /// The page itself, for references within it; empty where there are none.
        QString Source = {};
        /// What must stand in place of the page's own base; empty where that may stay.
        QString Base = {};
    };

    enum class EFound { Unchanged, Rewritten, Missing };
    struct Result {
        EFound Found = EFound::Unchanged;
        /// In place of the reference when it is Rewritten.
        QString Text;
        /// What of it points into the course but at nothing: a file, or a place in a page that is there.
        QString Dead;
        /// Another source file whose content it was looked up in.
        QString ReadSource = {};
        /// The source file that it leads to, where that is not published.
        QString Stray = {};
    };

    /// Where the references of a page lead from that names a base; nothing where they leave the course.
    std::optional<Place> WithBase(const QString& strBase, const Place& place) const;

    /// What stands in place of a reference. Missing: there is no such file.
    Result Rewrite(const QString& strReference, const Place& place) const;

    /// The source file that a path stored in the book means ("N7\a.htm"); empty for none.
    QString FindStored(const QString& strPath) const;

    const CFragments& Fragments() const { return m_fragments; }

private:
    /// A reference taken apart; its fragment begins with "#".
    struct Parts {
        QString Path;
        QString Query;
        QString Fragment;
    };
    struct Target {
        /// Empty for a node's own page.
        QString Source;
        /// Relative to the site's root; empty when there is none.
        QString Page;
    };
    static Parts SplitAt(const QString& strReference, qsizetype nEndOfPath);
    static bool LeadsThere(const QString& strPath, const QString& strSiteFolder, const QString& strPage);
    Place WithBaseOnDisk(const QString& strPath, const Place& place) const;
    std::optional<Target> Find(const QString& strReference, const QString& strFolder, Parts& parts) const;
    std::optional<Target> TargetOf(const QString& strPath, const QString& strFolder) const;
    Target FindTarget(const QString& strName) const;
    /// A "file:" address or drive path below the resource folder, made relative to it.
    std::optional<QString> BelowResources(const QString& strPath) const;

    const CSourceTree& m_tree;
    CFragments m_fragments;
    QString m_strResourceFolder;
    QHash<QString, QString> m_folderPages;
    QStringList m_published;
    QSet<QString> m_isPublished;
};
