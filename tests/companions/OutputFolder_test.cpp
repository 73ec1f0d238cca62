#include "companions/compiler/OutputFolder.h"

#include "foundation/Exceptions.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void WriteSite(const CTempFolder& folder, const QStringList& names, const QByteArray& bytes) {
    COutputFolder output(folder.Native(u"out"_s), folder.Native(u"course"_s),
                         folder.Native(u"course\\Data"_s));
    output.Announce(names);
    for (const QString& strName : names)
        output.Write(strName, bytes);
    output.Finish();
}

} // namespace

TEST(OutputFolder, RefusesFoldersThatHoldTheCourse) {
    CTempFolder folder;
    folder.MakeFolder(u"course\\Data\\x"_s);
    QFile::link(folder.Native(u"course\\Data"_s), folder.Native(u"link"_s));
    const struct {
        QString strFolder;
        bool bAllowed;
    } rows[] = {
        {u"course"_s, false},
        {u"course\\Data"_s, false},
        {u"course\\Data\\x\\new"_s, false},
        {u"."_s, false},
        {u"course\\y\\.."_s, false},
        {u"link"_s, false},
        {u"link\\new"_s, false},
        {u"course\\课程网站"_s, true},
        {u"course\\Data2"_s, true},
        {u"elsewhere\\deep"_s, true},
    };
    for (const auto& row : rows) {
        const auto open = [&] {
            COutputFolder(folder.Native(row.strFolder), folder.Native(u"course"_s),
                          folder.Native(u"course\\Data"_s));
        };
        if (row.bAllowed)
            EXPECT_NO_THROW(open()) << row.strFolder.toStdString();
        else
            EXPECT_THROW(open(), Torvane::CRunException) << row.strFolder.toStdString();
    }
    EXPECT_FALSE(folder.Exists(u"course\\Data\\x\\new"_s)) << "nothing is made before the answer";
}

TEST(OutputFolder, LeavesAPersonsFilesAndTakesItsOwnStaleOnes) {
    CTempFolder folder;
    folder.MakeFolder(u"course\\Data"_s);
    folder.Write(u"out\\N4\\notes.txt"_s, "mine");
    folder.Write(u"out\\index.html"_s, "my own page");
    WriteSite(folder, {u"index.html"_s, u"N4/a.htm"_s, u"N5/b/c.htm"_s}, "first");
    EXPECT_EQ(folder.Read(u"out\\index.html"_s), "first");
    EXPECT_EQ(folder.Read(u"out\\index.html.bak"_s), "my own page");

    folder.Write(u"out\\N5\\readme.txt"_s, "mine too");
    WriteSite(folder, {u"index.html"_s}, "second");
    EXPECT_EQ(folder.Read(u"out\\index.html"_s), "second");
    EXPECT_EQ(folder.Read(u"out\\N4\\notes.txt"_s), "mine");
    EXPECT_EQ(folder.Read(u"out\\N5\\readme.txt"_s), "mine too");
    EXPECT_FALSE(folder.Exists(u"out\\N4\\a.htm"_s));
    EXPECT_FALSE(folder.Exists(u"out\\N5\\b"_s));
    EXPECT_FALSE(folder.Exists(u"out\\index.html.bak2"_s)) << "its own page is simply replaced";
}

// What a list names is deleted, so a list that someone forged must not reach out of the folder.
TEST(OutputFolder, NeverReachesOutOfItsFolder) {
    CTempFolder folder;
    folder.MakeFolder(u"course\\Data"_s);
    folder.Write(u"out\\vorel-site.json"_s,
                 R"({"files":["../victim.txt","/etc/x","link/victim.txt","a/../../victim.txt"]})");
    folder.Write(u"victim.txt"_s, "x");
    folder.Write(u"other\\victim.txt"_s, "x");
    QFile::link(folder.Native(u"other"_s), folder.Native(u"out\\link"_s));
    WriteSite(folder, {u"index.html"_s}, "x");
    EXPECT_TRUE(folder.Exists(u"victim.txt"_s));
    EXPECT_TRUE(folder.Exists(u"other\\victim.txt"_s));
    EXPECT_THROW(WriteSite(folder, {u"link/new.htm"_s}, "x"), Torvane::CRunException);
    EXPECT_FALSE(folder.Exists(u"other\\new.htm"_s));
}

// A compile that is killed leaves whole files alone, and the next one knows them for its own.
TEST(OutputFolder, RecoversFromAKilledCompile) {
    CTempFolder folder;
    folder.MakeFolder(u"course\\Data"_s);
    {
        COutputFolder output(folder.Native(u"out"_s), folder.Native(u"course"_s),
                             folder.Native(u"course\\Data"_s));
        output.Announce({u"a.htm"_s, u"b.htm"_s});
        output.Write(u"a.htm"_s, "half of a site");
    }
    folder.Write(u"out\\.vorel-tmp\\17"_s, "half of a page");
    WriteSite(folder, {u"b.htm"_s}, "whole");
    EXPECT_FALSE(folder.Exists(u"out\\a.htm"_s));
    EXPECT_FALSE(folder.Exists(u"out\\.vorel-tmp"_s));
    EXPECT_EQ(QDir(folder.Native(u"out"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{u"b.htm"_s, u"vorel-site.json"_s}));
}

TEST(OutputFolder, AllowsOneCompilerAtATime) {
    CTempFolder folder;
    folder.MakeFolder(u"course\\Data"_s);
    COutputFolder first(folder.Native(u"out"_s), folder.Native(u"course"_s),
                        folder.Native(u"course\\Data"_s));
    EXPECT_THROW(WriteSite(folder, {u"a.htm"_s}, "x"), Torvane::CRunException);
}
