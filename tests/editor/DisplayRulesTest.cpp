#include "editor/DisplayRules.h"
#include "tests/support/Testing.h"

namespace {

// The words follow the wizard's kinds and not the stored types, so each is written down here as it must read.
TEST(DisplayRulesTest, EachChildHasItsImageAndWord) {
    const struct {
        qint32 nType;
        bool bHasChildren;
        int nImage;
        QString strWord;
    } rows[] = {
        {-1, false, 1, u"<空栏目>"_s},  {-1, true, 0, u"<目录栏目>"_s}, {0, true, 0, u"<目录栏目>"_s},
        {0, false, 1, u"内部编辑器"_s}, {1, false, 1, u"外部文件"_s},   {2, false, 1, u"外部编辑器"_s},
        {3, false, 1, u"站点"_s},       {4, false, 1, u"外部链接"_s},   {5, false, 1, u"视频课件"_s},
        {6, false, 1, u"奥思课件"_s},   {7, false, 1, u"目录"_s},       {8, false, 1, u"Office HTML"_s},
        {9, false, 1, u"站内链接"_s},   {10, false, 1, u""_s},          {-2, false, 1, u""_s},
        {2147483647, false, 1, u""_s},
    };
    for (const auto& row : rows) {
        const auto child = DisplayRules::RowOfChild(row.nType, row.bHasChildren);
        EXPECT_EQ(child.nImage, row.nImage) << row.nType;
        EXPECT_EQ(child.strType, row.strWord) << row.nType;
    }
}

} // namespace
