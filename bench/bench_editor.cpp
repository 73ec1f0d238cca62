// What a page's size costs whoever edits it: loading, each switch between the tabs until the screen shows the
// new tab with its text, a keystroke until its letter is on the screen, beside the same page in a bare engine
// with the design mode on, and the longest time in which the interface stood still while the text was being
// kept. Medians and worst of some rounds, in milliseconds.
// Usage: bench_editor [SIZES IN KB...]; needs a display.
#include "bench/BenchCourse.h"
#include "bench/Rounds.h"
#include "editor/ui/EditorView.h"
#include "foundation/CodePage.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "platform/ui/WebBrowser.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTimer>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <QtTest/QTest>

#include <cstdio>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nRounds = 5;
constexpr int c_nKeys = 20;
constexpr int c_nPaintPatience = 10000;
/// Behind a step the screen is looked at for so long.
constexpr int c_nLook = 2500;
/// The caret alone is thin.
constexpr int c_nMoreThanCaret = 300;

constexpr const char* c_szFirst = "<p><font size=\"7\">x</font></p>\n";
constexpr int c_nLetterAt = 18;

enum class EPage { Lines, OneLine, Breaks };

/// Paragraphs with some markup, a table now and then; each on a line of its own, or all in one. Or lines that
/// end in a break, with no paragraph around them.
QByteArray PageOf(qsizetype nBytes, EPage page) {
    const QString strParagraph =
        u"<p align=\"center\">第一章 <b>数据结构</b>与算法，<font color=\"red\">重点</font>。"_s +
        u"本课程面向全校本科生，讲授线性表、树与图，以及排序和查找的常用算法。"_s.repeated(3) + u"</p>\n"_s;
    const QString strTable = u"<table border=\"1\"><tbody>"_s +
                             u"<tr><td>学时</td><td>48</td><td>学分</td></tr>"_s.repeated(5) +
                             u"</tbody></table>\n"_s;
    QByteArray part = CodePage::Encode(QString(strParagraph.repeated(8) + strTable));
    if (page == EPage::OneLine)
        part.replace('\n', "");
    else if (page == EPage::Breaks)
        part = CodePage::Encode(u"一行文字内容<br>\n"_s);
    QByteArray text = c_szFirst;
    while (text.size() < nBytes)
        text += part;
    return text;
}

/// Says what it is asked, and lets the page go.
class CReader : public CNobody {
public:
    Torvane::Dialog::MFC::BoxAnswer Ask(const QString& strText, const QString&,
                                        Torvane::Dialog::MFC::BoxButtons, Torvane::Dialog::MFC::BoxIcon,
                                        Torvane::Dialog::MFC::BoxDefault) override {
        std::printf("  says: %s\n", qPrintable(strText));
        return Torvane::Dialog::MFC::BoxAnswer::No;
    }
};

/// A frame that shows nothing else.
class CBareHost : public INodeViewHost {
public:
    bool ShowNodeView(EViewKind, CBookNode*, int) override { return false; }
    bool LeaveCurrentView(bool) override { return false; }
    bool IsEditorShowing() const override { return true; }
    bool IsShowing(const CBookNode*) const override { return true; }
    void SelectNode(qint32) override {}
    void RunCommand(int) override {}
};

double Since(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// How far the pictures of a place differ.
int Difference(const QImage& a, const QImage& b) {
    int nPixels = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            nPixels += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    }
    return nPixels;
}

/// The upper left part of a widget as the screen shows it.
QImage OnScreen(QWidget& widget) {
    const QPoint place = widget.mapTo(widget.window(), QPoint());
    return widget.screen()->grabWindow(widget.window()->winId(), place.x(), place.y(), 700, 90).toImage();
}

double Tell(const char* szWhat, const std::vector<double>& times) {
    const double dMedian = Median(times);
    std::printf("  %-22s %8.1f   worst %8.1f\n", szWhat, dMedian,
                *std::max_element(times.begin(), times.end()));
    std::fflush(stdout);
    return dMedian;
}

/// From a step's beginning to the last change of what the screen shows of the beginning of a widget's text.
template <class Step>
double UntilShown(QWidget& shown, Step step) {
    QElapsedTimer timer;
    timer.start();
    step();
    double dShown = Since(timer);
    QImage last = OnScreen(shown);
    while (timer.elapsed() < c_nLook) {
        QTest::qWait(2);
        const QImage now = OnScreen(shown);
        if (Difference(last, now) > c_nMoreThanCaret)
            dShown = Since(timer);
        last = now;
    }
    return dShown;
}

/// Letters into whatever has the keyboard; they are large and stand at the page's beginning.
std::vector<double> TypeInto(QWidget& page) {
    QWidget* const pKeys = QApplication::focusWidget();
    std::vector<double> times;
    for (int n = 0; n < c_nKeys; ++n) {
        const QImage before = OnScreen(page);
        QElapsedTimer timer;
        timer.start();
        QTest::keyClick(pKeys, n % 2 != 0 ? Qt::Key_W : Qt::Key_M);
        if (!QTest::qWaitFor([&] { return Difference(before, OnScreen(page)) > c_nMoreThanCaret; },
                             c_nPaintPatience))
            std::printf("  a letter never came\n");
        times.push_back(Since(timer));
        QTest::qWait(300);
        QTest::keyClick(pKeys, Qt::Key_Backspace);
        QTest::qWait(300);
    }
    return times;
}

/// What the engine takes for a page without anything of ours.
struct SBare {
    double dKey;
    double dText;
};
SBare TimeBare(const QString& strPage) {
    QWebEngineView view;
    view.settings()->setDefaultTextEncoding(u"GB18030"_s);
    view.resize(1000, 700);
    view.show();
    view.activateWindow();
    bool bDone = false;
    QTest::qWait(c_nLook);
    QObject::connect(&view, &QWebEngineView::loadFinished, [&] { bDone = true; });
    Tell("bare load until shown", {UntilShown(view, [&] { view.load(QUrl::fromLocalFile(strPage)); })});
    if (!QTest::qWaitFor([&] { return bDone; }, c_nPaintPatience))
        std::printf("  the bare page never came\n");
    view.page()->runJavaScript(
        u"document.designMode = 'on'; getSelection().collapse(document.querySelector('font').firstChild, 0)"_s);
    view.setFocus();
    QTest::qWait(c_nLook);
    const double dKey = Tell("bare key to paint", TypeInto(view));
    std::vector<double> text;
    for (int n = 0; n < c_nRounds; ++n) {
        bDone = false;
        view.page()->runJavaScript(
            u"(() => { const html = document.body.innerHTML, begin = performance.now();"
            "document.body.innerHTML = html; document.body.offsetHeight;"
            "return performance.now() - begin; })()"_s,
            [&](const QVariant& reply) {
                text.push_back(reply.toDouble());
                bDone = true;
            });
        if (!QTest::qWaitFor([&] { return bDone; }, c_nPaintPatience))
            std::printf("  the bare text never came\n");
    }
    return {dKey, Tell("bare text laid out", text)};
}

class CEditorBench {
public:
    CEditorBench(CCourse& course, qsizetype nKilobytes, EPage page)
        : m_pNode(CBookNode::Root(course)->AddChild(u"页"_s)) {
        m_pNode->CreateEditorPage(0);
        ReplaceFile(m_pNode->GetContentPath(), PageOf(nKilobytes * 1024, page));
        const char* const szPage = page == EPage::OneLine  ? " in one line"
                                   : page == EPage::Breaks ? " of lines with a break"
                                                           : "";
        std::printf("%lld KB%s\n", static_cast<long long>(nKilobytes), szPage);
        m_view.resize(1000, 700);
        m_view.show();
        m_view.activateWindow();
        QTest::qWait(c_nLook);
        double dLoad = 0;
        const double dShown = UntilShown(*m_view.findChild<QWidget*>(u"design"_s), [&] {
            dLoad = Time([this] {
                m_view.m_pNode = m_pNode.get();
                m_view.ShowNode();
            });
        });
        Say("load", {dLoad});
        Say("load until shown", {dShown});
    }

    void Tabs() {
        const struct {
            const char* szName;
            int nTab;
            const char* szShown;
        } steps[] = {{"design to source", 1, "source"},
                     {"source to design", 0, "design"},
                     {"design to preview", 2, "preview"},
                     {"preview to design", 0, "design"}};
        for (const auto& step : steps)
            m_times[step.szName].clear();
        for (int n = 0; n < c_nRounds; ++n) {
            for (const auto& step : steps) {
                m_times[step.szName].push_back(
                    UntilShown(*m_view.findChild<QWidget*>(QLatin1StringView(step.szShown)), [&] {
                        m_view.findChild<QTabBar*>(u"editorTabs"_s)->setCurrentIndex(step.nTab);
                    }));
                if (step.nTab == 1)
                    ChangeSource(n);
            }
        }
        for (const auto& step : steps)
            Say(step.szName, m_times[step.szName]);
    }

    /// What the switches are made of.
    void Parts() {
        auto* pDesign = m_view.findChild<CWebBrowser2Ex*>(u"design"_s);
        QString strHtml;
        std::vector<double> fetch, put, navigate;
        for (int n = 0; n < c_nRounds; ++n) {
            fetch.push_back(Time([&] { pDesign->GetBrowserBodyInnerHTML(strHtml); }));
            put.push_back(Time([&] { pDesign->SetBrowserBodyInnerHTML(strHtml); }));
            QTest::qWait(1000);
        }
        CWebBrowser2Ex other;
        other.SetAllowedFolders({}, true);
        other.resize(m_view.size());
        other.show();
        for (int n = 0; n < c_nRounds; ++n) {
            navigate.push_back(Time([&] { other.NavigateAndWait(m_pNode->GetContentPath()); }));
            QTest::qWait(1000);
            other.NavigateAndWait(u"about:blank"_s);
        }
        Say("fetch the text", fetch);
        Say("put the text", put);
        Say("navigate", navigate);
    }

    /// A text that has nothing of the page, or its first line alone, and the way back.
    void Undo() {
        auto* pDesign = m_view.findChild<CWebBrowser2Ex*>(u"design"_s);
        QString strHtml, strBack;
        pDesign->GetBrowserBodyInnerHTML(strHtml);
        for (const QString& strOther :
             {u"<h1>x</h1>"_s, QString(strHtml.section(u'\n', 0, 0) + u"<h1>x</h1>"_s)}) {
            Say("replace all", {Time([&] { pDesign->SetBrowserBodyInnerHTML(strOther); })});
            Say("undo that", {Time([&] { pDesign->ExecuteIHTMLDocumentCmd(u"Undo"_s, false, {}); })});
            if (!pDesign->GetBrowserBodyInnerHTML(strBack) || strBack != strHtml)
                std::printf("  the page did not come back\n");
        }
    }

    void Keys() {
        auto* pDesign = m_view.findChild<CWebBrowser2Ex*>(u"design"_s);
        pDesign->setFocus();
        QTest::qWait(c_nLook);
        // The steps of the loop since the last look, at most: what stood still longer, kept keys waiting too.
        double dStill = 0;
        QElapsedTimer step;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &tick, [&] {
            dStill = std::max(dStill, Since(step));
            step.restart();
        });
        step.start();
        tick.start(1);
        const double dOurs = Tell("key to paint", TypeInto(*pDesign));
        tick.stop();
        Say("interface still", {dStill});
        const SBare bare = TimeBare(Platform::ToNative(m_pNode->GetContentPath()));
        std::printf("  key, ours to bare      %8.2f\n", dOurs / bare.dKey);
        std::printf("  source to design, to bare text %8.2f\n",
                    Median(m_times["source to design"]) / bare.dText);
    }

private:
    template <class Step>
    static double Time(Step step) {
        QElapsedTimer timer;
        timer.start();
        step();
        return Since(timer);
    }
    static void Say(const char* szWhat, const std::vector<double>& times) { Tell(szWhat, times); }

    /// Another large letter at the page's beginning, so that the screen tells when the text is there.
    void ChangeSource(int nRound) {
        auto* pSource = m_view.findChild<QPlainTextEdit*>(u"source"_s);
        QTextCursor cursor(pSource->document());
        cursor.setPosition(c_nLetterAt);
        cursor.deleteChar();
        cursor.insertText(nRound % 2 == 0 ? u"M"_s : u"x"_s);
    }

    CReader m_people;
    CBareHost m_host;
    std::unique_ptr<CBookNode> m_pNode;
    CEditorView m_view{m_host, m_people};
    std::map<std::string, std::vector<double>> m_times;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    CNobody people;
    CNoSession session;
    CNodeMakerFactory makers;
    const auto pCourse = MakeCourse(folder.path(), {people, session, session, makers});
    QList<qsizetype> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.append(QByteArray(argv[i]).toLongLong());
    if (sizes.isEmpty())
        sizes = {10, 100, 1024};
    for (const qsizetype nSize : sizes) {
        for (const EPage page : {EPage::Lines, EPage::OneLine, EPage::Breaks}) {
            CEditorBench bench(*pCourse, nSize, page);
            bench.Tabs();
            bench.Parts();
            bench.Undo();
            bench.Keys();
        }
    }
    return 0;
}
