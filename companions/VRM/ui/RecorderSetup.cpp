// What is recorded, chosen and looked at before the recording begins.
#include "companions/VRM/Lecture.h"
#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/LiveView.h"
#include "companions/VRM/ui/RecorderWindow.h"
#include "companions/VRM/ui/SlidePicture.h"
#include "platform/base/MediaTools.h"
#include "platform/base/NativePath.h"
#include "video/Recording.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using EKind = SFilmSource::EKind;

namespace {

/// Not at each key of a name that is being typed.
constexpr int c_nSoonMilliseconds = 300;
/// A device that is taken may become free.
constexpr int c_nAgainMilliseconds = 2000;

} // namespace

void CRecorderWindow::OfferKept() {
    if (!m_bKept)
        return;
    m_kept = ReadLectureLog(KeptTimesPath(m_request.strFolder));
    m_pSource->setCurrentIndex(m_pSource->count() - 1);
    m_pFilmFile->setText(QFileInfo(m_kept.strFilm).isFile()
                             ? m_kept.strFilm
                             : Platform::ToShown(KeptFilmPath(m_request.strFolder)));
    if (QFileInfo(m_kept.strPresentation).isFile())
        m_pPresentation->setText(m_kept.strPresentation);
    m_pOldTimes->setChecked(m_kept.CountTurns() > 0);
}

SFilmSource CRecorderWindow::ChosenSource() const {
    SFilmSource source = m_sources.value(m_pSource->currentIndex());
    if (source.Kind == EKind::File)
        source.strPlace = m_pFilmFile->text().trimmed();
    source.bEncoded =
        source.Kind == EKind::File &&
        QFileInfo(source.strPlace) == QFileInfo(Platform::ToNativeExact(KeptFilmPath(m_request.strFolder)));
    return source;
}

bool CRecorderWindow::IsKeptFilm(const SFilmSource& source) const {
    return m_bKept && source.Kind == EKind::File &&
           (source.bEncoded ||
            (!m_kept.strFilm.isEmpty() && QFileInfo(source.strPlace) == QFileInfo(m_kept.strFilm)));
}

bool CRecorderWindow::UsesOldTimes() const {
    return m_kept.CountTurns() > 0 && m_pOldTimes->isChecked() && IsKeptFilm(ChosenSource());
}

QString CRecorderWindow::HintFor(const SFilmSource& source) const {
    if (source.Kind == EKind::Screen)
        return Platform::CanRecordScreen() ? RecorderText::c_strHint + RecorderText::c_strScreenHint
                                           : RecorderText::c_strWaylandHint;
    if (!IsKeptFilm(source))
        return RecorderText::c_strHint;
    if (m_kept.CountTurns() == 0)
        return RecorderText::c_strKeptHint;
    return UsesOldTimes() ? RecorderText::c_strOldTimesHint.arg(m_kept.CountTurns())
                          : RecorderText::c_strHint;
}

void CRecorderWindow::ShowSource() {
    const SFilmSource source = ChosenSource();
    const bool bFile = source.Kind == EKind::File;
    m_pFilmFile->setEnabled(bFile);
    findChild<QPushButton*>(QStringLiteral("filmBrowse"))->setEnabled(bFile);
    const bool bMicrophone = Platform::HasMicrophone();
    const bool bSound = !bFile && source.Kind != EKind::Microphone && bMicrophone;
    m_pSound->setEnabled(bSound);
    m_pSound->setChecked(bSound && m_bWantsSound);
    m_pSound->setToolTip(bMicrophone ? QString() : RecorderText::c_strNoMicrophone);
    m_pOldTimes->setVisible(m_kept.CountTurns() > 0);
    m_pOldTimes->setEnabled(IsKeptFilm(source));
    m_pStart->setText(UsesOldTimes() ? RecorderText::c_strFinishKept : RecorderText::c_strStart);
    m_pHint->setText(HintFor(source));
    PreviewSoon();
}

void CRecorderWindow::EndPreview() {
    m_previewSoon.stop();
    m_preview.Abandon();
    m_bPreviewFailed = false;
    m_pPreview->Begin(false, {});
}

void CRecorderWindow::PreviewSoon() {
    EndPreview();
    m_previewSoon.start(c_nSoonMilliseconds);
}

void CRecorderWindow::Preview() {
    const SFilmSource source = ChosenSource();
    const bool bFile = source.Kind == EKind::File;
    if (m_stage != EStage::Setup || (bFile && !QFileInfo(source.strPlace).isFile()) ||
        (source.Kind == EKind::Screen && !Platform::CanRecordScreen()))
        return;
    const bool bSound = source.Kind == EKind::Microphone || m_pSound->isChecked();
    // What is told of the last attempt stands until this one has come to something.
    if (!m_bPreviewFailed)
        m_pPreview->Begin(bSound, source.Kind == EKind::Microphone ? RecorderText::c_strSoundAlone
                                  : bFile                          ? QString()
                                                                   : RecorderText::c_strOpening);
    m_preview.Start(PreviewArguments(source, bSound));
}

void CRecorderWindow::OnPreviewEnd(bool bWell) {
    const EKind kind = ChosenSource().Kind;
    // The first picture of a film is all there is; a film may have none.
    if (kind == EKind::File)
        return;
    m_bPreviewFailed = true;
    m_pPreview->End(bWell ? RecorderText::c_strNothingYet : m_preview.FailureText(kind));
    m_previewSoon.start(c_nAgainMilliseconds);
}

void CRecorderWindow::OnPreviewComes() {
    if (std::exchange(m_bPreviewFailed, false))
        m_pPreview->Begin(m_pSound->isChecked() || ChosenSource().Kind == EKind::Microphone,
                          ChosenSource().Kind == EKind::Microphone ? RecorderText::c_strSoundAlone
                                                                   : QString());
}
