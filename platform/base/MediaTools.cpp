#include "platform/base/MediaTools.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace Platform {

bool HasMediaPlayer(const QStringList& pluginFolders) {
    // A back end that is named but not there is passed over by the toolkit, which takes its own.
    const QString strNamed = qEnvironmentVariable("QT_MEDIA_BACKEND");
    for (const QString& strBackEnd : {strNamed, QStringLiteral("ffmpeg")}) {
        for (const QString& strFolder : pluginFolders) {
            if (!strBackEnd.isEmpty() && !strBackEnd.contains(u'/') &&
                QFileInfo(strFolder + QStringLiteral("/multimedia/lib%1mediaplugin.so").arg(strBackEnd))
                    .isFile())
                return true;
        }
    }
    return false;
}

bool HasMediaEncoder() {
    return !QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty();
}

} // namespace Platform
