#include "companions/compiler/FrameParts.h"

#include <QFile>
#include <QFileInfo>

namespace FrameParts {

QByteArray Content(const QString& strPart) {
    QFile file(QStringLiteral(":/compiler/") + QFileInfo(strPart).fileName());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("a part of the frame is missing in the program");
    return file.readAll();
}

QString HiddenHint(const QString& strText) {
    return QStringLiteral("<span class=\"heard\">") + strText.toHtmlEscaped() + QStringLiteral("</span>");
}

} // namespace FrameParts
