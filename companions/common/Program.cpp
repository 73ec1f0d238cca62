#include "companions/common/Program.h"

#include <QTextStream>

bool CompanionProgram::HasScreen() {
    for (const char* szVariable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(szVariable))
            return true;
    }
    return false;
}

void CompanionProgram::SayFault(const QString& strMessage) {
    QTextStream(stderr) << strMessage << Qt::endl;
}
