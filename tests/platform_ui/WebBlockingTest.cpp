// What a page does to hold the program up: while it is at it the windows are painted and timers fire, and the
// next page shows in a bounded time.
#include "platform/ui/Texts.h"
#include "tests/platform_ui/WebFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct SHoldUp {
    const char* szName;
    /// What runs 300 ms after the load, or at once behind it.
    const char* szScript;
    bool bAtOnce = false;
};
constexpr SHoldUp c_holdUps[] = {
    {"nothing", ""},
    {"loop without end", "for(;;);"},
    {"loop behind the load", "for(;;);", true},
    {"alert behind the load", "for(;;)alert(1)", true},
    {"loop of a timer", "setInterval(()=>{for(const t=Date.now();Date.now()<t+3000;);},0)"},
    {"alert", "for(;;)alert('x'.repeat(9999))"},
    {"confirm", "for(;;)confirm('x')"},
    {"prompt", "for(;;)prompt('x','y')"},
    {"print", "setInterval(print,0)"},
    {"leaving question",
     "onbeforeunload=e=>{e.preventDefault();return 'stay'};onpagehide=onunload=()=>{for(;;)alert(1)}"},
    {"console", "for(;;)console.log('x'.repeat(99999))"},
    {"console, errors", "for(;;)console.error(1)"},
    {"title", "setInterval(()=>{for(let i=0;i<9999;i++)document.title='x'.repeat(999)+i},0)"},
    {"icon", "setInterval(()=>{for(let i=0;i<99;i++){const l=document.createElement('link');l.rel='icon';"
             "l.href='data:image/png,'+Math.random();document.head.append(l)}},0)"},
    {"places", "setInterval(()=>{for(let i=0;i<999;i++)try{location.hash=Math.random()}catch(e){}},0)"},
    {"history",
     "setInterval(()=>{for(let i=0;i<999;i++)try{history.pushState(0,0,'#'+Math.random())}catch(e){}},0)"},
    {"frames that reload",
     "for(let i=0;i<50;i++){const f=document.createElement('iframe');f.srcdoc="
     "'<script>setInterval(()=>location.reload(),0)</'+'script>';document.body.append(f)}"},
    {"reload", "location.reload()"},
    {"to itself", "setInterval(()=>{location.href='b.htm?'+Math.random()},0)"},
    {"windows", "setInterval(()=>{for(let i=0;i<99;i++)open('b.htm')},0)"},
    {"downloads", "setInterval(()=>{for(let i=0;i<99;i++){const a=document.createElement('a');a.download='x';"
                  "a.href=URL.createObjectURL(new Blob(['x']));a.click()}},0)"},
    {"selection",
     "document.designMode='on';setInterval(()=>{for(let i=0;i<9999;i++)getSelection().selectAllChildren("
     "i%2?document.body:document.head)},0)"},
    {"written without end", "for(;;)document.write('<p>x')"},
    {"memory", "const a=[];for(;;)a.push(new Array(1e6).fill(Math.random()))"},
    {"a huge page",
     "let b=document.body;for(let i=0;i<3e6;i++)b.appendChild(document.createElement('p')).textContent='x'"},
    {"files to choose", "setInterval(()=>{const i=document.createElement('input');i.type='file';i.click();"
                        "try{showOpenFilePicker()}catch(e){}},0)"},
    {"wishes",
     "setInterval(()=>{navigator.geolocation.getCurrentPosition(()=>0);Notification.requestPermission();"
     "navigator.mediaDevices&&navigator.mediaDevices.getUserMedia({audio:1,video:1}).catch(()=>0);"
     "navigator.clipboard&&navigator.clipboard.readText().catch(()=>0);document.body.requestFullscreen()."
     "catch"
     "(()=>0);document.body.requestPointerLock();try{navigator.registerProtocolHandler('web+x','http://x/"
     "%s')}"
     "catch(e){}},0)"},
    {"the window",
     "setInterval(()=>{moveTo(0,0);resizeTo(9,9);focus();blur();close();window.open('','_self').close()},0)"},
    {"a worker in a loop", "for(let i=0;i<4;i++)new Worker(URL.createObjectURL(new Blob(['for(;;);'])))"},
    {"crash of itself", "location='chrome://crash'"},
};

/// What this process holds, and how many of its page processes are at work.
struct SLoad {
    qint64 nMegabytes = 0;
    int nBusy = 0;
};
SLoad LoadOfProcesses() {
    SLoad load;
    for (const QString& strProcess : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        QFile stat(u"/proc/%1/stat"_s.arg(strProcess));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        const QList<QByteArray> words = text.mid(text.lastIndexOf(')') + 2).split(' ');
        const bool bOwn = strProcess.toLongLong() == QCoreApplication::applicationPid();
        const bool bPage = text.contains("(QtWebEngineProc") || text.contains("(chrome");
        if (bOwn)
            load.nMegabytes = words.value(21).toLongLong() * 4 / 1024;
        const bool bOfOurs = words.value(2).toInt() == getpgrp();
        load.nBusy += bPage && bOfOurs && words.value(0) == "R" && !bOwn ? 1 : 0;
    }
    return load;
}

class CWebBlocking : public CWebTest {
protected:
    QString Note() const {
        const auto* pNote = m_browser->findChild<QLabel*>(u"webNote"_s);
        return pNote != nullptr && pNote->isVisible() ? pNote->text() : QString();
    }
    /// Where the person goes next; how long it took in ms, or nothing when it doesn't show.
    std::optional<qint64> GoOn() {
        m_folder.Write(u"course\\good.htm"_s, "<p>good</p>");
        QElapsedTimer clock;
        clock.start();
        const bool bShown = m_browser->NavigateAndWait(m_folder.Path(u"course\\good.htm"_s));
        const qint64 nTook = clock.elapsed();
        return bShown && Html() == u"<p>good</p>"_s ? std::optional(nTook) : std::nullopt;
    }
};

} // namespace

TEST_F(CWebBlocking, ThePersonIsNotHeldUp) {
    m_folder.Write(u"course\\b.htm"_s, "<p>b</p>");
    std::printf(
        "  To hold up            | input held | at a call | longest pause | next page after | memory | "
        "windows\n");
    for (const SHoldUp& holdUp : c_holdUps) {
        const QByteArray begin = holdUp.bAtOnce ? "onload=()=>setTimeout(()=>{" : "setTimeout(()=>{";
        const QByteArray end = holdUp.bAtOnce ? "},0)" : "},300)";
        QElapsedTimer clock;
        clock.start();
        EXPECT_TRUE(Show(u"course\\bad.htm"_s,
                         "<p>x</p><script>" + begin + holdUp.szScript + end + "</script>", false))
            << holdUp.szName;
        const qint64 nHeld = clock.elapsed();
        const QRect place = m_browser->geometry();
        const auto nWindows = QApplication::topLevelWidgets().size();
        const qint64 nBefore = LoadOfProcesses().nMegabytes;
        qint64 nLongest = 0;
        QElapsedTimer since;
        QTimer ticks;
        QObject::connect(&ticks, &QTimer::timeout, [&] { nLongest = qMax(nLongest, since.restart()); });
        since.start();
        ticks.start(10);
        QTest::qWait(1500);
        ticks.stop();
        const bool bLoops = QLatin1String(holdUp.szName) == u"loop without end";
        EXPECT_TRUE(!bLoops || LoadOfProcesses().nBusy > 0);
        QString strSlide;
        clock.start();
        m_browser->GetSlideFrameLocation(strSlide);
        const qint64 nAsked = clock.elapsed();
        const auto nNext = GoOn();
        const qint64 nMemory = LoadOfProcesses().nMegabytes - nBefore;
        EXPECT_TRUE(nNext.has_value()) << holdUp.szName;
        EXPECT_LT(qMax(nHeld, nAsked), 2000) << holdUp.szName;
        EXPECT_LT(nNext.value_or(0), 5000) << holdUp.szName;
        EXPECT_LT(nLongest, 1000) << holdUp.szName;
        EXPECT_LT(nMemory, 500) << holdUp.szName;
        EXPECT_EQ(QApplication::topLevelWidgets().size(), nWindows) << holdUp.szName;
        EXPECT_EQ(m_browser->geometry(), place) << holdUp.szName;
        EXPECT_TRUE(m_browser->isActiveWindow() && m_browser->isVisible()) << holdUp.szName;
        std::printf("  %-22s| %7lld ms | %6lld ms | %10lld ms | %12lld ms | %+3lld MB | none\n",
                    holdUp.szName, nHeld, nAsked, nLongest, nNext.value_or(-1), nMemory);
        std::fflush(stdout);
    }
    // Nothing goes on behind the scenes.
    EXPECT_TRUE(QTest::qWaitFor([] { return LoadOfProcesses().nBusy == 0; }, 10000));
}

TEST_F(CWebBlocking, APageThatLoopsWhileItLoadsIsNotWaitedForLong) {
    const auto show = [this](const char* szLoop) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_FALSE(
            Show(u"course\\bad.htm"_s, QByteArray("<p>x</p><script>") + szLoop + "</script>", false));
        EXPECT_LT(clock.elapsed(), 5000);
        EXPECT_TRUE(Note().startsWith(UiTexts::c_strPageOpening));
        ExpectNoText();
    };
    // One that comes to an end shows all the same.
    show("for(const t=Date.now();Date.now()<t+5000;);");
    EXPECT_TRUE(QTest::qWaitFor([this] { return Note().isEmpty(); }, 10000));
    EXPECT_TRUE(Html().startsWith(u"<p>x</p>"_s));
    // On to another one meanwhile.
    show("for(;;);");
    EXPECT_LT(GoOn().value_or(99999), 5000);
    EXPECT_EQ(Note(), QString());
    // What is still not there is given up.
    show("for(;;);");
    EXPECT_TRUE(QTest::qWaitFor([this] { return Note().startsWith(UiTexts::c_strPageTimeOut); }, 15000));
    EXPECT_EQ(Url(), u"about:blank"_s);
    EXPECT_TRUE(QTest::qWaitFor([] { return LoadOfProcesses().nBusy == 0; }, 10000));
    EXPECT_LT(GoOn().value_or(99999), 5000);
}
