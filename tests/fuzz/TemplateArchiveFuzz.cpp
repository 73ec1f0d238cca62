#include "companions/fetch/Unpack.h"
#include "tests/support/FuzzCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

// Any bytes at all may come as a template: nothing leaves the folder, only plain files and folders come out,
// and no more than the limits say.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    static const QTemporaryDir s_place;
    static const QString s_strRoot = s_place.path();
    const QString strArchive = s_strRoot + QStringLiteral("/archive");
    const QString strFolder = s_strRoot + QStringLiteral("/in/new");
    QFile file(strArchive);
    Check(QDir().mkpath(strFolder) && file.open(QIODevice::WriteOnly) &&
          file.write(reinterpret_cast<const char*>(pData), qint64(nSize)) == qint64(nSize));
    file.close();
    const UnpackLimits limits{.nMaxBytes = 100000, .nMaxEntries = 20};
    FetchProgress progress;
    try {
        Unpack(strArchive, strFolder, QStringLiteral("/p/SysData/VorelTemplates/x"), progress, limits);
    } catch (const Torvane::CRunException&) {
    }
    qint64 nBytes = 0;
    QDirIterator all(strFolder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        all.next();
        Check(!all.fileInfo().isSymLink() && (all.fileInfo().isFile() || all.fileInfo().isDir()));
        nBytes += all.fileInfo().isFile() ? all.fileInfo().size() : 0;
    }
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    Check(nBytes <= limits.nMaxBytes && QDir(s_strRoot).count() == 4 &&
          QDir(s_strRoot + QStringLiteral("/in")).entryList(everything).size() == 1);
    QDir(strFolder).removeRecursively();
    return 0;
}
