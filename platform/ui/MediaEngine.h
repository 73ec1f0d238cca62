#pragma once

#include <QImage>
#include <QList>
#include <QString>

#include <functional>

/// What a file turned out to hold.
struct SMediaInfo {
    /// Milliseconds; 0 when the file doesn't say.
    qint64 nDuration = 0;
    bool bPicture = false;
    bool bSeekable = false;
    /// Milliseconds: where the film's chapters or markers begin, in the file's order.
    QList<qint64> Markers;
};

enum class EMediaState { Stopped, Playing, Paused };

enum class EMediaFailure {
    NotReadable, ///< missing, empty, or no file that may be read
    NotMedia,    ///< nothing in it that can be played
    NoSound,     ///< sound alone, and no device to play it on
};

/// The decoder behind the player, as the module makes it. Everything is called on the interface thread and
/// returns at once: files are opened and decoded beside it. The callbacks come on the interface thread, from
/// the event loop, and of the file that was loaded last.
class IMediaEngine {
public:
    virtual ~IMediaEngine() = default;

    /// A native path. Ends with OnLoaded, stopped, or OnFailure.
    virtual void Load(const QString& strNativePath) = 0;
    /// Lets go of the file.
    virtual void Unload() = 0;
    /// From the beginning when it stands at the end.
    virtual void Play() = 0;
    virtual void Pause() = 0;
    virtual void Stop() = 0;
    /// Milliseconds; of many in quick order the last counts.
    virtual void Seek(qint64 nPosition) = 0;
    /// 0 to 100.
    virtual void SetVolume(int nPercent) = 0;
    /// How large pictures are wanted, in pixels of the screen; larger ones are made smaller.
    virtual void SetRoom(const QSize& room) = 0;

    std::function<void(const SMediaInfo&)> OnLoaded;
    std::function<void(EMediaFailure)> OnFailure;
    std::function<void(EMediaState)> OnState;
    std::function<void(qint64)> OnPosition;
    std::function<void()> OnEnded;
    std::function<void(const QImage&)> OnPicture;
};

/// What the module exports, under the name of the constant.
using MediaEngineFactory = IMediaEngine* (*)();
inline constexpr const char* c_szMediaEngineFactory = "VorelMakeMediaEngine";
