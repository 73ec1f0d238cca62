#include "editor/EditorCommands.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace EditorCommands;

namespace {

TEST(EditorCommands, EveryButtonIsACommandWithAPictureAndStandsOnOneBar) {
    QSet<int> seen;
    for (const auto& bar : {FormatBar(), InsertBar(), EditBar()}) {
        EXPECT_NE(bar.front(), 0);
        EXPECT_NE(bar.back(), 0);
        for (const int nId : bar) {
            if (nId == 0)
                continue;
            const Command* pCommand = Find(nId);
            ASSERT_NE(pCommand, nullptr) << nId;
            EXPECT_TRUE(pCommand->strBitmap.endsWith(u".bmp")) << nId;
            EXPECT_FALSE(seen.contains(nId)) << nId;
            seen.insert(nId);
        }
    }
    for (const Command& command : All())
        EXPECT_EQ(seen.contains(command.nId), command.nId != Id::c_nInSiteLink) << command.nId;
}

TEST(EditorCommands, EachFamilyCarriesWhatItNeeds) {
    for (const Command& command : All()) {
        const bool bNamed = command.Family != EFamily::Own && command.Family != EFamily::Page;
        EXPECT_EQ(!command.strName.isEmpty(), bNamed) << command.nId;
        EXPECT_EQ(!command.strLabel.isEmpty(), command.Family == EFamily::Page) << command.nId;
    }
    EXPECT_EQ(Find(Id::c_nSave)->strHint, u"保存(Ctrl + S))");
}

TEST(EditorCommands, TheSourceAllowsThePageCommandsAndThePreviewNone) {
    for (const Command& command : All()) {
        EXPECT_TRUE(IsAllowed(command.nId, EMode::Design));
        EXPECT_EQ(IsAllowed(command.nId, EMode::Source), command.nId == 32871 || command.nId == 32908 ||
                                                             command.nId == 32940 || command.nId == 32825 ||
                                                             command.nId == 32826);
        EXPECT_FALSE(IsAllowed(command.nId, EMode::Preview));
    }
    EXPECT_FALSE(IsAllowed(32814, EMode::Design));
}

} // namespace
