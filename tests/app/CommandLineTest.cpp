#include "app/CommandLine.h"
#include "tests/support/Testing.h"

// A file that a person's desktop or terminal names must be the file that opens, in whatever form it comes.
TEST(CommandLine, NamesTheFileAndKnowsItsOptions) {
    const struct {
        QStringList Arguments;
        QString strFile;
        bool bShowSplash;
    } cases[] = {
        {{}, u""_s, true},
        {{u"/home/li/课程 一.vcp"_s}, u"Z:\\home\\li\\课程 一.vcp"_s, true},
        {{u"Z:\\home\\li\\a.vcp"_s}, u"Z:\\home\\li\\a.vcp"_s, true},
        {{u"D:\\课程\\a.vcp"_s}, u"D:\\课程\\a.vcp"_s, true},
        {{u"a.vcp"_s}, u"Z:\\work dir\\a.vcp"_s, true},
        {{u"../b/./a.vcp"_s}, u"Z:\\b\\a.vcp"_s, true},
        {{u"sub\\a.vcp"_s}, u"Z:\\work dir\\sub\\a.vcp"_s, true},
        {{u"--no-splash"_s, u"--unknown"_s, u"-x"_s, u"/a.vcp"_s, u"/b.vcp"_s}, u"Z:\\a.vcp"_s, false},
        {{u"--"_s, u"--no-splash"_s}, u"Z:\\work dir\\--no-splash"_s, true},
        {{u""_s, u"/a.vcp"_s, u"--no-splash"_s}, u"Z:\\a.vcp"_s, false},
    };
    for (const auto& each : cases) {
        const CommandLine line = ParseCommandLine(each.Arguments, u"/work dir"_s);
        EXPECT_EQ(line.strFile, each.strFile);
        EXPECT_EQ(line.bShowSplash, each.bShowSplash) << each.strFile;
    }
}
