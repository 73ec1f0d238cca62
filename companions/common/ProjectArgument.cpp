#include "companions/common/ProjectArgument.h"

#include "platform/base/NativePath.h"

#include <QFileInfo>
#include <QRegularExpression>

bool IsStoredPath(const QString& strArgument) {
    static const QRegularExpression stored(QStringLiteral(R"(^([A-Za-z]:[\\/]|\\\\))"));
    return stored.match(strArgument).hasMatch();
}

QString ReadProjectArgument(const QString& strArgument) {
    return Platform::FromNative(IsStoredPath(strArgument) ? strArgument
                                                          : QFileInfo(strArgument).absoluteFilePath());
}
