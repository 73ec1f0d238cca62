#include "companions/VRM/LectureTimes.h"

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 c_nMoveMilliseconds = 200;
constexpr int c_nSmallMove = 8;
/// The film's header counts its commands in 16 bits.
constexpr qsizetype c_nMaxPlaces = 30000;
constexpr qsizetype c_nMaxChanges = 20000;

const QString c_strSlide = u"SLIDE"_s;

} // namespace

qint64 CLectureTimes::Late(qint64 nTime) {
    return m_nLast = qMax(m_nLast, nTime);
}

void CLectureTimes::ShowSlide(int nSlide, qint64 nTime) {
    if (m_script.Markers.size() >= c_nMaxChanges)
        return;
    const qint64 nAt = m_script.Markers.isEmpty() ? 0 : Late(nTime);
    m_nX = m_nY = -1;
    // Turned through in a pause: nobody will see those in between.
    if (!m_script.Markers.isEmpty() && m_script.Markers.last().nTime == nAt)
        TakeBackSlide();
    const QString strCall = QString::number(-nSlide - 1);
    if (const SAsfCommand* pShown = LastSlide(); pShown && pShown->strParameter == strCall)
        return;
    m_script.Commands.append({nAt, c_strSlide, strCall});
    m_script.Markers.append({nAt, m_titles.value(nSlide)});
}

const SAsfCommand* CLectureTimes::LastSlide() const {
    const auto isSlide = [](const SAsfCommand& command) { return command.strType == c_strSlide; };
    const auto it = std::find_if(m_script.Commands.crbegin(), m_script.Commands.crend(), isSlide);
    return it == m_script.Commands.crend() ? nullptr : &*it;
}

void CLectureTimes::TakeBackSlide() {
    const qsizetype nSlide = LastSlide() - m_script.Commands.constData();
    // Each command behind it is a place of the pointer on it.
    m_places.resize(m_places.size() - (m_script.Commands.size() - nSlide - 1));
    m_script.Commands.resize(nSlide);
    m_script.Markers.removeLast();
}

bool CLectureTimes::MovePointer(int nX, int nY, qint64 nTime) {
    const bool bQuick = m_nLastMove >= 0 && nTime < m_nLastMove + c_nMoveMilliseconds;
    const bool bSmall = m_nX >= 0 && std::abs(nX - m_nX) + std::abs(nY - m_nY) < c_nSmallMove;
    if (m_script.Markers.isEmpty() || bQuick || bSmall || m_places.size() >= c_nMaxPlaces)
        return false;
    m_nLastMove = nTime;
    m_nX = nX;
    m_nY = nY;
    m_script.Commands.append({Late(nTime), u"POINTER"_s, QString::number(m_places.size())});
    m_places.append(u"(%1,%2)"_s.arg(nX).arg(nY));
    return true;
}

QStringList CLectureTimes::GetOutline() const {
    QStringList names;
    for (const SAsfMarker& marker : m_script.Markers)
        names.append(marker.strName);
    return names;
}

QStringList CLectureTimes::GetCalls() const {
    QStringList calls;
    for (qsizetype i = 0; i < m_titles.size(); ++i)
        calls.append(u"ShowSlide(%1)"_s.arg(i + 1));
    return calls;
}
