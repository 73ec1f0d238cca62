#pragma once

#include <QString>

#include <functional>
#include <optional>

/// Work on the text of style sheets: only what "url()" and "@import" name is touched.
namespace CssText {

using Rewriter = std::function<std::optional<QString>(const QString& strReference)>;

/// The sheet with its references rewritten; nothing when none changed. Comments and other strings are passed
/// over, and references spelled with escapes are left as they are.
std::optional<QString> RewriteReferences(const QString& strSheet, const Rewriter& rewrite);

} // namespace CssText
