#pragma once

#include <QString>

/// The ways through the real program that a person may go. The folder takes the screenshots, and
/// "facts.txt" with what the caller has to know afterwards. Each throws Robot::Failure.

/// A teacher's way through a whole course. Part 1: the start-up dialog, the wizard, a page edited and saved,
/// a node added, the program closed. Part 2: the course opened again from the recent list, found as it was
/// left, compiled. The folder holds the picture that is put into the page.
void RunJourney(const QString& strFolder, int nPart);

/// The compiler's own window in part 2: the folder that it proposes, the report, the end.
void CompileInWindow(const QString& strFolder);

/// Every window of the shell, opened from the keyboard where there is a way to, with its faults.
void RunTour(const QString& strFolder);

/// The tour's beginning alone: a new course, for others to open.
void MakeCourse(const QString& strFolder);

/// One trouble between the program and its course server, named as in trials.sh.
void RunTrial(const QString& strFolder, const QString& strName);

/// A node of each kind of content, made with the wizard out of the caller's material.
void MakeKinds(const QString& strFolder);
/// A lecture, recorded into a node and looked at.
void RecordLecture(const QString& strFolder);
/// The recorder's own window: the slides and the film that the caller names, or nothing.
void RecordInWindow(const QString& strFolder);
/// Nodes of what the browser engine shows and of what it does not, and each view of them.
void ShowViews(const QString& strFolder);
