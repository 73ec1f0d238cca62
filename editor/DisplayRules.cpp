#include "editor/DisplayRules.h"

#include "content/ViewKind.h"
#include "editor/Texts.h"

#include <iterator>

namespace DisplayRules {

namespace {

/// In the order in which the content wizard offers its kinds, not in that of the stored types: the two agree
/// in a few places only, and the column shows what stands here.
const QString c_typeWords[] = {QStringLiteral("内部编辑器"),  QStringLiteral("外部文件"),
                               QStringLiteral("外部编辑器"),  QStringLiteral("站点"),
                               QStringLiteral("外部链接"),    QStringLiteral("视频课件"),
                               QStringLiteral("奥思课件"),    QStringLiteral("目录"),
                               QStringLiteral("Office HTML"), QStringLiteral("站内链接")};

} // namespace

ChildRow RowOfChild(qint32 nType, bool bHasChildren) {
    if (bHasChildren)
        return {0, EditorTexts::c_strFolderNode};
    if (nType == NodeType::c_nEmpty)
        return {1, EditorTexts::c_strEmptyNode};
    const bool bKnown = nType >= 0 && nType < static_cast<qint32>(std::size(c_typeWords));
    return {1, bKnown ? c_typeWords[nType] : QString()};
}

Prompt PromptOf(int nCode) {
    switch (nCode) {
    case PromptCode::c_nNewWindow:
        return {EditorTexts::c_strPromptNewWindow, false};
    case PromptCode::c_nExternalEditor:
        return {EditorTexts::c_strPromptExternal, true};
    case PromptCode::c_nRecorder:
        return {EditorTexts::c_strPromptRecorder, false};
    default:
        return {QString(), std::nullopt};
    }
}

std::optional<EWindowForm> WindowFormOf(qint32 nOpenType) {
    switch (nOpenType) {
    case 0:
        return std::nullopt;
    case 2:
        return EWindowForm::Maximised;
    case 3:
        return EWindowForm::FullScreen;
    default:
        return EWindowForm::Normal;
    }
}

} // namespace DisplayRules
