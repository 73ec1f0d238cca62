#include "editor/DisplayRules.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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

TEST(DisplayRulesTest, EachPromptHasItsTextAndButton) {
    const struct {
        int nCode;
        QString strText;
        std::optional<bool> bButton;
    } prompts[] = {
        {1, u"请您在浏览结束后,关闭打开的新窗口, (对于打开的全屏窗口，请使用Alt + F4关闭)"_s, false},
        {2, u"现在正在使用外部编辑器编辑内容, 请您在编辑结束后关闭窗口并点击“刷新显示”按钮查看内容。"_s,
         true},
        {3, u"现在正在启动视频课件制作工具制作视频。 请您在制作结束后,关闭窗口。"_s, false},
        {0, QString(), std::nullopt},
        {4, QString(), std::nullopt},
    };
    for (const auto& prompt : prompts) {
        const auto shown = DisplayRules::PromptOf(prompt.nCode);
        EXPECT_EQ(shown.strText, prompt.strText) << prompt.nCode;
        EXPECT_EQ(shown.bButton, prompt.bButton) << prompt.nCode;
    }
}

} // namespace
