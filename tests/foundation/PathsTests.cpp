#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace Torvane::File;

namespace {

TEST(Paths, KindsAreThoseOfWhatIsThere) {
    CTempFolder folder;
    folder.Write(u"课\\A.txt"_s, "x");
    ASSERT_TRUE(QFile::link(u"nowhere"_s, folder.Native(u"dangling"_s)));
    ASSERT_TRUE(QFile::link(u"课"_s, folder.Native(u"link"_s)));
    const struct {
        QString strPath;
        EPathKind eKind;
    } cases[] = {
        {folder.Path(), EPathKind::Folder},
        {folder.Path(u"课\\"_s), EPathKind::Folder},
        {folder.Path(u"课\\\\"_s), EPathKind::Nothing},
        {folder.Path(u"课\\a.TXT"_s), EPathKind::File},
        {folder.Path(u"课\\A.txt\\"_s), EPathKind::File},
        {folder.Path(u"课\\A.txt\\x"_s), EPathKind::Nothing},
        {folder.Path(u"dangling"_s), EPathKind::Nothing},
        {folder.Path(u"link"_s), EPathKind::Folder},
        {u"Z:"_s, EPathKind::Folder},
        {u"Z:\\"_s, EPathKind::Folder},
        {u"C:\\"_s, EPathKind::Nothing},
        {u""_s, EPathKind::Nothing},
        {u"\\"_s, EPathKind::Nothing},
    };
    for (const auto& c : cases)
        EXPECT_EQ(GetPathKind(c.strPath), c.eKind) << c.strPath.toStdString();
    EXPECT_TRUE(IsFile(folder.Path(u"课\\A.txt"_s)) && !IsFolder(folder.Path(u"课\\A.txt"_s)));
    EXPECT_TRUE(IsFolder(folder.Path()) && !IsFile(folder.Path()));
}

TEST(Paths, QueriesLookAtTheFirst260Bytes) {
    CTempFolder folder;
    QString strPath = folder.Path();
    while (CodePage::ByteLength(strPath) < 250)
        strPath += u"\\课程课程"_s;
    strPath += QString(260 - CodePage::ByteLength(strPath), u'x');
    QDir().mkpath(Platform::ToNativeExact(strPath));
    EXPECT_EQ(GetPathKind(strPath), EPathKind::Folder);
    EXPECT_EQ(GetPathKind(strPath + u"beyond"_s), EPathKind::Folder);
    EXPECT_EQ(GetPathKind(strPath.chopped(1) + u"课"_s), EPathKind::Nothing);
}

TEST(Paths, AFolderIsEmptyWithoutEntriesOrWhenItCanNotBeListed) {
    CTempFolder folder;
    folder.MakeFolder(u"empty"_s);
    folder.Write(u"full\\.hidden"_s, "x");
    EXPECT_TRUE(IsFolderEmpty(folder.Path(u"empty"_s)));
    EXPECT_TRUE(IsFolderEmpty(folder.Path(u"none"_s)));
    EXPECT_FALSE(IsFolderEmpty(folder.Path(u"full\\"_s)));
}

TEST(Paths, LastCharacters) {
    const QString str = u"a.b.c"_s;
    EXPECT_EQ(FindLastChar(str, u'.'), 3);
    EXPECT_EQ(FindLastChar(str, u'.', 3), 3);
    EXPECT_EQ(FindLastChar(str, u'.', 2), 1);
    EXPECT_EQ(FindLastChar(str, u'.', 99), 3);
    EXPECT_EQ(FindLastChar(str, u'.', 0), -1);
    EXPECT_EQ(FindLastChar(str, QChar()), -1);
    EXPECT_EQ(FindLastChar(QString(), u'.'), -1);
    QString strTrailing = u"x\\\\"_s;
    EXPECT_EQ(TrimTrailingChar(strTrailing, u'\\'), 1);
    EXPECT_EQ(strTrailing, u"x\\"_s);
    EXPECT_EQ(TrimTrailingChar(strTrailing, u'x'), 0);
}

TEST(Paths, Parts) {
    const struct {
        QString strPath, strName, strFolder, strExtension, strTitle;
    } cases[] = {
        {u"Z:\\a.b\\c.d.e"_s, u"c.d.e"_s, u"Z:\\a.b"_s, u".e"_s, u"c.d"_s},
        {u"Z:\\a.b\\c"_s, u"c"_s, u"Z:\\a.b"_s, u""_s, u"c"_s},
        {u".txt"_s, u".txt"_s, u""_s, u".txt"_s, u""_s},
        {u"Z:\\a\\"_s, u""_s, u"Z:\\a"_s, u""_s, u""_s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(BareName(c.strPath), c.strName);
        EXPECT_EQ(ParentFolder(c.strPath), c.strFolder);
        EXPECT_EQ(Extension(c.strPath), c.strExtension);
        EXPECT_EQ(FileTitle(c.strPath), c.strTitle);
    }
    EXPECT_EQ(FolderForm(u"Z:\\a"_s, true), u"Z:\\a\\"_s);
    EXPECT_EQ(FolderForm(u"Z:\\a\\"_s, false), u"Z:\\a"_s);
}

TEST(Paths, WhatLiesBelowAFolder) {
    const struct {
        QString strBase, strPath;
        bool bUnder;
        QString strTail;
    } cases[] = {
        {u"Z:\\Course"_s, u"z:\\course\\n1\\a"_s, true, u"n1\\a"_s},
        {u"Z:\\Course\\"_s, u"z:\\course\\n1\\a"_s, true, u"n1\\a"_s},
        {u"Z:\\Course"_s, u"Z:\\Course2\\a"_s, false, u""_s},
        {u"Z:\\Course"_s, u"Z:\\Course"_s, false, u""_s},
        {u"Z:\\Course\\"_s, u"Z:\\Course"_s, false, u""_s},
        {u"Z:\\É"_s, u"Z:\\é\\a"_s, false, u""_s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsPathUnder(c.strBase, c.strPath, u'\\'), c.bUnder) << c.strPath.toStdString();
        EXPECT_EQ(RelativeTail(c.strBase, c.strPath, u'\\'), c.strTail);
    }
    EXPECT_EQ(RelativeTail(u"Z:"_s, u"Z:\\"_s + QString(200, u'课'), u'\\'), QString(130, u'课'));
}

TEST(Paths, AUniqueNameKeepsStemAndExtension) {
    CTempFolder folder;
    folder.Write(u"a.b.txt"_s, "x");
    folder.Write(u"N"_s, "x");
    EXPECT_EQ(MakeUniqueName(u"new.txt"_s, folder.Path()), u"new.txt"_s);
    EXPECT_EQ(MakeUniqueName(u"C:\\some\\where\\new.txt"_s, folder.Path()), u"new.txt"_s);
    const auto matches = [](const QString& str, const QString& strPattern) {
        return QRegularExpression(QRegularExpression::anchoredPattern(strPattern)).match(str).hasMatch();
    };
    EXPECT_TRUE(matches(MakeUniqueName(u"A.B.TXT"_s, folder.Path()), u"A\\.B\\[\\d{1,5}\\]\\.TXT"_s));
    EXPECT_TRUE(matches(MakeUniqueName(u"N"_s, folder.Path() + u'\\'), u"N\\[\\d{1,5}\\]"_s));
    EXPECT_TRUE(matches(MakeUniqueName(u".txt"_s, folder.Path()),
                        u"20\\d\\d[01]\\d[0-3]\\d[0-2]\\d[0-5]\\d\\.txt"_s));
}

// Cut at 260 bytes such a path is always taken, and the search for a free one would never end.
TEST(Paths, AUniqueNameThatHasNoRoomStillEnds) {
    CTempFolder folder;
    const qsizetype nRoom = c_nMaxPathBytes - CodePage::ByteLength(folder.Path(QString()));
    const QString strFull = QString(20, u'课') + QString(nRoom - 44, u'x') + u".txt"_s;
    folder.Write(strFull, "x");
    const QString strUnique = MakeUniqueName(strFull, folder.Path());
    EXPECT_LE(CodePage::ByteLength(folder.Path(strUnique)), c_nMaxPathBytes);
    EXPECT_TRUE(strUnique.startsWith(u"课课课"_s) && strUnique.endsWith(u"].txt"_s));
    const QString strLong = QString(300, u'x');
    EXPECT_EQ(MakeUniqueName(strLong, folder.Path()), strLong);
}

TEST(Paths, AFoundPathIsLaidOverTheTarget) {
    const struct {
        QString strSource, strTarget, strFound, strResult;
    } cases[] = {
        {u"Z:\\a\\"_s, u"Z:\\t\\"_s, u"z:\\A\\x\\y"_s, u"Z:\\t\\x\\y"_s},
        {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\x"_s, u"Z:\\t\\x"_s},
        {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\ab\\x"_s, u"Z:\\t\\"_s},
        {u"Z:\\a"_s, u"Z:\\t\\base"_s, u"Z:\\a\\x"_s, u"Z:\\t\\x"_s},
        {u"Z:\\a"_s, u"base"_s, u"Z:\\a\\x"_s, u"\\x"_s},
        {u"Z:\\a"_s, u"Z:\\t\\u\\"_s, u"Z:\\a\\..\\.\\x"_s, u"Z:\\t\\x"_s},
        {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\.x/y"_s, u"Z:\\t\\x\\y"_s},
        {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\HTTP://x/y"_s, u"HTTP://x/y"_s},
        {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\mailto:x"_s, u"mailto:x"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ResolveAgainstBase(c.strSource, c.strTarget, c.strFound), c.strResult);
}

TEST(Paths, AddressesBecomePaths) {
    const struct {
        QString strAddress, strPath;
    } cases[] = {
        {u"file:///Z:/Home/A%20b%23.htm"_s, u"z:\\home\\a b#.htm"_s},
        {u"FILE://C:\\X"_s, u"c:\\x"_s},
        {u"file://server/Share/x"_s, u"\\\\server\\share\\x"_s},
        {u"http://Host/A%20"_s, u"http://host/a%20"_s},
        {u"file:///z:/%5E%26%5B%5d%7B%7d"_s, u"z:\\^&[]{}"_s},
        // "%25" is taken after "%20" and before the rest, so pairs of escapes decode as far as their order.
        {u"file:///z:/a%2520b"_s, u"z:\\a%20b"_s},
        {u"file:///z:/%255B"_s, u"z:\\["_s},
        {u"file:///z:/É"_s, u"z:\\É"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(AddressToPath(c.strAddress), c.strPath);
}

TEST(Paths, PathsBecomeAddresses) {
    const struct {
        QString strPath, strAddress;
    } cases[] = {
        {u"Z:\\A b#"_s, u"file:///Z:/A%2520b%2523"_s},
        {u"Z:\\%^&[]{}课"_s, u"file:///Z:/%25%5E%26%5B%5D%7B%7D课"_s},
        {u"http://x/a b"_s, u"http://x/a b"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PathToAddress(c.strPath), c.strAddress);
}

TEST(Paths, LocalAddresses) {
    CTempFolder folder;
    folder.Write(u"a.htm"_s, "x");
    EXPECT_TRUE(IsLocalAddress(folder.Path(u"a.htm"_s)));
    EXPECT_TRUE(IsLocalAddress(u"x FILE://y"_s));
    EXPECT_FALSE(IsLocalAddress(folder.Path()));
    EXPECT_FALSE(IsLocalAddress(u"http://x"_s));
}

} // namespace
