// A file of any bytes: a value written to it must come back, and everything else in it must stay.
#include "foundation/IniFile.h"
#include "foundation/TextFile.h"
#include "tests/fuzz/FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QString strPath = FuzzFile(QStringLiteral("t.ini"), pData, nSize);
    const QString strSection = QStringLiteral("Course");
    const auto read = [&](const QString& strKey) {
        return ReadProfileString(strSection, strKey, QStringLiteral("<none>"), strPath);
    };
    const QString strOther = read(QStringLiteral("Name"));
    const QString strValue = QStringLiteral(" 课程;[x]=\" ");
    WriteProfileString(strSection, QStringLiteral("Id"), strValue, strPath);
    Check(read(QStringLiteral("Id")) == strValue);
    Check(read(QStringLiteral("Name")) == strOther);
    const QByteArray after = ReadFileBytes(strPath);
    WriteProfileString(strSection, QStringLiteral("Id"), strValue, strPath);
    Check(ReadFileBytes(strPath) == after);
    return 0;
}
