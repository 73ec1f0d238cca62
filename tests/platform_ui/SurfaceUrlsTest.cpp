#include "platform/ui/SurfaceUrls.h"

#include "foundation/Urls.h"
#include "tests/support/Testing.h"

TEST(SurfaceUrls, EverySpellingOfALocalReferenceGetsOneForm) {
    const std::pair<QString, QString> rows[] = {
        {u"Z:\\home\\图 片.png"_s, u"file:///Z:/home/图%20片.png"_s},
        {u"  z:/a.png "_s, u"file:///z:/a.png"_s},
        {u"file:///home/a.png"_s, u"file:///Z:/home/a.png"_s},
        {u"file://localhost/home/a.png"_s, u"file:///Z:/home/a.png"_s},
        {u"FILE:///Z:/home/%E5%9B%BE%20片.png"_s, u"file:///Z:/home/图%20片.png"_s},
        {u"file:///Z:/100%25 [a]{b}&^.png"_s, u"file:///Z:/100%25%20%5Ba%5D%7Bb%7D%26%5E.png"_s},
        {u"file:///Z:/a%23b.htm?x=1&y#c d"_s, u"file:///Z:/a%23b.htm?x=1&y#c d"_s},
        {u"Z:\\a#b\"<>?.png"_s, u"file:///Z:/a%23b%22%3C%3E%3F.png"_s},
    };
    for (const auto& [strText, strExpected] : rows) {
        EXPECT_EQ(SurfaceUrls::CanonicalReference(strText), strExpected);
        EXPECT_EQ(SurfaceUrls::CanonicalReference(strExpected), strExpected) << "not stable";
    }
    for (const QString& strText : {u""_s, u"res/a.png"_s, u"#a"_s, u"/home/a.png"_s, u"http://h/a b"_s,
                                   u"javascript:void(0)"_s, u"file://server/share/a.png"_s, u"Z:a.png"_s})
        EXPECT_EQ(SurfaceUrls::CanonicalReference(strText), std::nullopt) << strText;
}

TEST(SurfaceUrls, WhatTheEngineLoads) {
    const CTempFolder folder;
    folder.Write(u"A b\\Content.htm"_s, "x");
    const QUrl file = QUrl::fromLocalFile(folder.Native(u"A b\\Content.htm"_s));
    const QString strPath = folder.Path(u"A b\\Content.htm"_s);
    // Other rules of the program escape a blank twice.
    for (const QString& strTarget :
         {strPath, folder.Path(u"a B\\content.HTM"_s), folder.Native(u"A b\\Content.htm"_s),
          QString(u"file://"_s + strPath), Torvane::File::PathToFileUrl(strPath)})
        EXPECT_EQ(SurfaceUrls::EngineUrl(strTarget), file) << strTarget;
    const QString strEscapes = u"100%25 #\\C d.htm"_s;
    folder.Write(strEscapes, "x");
    EXPECT_EQ(SurfaceUrls::EngineUrl(Torvane::File::PathToFileUrl(folder.Path(strEscapes))),
              QUrl::fromLocalFile(folder.Native(strEscapes)));
    QUrl place = file;
    place.setFragment(u"a"_s);
    EXPECT_EQ(SurfaceUrls::EngineUrl(SurfaceUrls::PathToReference(strPath) + u"#a"_s), place);
    QUrl odd = QUrl::fromLocalFile(u"/c#/a%20 b.htm"_s);
    odd.setFragment(u"节"_s);
    EXPECT_EQ(SurfaceUrls::DocumentUrl(odd), u"file://Z:\\c%23\\a%2520 b.htm#节"_s);
    EXPECT_EQ(SurfaceUrls::EngineUrl(SurfaceUrls::DocumentUrl(odd)), odd);
    EXPECT_EQ(SurfaceUrls::EngineUrl(u"http://h/a?b#c"_s), QUrl(u"http://h/a?b#c"_s));
    for (const QString& strTarget : {u""_s, u"ftp://h/a"_s, u"javascript:alert(1)"_s, u"data:text/html,x"_s,
                                     u"view-source:file:///etc/passwd"_s, u"file://server/x"_s})
        EXPECT_FALSE(SurfaceUrls::EngineUrl(strTarget).isValid()) << strTarget;
}
