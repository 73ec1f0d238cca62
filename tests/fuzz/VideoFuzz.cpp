// The files of a lecture, which may come from anywhere: script file, outline, and the film's header.
#include "foundation/Exceptions.h"
#include "tests/fuzz/FuzzFile.h"
#include "video/AsfFile.h"
#include "video/Outline.h"
#include "video/VideoScripts.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    static const CVideoKey s_key(QStringLiteral("示范大学"));
    const QString strPath = FuzzFile(QStringLiteral("CourseInfo\\s.esf"), pData, nSize);
    try {
        const SVideoScripts scripts = ReadVideoScripts(strPath.chopped(ScriptFileBelow().size()), s_key);
        Check(!scripts.First.isEmpty() && !scripts.Second.isEmpty(), "there is a piece behind the last end");
    } catch (const Torvane::CRunException&) {
        // The file is none.
    }
    QStringList names;
    Check(ReadOutline(strPath, names), "an outline of that size can be read");
    const SAsfScript script = ReadAsfScript(strPath);
    Check(std::ranges::is_sorted(script.Commands, {}, &SAsfCommand::nTime), "commands stand by their times");
    return 0;
}
