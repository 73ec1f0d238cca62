#include "companions/fetch/EntryNames.h"

#include "companions/fetch/Texts.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

constexpr qsizetype c_nMaxDepth = 32;
constexpr qsizetype c_nShown = 80;

/// A backslash parts the program's own paths.
bool IsUnusable(QChar c) {
    return c < u' ' || c == u'\x7F' || c == u'\\' || c == QChar::ReplacementCharacter;
}

} // namespace

CRunException Refusal(const QString& strMessage, const QString& strName) {
    QString strShown = strName.left(c_nShown);
    std::replace_if(
        strShown.begin(), strShown.end(), [](QChar c) { return !c.isPrint(); }, QChar::ReplacementCharacter);
    return CRunException(strMessage.arg(strShown));
}

CEntryNames::CEntryNames(const QString& strTargetFolder)
    : m_nTargetBytes(CodePage::ByteLength(Platform::FromNative(strTargetFolder)) + 1) {}

QString CEntryNames::Accept(const QString& strName, bool bFolder) {
    if (strName.startsWith(u'/'))
        throw Refusal(FetchText::c_strNameLeaves, strName);
    if (std::any_of(strName.begin(), strName.end(), IsUnusable))
        throw Refusal(FetchText::c_strBadName, strName);
    QStringList parts = strName.split(u'/', Qt::SkipEmptyParts);
    parts.removeAll(u"."_s);
    if (parts.contains(u".."_s))
        throw Refusal(FetchText::c_strNameLeaves, strName);
    const QString strPath = parts.join(u'/');
    if (parts.size() > c_nMaxDepth ||
        m_nTargetBytes + CodePage::ByteLength(strPath) > Torvane::File::c_nMaxPathBytes)
        throw Refusal(FetchText::c_strNameTooLong, strName);
    if (parts.isEmpty()) {
        if (!bFolder)
            throw Refusal(FetchText::c_strBadName, strName);
        return {};
    }

    QString strPart;
    for (qsizetype n = 0; n < parts.size(); ++n) {
        strPart += (n > 0 ? u"/"_s : QString()) + parts[n];
        const bool bPartIsFolder = bFolder || n + 1 < parts.size();
        const auto known = m_known.constFind(strPart.toCaseFolded());
        if (known == m_known.constEnd())
            m_known.insert(strPart.toCaseFolded(), {strPart, bPartIsFolder});
        else if (known->strName != strPart || !known->bFolder || !bPartIsFolder)
            throw Refusal(FetchText::c_strNameTwice, strName);
    }
    return strPath;
}
