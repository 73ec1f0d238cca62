#include "course/TemplateStore.h"
#include "tests/support/CourseFakes.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class TemplateStoreTest : public testing::Test {
protected:
    CTempFolder Folder;
    CTemplateStore Store{Folder.Path() + u'\\'};
};

TEST_F(TemplateStoreTest, ListsFoldersAndPages) {
    Folder.MakeFolder(u"春\\eht\\htm\\folder.htm"_s);
    Folder.MakeFolder(u"秋.2"_s);
    Folder.Write(u"file.txt"_s, "x");
    Folder.Write(u"春\\eht\\htm\\通用页面.htm"_s, "x");
    Folder.Write(u"春\\eht\\htm\\课程.介绍.HTM"_s, "x");
    Folder.Write(u"春\\eht\\htm\\other.html"_s, "x");
    QStringList templates;
    QStringList pages;
    Store.ListTemplates(templates);
    Store.ListPages(u"春"_s, pages);
    EXPECT_THAT(templates, testing::UnorderedElementsAre(u"春"_s, u"秋.2"_s));
    EXPECT_THAT(pages, testing::UnorderedElementsAre(u"通用页面"_s, u"课程.介绍"_s));
    Store.ListPages(u"秋.2"_s, pages);
    Store.ListPages(u"..\\春"_s, pages);
    EXPECT_EQ(pages.size(), 2);
}

TEST_F(TemplateStoreTest, PathsStayInTheirFolder) {
    EXPECT_EQ(Store.GetPagePath(u"春"_s, u"课程"_s), Folder.Path(u"春\\eht\\htm\\课程.htm"_s));
    for (const QString& strBad : {u""_s, u"."_s, u".."_s, u"..\\x"_s, u"a/b"_s, u"/etc"_s}) {
        EXPECT_EQ(Store.GetTemplateFolder(strBad), QString()) << strBad.toStdString();
        EXPECT_EQ(Store.GetPagePath(u"春"_s, strBad), QString()) << strBad.toStdString();
        EXPECT_EQ(Store.GetPagePreviewPath(u"春"_s, strBad), QString()) << strBad.toStdString();
    }
}

TEST_F(TemplateStoreTest, BackgroundColour) {
    const struct {
        const char* pszText;
        quint32 nColor;
    } cases[] = {
        {"#ff8000", 0x0080FF},   {"#FF8000\r\n", 0x0080FF},     {"#GG1230", 0x301200}, {"#1G0000", 0x000010},
        {"ff8000", 0xFFFFFF},    {"#ff80001", 0xFFFFFF},        {"1ff8000", 0xFFFFFF}, {"", 0xFFFFFF},
        {"#ff8000\n", 0x0080FF}, {"#ff8000\r\n\r\n", 0xFFFFFF},
    };
    for (const auto& one : cases) {
        Folder.Write(u"春\\背景色.txt"_s, one.pszText);
        EXPECT_EQ(Store.GetBackColor(u"春"_s), one.nColor) << one.pszText;
    }
    EXPECT_EQ(Store.GetBackColor(u"none"_s), 0xFFFFFFU);
}

TEST_F(TemplateStoreTest, SameNodesButForOneFinalLineEnd) {
    const QByteArray list(3000, 'x');
    const struct {
        QByteArray a;
        QByteArray b;
        bool bSame;
    } cases[] = {
        {list, list, true},
        {list, list + "\r\n", true},
        {list + "\r\n", list + "\r\n", true},
        {list, list + " ", false},
        {list, list + "\n", false},
        {list, list + "\r\n\r\n", false},
        {list, list + "\r\n ", false},
        {list + QByteArray("\0b", 2), list + QByteArray("\0c", 2), false},
    };
    for (const auto& one : cases) {
        Folder.Write(u"a\\InitialNodes.txt"_s, one.a);
        Folder.Write(u"b\\InitialNodes.txt"_s, one.b);
        EXPECT_EQ(Store.HasSameNodes(u"a"_s, u"b"_s), one.bSame) << one.b.size();
    }
    EXPECT_TRUE(Store.HasSameNodes(u"none"_s, u"neither"_s));
    EXPECT_FALSE(Store.HasSameNodes(u"none"_s, u"a"_s));
}

} // namespace
