#include "platform/ui/SurfaceUrls.h"

#include "foundation/Paths.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct SRow {
    const char16_t* szText;
    const char16_t* szExpected;
};

QString Text(const char16_t* sz) {
    return QString::fromUtf16(sz);
}

} // namespace

TEST(SurfaceUrls, EverySpellingOfALocalReferenceGetsOneForm) {
    const SRow rows[] = {
        {u"Z:\\home\\图 片.png", u"file:///Z:/home/图%20片.png"},
        {u"z:/home/a.png", u"file:///z:/home/a.png"},
        {u"  Z:\\a.png ", u"file:///Z:/a.png"},
        {u"file:///home/a.png", u"file:///Z:/home/a.png"},
        {u"file://localhost/home/a.png", u"file:///Z:/home/a.png"},
        {u"FILE:///Z:/home/%E5%9B%BE%20片.png", u"file:///Z:/home/图%20片.png"},
        {u"file:///Z:/100%25 [a]{b}&^.png", u"file:///Z:/100%25%20%5Ba%5D%7Bb%7D%26%5E.png"},
        {u"file:///Z:/a%23b.htm#c d", u"file:///Z:/a%23b.htm#c d"},
        {u"file:///Z:/a.htm?x=1&y#z", u"file:///Z:/a.htm?x=1&y#z"},
        {u"Z:\\a#b\"<>?.png", u"file:///Z:/a%23b%22%3C%3E%3F.png"},
    };
    for (const SRow& row : rows) {
        const auto strOnce = SurfaceUrls::CanonicalReference(Text(row.szText));
        ASSERT_TRUE(strOnce.has_value()) << Text(row.szText).toStdString();
        EXPECT_EQ(strOnce->toStdString(), Text(row.szExpected).toStdString());
        EXPECT_EQ(SurfaceUrls::CanonicalReference(*strOnce), strOnce) << "not stable";
    }
    for (const char16_t* sz :
         {u"", u"res/a.png", u"../n5/Content.htm#a", u"#a", u"/home/a.png", u"http://h/a b",
          u"javascript:void(0)", u"file://server/share/a.png", u"Z:a.png"})
        EXPECT_FALSE(SurfaceUrls::CanonicalReference(Text(sz)).has_value()) << Text(sz).toStdString();
}

// Whoever saves the page looks a reported reference up on the disk with the floor's own escapes.
TEST(SurfaceUrls, AReportedReferenceLeadsBackToItsFile) {
    const CTempFolder folder;
    for (const char16_t* sz :
         {u"图 片.png", u"a%20b.png", u"100%.png", u"a#b&c.png", u"x[1]{2}^.png", u"括（号）.png"}) {
        folder.Write(Text(sz).toLower(), "x");
        const QString strReference = SurfaceUrls::PathToReference(folder.Path(Text(sz)));
        EXPECT_TRUE(Torvane::File::IsFile(Torvane::File::AddressToPath(strReference)))
            << strReference.toStdString();
        const QUrl url(strReference);
        EXPECT_EQ(SurfaceUrls::FindOnDisk(url).toStdString(), folder.Native(Text(sz)).toStdString());
    }
}

TEST(SurfaceUrls, WhatIsReportedForAReference) {
    const QString strResolved = u"file:///home/%E8%AF%BE/N5/res/a%20b.gif"_s;
    EXPECT_EQ(SurfaceUrls::ReportedReference(u"res/a b.gif"_s, strResolved),
              u"file:///Z:/home/课/N5/res/a%20b.gif"_s);
    EXPECT_EQ(SurfaceUrls::ReportedReference(u"#x"_s, u"file:///home/c.htm#x"_s),
              u"file:///Z:/home/c.htm#x"_s);
    EXPECT_EQ(SurfaceUrls::ReportedReference(u"Z:\\a.gif"_s, u"z:\\a.gif"_s), u"file:///Z:/a.gif"_s);
    EXPECT_EQ(SurfaceUrls::ReportedReference(u"http://h/x y"_s, u"http://h/x%20y"_s), u"http://h/x y"_s);
    EXPECT_EQ(SurfaceUrls::ReportedReference(u"a.gif"_s, u"http://h/a.gif"_s), u"http://h/a.gif"_s);
}

TEST(SurfaceUrls, DocumentUrls) {
    EXPECT_EQ(SurfaceUrls::DocumentUrl(QUrl(u"file:///home/%E8%AF%BE%20x/c.htm#%E7%AB%A0"_s)),
              u"file://Z:\\home\\课 x\\c.htm#章"_s);
    EXPECT_EQ(SurfaceUrls::DocumentUrl(QUrl(u"about:blank"_s)), u"about:blank"_s);
    EXPECT_EQ(SurfaceUrls::DocumentUrl(QUrl(u"http://h/a"_s)), u"http://h/a"_s);
}

TEST(SurfaceUrls, WhatTheEngineLoads) {
    const CTempFolder folder;
    folder.Write(u"A b\\Content.htm"_s, "x");
    const QUrl file = QUrl::fromLocalFile(folder.Native(u"A b\\Content.htm"_s));
    const QString strPath = folder.Path(u"A b\\Content.htm"_s);
    EXPECT_EQ(SurfaceUrls::EngineUrl(strPath), file);
    EXPECT_EQ(SurfaceUrls::EngineUrl(folder.Path(u"a B\\content.HTM"_s)), file) << "letter case";
    EXPECT_EQ(SurfaceUrls::EngineUrl(folder.Native(u"A b\\Content.htm"_s)), file);
    EXPECT_EQ(SurfaceUrls::EngineUrl(u"file://"_s + strPath), file);
    // Other rules of the program escape a blank twice.
    EXPECT_EQ(SurfaceUrls::EngineUrl(Torvane::File::PathToAddress(strPath)), file);
    QUrl place = file;
    place.setFragment(u"a"_s);
    EXPECT_EQ(SurfaceUrls::EngineUrl(SurfaceUrls::PathToReference(strPath) + u"#a"_s), place);
    EXPECT_EQ(SurfaceUrls::EngineUrl(u"http://h/a?b#c"_s), QUrl(u"http://h/a?b#c"_s));
    for (const char16_t* sz : {u"", u"ftp://h/a", u"javascript:alert(1)", u"data:text/html,x",
                               u"chrome://gpu", u"view-source:file:///etc/passwd", u"file://server/x"})
        EXPECT_FALSE(SurfaceUrls::EngineUrl(Text(sz)).isValid()) << Text(sz).toStdString();
}
