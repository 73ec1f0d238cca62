// Pages that try to get at what is none of theirs. Each try is set beside one that is allowed, so that a page
// which merely didn't run doesn't pass for a page that was kept in.
#include "tests/platform_ui/WebFixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkInterface>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nPatience = 5000;

class CWebHostile : public CWebTest {
protected:
    CWebHostile() {
        m_folder.Write(u"course\\inside.txt"_s, "INSIDE");
        m_folder.Write(u"course\\inside.js"_s, "ran.push('inside')");
        m_folder.Write(u"secret.txt"_s, "SECRET");
        m_folder.Write(u"secret.js"_s, "ran.push('outside')");
        QFile::link(m_folder.Native(u"secret.txt"_s), m_folder.Native(u"course\\link.txt"_s));
        WritePicture(u"course\\inside.png"_s, Qt::red);
        WritePicture(u"outside.png"_s, Qt::blue);
        // The engine leads the program's own sockets astray while no page may use the network.
        m_server.setProxy(QNetworkProxy::NoProxy);
        m_stun.setProxy(QNetworkProxy::NoProxy);
        EXPECT_TRUE(m_server.listen(QHostAddress::AnyIPv4));
        EXPECT_TRUE(m_stun.bind(QHostAddress::LocalHost));
    }

    /// Runs the page, and waits for the tries that it awaits: name → what it got.
    QJsonObject Run(const QString& strTries, bool bNetwork = false) {
        const QString strPage =
            u"<!DOCTYPE html><meta charset=utf-8><pre id=out></pre><script>var ran=[];const got={};"
            "const PORT=%1,STUN=%2,HOST='%4';"
            "const text=async u=>{try{return await(await fetch(u)).text()}catch(e){return 'refused'}};"
            "const xhr=u=>new Promise(r=>{const x=new "
            "XMLHttpRequest;x.onloadend=()=>r(x.responseText||'refused');"
            "try{x.open('GET',u);x.send()}catch(e){r('refused')}});"
            "const load=(tag,key,u)=>new Promise(r=>{const "
            "e=document.createElement(tag);e.onload=()=>r('loaded');"
            "e.onerror=()=>r('refused');e[key]=u;document.body.append(e);setTimeout(()=>r('silent'),1500)});"
            "const frame=u=>new Promise(r=>{const e=document.createElement('iframe');e.src=u;"
            "document.body.append(e);setTimeout(()=>{try{r(e.contentDocument.body.innerText||'refused')}"
            "catch(x){r('refused')}},700)});"
            "(async()=>{%3;got.ran=ran.join();document.getElementById('out').textContent="
            "JSON.stringify(got);document.title='done'})()</script>"_s.arg(m_server.serverPort())
                .arg(m_stun.localPort())
                .arg(strTries, OwnAddress());
        m_browser->SetNetworkAllowed(bNetwork);
        EXPECT_TRUE(Show(u"course\\page.htm"_s, strPage.toUtf8(), false));
        QJsonObject got;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                QString strHtml = Html();
                strHtml = strHtml.mid(strHtml.indexOf(u'{')).section(u"</pre>"_s, 0, 0);
                got = QJsonDocument::fromJson(strHtml.toUtf8()).object();
                return !got.isEmpty();
            },
            3 * c_nPatience));
        return got;
    }
    /// An address of this machine that counts as another machine's, if it has one.
    static QString OwnAddress() {
        for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
            if (!address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol)
                return address.toString();
        }
        return u"127.0.0.1"_s;
    }
    bool ServerWasReached() { return m_server.waitForNewConnection(0) || m_server.hasPendingConnections(); }

    QTcpServer m_server;
    QUdpSocket m_stun;
};

} // namespace

TEST_F(CWebHostile, NothingOutsideTheCourseIsRead) {
    const QJsonObject got = Run(uR"js(
        got.fetchIn=await text('inside.txt'); got.fetchOut=await text('../secret.txt');
        got.xhrIn=await xhr('inside.txt'); got.xhrOut=await xhr('../secret.txt');
        got.caseIn=await xhr('INSIDE.TXT'); got.linkOut=await xhr('link.txt');
        got.doubleOut=await xhr('%252e%252e/secret.txt'); got.passwd=await xhr('file:///etc/passwd');
        got.driveOut=await xhr('file:///Z:/etc/passwd'); got.folder=await xhr('./');
        got.frameIn=await frame('inside.txt'); got.frameOut=await frame('../secret.txt');
        got.frameView=await frame('view-source:file:///etc/passwd');
        got.imgIn=await load('img','src','inside.png'); got.imgOut=await load('img','src','../outside.png');
        got.jsIn=await load('script','src','inside.js'); got.jsOut=await load('script','src','../secret.js');
        got.workerOut=await new Promise(r=>{const w=new Worker(URL.createObjectURL(new Blob(
            ["fetch('"+new URL('../secret.txt',location.href)+"').then(x=>x.text()).then(postMessage,()=>postMessage('refused'))"])));
            w.onmessage=e=>r(e.data);w.onerror=()=>r('refused');setTimeout(()=>r('refused'),1500)});
    )js"_s);
    for (const char* szIn : {"xhrIn", "caseIn", "frameIn"})
        EXPECT_EQ(got[QLatin1String(szIn)].toString(), u"INSIDE"_s) << szIn;
    EXPECT_EQ(got[u"imgIn"_s].toString(), u"loaded"_s);
    EXPECT_EQ(got[u"ran"_s].toString(), u"inside"_s);
    for (auto it = got.begin(); it != got.end(); ++it) {
        const bool bInside = it.key().endsWith(u"In"_s) || it.key() == u"ran"_s;
        EXPECT_TRUE(bInside || it.value() == u"refused"_s)
            << it.key().toStdString() << ": " << it.value().toString().toStdString();
    }
}

TEST_F(CWebHostile, NothingIsSentOut) {
    const QString strTries = uR"js(
        got.fetch=await text('http://127.0.0.1:'+PORT+'/a'); got.xhr=await xhr('http://127.0.0.1:'+PORT+'/b');
        got.img=await load('img','src','http://127.0.0.1:'+PORT+'/c');
        got.js=await load('script','src','http://localhost:'+PORT+'/d');
        got.frame=await frame('http://127.0.0.1:'+PORT+'/e');
        navigator.sendBeacon('http://127.0.0.1:'+PORT+'/f','x');
        got.ws=await new Promise(r=>{try{const w=new WebSocket('ws://127.0.0.1:'+PORT+'/g');
            w.onopen=()=>r('open');w.onerror=()=>r('refused')}catch(e){r('refused')}setTimeout(()=>r('silent'),700)});
        try{const f=document.createElement('form');f.action='http://127.0.0.1:'+PORT+'/h';f.method='post';
            f.target='x';document.body.append(f);f.submit()}catch(e){}
        const call=async w=>{try{const p=new w.RTCPeerConnection({iceServers:[{urls:'stun:127.0.0.1:'+STUN},
            {urls:'turn:'+HOST+':'+PORT+'?transport=tcp',username:'u',credential:'c'}]});
            p.createDataChannel('x');await p.setLocalDescription(await p.createOffer());return 'ran'}
            catch(e){return String(e)}};
        got.rtc=await call(window);
        const blank=document.createElement('iframe');document.body.append(blank);
        got.rtcBlank=await call(blank.contentWindow);
        const doc=document.createElement('iframe');doc.srcdoc='<p>x';document.body.append(doc);
        got.rtcSource=await call(doc.contentWindow); await new Promise(r=>setTimeout(r,200));
        got.rtcSource2=await call(doc.contentWindow);
        document.body.insertAdjacentHTML('beforeend','<iframe src="javascript:1" name=late></iframe>');
        got.rtcScript=await call(frames.late);
        try{new WebTransport('https://127.0.0.1:'+STUN+'/').ready.catch(e=>0);got.quic='ran'}catch(e){got.quic=String(e)}
        got.quicWorker=await new Promise(r=>{const w=new Worker(URL.createObjectURL(new Blob(
            ["try{new WebTransport('https://127.0.0.1:"+STUN+"/').ready.catch(e=>0);postMessage('ran')}",
            "catch(e){postMessage(String(e))}"])));w.onmessage=e=>r(e.data);w.onerror=()=>r('none')});
        await new Promise(r=>setTimeout(r,800));
    )js"_s;
    const QJsonObject got = Run(strTries);
    EXPECT_FALSE(ServerWasReached()) << QJsonDocument(got).toJson().toStdString();
    EXPECT_FALSE(m_stun.waitForReadyRead(300)) << QJsonDocument(got).toJson().toStdString();
    // The same page where the teacher allowed the network: now it gets there.
    Run(strTries, true);
    EXPECT_TRUE(ServerWasReached());
}

TEST_F(CWebHostile, APageDoesNotLeaveTheCourse) {
    m_folder.Write(u"course\\second.htm"_s, "<p>second</p>");
    m_folder.Write(u"other.htm"_s, "<p>other</p>");
    Run(u"got.x=1"_s);
    const QString strPage = Url();
    for (const QString& strTarget : {u"'../other.htm'"_s, u"'file:///etc/passwd'"_s,
                                     u"'http://127.0.0.1:'+PORT"_s, u"'data:text/html,<p>fake'"_s}) {
        EXPECT_TRUE(m_browser->ExecuteScript(u"location.href="_s + strTarget));
        QTest::qWait(300);
        EXPECT_EQ(Url(), strPage) << strTarget.toStdString();
    }
    EXPECT_TRUE(m_browser->ExecuteScript(u"location.href='second.htm'"_s));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Url().endsWith(u"second.htm"_s); }));
    EXPECT_TRUE(m_browser->ExecuteScript(u"window.close()"_s));
    QTest::qWait(200);
    EXPECT_EQ(Html(), u"<p>second</p>"_s);
}

TEST_F(CWebHostile, NewWindowsAreTheProgramsToOpen) {
    QSignalSpy wished(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    Run(u"window.open('inside.txt'); window.open('../secret.txt'); await new Promise(r=>setTimeout(r,300)); got.x=1"_s);
    EXPECT_EQ(wished.size(), 0) << "a page's own wish, without the person's click";
    const QString strInside =
        u"file:///Z:"_s + QString(m_folder.Native(u"course\\inside.txt"_s)).replace(u' ', u"%20"_s);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open(\""_s + strInside +
                                         u"\", null, \"fullscreen=yes\");"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return wished.size() == 1; }));
    EXPECT_EQ(wished.value(0).value(0).toString(), strInside);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open('file:///etc/passwd');"_s));
    QTest::qWait(300);
    EXPECT_EQ(wished.size(), 1);
}

TEST_F(CWebHostile, BoxesOfAPageHoldNobodyUp) {
    const QJsonObject got =
        Run(u"for(let i=0;i<500;i++)alert(i);got.ok=confirm('x');got.text=String(prompt('y'));"
            "onbeforeunload=e=>{e.preventDefault();return 'stay'};print()"_s);
    EXPECT_EQ(got[u"ok"_s].toBool(true), false);
    EXPECT_EQ(got[u"text"_s].toString(), u"null"_s);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"course\\inside.txt"_s)))
        << "held back by the page";
    EXPECT_EQ(Url(), u"file://"_s + m_folder.Path(u"course\\inside.txt"_s));
}

TEST_F(CWebHostile, NoScriptOfAPageRunsWhileItIsEdited) {
    Edit("<meta charset=utf-8><p id=p>a</p><script>document.getElementById('p').textContent='ran'</script>"
         "<img src=none onerror=\"document.getElementById('p').textContent='ran'\">");
    SetHtml(
        u"<p id=\"p\">a</p><img src=\"none\" onerror=\"document.getElementById('p').textContent='ran'\">"_s);
    EXPECT_TRUE(m_browser->InsertBrowserText(
        u"<img src=\"none2\" onerror=\"document.getElementById('p').textContent='ran'\">"_s));
    QTest::qWait(300);
    EXPECT_FALSE(Html().contains(u">ran<"_s)) << Html().toStdString();
    EXPECT_TRUE(Html().contains(u"none2\" onerror="_s)) << "what the page holds is kept all the same";
    EXPECT_FALSE(m_browser->ExecuteScript(u"javascript: document.body.innerHTML='ran'"_s));
}

// A page of the web stands in a profile of its own and reads nothing from the disk.
TEST_F(CWebHostile, AWebPageHasTheNetButNotTheDisk) {
    QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
        QTcpSocket* pSocket = m_server.nextPendingConnection();
        QObject::connect(pSocket, &QTcpSocket::readyRead, [this, pSocket] {
            pSocket->readAll();
            const QByteArray page = "<p>web</p><img src='" +
                                    QUrl::fromLocalFile(m_folder.Native(u"outside.png"_s)).toEncoded() + "'>";
            pSocket->write("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                           QByteArray::number(page.size()) + "\r\n\r\n" + page);
            pSocket->disconnectFromHost();
        });
    });
    const QString strUrl = u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
    m_browser->resize(640, 480);
    m_browser->show();
    EXPECT_FALSE(m_browser->NavigateAndWait(strUrl)) << "not allowed yet";
    m_browser->SetNetworkAllowed(true);
    ASSERT_TRUE(m_browser->NavigateAndWait(strUrl));
    EXPECT_EQ(Url(), strUrl);
    EXPECT_TRUE(Html().startsWith(u"<p>web</p>"_s));
    EXPECT_FALSE(QTest::qWaitFor([this] { return ColourShows(Qt::blue); }, 700));
    // And back to a page of the course.
    EXPECT_TRUE(Show(u"course\\b.htm"_s, "<p>b</p><img src=inside.png>", false));
    EXPECT_TRUE(QTest::qWaitFor([this] { return ColourShows(Qt::red); }));
}
