#include "content/VideoMaker.h"

#include "content/BookNode.h"
#include "content/ContentStage.h"
#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"
#include "platform/base/People.h"
#include "video/Recording.h"

using Torvane::CRunException;

QString CVideoMaker::OfferKept(const CBookNode& node, const QString& strFolder) {
    using Torvane::Dialog::MFC::BoxAnswer;
    using Torvane::Dialog::MFC::BoxButtons;
    using Torvane::Dialog::MFC::BoxIcon;
    const QString strKept = FindKeptLecture(node);
    if (strKept.isEmpty() ||
        m_people.Ask(ContentText::c_strUseKeptRecording.arg(Platform::ToShown(strKept)),
                     ContentText::c_strTip, BoxButtons::YesNo, BoxIcon::Question) != BoxAnswer::Yes)
        return {};
    if (!TakeKeptLecture(strKept, strFolder))
        throw CRunException(ContentText::c_strVideoFolderNotMade);
    return Torvane::File::BareName(strKept);
}

QString CVideoMaker::CreateVideoNode(CBookNode& node, const QString& strFolder) {
    using namespace Torvane::File;
    if (!m_bHasPlayer)
        throw CRunException(ContentText::c_strNoPlayer);
    if (!m_bHasEncoder)
        throw CRunException(ContentText::c_strNoEncoder);
    const QString strKept = OfferKept(node, strFolder);
    // One that came to its end needs no recorder.
    if (!strKept.isEmpty() && HasFilm(strFolder + strKept))
        return strKept;
    const QString strName = strKept.isEmpty() ? MakeUniqueName(QString(), strFolder) : strKept;
    const QString strVideo = strFolder + strName;
    // What the recorder puts in it has to have a name as well.
    if (strName.isEmpty() || IsPathTooLong(RecorderProjectPath(strVideo)))
        throw CRunException(ContentText::c_strNoSiteName);
    if (strKept.isEmpty() && !TryMakeFolder(strVideo))
        throw CRunException(ContentText::c_strVideoFolderNotMade);
    if (!RecordVideo(strVideo, true, node.GetCourse().GetInfo(), m_people))
        throw CRunException(ContentText::c_strVideoNotMade);
    return strName;
}
