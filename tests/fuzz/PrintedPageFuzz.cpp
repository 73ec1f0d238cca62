#include "companions/docexport/PrintedPage.h"
#include "foundation/PageText.h"
#include "tests/support/FuzzCheck.h"

#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

// Any bytes at all are a page. What the converter gets of it is well-formed, and has no mark by which it
// would take something over as it stands or load something.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QByteArray bytes = FuzzBytes(pData, nSize);
    const auto page =
        ReadPrintedPage(PageText::Decode(bytes).Text,
                        {[](const QString& strReference) { return strReference; },
                         [](const QString&) {
                             return std::optional(ReadyPicture{u"own.png"_s, 900, 30});
                         },
                         [](const QString&) { return u"#n4_a"_s; },
                         [](const QString&) { return QByteArray(R"(<span id="n4_a"></span>)"); }});
    if (!page)
        return 0;
    static const QSet<QString> known = {u"href"_s,
                                        u"src"_s,
                                        u"alt"_s,
                                        u"width"_s,
                                        u"height"_s,
                                        u"id"_s,
                                        u"style"_s,
                                        u"dir"_s,
                                        u"start"_s,
                                        u"type"_s,
                                        u"colspan"_s,
                                        u"rowspan"_s,
                                        u"data-custom-style"_s};
    QXmlStreamReader xml("<r>" + page->Html + "</r>");
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        // A formula is taken with its attributes; what reads it loads nothing.
        if (xml.namespaceUri() == "http://www.w3.org/1998/Math/MathML"_L1)
            continue;
        const auto attributes = xml.attributes();
        for (const QXmlStreamAttribute& attribute : attributes)
            Check(known.contains(attribute.name().toString()));
        Check(!attributes.hasAttribute("src"_L1) || attributes.value("src"_L1) == "own.png"_L1);
    }
    Check(!xml.hasError());
    return 0;
}
