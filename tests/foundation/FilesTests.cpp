#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "tests/support/Testing.h"

#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

using namespace Torvane::File;

namespace {

// The message, with "~" for the test's folder.
QString MessageOf(const CTempFolder& folder, const std::function<void()>& operation) {
    try {
        operation();
    } catch (const CFileException& e) {
        return e.GetMessage().replace(folder.Native(), u"~"_s);
    }
    return QString();
}

TEST(Files, EachFailureHasItsMessageInNativeForm) {
    const CTempFolder folder;
    folder.Write(u"a"_s, "x");
    folder.Write(u"b"_s, "y");
    const QString strA = folder.Path(u"a"_s), strB = folder.Path(u"b"_s), strNo = folder.Path(u"no"_s);
    const QString strX(260, u'x'), strLong = folder.Path(strX);
    const QString strGone = u"(文件或文件夹不存在)"_s, strTooLong = u"(文件名太长)"_s;
    const std::pair<std::function<void()>, QString> cases[] = {
        {[&] { GetFileSizeOf(strNo); }, u"无法打开文件 ~/no ！"_s + strGone},
        {[&] { GetFileSizeOf(folder.Path()); }, u"无法打开文件 ~ ！(它是一个文件夹)"_s},
        {[&] { CReadFile().Open(strLong, true, true); }, u"无法打开文件 ~/X ！"_s + strTooLong},
        {[&] { CopyOneFile(strA, strB, false); }, u"无法拷贝文件 ~/a 到 ~/b！(同名的文件或文件夹已经存在)"_s},
        {[&] { CopyOneFile(strNo, strB, true); }, u"无法拷贝文件 ~/no 到 ~/b！"_s + strGone},
        {[&] { CopyOneFile(strA, strLong, true); }, u"无法拷贝文件 ~/a 到 ~/X！"_s + strTooLong},
        {[&] { DeleteOneFile(strNo, true); }, u"无法删除文件 ~/no！"_s + strGone},
        {[&] { DeleteOneFile(strLong, false); }, u"无法删除文件 ~/X！"_s + strTooLong},
        {[&] { ClearAttributes(strLong); }, u"无法为路径 ~/X 设置属性！"_s + strTooLong},
        {[&] { CreateFolderPath(strLong); }, u"无法创建目录 ~/X ！"_s + strTooLong},
        {[&] { CreateFolderPath(strA + u"\\b\\c"_s); }, u"无法创建目录 ~/a/b ！(路径中有一部分不是文件夹)"_s},
        {[&] { CreateFolderPath(u"bare"_s); }, u"路径 bare 无效！"_s},
        {[&] { CreateFolderPath(u"\\\\server"_s); }, u"路径 \\\\server 无效！"_s},
        {[&] { DeleteFolder(strNo, true); }, u"无法删除目录~/no！"_s + strGone}};
    for (const auto& [operation, strMessage] : cases)
        EXPECT_EQ(MessageOf(folder, operation).replace(strX, u"X"_s), strMessage);
    EXPECT_EQ(folder.Read(u"b"_s), "y");
    EXPECT_TRUE(Torvane::CException(QString()).GetMessage() == u""_s);
    EXPECT_EQ(CFileException(u"文本"_s, 99999).GetMessage(), u"文本(Unknown Error!)"_s);
    // 1,023 bytes end in the middle of the 512th character.
    EXPECT_EQ(CFileException(QString(600, u'课'), EISDIR).GetMessage(),
              QString(QString(511, u'课') + u"(它是一个文件夹)"_s));
}

TEST(Files, OperationsTouchTheOneFile) {
    const CTempFolder folder;
    folder.Write(u"a"_s, "x");
    folder.Link(u"a"_s, u"link"_s);
    CopyOneFile(folder.Path(u"link"_s), folder.Path(u"Copy"_s), false);
    EXPECT_FALSE(QFileInfo(folder.Native(u"Copy"_s)).isSymLink());
    // Wherever the program was started: nothing is written there on the way, were it possible or not.
    const QString strStarted = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(u"/proc"_s));
    folder.Write(u"Copy"_s, "older");
    CopyOneFile(folder.Path(u"a"_s), folder.Path(u"Copy"_s), true);
    QDir::setCurrent(strStarted);
    EXPECT_EQ(QFileInfo(folder.Native(u"Copy"_s)).size(), 1);
    DeleteOneFile(folder.Path(u"link"_s), true);
    EXPECT_TRUE(folder.Exists(u"a"_s) && !folder.Exists(u"link"_s));
    EXPECT_THROW(DeleteOneFile(folder.Path(), true), CFileException);
    ::chmod(folder.Native(u"a"_s).toUtf8().constData(), 0444);
    ClearAttributes(folder.Path(u"a"_s));
    EXPECT_TRUE(QFile::permissions(folder.Native(u"a"_s)).testFlag(QFile::WriteOwner));
    ClearAttributes(folder.Path(u"none"_s));
    QFile file(folder.Native(u"large"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize((qint64{3} << 32) + 9));
    quint32 nHigh = 0;
    EXPECT_EQ(GetFileSizeOf(folder.Path(u"LARGE"_s), &nHigh), 9U);
    EXPECT_EQ(nHigh, 3U);
}

TEST(Files, FolderPathsAreMadeBelowWhatIsThere) {
    const CTempFolder folder;
    folder.Write(u"file"_s, "x");
    EXPECT_EQ(CreateFolderPath(folder.Path(u"a\\课\\c"_s)), EPathKind::Nothing);
    EXPECT_EQ(CreateFolderPath(folder.Path(u"a\\"_s)), EPathKind::Folder);
    EXPECT_EQ(CreateFolderPath(folder.Path(u"file"_s)), EPathKind::File);
    // The parents are those that are there, whatever case they are named in.
    EXPECT_EQ(CreateFolderPath(folder.Path(u"A\\课\\New\\"_s)), EPathKind::Nothing);
    EXPECT_TRUE(QFileInfo(folder.Native(u"a\\课\\New"_s)).isDir());
    EXPECT_FALSE(TryCreateFolderPath(u"\\\\server\\x"_s) || TryCreateFolderPath(u"C:\\x"_s));
}

TEST(Files, ALockedFileIsWaitedForFiveSeconds) {
    const CTempFolder folder;
    folder.Write(u"a"_s, "12");
    const int nHolder = ::open(folder.Native(u"a"_s).toUtf8().constData(), O_RDONLY);
    ASSERT_EQ(::flock(nHolder, LOCK_EX), 0);
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(350));
        ::flock(nHolder, LOCK_UN);
    });
    EXPECT_EQ(GetFileSizeOf(folder.Path(u"a"_s)), 2U);
    release.join();
    ASSERT_EQ(::flock(nHolder, LOCK_EX), 0);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(MessageOf(folder, [&] { GetFileSizeOf(folder.Path(u"a"_s)); }),
              u"无法打开文件 ~/a ！(Resource temporarily unavailable)"_s);
    EXPECT_GE(timer.elapsed(), 4900);
    ::close(nHolder);
}

} // namespace
