#include "companions/compiler/References.h"

#include "foundation/CodePage.h"
#include "tests/support/Testing.h"

TEST(References, FindWhatAPageMeans) {
    CTempFolder folder;
    for (const QString& strName : {u"N7\\Content.htm"_s, u"N7\\res\\图 片#1.GIF"_s, u"N13\\Content.htm"_s,
                                   u"N13\\a%20b.htm"_s, u"N13\\Site\\x.htm"_s})
        folder.Write(strName, "<a name=a>");
    folder.Write(u"N13\\C#?.htm"_s, "<h1 id=ChapterOne>one</h1>");
    folder.Write(u"N13\\锚.htm"_s,
                 CodePage::Encode(u"<a name=\"第二节 A\">二</a><p id=b>B<script></script>"));
    for (const QString& strName : {u"pres.xml"_s, u"frame.htm"_s, u"Slide0001.htm"_s})
        folder.Write(u"N13\\p.files\\"_s + strName, "<p>");
    const CSourceTree tree(folder.Native());
    CReferences references(tree, folder.Path());
    references.MapFolder(u"N13"_s, u"N13/index.html"_s);
    const QString strRoot = folder.Path().toLower();
    using enum CReferences::EFound;
    const struct {
        QString strReference;
        CReferences::EFound found;
        QString strText = {};
    } rows[] = {
        {u"../N13/Content.htm"_s, Unchanged},
        {u"../n13/content.htm#a"_s, Rewritten, u"../N13/Content.htm#a"_s},
        {u"..\\n13\\Content.htm?q#a"_s, Rewritten, u"../N13/Content.htm?q#a"_s},
        {u"../n13/"_s, Rewritten, u"../N13/index.html"_s},
        {u"RES/%E5%9B%BE%20%E7%89%87%231.gif"_s, Rewritten, u"res/图%20片%231.GIF"_s},
        {u"res/%CD%BC%20%C6%AC%231.GIF"_s, Rewritten, u"res/图%20片%231.GIF"_s}, // escaped code page bytes
        {u"res/%E5%9B%BE%20%E7%89%87%231.GIF"_s, Unchanged},
        {u"../N13/a%20b.htm"_s, Rewritten, u"../N13/a%2520b.htm"_s}, // the name itself holds "%20"
        {u"file:///"_s + strRoot + u"\\n13\\content.htm#a"_s, Rewritten, u"../N13/Content.htm#a"_s},
        {u"file://"_s + strRoot + u"\\n13\\content.htm"_s, Rewritten, u"../N13/Content.htm"_s},
        {strRoot + u"\\n13\\site\\X.htm"_s, Rewritten, u"../N13/Site/x.htm"_s},
        {u"../n13/gone.htm#a"_s, Missing, u"../n13/gone.htm"_s},
        {u"file:///c:/other/pic.gif"_s, Missing, u"file:///c:/other/pic.gif"_s},
        {u"../../../../etc/passwd"_s, Missing, u"../../../../etc/passwd"_s},
        // Places are spelled as the page spells them, and a name may hold what ends a path.
        {u"../n13/c#?.htm#chapterone"_s, Rewritten, u"../N13/C%23%3F.htm#ChapterOne"_s},
        {u"../N13/C%23%3F.htm#chapterone"_s, Rewritten, u"../N13/C%23%3F.htm#ChapterOne"_s},
        {u"../N13/C%23%3F.htm#ChapterOne"_s, Unchanged},
        {u"../N13/C%23%3F.htm#gone"_s, Unchanged, u"../N13/C%23%3F.htm#gone"_s},
        {u"../N13/C%23%3F.htm#top"_s, Unchanged},
        {u"../n13/锚.htm#第二节 a"_s, Rewritten, u"../N13/锚.htm#第二节%20A"_s},
        {u"../N13/锚.htm#%B5%DA%B6%FE%BD%DA%20A"_s, Rewritten, u"../N13/锚.htm#第二节%20A"_s},
        {u"../N13/锚.htm#%E7%AC%AC%E4%BA%8C%E8%8A%82%20A"_s, Unchanged},
        {u"../N13/锚.htm#made-by-its-script"_s, Unchanged},
        {u"../n13/p.files/frame.htm#slide0001.htm"_s, Rewritten, u"../N13/p.files/frame.htm#Slide0001.htm"_s},
        {u"#a"_s, Unchanged},
        {QString(), Unchanged},
        {u"http://example.com/N13/content.htm"_s, Unchanged},
        {u"//example.com/x"_s, Unchanged},
        {u"javascript:void(0)"_s, Unchanged},
        {u"mailto:a@b.c"_s, Unchanged},
    };
    for (const auto& row : rows) {
        const CReferences::Result result = references.Rewrite(row.strReference, {u"N7"_s, u"N7"_s});
        EXPECT_EQ(result.Found, row.found) << row.strReference;
        EXPECT_EQ(QString(result.Text + result.Dead), row.strText) << row.strReference;
    }
    EXPECT_EQ(references.Rewrite(u"res/x/../../../n13/site/x.htm"_s, {u"N7"_s, u"N9/sub"_s}).Text,
              u"../../N13/Site/x.htm"_s)
        << "a page that moved takes its references along";

    // A base may lead to the folder of all nodes, through one that is gone, or to the author's disk; not out
    // of the course.
    for (const auto& [strBase, strReference] :
         {std::pair{u"../"_s, u"n13/content.htm"_s}, std::pair{u"gone/"_s, u"../../n13/content.htm"_s},
          std::pair{QString(u"file:///"_s + strRoot + u"/n13/x.htm"_s), u"content.htm"_s},
          std::pair{u"c:\\other\\x.htm"_s, u"../n13/content.htm"_s}}) {
        const auto base = references.WithBase(strBase, {u"N7"_s, u"N7"_s});
        ASSERT_TRUE(base) << strBase;
        EXPECT_EQ(references.Rewrite(strReference, {base->SourceFolder, u"N7"_s}).Text,
                  u"../N13/Content.htm"_s);
    }
    EXPECT_FALSE(references.WithBase(u"../../x/"_s, {u"N7"_s, u"N7"_s}));
}
