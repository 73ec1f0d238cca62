#include "companions/VRM/RecorderRequest.h"

#include "companions/VRM/Texts.h"
#include "companions/common/ProjectArgument.h"
#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "foundation/Paths.h"

using namespace Qt::StringLiterals;
using Torvane::CRunException;

SRecorderRequest ReadRecorderRequest(const QStringList& arguments) {
    if (arguments.size() < 3)
        throw CRunException(RecorderText::c_strUsage);
    SRecorderRequest request;
    request.strProject = ReadProjectArgument(arguments.first(arguments.size() - 2).join(u' '));
    request.strFolder = Torvane::File::ParentFolder(request.strProject);
    if (!Torvane::File::IsFile(request.strProject) || request.strFolder.isEmpty())
        throw CRunException(RecorderText::c_strUsage);
    bool bNumber = false;
    request.Key.Modulus = arguments[arguments.size() - 2].toLatin1();
    request.Key.nSeed = arguments.last().toUInt(&bNumber);
    if (!bNumber || EncipherBlocks("x", request.Key.Modulus).isEmpty())
        throw CRunException(RecorderText::c_strBadKey);
    request.strCourse = ReadProfileString(u"Course"_s, u"Name"_s, {}, request.strProject);
    return request;
}
