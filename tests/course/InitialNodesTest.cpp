#include "course/InitialNodes.h"
#include "tests/support/CourseFakes.h"

namespace {

/// Writes down what is made: "parent>id title" for a node, "id=page" for a page.
class CNotingMaker : public IInitialNodeMaker {
public:
    QStringList Notes;
    QString FailAt;
    qint32 AddChild(qint32 nParentId, const QString& strTitle) override {
        Notes.append(u"%1>%2 %3"_s.arg(nParentId).arg(++m_nId).arg(strTitle));
        return m_nId;
    }
    bool InitFromTemplatePage(qint32 nId, const QString&, const QString& strPage) override {
        Notes.append(u"%1=%2"_s.arg(nId).arg(strPage));
        return strPage != FailAt;
    }

private:
    qint32 m_nId = 3;
};

TEST(InitialNodesTest, ReadsLinesOfFiveFields) {
    const CTempFolder folder;
    const std::pair<QString, QString> cases[] = {{u"甲,1,2,,1\r\n乙,-1,-1,页,0\r\n"_s, u"甲121乙-1-1页0 1"_s},
                                                 {u"甲,1,2,,1\n乙,-1,-1,页,7"_s, u"甲121乙-1-1页0 1"_s},
                                                 {u"甲,1,2,,1\n乙,-1,-1,页,1,\n丙,1,1,,1\n"_s, u"甲121 0"_s},
                                                 {u"甲,1,2,1\n"_s, u" 0"_s},
                                                 {u"甲,1,2,,1\r\n\r\n"_s, u"甲121 0"_s},
                                                 {u""_s, u" 1"_s}};
    for (const auto& [strText, strExpected] : cases) {
        folder.Write(u"n.txt"_s, CodePage::Encode(strText));
        QList<InitialNode> list;
        const bool bRead = ReadInitialNodes(folder.Path(u"n.txt"_s), list);
        QString strRead;
        for (const InitialNode& node : list)
            strRead += u"%1%2%3%4%5"_s.arg(node.Title)
                           .arg(node.FirstChild)
                           .arg(node.NextSibling)
                           .arg(node.PageName)
                           .arg(node.Selected);
        EXPECT_EQ(strRead + u' ' + QString::number(bRead), strExpected);
    }
}

TEST(InitialNodesTest, TemplateWithoutAListTakesTheDeliveredOne) {
    const CCourseWorld world;
    QList<InitialNode> list;
    EXPECT_FALSE(LoadInitialNodes(u"模板一"_s, list)) << "neither is there";
    world.Write(u"程序\\SysData\\VorelInitialNodes.txt"_s, u"delivered,-1,-1,,1"_s);
    EXPECT_TRUE(LoadInitialNodes(u"模板一"_s, list) && LoadInitialNodes(u"..\\.."_s, list));
    world.Write(CCourseWorld::Template(u"InitialNodes.txt"_s), u"own,-1,-1,,1"_s);
    EXPECT_TRUE(LoadInitialNodes(u"模板一"_s, list));
    EXPECT_TRUE(list[1].Title == u"delivered"_s && list[2].Title == u"own"_s);
}

TEST(InitialNodesTest, MakesTheSelectedTree) {
    const QList<InitialNode> list{{u"a"_s, 1, 4, u""_s, true},     {u"a1"_s, -1, 2, u"页"_s, true},
                                  {u"a2"_s, 3, -1, u""_s, false},  {u"a2x"_s, -1, -1, u""_s, true},
                                  {u"b"_s, -1, 5, u""_s, false},   {u"c"_s, 6, 7, u""_s, true},
                                  {u"c1"_s, -1, -1, u""_s, false}, {u"d"_s, -1, -1, u""_s, true}};
    CNotingMaker maker;
    EXPECT_TRUE(CreateInitialNodes(u"t"_s, list, 3, maker));
    EXPECT_EQ(maker.Notes.join(u'|').toStdString(), "3>4 a|4>5 a1|5=页|3>6 c|3>7 d|7=d");
    CNotingMaker failing;
    failing.FailAt = u"页"_s;
    EXPECT_FALSE(CreateInitialNodes(u"t"_s, list, 3, failing));
    EXPECT_EQ(failing.Notes.size(), 3) << "nothing after the failure";
}

TEST(InitialNodesTest, BrokenListsEnd) {
    const auto line = [](qint32 nChild, qint32 nSibling) {
        return InitialNode{u"n"_s, nChild, nSibling, u""_s, true};
    };
    QList<InitialNode> deep, doubling;
    for (qint32 n = 1; n <= 50'000; ++n)
        deep.append(line(n, -1));
    deep.append(line(-1, -1));
    for (qint32 n = 1; n <= 60; ++n)
        doubling.append(line(n, n));
    const struct {
        const char* pszWhat;
        QList<InitialNode> list;
        bool bMade;
    } cases[] = {{"no line", {}, false},
                 {"own sibling", {line(-1, 0)}, false},
                 {"own child", {line(0, -1)}, false},
                 {"back to an ancestor", {line(1, -1), line(-1, 0)}, false},
                 {"beyond the end", {line(-1, 1)}, false},
                 {"a shared child", {line(2, 1), line(2, -1), line(-1, -1)}, true},
                 {"as deep as long", deep, true},
                 {"doubles at every line", doubling, false}};
    for (const auto& one : cases) {
        CNotingMaker maker;
        EXPECT_EQ(CreateInitialNodes(u"t"_s, one.list, 3, maker), one.bMade) << one.pszWhat;
        EXPECT_LT(maker.Notes.size(), 200'001) << one.pszWhat;
    }
}

} // namespace
