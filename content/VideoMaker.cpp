#include "content/VideoMaker.h"

#include "content/BookNode.h"
#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "video/Recording.h"

using Torvane::CRunException;

QString CVideoMaker::CreateVideoNode(CBookNode& node, const QString& strFolder) {
    using namespace Torvane::File;
    if (!m_bHasPlayer)
        throw CRunException(ContentText::c_strNoPlayer);
    if (!m_bHasEncoder)
        throw CRunException(ContentText::c_strNoEncoder);
    const QString strName = MakeUniqueName(QString(), strFolder);
    const QString strVideo = strFolder + strName;
    // What the recorder puts in it has to have a name as well.
    if (strName.isEmpty() || IsPathTooLong(RecorderProjectPath(strVideo)))
        throw CRunException(ContentText::c_strNoSiteName);
    if (!TryMakeFolder(strVideo))
        throw CRunException(ContentText::c_strVideoFolderNotMade);
    if (!RecordVideo(strVideo, true, node.GetCourse().GetInfo(), m_people))
        throw CRunException(ContentText::c_strVideoNotMade);
    return strName;
}
