#include "foundation/Urls.h"
#include "tests/support/Testing.h"

using namespace Torvane::File;

namespace {

TEST(Urls, ALocalReferenceStandsBelowItsFolder) {
    const CTempFolder folder;
    folder.Write(u"N13\\Clip.AVI"_s, "x");
    const QString strBase = folder.Path(u""_s);
    const QString strUrl = u"file:///"_s + QString(strBase).replace(u'\\', u'/');
    const std::pair<QString, QString> rows[] = {
        {u"file://"_s + strBase + u"N13\\Content.htm#A"_s, u"n13/content.htm#a"_s},
        {strUrl + u"N13/A%20%23%5B1].htm"_s, u"n13/a #[1].htm"_s},
        {PathToDocumentUrl(strBase + u"N13\\C#%20.htm"_s) + u"#A%20"_s, u"n13/c#%20.htm#a%20"_s},
        {strBase + u"N13\\Clip.AVI"_s, u"n13/clip.avi"_s},
        {u"file:///Z:/else/where.htm#P1"_s, u"#p1"_s},
        {u"http://Host/A#B"_s, u"http://host/a#b"_s},
        {strBase + u"N13\\None.avi"_s, QString(strBase + u"N13\\None.avi"_s).toLower()}};
    for (const auto& [strLink, strExpected] : rows)
        EXPECT_EQ(MakeRelativeUrl(strLink, strBase), strExpected);
    EXPECT_TRUE(IsLocalRef(folder.Path(u"n13\\clip.avi"_s)) && IsLocalRef(u"x FILE://y"_s));
    EXPECT_FALSE(IsLocalRef(folder.Path()) || IsLocalRef(u"http://x"_s));
}

TEST(Urls, KeepTheirOrderOfEscapes) {
    const std::pair<QString, QString> toPath[] = {
        {u"file:///Z:/Home/A%20b%23.htm"_s, u"z:\\home\\a b#.htm"_s},
        {u"FILE://C:\\X"_s, u"c:\\x"_s},
        {u"file://server/Share/x"_s, u"\\\\server\\share\\x"_s},
        {u"http://Host/A%20"_s, u"http://host/a%20"_s},
        {u"file:///z:/É%5E%26%5B%5d%7B%7d"_s, u"z:\\É^&[]{}"_s},
        // "%25" is taken after "%20" and before the rest.
        {u"file:///z:/a%2520b%255B"_s, u"z:\\a%20b["_s},
        {u"file://Z:\\100%2525\\x"_s, u"z:\\100%25\\x"_s}};
    for (const auto& [strUrl, strPath] : toPath)
        EXPECT_EQ(FileUrlToPath(strUrl), strPath);
    const std::pair<QString, QString> toUrl[] = {
        {u"Z:\\A b#"_s, u"file:///Z:/A%2520b%2523"_s},
        {u"Z:\\%^&[]{}课"_s, u"file:///Z:/%25%5E%26%5B%5D%7B%7D课"_s},
        {u"http://x/a b"_s, u"http://x/a b"_s}};
    for (const auto& [strPath, strUrl] : toUrl)
        EXPECT_EQ(PathToFileUrl(strPath), strUrl);
}

} // namespace
