#pragma once

#include "companions/VRM/LectureTimes.h"

#include <QFile>
#include <QList>
#include <QString>

/// What stands beside a film that was not recorded to its end: all that its lecture is made of.
struct SLoggedLecture {
    struct SEvent {
        /// Milliseconds of the film.
        qint64 nTime = 0;
        /// From 0; -1 for a place of the pointer.
        int nSlide = -1;
        int nX = 0;
        int nY = 0;
    };

    /// Native path.
    QString strPresentation;
    int nSlides = 0;
    /// The film that was there already, native; empty for a live one.
    QString strFilm;
    /// It is the one that an earlier recorder has left.
    bool bOfKept = false;
    /// Of the parts that came to their end, milliseconds.
    QList<qint64> Lengths;
    QList<SEvent> Events;

    /// How often the page was turned.
    qsizetype CountTurns() const;
    /// As they would be had the lecture come to its end. The titles of as many slides.
    CLectureTimes GetTimes(const QStringList& titles) const;
};

/// Of the file with that path (backslash form), as far as it goes. Without slides where there is none.
SLoggedLecture ReadLectureLog(const QString& strPath);

/// Writes it line by line while the lecture is recorded. Each slide and each end of a part is on its way to
/// the disk when the call returns; a disk that is full costs what does not go there any more.
class CLectureLog {
public:
    /// Replaces the file.
    void Begin(const QString& strPath, const SLoggedLecture& lecture);
    void ShowSlide(int nSlide, qint64 nTime);
    void MovePointer(int nX, int nY, qint64 nTime);
    void EndPart(qint64 nLength);
    void Close() { m_file.close(); }

private:
    void Write(const QByteArray& line, bool bFlush);

    QFile m_file;
};
