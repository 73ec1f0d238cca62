#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

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
