#include "foundation/HtmlTree.h"
#include "office/PageCleaner.h"
#include "office/SlideText.h"
#include "tests/support/FuzzCheck.h"

#include <QBuffer>

using namespace Torvane::Office;

namespace {

bool IsHarmless(const GumboElement& element) {
    const QByteArray name = HtmlTree::TagName(element);
    for (const char* szBad : {"script", "object", "iframe", "embed", "form", "svg", "base"}) {
        if (name == szBad)
            return false;
    }
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
        const QString strValue = QString::fromUtf8(pAttribute->value);
        if (qstrncmp(pAttribute->name, "on", 2) == 0 || qstrcmp(pAttribute->name, "src") == 0)
            return false;
        if (qstrcmp(pAttribute->name, "href") == 0 && !IsKeptLink(strValue))
            return false;
        if (qstrcmp(pAttribute->name, "style") == 0 &&
            strValue.contains(QLatin1String("url("), Qt::CaseInsensitive))
            return false;
    }
    return true;
}

void CheckHarmless(const QByteArray& page) {
    if (HtmlTree::IsTooDeep(page))
        return;
    const HtmlTree::Tree tree = HtmlTree::Parse(page);
    HtmlTree::ForEachElement(tree->root, [](const GumboNode* pNode) { Check(IsHarmless(pNode->v.element)); });
}

} // namespace

// Whatever a converted document holds, nothing of it runs or loads in the page; whatever a presentation's
// text holds, it is read to an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    QByteArray bytes(reinterpret_cast<const char*>(pData), qsizetype(nSize));
    const auto noPictures = [](const QString&) { return QString(); };
    for (const EKind eKind : {EKind::Document, EKind::Sheet}) {
        const auto page = CleanPage(eKind, bytes, QStringLiteral("t"), noPictures, QString::fromUtf8(bytes));
        if (page)
            CheckHarmless(*page);
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    for (const CSlide& slide : ReadSlides(buffer))
        CheckHarmless(slide.text);
    return 0;
}
