#pragma once

#include "companions/common/Program.h"

namespace CompanionProgram {

/// Makes the application object ready for windows: the program's icon, and Chinese standard buttons.
void PrepareWindows();

/// Shows a failure that comes before any window does, and says it on the error stream too.
void ShowFault(const QString& strTitle, const QString& strMessage);

} // namespace CompanionProgram
