#pragma once

#include "content/BookNode.h"
#include "content/TreeRules.h"

#include <QAbstractItemModel>
#include <QHash>

#include <array>
#include <memory>
#include <vector>

/// The open course as a tree of lines: the school, the course, and the root with all nodes below it. A model
/// over the store that reads no more than is needed: the numbers of one level beyond what was ever opened,
/// and the title of a line that is looked at. Each change goes to the store and the node's folder first and
/// to the lines after it, so that a refused change leaves the tree as it was. Failures of the store are
/// Torvane::CRunException.
///
/// A store may be damaged: rows that lead back into the tree, or stand in it twice, are left out, and the
/// order of siblings is always the store's.
class CBookTree : public QAbstractItemModel {
public:
    explicit CBookTree(QObject* pParent = nullptr);
    ~CBookTree() override;

    /// Reads the course's root with two levels below it. The course must outlive the tree's lines. Throws,
    /// with an empty tree, when the store can't be read.
    void Load(CCourse& course);
    /// Frees all lines and nodes.
    void Clear();
    /// Null between Clear and Load.
    CCourse* GetCourse() const { return m_pCourse; }
    /// The course's name and its teacher as they are now.
    void ShowCourseInfo();

    QModelIndex GetRoot() const;
    ETreeLine LineOf(const QModelIndex& index) const;
    /// -1 for no line and for a heading.
    qint32 IdOf(const QModelIndex& index) const;
    /// Null for no line and for a heading. Lives until Clear, even when its line goes: a view may show it.
    /// Throws when the store can't be read, the first time that it is asked for.
    CBookNode* NodeOf(const QModelIndex& index) const;
    /// Among the lines read so far.
    QModelIndex Find(qint32 nId) const;
    /// Reads the way down to the node where it must; no line when none leads there. Throws when there is no
    /// such node.
    QModelIndex Reveal(qint32 nId);
    /// Reads a line's children where a failure has left them unread.
    void Read(const QModelIndex& index);
    /// Reads a line's children anew, where the store has changed behind the tree's back, and theirs.
    void Reload(const QModelIndex& index);
    /// Adds the lines of children that came behind the tree's back; those that stand stay open as they are.
    void ReadNew(const QModelIndex& index);
    /// Reads the children of each child where they have not been read: called when a line opens.
    void LoadAhead(const QModelIndex& index);
    /// Makes all lines ready for a search: a title is read when it is first looked at.
    void ReadAllTitles() const;
    /// The titles below a line, but for one line's.
    TitleTaken TakenBelow(const QModelIndex& parent, const QModelIndex& except = {}) const;

    /// The new node's line, the last below the parent. The title is not checked.
    QModelIndex Add(const QModelIndex& parent, const QString& strTitle);
    /// False when the store refused.
    bool Rename(const QModelIndex& index, const QString& strTitle);
    bool Move(const QModelIndex& index, bool bUp);
    /// As the first child of the target, which must neither lie below it nor be its parent.
    bool MoveBelow(const QModelIndex& index, const QModelIndex& target);
    /// Takes the lines of deleted nodes away, with all below them.
    void Forget(const QList<qint32>& ids);

    QModelIndex index(int nRow, int nColumn, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Line;
    using Lines = std::vector<Line*>;

    Line* At(const QModelIndex& index) const;
    QModelIndex IndexOf(const Line& line) const;
    Line& AddTopLine(ETreeLine kind, const QString& strText);
    CBookDatabase& Store() const;
    CBookNode& Node(Line& line) const;
    void ReadNodes(const Line& parent) const;
    bool IsBehind(const Line& line, const Line& other) const;
    /// Lines behind the parent's own for those nodes that the tree does not hold yet.
    Lines MakeLines(Line& parent, const QList<qint32>& ids);
    void Hang(Line& parent, const Lines& lines);
    void LoadChildren(Line& line);
    void RemoveRows(Line& parent, int nFirst, int nLast);
    /// Brings the children into the store's order.
    void Arrange(Line& parent);
    void MoveRow(Line& from, int nFrom, Line& to, int nTo);

    CCourse* m_pCourse = nullptr;
    Lines m_top;
    std::array<QString, 3> m_topTexts;
    QHash<qint32, Line*> m_lines;
    /// Where the lines and their nodes lie until Clear, those that have left the tree too. A block holds what
    /// was read in one go, and keeps its place in memory.
    std::vector<std::vector<Line>> m_blocks;
};
