#pragma once

#include "video/VideoKey.h"

#include <QStringList>

/// What the application starts the recorder with.
struct SRecorderRequest {
    /// Of the folder that the lecture is recorded into; backslash form, without a trailing backslash.
    QString strFolder;
    QString strProject;
    QString strCourse;
    SRecorderKey Key;
};

/// Of the program's arguments: the project file, the modulus, the seed. A path that came in pieces is put
/// together again. Throws Torvane::CRunException when they are none.
SRecorderRequest ReadRecorderRequest(const QStringList& arguments);
