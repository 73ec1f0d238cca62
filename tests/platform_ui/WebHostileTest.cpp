// Pages that try to get at what is none of theirs. Each try is set beside one that is allowed, so that a page
// which merely didn't run doesn't pass for a page that was kept in.
#include "tests/platform_ui/WebFixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

const QString c_strPage = uR"(<!DOCTYPE html><meta charset=utf-8><pre id=out></pre><script>
    const got={}, PORT=%1;
    (async()=>{%2; got.ran=1; document.getElementById('out').textContent=JSON.stringify(got)})()</script>)"_s;

class CWebHostile : public CWebTest {
protected:
    CWebHostile() {
        m_folder.Write(u"course\\inside.txt"_s, "INSIDE");
        m_folder.Write(u"secret.txt"_s, "SECRET");
        WritePicture(u"course\\inside.png"_s, Qt::red);
        WritePicture(u"outside.png"_s, Qt::blue);
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    }
    /// Runs the page, and waits for the tries that it awaits: name → what it got.
    QJsonObject Run(const QString& strTries) {
        const QString strPage = c_strPage.arg(m_server.serverPort()).arg(strTries);
        EXPECT_TRUE(Show(u"course\\page.htm"_s, strPage.toUtf8(), false));
        QJsonObject got;
        const auto hasRun = [&] {
            const QString strOut = Html().section(u"id=\"out\">"_s, 1).section(u"</pre>"_s, 0, 0);
            got = QJsonDocument::fromJson(strOut.toUtf8()).object();
            return !got.isEmpty();
        };
        EXPECT_TRUE(QTest::qWaitFor(hasRun, 15000));
        return got;
    }

    /// Returns when the page has loaded something twice over, which is behind all it wanted before.
    void LetItCome() {
        EXPECT_TRUE(m_browser->ExecuteScript(
            u"(() => { let n = 0; const f = document.createElement('iframe'); f.src = 'inside.txt';"
            "f.onload = () => { if (++n < 2) f.src = 'inside.txt?again';"
            "else { f.remove(); document.body.append('come'); } }; document.body.append(f); })()"_s));
        EXPECT_SOON(Html().endsWith(u"come"_s));
        EXPECT_TRUE(m_browser->ExecuteScript(u"document.body.lastChild.remove()"_s));
    }

    QTcpServer m_server;
};

} // namespace

TEST_F(CWebHostile, APageDoesNotLeaveTheCourse) {
    m_folder.Write(u"course\\second.htm"_s, "<p>second</p>");
    Run(QString());
    const QString strPage = Url();
    for (const QString& strTarget :
         {u"'../secret.txt'"_s, u"'file:///etc/passwd'"_s, u"'http://127.0.0.1:'+PORT"_s,
          u"'data:text/html,<p>fake'"_s, u"'smb://127.0.0.1/x'"_s, u"'intent:x'"_s, u"'mailto:x@y'"_s,
          u"'chrome://gpu'"_s}) {
        EXPECT_TRUE(m_browser->ExecuteScript(u"location.href="_s + strTarget));
        LetItCome();
        EXPECT_EQ(Url(), strPage) << strTarget;
    }
    EXPECT_FALSE(m_server.hasPendingConnections());
    EXPECT_TRUE(m_browser->ExecuteScript(u"location.href='second.htm'"_s));
    EXPECT_SOON(Url().endsWith(u"second.htm"_s));
    EXPECT_TRUE(m_browser->ExecuteScript(u"window.close()"_s));
    LetItCome();
    EXPECT_EQ(Html(), u"<p>second</p>"_s);
}

// The engine would stop loading there, and what had come of the page would be taken for a failure.
TEST_F(CWebHostile, APageThatClosesItselfWhileItLoadsShowsInFull) {
    const QByteArray rest = QByteArray("<p>x</p>\n").repeated(20000) + "<p>end</p>";
    for (const char* const szClose : {"<script>window.close()</script>", "<body onload='self.close()'>",
                                      "<script>setTimeout(() => top.close())</script>",
                                      "<iframe src=inside.txt onload='parent.close()'></iframe>"}) {
        for (int nTry = 0; nTry < 3; ++nTry) {
            EXPECT_TRUE(Show(u"course\\page.htm"_s, szClose + rest, false)) << szClose;
            // On a busy machine a page of this size answers late.
            QString strHtml;
            EXPECT_SOON(m_browser->GetBrowserBodyInnerHTML(strHtml) && strHtml.contains(u"<p>end</p>"_s))
                << szClose;
        }
    }
}

TEST_F(CWebHostile, NewWindowsAreTheProgramsToOpen) {
    QSignalSpy wished(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    Run(u"window.open('inside.txt'); window.open('../secret.txt');"_s);
    LetItCome();
    EXPECT_EQ(wished.size(), 0) << "a page's own wish, without the person's click";
    const QString strInside =
        u"file:///Z:"_s + m_folder.Native(u"course\\inside.txt"_s).replace(u' ', u"%20"_s);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open(\""_s + strInside + u"\");"_s));
    EXPECT_SOON(wished.size() == 1);
    EXPECT_EQ(wished.value(0).value(0).toString(), strInside);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open('file:///etc/passwd');"_s));
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open(\""_s + strInside + u"\");"_s));
    EXPECT_SOON(wished.size() == 2);
    EXPECT_EQ(wished.value(1).value(0).toString(), strInside);
}

// What the engine calls a click may be a script's, and a page may lead on by itself.
TEST_F(CWebHostile, APageOpensNoFilmByItself) {
    m_folder.Write(u"course\\film.wmv"_s, "x");
    QSignalSpy wished(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    for (const char* const szHtml :
         {"<a href=film.wmv></a><script>setTimeout(() => document.querySelector('a').click(), 300)</script>",
          "<meta http-equiv=refresh content='1;url=film.wmv'>"}) {
        wished.clear();
        ASSERT_TRUE(Show(u"course\\page.htm"_s, szHtml, false));
        EXPECT_SOON(!wished.isEmpty()) << szHtml;
        EXPECT_FALSE(wished.value(0).value(1).toBool()) << szHtml;
    }
}

TEST_F(CWebHostile, BoxesOfAPageHoldNobodyUp) {
    const QJsonObject got =
        Run(u"for(let i=0;i<500;i++)alert(i); got.ok=confirm('x'); got.text=String(prompt('y'));"
            "onbeforeunload=e=>{e.preventDefault();return 'stay'}; print()"_s);
    EXPECT_EQ(got[u"ok"_s].toBool(true), false);
    EXPECT_EQ(got[u"text"_s].toString(), u"null"_s);
    EXPECT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"course\\inside.txt"_s))) << "held back";
    EXPECT_EQ(Url(), u"file://"_s + m_folder.Path(u"course\\inside.txt"_s));
}

TEST_F(CWebHostile, NoScriptOfAPageRunsWhileItIsEdited) {
    Edit("<p>a</p><script>document.body.textContent='ran'</script>");
    EXPECT_TRUE(Html().startsWith(u"<p>a"_s));
    const QString strImage = u"<img src=\"x\" onerror=\"document.body.textContent='ran'\">"_s;
    SetHtml(u"<p>a</p>"_s + strImage);
    EXPECT_TRUE(m_browser->InsertBrowserText(strImage));
    EXPECT_TRUE(m_browser->InsertBrowserText(u"<img src=\"../inside.png\">"_s));
    EXPECT_SOON(ColourShows(Qt::red));
    EXPECT_EQ(Html().count(strImage), 2) << "what the page holds is kept all the same";
    EXPECT_FALSE(m_browser->ExecuteScript(u"javascript: document.body.innerHTML='ran'"_s));
}

// A page of the web stands in a profile of its own and reads nothing from the disk.
TEST_F(CWebHostile, AWebPageHasTheNetButNotTheDisk) {
    QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
        QTcpSocket* pSocket = m_server.nextPendingConnection();
        QObject::connect(pSocket, &QTcpSocket::readyRead, [this, pSocket] {
            pSocket->readAll();
            pSocket->write("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<p>web</p><img src='" +
                           QUrl::fromLocalFile(m_folder.Native(u"outside.png"_s)).toEncoded() + "'>");
            pSocket->disconnectFromHost();
        });
    });
    const QString strUrl = u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
    EXPECT_FALSE(m_browser->NavigateAndWait(strUrl)) << "not allowed yet";
    m_browser->SetNetworkAllowed(true);
    ASSERT_TRUE(m_browser->NavigateAndWait(strUrl));
    EXPECT_TRUE(QTest::qWaitFor([this] {
        QString strHtml;
        return m_browser->GetBrowserBodyInnerHTML(strHtml) && strHtml.startsWith(u"<p>web</p>"_s);
    }));
    m_browser->show();
    EXPECT_FALSE(QTest::qWaitFor([this] { return ColourShows(Qt::blue); }, 700));
    // And back to a page of the course.
    EXPECT_TRUE(Show(u"course\\b.htm"_s, "<p>b</p><img src=inside.png>", false));
    EXPECT_SOON(ColourShows(Qt::red));
}

// Elements hide what the document has under their names.
TEST_F(CWebHostile, NamesInAPageFoolNoEditing) {
    const QString strNames = u"<p>text</p><img name=\"body\"><form name=\"querySelectorAll\"></form><img "
                             "name=\"execCommand\"><a id=\"vorelWatching\" name=\"vorelChanged\"></a>"
                             "<form name=\"designMode\"><input name=\"parentNode\"></form>"_s;
    Edit(strNames.toUtf8());
    EXPECT_EQ(Html(), strNames);
    QSignalSpy changed(m_browser.get(), &CWebBrowser2Ex::SelectionChanged);
    EXPECT_TRUE(m_browser->InsertBrowserText(u"<b>new</b>"_s));
    EXPECT_TRUE(Html().contains(u"<b>new</b>"_s)) << Html();
    EXPECT_SOON(!changed.isEmpty()) << "nothing would be kept of the work";
}

TEST_F(CWebHostile, CoursesShareNoStorage) {
    const QString strKeep = u"got.old=localStorage.getItem('x'); localStorage.setItem('x','kept')"_s;
    EXPECT_EQ(Run(strKeep)[u"old"_s].toString(), QString());
    EXPECT_EQ(Run(strKeep)[u"old"_s].toString(), u"kept"_s) << "within a course";
    m_folder.Write(u"second\\page.htm"_s, m_folder.Read(u"course\\page.htm"_s));
    m_browser->SetAllowedFolders({m_folder.Path(u"second"_s)}, false);
    ASSERT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"second\\page.htm"_s)));
    EXPECT_SOON(Html().contains(u"\"old\":null"_s)) << Html();
}
