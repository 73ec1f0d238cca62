#include "companions/VRM/ui/RecorderWindow.h"

#include "companions/VRM/Lecture.h"
#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/SlidePicture.h"
#include "foundation/Exceptions.h"
#include "platform/base/MediaTools.h"
#include "platform/base/NativePath.h"
#include "platform/ui/MediaPlayer.h"
#include "video/Recording.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <exception>

using EKind = SFilmSource::EKind;

namespace {

constexpr int c_nTickMilliseconds = 200;
constexpr int c_nWhole = 100;
constexpr QSize c_recordSize(980, 620);

QString ClockText(qint64 nMilliseconds) {
    const qint64 nSeconds = qMax<qint64>(nMilliseconds, 0) / 1000;
    return QStringLiteral("%1:%2:%3")
        .arg(nSeconds / 3600)
        .arg(nSeconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(nSeconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

CRecorderWindow::CRecorderWindow(const SRecorderRequest& request)
    : QDialog(nullptr, Qt::Window), m_request(request), m_sources(FilmSources()),
      m_pPages(new QStackedWidget(this)) {
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
    connect(&m_tick, &QTimer::timeout, this, &CRecorderWindow::ShowTime);
    m_tick.start(c_nTickMilliseconds);
    ShowSource();
    SetStage(EStage::Setup);
}

CRecorderWindow::~CRecorderWindow() {
    m_bCancelled = true;
    if (m_work.joinable())
        m_work.join();
    m_film.Abandon();
    if (m_stage != EStage::Done)
        RemoveLecture(m_request.strFolder);
}

void CRecorderWindow::ConnectPlayer() {
    connect(m_pPlayer, &CMediaPlayer::Loaded, this, [this] {
        if (m_stage == EStage::Recording)
            m_pPlayer->Play();
    });
    connect(m_pPlayer, &CMediaPlayer::Failed, this, [this](const QString& strText) {
        if (m_stage == EStage::Recording)
            Fail(strText);
    });
    connect(m_pPlayer, &CMediaPlayer::Ended, this, &CRecorderWindow::FinishFilm);
}

SFilmSource CRecorderWindow::ChosenSource() const {
    SFilmSource source = m_sources.value(m_pSource->currentIndex());
    if (source.Kind == EKind::File)
        source.strPlace = m_pFilmFile->text().trimmed();
    return source;
}

void CRecorderWindow::ShowSource() {
    const EKind kind = ChosenSource().Kind;
    const bool bFile = kind == EKind::File;
    m_pFilmFile->setEnabled(bFile);
    findChild<QPushButton*>(QStringLiteral("filmBrowse"))->setEnabled(bFile);
    const bool bSound = !bFile && kind != EKind::Microphone && HasMicrophone();
    m_pSound->setEnabled(bSound);
    m_pSound->setChecked(bSound);
    m_pSound->setToolTip(HasMicrophone() ? QString() : RecorderText::c_strNoMicrophone);
}

void CRecorderWindow::SetStage(EStage stage) {
    m_stage = stage;
    m_pPages->setCurrentIndex(stage == EStage::Setup ? 0 : stage == EStage::Recording ? 1 : 2);
    m_pEnd->setText(stage == EStage::Done ? RecorderText::c_strClose : RecorderText::c_strCancel);
    m_pBar->setVisible(stage != EStage::Done);
    if (stage == EStage::Setup) {
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

/// Back to the beginning, with nothing left.
void CRecorderWindow::Fail(const QString& strText) {
    m_film.Abandon();
    m_pPlayer->Unload();
    RemoveLecture(m_request.strFolder);
    SetStage(EStage::Setup);
    QMessageBox box(QMessageBox::Critical, RecorderText::c_strTitle, strText, QMessageBox::Ok, this);
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
                if (m_bCancelled)
                    QDialog::reject();
                else
                    then(strFailure);
            },
            Qt::QueuedConnection);
    });
}

void CRecorderWindow::Begin() {
    const auto tell = [this](const QString& strText, QWidget* pField) {
        QMessageBox::information(this, RecorderText::c_strTitle, strText);
        pField->setFocus();
    };
    const QString strPresentation = m_pPresentation->text().trimmed();
    m_source = ChosenSource();
    if (!QFileInfo(strPresentation).isFile())
        return tell(RecorderText::c_strNoPresentation, m_pPresentation);
    if (m_source.Kind == EKind::File && !QFileInfo(m_source.strPlace).isFile())
        return tell(RecorderText::c_strNoFilm, m_pFilmFile);
    if (!Platform::HasMediaEncoder())
        return tell(RecorderText::c_strNoEncoder, m_pStart);
    SetStage(EStage::Converting);
    Wait(RecorderText::c_strConverting, -1);
    Beside(
        [this, strPath = Platform::FromNative(QFileInfo(strPresentation).absoluteFilePath())] {
            m_slides = ConvertSlides(strPath, m_request.strFolder, [this] { return !m_bCancelled; });
        },
        [this](const QString& strFailure) {
            if (strFailure.isEmpty())
                StartFilm();
            else
                Fail(strFailure);
        });
}

void CRecorderWindow::StartFilm() {
    m_times.emplace(m_slides.Titles);
    m_bFilmDone = m_bFilmWell = m_bFinished = false;
    m_nBehind = -1;
    m_nFilm = 0;
    {
        const QSignalBlocker filling(m_pOutline);
        m_pOutline->clear();
        m_pOutline->addItems(m_slides.Titles);
    }
    m_nSlide = -1;
    SetStage(EStage::Recording);
    // No smaller than the person has made it.
    resize(size().expandedTo(c_recordSize).boundedTo(screen()->availableSize()));
    Turn(0);
    m_dRatio = m_pSlide->GetRatio();
    m_clock.start();
    const bool bFile = m_source.Kind == EKind::File;
    m_pPlayer->setVisible(bFile);
    if (bFile)
        m_pPlayer->Load(Platform::FromNative(QFileInfo(m_source.strPlace).absoluteFilePath()));
    m_film.Start(EncoderArguments(m_source, m_pSound->isChecked(),
                                  Platform::ToNativeExact(WorkingFilmPath(m_request.strFolder))));
    ShowTime();
}

qint64 CRecorderWindow::FilmNow() const {
    if (m_source.Kind == EKind::File)
        return m_pPlayer->GetPosition();
    return m_nBehind < 0 ? 0 : qMax<qint64>(m_clock.elapsed() - m_nBehind, 0);
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
    m_bFilmWell = bWell && (m_source.Kind == EKind::File || m_bFinished);
    // What there is of a film that broke off is a film, and the slides of it are known.
    if (m_nFilm <= 0 || (m_source.Kind == EKind::File && !bWell))
        return Fail(RecorderText::c_strNotRecorded);
    if (m_source.Kind != EKind::File)
        m_bFinished = true;
    if (m_bFinished)
        Write();
}

void CRecorderWindow::AskFinish() {
    if (m_source.Kind == EKind::File ||
        Asks(RecorderText::c_strStopNow, RecorderText::c_strStopYes, RecorderText::c_strNo))
        FinishFilm();
}

void CRecorderWindow::FinishFilm() {
    if (m_stage != EStage::Recording || std::exchange(m_bFinished, true))
        return;
    m_pPlayer->Pause();
    if (m_bFilmDone)
        return Write();
    SetStage(EStage::Writing);
    Wait(RecorderText::c_strWriting, -1);
    // A film that is there already comes whole.
    if (m_source.Kind != EKind::File)
        m_film.Finish();
}

void CRecorderWindow::Write() {
    SetStage(EStage::Writing);
    m_nPercent = 0;
    Beside(
        [this] {
            WriteLecture(m_request, m_slides, m_dRatio, *m_times, [this](qint64 nDone, qint64 nTotal) {
                m_nPercent = static_cast<int>(nDone * c_nWhole / qMax<qint64>(nTotal, 1));
                return !m_bCancelled;
            });
        },
        [this](const QString& strFailure) { End(strFailure); });
}

void CRecorderWindow::End(const QString& strFailure) {
    const QString strLength = ClockText(m_nFilm);
    if (strFailure.isEmpty() && m_bFilmWell)
        return ShowEnd(RecorderText::c_strDone.arg(m_slides.Pages.size()).arg(strLength), false);
    if (strFailure.isEmpty())
        return ShowEnd(RecorderText::c_strBrokenOff.arg(strLength).arg(m_slides.Pages.size()), true);
    // The times are still known: once there is room it can be done.
    if (Asks(RecorderText::c_strAskAgain.arg(strFailure), RecorderText::c_strAgain,
             RecorderText::c_strGiveUp))
        return Write();
    const QString strFolder = m_request.strFolder;
    ShowEnd(KeepFilmAlone(m_request) ? RecorderText::c_strFilmAlone.arg(strFailure, strLength)
                                     : RecorderText::c_strFilmInPlace.arg(
                                           strFailure, Platform::ToShown(WorkingFilmPath(strFolder))),
            true);
}

void CRecorderWindow::ShowEnd(const QString& strText, bool bWarning) {
    SetStage(EStage::Done);
    m_pPlayer->Unload();
    m_pWait->setText(strText);
    if (bWarning)
        QMessageBox::warning(this, RecorderText::c_strTitle, strText);
}

bool CRecorderWindow::Asks(const QString& strText, const QString& strYes, const QString& strNo) {
    QMessageBox box(QMessageBox::Question, RecorderText::c_strTitle, strText, QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    const QPushButton* pYes = box.addButton(strYes, QMessageBox::YesRole);
    box.setDefaultButton(box.addButton(strNo, QMessageBox::NoRole));
    box.exec();
    return box.clickedButton() == pYes;
}

void CRecorderWindow::Turn(int nSlide) {
    if (m_stage != EStage::Recording || nSlide < 0 || nSlide >= m_slides.Pages.size() || nSlide == m_nSlide)
        return;
    m_nSlide = nSlide;
    m_times->ShowSlide(nSlide, FilmNow());
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

void CRecorderWindow::ShowTime() {
    const bool bFile = m_source.Kind == EKind::File;
    if (m_stage == EStage::Recording) {
        const QString strLive = m_nBehind < 0 ? RecorderText::c_strStarting
                                              : RecorderText::c_strRecording.arg(ClockText(FilmNow()));
        m_pTime->setText(
            bFile ? RecorderText::c_strPlaying.arg(ClockText(FilmNow()), ClockText(m_pPlayer->GetDuration()))
                  : strLive);
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
        // It may have come to its end meanwhile.
        if (!bAbandon || m_stage == EStage::Done)
            return;
    }
    m_film.Abandon();
    m_bCancelled = true;
    if (!m_work.joinable())
        QDialog::reject();
}
