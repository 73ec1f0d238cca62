// Project files come from other teachers' disks. Whatever one holds, changing its template must neither lose
// the companions' values nor make two readings differ.
#include "course/ProjectFile.h"
#include "tests/fuzz/FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CProjectFile file;
    file.SetPath(FuzzFile(QStringLiteral("a.vcp"), pData, nSize));
    if (!file.Load())
        return 0;
    const CCourseInfo info = file.GetCourseInfo();
    const QString strLastDir = file.GetLastDir();
    file.SetTemplateName(QStringLiteral("模板"));
    file.Save();
    CProjectFile again;
    again.SetPath(FuzzFolder().Path(QStringLiteral("a.vcp")));
    Check(again.Load(), "a saved file loads");
    Check(again.GetTemplateName() == QStringLiteral("模板"), "the template is stored");
    Check(again.GetCourseInfo().Id == info.Id, "the id stays");
    // Bytes that are no text can't be written back as they were, and a zero becomes a blank.
    if (!strLastDir.contains(QChar::ReplacementCharacter) && !strLastDir.contains(QChar::Null))
        Check(again.GetLastDir() == strLastDir, "the compiler's folder stays");
    return 0;
}
