#pragma once

#include <QList>
#include <QString>

/// A line of the start-up dialog's tab of recent courses.
struct StartupCourse {
    /// The file's title, without its extension.
    QString strTitle;
    /// Backslash form, no trailing backslash.
    QString strFolder;
};

/// The recent courses that still exist.
QList<StartupCourse> ListStartupCourses();

/// The project file that a line stands for.
QString StartupCoursePath(const StartupCourse& course);
