#include "course/LinkedTree.h"

#include <vector>

namespace {

/// Lines may share what lies below them, so that numbers which lead in no circle may still unfold without
/// measure.
constexpr qsizetype c_nMaxSteps = 100'000;

/// One parent whose children are being visited: the next, and those on the way to it.
struct Level {
    qint32 nParent;
    qint32 nNext;
    std::vector<qint32> used;
};

} // namespace

// With a stack of its own, since a list may lead as deep as it is long.
bool WalkLinkedTree(const QList<TreeLinks>& lines, qint32 nFirst, qint32 nParent, const TreeVisit& visit) {
    QList<bool> onRoad(lines.size(), false);
    qsizetype nSteps = 0;
    std::vector<Level> levels{{nParent, nFirst, {}}};
    while (!levels.empty()) {
        Level& level = levels.back();
        const qint32 nLine = level.nNext;
        if (nLine < 0) {
            for (const qint32 nUsed : level.used)
                onRoad[nUsed] = false;
            levels.pop_back();
            continue;
        }
        if (nLine >= lines.size() || onRoad[nLine] || ++nSteps > c_nMaxSteps)
            return false;
        onRoad[nLine] = true;
        level.used.push_back(nLine);
        level.nNext = lines[nLine].nNextSibling;
        std::optional<qint32> below;
        if (!visit(nLine, level.nParent, below))
            return false;
        if (below)
            levels.push_back({*below, lines[nLine].nFirstChild, {}});
    }
    return true;
}
