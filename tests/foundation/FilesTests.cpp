#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace Torvane::File;

namespace {

QString MessageOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const CFileException& e) {
        return e.GetMessage();
    }
    return QString();
}

TEST(Files, SizesAreGivenInTwoHalves) {
    CTempFolder folder;
    folder.Write(u"a"_s, "12345");
    quint32 nHigh = 7;
    EXPECT_EQ(GetFileSizeOf(folder.Path(u"A"_s), &nHigh), 5U);
    EXPECT_EQ(nHigh, 0U);
    QFile file(folder.Native(u"large"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize((qint64{3} << 32) + 9));
    EXPECT_EQ(GetFileSizeOf(folder.Path(u"large"_s), &nHigh), 9U);
    EXPECT_EQ(nHigh, 3U);
}

TEST(Files, EachFailureHasItsMessageInNativeForm) {
    CTempFolder folder;
    folder.Write(u"a"_s, "x");
    folder.Write(u"b"_s, "y");
    folder.Write(u"full\\x"_s, "x");
    const QString strBase = folder.Native() + u'/';
    const auto path = [&](const QString& str) { return folder.Path(str); };
    const QString strLong = path(QString(260, u'x'));
    const QString strLongName = strBase + QString(260, u'x');
    const QString strGone = u"(No such file or directory)"_s;
    const QString strTooLong = u"(File name too long)"_s;
    const struct {
        std::function<void()> operation;
        QString strMessage;
    } cases[] = {
        {[&] { GetFileSizeOf(path(u"no"_s)); }, u"无法打开文件 "_s + strBase + u"no ！"_s + strGone},
        {[&] { GetFileSizeOf(folder.Path()); },
         u"无法打开文件 "_s + folder.Native() + u" ！(Is a directory)"_s},
        {[&] { CReadFile().Open(strLong, true, true); },
         u"无法打开文件 "_s + strLongName + u" ！"_s + strTooLong},
        {[&] { CopyOneFile(path(u"a"_s), path(u"b"_s), false); },
         u"无法拷贝文件 "_s + strBase + u"a 到 "_s + strBase + u"b！(File exists)"_s},
        {[&] { CopyOneFile(path(u"no"_s), path(u"c"_s), true); },
         u"无法拷贝文件 "_s + strBase + u"no 到 "_s + strBase + u"c！"_s + strGone},
        {[&] { CopyOneFile(path(u"a"_s), strLong, true); },
         u"无法拷贝文件 "_s + strBase + u"a 到 "_s + strLongName + u"！"_s + strTooLong},
        {[&] { DeleteOneFile(path(u"no"_s), true); }, u"无法删除文件 "_s + strBase + u"no！"_s + strGone},
        {[&] { DeleteOneFile(strLong, false); }, u"无法删除文件 "_s + strLongName + u"！"_s + strTooLong},
        {[&] { ClearAttributes(strLong); }, u"无法为路径 "_s + strLongName + u" 设置属性！"_s + strTooLong},
        {[&] { CreateFolderPath(strLong); }, u"无法创建目录 "_s + strLongName + u" ！"_s + strTooLong},
        {[&] { CreateFolderPath(path(u"a\\b\\c"_s)); },
         u"无法创建目录 "_s + strBase + u"a/b ！(Not a directory)"_s},
        {[&] { CreateFolderPath(u"bare"_s); }, u"路径 bare 无效！"_s},
        {[&] { CreateFolderPath(u"\\\\server"_s); }, u"路径 \\\\server 无效！"_s},
        {[&] { DeleteFolder(path(u"none"_s), true); }, u"无法删除目录"_s + strBase + u"none！"_s + strGone},
    };
    for (const auto& c : cases)
        EXPECT_EQ(MessageOf(c.operation), c.strMessage);
    EXPECT_EQ(folder.Read(u"b"_s), "y");
}

TEST(Files, CopyAndDeleteTouchTheOneFile) {
    CTempFolder folder;
    folder.Write(u"a"_s, "new");
    folder.Write(u"b"_s, "old");
    folder.Write(u"real"_s, "kept");
    ASSERT_TRUE(QFile::link(u"real"_s, folder.Native(u"link"_s)));
    CopyOneFile(folder.Path(u"a"_s), folder.Path(u"b"_s), true);
    EXPECT_EQ(folder.Read(u"b"_s), "new");
    CopyOneFile(folder.Path(u"link"_s), folder.Path(u"Copy"_s), false);
    EXPECT_FALSE(QFileInfo(folder.Native(u"Copy"_s)).isSymLink());
    EXPECT_EQ(folder.Read(u"Copy"_s), "kept");
    DeleteOneFile(folder.Path(u"link"_s), true);
    EXPECT_FALSE(folder.Exists(u"link"_s));
    EXPECT_EQ(folder.Read(u"real"_s), "kept");
    EXPECT_THROW(DeleteOneFile(folder.Path(), true), CFileException);
}

TEST(Files, ClearingAttributesLetsTheOwnerWrite) {
    CTempFolder folder;
    folder.Write(u"a"_s, "x");
    const QByteArray native = folder.Native(u"a"_s).toUtf8();
    ::chmod(native.constData(), 0444);
    ClearAttributes(folder.Path(u"a"_s));
    struct stat state {};
    ::stat(native.constData(), &state);
    EXPECT_EQ(state.st_mode & 0777U, 0644U);
    ClearAttributes(folder.Path(u"none"_s));
}

TEST(Files, FolderPathsAreMadeUpToTheFirstThatFails) {
    CTempFolder folder;
    folder.Write(u"file"_s, "x");
    EXPECT_EQ(CreateFolderPath(folder.Path(u"a\\课\\c"_s)), EPathKind::Nothing);
    EXPECT_TRUE(QFileInfo(folder.Native(u"a\\课\\c"_s)).isDir());
    EXPECT_EQ(CreateFolderPath(folder.Path(u"a\\"_s)), EPathKind::Folder);
    EXPECT_EQ(CreateFolderPath(folder.Path(u"file"_s)), EPathKind::File);
    // The parents are those that are there, whatever case they are named in.
    EXPECT_EQ(CreateFolderPath(folder.Path(u"A\\课\\New\\"_s)), EPathKind::Nothing);
    EXPECT_TRUE(QFileInfo(folder.Native(u"a\\课\\New"_s)).isDir());
    EXPECT_FALSE(TryCreateFolderPath(u"\\\\server\\x"_s));
    EXPECT_FALSE(TryCreateFolderPath(u"C:\\x"_s));
}

TEST(Files, ALockedFileIsWaitedFor) {
    CTempFolder folder;
    folder.Write(u"a"_s, "12");
    const int nHolder = ::open(folder.Native(u"a"_s).toUtf8().constData(), O_RDONLY);
    ASSERT_EQ(::flock(nHolder, LOCK_EX), 0);
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(350));
        ::flock(nHolder, LOCK_UN);
    });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(GetFileSizeOf(folder.Path(u"a"_s)), 2U);
    EXPECT_GE(timer.elapsed(), 300);
    release.join();
    // For longer than 5 seconds it is a failure.
    ASSERT_EQ(::flock(nHolder, LOCK_EX), 0);
    timer.start();
    EXPECT_EQ(
        MessageOf([&] { GetFileSizeOf(folder.Path(u"a"_s)); }),
        QString(u"无法打开文件 "_s + folder.Native(u"a"_s) + u" ！(Resource temporarily unavailable)"_s));
    EXPECT_GE(timer.elapsed(), 4900);
    ::close(nHolder);
}

} // namespace
