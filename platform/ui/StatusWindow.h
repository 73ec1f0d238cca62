#pragma once

#include "platform/base/People.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>

#include <functional>
#include <memory>

class CInputGate;
class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;
class QWidget;

/// The status window: one line, a bar where the amount of work is known, and "取消" where the step may be
/// given up and takes long. It never takes the focus, so that nobody has to give it back: Escape reaches it
/// from whichever window has it. Who closes the dialog below it gives the step up too.
class CStatusWindow : public Torvane::Dialog::MFC::CShowStatusDlg {
public:
    /// Processes events for a moment; called after each change, and lives as long as this.
    using Pump = std::function<void(QEventLoop::ProcessEventsFlags)>;

    CStatusWindow(QWidget* pParent, Pump pump);
    ~CStatusWindow() override;

    void ShowStatus(const QString& strText) override;
    void SetTitle(const QString& strTitle) override;
    void ShowProgress(qint64 nDone, qint64 nTotal) override;
    void AllowCancel(bool bAllow) override;
    bool KeepWaiting() override;

    /// The one that was opened last and still stands, or null.
    static CStatusWindow* GetLast();

private:
    void Place();
    void PaintNow();
    void OfferCancel();
    void Cancel();
    /// Who closes it waits for nothing any more.
    bool IsDialogLeft() const;

    /// Gone when the main window went.
    QPointer<QWidget> m_pWindow;
    QPointer<QWidget> m_pParent;
    /// The window below, where it is a dialog that stood there when this came.
    QPointer<QDialog> m_pDialog;
    QLabel* m_pTitle = nullptr;
    QLabel* m_pText = nullptr;
    QProgressBar* m_pBar = nullptr;
    QPushButton* m_pCancel = nullptr;
    Pump m_pump;
    bool m_bMayCancel = false;
    bool m_bCancelled = false;
    QElapsedTimer m_waited;
    /// There while the button is.
    std::unique_ptr<CInputGate> m_pGate;
};
