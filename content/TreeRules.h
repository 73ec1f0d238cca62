#pragma once

#include "course/BookDatabase.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>

/// The rules of the book tree's commands, apart from its window.

/// What a line of the tree stands for. School and course are headings above the root, and no nodes.
enum class ETreeLine { None, School, Course, Root, Node };

/// No line, or a heading.
bool IsHeadItem(ETreeLine line);
/// A line that no command moves, renames or deletes: a heading or the root.
bool IsFixedItem(ETreeLine line);

/// What the rules look at: the selected line, its node's type where it is a node, and whether the tree shows
/// a course at all.
struct TreeSelection {
    ETreeLine Line = ETreeLine::None;
    qint32 Type = NodeType::c_nEmpty;
    bool bCourseOpen = false;
};

/// The images of lines: in the tree's own order, and as the delivered data names them.
namespace TreeImage {
inline constexpr int c_nSchool = 0;
inline constexpr int c_nCourse = 1;
inline constexpr int c_nRoot = 2;
inline constexpr int c_nCollapsed = 3;
inline constexpr int c_nExpanded = 4;
inline constexpr int c_nLeaf = 5;
inline constexpr int c_nImages = 6;
inline constexpr std::array<int, c_nImages> c_resources{136, 139, 140, 141, 339, 142};
/// Where a branch looks the same open and closed: a dialog that only chooses a node.
inline constexpr std::array<int, c_nImages> c_choiceResources{136, 139, 140, 326, 326, 345};
/// The image of a line.
int Of(ETreeLine line, bool bHasChildren, bool bExpanded);
} // namespace TreeImage

/// A title as it is shown in one line: line ends and other control characters are blanks there.
QString OneLine(const QString& strTitle);

/// Answers whether a title is taken among the siblings in question.
using TitleTaken = std::function<bool(const QString&)>;

/// "新建栏目", or with the first number from 2 on that is free.
QString NewTitle(const TitleTaken& taken);

/// The titles of an input for several nodes: split at commas of either width, trimmed, empty ones left out.
QStringList SplitTitles(const QString& strInput);

/// The warning that keeps a title of such an input from being made; empty when it may be. The length comes
/// first, the clash second.
QString CheckNewTitle(const QString& strTitle, const TitleTaken& taken);

struct RenameCheck {
    /// The title is to be stored.
    bool bStore = false;
    /// What to warn of; empty for nothing.
    QString strWarning;
};

/// The checks of a changed title against the siblings other than the node itself. The clash comes first, the
/// length second. A cancelled edit is an empty text.
RenameCheck CheckRename(const QString& strNew, const QString& strPresent, const TitleTaken& taken);

/// A name for a folder that is made from a title.
QString FolderNameOf(const QString& strTitle);

/// The list of titles in the confirmation of a deletion.
QString DeletionListText(const QList<NodeHeader>& descendants);
