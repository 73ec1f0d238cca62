#pragma once

#include "video/AsfFile.h"

#include <QStringList>

/// When the commands of a film are to be carried out, told where the film is. While it runs on, each comes
/// once, at its time; when it goes elsewhere, those come that the page needs to look as it would there.
class CCommandClock {
public:
    /// By their times.
    void SetCommands(const QList<SAsfCommand>& commands);

    /// The film has come to the place (milliseconds); the parameters of what is to be carried out, in order.
    /// A place before the last one, or far behind it, counts as gone to.
    QStringList MoveTo(qint64 nPosition);
    /// The next place is gone to, however near.
    void Forget() { m_nLast = -1; }

private:
    QStringList StateAt(qsizetype nEnd) const;

    QList<SAsfCommand> m_commands;
    qint64 m_nLast = -1;
};
