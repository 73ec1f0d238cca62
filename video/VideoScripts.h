#pragma once

#include "video/VideoKey.h"

#include <QString>
#include <QStringList>

/// The scripts of a lecture, which its film calls by number while it plays: each one is run in the slide
/// page. They stand in the film's folder as "CourseInfo\s.esf".
struct SVideoScripts {
    /// Whole calls, as that of the next slide. Number -1 in the film is the first one.
    QStringList First;
    /// Places of the pointer, each as the call of "MoveMouse". Number 0 is the first one.
    QStringList Second;

    /// The script that a command of the film calls by its parameter, read as a decimal number; empty for
    /// none. The last of the second list is never called: behind the last ";" stands an empty one.
    QString Called(const QString& strParameter) const;
};

/// More scripts than any lecture has; a longer file is refused.
constexpr qint64 c_nMaxScriptBytes = qint64{16} * 1024 * 1024;

/// The file's name below the folder of the film, "CourseInfo\s.esf", with "\" before it.
QString ScriptFileBelow();

/// Reads the scripts of the film in the folder (without a trailing backslash). A key of another school gives
/// garbage, which no page runs. Throws Torvane::CRunException with a message for the person when the file
/// can't be opened, and when it is none.
SVideoScripts ReadVideoScripts(const QString& strFolder, const CVideoKey& key);

/// The bytes of the file. The places are what follows "MoveMouse", as "(12,34)"; no item holds a ";". Throws
/// Torvane::CRunException for a modulus that is none and for more than 983,025 bytes of calls, which the file
/// can't tell of.
QByteArray MakeVideoScripts(const QStringList& calls, const QStringList& places, const SRecorderKey& key);
