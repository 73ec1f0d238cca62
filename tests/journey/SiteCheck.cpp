// Opens a compiled site in a browser as a visitor does: from its start page by the navigation to the page
// that holds a text, and looks whether the text and every picture of the page are there. Usage:
// vorel-site-check START_PAGE TEXT SCREENSHOT_FOLDER; ends with 0 when all was found.
#include <QApplication>
#include <QUrl>
#include <QWebEngineView>
#include <QtTest/QTest>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nMilliseconds = 20000;

bool Load(QWebEngineView& view, const QUrl& url) {
    std::optional<bool> loaded;
    QObject context;
    QObject::connect(&view, &QWebEngineView::loadFinished, &context, [&](bool bOk) { loaded = bOk; });
    view.load(url);
    return QTest::qWaitFor([&] { return loaded.has_value(); }, c_nMilliseconds) && *loaded;
}

QVariant Script(QWebEngineView& view, const QString& strScript) {
    const auto pResult = std::make_shared<std::optional<QVariant>>();
    view.page()->runJavaScript(strScript, [pResult](const QVariant& value) { *pResult = value; });
    (void)QTest::qWaitFor([&] { return pResult->has_value(); }, c_nMilliseconds);
    return pResult->value_or(QVariant());
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 4)
        return 2;
    const QString strStart = QString::fromLocal8Bit(argv[1]);
    const QString strText = QString::fromLocal8Bit(argv[2]);

    QWebEngineView view;
    view.resize(1200, 850);
    view.show();
    const QStringList pages =
        Load(view, QUrl::fromLocalFile(strStart))
            ? Script(view, u"[...document.querySelectorAll('nav a[href]')].map(a => a.href)"_s).toStringList()
            : QStringList();
    for (const QString& strPage : pages) {
        if (!strPage.startsWith(u"file:"_s) || !Load(view, QUrl(strPage)) ||
            !Script(view, u"document.body.innerText"_s).toString().contains(strText))
            continue;
        QTest::qWait(1000);
        view.grab().save(QString::fromLocal8Bit(argv[3]) + u"/90-site-page.png"_s);
        const bool bShown = Script(view, u"(p => p.length > 0 && p.every(i => i.naturalWidth > 0))"
                                         "([...document.querySelectorAll('main img')])"_s)
                                .toBool();
        std::puts(bShown ? "the page shows its text and pictures" : "the page lacks a picture");
        return bShown ? 0 : 1;
    }
    std::printf("no page of %d that the start page leads to holds the text\n",
                static_cast<int>(pages.size()));
    return 1;
}
