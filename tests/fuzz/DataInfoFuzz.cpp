// The figures that wait for the server: what is read must survive being written.
#include "course/DataInfo.h"
#include "tests/fuzz/FuzzFile.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QString strPath = FuzzFile(QStringLiteral("DataInfo.dti"), pData, nSize);
    const CourseFigures read = ReadDataInfo(strPath);
    Check(std::isfinite(read.Size), "the size is a number");
    WriteDataInfo(strPath, read);
    const CourseFigures again = ReadDataInfo(strPath);
    Check(again.Count == read.Count && again.Changed == read.Changed, "the counts survive");
    Check(std::abs(again.Size - read.Size) <= 1e-6, "the size survives");
    return 0;
}
