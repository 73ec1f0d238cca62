#pragma once

#include "foundation/HtmlTree.h"

#include <optional>

/// Lists that an office program writes as paragraphs.
namespace PastedHtml {

/// A paragraph of an office program that is an item of a list.
struct OfficeItem {
    const GumboNode* pNode = nullptr;
    int nLevel = 1;
    bool bOrdered = false;
    /// Behind which number or letter it stands; 0 for none.
    int nNumber = 0;
    QChar cType;
};

/// No value where the paragraph is none of a list, or where its label is one that no list of a page has: it
/// then stays a paragraph, and its label a text.
std::optional<OfficeItem> ReadOfficeItem(const GumboNode* pNode);

} // namespace PastedHtml
