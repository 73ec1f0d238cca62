#include "platform/ui/ByteLimit.h"

#include "foundation/CodePage.h"

#include <QLineEdit>

#include <algorithm>

namespace {

/// How many units two texts have in common at their beginning, by whole characters.
qsizetype CommonHead(QStringView strA, QStringView strB) {
    const auto [a, b] = std::mismatch(strA.begin(), strA.end(), strB.begin(), strB.end());
    const qsizetype nCommon = a - strA.begin();
    return nCommon > 0 && strA[nCommon - 1].isHighSurrogate() ? nCommon - 1 : nCommon;
}

} // namespace

CByteLimit::CByteLimit(QLineEdit* pField, qsizetype nBytes)
    : QValidator(pField), m_nBytes(nBytes), m_strLast(pField->text()) {
    pField->setValidator(this);
}

QValidator::State CByteLimit::validate(QString& strInput, int& nCursor) const {
    // What came in stands before the cursor, between what was there before it and what is behind.
    const QStringView strTail = QStringView(strInput).mid(nCursor);
    const qsizetype nBefore = m_strLast.endsWith(strTail) ? m_strLast.size() - strTail.size() : 0;
    const qsizetype nHead =
        CommonHead(QStringView(strInput).first(nCursor), QStringView(m_strLast).first(nBefore));
    const QString strAdded = strInput.mid(nHead, nCursor - nHead);
    if (strAdded.isEmpty() || CodePage::ByteLength(strInput) <= m_nBytes) {
        m_strLast = strInput;
        return Acceptable;
    }
    const qsizetype nRoom = m_nBytes - CodePage::ByteLength(strInput) + CodePage::ByteLength(strAdded);
    const QString strFits = CodePage::Cut(strAdded, std::max<qsizetype>(nRoom, 0));
    if (strFits.isEmpty()) {
        // Nothing goes in, so that nothing goes out for it.
        strInput = m_strLast;
        nCursor = static_cast<int>(nBefore);
    } else {
        strInput = strInput.first(nHead) + strFits + strTail.toString();
        nCursor = static_cast<int>(nHead + strFits.size());
        m_strLast = strInput;
    }
    return Intermediate;
}
