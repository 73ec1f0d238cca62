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

} // namespace
