#pragma once

#include "tests/support/Testing.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

/// The widget of this name below a window, which must have one.
template <typename CWidget>
CWidget& The(const QObject& window, const QString& strName) {
    auto* pWidget = window.findChild<CWidget*>(strName);
    if (pWidget == nullptr)
        qFatal("no %s", qPrintable(strName));
    return *pWidget;
}

/// Acts on the next modal dialog as soon as it is up.
inline void WhenDialogOpens(const std::function<void(QDialog&)>& act) {
    auto* pTimer = new QTimer(qApp);
    QObject::connect(pTimer, &QTimer::timeout, pTimer, [pTimer, act] {
        auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!pDialog || !pDialog->isVisible())
            return;
        pTimer->stop();
        act(*pDialog);
        // Not before: a step that waits would delete the timer, and the step with it, under its own feet.
        pTimer->deleteLater();
    });
    pTimer->start(10);
}
