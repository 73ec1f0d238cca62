#include "tests/journey/WindowCheck.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QKeySequence>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QWizard>

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

CWindowLog::CWindowLog(std::function<void(const QString&)> write) : QObject(qApp), m_write(std::move(write)) {
    qApp->installEventFilter(this);
}

bool CWindowLog::eventFilter(QObject* pObject, QEvent* pEvent) {
    const auto* pWidget = qobject_cast<QWidget*>(pObject);
    if (!pWidget || !pWidget->isWindow())
        return false;
    if (pEvent->type() == QEvent::Show) {
        if (const auto* pBox = qobject_cast<const QMessageBox*>(pWidget)) {
            QStringList buttons;
            for (const QAbstractButton* pButton : pBox->buttons())
                buttons.append(pButton->text());
            static const QStringList c_icons{u"-"_s, u"i"_s, u"!"_s, u"x"_s, u"?"_s};
            m_write(u"box (%1) \"%2\": \"%3\" [%4]"_s.arg(c_icons.value(pBox->icon()), pBox->windowTitle(),
                                                          pBox->text(), buttons.join(u" | "_s)));
        } else if (qobject_cast<const QDialog*>(pWidget)) {
            m_write(u"dialog \"%1\""_s.arg(pWidget->windowTitle()));
        }
    } else if (pEvent->type() == QEvent::Paint && pWidget->objectName() == "statusWindow"_L1) {
        const auto* pText = pWidget->findChild<QLabel*>(u"statusText"_s);
        if (pText && pText->text() != m_strStatus)
            m_write(u"status \"%1\""_s.arg(m_strStatus = pText->text()));
    }
    return false;
}
