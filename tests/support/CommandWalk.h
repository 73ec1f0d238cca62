#pragma once

#include <QAction>
#include <QComboBox>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>

/// One command as a running window offers it at one place.
struct CommandSeen {
    QString strPlace;
    /// 0 for a separator.
    int nId = 0;
    QString strText;
    QString strButton;
    QString strStatus;
    QString strShortcut;
    bool bEnabled = false;
};

/// Walks the menus, bars, open context menu and shortcuts of a window, by nothing but what Qt shows of them:
/// an action's id is the number at the end of its object name.
class CCommandWalk {
public:
    explicit CCommandWalk(const QMainWindow& window) {
        for (const QAction* pMenu : window.menuBar()->actions())
            WalkMenu(QStringLiteral("menu ") + pMenu->text(), *pMenu->menu());
        for (const QToolBar* pBar : window.findChildren<QToolBar*>()) {
            if (pBar->isVisible())
                WalkBar(*pBar);
        }
        for (const QMenu* pMenu : window.findChildren<QMenu*>(QStringLiteral("treeMenu"))) {
            if (pMenu->isVisible())
                WalkMenu(QStringLiteral("context menu"), *pMenu);
        }
        for (const QAction* pAction : window.actions()) {
            // The editor's save stands on its bar under one action, and has its key from another.
            if (!Has(IdOf(*pAction)) || IdOf(*pAction) == 32825)
                Add(pAction->shortcut().isEmpty() ? QStringLiteral("no place") : QStringLiteral("shortcut"),
                    *pAction);
        }
    }

    const QList<CommandSeen>& Seen() const { return m_seen; }

private:
    static int IdOf(const QObject& object) {
        return object.objectName().section(QLatin1Char('_'), -1).toInt();
    }
    bool Has(int nId) const {
        return std::ranges::any_of(m_seen, [nId](const CommandSeen& seen) { return seen.nId == nId; });
    }
    void Add(const QString& strPlace, const QAction& action, const QString& strButton = QString()) {
        m_seen.append({strPlace, action.isSeparator() ? 0 : IdOf(action), action.text(), strButton,
                       action.statusTip(), action.shortcut().toString(), action.isEnabled()});
    }
    void WalkMenu(const QString& strPlace, const QMenu& menu) {
        for (const QAction* pAction : menu.actions()) {
            if (pAction->menu() != nullptr)
                WalkMenu(strPlace + QStringLiteral(" > ") + pAction->text(), *pAction->menu());
            else
                Add(strPlace, *pAction);
        }
    }
    void WalkBar(const QToolBar& bar) {
        for (QAction* pSlot : bar.actions()) {
            QWidget* pWidget = bar.widgetForAction(pSlot);
            const auto* pButton = qobject_cast<const QToolButton*>(pWidget);
            if (pButton != nullptr && pButton->defaultAction() != nullptr) {
                const bool bWords = pButton->toolButtonStyle() != Qt::ToolButtonIconOnly;
                Add(bar.objectName(), *pButton->defaultAction(), bWords ? pButton->text() : QString());
            } else if (qobject_cast<const QComboBox*>(pWidget) != nullptr) {
                m_seen.append({bar.objectName(),
                               IdOf(*pWidget),
                               pWidget->accessibleName(),
                               {},
                               pWidget->statusTip(),
                               {},
                               pWidget->isEnabled()});
            } else {
                m_seen.append({bar.objectName(), 0, {}, {}, {}, {}, false});
            }
        }
    }

    QList<CommandSeen> m_seen;
};
