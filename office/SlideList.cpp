#include "office/SlideList.h"

#include "foundation/Exceptions.h"
#include "foundation/FolderWalk.h"
#include "foundation/HtmlTree.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "office/OfficeFiles.h"
#include "office/Texts.h"

#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace HtmlTree;

namespace Torvane::Office {
namespace {

/// Pages of a presentation hold text alone.
constexpr qint64 c_nMaxBytes = 4 * 1024 * 1024;
constexpr qsizetype c_nMaxTitle = 60;
/// Of a text that is looked at for a title: elements lie within one another, each with a name of a slide.
constexpr qsizetype c_nMaxLooked = 1000;

QByteArray Bytes(const QString& strPath) {
    try {
        return ReadFileBytes(strPath, c_nMaxBytes);
    } catch (const CException&) {
        return {};
    }
}

/// The slide that a text names, in lower case; empty for none.
QString SlideIn(const QString& strText) {
    static const QRegularExpression slide(u"(?<![a-z0-9])slide\\d+\\.html?"_s);
    return slide.match(LowerAscii(strText)).captured();
}

void AddText(const GumboNode* pNode, QString& strText) {
    if (pNode->type == GUMBO_NODE_TEXT || pNode->type == GUMBO_NODE_WHITESPACE)
        strText += QString::fromUtf8(pNode->v.text.text);
    for (unsigned i = 0; IsElement(pNode) && i < pNode->v.element.children.length; ++i) {
        if (strText.size() > c_nMaxLooked)
            return;
        AddText(static_cast<const GumboNode*>(pNode->v.element.children.data[i]), strText);
    }
}

QString TextOf(const GumboNode* pNode) {
    QString strText;
    AddText(pNode, strText);
    return strText.simplified().left(c_nMaxTitle);
}

void ForEachElementOf(const QString& strPath, const std::function<void(const GumboNode*)>& visit) {
    const QByteArray html = PageText::Decode(Bytes(strPath)).Text.toUtf8();
    if (!IsTooDeep(html))
        ForEachElement(Parse(html)->root, visit);
}

/// By the slides' names in lower case: what the list of the presentation or its outline calls them.
using Titles = QHash<QString, QString>;

void AddFromList(const QString& strFolder, QStringList& order, Titles& titles) {
    QXmlStreamReader xml(Bytes(strFolder + u"\\pres.xml"_s));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString strSlide = SlideIn(xml.attributes().value(u"href"_s).toString());
        const QString strTitle = xml.attributes().value(u"title"_s).toString().simplified();
        if (strSlide.isEmpty())
            continue;
        order.append(strSlide);
        if (!strTitle.isEmpty())
            titles.insert(strSlide, strTitle.left(c_nMaxTitle));
    }
}

/// Another program's outline names a slide in an address or in a script, and may show its number beside.
void AddFromOutline(const QString& strFolder, Titles& titles) {
    static const QRegularExpression number(u"^\\d*\\.?$"_s);
    ForEachElementOf(strFolder + u"\\outline.htm"_s, [&](const GumboNode* pNode) {
        const GumboVector& attributes = pNode->v.element.attributes;
        for (unsigned i = 0; i < attributes.length; ++i) {
            const auto* pAttribute = static_cast<const GumboAttribute*>(attributes.data[i]);
            const QString strSlide = SlideIn(QString::fromUtf8(pAttribute->value));
            if (strSlide.isEmpty() || titles.contains(strSlide))
                continue;
            const QString strText = TextOf(pNode);
            if (!number.match(strText).hasMatch())
                titles.insert(strSlide, strText);
        }
    });
}

/// A slide's own heading.
QString TitleOn(const QString& strSlide) {
    QString strTitle;
    ForEachElementOf(strSlide, [&](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        const bool bHeading = element.tag == GUMBO_TAG_H1 || AttributeValue(element, "class") == "T";
        if (bHeading && strTitle.isEmpty())
            strTitle = TextOf(pNode);
    });
    return strTitle;
}

/// The slides' files, by their names in lower case.
QHash<QString, QString> FilesOf(const QString& strFolder) {
    QHash<QString, QString> files;
    QList<File::FolderEntry> entries;
    File::ListFolder(strFolder, entries);
    for (const File::FolderEntry& entry : entries) {
        if (!entry.bFolder && SlideIn(entry.strName) == LowerAscii(entry.strName))
            files.insert(LowerAscii(entry.strName), entry.strName);
    }
    return files;
}

} // namespace

bool IsSlideViewer(const QString& strPath) {
    static const QStringList names{u"frame.htm"_s, u"fullscreen.htm"_s, u"torvaneframe.htm"_s};
    return names.contains(LowerAscii(File::BareName(strPath))) &&
           IsPptFrameFolder(File::ParentFolder(strPath));
}

QList<SlideEntry> SlidesIn(const QString& strFolder) {
    const QHash<QString, QString> files = FilesOf(strFolder);
    QStringList order;
    Titles titles;
    AddFromList(strFolder, order, titles);
    AddFromOutline(strFolder, titles);
    QStringList others = files.keys();
    std::sort(others.begin(), others.end());
    order += others;
    order.removeDuplicates();
    QList<SlideEntry> slides;
    for (const QString& strName : order) {
        const QString strFile = files.value(strName);
        if (strFile.isEmpty())
            continue;
        QString strTitle = titles.value(strName);
        if (strTitle.isEmpty())
            strTitle = TitleOn(strFolder + u'\\' + strFile);
        if (strTitle.isEmpty())
            strTitle = Texts::c_strSlide.arg(slides.size() + 1);
        slides.append({strFile, strTitle});
    }
    return slides;
}

} // namespace Torvane::Office
