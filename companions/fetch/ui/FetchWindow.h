#pragma once

#include "companions/fetch/FetchRun.h"

#include <QDialog>

#include <thread>

class QLabel;
class QProgressBar;
class QPushButton;

/// Fetches a template and shows how far it is. Closes by itself soon after the template is in its place; a
/// failure stays to be read.
class CFetchWindow : public QDialog {
    Q_OBJECT
public:
    /// The fetching begins at once, in a thread of its own.
    explicit CFetchWindow(const FetchRequest& request, const FetchLimits& limits = {});
    /// Stops it and waits for its end.
    ~CFetchWindow() override;

    /// 取消, Escape and the window's own button: the first stops the fetching, and the window goes when it
    /// has ended; after a failure they close the window.
    void reject() override;

private:
    void ShowProgress();
    void End(const FetchOutcome& outcome);

    const FetchRequest m_request;
    const FetchLimits m_limits;
    FetchProgress m_progress;
    std::thread m_worker;
    bool m_bEnded = false;
    bool m_bInPlace = false;

    QLabel* m_pIcon;
    QLabel* m_pTitle;
    QProgressBar* m_pBar;
    QLabel* m_pDetails;
    QPushButton* m_pButton;
};
