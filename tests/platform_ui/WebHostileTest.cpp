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

const QString c_strPage = uR"(<!DOCTYPE html><meta charset=utf-8><pre id=out></pre><script>
    var ran=[]; const got={}, PORT=%1, STUN=%2, HOST='%3', wait=n=>new Promise(r=>setTimeout(r,n));
    const text=async u=>{try{return await(await fetch(u)).text()}catch(e){return 'refused'}};
    const xhr=u=>new Promise(r=>{const x=new XMLHttpRequest;x.onloadend=()=>r(x.responseText||'refused');
        try{x.open('GET',u);x.send()}catch(e){r('refused')}});
    const load=(tag,u)=>new Promise(r=>{const e=document.createElement(tag);e.onload=()=>r('loaded');
        e.onerror=()=>r('refused');e.src=u;document.body.append(e);setTimeout(()=>r('silent'),1500)});
    const frame=async u=>{const e=document.createElement('iframe');e.src=u;document.body.append(e);await wait(700);
        try{return e.contentDocument.body.innerText||'refused'}catch(x){return 'refused'}};
    (async()=>{%4; got.ran=ran.join(); document.getElementById('out').textContent=JSON.stringify(got)})()</script>)"_s;

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
        EXPECT_TRUE(m_server.listen(QHostAddress::AnyIPv4) && m_stun.bind(QHostAddress::LocalHost));
    }
    /// Runs the page, and waits for the tries that it awaits: name → what it got.
    QJsonObject Run(const QString& strTries, bool bNetwork = false) {
        // An address of this machine that counts as another machine's, if it has one.
        QString strHost = u"127.0.0.1"_s;
        for (const QHostAddress& address : QNetworkInterface::allAddresses())
            strHost = address.isGlobal() && address.protocol() == QAbstractSocket::IPv4Protocol
                          ? address.toString()
                          : strHost;
        m_browser->SetNetworkAllowed(bNetwork);
        const QString strPage =
            c_strPage.arg(m_server.serverPort()).arg(m_stun.localPort()).arg(strHost, strTries);
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
    bool ServerWasReached() { return m_server.waitForNewConnection(0) || m_server.hasPendingConnections(); }

    QTcpServer m_server;
    QUdpSocket m_stun;
};

} // namespace

TEST_F(CWebHostile, NothingOutsideTheCourseIsRead) {
    const QJsonObject got = Run(uR"js(
        got.xhrIn=await xhr('inside.txt'); got.caseIn=await xhr('INSIDE%252eTXT'); got.frameIn=await frame('inside.txt');
        got.imgIn=await load('img','inside.png'); got.jsIn=await load('script','inside.js');
        got.fetch=await text('../secret.txt'); got.up=await xhr('../secret.txt'); got.link=await xhr('link.txt');
        got.doubled=await xhr('%252e%252e/secret.txt'); got.drive=await xhr('file:///Z:/etc/passwd');
        got.folder=await xhr('./'); got.frame=await frame('../secret.txt');
        got.view=await frame('view-source:file:///etc/passwd');
        got.img=await load('img','../outside.png'); got.js=await load('script','../secret.js');
        got.worker=await new Promise(r=>{const w=new Worker(URL.createObjectURL(new Blob(["fetch('"+
            new URL('../secret.txt',location.href)+"').then(x=>x.text()).then(postMessage,()=>postMessage('refused'))"])));
            w.onmessage=e=>r(e.data); w.onerror=()=>r('refused'); setTimeout(()=>r('refused'),1500)});)js"_s);
    EXPECT_EQ(got[u"ran"_s].toString(), u"inside"_s);
    for (auto it = got.begin(); it != got.end(); ++it) {
        const bool bInside = it.key().endsWith(u"In"_s) || it.key() == u"ran"_s;
        EXPECT_EQ(it.value() == u"refused"_s, !bInside) << it.key().toStdString();
    }
}

TEST_F(CWebHostile, NothingIsSentOut) {
    const QString strTries = uR"js(
        const at='http://127.0.0.1:'+PORT; await text(at); await xhr(at); await load('img',at);
        await load('script','http://localhost:'+PORT); await frame(at); navigator.sendBeacon(at,'x');
        try{new WebSocket('ws://127.0.0.1:'+PORT)}catch(e){}
        document.body.insertAdjacentHTML('beforeend','<form action='+at+' method=post target=x id=form>');
        document.getElementById('form').submit();
        const call=async w=>{try{const p=new w.RTCPeerConnection({iceServers:[{urls:'stun:127.0.0.1:'+STUN},
            {urls:'turn:'+HOST+':'+PORT+'?transport=tcp',username:'u',credential:'c'}]});
            p.createDataChannel('x');await p.setLocalDescription(await p.createOffer())}catch(e){}};
        await call(window);
        for(const kind of ['','src="javascript:1"','srcdoc="<p>x"']) {
            document.body.insertAdjacentHTML('beforeend','<iframe '+kind+'></iframe>');
            const w=frames[frames.length-1]; await call(w); await wait(200); await call(w)}
        const quic="try{new WebTransport('https://127.0.0.1:"+STUN+"/').ready.catch(e=>0)}catch(e){}";
        eval(quic); new Worker(URL.createObjectURL(new Blob([quic]))); await wait(800);)js"_s;
    Run(strTries);
    EXPECT_FALSE(ServerWasReached() || m_stun.waitForReadyRead(300));
    // The same page where the teacher allowed the network: now it gets there.
    Run(strTries, true);
    EXPECT_TRUE(ServerWasReached());
}

TEST_F(CWebHostile, APageDoesNotLeaveTheCourse) {
    m_folder.Write(u"course\\second.htm"_s, "<p>second</p>");
    Run(QString());
    const QString strPage = Url();
    for (const QString& strTarget : {u"'../secret.txt'"_s, u"'file:///etc/passwd'"_s,
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
    Run(u"window.open('inside.txt'); window.open('../secret.txt'); await wait(300)"_s);
    EXPECT_EQ(wished.size(), 0) << "a page's own wish, without the person's click";
    const QString strInside =
        u"file:///Z:"_s + m_folder.Native(u"course\\inside.txt"_s).replace(u' ', u"%20"_s);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open(\""_s + strInside + u"\");"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return wished.size() == 1; }));
    EXPECT_EQ(wished.value(0).value(0).toString(), strInside);
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript: window.open('file:///etc/passwd');"_s));
    QTest::qWait(300);
    EXPECT_EQ(wished.size(), 1);
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
    QTest::qWait(300);
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
    EXPECT_TRUE(Html().startsWith(u"<p>web</p>"_s));
    m_browser->show();
    EXPECT_FALSE(QTest::qWaitFor([this] { return ColourShows(Qt::blue); }, 700));
    // And back to a page of the course.
    EXPECT_TRUE(Show(u"course\\b.htm"_s, "<p>b</p><img src=inside.png>", false));
    EXPECT_TRUE(QTest::qWaitFor([this] { return ColourShows(Qt::red); }));
}
