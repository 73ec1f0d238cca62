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
    /// A camera's.
    QString strName;
    /// A file that an earlier recorder has encoded: it is copied.
    bool bEncoded = false;
};

/// What can be recorded here: the screen, each camera, the microphone where there is one, and a file.
QList<SFilmSource> FilmSources();

/// The encoder's arguments. bSound adds the microphone to pictures that have no sound of their own.
QStringList EncoderArguments(const SFilmSource& source, bool bSound, const QString& strTarget);

/// The same for showing what the source would film, and how loud it is, without filming it. A file shows
/// its first picture.
QStringList PreviewArguments(const SFilmSource& source, bool bSound);

/// How large the small pictures are that show what is being filmed: rows of three bytes a pixel.
constexpr int c_nLiveWidth = 240;
constexpr int c_nLiveHeight = 180;

/// Puts films of one kind one behind the other, each as long as it is given in milliseconds; 0 for as long as
/// it says itself. Native paths. False when that failed or mayGoOn has ended it; no target stands then.
bool JoinFilms(const QStringList& films, const QList<qint64>& lengths, const QString& strTarget,
               const std::function<bool()>& mayGoOn);

/// The encoder at work. All on the thread that made it; the callbacks come from its event loop.
class CFilmRun {
public:
    CFilmRun();
    ~CFilmRun();
    CFilmRun(const CFilmRun&) = delete;
    CFilmRun& operator=(const CFilmRun&) = delete;

    /// How much of the film there is, in milliseconds; some times a second.
    std::function<void(qint64 nFilm)> OnProgress;
    /// What a live source shows: a small picture.
    std::function<void(const QByteArray& pixels)> OnPicture;
    /// How loud it is, in decibels: 0 is as loud as can be, -1000 and less is no sound at all.
    std::function<void(double dLevel)> OnLevel;
    /// False when it ended badly.
    std::function<void(bool bWell)> OnEnd;

    void Start(const QStringList& arguments);
    bool IsRunning() const { return m_pProcess != nullptr; }
    /// Has it end the film where it is.
    void Finish();
    /// Ends it at once, with no callback.
    void Abandon();
    /// Why the last one, of such a source, ended badly, as a sentence for a person.
    QString FailureText(SFilmSource::EKind kind) const;

private:
    void ReadPictures();
    void ReadLines();
    void End(bool bWell);

    std::unique_ptr<QProcess> m_pProcess;
    QByteArray m_pixels;
    /// What it says beside the numbers; the end of it.
    QByteArray m_said;
    bool m_bFinishing = false;
};
