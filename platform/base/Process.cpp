#include "platform/base/Process.h"

#include "platform/base/NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <csignal>
#include <optional>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/resource.h>
#include <unistd.h>

namespace Platform {
namespace {

constexpr int c_nWaitMs = 20;
constexpr int c_nStopWaitMs = 5;
/// Of what a program says on its error stream.
constexpr qsizetype c_nMaxFaults = qsizetype{64} << 10;

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

// One argument from nAt on. Backslashes are plain except right before a double quote: there two give one,
// and an odd last one makes the quote plain.
QString TakeArgument(const QString& str, qsizetype& nAt) {
    QString strArgument;
    bool bQuoted = false;
    while (nAt < str.size() && (bQuoted || !IsBlank(str[nAt]))) {
        qsizetype nSlashes = 0;
        while (nAt < str.size() && str[nAt] == u'\\') {
            ++nSlashes;
            ++nAt;
        }
        const bool bQuote = nAt < str.size() && str[nAt] == u'"';
        strArgument += QString(bQuote ? nSlashes / 2 : nSlashes, u'\\');
        if (bQuote) {
            if (nSlashes % 2 != 0)
                strArgument += u'"';
            else
                bQuoted = !bQuoted;
            ++nAt;
        } else if (nSlashes == 0) {
            strArgument += str[nAt++];
        }
    }
    return strArgument;
}

// The program's name knows no escapes: quotes join, everything else is plain.
QString TakeProgram(const QString& str, qsizetype& nAt) {
    QString strProgram;
    bool bQuoted = false;
    for (; nAt < str.size() && (bQuoted || !IsBlank(str[nAt])); ++nAt) {
        if (str[nAt] == u'"')
            bQuoted = !bQuoted;
        else
            strProgram += str[nAt];
    }
    return strProgram;
}

QStringList TakeArguments(const QString& str, qsizetype nAt) {
    QStringList list;
    for (;;) {
        while (nAt < str.size() && IsBlank(str[nAt]))
            ++nAt;
        if (nAt >= str.size())
            return list;
        list.append(TakeArgument(str, nAt));
    }
}

// The same of a command line whose arguments have tabs between them: they stand as they are, blanks and all.
QStringList TakeTabbed(const QString& str, qsizetype nAt) {
    const QString strRest = str.sliced(nAt);
    return strRest.contains(u'\t') && !strRest.contains(u'"') ? strRest.mid(1).split(u'\t')
                                                              : TakeArguments(str, nAt);
}

// The native path of a program's file, with or without its ending; nothing when there is no such file.
std::optional<QString> FindProgram(const QString& strPath) {
    QStringList candidates{strPath};
    if (strPath.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive))
        candidates.prepend(strPath.chopped(4));
    for (const QString& strCandidate : candidates) {
        const QFileInfo info(ToNative(strCandidate));
        if (info.isFile() && info.isExecutable())
            return info.absoluteFilePath();
    }
    return std::nullopt;
}

struct Start {
    QString strProgram;
    QStringList arguments;
};

// A program path that is not quoted may hold blanks: the shortest head that is a program is the one.
std::optional<Start> FindStart(const QString& strCommandLine) {
    if (strCommandLine.startsWith(u'"')) {
        qsizetype nAt = 0;
        const auto program = FindProgram(TakeProgram(strCommandLine, nAt));
        return program ? std::optional(Start{*program, TakeArguments(strCommandLine, nAt)}) : std::nullopt;
    }
    for (qsizetype nAt = 0; nAt <= strCommandLine.size(); ++nAt) {
        if (nAt < strCommandLine.size() && !IsBlank(strCommandLine[nAt]))
            continue;
        if (const auto program = FindProgram(strCommandLine.left(nAt)))
            return Start{*program, TakeTabbed(strCommandLine, nAt)};
    }
    return std::nullopt;
}

bool BeginsWithDrive(const QString& str) {
    return str.size() >= 3 && str[1] == u':' && str[2] == u'\\' && str[0].toUpper() == u'Z';
}

} // namespace

QStringList SplitCommandLine(const QString& strCommandLine) {
    qsizetype nAt = 0;
    while (nAt < strCommandLine.size() && IsBlank(strCommandLine[nAt]))
        ++nAt;
    if (nAt >= strCommandLine.size())
        return {};
    const QString strProgram = TakeProgram(strCommandLine, nAt);
    return QStringList{strProgram} + TakeArguments(strCommandLine, nAt);
}

bool RunAndWait(const QString& strCommandLine, const std::function<void()>& whileWaiting) {
    auto start = FindStart(strCommandLine.trimmed());
    if (!start)
        return false;
    for (QString& strArgument : start->arguments) {
        if (BeginsWithDrive(strArgument))
            strArgument = ToNative(strArgument);
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(start->strProgram, start->arguments);
    if (!process.waitForStarted(-1))
        return false;
    while (process.state() != QProcess::NotRunning) {
        process.waitForFinished(c_nWaitMs);
        if (whileWaiting)
            whileWaiting();
    }
    return true;
}

bool StartQuietly(const QStringList& command, const QString& strFolder) {
    QProcess process;
    process.setProgram(command.first());
    process.setArguments(command.mid(1));
    // Not this program's folder, which may be on a disk that is to be taken out.
    process.setWorkingDirectory(QFileInfo(strFolder).isDir() ? strFolder : QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

EProgramEnd RunGroup(const CProgramCall& call, const std::function<bool()>& mayGoOn, QByteArray* pFaults) {
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    if (!pFaults)
        process.setStandardErrorFile(QProcess::nullDevice());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = call.environment.begin(); it != call.environment.end(); ++it) {
        if (it->isNull())
            environment.remove(it.key());
        else
            environment.insert(it.key(), *it);
    }
    process.setProcessEnvironment(environment);
    // A group of its own, so that it ends with all that it starts. Core files of a crash would be litter.
    process.setChildProcessModifier(
        [nMaxBytes = rlim_t(call.nMaxBytes), nMaxFileBytes = rlim_t(call.nMaxFileBytes)] {
            ::setpgid(0, 0);
#ifdef __linux__
            // Who is killed can't end it any more; the thread that waits for it lives as long as this
            // process.
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
            const rlimit none{0, 0};
            ::setrlimit(RLIMIT_CORE, &none);
            const rlimit memory{nMaxBytes, nMaxBytes};
            if (nMaxBytes > 0)
                ::setrlimit(RLIMIT_AS, &memory);
            const rlimit file{nMaxFileBytes, nMaxFileBytes};
            if (nMaxFileBytes > 0)
                ::setrlimit(RLIMIT_FSIZE, &file);
        });
    process.start(call.strProgram, call.arguments);
    if (!process.waitForStarted(-1))
        return EProgramEnd::NotStarted;
    const auto nGroup = pid_t(process.processId());
    EProgramEnd eEnd = EProgramEnd::Ended;
    const auto takeFaults = [&] {
        if (pFaults)
            *pFaults = pFaults->append(process.readAllStandardError()).right(c_nMaxFaults);
    };
    while (!process.waitForFinished(c_nStopWaitMs) && process.state() != QProcess::NotRunning) {
        takeFaults();
        if (eEnd != EProgramEnd::Ended || mayGoOn())
            continue;
        eEnd = EProgramEnd::Stopped;
        ::kill(-nGroup, SIGKILL);
    }
    takeFaults();
    // What it left running behind itself would go on with the files.
    ::kill(-nGroup, SIGKILL);
    return eEnd;
}

void EndWithUs(QProcess& process) {
    process.setChildProcessModifier([nParent = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        // This one may be gone already.
        if (::getppid() != nParent)
            ::_exit(1);
    });
}

QString FindSystemProgram(const QString& strName) {
    return QStandardPaths::findExecutable(strName);
}

bool IsProgram(const QString& strPath) {
    return FindProgram(strPath).has_value();
}

QString OwnProgramPath() {
    return FromNative(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")));
}

} // namespace Platform
