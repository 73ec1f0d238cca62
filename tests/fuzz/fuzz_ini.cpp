// A file of any bytes: a value written to it must come back, and everything else in it must stay.
#include "foundation/IniFile.h"
#include "foundation/TextFile.h"
#include "tests/support/FuzzCheck.h"

#include <QDir>
#include <QTemporaryDir>

#include "platform/base/NativePath.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    // Every write is flushed to the disk, which memory does in no time.
    static const QTemporaryDir s_folder(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                            ? QStringLiteral("/dev/shm/vorel-fuzz-XXXXXX")
                                            : QDir::tempPath() + QStringLiteral("/vorel-fuzz-XXXXXX"));
    static const QString s_strPath = Platform::FromNative(s_folder.filePath(QStringLiteral("t.ini")));
    const QByteArray before(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize));
    QFile file(s_folder.filePath(QStringLiteral("t.ini")));
    if (!file.open(QIODevice::WriteOnly) || file.write(before) != before.size())
        return 0;
    file.close();

    const QString strSection = QStringLiteral("Course");
    const auto read = [&](const QString& strKey) {
        return ReadProfileString(strSection, strKey, QStringLiteral("<none>"), s_strPath);
    };
    const QString strOther = read(QStringLiteral("Name"));
    const QString strValue = QStringLiteral(" 课程;[x]=\" ");
    WriteProfileString(strSection, QStringLiteral("Id"), strValue, s_strPath);
    Check(read(QStringLiteral("Id")) == strValue);
    Check(read(QStringLiteral("Name")) == strOther);
    const QByteArray after = ReadFileBytes(s_strPath);
    WriteProfileString(strSection, QStringLiteral("Id"), strValue, s_strPath);
    Check(ReadFileBytes(s_strPath) == after);
    return 0;
}
