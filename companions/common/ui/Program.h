#pragma once

#include <QString>

/// What the main functions of the companions have in common.
namespace CompanionProgram {

/// Whether there is a display for windows.
bool HasScreen();

/// Writes a line to the error stream.
void SayFault(const QString& strMessage);

/// Makes the application object ready for windows: the program's icon, and Chinese standard buttons.
void PrepareWindows();

/// Shows a failure that comes before any window does, and says it on the error stream too.
void ShowFault(const QString& strTitle, const QString& strMessage);

} // namespace CompanionProgram
