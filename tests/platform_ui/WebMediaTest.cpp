#include "tests/platform_ui/WebFixture.h"
#include "tests/support/Cases.h"

namespace {

constexpr QColor c_cardColour(0xEE, 0xF3, 0xF8);

class WebMediaTest : public CWebTest {
protected:
    /// Whether a card's paper is to be seen in all corners of the place.
    bool CardFills(const QRect& place) {
        const QImage image = m_browser->screen()->grabWindow(m_browser->winId()).toImage();
        for (const QPoint& corner :
             {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()}) {
            if (image.pixelColor(corner) != c_cardColour)
                return false;
        }
        return true;
    }
    /// The names on the cards that stand in the page, from top to bottom.
    QStringList Cards() {
        QString strHtml;
        m_browser->GetBrowserBodyInnerHTML(strHtml);
        m_strHtml = strHtml;
        return strHtml.split(u"<span"_s).mid(1);
    }
    QString m_strHtml;
};

// Each stands in its page as teachers' pages of many years have it, and leaves neither a grey box nor
// nothing.
TEST_F(WebMediaTest, WhatTheEngineCannotPlayHasACardOfItsSize) {
    m_folder.Write(u"course\\N5\\res\\broken.mp4"_s, "no film");
    for (const SCase& medium : ReadCases(VOREL_MEDIA_PAGES)) {
        ASSERT_TRUE(
            Show(u"course\\N5\\Content.htm"_s, "<meta charset=utf-8>" + medium.Texts[0].toUtf8(), false));
        EXPECT_SOON(Cards().size() == 1) << medium.strWhat << "\n" << m_strHtml;
        EXPECT_TRUE(m_strHtml.contains(medium.Texts[1])) << m_strHtml;
    }
}

TEST_F(WebMediaTest, WhatShowsStaysAndAnEditedPageIsNotTouched) {
    m_folder.Write(u"course\\N5\\in.htm"_s, "inside");
    const QByteArray shown = "<embed src=\"in.htm\"><object data=\"in.htm\" type=\"text/html\"></object>"
                             "<object classid=\"clsid:x\"><p>instead</p></object><iframe src=\"in.htm\">"
                             "</iframe><iframe src=\"data:text/html,<a href=x.doc\"></iframe>";
    ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, shown, false));
    EXPECT_TRUE(Cards().isEmpty()) << m_strHtml;

    const QByteArray edited = "<p>a</p><embed src=\"x.wmv\" width=\"200\">";
    Edit(edited);
    EXPECT_EQ(Html(), QString::fromLatin1(edited));
    // Its preview is set to editing for the pictures' sake alone.
    m_browser->SetMediaReplaced(true);
    ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, edited, true));
    EXPECT_SOON(Cards().size() == 1) << m_strHtml;
    m_browser->SetMediaReplaced(false);
    Edit(edited);
    EXPECT_EQ(Html(), QString::fromLatin1(edited));
}

// Also when the page is looked at before the engine has begun with its films.
TEST_F(WebMediaTest, WhatTheEnginePlaysPlays) {
    const QByteArray silence(16000, '\0');
    m_folder.Write(u"course\\N5\\a.wav"_s,
                   QByteArray::fromHex("52494646a43e000057415645666d7420100000000100010040"
                                       "1f0000803e0000020010006461746180"
                                       "3e0000") +
                       silence);
    const QByteArray plays = " src=a.wav autoplay onplaying=\"document.body.append("
                             "document.createComment('plays'))\">";
    for (const QByteArray& element : {QByteArray("<audio controls"), QByteArray("<video width=300")}) {
        ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, element + plays, false));
        EXPECT_SOON(Html().contains(u"<!--plays-->"_s));
        EXPECT_TRUE(Cards().isEmpty()) << m_strHtml;
    }
}

// A card as large as the page's own would be cut off there.
TEST_F(WebMediaTest, AFrameWithWhatTheEngineCannotShowIsFilledByItsCard) {
    QSignalSpy wanted(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    for (const QString& strFile : {u"a.doc"_s, u"a.wmv"_s, u"broken.mp4"_s, u"gone.mp4"_s}) {
        if (!strFile.startsWith(u"gone"_s))
            m_folder.Write(u"course\\N5\\"_s + strFile, "no film");
        const QString strFrame = u"src='"_s + strFile + u'\'';
        const QString pages[] = {u"<frameset cols='50%,50%'><frame "_s + strFrame + u"><frame></frameset>",
                                 u"<body style='margin:0;background:#0a0'><iframe width=320 height=240 "_s +
                                     strFrame + u"></iframe>"};
        for (const QString& strHtml : pages) {
            ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, strHtml.toUtf8(), false));
            EXPECT_SOON(CardFills(QRect(10, 10, 300, 220))) << strHtml;
        }
    }
    // Where a script sends a frame there is no card: the program offers the file.
    QTest::qWait(1000);
    EXPECT_TRUE(wanted.isEmpty());
    const QByteArray sent =
        "<iframe></iframe><script>setTimeout(() => frames[0].location = 'a.doc', 50)</script>";
    ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, sent, false));
    ASSERT_SOON(!wanted.isEmpty());
    EXPECT_TRUE(wanted.value(0).value(0).toString().endsWith(u"/course/N5/a.doc"_s));
    EXPECT_FALSE(wanted.value(0).value(1).toBool());
    // A frame that is given another file by its attribute has a card, too.
    for (const char* szFile : {"a.doc", "broken.mp4", "gone.mp4"}) {
        const QByteArray given = QByteArray("<body style='margin:0;background:#0a0'><iframe id=f width=320 "
                                            "height=240></iframe><script>setTimeout(() => f.src = '") +
                                 szFile + "', 50)</script>";
        ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, given, false));
        EXPECT_SOON(CardFills(QRect(10, 10, 300, 220))) << szFile;
    }
}

// Pages have one player and a list of films, and their scripts know it by its names alone.
TEST_F(WebMediaTest, AScriptGivesThePlayerAnotherFilm) {
    m_folder.Write(u"course\\N5\\b.ogg"_s, "no sound");
    const char* const players[] = {
        "<object id=mp classid='clsid:6BF52A52-394A-11D3-B153-00C04F79FAA6' width=300 height=200></object>",
        "<embed name=mp src='res/a.wmv' width=300 height=200>",
        "<embed name=mp src='res/a.mp3' hidden=true>",
        "<video id=mp src='res/a.mp4' width=300 height=200></video>",
    };
    const char* const orders[] = {
        "mp.URL = 'res/b.wmv'; mp.controls.play()",
        "mp.FileName = 'b.ogg'; mp.FileName = 'res/b.wmv'; mp.Play()",
        "mp.setAttribute('src', 'res/b.wmv')",
        "document.getElementsByName('mp').length, mp.Open('res/b.wmv')",
    };
    m_folder.Write(u"course\\N5\\res\\b.wmv"_s, "x");
    QSignalSpy wanted(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    for (const char* szPlayer : players) {
        for (const char* szOrder : orders) {
            const QByteArray late = QByteArray("<script>setTimeout(() => {") + szOrder +
                                    "; document.title = 'fed'}, 300)</script>";
            ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s,
                             "<meta charset=utf-8><body style=margin:0>" + QByteArray(szPlayer) + late,
                             false));
            ASSERT_SOON(Cards().value(0).contains(u"src=\"res/b.wmv\""_s))
                << szPlayer << szOrder << m_strHtml;
            ASSERT_SOON(ColourShows(c_cardColour)) << szPlayer << szOrder;
        }
    }
    QTest::mouseClick(m_browser->findChild<QWidget*>(u"webView"_s)->focusProxy(), Qt::LeftButton, {},
                      QPoint(60, 40));
    ASSERT_SOON(!wanted.isEmpty());
    EXPECT_TRUE(wanted.last().first().toString().endsWith(u"/course/N5/res/b.wmv"_s));
}

TEST_F(WebMediaTest, APersonsClickAsksForTheFileAndAScriptsDoesNot) {
    m_folder.Write(u"course\\N5\\课 1.wmv"_s, "x");
    m_folder.Write(u"elsewhere.wmv"_s, "x");
    QSignalSpy wanted(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    const auto click = [&](const QByteArray& html) {
        ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s,
                         "<meta charset=utf-8><body style=margin:0><script>addEventListener('click', () => "
                         "document.body.append(document.createComment('clicked')), true)</script>" +
                             html,
                         false));
        // What is to be seen takes the mouse.
        ASSERT_SOON(ColourShows(c_cardColour));
        auto* pView = m_browser->findChild<QWidget*>(u"webView"_s);
        QTest::mouseClick(pView->focusProxy(), Qt::LeftButton, {}, QPoint(60, 40));
        ASSERT_SOON(Html().contains(u"<!--clicked-->"_s));
    };
    click("<embed src='课 1.wmv' width=320 height=240>");
    ASSERT_SOON(!wanted.isEmpty());
    EXPECT_TRUE(wanted.last().first().toString().endsWith(u"/course/N5/课%201.wmv"_s))
        << wanted.last().first().toString();
    wanted.clear();
    click("<a href='课 1.wmv' style='display:block;height:200px;background:#eef3f8'>x</a>");
    EXPECT_SOON(!wanted.isEmpty());
    EXPECT_TRUE(wanted.value(0).value(1).toBool()) << "by the person";
    wanted.clear();
    click("<embed src='mms://example.org/课.wmv' width=320 height=240>");
    ASSERT_SOON(!wanted.isEmpty()) << "another program may know the stream";
    wanted.clear();
    click("<embed src='../../elsewhere.wmv' width=320 height=240>");
    ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s,
                     "<embed src='x.wmv' width=320 height=240><script>setTimeout(() => {"
                     "document.querySelector('span').click();"
                     "document.elementFromPoint(60, 40).click();"
                     "document.body.append(document.createComment('clicked'));}, 200)</script>",
                     false));
    EXPECT_SOON(Html().contains(u"<!--clicked-->"_s));
    EXPECT_TRUE(wanted.isEmpty());
}

} // namespace
