#pragma once

#include "companions/compiler/SourceTree.h"
#include "foundation/PageAnchors.h"

#include <QString>

#include <mutex>
#include <unordered_map>

/// The fragments of references into the course, spelled as the pages that they lead to spell their anchors:
/// links are lower-cased by rule, and what reads the site tells letter case. Each page is read once. Any
/// thread may ask.
class CFragments {
public:
    explicit CFragments(const CSourceTree& tree) : m_tree(tree) {}

    struct Result {
        /// With its "#", ready to stand in an address.
        QString Text;
        /// The page has no such place.
        bool IsDead = false;
    };
    /// What stands in place of a fragment, given with its "#" or empty, behind a reference to a source file.
    /// It stays as it is where it leads to its place already, and where none can be found. Any place may be
    /// in a page that can't be read.
    Result Spelled(const QString& strSource, const QString& strFragment) const;

private:
    struct Page {
        PageAnchors::CNames Names;
        /// A script may make anchors that are not in the text, or the text is not known.
        bool MayHaveMore = false;
    };
    struct Entry {
        std::once_flag Once;
        Page Content;
    };
    Entry& EntryOf(const QString& strSource) const;
    const Page& PageOf(const QString& strSource) const;
    Page Read(const QString& strSource) const;
    QString SlideBeside(const QString& strSource, const QString& strFragment) const;

    const CSourceTree& m_tree;
    mutable std::mutex m_mutex;
    /// A page that is in stays where it is.
    mutable std::unordered_map<QString, Entry> m_pages;
};
