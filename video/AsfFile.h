#pragma once

#include <QList>
#include <QString>

#include <functional>

/// What the header of a Windows Media file (Advanced Systems Format) says beside its streams: places of the
/// film with names, and commands that the player hands to the page beside it when the film comes to them.

struct SAsfCommand {
    /// Milliseconds from the film's beginning.
    qint64 nTime = 0;
    QString strType;
    QString strParameter;
    bool operator==(const SAsfCommand&) const = default;
};

struct SAsfMarker {
    /// Milliseconds from the film's beginning.
    qint64 nTime = 0;
    QString strName;
    bool operator==(const SAsfMarker&) const = default;
};

struct SAsfScript {
    /// By their times.
    QList<SAsfCommand> Commands;
    /// As they stand in the file: marker 1 is the first.
    QList<SAsfMarker> Markers;
};

/// Of the file with that path. What is no such file, or is damaged, has none, or those that stand before the
/// damage. Never throws; reads the header alone, and of a header that is larger than any film has, nothing.
SAsfScript ReadAsfScript(const QString& strPath);

/// Copies the film and gives the copy these commands and markers in place of its own. The target is a path
/// that is free. progress, which may be null, hears how many bytes are done of how many, and ends the copying
/// with false. Throws Torvane::CRunException, and leaves no target then; also when the source is no such
/// film.
void WriteAsfScript(const QString& strSource, const QString& strTarget, const SAsfScript& script,
                    const std::function<bool(qint64 nDone, qint64 nTotal)>& progress = {});
