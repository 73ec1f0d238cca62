#pragma once

#include <QString>

#include <optional>

class QWidget;

/// The dialog "确认删除" over the titles that a deletion takes along; true for OK. Cancel is the default.
bool ConfirmDeletion(const QString& strTitles, QWidget* pParent);

/// The dialog "输入栏目标题": the text typed, or nothing when cancelled.
std::optional<QString> AskTitles(const QString& strPreset, QWidget* pParent);
