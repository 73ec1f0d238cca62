#include "platform/base/DesktopPrograms.h"

#include "platform/base/FileCalls.h"

#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QStandardPaths>

#include <algorithm>

namespace Platform {

namespace {

constexpr qint64 c_nMostBytes = 4 << 20;

const QString c_strEntryGroup = QStringLiteral("Desktop Entry");

using Group = QHash<QString, QString>;

QString Unescaped(QStringView value) {
    QString str;
    for (qsizetype n = 0; n < value.size(); ++n) {
        if (value[n] != u'\\' || n + 1 == value.size()) {
            str += value[n];
            continue;
        }
        switch (const QChar c = value[++n]; c.unicode()) {
        case u's':
            str += u' ';
            break;
        case u'n':
            str += u'\n';
            break;
        case u't':
            str += u'\t';
            break;
        case u'r':
            str += u'\r';
            break;
        case u'\\':
            str += u'\\';
            break;
        default:
            str += u'\\';
            str += c;
        }
    }
    return str;
}

/// The desktop's own kind of file with groups and keys, UTF-8. Empty when it can't be read.
QHash<QString, Group> ReadKeyFile(const QString& strPath) {
    QByteArray bytes;
    if (ReadFileBytes(strPath.toUtf8(), bytes, c_nMostBytes) != 0)
        return {};
    QHash<QString, Group> groups;
    QString strGroup;
    const QString strText = QString::fromUtf8(bytes);
    for (const QStringView whole : QStringView(strText).split(u'\n')) {
        const QStringView line = whole.trimmed();
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            strGroup = line.sliced(1, line.size() - 2).toString();
            continue;
        }
        const qsizetype nEqual = line.indexOf(u'=');
        if (nEqual <= 0 || line.startsWith(u'#'))
            continue;
        const QString strKey = line.first(nEqual).trimmed().toString();
        Group& group = groups[strGroup];
        // Of two the first counts.
        if (!group.contains(strKey))
            group.insert(strKey, Unescaped(line.sliced(nEqual + 1).trimmed()));
    }
    return groups;
}

QStringList SplitList(const QString& strList) {
    return strList.split(u';', Qt::SkipEmptyParts);
}

/// The words of a command as the entry quotes them; none when a quote doesn't end.
QStringList SplitCommand(const QString& strCommand) {
    QStringList words;
    QString strWord;
    bool bWord = false;
    QChar quote;
    for (qsizetype n = 0; n < strCommand.size(); ++n) {
        const QChar c = strCommand[n];
        if (c == u'\\' && quote != u'\'' && n + 1 < strCommand.size()) {
            strWord += strCommand[++n];
            bWord = true;
        } else if (quote.isNull() ? c == u'"' || c == u'\'' : c == quote) {
            quote = quote.isNull() ? c : QChar();
            bWord = true;
        } else if (quote.isNull() && c.isSpace()) {
            if (bWord)
                words.append(strWord);
            strWord.clear();
            bWord = false;
        } else {
            strWord += c;
            bWord = true;
        }
    }
    if (bWord)
        words.append(strWord);
    return quote.isNull() ? words : QStringList();
}

bool TakesFiles(const QStringList& command) {
    return std::any_of(command.begin(), command.end(), [](const QString& strWord) {
        return strWord.size() == 2 && strWord[0] == u'%' &&
               QStringView(u"fFuU").contains(strWord[1], Qt::CaseSensitive);
    });
}

/// A value in the program's language where the entry has it.
QString LocalValue(const Group& group, const QString& strKey) {
    const QString strLocale = QLocale().name();
    for (const QString& strName : {strLocale, strLocale.section(u'_', 0, 0)}) {
        const auto value = group.find(strKey + u'[' + strName + u']');
        if (value != group.end())
            return *value;
    }
    return group.value(strKey);
}

bool IsInstalled(const QString& strProgram) {
    return !QStandardPaths::findExecutable(strProgram).isEmpty();
}

/// The file of an entry's name below the folder; "a-b.desktop" may stand as "a/b.desktop".
QString FindBelow(const QString& strFolder, const QString& strName) {
    const QString strPath = strFolder + u'/' + strName;
    if (QFileInfo(strPath).isFile())
        return strPath;
    for (qsizetype nDash = strName.indexOf(u'-'); nDash > 0; nDash = strName.indexOf(u'-', nDash + 1)) {
        const QString strBelow = strFolder + u'/' + strName.first(nDash);
        if (!QFileInfo(strBelow).isDir())
            continue;
        const QString strFound = FindBelow(strBelow, strName.sliced(nDash + 1));
        if (!strFound.isEmpty())
            return strFound;
    }
    return {};
}

/// The program of an entry's name. The first file of the name is the entry, and may say that there is none.
std::optional<DesktopProgram> ReadProgram(const QString& strName) {
    DesktopProgram program;
    for (const QString& strFolder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        if (strName.contains(u'/'))
            break;
        program.strEntry = FindBelow(strFolder, strName);
        if (!program.strEntry.isEmpty())
            break;
    }
    if (program.strEntry.isEmpty())
        return std::nullopt;
    const QHash<QString, Group> groups = ReadKeyFile(program.strEntry);
    const Group entry = groups.value(c_strEntryGroup);
    const QString strTry = entry.value(QStringLiteral("TryExec"));
    if (entry.value(QStringLiteral("Type")) != u"Application" ||
        entry.value(QStringLiteral("Hidden")) == u"true" || (!strTry.isEmpty() && !IsInstalled(strTry)))
        return std::nullopt;
    program.command = SplitCommand(entry.value(QStringLiteral("Exec")));
    for (const QString& strAction : SplitList(entry.value(QStringLiteral("Actions")))) {
        const QStringList edit = SplitCommand(
            groups.value(QStringLiteral("Desktop Action ") + strAction).value(QStringLiteral("Exec")));
        if (strAction.compare(u"Edit", Qt::CaseInsensitive) == 0 && TakesFiles(edit))
            program.command = edit;
    }
    if (program.command.isEmpty() || !IsInstalled(program.command.first()))
        return std::nullopt;
    program.strName = LocalValue(entry, QStringLiteral("Name"));
    program.strIcon = LocalValue(entry, QStringLiteral("Icon"));
    program.strFolder = entry.value(QStringLiteral("Path"));
    program.bTerminal = entry.value(QStringLiteral("Terminal")) == u"true";
    return program;
}

/// What the desktop's lists say, read once for a search.
class CAssociations {
public:
    CAssociations() {
        const QStringList desktops =
            qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(u':', Qt::SkipEmptyParts);
        const QStringList settings = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
        const QStringList programs = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
        for (const QString& strFolder : settings + programs) {
            for (const QString& strDesktop : desktops)
                AddDefaults(ReadKeyFile(strFolder + u'/' + strDesktop + QStringLiteral("-mimeapps.list")));
            const auto list = ReadKeyFile(strFolder + QStringLiteral("/mimeapps.list"));
            AddDefaults(list);
            Level level{list.value(QStringLiteral("Added Associations")),
                        list.value(QStringLiteral("Removed Associations")),
                        {}};
            if (programs.contains(strFolder)) {
                AddDefaults(ReadKeyFile(strFolder + QStringLiteral("/defaults.list")));
                level.Offered = ReadKeyFile(strFolder + QStringLiteral("/mimeinfo.cache"))
                                    .value(QStringLiteral("MIME Cache"));
            }
            m_levels.append(level);
        }
    }

    /// The names of the entries for a type, the best first.
    QStringList For(const QString& strType) const {
        QStringList names;
        for (const Group& defaults : m_defaults)
            names += SplitList(defaults.value(strType));
        QStringList removed;
        for (const Level& level : m_levels) {
            const auto add = [&](const Group& group) {
                for (const QString& strName : SplitList(group.value(strType))) {
                    if (!removed.contains(strName))
                        names.append(strName);
                }
            };
            add(level.Added);
            removed += SplitList(level.Removed.value(strType));
            add(level.Offered);
        }
        return names;
    }

private:
    struct Level {
        Group Added;
        Group Removed;
        Group Offered;
    };
    void AddDefaults(const QHash<QString, Group>& list) {
        m_defaults.append(list.value(QStringLiteral("Default Applications")));
    }
    QList<Group> m_defaults;
    QList<Level> m_levels;
};

/// Its own kind, then what that is a kind of, the nearest first. A container says nothing of what is in it: a
/// document is no archive to be unpacked.
QStringList TypeNames(const QMimeType& type) {
    QStringList names{type.name()};
    names += type.aliases();
    for (const QString& strParent : type.allAncestors()) {
        if (strParent != u"application/octet-stream" && strParent != u"application/zip")
            names.append(strParent);
    }
    return names;
}

/// What comes before a command that runs in a terminal; empty when there is none.
QStringList TerminalCommand() {
    for (const char* const pTerminal :
         {"xdg-terminal-exec", "x-terminal-emulator -e", "gnome-terminal --", "konsole -e", "xterm -e"}) {
        const QStringList command = QString::fromLatin1(pTerminal).split(u' ');
        if (IsInstalled(command.first()))
            return command;
    }
    return {};
}

} // namespace

std::optional<DesktopProgram> FindDesktopProgram(const QMimeType& type) {
    const CAssociations associations;
    for (const QString& strType : TypeNames(type)) {
        for (const QString& strName : associations.For(strType)) {
            auto program = ReadProgram(strName);
            if (program && (!program->bTerminal || !TerminalCommand().isEmpty()))
                return program;
        }
    }
    return std::nullopt;
}

QStringList CommandWithFile(const DesktopProgram& program, const QString& strFile) {
    QStringList command = program.bTerminal ? TerminalCommand() : QStringList();
    bool bPlaced = false;
    for (const QString& strWord : program.command) {
        if (strWord == u"%i") {
            if (!program.strIcon.isEmpty())
                command += {QStringLiteral("--icon"), program.strIcon};
            continue;
        }
        QString strArgument;
        for (qsizetype n = 0; n < strWord.size(); ++n) {
            if (strWord[n] != u'%' || n + 1 == strWord.size()) {
                strArgument += strWord[n];
                continue;
            }
            switch (strWord[++n].unicode()) {
            case u'f':
            case u'F':
            case u'u':
            case u'U':
                strArgument += strFile;
                bPlaced = true;
                break;
            case u'c':
                strArgument += program.strName;
                break;
            case u'k':
                strArgument += program.strEntry;
                break;
            case u'%':
                strArgument += u'%';
                break;
            default:
                // The other codes are of old and mean nothing any more.
                break;
            }
        }
        if (!strArgument.isEmpty() || !strWord.startsWith(u'%'))
            command.append(strArgument);
    }
    if (!bPlaced)
        command.append(strFile);
    return command;
}

} // namespace Platform
