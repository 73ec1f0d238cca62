#include "companions/compiler/SourceTree.h"

#include "tests/support/Testing.h"

#include <QDir>
#include <QThread>

namespace {

using namespace Qt::StringLiterals;

QStringList All(const CSourceTree& tree) {
    QStringList all;
    for (const QString& strFolder : tree.TopFolders())
        all += tree.FilesBelow(strFolder);
    for (const CSourceTree::Passed& passed : tree.PassedOver())
        all.append(u"- "_s + passed.Name);
    return all;
}

} // namespace

TEST(KeptListings, TellTheFoldersOfTheLastRunFromChangedOnes) {
    CTempFolder folder;
    for (const QString& strName :
         {u"N1\\甲.htm"_s, u"N1\\res\\a.gif"_s, u"N2\\b.htm"_s, u"N3\\x\\y\\c.htm"_s})
        folder.Write(u"课\\"_s + strName, "x");
    folder.Write(u"课\\N2\\.hidden"_s, "x");
    ASSERT_TRUE(QFile::link(folder.Native(u"课\\N2\\b.htm"_s), folder.Native(u"课\\N2\\link"_s)));
    const QString strCourse = folder.Native(u"课"_s);
    const QString strKept = folder.Native(u"cache\\new\\list"_s);
    const auto list = [&] { return All(CSourceTree(strCourse, strKept)); };
    const auto listAnew = [&] { return All(CSourceTree(strCourse)); };

    // What was written a moment ago may change again within a step of the disk's clock.
    EXPECT_EQ(list(), listAnew());
    EXPECT_FALSE(QFile::exists(strKept));
    constexpr int c_nClockStep = 2100;
    QThread::msleep(c_nClockStep);
    EXPECT_EQ(list(), listAnew());
    const QByteArray kept = folder.Read(u"cache\\new\\list"_s);
    ASSERT_TRUE(kept.contains("a.gif"));
    EXPECT_EQ(list(), listAnew());

    // That it is read: a name in it that the disk doesn't have is looked for.
    folder.Write(u"cache\\new\\list"_s, QByteArray(kept).replace("a.gif", "a.jpg"));
    EXPECT_TRUE(list().contains(u"- N1/res/a.jpg"_s));
    // And one that was cut off or is another folder's is not.
    for (const QByteArray& bad : {kept.chopped(1), kept.left(kept.size() / 2),
                                  QByteArray(kept).replace("课", "謀"), QByteArray("x")}) {
        folder.Write(u"cache\\new\\list"_s, QByteArray(bad).replace("a.gif", "a.jpg"));
        EXPECT_EQ(list(), listAnew());
        EXPECT_EQ(folder.Read(u"cache\\new\\list"_s).size(), kept.size());
    }

    folder.Write(u"课\\N1\\res\\new.gif"_s, "x");
    ASSERT_TRUE(QFile::remove(folder.Native(u"课\\N2\\b.htm"_s)));
    ASSERT_TRUE(QDir(strCourse).rename(u"N3/x/y"_s, u"N3/x/z"_s));
    EXPECT_EQ(list(), listAnew());
    EXPECT_TRUE(list().contains(u"N3/x/z/c.htm"_s));
    // A folder in the place of another of the same name, both as they were.
    ASSERT_TRUE(QDir(strCourse).rename(u"N1"_s, u"old"_s));
    ASSERT_TRUE(QDir(strCourse).rename(u"N2"_s, u"N1"_s));
    EXPECT_EQ(list(), listAnew());
    // And a file or a link in the place of a folder.
    ASSERT_TRUE(QDir(strCourse).rename(u"N3"_s, u"n3"_s));
    ASSERT_TRUE(QFile::link(folder.Native(u"课\\n3"_s), folder.Native(u"课\\N3"_s)));
    EXPECT_EQ(list(), listAnew());
    ASSERT_TRUE(QDir(folder.Native(u"课\\old\\res"_s)).removeRecursively());
    folder.Write(u"课\\old\\res"_s, "x");
    EXPECT_EQ(list(), listAnew());
}
