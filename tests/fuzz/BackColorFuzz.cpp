// A template's background colour.
#include "course/TemplateStore.h"
#include "tests/fuzz/FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const quint32 nColor = ReadBackColor(FuzzFile(QStringLiteral("背景色.txt"), pData, nSize));
    Check(nColor <= 0xFFFFFF, "a colour has three bytes");
    Check(nSize >= 7 || nColor == 0xFFFFFF, "a short text is white");
    return 0;
}
