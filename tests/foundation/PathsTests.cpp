#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "tests/support/TempFolder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace Torvane::File;

namespace {

TEST(Paths, QueriesSeeWhatIsThere) {
    const CTempFolder folder;
    folder.Write(u"课\\A.txt"_s, "x");
    folder.Write(u"full\\.hidden"_s, "x");
    folder.MakeFolder(u"empty"_s);
    ASSERT_TRUE(QFile::link(u"nowhere"_s, folder.Native(u"dangling"_s)));
    ASSERT_TRUE(QFile::link(u"课"_s, folder.Native(u"link"_s)));
    // A path of 260 bytes, and longer ones: what is beyond is not looked at.
    QString strLong = folder.Path();
    while (CodePage::ByteLength(strLong) < 250)
        strLong += u"\\课程课程"_s;
    strLong += QString(260 - CodePage::ByteLength(strLong), u'x');
    QDir().mkpath(Platform::ToNativeExact(strLong));
    const struct {
        QString strPath;
        EPathKind eKind;
        bool bEmpty = true;
    } cases[] = {{folder.Path(u"课\\"_s), EPathKind::Folder, false},
                 {folder.Path(u"课\\\\"_s), EPathKind::Nothing, false},
                 {folder.Path(u"课\\a.TXT"_s), EPathKind::File},
                 {folder.Path(u"课\\A.txt\\"_s), EPathKind::File},
                 {folder.Path(u"课\\A.txt\\x"_s), EPathKind::Nothing},
                 {folder.Path(u"dangling"_s), EPathKind::Nothing},
                 {folder.Path(u"link"_s), EPathKind::Folder, false},
                 {folder.Path(u"empty"_s), EPathKind::Folder},
                 {folder.Path(u"full\\"_s), EPathKind::Folder, false},
                 {strLong + u"beyond"_s, EPathKind::Folder},
                 {strLong.chopped(1) + u"课"_s, EPathKind::Nothing},
                 {u"Z:"_s, EPathKind::Folder, false},
                 {u"Z:\\"_s, EPathKind::Folder, false},
                 {u"C:\\"_s, EPathKind::Nothing},
                 {u""_s, EPathKind::Nothing},
                 {u"\\"_s, EPathKind::Nothing, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(GetPathKind(c.strPath), c.eKind) << c.strPath.toStdString();
        EXPECT_EQ(IsFolderEmpty(c.strPath), c.bEmpty) << c.strPath.toStdString();
    }
    EXPECT_TRUE(IsLocalAddress(folder.Path(u"课\\A.txt"_s)) && IsLocalAddress(u"x FILE://y"_s));
    EXPECT_FALSE(IsFile(u"Z:\\dev\\zero"_s)) << "reading it never ends";
    EXPECT_FALSE(IsLocalAddress(folder.Path()) || IsLocalAddress(u"http://x"_s));
}

TEST(Paths, WhatLiesBelowAFolder) {
    const struct {
        QString strBase, strPath;
        bool bUnder;
        QString strTail;
    } cases[] = {{u"Z:\\Course"_s, u"z:\\course\\n1\\a"_s, true, u"n1\\a"_s},
                 {u"Z:\\Course\\"_s, u"z:\\course\\n1\\a"_s, true, u"n1\\a"_s},
                 {u"Z:\\Course"_s, u"Z:\\Course2\\a"_s, false, u""_s},
                 {u"Z:\\Course"_s, u"Z:\\Course"_s, false, u""_s},
                 {u"Z:\\É"_s, u"Z:\\é\\a"_s, false, u""_s},
                 {u"Z:"_s, u"Z:\\"_s + QString(200, u'课'), true, QString(130, u'课')}};
    for (const auto& c : cases) {
        EXPECT_EQ(IsPathUnder(c.strBase, c.strPath, u'\\'), c.bUnder) << c.strPath.toStdString();
        EXPECT_EQ(RelativeTail(c.strBase, c.strPath, u'\\'), c.strTail);
    }
}

TEST(Paths, AUniqueNameKeepsStemAndExtension) {
    const CTempFolder folder;
    // Cut at 260 bytes a longer path is always taken, and the search for a free one would never end.
    const qsizetype nRoom = c_nMaxPathBytes - CodePage::ByteLength(folder.Path(QString()));
    const QString strFull = QString(20, u'课') + QString(nRoom - 44, u'x') + u".txt"_s;
    const QString strLong(300, u'x');
    for (const QString& str : {u"a.b.txt"_s, u"N"_s, strFull})
        folder.Write(str, "x");
    const std::pair<QString, QString> cases[] = {
        {u"C:\\some\\where\\new.txt"_s, u"new\\.txt"_s},
        {u"C:\\some.x\\new"_s, u"new"_s},
        {u"A.B.TXT"_s, u"A\\.B\\[\\d{1,5}\\]\\.TXT"_s},
        {u"N"_s, u"N\\[\\d{1,5}\\]"_s},
        {u".txt"_s, u"20\\d\\d[01]\\d[0-3]\\d[0-2]\\d[0-5]\\d\\.txt"_s},
        {strFull, u"课{20}x+\\[\\d{1,5}\\]\\.txt"_s},
        {strLong, strLong}};
    for (const auto& [strName, strPattern] : cases) {
        const QString strUnique = MakeUniqueName(strName, folder.Path());
        const QRegularExpression pattern(QRegularExpression::anchoredPattern(strPattern));
        EXPECT_TRUE(pattern.match(strUnique).hasMatch()) << strUnique.toStdString();
        EXPECT_TRUE(strName == strLong || CodePage::ByteLength(folder.Path(strUnique)) <= c_nMaxPathBytes);
    }
}

TEST(Paths, AFoundPathIsLaidOverTheTarget) {
    const struct {
        QString strSource, strTarget, strFound, strResult;
    } cases[] = {{u"Z:\\a\\"_s, u"Z:\\t\\"_s, u"z:\\A\\x\\y"_s, u"Z:\\t\\x\\y"_s},
                 {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\ab\\x"_s, u"Z:\\t\\"_s},
                 {u"Z:\\a"_s, u"Z:\\t\\base"_s, u"Z:\\a\\x"_s, u"Z:\\t\\x"_s},
                 {u"Z:\\a"_s, u"base"_s, u"Z:\\a\\x"_s, u"\\x"_s},
                 {u"Z:\\a"_s, u"Z:\\t\\u\\"_s, u"Z:\\a\\..\\.\\x"_s, u"Z:\\t\\x"_s},
                 {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\.x/y"_s, u"Z:\\t\\x\\y"_s},
                 {u"Z:\\a"_s, u"Z:\\t\\"_s, u"Z:\\a\\HTTP://x/y"_s, u"HTTP://x/y"_s}};
    for (const auto& c : cases)
        EXPECT_EQ(ResolveAgainstBase(c.strSource, c.strTarget, c.strFound), c.strResult);
}

TEST(Paths, AddressesAndPathsKeepTheirOrderOfEscapes) {
    const std::pair<QString, QString> toPath[] = {
        {u"file:///Z:/Home/A%20b%23.htm"_s, u"z:\\home\\a b#.htm"_s},
        {u"FILE://C:\\X"_s, u"c:\\x"_s},
        {u"file://server/Share/x"_s, u"\\\\server\\share\\x"_s},
        {u"http://Host/A%20"_s, u"http://host/a%20"_s},
        {u"file:///z:/É%5E%26%5B%5d%7B%7d"_s, u"z:\\É^&[]{}"_s},
        // "%25" is taken after "%20" and before the rest.
        {u"file:///z:/a%2520b%255B"_s, u"z:\\a%20b["_s}};
    for (const auto& [strAddress, strPath] : toPath)
        EXPECT_EQ(AddressToPath(strAddress), strPath);
    const std::pair<QString, QString> toAddress[] = {
        {u"Z:\\A b#"_s, u"file:///Z:/A%2520b%2523"_s},
        {u"Z:\\%^&[]{}课"_s, u"file:///Z:/%25%5E%26%5B%5D%7B%7D课"_s},
        {u"http://x/a b"_s, u"http://x/a b"_s}};
    for (const auto& [strPath, strAddress] : toAddress)
        EXPECT_EQ(PathToAddress(strPath), strAddress);
}

} // namespace
