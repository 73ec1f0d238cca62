// What shapes the tree. Each step writes the store and the node's folder first and changes the tree after it,
// so that a refused step leaves the tree as it was.
#include "content/BookTreeActions.h"
#include "content/CustomTitlesCommand.h"
#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "platform/base/SlowStep.h"

#include <QSet>

#include <algorithm>

namespace {

/// Whether the store took a change: one message serves for its refusal and its failure.
template <typename Change>
bool IsStored(Change change) {
    try {
        return change();
    } catch (const Torvane::CRunException&) {
        return false;
    }
}

} // namespace

// Adding.

void CBookTreeActions::AddNode() {
    const QModelIndex parent = m_selection.currentIndex().parent();
    StartRename(m_tree.Add(parent, NewTitle(m_tree.TakenBelow(parent))));
}

void CBookTreeActions::AddChild() {
    const QPersistentModelIndex parent(m_selection.currentIndex());
    if (!ConfirmChildBelowContent(parent))
        return;
    const QPersistentModelIndex added(m_tree.Add(parent, NewTitle(m_tree.TakenBelow(parent))));
    m_window.Expand(parent);
    StartRename(added);
}

bool CBookTreeActions::ConfirmChildBelowContent(const QPersistentModelIndex& line) {
    return HasChildren(line) || !m_tree.NodeOf(line)->HasContent() ||
           Confirm(ContentText::c_strChildBelowContent, line);
}

/// False when the person cancelled, or the line went.
bool CBookTreeActions::AddMany(const QPersistentModelIndex& parent) {
    const std::optional<QString> input = m_dialogs.AskTitles(NewTitle(m_tree.TakenBelow(parent)));
    if (!input || !parent.isValid() || !AddTitles(parent, SplitTitles(*input)))
        return false;
    if (HasChildren(parent))
        m_window.Expand(parent);
    return true;
}

bool CBookTreeActions::AddTitles(const QPersistentModelIndex& parent, const QStringList& titles) {
    CSlowStep step(m_people, ContentText::c_strAdding);
    QSet<QString> made;
    const TitleTaken before = m_tree.TakenBelow(parent);
    const TitleTaken taken = [&](const QString& strTitle) {
        return made.contains(strTitle) || before(strTitle);
    };
    for (qsizetype nTitle = 0; nTitle < titles.size(); ++nTitle) {
        const QString& strTitle = titles[nTitle];
        const QString strWarning = CheckNewTitle(strTitle, taken);
        if (strWarning.isEmpty()) {
            m_tree.Add(parent, strTitle);
            made.insert(strTitle);
        } else {
            m_people.Warn(strWarning);
            step.Pause();
        }
        const bool bGoOn = step.GoOn(nTitle + 1, titles.size());
        if (!parent.isValid())
            return false;
        if (!bGoOn)
            break;
    }
    return true;
}

void CBookTreeActions::AddManySiblings() {
    const QPersistentModelIndex parent(m_selection.currentIndex().parent());
    if (AddMany(parent) && HasChildren(parent))
        m_selection.Select(m_tree.index(m_tree.rowCount(parent) - 1, 0, parent));
}

void CBookTreeActions::AddManyChildren() {
    const QPersistentModelIndex parent(m_selection.currentIndex());
    if (ConfirmChildBelowContent(parent) && AddMany(parent) && HasChildren(parent))
        m_host.ShowNodeView(EViewKind::ChildrenList, m_tree.NodeOf(parent));
}

// Titles.

void CBookTreeActions::StartRename(const QPersistentModelIndex& line) {
    // A view that refuses to be left keeps the person where they are, and no title opens behind their back.
    if (m_selection.Select(line))
        m_window.EditTitle(line);
}

void CBookTreeActions::FinishRename(const QModelIndex& index, const std::optional<QString>& typed) {
    Guarded([&] {
        const QPersistentModelIndex line(index);
        Rename(line, typed.value_or(QString()));
        m_selection.Select(line);
    });
}

void CBookTreeActions::Rename(const QPersistentModelIndex& line, const QString& strTitle) {
    const QString strPresent = m_tree.NodeOf(line)->GetTitle();
    const RenameCheck check = CheckRename(strTitle, strPresent, [&](const QString& strAsked) {
        return m_tree.TakenBelow(line.parent(), line)(strAsked);
    });
    if (!check.strWarning.isEmpty())
        m_people.Warn(check.strWarning);
    else if (check.bStore)
        StoreTitle(line, strTitle);
}

void CBookTreeActions::StoreTitle(const QPersistentModelIndex& line, const QString& strTitle) {
    if (IsStored([&] { return m_tree.Rename(line, strTitle); }))
        ShowAgainWhereListed(line, line.parent());
    else
        m_people.Error(ContentText::c_strTitleNotStored);
}

void CBookTreeActions::SetCustomTitles() {
    RunCustomTitles(m_tree.GetCourse()->GetPaths(), m_dialogs, [this](qint32 nId, const QString& strTitle) {
        const QPersistentModelIndex line(m_tree.Find(nId));
        if (IsFixedItem(m_tree.LineOf(line)))
            return line.isValid();
        Rename(line, strTitle);
        return true;
    });
}

// Removing.

void CBookTreeActions::DeleteNode() {
    const QPersistentModelIndex line(m_selection.currentIndex());
    CBookNode& node = *m_tree.NodeOf(line);
    if ((HasChildren(line) || node.HasContent()) &&
        (!m_dialogs.ConfirmDeletion(DeletionListText(node.GetDescendants())) || !line.isValid()))
        return;
    if (!Confirm(ContentText::c_strDelete, line))
        return;
    Deletion deletion;
    {
        CSlowStep step(m_people, ContentText::c_strDeleting);
        deletion = node.Delete([&](int nDone, int nTotal) { return step.GoOn(nDone, nTotal); });
    }
    // Nobody closes the course while a step keeps the windows painted, so the line still stands.
    TakeAway(deletion.Gone);
    if (deletion.bFailed)
        m_people.Error(ContentText::c_strNotDeleted);
}

/// Takes the lines of what was deleted away; the selected one is gone, or some below it are.
void CBookTreeActions::TakeAway(const QList<qint32>& gone) {
    const QModelIndex selected = m_selection.currentIndex();
    if (!gone.contains(m_tree.IdOf(selected))) {
        m_tree.Forget(gone);
        ShowSelection();
        return;
    }
    const QPersistentModelIndex parent(selected.parent());
    const int nRow = selected.row();
    m_selection.Drop();
    m_tree.Forget(gone);
    // In a damaged store a node may have stood below what it hangs above.
    if (!parent.isValid())
        return m_selection.Force(m_tree.GetRoot());
    // The next line, or the one before, or the parent: what a tree does of itself. The view is asked for
    // leave when it is switched.
    const int nLeft = m_tree.rowCount(parent);
    m_selection.Force(nLeft == 0 ? QModelIndex(parent) : m_tree.index(std::min(nRow, nLeft - 1), 0, parent));
}

// Moving.

void CBookTreeActions::MoveNode(bool bUp) {
    const QPersistentModelIndex line(m_selection.currentIndex());
    if (line.row() == (bUp ? 0 : m_tree.rowCount(line.parent()) - 1)) {
        m_people.Notice(bUp ? ContentText::c_strFirstNode : ContentText::c_strLastNode);
        return;
    }
    if (!IsStored([&] { return m_tree.Move(line, bUp); }))
        m_people.Error(ContentText::c_strNotMoved);
}

bool CBookTreeActions::MayDrag(const QModelIndex& index) const {
    return !IsFixedItem(m_tree.LineOf(index));
}

bool CBookTreeActions::MayDrop(const QModelIndex& source, const QModelIndex& target) const {
    if (IsHeadItem(m_tree.LineOf(target)) || IsFixedItem(m_tree.LineOf(source)) || target == source.parent())
        return false;
    // Onto itself, or into its own branch.
    for (QModelIndex above = target; above.isValid(); above = above.parent()) {
        if (above == source)
            return false;
    }
    return true;
}

bool CBookTreeActions::ConfirmDrop(const QPersistentModelIndex& source, const QPersistentModelIndex& target) {
    if (m_tree.TakenBelow(target, source)(m_tree.NodeOf(source)->GetTitle())) {
        m_people.Warn(ContentText::c_strDropTitleTaken);
        return false;
    }
    // The course may close behind the question, and then both lines go.
    return ConfirmChildBelowContent(target) && source.isValid();
}

void CBookTreeActions::Drop(const QModelIndex& sourceIndex, const QModelIndex& targetIndex) {
    Guarded([&] {
        const QPersistentModelIndex source(sourceIndex);
        const QPersistentModelIndex target(targetIndex);
        if (!MayDrop(source, target))
            return;
        m_tree.Read(target);
        if (!ConfirmDrop(source, target))
            return;
        const QPersistentModelIndex parent(source.parent());
        if (!IsStored([&] { return m_tree.MoveBelow(source, target); })) {
            m_people.Error(ContentText::c_strNotMoved);
            return;
        }
        m_window.Expand(target);
        ShowAgainWhereListed(parent, target);
    });
}

void CBookTreeActions::ShowAgainWhereListed(const QModelIndex& one, const QModelIndex& other) {
    const QModelIndex selected = m_selection.currentIndex();
    const CBookNode* pNode = m_tree.NodeOf(selected);
    // A node with content shows that, and its page may be in the editor.
    if (pNode != nullptr && !pNode->HasContent() && (selected == one || selected == other))
        ShowSelection();
}
