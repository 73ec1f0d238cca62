#pragma once

#include <QString>

namespace Platform {

/// Has the desktop ask the person with which program to open the file (native form). Waits for nothing. False
/// when there is nobody who could ask.
bool ChooseProgram(const QString& strFile);

} // namespace Platform
