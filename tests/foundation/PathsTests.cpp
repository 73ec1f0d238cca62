#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "tests/support/Testing.h"

using namespace Torvane::File;

namespace {

TEST(Paths, QueriesSeeWhatIsThere) {
    const CTempFolder folder;
    folder.Write(u"课\\A.txt"_s, "x");
    folder.Write(u"full\\.hidden"_s, "x");
    folder.MakeFolder(u"empty"_s);
    folder.Link(u"nowhere"_s, u"dangling"_s);
    folder.Link(u"课"_s, u"link"_s);
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
        EXPECT_EQ(GetPathKind(c.strPath), c.eKind) << c.strPath;
        EXPECT_EQ(IsFolderEmpty(c.strPath), c.bEmpty) << c.strPath;
    }
    EXPECT_FALSE(IsFile(u"Z:\\dev\\zero"_s)) << "reading it never ends";
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
        EXPECT_EQ(IsPathUnder(c.strBase, c.strPath, u'\\'), c.bUnder) << c.strPath;
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
        EXPECT_TRUE(pattern.match(strUnique).hasMatch()) << strUnique;
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

} // namespace
