// Copying, measuring and deleting trees against cp, du and rm.
// Usage: bench_files FOLDER [small files] [megabytes of large files]
#include "bench/Rounds.h"
#include "foundation/Files.h"
#include "platform/base/NativePath.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace {

constexpr int c_nFilesInFolder = 100;
constexpr int c_nLargeFiles = 4;
constexpr qint64 c_nMegabyte = 1024 * 1024;

void MustHold(bool bHolds, const char* szWhat) {
    if (!bHolds) {
        std::fprintf(stderr, "failed: %s\n", szWhat);
        std::exit(2);
    }
}

void RunTool(const QString& strTool, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(strTool, arguments);
    MustHold(process.waitForFinished(-1) && process.exitCode() == 0, qPrintable(strTool));
}

void Write(const QString& strPath, qint64 nBytes, const QByteArray& block) {
    QFile file(strPath);
    MustHold(file.open(QIODevice::WriteOnly), "write");
    for (qint64 nLeft = nBytes; nLeft > 0; nLeft -= block.size())
        MustHold(file.write(block.constData(), std::min<qint64>(nLeft, block.size())) > 0, "write");
}

void MakeSmall(const QString& strRoot, int nFiles) {
    const QByteArray block(8192, 'x');
    for (int i = 0; i < nFiles; ++i) {
        const QString strFolder = QStringLiteral("%1/章节%2/N%3/res")
                                      .arg(strRoot)
                                      .arg(i / c_nFilesInFolder % 10)
                                      .arg(i / c_nFilesInFolder);
        if (i % c_nFilesInFolder == 0)
            QDir().mkpath(strFolder);
        Write(strFolder + QStringLiteral("/图片 picture%1.jpg").arg(i), 500 + i % 7000, block);
    }
}

void MakeLarge(const QString& strRoot, qint64 nMegabytes) {
    QDir().mkpath(strRoot);
    for (int i = 0; i < c_nLargeFiles; ++i)
        Write(strRoot + QStringLiteral("/lecture%1.asf").arg(i), nMegabytes * c_nMegabyte / c_nLargeFiles,
              QByteArray(c_nMegabyte, 'v'));
}

bool Compare(const char* szKind, const QString& strRoot, const QString& strSource) {
    using namespace Torvane::File;
    const QString strCopy = strRoot + QStringLiteral("/copy");
    const QString strFrom = Platform::FromNative(strSource);
    const QString strTo = Platform::FromNative(strCopy);
    const auto clear = [&] { RunTool(QStringLiteral("rm"), {QStringLiteral("-rf"), strCopy}); };
    const auto copy = [&] { RunTool(QStringLiteral("cp"), {QStringLiteral("-r"), strSource, strCopy}); };
    const std::string name(szKind);
    const std::string copyName = name + " copy";
    const std::string measureName = name + " measure";
    const std::string deleteName = name + " delete";
    bool bKept =
        Run({copyName.c_str(), 1.2, [&] { MustHold(TryCopyFolder(strFrom, strTo), "copy"); }, copy, clear});
    clear();
    bKept &= Run({measureName.c_str(), 1.2, [&] { MustHold(GetFolderSize(strFrom) > 0, "measure"); },
                  [&] {
                      RunTool(QStringLiteral("du"), {QStringLiteral("-s"), strSource});
                  }});
    bKept &= Run({deleteName.c_str(), 1.2, [&] { MustHold(TryDeleteFolder(strTo), "delete"); }, clear, copy});
    return bKept;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_files FOLDER [small files] [megabytes of large files]\n");
        return 2;
    }
    const QTemporaryDir folder(QString::fromLocal8Bit(argv[1]) + QStringLiteral("/vorel-bench-XXXXXX"));
    MustHold(folder.isValid(), "the work folder");
    const int nFiles = argc > 2 ? std::atoi(argv[2]) : 20000;
    const int nMegabytes = argc > 3 ? std::atoi(argv[3]) : 2048;
    bool bKept = true;
    if (nFiles > 0) {
        MakeSmall(folder.filePath(QStringLiteral("small")), nFiles);
        bKept &= Compare("small files", folder.path(), folder.filePath(QStringLiteral("small")));
    }
    if (nMegabytes > 0) {
        MakeLarge(folder.filePath(QStringLiteral("large")), nMegabytes);
        bKept &= Compare("large files", folder.path(), folder.filePath(QStringLiteral("large")));
    }
    return bKept ? 0 : 1;
}
