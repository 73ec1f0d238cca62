#pragma once

#include "foundation/HtmlTree.h"

#include <QString>

#include <functional>
#include <optional>

/// Work on the text of HTML pages that other programs and people wrote. The pages are parsed by the rules
/// that browsers keep; what need not change stays as its author wrote it, character for character.
namespace HtmlText {

/// Called for each reference of a page; answers what shall stand in its place, or nothing to leave it.
using Rewriter = std::function<std::optional<QString>(const QString& strReference)>;

/// The page with its references rewritten, and nothing when no reference changed or when the page is nested
/// so deeply that it can't be parsed. strNewBase stands in place of the page's base then, unless it is empty.
std::optional<QString> RewriteReferences(const QString& strPage, const Rewriter& rewrite,
                                         const QString& strNewBase = {});

/// A page taken apart for a frame that has head and body of its own.
struct Fragment {
    /// Style sheets and style blocks, for the head.
    QString Head;
    /// What the body holds, well nested in itself: no tag of it reaches into what stands around it.
    QString Body;
    /// A template's words to the author stood in it, as they came; they are left out.
    bool HadHint = false;
};

/// What a template tells the author to do, as long as it stands as it came. An author who has written into it
/// gets it back.
bool IsHint(const GumboNode* pElement);

/// The address that the references of a page are relative to, where the page says so.
QString BaseOf(const QString& strPage);

/// Nothing when the page is nested too deeply, or so wrongly that it can't be kept within a frame.
std::optional<Fragment> TakeFragment(const QString& strPage, const Rewriter& rewrite);

} // namespace HtmlText
