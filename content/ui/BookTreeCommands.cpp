// The commands of the tree. Each writes the store and the node's folder first and changes the tree after it,
// so that a refused step leaves the tree as it was.
#include "content/Texts.h"
#include "content/ui/BookTreeView.h"
#include "content/ui/TreeDialogs.h"
#include "content/ui/TreeSelectionModel.h"
#include "foundation/Exceptions.h"

using Torvane::Dialog::MFC::BoxAnswer;

bool CBookTreeView::IsCommandEnabled(int nCommand) const {
    const TreeSelection selection = Selection();
    return !TreeCommand::IsHeldBack(nCommand, selection) &&
           TreeCommand::IsEnabled(nCommand, selection, m_host.IsEditorShowing());
}

bool CBookTreeView::RunCommand(int nCommand) {
    const TreeCommand::EAction action = TreeCommand::ActionOf(nCommand);
    const TreeSelection selection = Selection();
    if (action == TreeCommand::EAction::None || TreeCommand::IsHeldBack(nCommand, selection))
        return false;
    if (m_pCourse != nullptr && TreeCommand::IsActionAllowed(action, selection.Line))
        Guarded([&] { RunAction(action); });
    return true;
}

void CBookTreeView::RunAction(TreeCommand::EAction action) {
    using TreeCommand::EAction;
    switch (action) {
    case EAction::AddNode:
        return AddNode();
    case EAction::AddChild:
        return AddChild();
    case EAction::AddMany:
        return AddManySiblings();
    case EAction::AddManyChildren:
        return AddManyChildren();
    case EAction::Delete:
        return DeleteNode();
    case EAction::Rename:
        return StartRename(SelectedItem());
    case EAction::CreateContent:
        return CreateContent();
    case EAction::EditContent:
        return EditContent();
    case EAction::MoveUp:
        return MoveNode(true);
    case EAction::MoveDown:
        return MoveNode(false);
    case EAction::ClearContent:
        return ClearContent();
    case EAction::None:
    case EAction::Export:
    case EAction::Import:
    case EAction::SetOpenType:
        return;
    }
}

bool CBookTreeView::Confirm(const QString& strQuestion) {
    const QPersistentModelIndex line(currentIndex());
    return m_people.Question(strQuestion) == BoxAnswer::Ok && line.isValid();
}

// Adding.

QTreeWidgetItem* CBookTreeView::AddBelow(QTreeWidgetItem* pParent, const QString& strTitle) {
    QTreeWidgetItem* pItem = MakeItem(NodeOf(pParent).AddChild(strTitle));
    pParent->addChild(pItem);
    return pItem;
}

void CBookTreeView::AddNode() {
    QTreeWidgetItem* pParent = SelectedItem()->parent();
    StartRename(AddBelow(pParent, NewTitle(TakenBelow(pParent))));
}

void CBookTreeView::AddChild() {
    QTreeWidgetItem* pParent = SelectedItem();
    if (!ConfirmChildBelowContent(pParent))
        return;
    QTreeWidgetItem* pItem = AddBelow(pParent, NewTitle(TakenBelow(pParent)));
    UpdateImage(pParent);
    pParent->setExpanded(true);
    StartRename(pItem);
}

bool CBookTreeView::ConfirmChildBelowContent(const QTreeWidgetItem* pItem) {
    return pItem->childCount() > 0 || !NodeOf(pItem).HasContent() ||
           Confirm(ContentText::c_strChildBelowContent);
}

bool CBookTreeView::AddMany(QTreeWidgetItem* pParent) {
    const QPersistentModelIndex line(indexFromItem(pParent));
    const std::optional<QString> input = AskTitles(NewTitle(TakenBelow(pParent)), this);
    if (!input || !line.isValid())
        return false;
    QSet<QString> made;
    const TitleTaken before = TakenBelow(pParent);
    const TitleTaken taken = [&](const QString& strTitle) {
        return made.contains(strTitle) || before(strTitle);
    };
    for (const QString& strTitle : SplitTitles(*input)) {
        const QString strWarning = CheckNewTitle(strTitle, taken);
        if (!strWarning.isEmpty()) {
            m_people.Warn(strWarning);
            if (!line.isValid())
                return false;
            continue;
        }
        AddBelow(pParent, strTitle);
        made.insert(strTitle);
    }
    UpdateImage(pParent);
    if (pParent->childCount() > 0)
        pParent->setExpanded(true);
    return true;
}

void CBookTreeView::AddManySiblings() {
    QTreeWidgetItem* pParent = SelectedItem()->parent();
    if (AddMany(pParent) && pParent->childCount() > 0)
        Select(pParent->child(pParent->childCount() - 1));
}

void CBookTreeView::AddManyChildren() {
    QTreeWidgetItem* pParent = SelectedItem();
    if (ConfirmChildBelowContent(pParent) && AddMany(pParent) && pParent->childCount() > 0)
        m_host.ShowNodeView(EViewKind::ChildrenList, &NodeOf(pParent));
}

// Renaming.

void CBookTreeView::StartRename(QTreeWidgetItem* pItem) {
    // A view that refuses to be left keeps the person where they are, and no title opens behind their back.
    if (!Select(pItem))
        return;
    m_typedTitle.reset();
    m_edited = indexFromItem(pItem);
    editItem(pItem, 0);
}

void CBookTreeView::FinishRename() {
    if (!m_edited.isValid())
        return;
    QTreeWidgetItem* pItem = itemFromIndex(m_edited);
    const QPersistentModelIndex line = m_edited;
    const QString strTitle = m_typedTitle.value_or(QString());
    m_edited = QPersistentModelIndex();
    m_typedTitle.reset();

    const RenameCheck check = CheckRename(strTitle, pItem->text(0), TakenBelow(pItem->parent(), pItem));
    if (!check.strWarning.isEmpty())
        m_people.Warn(check.strWarning);
    else if (check.bStore)
        StoreTitle(pItem, strTitle);
    if (line.isValid())
        Select(pItem);
}

void CBookTreeView::StoreTitle(QTreeWidgetItem* pItem, const QString& strTitle) {
    bool bStored = false;
    try {
        bStored = NodeOf(pItem).SetTitle(strTitle);
    } catch (const Torvane::CRunException&) {
        // The one message below serves for a refusal and a failure.
    }
    if (bStored)
        pItem->setText(0, strTitle);
    else
        m_people.Error(ContentText::c_strTitleNotStored);
}

// Removing and moving.

void CBookTreeView::DeleteNode() {
    QTreeWidgetItem* pItem = SelectedItem();
    CBookNode& node = NodeOf(pItem);
    const QPersistentModelIndex line(indexFromItem(pItem));
    if ((pItem->childCount() > 0 || node.HasContent()) &&
        (!ConfirmDeletion(DeletionListText(node.GetDescendants()), this) || !line.isValid()))
        return;
    if (!Confirm(ContentText::c_strDelete))
        return;
    if (node.Delete().bFailed) {
        m_people.Error(ContentText::c_strNotDeleted);
        return;
    }
    RemoveSelectedItem();
}

void CBookTreeView::RemoveSelectedItem() {
    QTreeWidgetItem* pItem = SelectedItem();
    QTreeWidgetItem* pParent = pItem->parent();
    const int nRow = pParent->indexOfChild(pItem);
    m_pSelection->Drop();
    delete pParent->takeChild(nRow);
    UpdateImage(pParent);
    // The next line, or the one before, or the parent: what a tree does of itself. The view is asked for
    // leave when it is switched.
    QTreeWidgetItem* pNext = pParent;
    if (pParent->childCount() > 0)
        pNext = pParent->child(std::min(nRow, pParent->childCount() - 1));
    m_pSelection->Force(indexFromItem(pNext));
}

void CBookTreeView::MoveNode(bool bUp) {
    QTreeWidgetItem* pItem = SelectedItem();
    QTreeWidgetItem* pParent = pItem->parent();
    const int nRow = pParent->indexOfChild(pItem);
    if (nRow == (bUp ? 0 : pParent->childCount() - 1)) {
        m_people.Notice(bUp ? ContentText::c_strFirstNode : ContentText::c_strLastNode);
        return;
    }
    bool bMoved = false;
    try {
        bMoved = bUp ? NodeOf(pItem).MoveUp() : NodeOf(pItem).MoveDown();
    } catch (const Torvane::CRunException&) {
        // The one message below serves for a refusal and a failure.
    }
    if (!bMoved) {
        m_people.Error(ContentText::c_strNotMoved);
        return;
    }
    MoveNeighbour(pParent, bUp ? nRow - 1 : nRow + 1, nRow);
    scrollToItem(pItem);
}

void CBookTreeView::MoveNeighbour(QTreeWidgetItem* pParent, int nFrom, int nTo) {
    // Taking a line out closes what is open below it.
    QList<QTreeWidgetItem*> open;
    QTreeWidgetItem* pNeighbour = pParent->child(nFrom);
    QList<QTreeWidgetItem*> waiting{pNeighbour};
    while (!waiting.isEmpty()) {
        QTreeWidgetItem* pLine = waiting.takeLast();
        if (pLine->isExpanded())
            open.append(pLine);
        for (int nRow = 0; nRow < pLine->childCount(); ++nRow)
            waiting.append(pLine->child(nRow));
    }
    pParent->insertChild(nTo, pParent->takeChild(nFrom));
    for (QTreeWidgetItem* pLine : open)
        pLine->setExpanded(true);
    UpdateImage(pNeighbour);
}

// Content.

void CBookTreeView::ClearContent() {
    QTreeWidgetItem* pItem = SelectedItem();
    if (!Confirm(ContentText::c_strClearContent))
        return;
    CBookNode& node = NodeOf(pItem);
    node.ClearContent();
    m_host.ShowNodeView(pItem->childCount() > 0 ? EViewKind::ChildrenList : KindView(node), &node);
}

void CBookTreeView::CreateContent() {
    QTreeWidgetItem* pItem = SelectedItem();
    CBookNode& node = NodeOf(pItem);
    if (node.HasContent()) {
        if (!Confirm(ContentText::c_strOverwriteContent))
            return;
    } else if (pItem->childCount() > 0 && !Confirm(ContentText::c_strContentAboveChildren)) {
        return;
    }
    node.CreateEditorPage(0);
    EditContent();
}

void CBookTreeView::EditContent() {
    CBookNode& node = NodeOf(SelectedItem());
    if (node.GetType() != NodeType::c_nEditorPage)
        return;
    m_pCourse->CountChange();
    m_host.ShowNodeView(EViewKind::Editor, &node);
}
