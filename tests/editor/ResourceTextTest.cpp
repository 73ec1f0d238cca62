#include "editor/ResourceText.h"

#include "foundation/Paths.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <random>

using namespace ResourceText;

namespace {

/// As the surface reports a local file.
QString Reference(const QString& strPath) {
    return QStringLiteral("file:///") +
           QString(strPath).replace(u'\\', u'/').replace(u' ', QStringLiteral("%20"));
}

QString Pattern(const char* szPattern) {
    return QRegularExpression::anchoredPattern(QString::fromUtf8(szPattern));
}

bool Matches(const QString& strText, const char* szPattern) {
    return QRegularExpression(Pattern(szPattern)).match(strText).hasMatch();
}

class ResourceTextTest : public ::testing::Test {
protected:
    ResourceTextTest() {
        m_temp.Write(QStringLiteral("NodeResource\\N13\\Content.htm"), "<p>");
        m_temp.Write(QStringLiteral("NodeResource\\N13\\res\\In Res.gif"), "in");
        m_temp.Write(QStringLiteral("图片\\My Pic[1].GIF"), "out");
        m_folders = {m_temp.Path(QStringLiteral("NodeResource\\N13\\res\\")),
                     m_temp.Path(QStringLiteral("NodeResource\\"))};
    }

    QString PageReference(const QString& strBelow) const {
        return Reference(m_temp.Path(QStringLiteral("NodeResource\\") + strBelow));
    }

    CTempFolder m_temp;
    PageFolders m_folders;
};

TEST(ResourceTextConversions, AddressesKeepTheirOrderOfEscapes) {
    EXPECT_EQ(FileUrlToPath(QStringLiteral("file:///C:/My%20Pics/A%5b1%5D%25.gif")),
              QStringLiteral("c:\\my pics\\a[1]%.gif"));
    EXPECT_EQ(FileUrlToPath(QStringLiteral("file://c:\\x\\Y.htm")), QStringLiteral("c:\\x\\y.htm"));
    EXPECT_EQ(FileUrlToPath(QStringLiteral("file://server/x")), QStringLiteral("\\\\server\\x"));
    EXPECT_EQ(FileUrlToPath(QStringLiteral("HTTPS://H/%20")), QStringLiteral("https://h/%20"));
    EXPECT_EQ(PathToFileUrl(QStringLiteral("c:\\a b\\x#{1}.htm")),
              QStringLiteral("file:///c:/a%2520b/x%2523%7B1%7D.htm"));
    EXPECT_EQ(PathToFileUrl(QStringLiteral("http://h/x y")), QStringLiteral("http://h/x y"));
}

TEST_F(ResourceTextTest, PlansOutsideResourcesUnderANewName) {
    ResourceCopy copy;
    const QStringList names;
    const QString strPath = m_temp.Path(QStringLiteral("图片\\My Pic[1].GIF"));
    ASSERT_TRUE(PlanResource(Reference(strPath), m_folders, &names, copy));
    EXPECT_TRUE(copy.bCopy);
    EXPECT_FALSE(copy.bRemote);
    EXPECT_EQ(copy.strSource, QString(strPath).toLower());
    EXPECT_EQ(copy.strOpenPath, strPath);
    EXPECT_TRUE(Matches(copy.strName, "\\d{12}\\[\\d{1,5}\\]\\.gif")) << copy.strName.toStdString();
    EXPECT_EQ(copy.strUrl, QStringLiteral("res/") + copy.strName);
    EXPECT_EQ(copy.strDest, m_folders.strResFolder + u'\\' + copy.strName);
    ASSERT_TRUE(PlanResource(Reference(strPath), m_folders, nullptr, copy));
    EXPECT_TRUE(Matches(copy.strName, "\\d{12}\\.gif")) << copy.strName.toStdString();
}

TEST_F(ResourceTextTest, OpensTheSpellingThatThePageNames) {
    m_temp.Write(QStringLiteral("图片\\my pic[1].gif"), "the other");
    ResourceCopy copy;
    ASSERT_TRUE(PlanResource(Reference(m_temp.Path(QStringLiteral("图片\\My Pic[1].GIF"))), m_folders,
                             nullptr, copy));
    EXPECT_TRUE(copy.strOpenPath.endsWith(QStringLiteral("My Pic[1].GIF")));
    // Escapes in either case, a scheme in capitals, a Chinese folder.
    for (const char16_t* szName : {u"My%20Pic%5B1%5D.GIF", u"My%20Pic%5b1%5d.GIF"}) {
        const QString strUrl = QStringLiteral("FILE:///") +
                               m_temp.Path(QStringLiteral("图片\\")).replace(u'\\', u'/') +
                               QString::fromUtf16(szName);
        ASSERT_TRUE(PlanResource(strUrl, m_folders, nullptr, copy));
        EXPECT_TRUE(copy.strOpenPath.endsWith(QStringLiteral("My Pic[1].GIF")));
    }
}

TEST_F(ResourceTextTest, LeavesAloneWhatIsNoResourceToCopy) {
    ResourceCopy copy;
    for (const char16_t* szSource :
         {u"", u"https://h/a.gif", u"data:image/png;base64,AAAA", u"file:///Z:/no/such.gif"})
        EXPECT_FALSE(PlanResource(QString::fromUtf16(szSource), m_folders, nullptr, copy));
    ASSERT_TRUE(
        PlanResource(PageReference(QStringLiteral("N13\\res\\In Res.gif")), m_folders, nullptr, copy));
    EXPECT_FALSE(copy.bCopy);
    EXPECT_EQ(copy.strUrl, QStringLiteral("res/in res.gif"));
    EXPECT_EQ(copy.strName, QStringLiteral("in res.gif"));
}

TEST_F(ResourceTextTest, RemoteResourcesTakeTheirExtensionFromTheLastDot) {
    const struct {
        const char16_t* szUrl;
        const char* szName;
    } rows[] = {{u"http://h.net/a.GIF", "\\d{12}\\[\\d+\\]\\.GIF"},
                {u"HTTP://h.net/x/a", "\\d{12}\\[\\d+\\]\\.net/x/a"},
                {u"http://localhost/a", "\\d{12}\\[\\d+\\]"}};
    for (const auto& row : rows) {
        ResourceCopy copy;
        const QStringList names;
        const QString strUrl = QString::fromUtf16(row.szUrl);
        ASSERT_TRUE(PlanResource(strUrl, m_folders, &names, copy));
        EXPECT_TRUE(copy.bRemote && copy.bCopy);
        EXPECT_EQ(copy.strSource, strUrl);
        EXPECT_TRUE(Matches(copy.strName, row.szName)) << copy.strName.toStdString();
    }
}

TEST_F(ResourceTextTest, AListedNameEndsTheSearchAndIsNeverGivenTwice) {
    QStringList names;
    for (int n = 0; n < 300; ++n) {
        const QString strName = MakeResourceName(QStringLiteral("a.gif"), m_folders.strResFolder, &names);
        EXPECT_FALSE(names.contains(strName));
        names << strName << MakeResourceName(QStringLiteral("a.gif"), m_folders.strResFolder, nullptr);
    }
}

TEST_F(ResourceTextTest, LinksBecomeRelativeAndLowerCase) {
    const struct {
        QString strLink, strExpected;
    } rows[] = {
        {PageReference(QStringLiteral("N14\\Content.htm")) + QStringLiteral("#A"),
         QStringLiteral("../n14/content.htm#a")},
        {PageReference(QStringLiteral("N13\\res\\In Res.gif")), QStringLiteral("res/in res.gif")},
        {Reference(m_temp.Path(QStringLiteral("图片\\x.doc"))) + QStringLiteral("#P1"),
         QStringLiteral("../#p1")},
        {QStringLiteral("http://Host/A"), QStringLiteral("http://Host/A")},
        {QStringLiteral("mailto:A@b"), QStringLiteral("mailto:A@b")},
    };
    for (const auto& row : rows) {
        References references;
        references.Anchors = {row.strLink};
        QList<ResourceCopy> copies;
        EXPECT_EQ(ProcessResources(u"<a href=\"" + row.strLink + u"\">", references, m_folders, copies),
                  QString(u"<a href=\"" + row.strExpected + u"\">"));
        EXPECT_TRUE(copies.isEmpty());
    }
}

TEST_F(ResourceTextTest, AnchorsWithinThePageLoseThePage) {
    References references;
    references.strDocumentUrl = QStringLiteral("file://Z:\\a b\\[k]\\N13\\Content.htm");
    QList<ResourceCopy> copies;
    EXPECT_EQ(ProcessResources(QStringLiteral("x file:///Z:/a%20b/%5Bk%5D/N13/Content.htm#top y"), references,
                               m_folders, copies),
              QStringLiteral("x #top y"));
}

TEST_F(ResourceTextTest, TheSamePictureTwiceIsPlannedTwiceAndReplacedOnce) {
    const QString strPicture = Reference(m_temp.Path(QStringLiteral("图片\\My Pic[1].GIF")));
    References references;
    references.Images = {strPicture, strPicture};
    QList<ResourceCopy> copies;
    const QString strText = ProcessResources(strPicture + u'|' + strPicture, references, m_folders, copies);
    ASSERT_EQ(copies.size(), 2);
    EXPECT_EQ(strText, QString(copies[0].strUrl + u'|' + copies[0].strUrl));
    EXPECT_NE(copies[0].strName, copies[1].strName);
}

/// Replaces by walking the text, with nothing of the tested code.
QString ReplacedByHand(const QString& strText, const QString& strFrom, const QString& strTo) {
    QString strResult;
    for (qsizetype n = 0; n < strText.size();) {
        const bool bHere = QStringView(strText).mid(n).startsWith(strFrom);
        strResult += bHere ? strTo : QString(strText.at(n));
        n += bHere ? strFrom.size() : 1;
    }
    return strResult;
}

TEST_F(ResourceTextTest, EqualsOneReplacementAfterTheOtherInTheOrderOfTheLists) {
    std::mt19937 random(7);
    const QStringList images = {Reference(m_temp.Path(QStringLiteral("图片\\My Pic[1].GIF"))),
                                PageReference(QStringLiteral("N13\\res\\In Res.gif")),
                                QStringLiteral("http://h/a.gif"), QStringLiteral("http://h/a.gif?x.gif"),
                                QStringLiteral("file:///Z:/no/such.gif")};
    const QStringList links = {PageReference(QStringLiteral("N14\\c.htm")),
                               PageReference(QStringLiteral("N14\\c.htm#x")), QStringLiteral("http://h/a"),
                               PageReference(QString())};
    const QStringList filler = {QStringLiteral("<p>"), QStringLiteral("中文"), QStringLiteral("#"),
                                QStringLiteral("a.gif"), QStringLiteral("res/")};
    const auto pick = [&](const QStringList& list) { return list.at(random() % list.size()); };
    for (int nRun = 0; nRun < 200; ++nRun) {
        QString strText;
        for (int n = 0; n < 30; ++n)
            strText += pick(random() % 2 ? filler : random() % 2 ? images : links);
        References references;
        for (int n = 0; n < 4; ++n) {
            references.Images << pick(images);
            references.Embeds << pick(images);
            references.Anchors << pick(links);
        }
        QList<ResourceCopy> copies;
        const QString strResult = ProcessResources(strText, references, m_folders, copies);

        QString strExpected = strText;
        qsizetype nCopy = 0;
        for (const QString& strSource : references.Images + references.Embeds) {
            if (strSource != images.last())
                strExpected = ReplacedByHand(strExpected, strSource, copies.at(nCopy++).strUrl);
        }
        for (const QString& strLink : std::as_const(references.Anchors)) {
            const QStringList targets = {QStringLiteral("../n14/c.htm"), QStringLiteral("../n14/c.htm#x"),
                                         QStringLiteral("http://h/a"), QStringLiteral("../")};
            strExpected = ReplacedByHand(strExpected, strLink, targets.at(links.indexOf(strLink)));
        }
        ASSERT_EQ(strResult.toStdString(), strExpected.toStdString());
        ASSERT_EQ(nCopy, copies.size());
    }
}

TEST_F(ResourceTextTest, GarbageIsWhatTheTextDoesNotNameInAnySpelling) {
    for (const char16_t* szName : {u"used.gif", u"Lower.GIF", u"esc[1].gif", u"gone.gif"})
        m_temp.Write(QStringLiteral("NodeResource\\N13\\res\\") + QString::fromUtf16(szName), "x");
    m_temp.MakeFolder(QStringLiteral("NodeResource\\N13\\res\\folder"));
    QStringList garbage =
        FindGarbage(QStringLiteral("res/used.gif res/lower.gif res/esc%5B1%5D.gif"), m_folders.strResFolder);
    garbage.sort();
    EXPECT_EQ(garbage, QStringList({QStringLiteral("In Res.gif"), QStringLiteral("gone.gif")}));
}

} // namespace
