#include "platform/base/FileCalls.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Testing.h"

#include <cerrno>

namespace {

TEST(FileCalls, AFileIsReplacedAsAWholeOrNotAtAll) {
    const CTempFolder folder;
    folder.Write(u"page.htm"_s, "old");
    const QByteArray path = folder.Native(u"page.htm"_s).toUtf8();
    {
        const CFileSizeLimit limit(1000);
        EXPECT_EQ(Platform::ReplaceFileBytes(path, QByteArray(5000, 'x')), EFBIG);
    }
    EXPECT_EQ(folder.Read(u"page.htm"_s), "old");
    EXPECT_EQ(folder.Tree(), u"page.htm"_s);
    // Permissions are kept, and a link is replaced itself.
    ::chmod(path.constData(), 0640);
    folder.Link(u"page.htm"_s, u"link"_s);
    EXPECT_EQ(Platform::ReplaceFileBytes(folder.Native(u"link"_s).toUtf8(), "new"), 0);
    EXPECT_EQ(folder.Read(u"page.htm"_s) + folder.Read(u"link"_s), "oldnew");
    EXPECT_EQ(Platform::ReplaceFileBytes(path, "new"), 0);
    EXPECT_EQ(folder.Read(u"page.htm"_s), "new");
    EXPECT_FALSE(QFileInfo(folder.Native(u"link"_s)).isSymLink());
    struct stat state {};
    ASSERT_EQ(::stat(path.constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0640U);
    EXPECT_EQ(folder.Tree(), u"link page.htm"_s);
    EXPECT_EQ(Platform::ReplaceFileBytes(folder.Native().toUtf8(), "x"), EISDIR);
    EXPECT_EQ(Platform::ReplaceFileBytes(folder.Native(u"none\\x"_s).toUtf8(), "x"), ENOENT);
}

TEST(FileCalls, ACopyIsWholeOrNotThere) {
    const CTempFolder folder;
    // Larger than one block, so that the kernel's own copying is in play.
    const QByteArray large = QByteArray("0123456789abcdef").repeated(40000);
    folder.Write(u"a"_s, large);
    folder.Write(u"old"_s, "old");
    Platform::CFolder open;
    ASSERT_EQ(open.Open(folder.Native().toUtf8()), 0);
    const auto copy = [&](const QByteArray& target, bool bOverwrite) {
        return Platform::CopyFileBytes(open, "a", open, target, bOverwrite);
    };
    {
        const CFileSizeLimit limit(200000);
        EXPECT_TRUE(copy("b", false) != 0 && copy("old", true) != 0);
    }
    EXPECT_EQ(folder.Tree(), u"a old"_s);
    EXPECT_EQ(folder.Read(u"old"_s), "old");
    EXPECT_EQ(copy("old", false), EEXIST);
    EXPECT_EQ(Platform::CopyFileBytes(open, "a", open, "old", true, [] { return true; }), ECANCELED);
    EXPECT_EQ(folder.Tree(), u"a old"_s);
    EXPECT_EQ(folder.Read(u"old"_s), "old");
    EXPECT_TRUE(copy("b", false) == 0 && copy("old", true) == 0 && copy("a", true) == 0);
    for (const QString& str : {u"a"_s, u"b"_s, u"old"_s})
        EXPECT_TRUE(folder.Read(str) == large);
    EXPECT_EQ(QFileInfo(folder.Native(u"a"_s)).lastModified(),
              QFileInfo(folder.Native(u"b"_s)).lastModified());
}

// Opening a pipe would wait for a writer for ever.
TEST(FileCalls, APipeIsNeverReadOrCopied) {
    const CTempFolder folder;
    const QByteArray pipe = folder.Native(u"pipe"_s).toUtf8();
    folder.MakePipe(u"pipe"_s);
    QByteArray bytes;
    EXPECT_EQ(Platform::ReadFileBytes(pipe, bytes, 100), EINVAL);
    const auto paths = Platform::CFolder::OfPaths();
    EXPECT_EQ(Platform::CopyFileBytes(paths, pipe, paths, pipe + 'c', true), EINVAL);
    int nDescriptor = -1;
    EXPECT_EQ(Platform::OpenPlainFile(pipe, false, false, nDescriptor), EINVAL);
}

} // namespace
