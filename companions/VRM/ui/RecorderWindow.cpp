#include "companions/VRM/ui/RecorderWindow.h"

#include "companions/VRM/Lecture.h"
#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/LiveView.h"
#include "companions/VRM/ui/SlidePicture.h"
#include "foundation/Exceptions.h"
#include "platform/base/CaptureDevices.h"
#include "platform/base/MediaTools.h"
#include "platform/base/NativePath.h"
#include "platform/ui/MediaPlayer.h"
#include "video/Recording.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

#include <exception>

using EKind = SFilmSource::EKind;

namespace {

constexpr int c_nTickMilliseconds = 200;
constexpr int c_nWhole = 100;
constexpr int c_nEndIcon = 48;
/// So long nobody is silent.
constexpr int c_nSilentMilliseconds = 4000;

} // namespace

QString CRecorderWindow::ClockText(qint64 nMilliseconds) {
    const qint64 nSeconds = qMax<qint64>(nMilliseconds, 0) / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(nSeconds / 3600)
        .arg(nSeconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(nSeconds % 60, 2, 10, QLatin1Char('0'));
}

CRecorderWindow::CRecorderWindow(const SRecorderRequest& request)
    : QDialog(nullptr, Qt::Window), m_request(request), m_sources(FilmSources()),
      m_bKept(KeepEarlierFilm(request.strFolder)), m_pPages(new QStackedWidget(this)) {
    setObjectName(QStringLiteral("CRecorderWindow"));
    setWindowTitle(request.strCourse.isEmpty() ? RecorderText::c_strTitle
                                               : RecorderText::c_strTitleOf.arg(request.strCourse));
    m_pPages->addWidget(MakeSetupPage());
    m_pPages->addWidget(MakeRecordPage());
    m_pPages->addWidget(MakeWaitPage());
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pPages);
    ConnectPlayer();
    m_film.OnProgress = [this](qint64 nFilm) { OnFilm(nFilm); };
    m_film.OnEnd = [this](bool bWell) { OnFilmEnd(bWell); };
    m_film.OnLevel = [this](double dLevel) { m_pLive->ShowLevel(dLevel); };
    m_film.OnPicture = [this](const QByteArray& pixels) { m_pLive->ShowPicture(pixels); };
    m_preview.OnEnd = [this](bool bWell) { OnPreviewEnd(bWell); };
    m_preview.OnLevel = [this](double dLevel) {
        OnPreviewComes();
        m_pPreview->ShowLevel(dLevel);
    };
    m_preview.OnPicture = [this](const QByteArray& pixels) {
        OnPreviewComes();
        m_pPreview->ShowPicture(pixels);
    };
    m_previewSoon.setSingleShot(true);
    connect(&m_previewSoon, &QTimer::timeout, this, &CRecorderWindow::Preview);
    connect(&m_tick, &QTimer::timeout, this, &CRecorderWindow::ShowTime);
    m_tick.start(c_nTickMilliseconds);
    OfferKept();
    ShowSource();
    SetStage(EStage::Setup);
}

CRecorderWindow::~CRecorderWindow() {
    m_bCancelled = true;
    if (m_work.joinable())
        m_work.join();
    m_film.Abandon();
    m_preview.Abandon();
    if (m_stage != EStage::Done)
        RemoveLecture(m_request.strFolder);
}

void CRecorderWindow::ConnectPlayer() {
    connect(m_pPlayer, &CMediaPlayer::Loaded, this, [this] {
        if (m_stage == EStage::Recording)
            m_pPlayer->Play();
    });
    connect(m_pPlayer, &CMediaPlayer::Failed, this, &CRecorderWindow::OnPlayerFailed);
    connect(m_pPlayer, &CMediaPlayer::StateChanged, this, &CRecorderWindow::ShowPause);
    connect(m_pPlayer, &CMediaPlayer::Ended, this, &CRecorderWindow::FinishFilm);
}

void CRecorderWindow::SetStage(EStage stage) {
    m_stage = stage;
    EndPreview();
    m_pPages->setCurrentIndex(stage == EStage::Setup ? 0 : stage == EStage::Recording ? 1 : 2);
    m_pEnd->setText(stage == EStage::Done ? RecorderText::c_strClose : RecorderText::c_strCancel);
    m_pBar->setVisible(stage != EStage::Done);
    m_pWaitIcon->setVisible(stage == EStage::Done);
    if (stage == EStage::Setup) {
        PreviewSoon();
        m_pStart->setDefault(true);
        m_pPresentation->setFocus();
    } else if (stage == EStage::Recording) {
        m_pNext->setDefault(true);
        m_pNext->setFocus();
    } else if (stage == EStage::Done) {
        m_pEnd->setDefault(true);
        m_pEnd->setFocus();
    }
}

void CRecorderWindow::Wait(const QString& strText, int nPercent) {
    m_pWait->setText(strText);
    m_pBar->setRange(0, nPercent < 0 ? 0 : c_nWhole);
    m_pBar->setValue(nPercent);
}

void CRecorderWindow::Reset() {
    m_film.Abandon();
    m_pPlayer->Unload();
    m_log.Close();
    RemoveLecture(m_request.strFolder);
    SetStage(EStage::Setup);
}

void CRecorderWindow::Fail(const QString& strText) {
    Reset();
    Tell(QMessageBox::Critical, strText);
}

void CRecorderWindow::Tell(QMessageBox::Icon icon, const QString& strText) {
    QMessageBox box(icon, RecorderText::c_strTitle, strText, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void CRecorderWindow::Beside(const std::function<void()>& work,
                             const std::function<void(const QString&)>& then) {
    m_bCancelled = false;
    m_work = std::thread([this, work, then] {
        QString strFailure;
        try {
            work();
        } catch (const Torvane::CException& failure) {
            strFailure = failure.GetMessage();
        } catch (const std::exception& failure) {
            strFailure = QString::fromLocal8Bit(failure.what());
        }
        QMetaObject::invokeMethod(
            this,
            [this, then, strFailure] {
                m_work.join();
                if (!m_bCancelled)
                    then(strFailure);
                else if (m_bLeave)
                    QDialog::reject();
                else
                    Reset();
            },
            Qt::QueuedConnection);
    });
}

void CRecorderWindow::Begin() {
    const auto tell = [this](const QString& strText, QWidget* pField) {
        Tell(QMessageBox::Information, strText);
        pField->setFocus();
    };
    const QString strPresentation = m_pPresentation->text().trimmed();
    m_source = ChosenSource();
    if (!QFileInfo(strPresentation).isFile())
        return tell(RecorderText::c_strNoPresentation, m_pPresentation);
    if (m_source.Kind == EKind::File && !QFileInfo(m_source.strPlace).isFile())
        return tell(RecorderText::c_strNoFilm, m_pFilmFile);
    if (m_source.Kind == EKind::Screen && !Platform::CanRecordScreen())
        return tell(RecorderText::c_strWaylandHint, m_pSource);
    if (m_bKept && !IsKeptFilm(m_source) &&
        !Asks(RecorderText::c_strKeptGoes, RecorderText::c_strRecordAnew, RecorderText::c_strKeepOld))
        return;
    if (!Platform::HasMediaEncoder())
        return tell(RecorderText::c_strNoEncoder, m_pStart);
    SetStage(EStage::Converting);
    Wait(RecorderText::c_strConverting, -1);
    Beside(
        [this, strPath = Platform::FromNative(QFileInfo(strPresentation).absoluteFilePath())] {
            if (m_bKept)
                JoinParts(m_request.strFolder, KeptFilmPath, m_kept.Lengths, false,
                          [this] { return !m_bCancelled; });
            m_slides = ConvertSlides(strPath, m_request.strFolder, [this] { return !m_bCancelled; });
        },
        [this, bOldTimes = UsesOldTimes()](const QString& strFailure) {
            if (!strFailure.isEmpty())
                Fail(strFailure);
            else if (bOldTimes)
                TakeUp();
            else
                StartFilm();
        });
}

void CRecorderWindow::AskFinish() {
    if (!IsLive() || Asks(RecorderText::c_strStopNow, RecorderText::c_strStopYes, RecorderText::c_strNo))
        FinishFilm();
}

void CRecorderWindow::FinishFilm() {
    if (m_stage != EStage::Recording || std::exchange(m_bFinished, true))
        return;
    m_pPlayer->Pause();
    if (m_bConvertAgain)
        return ConvertAgain();
    if (m_bFilmDone)
        return Write();
    SetStage(EStage::Writing);
    Wait(RecorderText::c_strWriting, -1);
    // A film that is there already comes whole.
    if (IsLive())
        m_film.Finish();
}

void CRecorderWindow::Write() {
    SetStage(EStage::Writing);
    m_nPercent = 0;
    Beside(
        [this] {
            const QList<qint64> lengths = m_lengths;
            JoinParts(m_request.strFolder, WorkingFilmPath, lengths, m_bBrokenOff,
                      [this] { return !m_bCancelled; });
            WriteLecture(m_request, m_slides, m_dRatio, *m_times, [this](qint64 nDone, qint64 nTotal) {
                m_nPercent = static_cast<int>(nDone * c_nWhole / qMax<qint64>(nTotal, 1));
                return !m_bCancelled;
            });
        },
        [this](const QString& strFailure) { End(strFailure); });
}

void CRecorderWindow::End(const QString& strFailure) {
    const QString strLength = ClockText(IsLive() ? WholeParts() : m_nFilm);
    if (strFailure.isEmpty()) {
        RemoveKeptFilm(m_request.strFolder);
        return ShowEnd(RecorderText::c_strDone.arg(m_slides.Pages.size()).arg(strLength),
                       QMessageBox::Information);
    }
    // The times are still known: once there is room it can be done.
    if (Asks(RecorderText::c_strAskAgain.arg(strFailure), RecorderText::c_strAgain, RecorderText::c_strGiveUp,
             true))
        return Write();
    const QString strFilm = Platform::ToShown(WorkingFilmPath(m_request.strFolder));
    const qsizetype nFiles = KeepFilmAlone(m_request, m_slides);
    if (nFiles > 0 && IsKeptFilm(m_source))
        RemoveKeptFilm(m_request.strFolder);
    const bool bGone = !QFile::exists(Platform::ToNativeExact(WorkingFilmPath(m_request.strFolder)));
    ShowEnd(nFiles == 0 && bGone ? strFailure
            : nFiles == 0        ? RecorderText::c_strFilmInPlace.arg(strFailure, strFilm)
            : nFiles > 1         ? RecorderText::c_strFilmsAlone.arg(strFailure, QString::number(nFiles),
                                                                     ClockText(m_lengths.value(0)))
                                 : RecorderText::c_strFilmAlone.arg(strFailure, strLength),
            QMessageBox::Warning);
}

void CRecorderWindow::ShowEnd(const QString& strText, QMessageBox::Icon icon) {
    SetStage(EStage::Done);
    m_pPlayer->Unload();
    m_pWait->setText(strText);
    const QStyle::StandardPixmap pixmap =
        icon == QMessageBox::Warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    m_pWaitIcon->setPixmap(style()->standardIcon(pixmap).pixmap(c_nEndIcon));
}

bool CRecorderWindow::Asks(const QString& strText, const QString& strYes, const QString& strNo,
                           bool bYesIsSafe) {
    QMessageBox box(QMessageBox::Question, RecorderText::c_strTitle, strText, QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    QPushButton* pYes = box.addButton(strYes, QMessageBox::YesRole);
    QPushButton* pNo = box.addButton(strNo, QMessageBox::NoRole);
    box.setDefaultButton(bYesIsSafe ? pYes : pNo);
    box.setEscapeButton(bYesIsSafe ? pYes : pNo);
    box.exec();
    return box.clickedButton() == pYes;
}

void CRecorderWindow::Turn(int nSlide) {
    if (m_stage != EStage::Recording || nSlide < 0 || nSlide >= m_slides.Pages.size() || nSlide == m_nSlide)
        return;
    m_nSlide = nSlide;
    const qint64 nNow = FilmNow();
    m_times->ShowSlide(nSlide, nNow);
    m_log.ShowSlide(nSlide, nNow);
    m_pSlide->Show(m_slides.Pictures[nSlide]);
    m_pSlide->setAccessibleName(RecorderText::c_strSlide.arg(nSlide + 1).arg(m_slides.Titles[nSlide]));
    {
        const QSignalBlocker byProgram(m_pOutline);
        m_pOutline->setCurrentRow(nSlide);
    }
    // Else the focus would go on to the button that ends the lecture, and the next blank press it.
    if ((m_pPrevious->hasFocus() && nSlide == 0) ||
        (m_pNext->hasFocus() && nSlide + 1 == m_slides.Pages.size()))
        m_pSlide->setFocus();
    m_pPrevious->setEnabled(nSlide > 0);
    m_pNext->setEnabled(nSlide + 1 < m_slides.Pages.size());
}

QString CRecorderWindow::LiveText() const {
    if (m_bPaused)
        return RecorderText::c_strPausedAt.arg(ClockText(FilmNow()));
    if (m_nBehind >= 0)
        return RecorderText::c_strRecording.arg(ClockText(FilmNow()));
    return m_clock.hasExpired(c_nSilentMilliseconds) ? RecorderText::c_strNothingYet
                                                     : RecorderText::c_strStarting;
}

QString CRecorderWindow::PlayText() const {
    // A film that was broken off does not tell how long it is.
    const qint64 nLength = m_pPlayer->GetDuration();
    return nLength > 0 ? RecorderText::c_strPlaying.arg(ClockText(FilmNow()), ClockText(nLength))
                       : RecorderText::c_strPlayingAt.arg(ClockText(FilmNow()));
}

void CRecorderWindow::ShowTime() {
    const bool bFile = !IsLive();
    if (m_stage == EStage::Recording) {
        m_pTime->setText(bFile ? PlayText() : LiveText());
        WatchFilm();
        if (m_pPause->isEnabled() == (m_nBehind < 0))
            ShowPause();
    } else if (m_stage == EStage::Writing) {
        const qint64 nLength = bFile ? m_pPlayer->GetDuration() : 0;
        const int nPercent = m_bFilmDone   ? m_nPercent.load()
                             : nLength > 0 ? static_cast<int>(qMin(m_nFilm, nLength) * c_nWhole / nLength)
                                           : -1;
        Wait(nPercent < 0 ? RecorderText::c_strWriting : RecorderText::c_strWritingPart.arg(nPercent),
             nPercent);
    }
}

void CRecorderWindow::reject() {
    if (m_stage == EStage::Done)
        return accept();
    if (m_stage == EStage::Recording || m_stage == EStage::Writing) {
        const bool bAbandon = Asks(RecorderText::c_strAbandon, RecorderText::c_strYes, RecorderText::c_strNo);
        // It may have come to its end meanwhile, or back to the beginning.
        if (!bAbandon || (m_stage != EStage::Recording && m_stage != EStage::Writing))
            return;
    }
    m_film.Abandon();
    m_bCancelled = true;
    if (m_work.joinable())
        return;
    if (m_bLeave || m_stage == EStage::Setup)
        QDialog::reject();
    else
        Reset();
}

void CRecorderWindow::changeEvent(QEvent* pEvent) {
    QDialog::changeEvent(pEvent);
    if (pEvent->type() == QEvent::WindowStateChange && m_stage == EStage::Setup)
        isMinimized() ? EndPreview() : PreviewSoon();
}

void CRecorderWindow::closeEvent(QCloseEvent* pEvent) {
    m_bLeave = true;
    QDialog::closeEvent(pEvent);
    // Work that goes on beside still has to end.
    m_bLeave = m_work.joinable() && m_bCancelled;
}
