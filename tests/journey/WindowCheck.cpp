#include "tests/journey/WindowCheck.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

QString NameOf(QWidget* pWidget) {
    QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(pWidget);
    return pInterface ? pInterface->text(QAccessible::Name) : QString();
}

/// The controls that the Tab key reaches, in its order.
QList<QWidget*> TabOrder(const QWidget& window) {
    QList<QWidget*> controls;
    const QWidget* pFirst = &window;
    for (QWidget* pNext = pFirst->nextInFocusChain(); pNext != pFirst; pNext = pNext->nextInFocusChain()) {
        if (pNext->window() == pFirst && pNext->isVisible() && pNext->isEnabled() && !pNext->focusProxy() &&
            (pNext->focusPolicy() & Qt::TabFocus))
            controls.append(pNext);
    }
    return controls;
}

QString MnemonicOf(const QWidget* pWidget) {
    QString strText;
    if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget))
        strText = pButton->text();
    else if (const auto* pLabel = qobject_cast<const QLabel*>(pWidget); pLabel && pLabel->buddy())
        strText = pLabel->text();
    return QKeySequence::mnemonic(strText).toString();
}

const QPushButton* DefaultButton(const QWidget& window) {
    for (const auto* pButton : window.findChildren<QPushButton*>()) {
        if (pButton->isVisible() && pButton->isDefault())
            return pButton;
    }
    return nullptr;
}

} // namespace

QString WindowCheck::Describe(const QWidget& window) {
    QStringList controls;
    for (QWidget* pControl : TabOrder(window))
        controls.append(NameOf(pControl) + (pControl->hasFocus() ? u"*"_s : QString()));
    const QPushButton* pDefault = DefaultButton(window);
    return u"%1\t%2\t%3"_s.arg(window.windowTitle(), pDefault ? pDefault->text() : u"-"_s,
                               controls.join(u" > "_s));
}

QStringList WindowCheck::Faults(const QWidget& window) {
    QStringList faults;
    const auto add = [&](const QString& strFault) {
        faults.append(window.objectName() + u": "_s + strFault);
    };
    for (QWidget* pControl : TabOrder(window)) {
        // The engine's own widget has no name: the page in it speaks for itself.
        if (NameOf(pControl).isEmpty() && !pControl->inherits("QQuickWidget"))
            add(u"no name for "_s + QLatin1String(pControl->metaObject()->className()) + u' ' +
                pControl->objectName());
    }
    QHash<QString, QString> claimed;
    for (const QWidget* pWidget : window.findChildren<QWidget*>()) {
        const QString strKey = MnemonicOf(pWidget);
        if (strKey.isEmpty() || !pWidget->isVisible() || pWidget->window() != &window)
            continue;
        if (claimed.contains(strKey))
            add(strKey + u" is claimed by "_s + claimed.value(strKey) + u" and "_s + pWidget->objectName());
        claimed.insert(strKey, pWidget->objectName());
    }
    if (qobject_cast<const QDialog*>(&window)) {
        if (!window.findChildren<QPushButton*>().isEmpty() && !DefaultButton(window))
            add(u"no default button"_s);
        if (!TabOrder(window).isEmpty() && !window.focusWidget())
            add(u"nothing has the focus"_s);
    }
    return faults;
}
