#pragma once

#include <QHash>
#include <QWidget>

#include <functional>
#include <span>

class QAction;
class QComboBox;
class QToolBar;

/// The editor's three toolbars, one below the other, made from the table of commands. An action's object name
/// is "command_<id>", that of a combo box "box_<id>".
class CEditorToolBars : public QWidget {
    Q_OBJECT
public:
    explicit CEditorToolBars(QWidget* pParent);

    /// Asks for each command whether it is enabled now.
    void UpdateEnabled(const std::function<bool(int)>& isEnabled);
    /// Presses the buttons of the named commands that are in force at the caret.
    void ShowStates(const QMap<QString, bool>& states);

Q_SIGNALS:
    void CommandTriggered(int nCommand);
    void ValueChosen(int nCommand, const QString& strValue);

private:
    QToolBar* AddBar(const QString& strName, std::span<const int> ids);
    void AddCommand(QToolBar& bar, int nId);
    void AddBox(QToolBar& bar, int nId);

    QHash<int, QAction*> m_actions;
    QHash<int, QComboBox*> m_boxes;
};
