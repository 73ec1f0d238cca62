#pragma once

#include "companions/compiler/SitePlan.h"

#include <QList>
#include <QString>

/// A recorded lecture, read from its folder as the site plays it: film, outline, slides, and what the film
/// has the slide page do while it runs.
struct Lecture {
    struct Place {
        /// Milliseconds from the film's beginning; -1 when the film does not say.
        qint64 nTime = -1;
        QString strName;
    };
    struct Step {
        qint64 nTime = 0;
        QString strScript;
        /// The call of a slide, which undoes what went before it.
        bool bSlide = false;
    };
    /// Source files; empty for none.
    QString strFilm;
    QString strSlides;
    QList<Place> Outline;
    QList<Step> Steps;
    /// The scripts were made under another school's name, or are damaged.
    bool bScriptsUnreadable = false;
};

/// The slide page of the lecture in a folder of the course; empty for none.
QString LectureSlides(const CSourceTree& tree, const QString& strFolder);

/// Of a node that shows a lecture. What can't be read is left out.
Lecture ReadLecture(const CSitePlan& plan, int nNode);

/// Where the film stands in the site in a form that browsers play: a file of the course itself, or the name
/// of one that is made of the film.
struct PlayableFilm {
    QString strName;
    bool bMade = false;
};
PlayableFilm FindPlayable(const CSourceTree& tree, const QString& strFolder, const QString& strFilm);

/// The program that makes films that browsers play, native; empty when this machine has none.
QString FilmProgram();

enum class EFilmEnd { Made, Failed, DiskFull };

/// Makes one: from and to are native paths. mayGoOn is asked all the time, and false ends it.
EFilmEnd MakePlayable(const QString& strProgram, const QString& strFrom, const QString& strTo,
                      const std::function<bool()>& mayGoOn);
