#include "tests/companions/SiteCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QUrl>

#include <gumbo.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Visit = std::function<void(const GumboElement&)>;

void Walk(const GumboNode* pNode, const Visit& visit) {
    if (pNode->type != GUMBO_NODE_ELEMENT)
        return;
    visit(pNode->v.element);
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
        Walk(static_cast<const GumboNode*>(pNode->v.element.children.data[i]), visit);
}

QByteArray ReadAll(const QString& strPath) {
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WalkPage(const QString& strPath, const std::function<void(const GumboNode*)>& take) {
    const QByteArray bytes = ReadAll(strPath);
    GumboOutput* pOutput =
        gumbo_parse_with_options(&kGumboDefaultOptions, bytes.constData(), size_t(bytes.size()));
    take(pOutput->root);
    gumbo_destroy_output(&kGumboDefaultOptions, pOutput);
}

QString Attribute(const GumboElement& element, const char* szName) {
    const GumboAttribute* pAttribute = gumbo_get_attribute(&element.attributes, szName);
    return pAttribute ? QString::fromUtf8(pAttribute->value) : QString();
}

QSet<QString> Anchors(const QString& strPath) {
    QSet<QString> names;
    WalkPage(strPath, [&](const GumboNode* pRoot) {
        Walk(pRoot, [&](const GumboElement& element) {
            names.insert(Attribute(element, "id"));
            names.insert(Attribute(element, "name"));
        });
    });
    return names;
}

bool IsDead(const QString& strPage, const QString& strReference) {
    const QUrl url(strReference);
    if (!url.scheme().isEmpty())
        return url.scheme() == "file"_L1;
    const QUrl target = QUrl::fromLocalFile(strPage).resolved(url);
    const QString strFile = target.toLocalFile();
    if (!QFileInfo(strFile).isFile())
        return true;
    return target.hasFragment() && !Anchors(strFile).contains(target.fragment(QUrl::FullyDecoded));
}

QStringList Pages(const QString& strFolder) {
    QStringList pages;
    QDirIterator walk(strFolder, {u"*.htm"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        pages.append(walk.next());
    return pages;
}

const GumboElement* ElementParent(const GumboNode* pNode) {
    return pNode->parent && pNode->parent->type == GUMBO_NODE_ELEMENT ? &pNode->parent->v.element : nullptr;
}

bool FrameIsWhole(const GumboNode* pRoot) {
    bool bMain = false;
    bool bFooter = false;
    std::function<void(const GumboNode*)> visit = [&](const GumboNode* pNode) {
        if (pNode->type != GUMBO_NODE_ELEMENT)
            return;
        const GumboElement& element = pNode->v.element;
        const GumboElement* pParent = ElementParent(pNode);
        if (element.tag == GUMBO_TAG_MAIN)
            bMain =
                pParent && (pParent->tag == GUMBO_TAG_BODY || Attribute(*pParent, "class") == "layout"_L1);
        if (element.tag == GUMBO_TAG_FOOTER && Attribute(element, "class") == "site-footer"_L1)
            bFooter = pParent && pParent->tag == GUMBO_TAG_BODY;
        for (unsigned i = 0; i < element.children.length; ++i)
            visit(static_cast<const GumboNode*>(element.children.data[i]));
    };
    visit(pRoot);
    return bMain && bFooter;
}

} // namespace

QStringList DeadLinks(const QString& strNativeFolder) {
    QStringList dead;
    for (const QString& strPage : Pages(strNativeFolder)) {
        WalkPage(strPage, [&](const GumboNode* pRoot) {
            Walk(pRoot, [&](const GumboElement& element) {
                for (const char* szName : {"href", "src"}) {
                    const QString strReference = Attribute(element, szName);
                    if (!strReference.isEmpty() && IsDead(strPage, strReference))
                        dead.append(QDir(strNativeFolder).relativeFilePath(strPage) + u": "_s + strReference);
                }
            });
        });
    }
    return dead;
}

QStringList BrokenFrames(const QString& strNativeFolder) {
    QStringList broken;
    for (const QString& strPage : Pages(strNativeFolder)) {
        if (!ReadAll(strPage).contains("vorel-site"))
            continue;
        WalkPage(strPage, [&](const GumboNode* pRoot) {
            if (!FrameIsWhole(pRoot))
                broken.append(strPage);
        });
    }
    return broken;
}
