#include "platform/base/Process.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(Process, SplitsACommandLineAsProgramsReadTheirs) {
    const struct {
        QString strLine;
        QStringList parts;
    } cases[] = {
        {u"p a  b\tc"_s, {u"p"_s, u"a"_s, u"b"_s, u"c"_s}},
        {u"\"p q\\r.exe\" \"a b\"c"_s, {u"p q\\r.exe"_s, u"a bc"_s}},
        {uR"(p "a\"b" \"c)"_s, {u"p"_s, u"a\"b"_s, u"\"c"_s}},
        {uR"(p "Z:\x\\" y\z \\s)"_s, {u"p"_s, u"Z:\\x\\"_s, u"y\\z"_s, u"\\\\s"_s}},
        {uR"(p "" a)"_s, {u"p"_s, u""_s, u"a"_s}},
        {u"  "_s, {}},
        {u"p \"open end"_s, {u"p"_s, u"open end"_s}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Platform::SplitCommandLine(c.strLine), c.parts) << c.strLine.toStdString();
}

void WriteScript(const CTempFolder& folder, const QString& strName, const QByteArray& text) {
    folder.Write(strName, "#!/bin/sh\n" + text);
    QFile::setPermissions(folder.Native(strName), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// The program's folder holds a blank and is not quoted, and the file lacks the ending that the line names.
TEST(Process, RunsAProgramAndPassesNativePaths) {
    CTempFolder folder;
    WriteScript(folder, u"bin dir\\tool"_s, "sleep 0.2\nprintf '%s|' \"$@\" > \"$(dirname \"$0\")/out\"\n");
    int nWaits = 0;
    const QString strLine =
        folder.Path(u"bin dir\\tool.exe"_s) + u" \""_s + folder.Path(u"课 程.vcp"_s) + u"\" /s C:\\x"_s;
    ASSERT_TRUE(Platform::RunAndWait(strLine, [&] { ++nWaits; }));
    EXPECT_EQ(folder.Read(u"bin dir\\out"_s), folder.Native(u"课 程.vcp"_s).toUtf8() + "|/s|C:\\x|");
    EXPECT_GT(nWaits, 3);
}

TEST(Process, AProgramThatIsNotThereOrCanNotRunDoesNotStart) {
    CTempFolder folder;
    folder.Write(u"plain.exe"_s, "text");
    EXPECT_FALSE(Platform::RunAndWait(folder.Path(u"none.exe"_s) + u" a"_s, {}));
    EXPECT_FALSE(Platform::RunAndWait(folder.Path(u"plain.exe"_s), {}));
    EXPECT_FALSE(Platform::RunAndWait(QString(), {}));
}

TEST(Process, KnowsItsOwnProgram) {
    EXPECT_TRUE(Platform::OwnProgramPath().startsWith(u"Z:\\"_s));
    EXPECT_TRUE(Platform::OwnProgramPath().endsWith(u"\\vorel_platform_base_tests"_s));
}

} // namespace
