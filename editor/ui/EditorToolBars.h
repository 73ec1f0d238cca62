#pragma once

#include <QHash>
#include <QWidget>

#include <functional>
#include <span>

class CValueBox;
class QAction;
class QToolBar;
class QToolButton;

/// The editor's three toolbars, one below the other, made from the table of commands. An action's object name
/// is "command_<id>", that of a combo box "box_<id>".
class CEditorToolBars : public QWidget {
    Q_OBJECT
public:
    explicit CEditorToolBars(QWidget* pParent);

    /// Asks for each command whether it is enabled now.
    void UpdateEnabled(const std::function<bool(int)>& isEnabled);
    /// Presses the buttons of the named commands, those that are in force at the caret, and no other.
    void ShowStates(const QStringList& pressed);
    /// Shows the font and the size at the caret; runs nothing.
    void ShowFont(const QString& strFont, const QString& strSize);
    /// The actions of these ids, 0 for a separator, for a menu.
    QList<QAction*> ActionsOf(std::span<const int> ids);

Q_SIGNALS:
    void CommandTriggered(int nCommand);
    void ValueChosen(int nCommand, const QString& strValue);
    /// The person is done with a combo box and goes back to the text.
    void BoxLeft();

private:
    QToolBar* AddBar(const QString& strName, std::span<const int> ids);
    void SetUpMore(QToolBar& bar, QToolButton& more);
    void AddCommand(QToolBar& bar, int nId);
    void AddBox(QToolBar& bar, int nId);

    QHash<int, QAction*> m_actions;
    QHash<int, CValueBox*> m_boxes;
};
