#include "course/TemplateStore.h"
#include "tests/support/Testing.h"

namespace {

class TemplateStoreTest : public testing::Test {
protected:
    CTempFolder Folder;
    CTemplateStore Store{Folder.Path() + u'\\'};
};

TEST_F(TemplateStoreTest, ListsFoldersAndPagesAndStaysInThem) {
    Folder.MakeFolder(u"春\\eht\\htm\\folder.htm"_s);
    Folder.MakeFolder(u"秋.2"_s);
    for (const QString& str : {u"file.txt"_s, u"春\\eht\\htm\\a.htm"_s, u"春\\eht\\htm\\课程.介绍.HTM"_s,
                               u"春\\eht\\htm\\other.html"_s})
        Folder.Write(str, "x");
    QStringList list;
    Store.ListTemplates(list);
    for (const QString& strTemplate : {u"春"_s, u"秋.2"_s, u"..\\春"_s})
        Store.ListPages(strTemplate, list);
    EXPECT_EQ(list.join(u'|'), u"春|秋.2|a|课程.介绍"_s);
    EXPECT_EQ(Store.GetPagePath(u"春"_s, u"课程"_s), Folder.Path(u"春\\eht\\htm\\课程.htm"_s));
    for (const QString& strBad : {u""_s, u"."_s, u".."_s, u"..\\x"_s, u"a/b"_s, u"/etc"_s})
        EXPECT_EQ(Store.GetTemplateFolder(strBad) + Store.GetPagePath(u"春"_s, strBad) +
                      Store.GetPagePreviewPath(u"春"_s, strBad),
                  QString());
}

TEST_F(TemplateStoreTest, BackgroundColour) {
    const std::pair<const char*, quint32> cases[] = {
        {"#ff8000", 0x0080FF},   {"#FF8000\r\n", 0x0080FF},    {"#GG1230", 0x301200}, {"#1G0000", 0x000010},
        {"ff8000", 0xFFFFFF},    {"#ff80001", 0xFFFFFF},       {"1ff8000", 0xFFFFFF}, {"", 0xFFFFFF},
        {"#ff8000\n", 0x0080FF}, {"#ff8000\r\n\r\n", 0xFFFFFF}};
    EXPECT_EQ(Store.GetBackColor(u"春"_s), 0xFFFFFFU);
    for (const auto& [pszText, nColor] : cases) {
        Folder.Write(u"春\\背景色.txt"_s, pszText);
        EXPECT_EQ(Store.GetBackColor(u"春"_s), nColor) << pszText;
    }
}

TEST_F(TemplateStoreTest, SameNodesButForOneFinalLineEnd) {
    const QByteArray list(3000, 'x');
    const std::pair<QByteArray, bool> cases[] = {{"", true},    {"\r\n", true},      {" ", false},
                                                 {"\n", false}, {"\r\n\r\n", false}, {"\r\n ", false}};
    for (const auto& [tail, bSame] : cases) {
        Folder.Write(u"a\\InitialNodes.txt"_s, list);
        Folder.Write(u"b\\InitialNodes.txt"_s, list + tail);
        EXPECT_EQ(Store.HasSameNodes(u"a"_s, u"b"_s), bSame) << tail.size();
    }
    EXPECT_TRUE(Store.HasSameNodes(u"none"_s, u"neither"_s));
    EXPECT_FALSE(Store.HasSameNodes(u"none"_s, u"a"_s));
}

} // namespace
