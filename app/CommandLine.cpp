#include "app/CommandLine.h"

#include "platform/base/NativePath.h"

#include <QDir>

namespace {

QString AbsoluteFile(const QString& strArgument, const QString& strCurrentFolder) {
    const QString strPath = Platform::FromNative(strArgument);
    const bool bDrive = strPath.size() >= 2 && strPath[1] == u':';
    const bool bShare = strPath.startsWith(QLatin1String("\\\\"));
    if (bShare || (bDrive && strPath[0].toUpper() != u'Z'))
        return strPath;
    // Cleaned of "." and "..", so that the same file stands once in the recent list.
    const QDir folder(strCurrentFolder);
    return Platform::FromNative(QDir::cleanPath(folder.absoluteFilePath(Platform::ToNativeExact(strPath))));
}

} // namespace

CommandLine ParseCommandLine(const QStringList& arguments, const QString& strCurrentFolder) {
    CommandLine line;
    bool bOptions = true;
    for (const QString& strArgument : arguments) {
        if (bOptions && strArgument == QLatin1String("--"))
            bOptions = false;
        else if (bOptions && strArgument == QLatin1String("--no-splash"))
            line.bShowSplash = false;
        else if (bOptions && strArgument.startsWith(u'-'))
            continue;
        else if (line.strFile.isEmpty() && !strArgument.isEmpty())
            line.strFile = AbsoluteFile(strArgument, strCurrentFolder);
    }
    return line;
}
