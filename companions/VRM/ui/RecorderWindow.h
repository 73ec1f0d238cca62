#pragma once

#include "companions/VRM/FilmRun.h"
#include "companions/VRM/LectureLog.h"
#include "companions/VRM/LectureTimes.h"
#include "companions/VRM/RecorderRequest.h"
#include "companions/VRM/Slides.h"
#include "platform/base/CaptureDevices.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

class CLiveView;
class CMediaPlayer;
class CSlidePicture;
class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QStackedWidget;

/// Records a lecture: asks for the presentation and for what is filmed, shows the slides while the film runs,
/// and puts the two together. Left before the end it leaves nothing behind.
class CRecorderWindow : public QDialog {
    Q_OBJECT
public:
    explicit CRecorderWindow(const SRecorderRequest& request);
    ~CRecorderWindow() override;

    /// Escape, 取消 and the window's own button. Before the recording it ends the recorder; what is under way
    /// it ends, which is asked about where it costs something, and only the window's own button also leaves.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* pEvent) override;
    /// A window that is put away holds no device.
    void changeEvent(QEvent* pEvent) override;

private:
    enum class EStage { Setup, Converting, Recording, Writing, Done };

    QWidget* MakeSetupPage();
    QWidget* MakeRecordPage();
    QLayout* MakeSide();
    QWidget* MakeWaitPage();
    QLineEdit* AddFile(class QGridLayout& grid, int nRow, const QString& strLabel, const char* szName,
                       const QString& strButton, const std::function<QString()>& pick);
    void ConnectPlayer();
    /// What an earlier recorder has left is chosen.
    void OfferKept();
    void ShowSource();
    QString HintFor(const SFilmSource& source) const;
    SFilmSource ChosenSource() const;
    void PreviewSoon();
    void EndPreview();
    void Preview();
    void OnPreviewComes();
    void OnPreviewEnd(bool bWell);
    void SetStage(EStage stage);
    void Wait(const QString& strText, int nPercent);
    /// Back to the beginning, with nothing left.
    void Reset();
    void Fail(const QString& strText);
    void Tell(QMessageBox::Icon icon, const QString& strText);

    void Begin();
    /// The work runs beside; then follows on this thread, with the failure's text or none.
    void Beside(const std::function<void()>& work,
                const std::function<void(const QString& strFailure)>& then);
    void StartFilm();
    /// Puts the kept film and its times together, which nobody has to record again.
    void TakeUp();
    /// The times go to the disk from now on.
    void BeginLog();
    /// The encoder begins, or goes on with a new part of the film.
    void StartEncoder();
    void OnFilm(qint64 nFilm);
    void OnFilmEnd(bool bWell);
    void OnLiveEnd(bool bWell);
    /// The film that is there could not be converted.
    void OnConversionFailed();
    void ConvertAgain();
    void OnPlayerFailed(const QString& strText);
    void TogglePause();
    void ShowPause();
    /// A live lecture is over once it is ended, so that is asked about.
    void AskFinish();
    void FinishFilm();
    void Write();
    void End(const QString& strFailure);
    void ShowEnd(const QString& strText, QMessageBox::Icon icon);
    /// Whether the person presses the first button. Enter, Escape and closing press the one that loses
    /// nothing, which is the second if not told otherwise.
    bool Asks(const QString& strText, const QString& strYes, const QString& strNo, bool bYesIsSafe = false);
    /// Hours, minutes and seconds.
    static QString ClockText(qint64 nMilliseconds);
    bool IsLive() const { return m_source.Kind != SFilmSource::EKind::File; }
    /// Of all parts that are recorded whole, milliseconds.
    qint64 WholeParts() const;
    /// Whether there are times that would be a pity to lose.
    bool HasTurned() const { return m_times && m_times->GetScript().Markers.size() > 1; }

    void Turn(int nSlide);
    /// Milliseconds of the film by now.
    qint64 FilmNow() const;
    /// Tells the person when the folder is taken away under the film.
    void WatchFilm();
    QString LiveText() const;
    QString PlayText() const;
    void ShowTime();
    /// Whether that is what the earlier recorder has recorded.
    bool IsKeptFilm(const SFilmSource& source) const;
    bool UsesOldTimes() const;
    bool Hears() const;

    const SRecorderRequest m_request;
    const QList<SFilmSource> m_sources;
    EStage m_stage = EStage::Setup;
    SSlides m_slides;
    SFilmSource m_source;
    std::optional<CLectureTimes> m_times;
    CLectureLog m_log;
    CFilmRun m_film;
    CFilmRun m_preview;
    QTimer m_previewSoon;
    bool m_bPreviewFailed = false;
    QElapsedTimer m_clock;
    /// How long the film began behind the clock; negative before it has.
    qint64 m_nBehind = -1;
    /// Of the part that is being recorded; of a film that is there, what is converted.
    qint64 m_nFilm = 0;
    QList<qint64> m_lengths;
    bool m_bPaused = false;
    bool m_bFilmDone = false;
    /// A part of it ended otherwise than it was told to.
    bool m_bBrokenOff = false;
    /// The person knows that the film is no longer where it was.
    bool m_bGoneTold = false;
    /// The person has ended the lecture.
    bool m_bFinished = false;
    /// The film that is there has to be converted once more, which is done when the lecture is over.
    bool m_bConvertAgain = false;
    /// The person wants to leave the recorder as well.
    bool m_bLeave = false;
    /// Of an earlier recorder, see KeepEarlierFilm.
    const bool m_bKept;
    SLoggedLecture m_kept;
    /// Whether there is to be sound where the source leaves the choice: a sound server alone may hear
    /// nothing.
    bool m_bWantsSound = Platform::HasCapturingCard();
    int m_nSlide = 0;
    double m_dRatio = 1;
    QTimer m_tick;
    std::thread m_work;
    std::atomic<bool> m_bCancelled = false;
    std::atomic<int> m_nPercent = 0;

    QStackedWidget* m_pPages;
    QLineEdit* m_pPresentation = nullptr;
    QComboBox* m_pSource = nullptr;
    QLineEdit* m_pFilmFile = nullptr;
    QCheckBox* m_pSound = nullptr;
    QCheckBox* m_pOldTimes = nullptr;
    CLiveView* m_pPreview = nullptr;
    QPushButton* m_pStart = nullptr;
    CMediaPlayer* m_pPlayer = nullptr;
    QListWidget* m_pOutline = nullptr;
    CSlidePicture* m_pSlide = nullptr;
    QLabel* m_pTime = nullptr;
    QLabel* m_pHint = nullptr;
    CLiveView* m_pLive = nullptr;
    QPushButton* m_pPause = nullptr;
    QPushButton* m_pPrevious = nullptr;
    QPushButton* m_pNext = nullptr;
    QPushButton* m_pStop = nullptr;
    QLabel* m_pWait = nullptr;
    QLabel* m_pWaitIcon = nullptr;
    QProgressBar* m_pBar = nullptr;
    QPushButton* m_pEnd = nullptr;
};
