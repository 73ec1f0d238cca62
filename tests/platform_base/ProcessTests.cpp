#include "platform/base/Process.h"
#include "tests/support/Testing.h"

namespace {

TEST(Process, SplitsACommandLineAsProgramsReadTheirs) {
    const std::pair<QString, QString> cases[] = {{u"p a  b\tc"_s, u"p|a|b|c"_s},
                                                 {u"\"p q\\r.exe\" \"a b\"c"_s, u"p q\\r.exe|a bc"_s},
                                                 {uR"(p "a\"b" \"c)"_s, u"p|a\"b|\"c"_s},
                                                 {uR"(p "Z:\x\\" y\z \\s)"_s, uR"(p|Z:\x\|y\z|\\s)"_s},
                                                 {uR"(p "" a)"_s, u"p||a"_s},
                                                 {u"  "_s, u""_s},
                                                 {u"p \"open end"_s, u"p|open end"_s}};
    for (const auto& [strLine, strParts] : cases)
        EXPECT_EQ(Platform::SplitCommandLine(strLine).join(u'|'), strParts);
}

// The program's folder holds a blank and is not quoted, and the file lacks the ending that the line names.
TEST(Process, RunsAProgramAndPassesNativePaths) {
    const CTempFolder folder;
    const QString strTool = u"bin dir\\tool"_s;
    folder.WriteProgram(strTool, "#!/bin/sh\nsleep 0.2\nprintf '%s|' \"$@\" > \"$(dirname \"$0\")/out\"\n");
    int nWaits = 0;
    ASSERT_TRUE(Platform::RunAndWait(folder.Path(strTool) + u".exe \""_s + folder.Path(u"课 程.vcp"_s) +
                                         u"\" /s C:\\x"_s,
                                     [&] { ++nWaits; }));
    EXPECT_EQ(folder.Read(u"bin dir\\out"_s), folder.Native(u"课 程.vcp"_s).toUtf8() + "|/s|C:\\x|");
    EXPECT_GT(nWaits, 3);
    // The recorder's: a path with blanks, and tabs behind it.
    ASSERT_TRUE(Platform::RunAndWait(
        folder.Path(strTool) + u".exe "_s + folder.Path(u"我的  课.prj"_s) + u"\tAF\t7"_s, {}));
    EXPECT_EQ(folder.Read(u"bin dir\\out"_s), folder.Native(u"我的  课.prj"_s).toUtf8() + "|AF|7|");
    EXPECT_TRUE(Platform::OwnProgramPath().endsWith(u"\\vorel_platform_base_tests"_s));
}

TEST(Process, WhatIsNotThereOrCanNotRunDoesNotStart) {
    const CTempFolder folder;
    folder.Write(u"plain.exe"_s, "text");
    for (const QString& strLine : std::initializer_list<QString>{folder.Path(u"none.exe"_s) + u" a"_s,
                                                                 folder.Path(u"plain.exe"_s), u""_s})
        EXPECT_FALSE(Platform::RunAndWait(strLine, {})) << strLine;
}

} // namespace
