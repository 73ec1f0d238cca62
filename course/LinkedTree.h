#pragma once

#include <QList>

#include <functional>
#include <optional>

/// A line of a tree as our text files write it: the numbers of its first child and of its next sibling,
/// negative for none.
struct TreeLinks {
    qint32 nFirstChild = -1;
    qint32 nNextSibling = -1;
};

/// Is given a line and its parent. What it sets as the parent of the line's own children has them visited
/// next; false ends the walk.
using TreeVisit = std::function<bool(qint32 nLine, qint32 nParent, std::optional<qint32>& below)>;

/// Visits a line, what hangs below it, and then its next sibling, on from the first. False as soon as a visit
/// says so, a number leads out of the list or in a circle, or the walk takes more than 100,000 steps.
bool WalkLinkedTree(const QList<TreeLinks>& lines, qint32 nFirst, qint32 nParent, const TreeVisit& visit);
