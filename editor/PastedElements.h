#pragma once

#include "foundation/HtmlTree.h"

/// What the elements of a pasted text are, by their names in lower case.
namespace PastedHtml {

/// Empty for what is no element.
QByteArray NameOf(const GumboNode* pNode);
bool IsBlank(const GumboNode* pNode);
/// The only child that isn't blank, or null.
const GumboNode* OnlyChild(const GumboNode* pNode);

bool IsHeading(const QByteArray& name);
/// Elements that part paragraphs and mean nothing else.
bool IsDivision(const QByteArray& name);
/// Blocks that stay what they are.
bool IsKeptBlock(const QByteArray& name);
/// All within a table but the columns.
bool IsTablePart(const QByteArray& name);
bool IsBlock(const QByteArray& name);
/// Gone with all that they hold.
bool IsDropped(const GumboNode* pNode, const QByteArray& name);

} // namespace PastedHtml
