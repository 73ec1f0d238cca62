// What a page does to hold the program up: while it is at it the windows are painted and timers fire, and the
// next page shows in a bounded time.
#include "platform/ui/Texts.h"
#include "tests/platform_ui/WebFixture.h"
#include "tests/support/Cases.h"

#include <unistd.h>

namespace {

/// The address sanitizer holds back some hundred megabytes of what was freed.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 c_nMostMegabytes = 1000;
#else
constexpr qint64 c_nMostMegabytes = 500;
#endif

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
    // What runs 300 ms after the load, or at once behind it.
    for (const SCase& holdUp : ReadCases(VOREL_HOLD_UPS)) {
        const bool bAtOnce = holdUp.strWhat.endsWith(u", at once");
        const QByteArray begin = bAtOnce ? "onload=()=>setTimeout(()=>{" : "setTimeout(()=>{";
        const QByteArray end = bAtOnce ? "},0)" : "},300)";
        QElapsedTimer clock;
        clock.start();
        EXPECT_TRUE(Show(u"course\\bad.htm"_s,
                         "<p>x</p><script>" + begin + holdUp.Texts[0].toUtf8() + end + "</script>", false))
            << holdUp.strWhat;
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
        const bool bLoops = holdUp.strWhat == u"loop without end";
        EXPECT_TRUE(!bLoops || LoadOfProcesses().nBusy > 0);
        QString strSlide;
        clock.start();
        m_browser->GetSlideFrameLocation(strSlide);
        const qint64 nAsked = clock.elapsed();
        const auto nNext = GoOn();
        const qint64 nMemory = LoadOfProcesses().nMegabytes - nBefore;
        EXPECT_TRUE(nNext.has_value()) << holdUp.strWhat;
        EXPECT_LT(qMax(nHeld, nAsked), 2000) << holdUp.strWhat;
        EXPECT_LT(nNext.value_or(0), 5000) << holdUp.strWhat;
        EXPECT_LT(nLongest, 1000) << holdUp.strWhat;
        EXPECT_LT(nMemory, c_nMostMegabytes) << holdUp.strWhat;
        EXPECT_EQ(QApplication::topLevelWidgets().size(), nWindows) << holdUp.strWhat;
        EXPECT_EQ(m_browser->geometry(), place) << holdUp.strWhat;
        EXPECT_TRUE(m_browser->isActiveWindow() && m_browser->isVisible()) << holdUp.strWhat;
    }
    // Nothing goes on behind the scenes.
    EXPECT_SOON(LoadOfProcesses().nBusy == 0);
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
    EXPECT_SOON(Note().isEmpty());
    EXPECT_TRUE(Html().startsWith(u"<p>x</p>"_s));
    // On to another one meanwhile.
    show("for(;;);");
    EXPECT_LT(GoOn().value_or(99999), 5000);
    EXPECT_EQ(Note(), QString());
    // What is still not there is given up.
    show("for(;;);");
    EXPECT_SOON(Note().startsWith(UiTexts::c_strPageTimeOut));
    EXPECT_EQ(Url(), u"about:blank"_s);
    EXPECT_SOON(LoadOfProcesses().nBusy == 0);
    EXPECT_LT(GoOn().value_or(99999), 5000);
}
