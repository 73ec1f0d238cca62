#pragma once

#include "video/AsfFile.h"

#include <QStringList>

#include <optional>

/// What a lecture's film is to call, gathered while it is recorded: which slide shows when, and where the
/// pointer is on it. Times are milliseconds of the film; what comes late counts as of the last time.
class CLectureTimes {
public:
    /// The titles of all slides.
    explicit CLectureTimes(QStringList titles) : m_titles(std::move(titles)) {}

    /// From 0. The first one shows from the beginning. Of several at one time the last counts.
    void ShowSlide(int nSlide, qint64 nTime);
    /// In thousandths of the slide's width and height. Small and quick moves are passed over: false.
    bool MovePointer(int nX, int nY, qint64 nTime);

    /// Commands and markers of the film.
    const SAsfScript& GetScript() const { return m_script; }
    /// The names of the markers.
    QStringList GetOutline() const;
    /// The scripts that the commands call: one for each slide, and one for each place.
    QStringList GetCalls() const;
    const QStringList& GetPlaces() const { return m_places; }

private:
    qint64 Late(qint64 nTime);
    /// The command for the slide that shows; null before the first.
    const SAsfCommand* LastSlide() const;
    /// With what the pointer did on it.
    void TakeBackSlide();

    QStringList m_titles;
    SAsfScript m_script;
    QStringList m_places;
    qint64 m_nLast = 0;
    qint64 m_nLastMove = -1;
    int m_nX = -1;
    int m_nY = -1;
};
