#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

#include <gumbo.h>

/// Pages as trees, parsed by the rules that browsers keep. A page must pass IsTooDeep before it is parsed;
/// then its tree is safe to go down by recursion, unless it was made to hurt: IsDeep tells for certain.
namespace HtmlTree {

struct TreeDeleter {
    void operator()(GumboOutput* pOutput) const;
};
using Tree = std::unique_ptr<GumboOutput, TreeDeleter>;

/// The tree points into the bytes (UTF-8), which must outlive it.
Tree Parse(const QByteArray& html);

/// How deep tags could nest at most, by their count alone, is more than can be parsed: the parser frees its
/// tree by recursion, and its work grows with the square of the depth. Elements that authors leave open and
/// the parser closes by itself don't count. Very many tags in a great depth or behind much open formatting
/// can't be parsed either, nor can a tag with thousands of attributes.
bool IsTooDeep(const QByteArray& html);

/// Whether a tree is deeper than IsTooDeep lets pass: tags in a wrong order may nest more than they tell.
bool IsDeep(const GumboNode* pRoot);

bool IsElement(const GumboNode* pNode);
/// An element that has no end tag.
bool IsVoid(const QByteArray& name);
/// In lower case.
QByteArray TagName(const GumboElement& element);
/// Empty when the element has no such attribute.
QByteArray AttributeValue(const GumboElement& element, const char* szName);

/// The same as text, without the blanks around it.
QString AttributeText(const GumboElement& element, const char* szName);

const GumboNode* ChildAt(const GumboNode* pElement, unsigned i);
/// All text in and below a node, comments left out.
QString TextOf(const GumboNode* pNode);

/// Calls visit for each element below and including the node.
void ForEachElement(const GumboNode* pNode, const std::function<void(const GumboNode*)>& visit);

} // namespace HtmlTree
