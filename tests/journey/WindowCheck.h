#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/// What a window offers to somebody who uses the keyboard or listens to it. For the interface thread.
namespace WindowCheck {

/// Its title, its default button, and the controls in the order of the Tab key with their names.
QString Describe(const QWidget& window);

/// What is wrong with it, a line each: a control without a name, a letter that two controls claim, a dialog
/// without a default button or without a focus.
QStringList Faults(const QWidget& window);

} // namespace WindowCheck

/// Writes down what the person gets to see besides the main window: each box with its title, text and
/// buttons, each dialog, each line of a status window. Lives on the interface thread.
class CWindowLog : public QObject {
public:
    /// Takes each line as it comes.
    explicit CWindowLog(std::function<void(const QString&)> write);

    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    std::function<void(const QString&)> m_write;
    QString m_strStatus;
};
