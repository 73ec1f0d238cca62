#pragma once

#include <QString>

#include <optional>

/// What the views that only show a node say about it.
namespace DisplayRules {

/// A child's line in the list of children.
struct ChildRow {
    /// 0 for a folder, 1 for a node without children.
    int nImage;
    QString strType;
};
ChildRow RowOfChild(qint32 nType, bool bHasChildren);

struct Prompt {
    QString strText;
    /// Whether the refresh button shows; none leaves it as it is.
    std::optional<bool> bButton;
};
Prompt PromptOf(int nCode);

/// How a node's content opens in a window of its own.
enum class EWindowForm { Normal, Maximised, FullScreen };
/// None for 0: the content shows in the right-hand pane.
std::optional<EWindowForm> WindowFormOf(qint32 nOpenType);

} // namespace DisplayRules
