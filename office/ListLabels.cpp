#include "office/ListLabels.h"

#include <algorithm>

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
    for (const auto strLine : QStringView(strPlainText).split(u'\n')) {
        const QString strSimple = strLine.toString().simplified();
        const qsizetype nBlank = strSimple.indexOf(u' ');
        // A paragraph without a blank has no label before it.
        if (nBlank < 0 || !IsPlainLabel(QStringView(strSimple).left(nBlank)))
            continue;
        m_places[WithoutBlanks(strSimple.mid(nBlank))].append(m_labels.size());
        m_labels.append(strSimple.left(nBlank));
    }
}

QString CListLabels::Take(const QString& strText) {
    const auto places = m_places.constFind(WithoutBlanks(strText));
    if (places == m_places.cend())
        return QString();
    const auto place = std::lower_bound(places->cbegin(), places->cend(), m_nNext);
    if (place == places->cend())
        return QString();
    m_nNext = *place + 1;
    return m_labels[*place];
}

} // namespace Torvane::Office
