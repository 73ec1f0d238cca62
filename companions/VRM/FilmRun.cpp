#include "companions/VRM/FilmRun.h"

#include "platform/base/Process.h"

#include <QDir>
#include <QFile>
#include <QTimer>

using namespace Qt::StringLiterals;
using EKind = SFilmSource::EKind;

namespace {

constexpr int c_nEndMilliseconds = 15000;
constexpr int c_nKillMilliseconds = 3000;

bool HasSoundServer() {
    const QString strRuntime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return qEnvironmentVariableIsSet("PULSE_SERVER") ||
           (!strRuntime.isEmpty() && QFile::exists(strRuntime + u"/pulse/native"_s));
}

bool HasSoundCard() {
    QFile cards(u"/proc/asound/pcm"_s);
    return cards.open(QIODevice::ReadOnly) && cards.readAll().contains("capture");
}

QStringList MicrophoneInput() {
    return {
        u"-f"_s,     HasSoundServer() ? u"pulse"_s : u"alsa"_s, u"-thread_queue_size"_s, u"512"_s, u"-i"_s,
        u"default"_s};
}

QStringList InputOf(const SFilmSource& source) {
    switch (source.Kind) {
    case EKind::Screen:
        return {u"-f"_s, u"x11grab"_s, u"-framerate"_s, u"10"_s, u"-thread_queue_size"_s,
                u"64"_s, u"-i"_s,      source.strPlace};
    case EKind::Camera:
        return {u"-f"_s, u"v4l2"_s, u"-thread_queue_size"_s, u"64"_s, u"-i"_s, source.strPlace};
    case EKind::Microphone:
        return MicrophoneInput();
    case EKind::File:
        break;
    }
    // As a file whatever its name, and one that leads nowhere else.
    return {u"-protocol_whitelist"_s, u"file"_s, u"-i"_s, u"file:"_s + source.strPlace};
}

} // namespace

bool HasMicrophone() {
    return HasSoundServer() || HasSoundCard();
}

QList<SFilmSource> FilmSources() {
    QList<SFilmSource> sources;
    if (const QString strDisplay = qEnvironmentVariable("DISPLAY"); !strDisplay.isEmpty())
        sources.append({EKind::Screen, strDisplay});
    for (const QString& strCamera : QDir(u"/dev"_s).entryList({u"video*"_s}, QDir::System))
        sources.append({EKind::Camera, u"/dev/"_s + strCamera});
    if (HasMicrophone())
        sources.append({EKind::Microphone, {}});
    sources.append({EKind::File, {}});
    return sources;
}

QStringList EncoderArguments(const SFilmSource& source, bool bSound, const QString& strTarget) {
    QStringList arguments{u"-hide_banner"_s, u"-loglevel"_s, u"error"_s,  u"-nostats"_s, u"-stats_period"_s,
                          u"0.25"_s,         u"-progress"_s, u"pipe:1"_s, u"-y"_s};
    arguments += InputOf(source);
    const bool bPictures = source.Kind == EKind::Screen || source.Kind == EKind::Camera;
    if (bSound && bPictures)
        arguments += MicrophoneInput();
    if (source.Kind != EKind::Microphone) {
        // A whole picture every second, so that a marker is soon reached.
        arguments += QStringList{u"-vf"_s,
                                 u"scale=w='trunc(min(1280,iw)/2)*2':h=-2"_s,
                                 u"-c:v"_s,
                                 u"wmv2"_s,
                                 u"-q:v"_s,
                                 u"4"_s,
                                 u"-force_key_frames"_s,
                                 u"expr:gte(t,n_forced)"_s,
                                 u"-pix_fmt"_s,
                                 u"yuv420p"_s};
        if (source.Kind == EKind::File)
            arguments += QStringList{u"-map"_s, u"0:V:0?"_s, u"-map"_s, u"0:a:0?"_s};
    }
    arguments +=
        QStringList{u"-c:a"_s, u"wmav2"_s, u"-b:a"_s, u"96k"_s, u"-ac"_s, u"2"_s, u"-ar"_s, u"44100"_s};
    // Neither titles nor chapters of another film.
    arguments += QStringList{u"-map_metadata"_s,    u"-1"_s, u"-map_chapters"_s, u"-1"_s, u"-f"_s, u"asf"_s,
                             u"file:"_s + strTarget};
    return arguments;
}

CFilmRun::CFilmRun() = default;

CFilmRun::~CFilmRun() {
    Abandon();
}

void CFilmRun::Start(const QStringList& arguments) {
    Abandon();
    m_bFinishing = false;
    m_pProcess = std::make_unique<QProcess>();
    m_pProcess->setStandardErrorFile(QProcess::nullDevice());
    // Nobody is filmed by a recorder that is no more.
    Platform::EndWithUs(*m_pProcess);
    QObject::connect(m_pProcess.get(), &QProcess::readyReadStandardOutput, m_pProcess.get(),
                     [this] { ReadProgress(); });
    QObject::connect(m_pProcess.get(), &QProcess::finished, m_pProcess.get(),
                     [this](int nCode, QProcess::ExitStatus status) {
                         // Told to end, some versions call that a failure.
                         End(status == QProcess::NormalExit && (nCode == 0 || m_bFinishing));
                     });
    QObject::connect(m_pProcess.get(), &QProcess::errorOccurred, m_pProcess.get(),
                     [this](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             End(false);
                     });
    m_pProcess->start(Platform::FindSystemProgram(u"ffmpeg"_s), arguments);
}

void CFilmRun::ReadProgress() {
    while (m_pProcess && m_pProcess->canReadLine()) {
        const QByteArray line = m_pProcess->readLine().trimmed();
        bool bNumber = false;
        const qint64 nFilm = line.startsWith("out_time_us=") ? line.mid(12).toLongLong(&bNumber) / 1000 : 0;
        if (bNumber && OnProgress)
            OnProgress(nFilm);
    }
}

void CFilmRun::Finish() {
    if (!m_pProcess || std::exchange(m_bFinishing, true))
        return;
    m_pProcess->write("q");
    QTimer::singleShot(c_nEndMilliseconds, m_pProcess.get(),
                       [pProcess = m_pProcess.get()] { pProcess->terminate(); });
    // One that waits for a device hears neither.
    QTimer::singleShot(c_nEndMilliseconds + c_nKillMilliseconds, m_pProcess.get(),
                       [pProcess = m_pProcess.get()] { pProcess->kill(); });
}

void CFilmRun::Abandon() {
    if (!m_pProcess)
        return;
    m_pProcess->disconnect();
    m_pProcess->kill();
    m_pProcess->waitForFinished();
    m_pProcess.reset();
}

void CFilmRun::End(bool bWell) {
    // It calls us itself.
    m_pProcess.release()->deleteLater();
    if (OnEnd)
        OnEnd(bWell);
}
