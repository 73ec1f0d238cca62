#pragma once

#include "editor/HtmlFragments.h"

#include <optional>

class QWidget;

/// The small dialogs of the inserting commands. Nothing when cancelled.
namespace EditorDialogs {

/// "输入信息": one line under a prompt.
std::optional<QString> AskText(const QString& strPrompt, QWidget* pParent);

/// "表格属性": the values as typed.
std::optional<HtmlFragments::TableParameters> AskTable(const HtmlFragments::TableParameters& shown,
                                                       QWidget* pParent);

/// The colour dialog; red in the low byte, as in nShown.
std::optional<quint32> AskColour(quint32 nShown, QWidget* pParent);

} // namespace EditorDialogs
