#include "platform/base/FileAssociation.h"

#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"
#include "platform/base/Process.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <cerrno>

namespace Platform {
namespace {

constexpr qint64 c_nMostBytes = 4 << 20;

/// The folder of the person's own data or settings, by the desktop's rule: the variable when it holds an
/// absolute path, else below the home. Empty when there is none.
QString PersonalFolder(const char* pVariable, const QString& strBelowHome) {
    const QString strOwn = qEnvironmentVariable(pVariable);
    if (strOwn.startsWith(u'/'))
        return strOwn;
    const QString strHome = qEnvironmentVariable("HOME");
    return strHome.startsWith(u'/') ? strHome + strBelowHome : QString();
}

QString DataFolder() {
    return PersonalFolder("XDG_DATA_HOME", QStringLiteral("/.local/share"));
}

QString ConfigFolder() {
    return PersonalFolder("XDG_CONFIG_HOME", QStringLiteral("/.config"));
}

/// One word for the program's files among those of others.
QString EntryName(const ProgramEntry& program) {
    return program.strName.toLower();
}

QString PackagePath(const FileType& type) {
    return DataFolder() + QStringLiteral("/mime/packages/") + type.strName + QStringLiteral(".xml");
}

bool WriteWhereDifferent(const QString& strPath, const QByteArray& bytes) {
    QByteArray old;
    const QByteArray path = strPath.toUtf8();
    if (ReadFileBytes(path, old, bytes.size() + 1) == 0 && old == bytes)
        return true;
    return QDir().mkpath(QFileInfo(strPath).path()) && ReplaceFileBytes(path, bytes) == 0;
}

bool CopyIcons(const ProgramEntry& program) {
    bool bDone = true;
    for (const int nSize : {16, 32, 48, 256}) {
        QByteArray picture;
        const QString strSource = program.strIconStem + QStringLiteral("-%1.png").arg(nSize);
        const QString strTarget = DataFolder() + QStringLiteral("/icons/hicolor/%1x%1/apps/").arg(nSize) +
                                  EntryName(program) + QStringLiteral(".png");
        bDone &= ReadFileBytes(NativeBytes(strSource), picture, c_nMostBytes) == 0 &&
                 WriteWhereDifferent(strTarget, picture);
    }
    return bDone;
}

bool SetDefault(const QByteArray& mimeType, const QByteArray& entry) {
    QString strList = ConfigFolder() + QStringLiteral("/mimeapps.list");
    // A person may keep the settings elsewhere and link to them: the link stays.
    if (QFileInfo(strList).isSymLink())
        strList = QFileInfo(strList).canonicalFilePath();
    if (strList.isEmpty())
        return false;
    QByteArray list;
    const int nError = ReadFileBytes(strList.toUtf8(), list, c_nMostBytes);
    // What can't be read whole is the person's all the same.
    if ((nError != 0 && nError != ENOENT) || list.size() >= c_nMostBytes)
        return false;
    return WriteWhereDifferent(strList, FileTypeTexts::WithDefaultProgram(list, mimeType, entry));
}

/// A value of a desktop entry.
QString EscapedValue(QString strValue) {
    strValue.replace(u'\\', QLatin1String("\\\\"));
    strValue.replace(u'\n', QLatin1String("\\n"));
    strValue.replace(u'\r', QLatin1String("\\r"));
    strValue.replace(u'\t', QLatin1String("\\t"));
    return strValue;
}

/// One argument of a desktop entry's command, before the rules of values.
QString QuotedArgument(const QString& strArgument) {
    QString strQuoted(u'"');
    for (const QChar c : strArgument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            strQuoted += u'\\';
        strQuoted += c;
        if (c == u'%')
            strQuoted += c;
    }
    return strQuoted + u'"';
}

bool IsOlder(const QString& strPath, const QString& strThan) {
    const QFileInfo than(strThan);
    return than.exists() && QFileInfo(strPath).lastModified() < than.lastModified();
}

} // namespace

namespace FileTypeTexts {

QByteArray MimeType(const FileType& type) {
    return "application/x-" + type.strName.toUtf8();
}

QByteArray MimePackage(const FileType& type, const QString& strIcon) {
    // The weight is above the usual one, so that nobody else's claim to the ending survives.
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
                          "  <mime-type type=\"%1\">\n"
                          "    <comment>%2</comment>\n"
                          "    <icon name=\"%3\"/>\n"
                          "    <glob pattern=\"*.%4\" weight=\"80\"/>\n"
                          "  </mime-type>\n"
                          "</mime-info>\n")
        .arg(QString::fromUtf8(MimeType(type)), type.strDescription.toHtmlEscaped(), strIcon.toHtmlEscaped(),
             type.strExtension.toHtmlEscaped())
        .toUtf8();
}

QByteArray DesktopEntry(const FileType& type, const ProgramEntry& program, const QString& strNativePath,
                        const QString& strIcon) {
    QString strCommand = QuotedArgument(strNativePath) + QStringLiteral(" %f");
    // Some desktops look for the program before they undo the doubled "%": then a program that they find
    // starts it. That one would take a "=" for a variable.
    if (strNativePath.contains(u'%') && !strNativePath.contains(u'='))
        strCommand.prepend(QLatin1String("env "));
    // With "TryExec" the entry is gone from the menus when the portable folder is.
    return QByteArray("[Desktop Entry]\n"
                      "Type=Application\n"
                      "Name=") +
           EscapedValue(program.strName).toUtf8() + "\nComment=" + EscapedValue(program.strComment).toUtf8() +
           "\nTryExec=" + EscapedValue(strNativePath).toUtf8() +
           "\nExec=" + EscapedValue(strCommand).toUtf8() + "\nIcon=" + EscapedValue(strIcon).toUtf8() +
           "\nTerminal=false\n"
           "StartupWMClass=" +
           EscapedValue(program.strName).toUtf8() +
           "\nCategories=Education;\n"
           "MimeType=" +
           MimeType(type) + ";\n";
}

QByteArray WithDefaultProgram(const QByteArray& list, const QByteArray& mimeType, const QByteArray& entry) {
    const QByteArray strDefaults = "[Default Applications]";
    const QByteArray line = mimeType + '=' + entry + '\n';
    QByteArray result;
    QByteArray group;
    bool bPlaced = false;
    for (qsizetype nAt = 0; nAt < list.size();) {
        const qsizetype nEnd = list.indexOf('\n', nAt);
        QByteArray each = nEnd < 0 ? list.mid(nAt) + '\n' : list.mid(nAt, nEnd + 1 - nAt);
        nAt = nEnd < 0 ? list.size() : nEnd + 1;
        const bool bOurs = each.left(qMax(qsizetype(0), each.indexOf('='))).trimmed() == mimeType;
        if (each.startsWith('['))
            group = each.trimmed();
        if (bOurs && group == strDefaults)
            continue;
        // A program that the person once took off the type's list can't be its default.
        if (bOurs && group == "[Removed Associations]") {
            QList<QByteArray> removed = each.mid(each.indexOf('=') + 1).trimmed().split(';');
            removed.removeAll(entry);
            removed.removeAll(QByteArray());
            if (removed.isEmpty())
                continue;
            each = mimeType + '=' + removed.join(';') + ";\n";
        }
        result += each;
        if (!bPlaced && group == strDefaults) {
            result += line;
            bPlaced = true;
        }
    }
    if (!bPlaced)
        result += (result.isEmpty() ? "" : "\n") + strDefaults + '\n' + line;
    return result;
}

} // namespace FileTypeTexts

bool RegisterFileType(const FileType& type, const ProgramEntry& program) {
    if (DataFolder().isEmpty() || ConfigFolder().isEmpty())
        return false;
    const QString strName = EntryName(program);
    const QString strEntry = strName + QStringLiteral(".desktop");
    bool bDone = WriteWhereDifferent(PackagePath(type), FileTypeTexts::MimePackage(type, strName));
    bDone &= CopyIcons(program);
    bDone &= WriteWhereDifferent(
        DataFolder() + QStringLiteral("/applications/") + strEntry,
        FileTypeTexts::DesktopEntry(type, program, ToNativeExact(program.strPath), strName));
    return SetDefault(FileTypeTexts::MimeType(type), strEntry.toUtf8()) && bDone;
}

void RefreshFileTypes(const FileType& type) {
    const QString strData = DataFolder();
    if (strData.isEmpty())
        return;
    const QString strMime = strData + QStringLiteral("/mime");
    const QString strRead =
        strMime + u'/' + QString::fromUtf8(FileTypeTexts::MimeType(type)) + QStringLiteral(".xml");
    if (!QFileInfo::exists(strRead) || IsOlder(strMime + QStringLiteral("/mime.cache"), PackagePath(type)))
        StartQuietly({QStringLiteral("update-mime-database"), strMime});
    const QString strEntries = strData + QStringLiteral("/applications");
    const QString strCache = strEntries + QStringLiteral("/mimeinfo.cache");
    const QFileInfoList entries = QDir(strEntries).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files);
    bool bOld = false;
    for (const QFileInfo& entry : entries)
        bOld |= IsOlder(strCache, entry.filePath());
    if (bOld)
        StartQuietly({QStringLiteral("update-desktop-database"), strEntries});
}

} // namespace Platform
