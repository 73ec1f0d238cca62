#include "content/TreeCommands.h"

#include "content/ViewKind.h"
#include "tests/support/Testing.h"

namespace {

TitleTaken In(const QStringList& titles) {
    return [titles](const QString& strTitle) { return titles.contains(strTitle); };
}

TEST(TreeRulesTest, NewTitlesTakeTheFirstFreeNumber) {
    EXPECT_EQ(NewTitle(In({})), u"新建栏目"_s);
    EXPECT_EQ(NewTitle(In({u"新建栏目"_s, u"新建栏目2"_s, u"新建栏目4"_s})), u"新建栏目3"_s);
}

TEST(TreeRulesTest, ANewTitleIsMeasuredFirstAndARenamedOneComparedFirst) {
    const QString strLong(41, u'章');
    EXPECT_EQ(CheckNewTitle(strLong.chopped(1), In({})), QString());
    EXPECT_TRUE(CheckNewTitle(strLong, In({strLong})).startsWith(u"栏目名称最多为40个字符"));
    EXPECT_EQ(CheckRename(strLong, u"旧"_s, In({strLong})).strWarning,
              u"对不起，父栏目下已有同名栏目存在！"_s);
    for (const auto& [strNew, bStore] : {std::pair(QString(), false), std::pair(u"旧"_s, false),
                                         std::pair(u" "_s, true), std::pair(strLong.chopped(1), true)}) {
        const RenameCheck check = CheckRename(strNew, u"旧"_s, In({u"他"_s}));
        EXPECT_EQ(check.bStore, bStore) << strNew;
        EXPECT_EQ(check.strWarning, QString());
    }
}

TEST(TreeRulesTest, CommandsAreOfferedByLineAndType) {
    // For each command: the lines Head, Root, empty node, page, file, link; last while the editor shows a
    // page.
    struct Case {
        int nCommand;
        const char* pszOffered;
    };
    const TreeSelection selections[]{{ETreeLine::Course, -1}, {ETreeLine::Root, -1}, {ETreeLine::Node, -1},
                                     {ETreeLine::Node, 0},    {ETreeLine::Node, 1},  {ETreeLine::Node, 3}};
    for (const Case& c :
         {Case{32772, "001111 1"}, Case{32910, "001111 1"}, Case{32773, "011111 1"}, Case{32909, "011111 1"},
          Case{32869, "001111 0"}, Case{32870, "011111 0"}, Case{32774, "001111 0"}, Case{32775, "001111 0"},
          Case{32814, "001111 0"}, Case{32913, "011111 1"}, Case{32815, "000110 0"}, Case{32914, "000110 1"},
          Case{32816, "001111 0"}, Case{32817, "001111 0"}, Case{32919, "000110 0"}, Case{32911, "001111 0"},
          Case{32918, "000111 0"}, Case{32934, "000111 1"}, Case{32882, "000000 0"}}) {
        std::string offered;
        for (const TreeSelection& selection : selections)
            offered += TreeCommand::IsEnabled(c.nCommand, selection, false) ? '1' : '0';
        offered += TreeCommand::IsEnabled(c.nCommand, selections[3], true) ? " 1" : " 0";
        EXPECT_EQ(offered, c.pszOffered) << c.nCommand;
        EXPECT_FALSE(TreeCommand::IsEnabled(c.nCommand, {}, false)) << c.nCommand;
    }
}

TEST(ViewKindTest, TheBrowserShowsAnyPartOfItsList) {
    for (const QString& strShown : {u".htm"_s, u".HTML"_s, u".m"_s, u".pn"_s, u""_s, u".asf"_s, u".r"_s})
        EXPECT_TRUE(IsBrowserFile(strShown)) << strShown;
    for (const QString& strOther : {u".doc"_s, u".pngx"_s, u".ppt"_s, u".mp4"_s})
        EXPECT_FALSE(IsBrowserFile(strOther)) << strOther;
}

} // namespace
