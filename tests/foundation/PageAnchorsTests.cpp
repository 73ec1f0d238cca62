#include "foundation/PageAnchors.h"
#include "tests/support/Testing.h"

TEST(PageAnchors, AreFoundWithTheTextThatFollowsThem) {
    const QString strLong = u"长"_s.repeated(59) + u"😀尾"_s;
    const QString strPage =
        u"<title id=t>题</title><H2 ID=one>第 一\n 章</H2><p>前<a name='二 A'></a>段 <b id=three>粗</b>体</p>"
        "<a name=five></a><div>\n<ul id=list><li>项</ul></div><a id=innerlink href=x>x</a>"
        "<input name=field id=field><a name=one>又</a><script id=s>no</script><a name=&lt;x&gt; "
        "id=y>z<br>w</a>"
        "<p id=long>"_s +
        strLong + u"<p id=last>"_s;
    QStringList found, hidden;
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(strPage))
        (anchor.bOffered ? found : hidden).append(anchor.strName + u"="_s + anchor.strText);
    EXPECT_EQ(found.join(u'\n'),
              QStringList({u"one=第 一 章"_s, u"二 A=段 粗体"_s, u"three=粗体"_s, u"five=项"_s, u"list=项"_s,
                           u"y=z"_s, u"<x>=z"_s, u"long="_s + strLong.left(59) + u"…"_s, u"last="_s})
                  .join(u'\n'));
    EXPECT_EQ(hidden.join(u','), u"t=第 一 章,innerlink=x又z,field=又z,s=z"_s);
    EXPECT_TRUE(PageAnchors::Find(u"<div id=a>"_s.repeated(100000)).isEmpty()) << "too deep";
}

TEST(PageAnchors, AFragmentMeansAnAnchorInAnySpelling) {
    const PageAnchors::CNames names({u"ChapterOne"_s, u"chapterone"_s, u"第二节 A"_s, u"50%25"_s});
    const std::pair<QString, QString> cases[] = {
        {u"ChapterOne"_s, u"ChapterOne"_s},
        {u"chapterone"_s, u"chapterone"_s},
        {u"CHAPTERONE"_s, u"ChapterOne"_s},
        {u"第二节 a"_s, u"第二节 A"_s},
        {u"%E7%AC%AC%E4%BA%8C%E8%8A%82%20a"_s, u"第二节 A"_s},
        {u"%B5%DA%B6%FE%BD%DA%20A"_s, u"第二节 A"_s}, // the code page's bytes
        {u"50%25"_s, u"50%25"_s},
        {u"50%2525"_s, u"50%25"_s},
        {u"gone"_s, QString()},
        {QString(), QString()},
    };
    for (const auto& [strFragment, strMeant] : cases)
        EXPECT_EQ(names.Meant(strFragment), strMeant) << strFragment;
}
