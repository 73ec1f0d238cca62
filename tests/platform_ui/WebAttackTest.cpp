// What a hostile page tries, and what becomes of it. Each try to read stands beside the same one
// at a file of the course, and each try to send beside the same one by a page of the web: so a page that
// merely didn't run, or a try that works no longer at all, doesn't pass for one that was refused.
#include "tests/platform_ui/WebFixture.h"
#include "tests/support/Cases.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <netdb.h>

// Whoever asks for a name tells it to others. In place of the platform's own function.
static QSet<QByteArray> s_askedNames;
static QMutex s_askedLock;
extern "C" int getaddrinfo(const char* szName, const char*, const addrinfo*, addrinfo**) {
    const QMutexLocker locked(&s_askedLock);
    s_askedNames.insert(QByteArray(szName));
    return EAI_NONAME;
}

namespace {

/// A place to send something to: it counts who calls.
class CListener {
public:
    CListener() {
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] { Answer(); });
        EXPECT_TRUE(m_server.listen(QHostAddress::AnyIPv4) && m_socket.bind(QHostAddress::AnyIPv4));
    }
    /// How many calls came since the last asking.
    int TakeCalls() {
        Said();
        m_nSaid = 0;
        return std::exchange(m_nCalls, 0);
    }
    /// How many calls have said something since then.
    int Said() {
        for (; m_socket.hasPendingDatagrams(); ++m_nCalls, ++m_nSaid)
            m_socket.receiveDatagram(0);
        return m_nSaid;
    }
    int TcpPort() const { return m_server.serverPort(); }
    int UdpPort() const { return m_socket.localPort(); }

private:
    void Answer() {
        while (QTcpSocket* pSocket = m_server.nextPendingConnection()) {
            ++m_nCalls;
            QObject::connect(pSocket, &QTcpSocket::readyRead, pSocket, [this, pSocket] {
                ++m_nSaid;
                pSocket->readAll();
                pSocket->write("HTTP/1.0 404 No\r\nAccess-Control-Allow-Origin: *\r\n\r\n");
                pSocket->disconnectFromHost();
            });
        }
    }

    QTcpServer m_server;
    QUdpSocket m_socket;
    int m_nCalls = 0;
    int m_nSaid = 0;
};

/// Serves the files below a folder as a site of the web.
class CSite {
public:
    explicit CSite(const CTempFolder& folder) : m_folder(folder) {
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            QTcpSocket* pSocket = m_server.nextPendingConnection();
            QObject::connect(pSocket, &QTcpSocket::readyRead, pSocket, [this, pSocket] {
                const QString strName = QString::fromUtf8(pSocket->readAll().split(' ').value(1).mid(1));
                const bool bScript = strName.endsWith(u".js"_s);
                pSocket->write("HTTP/1.0 200 OK\r\nContent-Type: text/" +
                               QByteArray(bScript ? "javascript" : "html") + "\r\n\r\n" +
                               m_folder.Read(u"course\\"_s + strName));
                pSocket->disconnectFromHost();
            });
        });
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    }
    QString Url(const QString& strName) const {
        return u"http://127.0.0.1:%1/%2"_s.arg(m_server.serverPort()).arg(strName);
    }

private:
    const CTempFolder& m_folder;
    QTcpServer m_server;
};

QSet<QByteArray> TakeAskedNames() {
    const QMutexLocker locked(&s_askedLock);
    QSet<QByteArray> asked;
    for (const QByteArray& name : std::exchange(s_askedNames, {}))
        asked.insert(name.endsWith('.') ? name.chopped(1) : name);
    return asked;
}

class CWebAttack : public CWebTest {
protected:
    CWebAttack() {
        QFile script(u":/tests/hostile.js"_s);
        EXPECT_TRUE(script.open(QIODevice::ReadOnly));
        m_folder.Write(u"course\\hostile.js"_s, script.readAll());
        for (const QString& strFolder : {u"course\\data"_s, u"course2"_s, u"out"_s})
            Fill(strFolder);
        QFile::link(m_folder.Native(u"out"_s), m_folder.Native(u"course\\linked"_s));
    }
    /// A file of each kind, with what a try would bring of it.
    void Fill(const QString& strFolder) {
        const auto write = [&](const char* szEnd, const QByteArray& bytes) {
            m_folder.Write(strFolder + u"\\s"_s + QLatin1String(szEnd), bytes);
        };
        write(".txt", "SECRET");
        write(".htm", "<body style='background:#ff00ff'>SECRET");
        write(".js",
              "try{self[document.currentScript.src.split('?')[1]]='SECRET'}catch(e){self.told='SECRET'}");
        write(".worker.js", "postMessage('SECRET')");
        write(".mjs", "export const told='SECRET'");
        write(".css", "#secret{color:red}");
        write(".svg", "<svg xmlns='http://www.w3.org/2000/svg'><symbol id='a'><rect width='9' height='9'/>"
                      "<text>SECRET</text></symbol></svg>");
        write(".xml", "<a>SECRET</a>");
        write(".vtt", "WEBVTT\n\n00:00.000 --> 00:09.000\nSECRET\n");
        write(".wav", QByteArray::fromHex("524946462c00000057415645666d74201000000001000100401f0000401f0000"
                                          "0100080064617461080000008080808080808080"));
        WritePicture(strFolder + u"\\s.png"_s, Qt::blue);
        QDirIterator fonts(u"/usr/share/fonts"_s, {u"*.ttf"_s}, QDir::Files, QDirIterator::Subdirectories);
        QFile font(fonts.hasNext() ? fonts.next() : QString());
        if (font.open(QIODevice::ReadOnly))
            write(".ttf", font.readAll());
    }
    void WriteJob(const QString& strJob) {
        const QString strHtml = u"<!DOCTYPE html><meta charset=utf-8><body><script src=hostile.js></script>"
                                "<script>run(() => %1)</script>"_s.arg(strJob);
        m_folder.Write(u"course\\page.htm"_s, strHtml.toUtf8());
    }
    /// What the page that shows has told by the time that it has tried all.
    QJsonValue WaitForReport() {
        QJsonObject got;
        const auto hasRun = [&] {
            QString strHtml;
            m_browser->GetBrowserBodyInnerHTML(strHtml);
            const QString strOut = strHtml.section(u"id=\"out\">"_s, 1).section(u"</pre>"_s, 0, 0);
            got = QJsonDocument::fromJson(strOut.toUtf8()).object();
            return !got.isEmpty();
        };
        EXPECT_TRUE(QTest::qWaitFor(hasRun, 60000)) << Url();
        return got[u"done"_s];
    }
    bool ShowSite() {
        m_browser->SetNetworkAllowed(true);
        m_browser->show();
        return m_browser->NavigateAndWait(m_site.Url(u"page.htm"_s));
    }

    CSite m_site{m_folder};
};

/// Tries that this engine refuses wherever the file lies, and some that need what the machine may lack.
const QStringList c_refusedAnyway =
    u"EventSource|frame of data|iframe, filesystem|font|iframe, view-source|shared worker|xml entity|xslt document()"_s
        .split(u'|');
/// Tries to send that a page of the web has no luck with either: the engine hasn't them, the gate closes them
/// for all, or the program is asked, which is another test's.
const QStringList c_unsentAnyway =
    u"svg use|form, into a window|link, followed|link, ping|window.open|prerender|preconnect|dns-prefetch|manifest|shared worker|service worker|policy report|name of a hint|name of a link|name of a call|name of a call over TCP|name of a call's place|speculation rules|WebTransport"_s
        .split(u'|');

} // namespace

TEST_F(CWebAttack, Reading) {
    const QString strRoot = QUrl::fromLocalFile(m_folder.Native()).path(QUrl::FullyEncoded);
    QJsonObject all{{u"inside"_s, u"data/s"_s}};
    // How a place outside is spelled by a page in "course", of a file in "out" beside it; %1 is the path of
    // both.
    for (const SCase& spelling : ReadCases(VOREL_SPELLINGS))
        all[spelling.strWhat] = QString(spelling.Texts[0]).replace(u"%1"_s, strRoot);
    const QJsonObject some{
        {u"inside"_s, u"data/s"_s}, {u".."_s, u"../out/s"_s}, {u"absolute"_s, all.value(u"absolute"_s)}};
    const QJsonObject ofWeb{{u"course"_s, QString(u"file://"_s + strRoot + u"/course/data/s"_s)},
                            {u"absolute"_s, all.value(u"absolute"_s)},
                            {u"a drive"_s, all.value(u"a drive"_s)}};
    m_folder.Write(u"course\\first.htm"_s, "<a href=page.htm>x</a>");
    m_folder.Write(u"course\\outer.htm"_s,
                   "<body><iframe src=page.htm></iframe><script src=hostile.js></script>");
    const auto job = [](const QJsonObject& places) {
        return u"tryReading(%1)"_s.arg(QString::fromUtf8(QJsonDocument(places).toJson()));
    };
    struct SRound {
        const char* szName;
        QJsonObject Places;
        std::function<bool()> Begin;
    };
    const auto show = [&](const QString& strPage) { return Show(strPage, m_folder.Read(strPage), false); };
    const SRound rounds[] = {
        {"a page", all, [&] { return show(u"course\\page.htm"_s); }},
        {"behind a link", some,
         [&] {
             return show(u"course\\first.htm"_s) && m_browser->ExecuteScript(u"document.links[0].click()"_s);
         }},
        {"a frame", some, [&] { return show(u"course\\outer.htm"_s); }},
        {"a page of the web", ofWeb, [&] { return ShowSite(); }},
    };
    for (const SRound& round : rounds) {
        WriteJob(job(round.Places));
        ASSERT_TRUE(round.Begin()) << round.szName;
        const QJsonObject got = WaitForReport().toObject();
        EXPECT_GT(got.size(), 40) << round.szName;
        for (auto it = got.begin(); it != got.end(); ++it) {
            QJsonObject row = it.value().toObject();
            const QString strInside = row.take(u"inside"_s).toString();
            QStringList through;
            for (auto cell = row.begin(); cell != row.end(); ++cell) {
                if (!cell.value().toString().isEmpty())
                    through.append(cell.key());
            }
            EXPECT_EQ(through, QStringList()) << it.key() << ", " << round.szName;
            if (round.Places.contains(u"inside"_s)) {
                EXPECT_TRUE(!strInside.isEmpty() || c_refusedAnyway.contains(it.key()))
                    << it.key() << " is no try, " << round.szName;
            }
        }
    }
}

TEST_F(CWebAttack, Sending) {
    std::vector<std::unique_ptr<CListener>> listeners;
    QStringList ports, udpPorts;
    for (int i = 0; i < 80; ++i) {
        listeners.push_back(std::make_unique<CListener>());
        ports.append(QString::number(listeners.back()->TcpPort()));
        udpPorts.append(QString::number(listeners.back()->UdpPort()));
    }
    // An address of this machine that counts as another machine's, if it has one.
    QString strHost = u"127.0.0.1"_s;
    for (const QHostAddress& address : QNetworkInterface::allAddresses())
        strHost = address.isGlobal() && address.protocol() == QAbstractSocket::IPv4Protocol
                      ? address.toString()
                      : strHost;
    const QString strJob =
        u"trySending('%1',[%2],[%3],%4)"_s.arg(strHost, ports.join(u','), udpPorts.join(u','));
    WriteJob(strJob.arg(u"false"_s));
    const auto ofCourse = [&] {
        return Show(u"course\\page.htm"_s, m_folder.Read(u"course\\page.htm"_s), false);
    };
    CWebBrowser2Ex other;
    const std::function<bool()> rounds[] = {
        ofCourse,
        // Another surface has the network meanwhile, and has been to the very places.
        [&] {
            other.SetNetworkAllowed(true);
            other.show();
            const QString strHtml = u"<body><script>for (const port of [%2])"
                                    "fetch(`http://%1:${port}/`, {mode: 'no-cors'})</script>"_s;
            m_folder.Write(u"course\\everywhere.htm"_s, strHtml.arg(strHost, ports.join(u',')).toUtf8());
            const auto isCalled = [](const auto& pListener) {
                return pListener->Said() > 0 && pListener->TakeCalls() > 0;
            };
            std::vector<CListener*> left;
            for (const auto& pListener : listeners)
                left.push_back(pListener.get());
            return other.NavigateAndWait(m_site.Url(u"everywhere.htm"_s)) &&
                   QTest::qWaitFor([&] { return std::erase_if(left, isCalled), left.empty(); }, 20000) &&
                   ofCourse();
        },
        [&] {
            WriteJob(strJob.arg(u"true"_s));
            return ShowSite();
        },
    };
    QJsonArray names, done;
    std::vector<QList<int>> calls;
    for (const auto& begin : rounds) {
        ASSERT_TRUE(begin());
        const QJsonValue report = WaitForReport();
        names = report[u"names"_s].toArray();
        done = report[u"done"_s].toArray();
        ASSERT_LE(size_t(names.size()), listeners.size());
        calls.emplace_back();
        const QSet<QByteArray> asked = TakeAskedNames();
        for (size_t i = 0; i < listeners.size(); ++i) {
            const bool bAsked = asked.contains("n" + QByteArray::number(i) + ".vorel.test");
            calls.back().append(listeners[i]->TakeCalls() + (bAsked ? 2 : 0));
        }
    }
    for (int i = 0; i < names.size(); ++i) {
        const QString strName = names[i].toString();
        // The first call of a page of the web only opens the way.
        const QList<bool> reached{calls[0][i] > 0, calls[1][i] > 0, calls[2][i] > 1};
        EXPECT_FALSE(reached[0] || reached[1]) << strName;
        // Nobody hears of a call: at least a page of the web could make it.
        const bool bCall = strName.startsWith(u"call"_s);
        EXPECT_EQ(bCall ? done.contains(strName) : reached[2], bCall || !c_unsentAnyway.contains(strName))
            << strName << " is no try";
    }
}
