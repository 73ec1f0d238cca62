#include "video/CommandClock.h"

#include "foundation/Text.h"

#include <algorithm>

namespace {

/// Farther than a film runs between two reports on a slow machine.
constexpr qint64 c_nJump = 2000;

} // namespace

void CCommandClock::SetCommands(const QList<SAsfCommand>& commands) {
    m_commands = commands;
    Forget();
}

QStringList CCommandClock::MoveTo(qint64 nPosition) {
    const auto endOf = [this](qint64 nTime) {
        return std::ranges::upper_bound(m_commands, nTime, {}, &SAsfCommand::nTime) - m_commands.begin();
    };
    const qint64 nLast = std::exchange(m_nLast, nPosition);
    if (nLast < 0 || nPosition < nLast || nPosition > nLast + c_nJump)
        return StateAt(endOf(nPosition));
    QStringList due;
    for (qsizetype i = endOf(nLast); i < endOf(nPosition); ++i)
        due.append(m_commands[i].strParameter);
    return due;
}

/// What went before is undone by the last call of a slide, and the last place of the pointer on it.
QStringList CCommandClock::StateAt(qsizetype nEnd) const {
    QStringList state;
    bool bPlace = false;
    for (qsizetype i = nEnd - 1; i >= 0; --i) {
        const bool bCall = ParseInt(m_commands[i].strParameter) < 0;
        if (bCall || !bPlace)
            state.prepend(m_commands[i].strParameter);
        bPlace = true;
        if (bCall)
            break;
    }
    return state;
}
