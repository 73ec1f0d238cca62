#pragma once

#include <QString>

#include <optional>

class QWidget;

/// Asks for the address of a link; none when the person cancels or leaves it empty.
std::optional<QString> AskLinkAddress(QWidget* pParent, const QString& strPresent);
