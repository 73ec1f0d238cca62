#pragma once

#include "companions/common/TaskOutcome.h"

#include <QDialog>

#include <memory>
#include <thread>

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTimer;

/// How far a task is, for the window.
struct TaskProgress {
    QString Text;
    int nDone = 0;
    /// 0 while nobody knows.
    int nTotal = 0;
    bool bMayCancel = true;
};

/// What a companion's window carries out: something is written to a place that the person names. Places are
/// native paths. All calls but Work come from the interface thread.
class ITask {
public:
    virtual ~ITask() = default;

    /// What the person typed, as a whole path.
    virtual QString Complete(const QString& strTyped) const = 0;
    /// Has the person pick a place; empty when that was cancelled.
    virtual QString Browse(QWidget* pParent, const QString& strPlace) = 0;
    /// What is wrong with the place, as a sentence; empty for one that may be tried.
    virtual QString FaultOf(const QString& strPlace) const = 0;
    /// What has to be asked before it begins; empty for nothing.
    virtual QString QuestionFor(const QString& strPlace) const = 0;
    /// Before each Work, of which another may come where one has failed.
    virtual void Prepare() = 0;
    /// Does it, on a thread of its own. Never throws.
    virtual TaskOutcome Work(const QString& strPlace) = 0;
    virtual TaskProgress Progress() const = 0;
    /// Has Work end soon. May come at any time.
    virtual void Cancel() = 0;
    /// What the button in the end opens (native), after it was done.
    virtual QString Result() const = 0;
};

/// The texts of a task's window, with their mnemonics.
struct TaskTexts {
    QString Title;
    QString Introduction;
    QString Place;
    QString Start;
    QString Open;
    QString Progress;
    /// With the path in the place of %1.
    QString NotOpened;
};

/// A companion's one window. It asks where to, works, shows how far it is, and reports in the end. Where that
/// is a failure the person may try again, maybe elsewhere.
class CTaskWindow : public QDialog {
    Q_OBJECT
public:
    CTaskWindow(const TaskTexts& texts, std::unique_ptr<ITask> pTask, const QString& strPlace);
    /// Stops the work and waits for its end.
    ~CTaskWindow() override;

    /// 取消, Escape and the window's own button: while it works they stop it, else they close the window.
    void reject() override;

    TaskOutcome::EEnd GetEnd() const { return m_eEnd; }

protected:
    /// Comes up below the middle of the screen, where the application says that it waits.
    void showEvent(QShowEvent* pEvent) override;

private:
    enum class EState { Asking, Working, Ended };

    void Fit();
    void MakeForm(const QString& strPlace);
    void MakeProgress();
    void LayOut();
    void Browse();
    void Warn(const QString& strText);
    bool MayBegin(const QString& strPlace);
    void Start();
    void ShowProgress();
    void ShowOutcome(const TaskOutcome& outcome);
    void AskAgain();
    void End(const TaskOutcome& outcome);
    /// The start first, the opening in the end.
    void Accept();
    void CopyReport();

    const TaskTexts m_texts;
    const std::unique_ptr<ITask> m_pTask;
    std::thread m_worker;
    QTimer* m_pTimer;
    EState m_eState = EState::Asking;
    TaskOutcome::EEnd m_eEnd = TaskOutcome::EEnd::Cancelled;

    QLabel* m_pIcon;
    QLabel* m_pHead;
    QWidget* m_pForm;
    QLineEdit* m_pPlace;
    QProgressBar* m_pBar;
    QLabel* m_pDetails;
    QLabel* m_pReportLabel;
    QPlainTextEdit* m_pReport;
    QDialogButtonBox* m_pButtons;
    QPushButton* m_pCopy;
    QPushButton* m_pStart;
    QPushButton* m_pCancel;
};
