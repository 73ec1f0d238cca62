#include "editor/ResourceText.h"

#include "foundation/Paths.h"
#include "tests/support/Testing.h"

using namespace ResourceText;

namespace {

/// As the surface reports a local file.
QString Reference(const QString& strPath) {
    return u"file:///"_s + QString(strPath).replace(u'\\', u'/').replace(u' ', u"%20"_s);
}

bool Matches(const QString& strText, const char* szPattern) {
    const QString strWhole = QRegularExpression::anchoredPattern(QString::fromUtf8(szPattern));
    return QRegularExpression(strWhole).match(strText).hasMatch();
}

class ResourceTextTest : public ::testing::Test {
protected:
    ResourceTextTest() {
        m_temp.Write(u"NodeResource\\N13\\Content.htm"_s, "<p>");
        m_temp.Write(u"NodeResource\\N13\\res\\In Res.gif"_s, "in");
        m_temp.Write(u"图片\\My Pic[1].GIF"_s, "out");
        m_folders = {m_temp.Path(u"NodeResource\\N13\\res\\"_s), m_temp.Path(u"NodeResource\\"_s)};
    }

    QString PageReference(const QString& strBelow) const {
        return Reference(m_temp.Path(u"NodeResource\\"_s + strBelow));
    }

    CTempFolder m_temp;
    PageFolders m_folders;
};

TEST_F(ResourceTextTest, PlansOutsideResourcesUnderANewName) {
    ResourceCopy copy;
    CResourceNames names(m_folders.strResFolder);
    const QString strPath = m_temp.Path(u"图片\\My Pic[1].GIF"_s);
    ASSERT_TRUE(PlanResource(Reference(strPath), m_folders, &names, copy));
    EXPECT_TRUE(copy.bCopy);
    EXPECT_FALSE(copy.bRemote);
    EXPECT_EQ(copy.strSource, QString(strPath).toLower());
    EXPECT_EQ(copy.strOpenPath, strPath);
    EXPECT_TRUE(Matches(copy.strName, "\\d{12}\\[\\d{1,5}\\]\\.gif")) << copy.strName;
    EXPECT_EQ(copy.strUrl, u"res/"_s + copy.strName);
    EXPECT_EQ(copy.strDest, m_folders.strResFolder + u'\\' + copy.strName);
    ASSERT_TRUE(PlanResource(Reference(strPath), m_folders, nullptr, copy));
    EXPECT_TRUE(Matches(copy.strName, "\\d{12}\\.gif")) << copy.strName;
}

TEST_F(ResourceTextTest, OpensTheSpellingThatThePageNames) {
    m_temp.Write(u"图片\\my pic[1].gif"_s, "the other");
    const QString strFolder = m_temp.Path(u"图片\\"_s).replace(u'\\', u'/');
    for (const QString& strName : {u"My%20Pic[1].GIF"_s, u"My%20Pic%5B1%5D.GIF"_s, u"My Pic%5b1%5d.GIF"_s}) {
        ResourceCopy copy;
        const QString strUrl = u"FILE:///" + strFolder + strName;
        ASSERT_TRUE(PlanResource(strUrl, m_folders, nullptr, copy));
        EXPECT_TRUE(copy.strOpenPath.endsWith(u"My Pic[1].GIF"_s));
    }
}

TEST_F(ResourceTextTest, NamesThatLookLikeUrlsNameTheFileThatShows) {
    CResourceNames names(m_folders.strResFolder);
    const struct {
        QString strName, strInUrl, strUrlInRes;
    } rows[] = {{u"100%.png"_s, u"100%25.png"_s, u"res/100%25.png"_s},
                {u"a%26b.png"_s, u"a%2526b.png"_s, u"res/a%2526b.png"_s},
                {u"a#1?.p#g"_s, u"a%231%3F.p%23g"_s, u"res/a%231%3F.p%23g"_s},
                {u"A&B.png"_s, u"A%26B.png"_s, u"res/a&b.png"_s}};
    for (const auto& row : rows) {
        m_temp.Write(u"图片\\"_s + row.strName, "x");
        m_temp.Write(u"NodeResource\\N13\\res\\"_s + row.strName, "x");
        ResourceCopy copy;
        const QString strOutside = Reference(m_temp.Path(u"图片\\"_s)) + row.strInUrl;
        ASSERT_TRUE(PlanResource(strOutside, m_folders, &names, copy));
        EXPECT_EQ(copy.strOpenPath, m_temp.Path(u"图片\\"_s) + row.strName);
        EXPECT_TRUE(Matches(copy.strUrl, "res/\\d{12}\\[\\d{1,5}\\]\\.pn?g?")) << copy.strUrl;
        ASSERT_TRUE(PlanResource(PageReference(u"N13\\res\\"_s) + row.strInUrl, m_folders, &names, copy));
        EXPECT_EQ(copy.strUrl, row.strUrlInRes);
    }
    ResourceCopy copy;
    ASSERT_TRUE(PlanResource(u"http://h/a.gif?size=1"_s, m_folders, &names, copy));
    EXPECT_TRUE(copy.strName.endsWith(u"].gif"_s));
}

TEST_F(ResourceTextTest, LeavesAloneWhatIsNoResourceToCopy) {
    ResourceCopy copy;
    for (const char16_t* szSource :
         {u"", u"https://h/a.gif", u"data:image/png;base64,AAAA", u"file:///Z:/no/such.gif"})
        EXPECT_FALSE(PlanResource(QString::fromUtf16(szSource), m_folders, nullptr, copy));
    ASSERT_TRUE(PlanResource(PageReference(u"N13\\res\\In Res.gif"_s), m_folders, nullptr, copy));
    EXPECT_FALSE(copy.bCopy);
    EXPECT_EQ(copy.strUrl, u"res/in res.gif"_s);
    EXPECT_EQ(copy.strName, u"in res.gif"_s);
}

TEST_F(ResourceTextTest, LinksBecomeRelativeAndLowerCase) {
    const std::pair<QString, QString> rows[] = {
        {PageReference(u"N14\\Content.htm"_s) + u"#A"_s, u"../n14/content.htm#a"_s},
        {PageReference(u"N13\\res\\In Res.gif"_s), u"res/in res.gif"_s},
        {Reference(m_temp.Path(u"图片\\x.doc"_s)) + u"#P1"_s, u"../#p1"_s},
        {u"http://Host/A"_s, u"http://Host/A"_s},
        {u"mailto:A@b"_s, u"mailto:A@b"_s},
    };
    for (const auto& [strLink, strExpected] : rows) {
        References references;
        references.Anchors = {strLink};
        QList<ResourceCopy> copies;
        EXPECT_EQ(ProcessResources(u"<a href=\"" + strLink + u"\">", references, m_folders, copies),
                  QString(u"<a href=\"" + strExpected + u"\">"));
        EXPECT_TRUE(copies.isEmpty());
    }
}

TEST_F(ResourceTextTest, AnchorsWithinThePageLoseThePage) {
    References references;
    references.strDocumentUrl = u"file://Z:\\a b\\[k]\\N13\\Content.htm"_s;
    QList<ResourceCopy> copies;
    EXPECT_EQ(ProcessResources(u"x file:///Z:/a%20b/%5Bk%5D/N13/Content.htm#top y"_s, references, m_folders,
                               copies),
              u"x #top y"_s);
}

TEST_F(ResourceTextTest, PicturesComeBeforeLinksAndAreFoundAsAttributesSpellThem) {
    References references;
    const QString strPicture = Reference(m_temp.Path(u"图片\\My Pic[1].GIF"_s));
    references.Anchors = {strPicture};
    references.Images = {strPicture};
    references.Embeds = {u"http://h/a.gif?x=1&y=2"_s};
    QList<ResourceCopy> copies;
    const QString strText = ProcessResources(
        u"<a href=\"%1\"><img src=\"%1\"><embed src=\"http://h/a.gif?x=1&amp;y=2\">"_s.arg(strPicture),
        references, m_folders, copies);
    ASSERT_EQ(copies.size(), 2);
    EXPECT_EQ(strText,
              u"<a href=\"%1\"><img src=\"%1\"><embed src=\"%2\">"_s.arg(copies[0].strUrl, copies[1].strUrl));
}

TEST_F(ResourceTextTest, GarbageIsWhatTheTextDoesNotNameInAnySpelling) {
    for (const char16_t* szName :
         {u"used.gif", u"Lower.GIF", u"esc[1].gif", u"gone.gif", u"a&b.gif", u"a?#%.gif"})
        m_temp.Write(u"NodeResource\\N13\\res\\"_s + QString::fromUtf16(szName), "x");
    m_temp.MakeFolder(u"NodeResource\\N13\\res\\folder"_s);
    QStringList garbage = FindGarbage(
        u"res/used.gif res/lower.gif res/esc%5B1%5D.gif res/a&amp;b.gif 100% res/a%3F%23%25.gif"_s,
        m_folders.strResFolder);
    garbage.sort();
    EXPECT_EQ(garbage, QStringList({u"In Res.gif"_s, u"gone.gif"_s}));
}

} // namespace
