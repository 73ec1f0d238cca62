#include "companions/fetch/Unpack.h"
#include "tests/fuzz/FuzzFile.h"

#include <QDirIterator>

// Any bytes at all may come as a template: nothing leaves the folder, only plain files and folders come out,
// and no more than the limits say.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    FuzzFile(QStringLiteral("archive"), pData, nSize);
    FuzzFolder().MakeFolder(QStringLiteral("in/new"));
    const QString strFolder = FuzzFolder().Native(QStringLiteral("in/new"));
    const UnpackLimits limits{.nMaxBytes = 100000, .nMaxEntries = 20};
    FetchProgress progress;
    try {
        Unpack(FuzzFolder().Native(QStringLiteral("archive")), strFolder,
               QStringLiteral("/p/SysData/VorelTemplates/x"), progress, limits);
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
    Check(nBytes <= limits.nMaxBytes && FuzzFolder().Names().size() == 2 &&
          FuzzFolder().Names(QStringLiteral("in")).size() == 1);
    QDir(strFolder).removeRecursively();
    return 0;
}
