// A page's text and what its surface reports, both damaged: the rewriting ends, plans each name once, and
// equals one replacement after the other.
#include "editor/ResourceText.h"

#include "foundation/CodePage.h"
#include "tests/support/FuzzCheck.h"

#include <QSet>

using namespace ResourceText;

/// The input's lines: "i", "e" or "a" and a reference, "u" and the document's URL; all others are the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QString strInput = CodePage::Decode(FuzzBytes(pData, nSize));
    References references;
    QString strHtml;
    const QStringList lines = strInput.split(u'\n');
    for (const QString& strLine : lines) {
        const QString strRest = strLine.mid(1);
        if (strLine.startsWith(u'i'))
            references.Images.append(strRest);
        else if (strLine.startsWith(u'e'))
            references.Embeds.append(strRest);
        else if (strLine.startsWith(u'a'))
            references.Anchors.append(strRest);
        else if (strLine.startsWith(u'u'))
            references.strDocumentUrl = strRest;
        else
            strHtml += strLine + u'\n';
    }
    const PageFolders folders{QStringLiteral("Z:\\no\\NodeResource\\N1\\res\\"),
                              QStringLiteral("Z:\\no\\NodeResource\\")};
    QList<ResourceCopy> copies;
    const QList<Replacement> replacements = PlanReplacements(references, folders, copies);
    const QString strResult = ApplyReplacements(strHtml, replacements);
    QSet<QString> names;
    for (const ResourceCopy& copy : std::as_const(copies)) {
        Check(!copy.bCopy || !names.contains(copy.strName));
        names.insert(copy.strName);
    }
    for (const Replacement& replacement : replacements)
        strHtml.replace(replacement.strFrom, replacement.strTo);
    Check(strResult == strHtml);
    return 0;
}
