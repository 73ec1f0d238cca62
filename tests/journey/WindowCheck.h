#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// What a window offers to somebody who uses the keyboard or listens to it. For the interface thread.
namespace WindowCheck {

/// Its title, its default button, and the controls in the order of the Tab key with their names.
QString Describe(const QWidget& window);

/// What is wrong with it, a line each: a control without a name, a letter that two controls claim, a dialog
/// without a default button or without a focus.
QStringList Faults(const QWidget& window);

} // namespace WindowCheck
