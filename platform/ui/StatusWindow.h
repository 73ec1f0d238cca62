#pragma once

#include "platform/base/People.h"

#include <QPointer>

#include <functional>

class QLabel;
class QProgressBar;
class QWidget;

/// The status window: one line, a bar where the amount of work is known, no button and no focus.
class CStatusWindow : public Torvane::Dialog::MFC::CShowStatusDlg {
public:
    /// keepPainting is called after each change and lives as long as this.
    CStatusWindow(QWidget* pParent, std::function<void()> keepPainting);
    ~CStatusWindow() override;

    void ShowStatus(const QString& strText) override;
    void ShowProgress(qint64 nDone, qint64 nTotal) override;

private:
    void Place();
    void PaintNow();

    /// Gone when the main window went.
    QPointer<QWidget> m_pWindow;
    QPointer<QWidget> m_pParent;
    QLabel* m_pText = nullptr;
    QProgressBar* m_pBar = nullptr;
    std::function<void()> m_keepPainting;
};
