#pragma once

#include <QString>
#include <QStringList>

/// How a companion's work ended, with a sentence for the person.
struct TaskOutcome {
    enum class EEnd { Done, Cancelled, Failed };
    EEnd End = EEnd::Failed;
    QString Text;
    /// What is left out, and why.
    QStringList Notes;
};
