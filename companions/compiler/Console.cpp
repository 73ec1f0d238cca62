#include "companions/compiler/Console.h"

#include "companions/common/ProjectArgument.h"
#include "companions/compiler/SiteCompiler.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>

#include <chrono>
#include <csignal>
#include <future>

using namespace Qt::StringLiterals;

namespace {

constexpr auto c_lookEvery = std::chrono::milliseconds(50);
/// A short run says nothing but its result.
constexpr auto c_lineEvery = std::chrono::seconds(1);

std::atomic<bool> g_bEnd = false;

void WantEnd(int) {
    g_bEnd = true;
}

QString ReadFolder(const QString& strText) {
    return IsStoredPath(strText) ? Platform::ToNative(strText) : QFileInfo(strText).absoluteFilePath();
}

int Report(const TaskOutcome& outcome) {
    if (outcome.End != TaskOutcome::EEnd::Done) {
        QTextStream(stderr) << outcome.Text << Qt::endl;
        return outcome.End == TaskOutcome::EEnd::Cancelled ? CompilerConsole::c_nCancelled
                                                           : CompilerConsole::c_nFailed;
    }
    QTextStream out(stdout);
    for (const QString& strNote : outcome.Notes)
        out << strNote << '\n';
    out << outcome.Text << Qt::endl;
    return CompilerConsole::c_nDone;
}

/// Empty for an account without a home.
QString CacheFolder() {
    const QString strPlace = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return strPlace.isEmpty() ? QString() : strPlace + "/vorel/compiler"_L1;
}

} // namespace

CompilerConsole::Options CompilerConsole::ReadOptions(const QStringList& arguments) {
    Options options;
    QStringList plain;
    QString strFolder;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& strArgument = arguments[i];
        if (strArgument == "--silent"_L1)
            options.bSilent = true;
        else if (strArgument == "--help"_L1 || strArgument == "-h"_L1)
            options.bHelp = true;
        else if (strArgument == "--output"_L1 && i + 1 < arguments.size())
            strFolder = arguments[++i];
        else if (strArgument.startsWith("--output="_L1))
            strFolder = strArgument.section(u'=', 1);
        else if (strArgument.startsWith("--"_L1))
            throw Torvane::CRunException(CompilerText::c_strUnknownOption.arg(strArgument));
        else
            plain.append(strArgument);
    }
    if (options.bHelp)
        return options;
    if (plain.size() != 1)
        throw Torvane::CRunException(CompilerText::c_strNoArgument);
    options.Request = ReadArgument(plain[0]);
    options.Request.CacheFolder = CacheFolder();
    if (!strFolder.isEmpty())
        options.Request.OutputFolder = ReadFolder(strFolder);
    return options;
}

int CompilerConsole::Run(const Options& options) {
    std::signal(SIGINT, WantEnd);
    std::signal(SIGTERM, WantEnd);
    CompileProgress progress;
    auto run = std::async(std::launch::async, [&] { return Compile(options.Request, progress); });
    auto next = std::chrono::steady_clock::now() + c_lineEvery;
    while (run.wait_for(c_lookEvery) != std::future_status::ready) {
        if (g_bEnd)
            progress.bCancelled = true;
        if (std::chrono::steady_clock::now() < next)
            continue;
        QTextStream(stderr) << DescribeProgress(progress) << Qt::endl;
        next += c_lineEvery;
    }
    return Report(run.get());
}
