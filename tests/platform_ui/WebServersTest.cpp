// What servers of the web do, and what the person sees of it.
#include "platform/ui/Texts.h"
#include "tests/platform_ui/WebFixture.h"

#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>

namespace {

class CWebServers : public CWebTest {
protected:
    CWebServers() {
        Listen(m_server);
        m_browser->resize(640, 480);
        m_browser->show();
        m_browser->SetNetworkAllowed(true);
    }
    /// A request that no reply is given for is never answered.
    void Listen(QTcpServer& server) {
        QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [this, &server] {
            QTcpSocket* pSocket = server.nextPendingConnection();
            QObject::connect(pSocket, &QTcpSocket::readyRead, pSocket, [this, pSocket] {
                const QByteArray name = pSocket->readAll().split('\r').value(0).split(' ').value(1);
                m_asked.append(name);
                pSocket->write(m_replies.value(name));
                if (m_replies.contains(name) && !name.startsWith("page.example:"))
                    pSocket->disconnectFromHost();
            });
        });
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    }
    QString At(const QString& strName) const {
        return u"http://127.0.0.1:%1/%2"_s.arg(m_server.serverPort()).arg(strName);
    }
    /// What comes of an address: the page's text or that of the note.
    QString Outcome(const QString& strUrl) {
        QString strHtml, strNote;
        EXPECT_TRUE(m_browser->NavigateAndWait(strUrl));
        const bool bCame = QTest::qWaitFor(
            [&] {
                strNote = Note();
                return (m_browser->GetBrowserBodyInnerHTML(strHtml) && !strHtml.isEmpty()) ||
                       strNote.startsWith(UiTexts::c_strPageFailed);
            },
            10000);
        EXPECT_TRUE(bCame) << strUrl;
        return strHtml.isEmpty() ? strNote.section(u'\n', 0, 0) : strHtml;
    }

    QTcpServer m_server;
    QHash<QByteArray, QByteArray> m_replies{
        {"/slow", "HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<p>web</p><img src=/never>"}};
    QByteArrayList m_asked;
};

} // namespace

TEST_F(CWebServers, ASlowServerHoldsNobodyUp) {
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(m_browser->NavigateAndWait(At(u"silent"_s)));
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_FALSE(CWebBrowser2Ex::IsCallRunning());
    EXPECT_EQ(Url(), At(u"silent"_s));
    EXPECT_SOON(Note().startsWith(UiTexts::c_strPageOpening));
    ExpectNoText();
    // On to another page meanwhile, which is readable though not all of it comes.
    EXPECT_EQ(Outcome(At(u"slow"_s)), u"<p>web</p><img src=\"/never\">"_s);
    EXPECT_EQ(Note(), QString());
    EXPECT_SOON(m_asked.contains("/never"));
    // A page of the course likewise, with a sign that the program works.
    bool bCursor = false;
    QTimer::singleShot(1200, [&] { bCursor = QApplication::overrideCursor() != nullptr; });
    clock.start();
    EXPECT_TRUE(Show(u"course\\a.htm"_s,
                     "<p>a</p><img src=" + At(u"never"_s).toUtf8() +
                         "><script>for(const t=Date.now();Date.now()<t+2000;);</script>",
                     false));
    EXPECT_LT(clock.elapsed(), 8000);
    EXPECT_TRUE(bCursor && QApplication::overrideCursor() == nullptr);
    EXPECT_TRUE(Html().startsWith(u"<p>a</p>"_s));
}

TEST_F(CWebServers, ServersHaveNoWayToTheMachineOrThePerson) {
    m_folder.Write(u"secret.htm"_s, "SECRET");
    const auto redirect = [](const QByteArray& target) -> QByteArray {
        return "HTTP/1.0 302 Found\r\nLocation: " + target + "\r\n\r\n";
    };
    const QByteArray file = QUrl::fromLocalFile(m_folder.Native(u"secret.htm"_s)).toEncoded();
    m_replies["/file"] = redirect(file);
    m_replies["/smb"] = redirect("smb://127.0.0.1/x");
    m_replies["/refresh"] =
        "HTTP/1.0 200 OK\r\nContent-Type: text/html\r\nRefresh: 0;url=" + file + "\r\n\r\n<p>r</p>";
    m_replies["/password"] = "HTTP/1.0 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                             "Content-Type: text/html\r\n\r\n<p>no</p>";
    m_replies["/download"] = "HTTP/1.0 200 OK\r\nContent-Disposition: attachment; filename=x.exe\r\n\r\nMZ";
    const std::pair<QString, QString> rows[] = {{u"file"_s, UiTexts::c_strPageFailed},
                                                {u"smb"_s, UiTexts::c_strPageFailed},
                                                {u"refresh"_s, u"<p>r</p>"_s},
                                                {u"password"_s, UiTexts::c_strPageFailed},
                                                {u"download"_s, UiTexts::c_strPageFailed}};
    for (const auto& [strName, strOutcome] : rows) {
        EXPECT_EQ(Outcome(At(strName)), strOutcome) << strName;
        QTest::qWait(300);
        QString strHtml;
        m_browser->GetBrowserBodyInnerHTML(strHtml);
        EXPECT_FALSE(strHtml.contains(u"SECRET"_s)) << strName;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << strName;
    }
}

TEST_F(CWebServers, ACertificateOfNobodyIsRefused) {
    QProcess maker;
    maker.start(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-subj"_s,
                               u"/CN=127.0.0.1"_s, u"-keyout"_s, u"-"_s});
    ASSERT_TRUE(maker.waitForFinished());
    const QByteArray made = maker.readAllStandardOutput();
    QSslConfiguration configuration;
    configuration.setPrivateKey(QSslKey(made, QSsl::Rsa));
    configuration.setLocalCertificate(QSslCertificate(made));
    QSslServer server;
    server.setSslConfiguration(configuration);
    Listen(server);
    m_replies["/"] = m_replies["/slow"];
    EXPECT_EQ(Outcome(u"https://127.0.0.1:%1/"_s.arg(server.serverPort())), UiTexts::c_strPageFailed);
    EXPECT_TRUE(m_asked.isEmpty());
}

TEST_F(CWebServers, TheProxyOfTheSchoolIsUsed) {
    m_replies["page.example:80"] = "HTTP/1.0 200 OK\r\n\r\n";
    m_replies["/a"] = "HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<p>by proxy</p>";
    qputenv("http_proxy", "127.0.0.1:" + QByteArray::number(m_server.serverPort()));
    EXPECT_EQ(Outcome(u"http://page.example/a"_s), u"<p>by proxy</p>"_s);
    // A sign for the page may be asked for behind it.
    EXPECT_EQ(m_asked.mid(0, 2), (QByteArrayList{"page.example:80", "/a"}));
    qunsetenv("http_proxy");
}

// A page of another place may not be looked into, and its film plays all the same.
TEST_F(CWebServers, AFilmOfAnotherPlaceStaysInItsFrame) {
    QTcpServer other;
    Listen(other);
    const QByteArray sound =
        QByteArray::fromHex(
            "52494646a43e000057415645666d74201000000001000100401f0000803e00000200100064617461803e0000") +
        QByteArray(16000, '\0');
    m_replies["/a.wav"] = "HTTP/1.0 200 OK\r\nContent-Type: audio/wav\r\n\r\n" + sound;
    m_replies["/gone.mp4"] = "HTTP/1.0 404 Not Found\r\nContent-Type: text/html\r\n\r\n<p>gone";
    const QByteArray place = "http://localhost:" + QByteArray::number(other.serverPort());
    m_replies["/films"] = "HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<iframe src='" + place +
                          "/a.wav'></iframe><iframe src='" + place + "/gone.mp4'></iframe>";
    EXPECT_TRUE(m_browser->NavigateAndWait(At(u"films"_s)));
    QString strHtml;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return m_browser->GetBrowserBodyInnerHTML(strHtml) && strHtml.contains(u"blank"_s); }, 20000))
        << "no card for what is gone";
    EXPECT_TRUE(strHtml.contains(u"/a.wav"_s)) << strHtml.toStdString();
}
