#include "content/BookTreeActions.h"

#include "content/ContentBuilder.h"
#include "content/ContentKinds.h"
#include "content/ContentStage.h"
#include "content/SubtreeTransfer.h"
#include "content/Texts.h"
#include "course/PaintingFilter.h"
#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"

#include <stdexcept>

using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxDefault;

CBookTreeActions::CBookTreeActions(CBookTree& tree, ITreeWindow& window, ITreeDialogs& dialogs,
                                   INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people)
    : m_tree(tree), m_window(window), m_dialogs(dialogs), m_host(host), m_people(people),
      m_selection(
          &tree, [this](const QModelIndex& index) { return MaySelect(index); }, [this] { ShowSelection(); }) {
}

CBookTreeActions::~CBookTreeActions() {
    // The lines go without being asked where the selection moves.
    m_selection.Drop();
}

void CBookTreeActions::Guarded(const std::function<void()>& step) {
    try {
        step();
    } catch (const Torvane::CException& e) {
        m_people.Error(e.GetMessage());
    } catch (const std::exception& e) {
        m_people.Error(QString::fromLocal8Bit(e.what()));
    }
}

bool CBookTreeActions::Confirm(const QString& strQuestion, const QPersistentModelIndex& line,
                               BoxDefault byEnter) {
    return m_people.Question(strQuestion, byEnter) == BoxAnswer::Ok && line.isValid();
}

// Selection.

void CBookTreeActions::Open(CCourse& course) {
    CPaintingFilter painting(m_people);
    MendNodeFolders(course, &painting);
    m_tree.Load(course);
    m_window.Expand(m_tree.GetRoot());
    m_selection.Select(m_tree.GetRoot());
}

void CBookTreeActions::Close() {
    m_selection.Drop();
    m_tree.Clear();
}

CBookNode* CBookTreeActions::GetSelectedNode() const {
    try {
        return m_tree.NodeOf(m_selection.currentIndex());
    } catch (const Torvane::CRunException&) {
        // Who selected it was told.
        return nullptr;
    }
}

TreeSelection CBookTreeActions::Selection() const {
    const CBookNode* pNode = GetSelectedNode();
    return {m_tree.LineOf(m_selection.currentIndex()),
            pNode == nullptr ? NodeType::c_nEmpty : pNode->GetType(), m_tree.GetCourse() != nullptr};
}

bool CBookTreeActions::MaySelect(const QModelIndex& index) {
    bool bMayLeave = false;
    if (!IsHeadItem(m_tree.LineOf(index)))
        Guarded([&] { bMayLeave = m_host.LeaveCurrentView(true); });
    return bMayLeave;
}

void CBookTreeActions::ShowSelection() {
    Guarded([this] {
        const QPersistentModelIndex line(m_selection.currentIndex());
        CBookNode* pNode = m_tree.NodeOf(line);
        if (pNode == nullptr)
            return;
        m_host.ShowNodeView(KindOfSelection(*pNode, HasChildren(line)), pNode);
        // The course may have been closed while the views changed.
        if (line.isValid() && HasChildren(line) && pNode->HasContent())
            m_window.Expand(line);
    });
}

void CBookTreeActions::SelectNode(qint32 nId) {
    Guarded([&] {
        const QPersistentModelIndex line(m_tree.Reveal(nId));
        for (QPersistentModelIndex above(line.parent()); above.isValid(); above = above.parent())
            m_window.Expand(above);
        m_selection.Select(line);
    });
}

void CBookTreeActions::LoadAhead(const QModelIndex& index) {
    Guarded([&] { m_tree.LoadAhead(index); });
}

void CBookTreeActions::ReadAllTitles() {
    Guarded([this] { m_tree.ReadAllTitles(); });
}

// Commands.

bool CBookTreeActions::IsEnabled(int nCommand) const {
    return TreeCommand::IsEnabled(nCommand, Selection(), m_host.IsEditorShowing());
}

bool CBookTreeActions::Run(int nCommand) {
    const TreeCommand::Row* pCommand = TreeCommand::Find(nCommand);
    if (pCommand == nullptr)
        return false;
    const TreeSelection selection = Selection();
    if (selection.bCourseOpen && TreeCommand::IsActionAllowed(pCommand->Action, selection.Line))
        Guarded([&] { RunAction(*pCommand); });
    return true;
}

void CBookTreeActions::RunAction(const TreeCommand::Row& command) {
    using TreeCommand::EAction;
    // A line that only looks childless would lose its children without a question.
    m_tree.Read(m_selection.currentIndex());
    switch (command.Action) {
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
        return StartRename(m_selection.currentIndex());
    case EAction::CreateContent:
        return CreateContent(command.Kind);
    case EAction::EditContent:
        return EditContent(m_selection.currentIndex());
    case EAction::MoveUp:
        return MoveNode(true);
    case EAction::MoveDown:
        return MoveNode(false);
    case EAction::ClearContent:
        return ClearContent();
    case EAction::SetOpenType:
        return SetOpenType();
    case EAction::CustomTitles:
        return SetCustomTitles();
    case EAction::Export:
        return Export();
    case EAction::Import:
        return Import();
    case EAction::None:
        return;
    }
}

std::span<const int> CBookTreeActions::OpenMenu(const QModelIndex& index) {
    const QPersistentModelIndex line(index);
    return m_selection.Select(line) ? MenuOf(line) : std::span<const int>();
}

std::span<const int> CBookTreeActions::MenuOf(const QModelIndex& index) const {
    const ETreeLine line = m_tree.LineOf(index);
    if (IsHeadItem(line) || (line != ETreeLine::Root && HasChildren(index)))
        return {};
    return line == ETreeLine::Root ? TreeCommand::RootMenu() : TreeCommand::NodeMenu();
}

// Content.

void CBookTreeActions::ClearContent() {
    const QPersistentModelIndex line(m_selection.currentIndex());
    if (!Confirm(ContentText::c_strClearContent, line, BoxDefault::Last))
        return;
    CBookNode& node = *m_tree.NodeOf(line);
    node.ClearContent();
    m_host.ShowNodeView(HasChildren(line) ? EViewKind::ChildrenList : KindView(node), &node);
}

bool CBookTreeActions::ConfirmContent(const QPersistentModelIndex& line) {
    if (m_tree.NodeOf(line)->HasContent())
        return Confirm(ContentText::c_strOverwriteContent, line);
    return !HasChildren(line) || Confirm(ContentText::c_strContentAboveChildren, line);
}

/// The editor would write its page over the new content when it is left.
bool CBookTreeActions::LeaveEditor(CBookNode& node) {
    return !m_host.IsEditorShowing() || m_host.ShowNodeView(KindView(node), &node);
}

void CBookTreeActions::CreateContent(EContentKind preset) {
    const QPersistentModelIndex line(m_selection.currentIndex());
    if (!ConfirmContent(line))
        return;
    CBookNode& node = *m_tree.NodeOf(line);
    const std::optional<CNodeFileParams> params =
        m_dialogs.AskContent(ContentKinds::PresetFor(preset, node.GetTitle()), node);
    // The course may be closed behind the wizard, or while the views change.
    if (!params || !line.isValid() || !LeaveEditor(node) || !line.isValid())
        return;
    CNodeContentBuilder builder(
        node, m_people, [&line] { return line.isValid(); }, m_pVideos);
    const bool bMade = builder.Create(*params);
    if (!line.isValid())
        return;
    if (params->Kind == EContentKind::Folder)
        ShowImported(line);
    else if (bMade)
        ShowCreated(line, params->Kind);
}

void CBookTreeActions::ShowCreated(const QPersistentModelIndex& line, EContentKind kind) {
    CBookNode& node = *m_tree.NodeOf(line);
    if (kind == EContentKind::EditorPage || kind == EContentKind::ExternalEditor)
        EditContent(line);
    else
        m_host.ShowNodeView(KindView(node), &node);
}

/// Whatever came in stays, so the tree has to show it.
void CBookTreeActions::ShowImported(const QPersistentModelIndex& line) {
    m_tree.ReadNew(line);
    CBookNode& node = *m_tree.NodeOf(line);
    if (HasChildren(line))
        m_window.Expand(line);
    m_host.ShowNodeView(HasChildren(line) ? EViewKind::ChildrenList : KindView(node), &node);
}

void CBookTreeActions::EditContent(const QPersistentModelIndex& line) {
    CBookNode& node = *m_tree.NodeOf(line);
    const bool bFile = node.GetType() == NodeType::c_nExternalFile;
    if (!bFile && node.GetType() != NodeType::c_nEditorPage)
        return;
    m_tree.GetCourse()->CountChange();
    if (!bFile) {
        m_host.ShowNodeView(EViewKind::Editor, &node);
    } else if (m_host.ShowNodeView(EViewKind::Prompt, &node, PromptCode::c_nExternalEditor) &&
               line.isValid() && !node.OpenExternalFile()) {
        m_people.Error(ContentText::c_strFileNotOpened.arg(Platform::ToShown(node.GetContentPath())));
    }
}

void CBookTreeActions::SetOpenType() {
    const QPersistentModelIndex line(m_selection.currentIndex());
    CBookNode& node = *m_tree.NodeOf(line);
    const std::optional<qint32> chosen = m_dialogs.AskOpenType(node.GetOpenType());
    if (!chosen || !line.isValid())
        return;
    if (!node.SetOpenType(*chosen))
        m_people.Error(ContentText::c_strNotMoved);
    ShowSelection();
}

// Subtrees that leave and come in.

void CBookTreeActions::Export() {
    const QPersistentModelIndex line(m_selection.currentIndex());
    CBookNode& node = *m_tree.NodeOf(line);
    // What is exported is what she sees, and not the page as it was before she began to edit it.
    if (m_host.IsEditorShowing() && !m_host.LeaveCurrentView(true))
        return;
    const std::optional<QString> folder =
        m_people.PickNewFolder(ContentText::c_strPickExportFolder, QString(), FolderNameOf(node.GetTitle()));
    if (!folder || !line.isValid())
        return;
    // The course may be closed behind a box of the export.
    const QString strTitle = node.GetTitle();
    if (CSubtreeTransfer(m_people, node, *folder, CSubtreeTransfer::EMode::Export).Run())
        m_people.Notice(ContentText::c_strExported.arg(strTitle, Platform::ToNative(*folder)));
}

void CBookTreeActions::Import() {
    const QPersistentModelIndex line(m_selection.currentIndex());
    CBookNode& node = *m_tree.NodeOf(line);
    if (!LeaveEditor(node))
        return;
    const std::optional<QString> folder = m_people.PickFolder(ContentText::c_strPickImportFolder, QString());
    if (!folder || !line.isValid())
        return;
    CSubtreeTransfer transfer(m_people, node, *folder, CSubtreeTransfer::EMode::Import);
    const bool bWhole = transfer.Run();
    // The box of a failure lets the program run on.
    if (!line.isValid() || !(bWhole || transfer.HasBegun()))
        return;
    // Whatever came in stays, so the tree has to show it.
    m_tree.Reload(line);
    if (bWhole)
        m_host.ShowNodeView(KindView(node), &node);
    else
        ShowSelection();
}
