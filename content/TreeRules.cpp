#include "content/TreeRules.h"

#include "content/Texts.h"

#include <algorithm>
#include <array>

namespace {

/// When a command is offered.
enum class EGate {
    NotHead,  // any node
    NotFixed, // any node below the root
    Page,     // a node below the root with a page or a file of its own
    Content,  // any node with content
    Editable, // any node with content that isn't a mere link
    NotFixedContent,
};

struct TreeCommandRule {
    int nCommand;
    ETreeAction Action;
    EGate Gate;
    bool bOffWhileEditing;
};

constexpr std::array c_rules{
    TreeCommandRule{TreeCommand::c_nAddNode, ETreeAction::AddNode, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nAddNodeInTree, ETreeAction::AddNode, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nAddChild, ETreeAction::AddChild, EGate::NotHead, false},
    TreeCommandRule{TreeCommand::c_nAddChildInTree, ETreeAction::AddChild, EGate::NotHead, false},
    TreeCommandRule{TreeCommand::c_nAddMany, ETreeAction::AddMany, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nAddManyChildren, ETreeAction::AddManyChildren, EGate::NotHead, true},
    TreeCommandRule{TreeCommand::c_nDelete, ETreeAction::Delete, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nDeleteInTree, ETreeAction::Delete, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nRename, ETreeAction::Rename, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nRenameInTree, ETreeAction::Rename, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nCreateContent, ETreeAction::CreateContent, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nCreateContentInTree, ETreeAction::CreateContent, EGate::NotHead, false},
    TreeCommandRule{TreeCommand::c_nEditContent, ETreeAction::EditContent, EGate::Page, true},
    TreeCommandRule{TreeCommand::c_nEditContentInTree, ETreeAction::EditContent, EGate::Editable, false},
    TreeCommandRule{TreeCommand::c_nMoveUp, ETreeAction::MoveUp, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nMoveUpInTree, ETreeAction::MoveUp, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nMoveDown, ETreeAction::MoveDown, EGate::NotFixed, true},
    TreeCommandRule{TreeCommand::c_nMoveDownInTree, ETreeAction::MoveDown, EGate::NotFixed, false},
    TreeCommandRule{TreeCommand::c_nClearContent, ETreeAction::ClearContent, EGate::Page, true},
    TreeCommandRule{TreeCommand::c_nClearContentInTree, ETreeAction::ClearContent, EGate::Content, false},
    TreeCommandRule{TreeCommand::c_nExport, ETreeAction::Export, EGate::NotHead, false},
    TreeCommandRule{TreeCommand::c_nImport, ETreeAction::Import, EGate::NotHead, false},
    TreeCommandRule{TreeCommand::c_nSetOpenType, ETreeAction::SetOpenType, EGate::NotFixedContent, false},
};

const TreeCommandRule* RuleOf(int nCommand) {
    // The commands of a known kind share one rule.
    static constexpr TreeCommandRule c_ofKind{0, ETreeAction::CreateContent, EGate::NotHead, false};
    if ((nCommand >= TreeCommand::c_nCreateFirstKind && nCommand <= TreeCommand::c_nCreateLastKind) ||
        nCommand == TreeCommand::c_nCreateInSiteLink)
        return &c_ofKind;
    const auto* pFound =
        std::find_if(c_rules.begin(), c_rules.end(),
                     [nCommand](const TreeCommandRule& rule) { return rule.nCommand == nCommand; });
    return pFound == c_rules.end() ? nullptr : pFound;
}

bool IsOpen(EGate gate, const TreeSelection& selection) {
    const bool bNode = !IsHeadItem(selection.Line);
    const bool bFree = !IsFixedItem(selection.Line);
    const bool bContent = selection.Type != NodeType::c_nEmpty;
    switch (gate) {
    case EGate::NotHead:
        return bNode;
    case EGate::NotFixed:
        return bFree;
    case EGate::Page:
        return bFree &&
               (selection.Type == NodeType::c_nEditorPage || selection.Type == NodeType::c_nExternalFile);
    case EGate::Content:
        return bNode && bContent;
    case EGate::Editable:
        return bNode && bContent && selection.Type != NodeType::c_nExternalLink;
    case EGate::NotFixedContent:
        return bFree && bContent;
    }
    return false;
}

} // namespace

bool IsHeadItem(ETreeLine line) {
    return line == ETreeLine::None || line == ETreeLine::School || line == ETreeLine::Course;
}

bool IsFixedItem(ETreeLine line) {
    return IsHeadItem(line) || line == ETreeLine::Root;
}

ETreeAction TreeActionOf(int nCommand) {
    const TreeCommandRule* pRule = RuleOf(nCommand);
    return pRule == nullptr ? ETreeAction::None : pRule->Action;
}

bool IsTreeCommandEnabled(int nCommand, const TreeSelection& selection, bool bEditorShowing) {
    const TreeCommandRule* pRule = RuleOf(nCommand);
    if (pRule == nullptr || (bEditorShowing && pRule->bOffWhileEditing))
        return false;
    return IsOpen(pRule->Gate, selection);
}

bool IsActionAllowed(ETreeAction action, ETreeLine line) {
    switch (action) {
    case ETreeAction::None:
        return false;
    case ETreeAction::AddChild:
    case ETreeAction::AddManyChildren:
    case ETreeAction::CreateContent:
    case ETreeAction::EditContent:
    case ETreeAction::ClearContent:
    case ETreeAction::Export:
    case ETreeAction::Import:
        return !IsHeadItem(line);
    case ETreeAction::AddNode:
    case ETreeAction::AddMany:
    case ETreeAction::Delete:
    case ETreeAction::Rename:
    case ETreeAction::MoveUp:
    case ETreeAction::MoveDown:
    case ETreeAction::SetOpenType:
        return !IsFixedItem(line);
    }
    return false;
}

QString NewTitle(const TitleTaken& taken) {
    QString strTitle = ContentText::c_strNewTitle;
    for (int nNumber = 2; taken(strTitle); ++nNumber)
        strTitle = ContentText::c_strNewTitle + QString::number(nNumber);
    return strTitle;
}

QStringList SplitTitles(const QString& strInput) {
    QString strText = strInput;
    strText.replace(u'，', u',');
    QStringList titles;
    for (const QString& strPiece : strText.split(u',')) {
        const QString strTitle = strPiece.trimmed();
        if (!strTitle.isEmpty())
            titles.append(strTitle);
    }
    return titles;
}

QString CheckNewTitle(const QString& strTitle, const TitleTaken& taken) {
    if (strTitle.size() > c_nMaxTitleLength)
        return ContentText::c_strNewTitleTooLong.arg(QString::number(c_nMaxTitleLength), strTitle);
    if (taken(strTitle))
        return ContentText::c_strNewTitleTaken.arg(strTitle);
    return {};
}

RenameCheck CheckRename(const QString& strNew, const QString& strPresent, const TitleTaken& taken) {
    if (strNew.isEmpty() || strNew == strPresent)
        return {};
    if (taken(strNew))
        return {false, ContentText::c_strTitleTaken};
    if (strNew.size() > c_nMaxTitleLength)
        return {false, ContentText::c_strTitleTooLong.arg(c_nMaxTitleLength)};
    return {true, {}};
}

QString DeletionListText(const QList<NodeHeader>& descendants) {
    if (descendants.isEmpty())
        return ContentText::c_strNoDescendants;
    QString strText;
    for (const NodeHeader& header : descendants)
        strText += header.Title + QStringLiteral("\r\n");
    return strText;
}
