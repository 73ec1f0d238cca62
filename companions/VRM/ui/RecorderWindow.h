#pragma once

#include "companions/VRM/FilmRun.h"
#include "companions/VRM/LectureTimes.h"
#include "companions/VRM/RecorderRequest.h"
#include "companions/VRM/Slides.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

class CMediaPlayer;
class CSlidePicture;
class QCheckBox;
class QComboBox;
class QLabel;
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

    /// Escape, 取消 and the window's own button. A recording that is under way is asked about.
    void reject() override;

private:
    enum class EStage { Setup, Converting, Recording, Writing, Done };

    QWidget* MakeSetupPage();
    QWidget* MakeRecordPage();
    QWidget* MakeWaitPage();
    QLineEdit* AddFile(class QGridLayout& grid, int nRow, const QString& strLabel, const char* szName,
                       const QString& strButton, const std::function<QString()>& pick);
    void ConnectPlayer();
    void ShowSource();
    SFilmSource ChosenSource() const;
    void SetStage(EStage stage);
    void Wait(const QString& strText, int nPercent);
    void Fail(const QString& strText);

    void Begin();
    /// The work runs beside; then follows on this thread, with the failure's text or none.
    void Beside(const std::function<void()>& work,
                const std::function<void(const QString& strFailure)>& then);
    void StartFilm();
    void OnFilm(qint64 nFilm);
    void OnFilmEnd(bool bWell);
    /// A live lecture is over once it is ended, so that is asked about.
    void AskFinish();
    void FinishFilm();
    void Write();
    void End(const QString& strFailure);
    void ShowEnd(const QString& strText, bool bWarning);
    /// Whether the person presses the first button; neither Escape nor closing does.
    bool Asks(const QString& strText, const QString& strYes, const QString& strNo);

    void Turn(int nSlide);
    /// Milliseconds of the film by now.
    qint64 FilmNow() const;
    void ShowTime();

    const SRecorderRequest m_request;
    const QList<SFilmSource> m_sources;
    EStage m_stage = EStage::Setup;
    SSlides m_slides;
    SFilmSource m_source;
    std::optional<CLectureTimes> m_times;
    CFilmRun m_film;
    QElapsedTimer m_clock;
    /// How long the film began behind the clock; negative before it has.
    qint64 m_nBehind = -1;
    qint64 m_nFilm = 0;
    bool m_bFilmDone = false;
    /// It did not end before it was told to.
    bool m_bFilmWell = false;
    bool m_bFinished = false;
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
    QPushButton* m_pStart = nullptr;
    CMediaPlayer* m_pPlayer = nullptr;
    QListWidget* m_pOutline = nullptr;
    CSlidePicture* m_pSlide = nullptr;
    QLabel* m_pTime = nullptr;
    QPushButton* m_pPrevious = nullptr;
    QPushButton* m_pNext = nullptr;
    QPushButton* m_pStop = nullptr;
    QLabel* m_pWait = nullptr;
    QProgressBar* m_pBar = nullptr;
    QPushButton* m_pEnd = nullptr;
};
