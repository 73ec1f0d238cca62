#include "companions/compiler/OutputFolder.h"
#include "companions/compiler/OutputList.h"

#include "foundation/Exceptions.h"
#include "tests/support/Testing.h"

namespace {

/// A course's folders with an output folder beside them.
class OutputFolderTest : public testing::Test {
protected:
    CTempFolder folder;

    OutputFolderTest() { folder.MakeFolder(u"course\\Data\\x"_s); }
    COutputFolder Open(const QString& strFolder = u"out"_s, const QString& strOwner = u"7"_s) const {
        return COutputFolder(folder.Native(strFolder), folder.Native(u"course"_s),
                             folder.Native(u"course\\Data"_s), strOwner);
    }
    void WriteSite(const QStringList& names, const QByteArray& bytes) const {
        COutputFolder output = Open();
        output.Announce(names);
        for (const QString& strName : names)
            output.Write(strName, bytes);
        output.Finish();
    }
};

} // namespace

TEST_F(OutputFolderTest, RefusesFoldersThatHoldTheCourse) {
    QFile::link(folder.Native(u"course\\Data"_s), folder.Native(u"link"_s));
    for (const QString& strBad : {u"course"_s, u"course\\Data"_s, u"course\\Data\\x\\new"_s, u"."_s,
                                  u"course\\y\\.."_s, u"link"_s, u"link\\new"_s})
        EXPECT_THROW(Open(strBad), Torvane::CRunException) << strBad;
    for (const QString& strGood : {u"course\\课程网站"_s, u"course\\Data2"_s, u"elsewhere\\deep"_s})
        EXPECT_NO_THROW(Open(strGood)) << strGood;
    EXPECT_FALSE(folder.Exists(u"course\\Data\\x\\new"_s)) << "nothing is made before the answer";
}

TEST_F(OutputFolderTest, LeavesAPersonsFilesAndTakesItsOwnStaleOnes) {
    folder.Write(u"out\\N4\\notes.txt"_s, "mine");
    folder.Write(u"out\\index.html"_s, "my own page");
    WriteSite({u"index.html"_s, u"N4/a.htm"_s, u"N5/b/c.htm"_s}, "first");
    EXPECT_EQ(folder.Read(u"out\\index.html"_s), "first");
    EXPECT_EQ(folder.Read(u"out\\index.html.bak"_s), "my own page");

    folder.Write(u"out\\N5\\readme.txt"_s, "mine too");
    WriteSite({u"index.html"_s}, "second");
    EXPECT_EQ(folder.Read(u"out\\index.html"_s), "second");
    EXPECT_EQ(folder.Read(u"out\\N4\\notes.txt"_s), "mine");
    EXPECT_EQ(folder.Read(u"out\\N5\\readme.txt"_s), "mine too");
    EXPECT_FALSE(folder.Exists(u"out\\N4\\a.htm"_s));
    EXPECT_FALSE(folder.Exists(u"out\\N5\\b"_s));
    EXPECT_FALSE(folder.Exists(u"out\\index.html.bak2"_s)) << "its own page is simply replaced";
}

// What a list names is deleted, so a list that someone forged must not reach out of the folder.
TEST_F(OutputFolderTest, NeverReachesOutOfItsFolder) {
    folder.Write(u"out\\.vorel-site"_s,
                 "VorelCompiler 2\t7\n../victim.txt\t1\t1\t1\n/etc/x\t1\nlink/victim.txt\n"
                 "a/../../victim.txt\na\tx\t\t-\t+../victim.txt\n\t\n%\n");
    folder.Write(u"victim.txt"_s, "x");
    folder.Write(u"other\\victim.txt"_s, "x");
    QFile::link(folder.Native(u"other"_s), folder.Native(u"out\\link"_s));
    WriteSite({u"index.html"_s}, "x");
    EXPECT_TRUE(folder.Exists(u"victim.txt"_s));
    EXPECT_TRUE(folder.Exists(u"other\\victim.txt"_s));
    EXPECT_THROW(WriteSite({u"link/new.htm"_s}, "x"), Torvane::CRunException);
    EXPECT_FALSE(folder.Exists(u"other\\new.htm"_s));
}

// A compile that is killed leaves whole files alone, and the next one knows them for its own.
TEST_F(OutputFolderTest, RecoversFromAKilledCompile) {
    {
        COutputFolder output = Open();
        output.Announce({u"a.htm"_s, u"b.htm"_s});
        output.Write(u"a.htm"_s, "half of a site");
    }
    folder.Write(u"out\\.vorel-tmp\\17"_s, "half of a page");
    WriteSite({u"b.htm"_s}, "whole");
    EXPECT_FALSE(folder.Exists(u"out\\a.htm"_s));
    EXPECT_FALSE(folder.Exists(u"out\\.vorel-tmp"_s));
    EXPECT_EQ(QDir(folder.Native(u"out"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{u".vorel-site"_s, u"b.htm"_s}));
}

// A film takes an hour to convert: neither a kill nor a 取消 behind it may cost it.
TEST_F(OutputFolderTest, KnowsWhatWasMadeBeforeAnEarlyEnd) {
    {
        COutputFolder output = Open();
        output.Announce({u"film.mp4"_s, u"a.htm"_s});
        const QString strFresh = output.FreshPath();
        QFile fresh(strFresh);
        ASSERT_TRUE(fresh.open(QIODevice::WriteOnly) && fresh.write("film") == 4);
        fresh.close();
        output.Adopt(strFresh, u"film.mp4"_s, 9);
        const auto list = OutputList::Read(folder.Read(u"out\\.vorel-site"_s));
        ASSERT_TRUE(list);
        EXPECT_EQ(list->Files.value(u"film.mp4"_s).nInput, 9);
        output.Write(u"a.htm"_s, "x", {5, {}, {}, {}});
    }
    COutputFolder next = Open();
    EXPECT_TRUE(next.Keep(u"film.mp4"_s, 9));
    EXPECT_TRUE(next.Keep(u"a.htm"_s, 5));
}

// Whoever puts another picture in a picture's place may keep its time, as archives do.
TEST_F(OutputFolderTest, CopiesAnotherFileOfTheSameSizeAndTime) {
    const QString strSource = folder.Native(u"source"_s);
    const auto copy = [&](const QByteArray& bytes, quint64 nInput) {
        folder.Write(u"source"_s, bytes);
        QFile file(strSource);
        EXPECT_TRUE(
            file.open(QIODevice::ReadWrite) &&
            file.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000'000), QFile::FileModificationTime));
        file.close();
        COutputFolder output = Open();
        output.Announce({u"a.png"_s});
        output.Copy(strSource, u"a.png"_s, nInput);
        output.Finish();
        EXPECT_EQ(folder.Read(u"out\\a.png"_s), bytes);
        return output.ChangedCount();
    };
    EXPECT_EQ(copy("one", 1), 1);
    EXPECT_EQ(copy("one", 2), 0) << "put back as it was";
    EXPECT_EQ(copy("two", 3), 1);
    EXPECT_EQ(copy("two", 3), 0);
}

TEST_F(OutputFolderTest, LeavesNothingBehindWhereItWroteNothing) {
    { COutputFolder output = Open(u"deep\\er\\out"_s); }
    EXPECT_FALSE(folder.Exists(u"deep"_s));
    WriteSite({u"index.html"_s}, "x");
    EXPECT_THROW(Open(u"out"_s, u"8"_s), Torvane::CRunException) << "another course's site";
    EXPECT_FALSE(folder.Exists(u"out\\.vorel-tmp"_s));
}

// Names and remarks may hold what separates the fields of the list.
TEST_F(OutputFolderTest, RemembersFromRunToRun) {
    const QString strOdd = u"a\tb%\n.htm"_s;
    for (const bool bFirst : {true, false}) {
        COutputFolder output = Open();
        output.Announce({strOdd, u"b.htm"_s});
        EXPECT_EQ(output.Keep(strOdd, 5), !bFirst);
        EXPECT_FALSE(output.Keep(strOdd, 6));
        if (bFirst) {
            output.Write(strOdd, "x", {5, {u"s\t"_s}, {u"b.htm"_s}, {u"n%\n"_s}});
            output.Write(u"b.htm"_s, "x");
        } else {
            EXPECT_EQ(output.Known(strOdd)->Notes, QStringList{u"n%\n"_s});
            EXPECT_EQ(output.Known(strOdd)->Sources, QStringList{u"s\t"_s});
        }
        output.Finish();
        EXPECT_EQ(output.ChangedCount(), bFirst ? 2 : 0);
    }
    QFile::remove(folder.Native(u"out\\b.htm"_s));
    EXPECT_FALSE(Open().Keep(strOdd, 5)) << "what was written along with it is gone";
}

TEST_F(OutputFolderTest, AllowsOneCompilerAtATime) {
    const COutputFolder first = Open();
    EXPECT_THROW(WriteSite({u"a.htm"_s}, "x"), Torvane::CRunException);
}
