#include "video/CommandClock.h"
#include "tests/support/Testing.h"

namespace {

TEST(CommandClock, CommandsComeAtTheirTimesAlsoAfterASeek) {
    CCommandClock clock;
    clock.SetCommands({{0, {}, u"-1"_s},
                       {1000, {}, u"0"_s},
                       {4000, {}, u"-2"_s},
                       {4000, {}, u"1"_s},
                       {4500, {}, u"2"_s},
                       {9000, {}, u"-3"_s}});
    const std::pair<qint64, const char*> steps[] = {
        {0, "-1"}, // the beginning
        {900, ""},      {1000, "0"}, {1000, ""},     {2900, ""},   {4100, "-2 1"},
        {4400, ""},     {4600, "2"}, {9000, "-3"}, // far behind the last report: gone to
        {4000, "-2 1"},                            // back, to a marker's very place
        {4500, "2"},    {500, "-1"}, {8999, "-2 2"}, {9100, "-3"}, {0, "-1"}};
    for (const auto& [nPosition, szDue] : steps)
        EXPECT_EQ(clock.MoveTo(nPosition).join(u' '), QString::fromLatin1(szDue)) << nPosition;
    clock.Forget();
    EXPECT_EQ(clock.MoveTo(100), QStringList{u"-1"_s});
    clock.SetCommands({});
    EXPECT_TRUE(clock.MoveTo(5000).isEmpty());
}

} // namespace
