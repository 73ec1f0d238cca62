#include "platform/base/FileOpening.h"

#include "platform/base/DesktopPrograms.h"
#include "platform/base/NativePath.h"
#include "platform/base/Process.h"
#include "platform/base/ProgramChooser.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace Platform {

namespace {

/// Not valid when the extension says nothing.
QMimeType TypeOf(const QString& strExtension) {
    if (!strExtension.startsWith(u'.'))
        return {};
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(QStringLiteral("a") + strExtension, QMimeDatabase::MatchExtension);
    return type.isDefault() ? QMimeType() : type;
}

std::optional<DesktopProgram> ProgramFor(const QString& strExtension) {
    const QMimeType type = TypeOf(strExtension);
    return type.isValid() ? FindDesktopProgram(type) : std::nullopt;
}

/// An argument that SplitCommandLine gives back as it is, also when a path with blanks has taken the place of
/// "%1" in it.
QString Quoted(const QString& strArgument) {
    QString strQuoted;
    qsizetype nSlashes = 0;
    for (const QChar c : strArgument) {
        if (c == u'"')
            strQuoted += QString(nSlashes + 1, u'\\');
        nSlashes = c == u'\\' ? nSlashes + 1 : 0;
        strQuoted += c;
    }
    return u'"' + strQuoted + QString(nSlashes, u'\\') + u'"';
}

} // namespace

QString GetFileClass(const QString& strExtension) {
    return TypeOf(strExtension).name();
}

QString GetFileTypeName(const QString& strExtension) {
    const QMimeType type = TypeOf(strExtension);
    return type.isValid() ? type.comment() : QString();
}

QString GetEditCommand(const QString& strExtension) {
    const auto program = ProgramFor(strExtension);
    if (!program)
        return {};
    QStringList command = CommandWithFile(*program, QStringLiteral("%1"));
    for (QString& strArgument : command)
        strArgument = Quoted(strArgument);
    return command.join(u' ');
}

bool OpenWithVerb(const QString& strPath) {
    const QString strFile = ToNative(strPath);
    const QString strSuffix = QFileInfo(strFile).suffix();
    const auto program = ProgramFor(u'.' + strSuffix.toLower());
    if (!program)
        return ChooseProgram(strFile);
    return StartQuietly(CommandWithFile(*program, strFile), program->strFolder) || ChooseProgram(strFile);
}

} // namespace Platform
