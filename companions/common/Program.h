#pragma once

#include <QString>

/// What the main functions of the companions have in common, with windows or without.
namespace CompanionProgram {

/// Whether there is a display for windows.
bool HasScreen();

/// Writes a line to the error stream.
void SayFault(const QString& strMessage);

} // namespace CompanionProgram
