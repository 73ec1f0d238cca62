#include "office/ListLabels.h"

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

constexpr int c_nMaxLabel = 16;

// Lines are broken and blanks are counted in the two texts each in its own way.
QString WithoutBlanks(const QString& strText) {
    QString str;
    for (const QChar c : strText) {
        if (!c.isSpace())
            str += c;
    }
    return str;
}

bool IsPlainLabel(QStringView strLabel) {
    for (const QChar c : strLabel) {
        if (u"<>\"'\\&"_s.contains(c) || !c.isPrint())
            return false;
    }
    return !strLabel.isEmpty() && strLabel.size() <= c_nMaxLabel;
}

} // namespace

CListLabels::CListLabels(const QString& strPlainText) {
    for (const QString& strLine : strPlainText.split(u'\n')) {
        const QString strSimple = strLine.simplified();
        // A paragraph without a blank has no label before it.
        if (strSimple.contains(u' '))
            m_lines.append(strSimple);
    }
}

QString CListLabels::Take(const QString& strText) {
    const QString strWanted = WithoutBlanks(strText);
    if (strWanted.isEmpty())
        return QString();
    for (qsizetype i = m_nNext; i < m_lines.size(); ++i) {
        const QString& strLine = m_lines[i];
        const qsizetype nBlank = strLine.indexOf(u' ');
        if (strLine.size() - nBlank > strWanted.size() && IsPlainLabel(QStringView(strLine).left(nBlank)) &&
            WithoutBlanks(strLine.mid(nBlank)) == strWanted) {
            m_nNext = i + 1;
            return strLine.left(nBlank);
        }
    }
    return QString();
}

} // namespace Torvane::Office
