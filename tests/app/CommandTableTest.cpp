#include "app/CommandTable.h"

#include <QSet>

#include <gtest/gtest.h>

namespace {

using namespace Commands;

// A menu or the toolbar that names a command without a row would end the program at its start; an id used
// twice would run one command under the other's text.
TEST(CommandTable, EveryPlaceNamesACommandAndShortcutsAreUsedOnce) {
    QSet<int> seen;
    for (const Menu& menu : MainMenu()) {
        for (const int nId : menu.Items) {
            if (nId == 0 || nId == c_nRecentPlaceholder)
                continue;
            EXPECT_NE(Find(nId), nullptr) << nId;
            EXPECT_FALSE(seen.contains(nId)) << nId;
            seen.insert(nId);
        }
    }
    QSet<QString> shortcuts;
    for (const int nId : seen + QSet<int>{c_nSave, c_nRename}) {
        const QString strKeys = QString::fromUtf16(Find(nId)->pShortcut);
        EXPECT_FALSE(!strKeys.isEmpty() && shortcuts.contains(strKeys)) << strKeys.toStdString();
        shortcuts.insert(strKeys);
    }
    for (const int nId : ToolBar())
        EXPECT_TRUE(nId == 0 || Find(nId)->pToolText[0] != 0) << nId;
    EXPECT_EQ(Find(1), nullptr);
}

// The popup of recent courses is the tenth position of the first menu, which other code addresses by
// position.
TEST(CommandTable, RecentCoursesAreTheTenthPositionOfTheFirstMenu) {
    EXPECT_EQ(MainMenu().first().Items.at(9), c_nRecentPlaceholder);
}

TEST(CommandTable, EnablingFollowsCourseEditorTreeAndView) {
    struct Row {
        int nId;
        State state;
        bool bEnabled;
    };
    const Row rows[] = {
        {c_nNewCourse, {}, true},
        {c_nCompile, {}, false},
        {c_nCompile, {.bCourseOpen = true}, true},
        {c_nEditContent, {.bCourseOpen = true, .bTreeSaysYes = true}, true},
        {c_nEditContent, {.bCourseOpen = true, .bTreeSaysYes = false}, false},
        // The editor's page must not be changed behind its back.
        {c_nEditContent, {.bCourseOpen = true, .bEditorShowing = true, .bTreeSaysYes = true}, false},
        {c_nSave, {.bCourseOpen = true, .bEditorShowing = true, .bViewSaysYes = true}, true},
        {c_nSave, {.bCourseOpen = true, .bTreeSaysYes = true}, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IsEnabled(*Find(row.nId), row.state), row.bEnabled) << row.nId;
}

} // namespace
