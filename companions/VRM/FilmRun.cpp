#include "companions/VRM/FilmRun.h"

#include "companions/VRM/Texts.h"
#include "companions/common/FilmFault.h"
#include "platform/base/CaptureDevices.h"
#include "platform/base/Process.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using EKind = SFilmSource::EKind;

namespace {

constexpr int c_nEndMilliseconds = 15000;
constexpr int c_nKillMilliseconds = 3000;
constexpr qsizetype c_nLiveBytes = qsizetype{c_nLiveWidth} * c_nLiveHeight * 3;
constexpr qsizetype c_nMaxSaid = 4000;

/// Tells ten times a second how loud it is, on the stream that has the progress too.
const QString c_strLevels =
    u"asetnsamples=n=4410:p=0,astats=metadata=1:reset=1:measure_perchannel=none:measure_overall=Peak_level,"
    "ametadata=mode=print:key=lavfi.astats.Overall.Peak_level:file='pipe\\:2':direct=1"_s;
const QString c_strMostPictures = u"30"_s;
const QString c_strLivePicture = u"fps=10,scale=%1:%2:force_original_aspect_ratio=decrease,pad=%1:%2:-1:-1"_s;
const QStringList c_quietly{u"-hide_banner"_s, u"-loglevel"_s, u"error"_s, u"-nostats"_s};
/// A word that the level stands behind.
constexpr QByteArrayView c_level("lavfi.astats.Overall.Peak_level=");
constexpr QByteArrayView c_time("out_time_us=");
constexpr double c_dNoSound = -1000;

/// What is told many times a second, and has blanks as a failure's reason has.
bool IsProgress(const QByteArray& line) {
    return line.startsWith("frame:") || line.startsWith("bitrate=") || line.startsWith("speed=");
}

QStringList MicrophoneInput() {
    // The sound server would else keep some two seconds back, and the level come in leaps.
    QStringList input = Platform::HasSoundServer()
                            ? QStringList{u"-f"_s, u"pulse"_s, u"-fragment_size"_s, u"8820"_s}
                            : QStringList{u"-f"_s, u"alsa"_s};
    return input << u"-thread_queue_size"_s << u"512"_s << u"-i"_s << u"default"_s;
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

bool HasLivePictures(const SFilmSource& source) {
    return source.Kind == EKind::Screen || source.Kind == EKind::Camera;
}

/// The small pictures, for us.
QStringList LivePictures() {
    return {u"-map"_s,     u"0:V:0"_s, u"-vf"_s, c_strLivePicture.arg(c_nLiveWidth).arg(c_nLiveHeight),
            u"-pix_fmt"_s, u"rgb24"_s, u"-f"_s,  u"rawvideo"_s,
            u"pipe:1"_s};
}

QStringList Encoding(const SFilmSource& source, bool bSound) {
    QStringList arguments;
    if (source.Kind != EKind::Microphone) {
        // Square points, which every player shows alike; and a whole picture every second, so that a marker
        // is soon reached.
        arguments += QStringList{
            u"-vf"_s, u"scale=w='trunc(min(1280,iw*sar)/2)*2':h='max(2,trunc(ow/dar/2)*2)',setsar=1"_s,
            // A film with marks of time a thousandth apart would else get a thousand pictures a
            // second.
            u"-fpsmax"_s, c_strMostPictures, u"-c:v"_s, u"wmv2"_s, u"-q:v"_s, u"4"_s, u"-force_key_frames"_s,
            u"expr:gte(t,n_forced)"_s, u"-pix_fmt"_s, u"yuv420p"_s};
        if (source.Kind == EKind::File)
            arguments += QStringList{u"-map"_s, u"0:V:0?"_s, u"-map"_s, u"0:a:0?"_s};
    }
    if (source.Kind == EKind::Microphone || (bSound && HasLivePictures(source)))
        arguments += QStringList{u"-af"_s, c_strLevels};
    return arguments +
           QStringList{u"-c:a"_s, u"wmav2"_s, u"-b:a"_s, u"96k"_s, u"-ac"_s, u"2"_s, u"-ar"_s, u"44100"_s};
}

} // namespace

QList<SFilmSource> FilmSources() {
    QList<SFilmSource> sources;
    if (const QString strDisplay = qEnvironmentVariable("DISPLAY"); !strDisplay.isEmpty())
        sources.append({EKind::Screen, strDisplay, {}});
    for (const Platform::SCamera& camera : Platform::Cameras())
        sources.append({EKind::Camera, camera.strDevice, camera.strName});
    if (Platform::HasMicrophone())
        sources.append({EKind::Microphone, {}, {}});
    sources.append({EKind::File, {}, {}});
    return sources;
}

QStringList EncoderArguments(const SFilmSource& source, bool bSound, const QString& strTarget) {
    const bool bLivePictures = HasLivePictures(source);
    QStringList arguments = c_quietly +
                            QStringList{u"-stats_period"_s, u"0.25"_s, u"-progress"_s, u"pipe:2"_s, u"-y"_s} +
                            InputOf(source);
    if (bSound && bLivePictures)
        arguments += MicrophoneInput();
    if (source.bEncoded)
        arguments += QStringList{u"-map"_s, u"0"_s, u"-c"_s, u"copy"_s};
    else
        arguments += Encoding(source, bSound);
    // Neither titles nor chapters of another film.
    arguments += QStringList{u"-map_metadata"_s,    u"-1"_s, u"-map_chapters"_s, u"-1"_s, u"-f"_s, u"asf"_s,
                             u"file:"_s + strTarget};
    if (bLivePictures)
        arguments += LivePictures();
    return arguments;
}

QStringList PreviewArguments(const SFilmSource& source, bool bSound) {
    const bool bLivePictures = HasLivePictures(source);
    const bool bBeside = bSound && bLivePictures;
    QStringList arguments = c_quietly + InputOf(source);
    if (bBeside)
        arguments += MicrophoneInput();
    if (source.Kind == EKind::Microphone || bBeside)
        arguments += QStringList{
            u"-map"_s, bBeside ? u"1:a:0"_s : u"0:a:0"_s, u"-af"_s, c_strLevels, u"-f"_s, u"null"_s, u"-"_s};
    if (source.Kind == EKind::File)
        arguments += QStringList{u"-frames:v"_s, u"1"_s};
    if (source.Kind != EKind::Microphone)
        arguments += LivePictures();
    return arguments;
}

bool JoinFilms(const QStringList& films, const QList<qint64>& lengths, const QString& strTarget,
               const std::function<bool()>& mayGoOn) {
    QFile list(strTarget + u".list"_s);
    if (!list.open(QIODevice::WriteOnly))
        return false;
    for (qsizetype i = 0; i < films.size(); ++i) {
        list.write("file 'file:" + QFile::encodeName(films[i]).replace("'", "'\\''") + "'\n");
        if (const qint64 nLength = lengths.value(i); nLength > 0)
            list.write("duration " + QByteArray::number(nLength) + "ms\n");
    }
    list.close();
    Platform::CProgramCall call;
    call.strProgram = Platform::FindSystemProgram(u"ffmpeg"_s);
    call.arguments = {u"-nostdin"_s,
                      u"-v"_s,
                      u"error"_s,
                      u"-xerror"_s,
                      u"-y"_s,
                      u"-f"_s,
                      u"concat"_s,
                      u"-safe"_s,
                      u"0"_s,
                      u"-i"_s,
                      u"file:"_s + list.fileName(),
                      u"-map"_s,
                      u"0"_s,
                      u"-c"_s,
                      u"copy"_s,
                      u"-f"_s,
                      u"asf"_s,
                      u"file:"_s + strTarget};
    QByteArray faults;
    const bool bEnded = Platform::RunGroup(call, mayGoOn, &faults) == Platform::EProgramEnd::Ended;
    const bool bDone =
        bEnded && HowFilmWasWritten(faults) == EFilmWriting::Whole && QFileInfo(strTarget).size() > 0;
    list.remove();
    if (!bDone)
        QFile::remove(strTarget);
    return bDone;
}

CFilmRun::CFilmRun() = default;

CFilmRun::~CFilmRun() {
    Abandon();
}

void CFilmRun::Start(const QStringList& arguments) {
    Abandon();
    m_bFinishing = false;
    m_pixels.clear();
    m_said.clear();
    m_pProcess = std::make_unique<QProcess>();
    // Nobody is filmed by a recorder that is no more.
    Platform::EndWithUs(*m_pProcess);
    QObject::connect(m_pProcess.get(), &QProcess::readyReadStandardOutput, m_pProcess.get(),
                     [this] { ReadPictures(); });
    QObject::connect(m_pProcess.get(), &QProcess::readyReadStandardError, m_pProcess.get(),
                     [this] { ReadLines(); });
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

void CFilmRun::ReadPictures() {
    m_pixels += m_pProcess->readAllStandardOutput();
    const qsizetype nWhole = m_pixels.size() / c_nLiveBytes * c_nLiveBytes;
    if (nWhole == 0)
        return;
    // The newest of those that came together.
    const QByteArray picture = m_pixels.sliced(nWhole - c_nLiveBytes, c_nLiveBytes);
    m_pixels.remove(0, nWhole);
    if (OnPicture)
        OnPicture(picture);
}

void CFilmRun::ReadLines() {
    m_pProcess->setReadChannel(QProcess::StandardError);
    while (m_pProcess && m_pProcess->canReadLine()) {
        const QByteArray line = m_pProcess->readLine().trimmed();
        bool bNumber = false;
        if (line.startsWith(c_time)) {
            const qint64 nFilm = line.mid(c_time.size()).toLongLong(&bNumber) / 1000;
            if (bNumber && OnProgress)
                OnProgress(nFilm);
        } else if (line.startsWith(c_level)) {
            // Silence is "-inf".
            const double dLevel = line.mid(c_level.size()).toDouble(&bNumber);
            if (OnLevel)
                OnLevel(bNumber && std::isfinite(dLevel) ? dLevel : c_dNoSound);
        } else if (!IsProgress(line) && (line.contains(' ') || !line.contains('='))) {
            m_said = QByteArray(m_said + line + '\n').right(c_nMaxSaid);
        }
    }
}

QString CFilmRun::FailureText(EKind kind) const {
    if (Platform::FindSystemProgram(u"ffmpeg"_s).isEmpty())
        return RecorderText::c_strNoEncoder;
    const QByteArray said = m_said.toLower();
    const auto tells = [&said](std::initializer_list<const char*> words) {
        return std::ranges::any_of(words, [&said](const char* szWord) { return said.contains(szWord); });
    };
    if (tells({"no space left"}))
        return RecorderText::c_strNoSpace;
    if (kind == EKind::File)
        return RecorderText::c_strFilmNotConverted;
    // The sound server's client gives its reason behind the device's name alone.
    if (tells({"alsa", "pulse", "default:"}))
        return kind == EKind::Microphone ? RecorderText::c_strMicrophoneNotOpened
                                         : RecorderText::c_strSoundNotOpened;
    if (tells({"v4l2", "/dev/video"}))
        return RecorderText::c_strCameraNotOpened;
    if (tells({"x11grab", "display"}))
        return RecorderText::c_strScreenNotRecorded;
    return RecorderText::c_strStoppedEarly;
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
    if (m_pProcess->isOpen())
        ReadLines();
    // It calls us itself.
    m_pProcess.release()->deleteLater();
    if (OnEnd)
        OnEnd(bWell);
}
