#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// Where a film comes from.
struct SFilmSource {
    enum class EKind { Screen, Camera, Microphone, File };
    EKind Kind = EKind::File;
    /// The display, the camera's device, or the file; native.
    QString strPlace;
};

/// What can be recorded here: the screen, each camera, the microphone where there is one, and a file.
QList<SFilmSource> FilmSources();
bool HasMicrophone();

/// The encoder's arguments. bSound adds the microphone to pictures that have no sound of their own.
QStringList EncoderArguments(const SFilmSource& source, bool bSound, const QString& strTarget);

/// The encoder at work. All on the thread that made it; the callbacks come from its event loop.
class CFilmRun {
public:
    CFilmRun();
    ~CFilmRun();
    CFilmRun(const CFilmRun&) = delete;
    CFilmRun& operator=(const CFilmRun&) = delete;

    /// How much of the film there is, in milliseconds; some times a second.
    std::function<void(qint64 nFilm)> OnProgress;
    /// False when it ended badly.
    std::function<void(bool bWell)> OnEnd;

    void Start(const QStringList& arguments);
    bool IsRunning() const { return m_pProcess != nullptr; }
    /// Has it end the film where it is.
    void Finish();
    /// Ends it at once, with no callback.
    void Abandon();

private:
    void ReadProgress();
    void End(bool bWell);

    std::unique_ptr<QProcess> m_pProcess;
    bool m_bFinishing = false;
};
