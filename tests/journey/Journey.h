#pragma once

#include <QString>

/// A teacher's way through a whole course. Part 1: the start-up dialog, the wizard, a page edited and saved,
/// a node added, the program closed. Part 2: the course opened again from the recent list, found as it was
/// left, compiled. The folder takes the screenshots; it holds the picture that is put into the page, and
/// "facts.txt" with what the caller has to know afterwards. Throws Robot::Failure.
void RunJourney(const QString& strFolder, int nPart);
