#pragma once

#include <QList>
#include <QString>

/// What this machine can record with. Looks, and starts nothing.
namespace Platform {

struct SCamera {
    /// Native path.
    QString strDevice;
    /// As its maker calls it.
    QString strName;
};

/// Those that give pictures. A camera has other devices beside, which tell about its pictures and give none.
QList<SCamera> Cameras();

/// Whether a sound server runs for the person.
bool HasSoundServer();
/// Whether there is anything that may hear: a sound server may have a microphone that is no card's.
bool HasMicrophone();
/// Whether a sound card has something that hears.
bool HasCapturingCard();

/// Whether the screen that the person sees is the one that programs of the older display protocol are shown.
bool CanRecordScreen();

} // namespace Platform
