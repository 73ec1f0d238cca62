// The film of a lecture, from its beginning to its end: parts, pauses, and what goes wrong meanwhile.
#include "companions/VRM/Lecture.h"
#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/LiveView.h"
#include "companions/VRM/ui/RecorderWindow.h"
#include "companions/VRM/ui/SlidePicture.h"
#include "platform/base/NativePath.h"
#include "platform/ui/MediaPlayer.h"
#include "video/Recording.h"

#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>

#include <numeric>

using EKind = SFilmSource::EKind;

namespace {

constexpr QSize c_recordSize(980, 620);

} // namespace

void CRecorderWindow::StartFilm() {
    m_times.emplace(m_slides.Titles);
    m_bFilmDone = m_bFinished = m_bPaused = m_bConvertAgain = m_bBrokenOff = m_bGoneTold = false;
    m_lengths.clear();
    m_nBehind = -1;
    m_nFilm = 0;
    {
        const QSignalBlocker filling(m_pOutline);
        m_pOutline->clear();
        m_pOutline->addItems(m_slides.Titles);
    }
    m_nSlide = -1;
    // The outline that comes to sight turns to its first entry.
    BeginLog();
    SetStage(EStage::Recording);
    // No smaller than the person has made it.
    resize(size().expandedTo(c_recordSize).boundedTo(screen()->availableSize()));
    Turn(0);
    m_dRatio = m_pSlide->GetRatio();
    m_pPlayer->setVisible(!IsLive());
    m_pLive->setVisible(IsLive());
    if (!IsLive())
        m_pPlayer->Load(Platform::FromNative(QFileInfo(m_source.strPlace).absoluteFilePath()));
    StartEncoder();
    ShowTime();
}

void CRecorderWindow::TakeUp() {
    const qsizetype nSlides = m_slides.Titles.size();
    if (nSlides != m_kept.nSlides) {
        Reset();
        return Tell(QMessageBox::Warning, RecorderText::c_strOtherSlides.arg(nSlides).arg(m_kept.nSlides));
    }
    m_times = m_kept.GetTimes(m_slides.Titles);
    m_pSlide->Show(m_slides.Pictures.value(0));
    m_dRatio = m_pSlide->GetRatio();
    m_lengths.clear();
    m_bFinished = true;
    BeginLog();
    ConvertAgain();
}

void CRecorderWindow::BeginLog() {
    SLoggedLecture lecture;
    lecture.strPresentation = QFileInfo(m_pPresentation->text().trimmed()).absoluteFilePath();
    lecture.nSlides = static_cast<int>(m_slides.Titles.size());
    lecture.bOfKept = IsKeptFilm(m_source);
    if (!IsLive() && !m_source.bEncoded)
        lecture.strFilm = QFileInfo(m_source.strPlace).absoluteFilePath();
    m_log.Begin(WorkingTimesPath(m_request.strFolder), lecture);
}

bool CRecorderWindow::Hears() const {
    return m_source.Kind == EKind::Microphone || m_pSound->isChecked();
}

void CRecorderWindow::StartEncoder() {
    m_bFilmDone = m_bPaused = false;
    m_nBehind = -1;
    m_nFilm = 0;
    m_clock.start();
    m_pLive->Begin(Hears(), m_source.Kind == EKind::Microphone ? RecorderText::c_strSoundAlone : QString());
    const QString strPart = WorkingFilmPath(m_request.strFolder, m_lengths.size());
    m_film.Start(EncoderArguments(m_source, m_pSound->isChecked(), Platform::ToNativeExact(strPart)));
    ShowPause();
}

qint64 CRecorderWindow::WholeParts() const {
    return std::accumulate(m_lengths.begin(), m_lengths.end(), qint64{0});
}

qint64 CRecorderWindow::FilmNow() const {
    if (!IsLive())
        return m_pPlayer->GetPosition();
    return WholeParts() + (m_nBehind < 0 ? 0 : qMax<qint64>(m_clock.elapsed() - m_nBehind, 0));
}

/// The encoder tells a little late how far the film is: the least delay is the nearest to the truth.
void CRecorderWindow::OnFilm(qint64 nFilm) {
    m_nFilm = nFilm;
    const qint64 nBehind = qMax<qint64>(m_clock.elapsed() - nFilm, 0);
    if (nFilm > 0)
        m_nBehind = m_nBehind < 0 ? nBehind : qMin(m_nBehind, nBehind);
}

void CRecorderWindow::OnFilmEnd(bool bWell) {
    m_bFilmDone = true;
    if (IsLive())
        return OnLiveEnd(bWell);
    if (!bWell)
        return OnConversionFailed();
    if (m_bFinished)
        Write();
}

void CRecorderWindow::OnLiveEnd(bool bWell) {
    const bool bTold = m_bFinished || m_bPaused;
    m_bBrokenOff = m_bBrokenOff || !bTold || !bWell;
    m_nBehind = -1;
    m_pLive->End();
    if (m_nFilm > 0) {
        m_log.EndPart(m_nFilm);
        m_lengths.append(std::exchange(m_nFilm, 0));
    } else {
        QFile::remove(Platform::ToNativeExact(WorkingFilmPath(m_request.strFolder, m_lengths.size())));
    }
    if (m_lengths.isEmpty())
        return Fail(m_film.FailureText(m_source.Kind));
    if (m_bFinished)
        return Write();
    m_bPaused = true;
    ShowPause();
    // What there is of a film that broke off is a film, and the lecture may go on.
    if (!bTold || !bWell)
        Tell(QMessageBox::Warning,
             RecorderText::c_strBrokenOff.arg(m_film.FailureText(m_source.Kind), ClockText(WholeParts())));
}

void CRecorderWindow::WatchFilm() {
    const QString strFirst = Platform::ToNativeExact(WorkingFilmPath(m_request.strFolder));
    if (!IsLive() || FilmNow() == 0 || m_bGoneTold || QFile::exists(strFirst))
        return;
    m_bGoneTold = true;
    Tell(QMessageBox::Warning, RecorderText::c_strFilmGone.arg(Platform::ToShown(m_request.strFolder)));
}

void CRecorderWindow::OnConversionFailed() {
    if (!HasTurned() && !m_bFinished)
        return Fail(m_film.FailureText(m_source.Kind));
    // The person is at it with the slides; those times hold, whatever became of the copy.
    m_bConvertAgain = true;
    if (!m_bFinished)
        return;
    const QString strWhy = m_film.FailureText(m_source.Kind);
    if (Asks(RecorderText::c_strAskConvertAgain.arg(strWhy), RecorderText::c_strAgain,
             RecorderText::c_strGiveUp, true))
        ConvertAgain();
    else
        Reset();
}

void CRecorderWindow::ConvertAgain() {
    m_bConvertAgain = false;
    SetStage(EStage::Writing);
    StartEncoder();
}

void CRecorderWindow::OnPlayerFailed(const QString& strText) {
    if (m_stage != EStage::Recording || m_bFinished)
        return;
    if (!HasTurned())
        return Fail(strText);
    Tell(QMessageBox::Warning, RecorderText::c_strFilmStops.arg(strText, ClockText(FilmNow())));
    FinishFilm();
}

void CRecorderWindow::TogglePause() {
    if (m_stage != EStage::Recording)
        return;
    if (!IsLive()) {
        m_pPlayer->GetState() == EMediaState::Playing ? m_pPlayer->Pause() : m_pPlayer->Play();
    } else if (m_bPaused) {
        StartEncoder();
    } else {
        m_bPaused = true;
        m_film.Finish();
        ShowPause();
    }
}

void CRecorderWindow::ShowPause() {
    const bool bPaused = IsLive() ? m_bPaused : m_pPlayer->GetState() != EMediaState::Playing;
    m_pPause->setText(bPaused ? RecorderText::c_strContinue : RecorderText::c_strPause);
    // While a part of the film ends there is nothing to press, and none is too short to be one.
    m_pPause->setEnabled(!IsLive() || (m_bPaused ? m_bFilmDone : m_nBehind >= 0));
}
