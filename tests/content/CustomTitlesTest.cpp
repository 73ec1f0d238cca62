#include "course/CustomTitles.h"

#include "course/TemplateStore.h"
#include "tests/content/CourseOnDisk.h"

namespace {

const QString c_strDelivered = Platform::FromNative(QStringLiteral(VOREL_DELIVERED_DATA));

// The numbers of the delivered roles hold for the nodes that a real course gets from the delivered seed and
// the full suggested tree of every delivered template.
TEST(DeliveredCustomTitles, FitACourseMadeFromTheDeliveredData) {
    QStringList templates;
    CTemplateStore(c_strDelivered + u"\\VorelTemplates"_s).ListTemplates(templates);
    ASSERT_FALSE(templates.isEmpty());
    for (const QString& strTemplate : templates) {
        SCOPED_TRACE(strTemplate);
        CCourseOnDisk disk(strTemplate);
        const QString strIni = disk.pCourse->GetPaths().GetCustomTitlesPath();
        int nRole = 0;
        for (const CustomTitles::Role& role : CustomTitles::Roles()) {
            const qint32 nId = CustomTitles::ReadNodeId(strIni, nRole++);
            const qint32 nParent = disk.Store().GetField(nId, u"ParentId"_s).toInt();
            EXPECT_EQ(disk.Store().GetNode(nId).Title, role.strKey);
            EXPECT_EQ(disk.Store().GetNode(nParent).Title,
                      nRole <= CustomTitles::c_nIntroduction ? u"教学队伍"_s : u"课程录像"_s);
        }
    }
}

} // namespace
