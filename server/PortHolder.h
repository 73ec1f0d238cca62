#pragma once

#include "platform/base/HeldPort.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

/// Holds the ports that "Port.txt" beside the program names, so that no other program takes them; no data
/// passes. A port that can't be had is left out in silence.
class CPortHolder {
public:
    /// strPath in backslash form.
    explicit CPortHolder(const QString& strPath) : m_strPath(strPath) {}

    /// A line that is no number takes a port of the system's choosing. A missing or empty file does nothing.
    /// At most 64 lines count, so that a strange file can't use up what the process may open.
    void Run();

    /// The ports that are held now.
    QList<quint16> GetPorts() const;

private:
    QString m_strPath;
    std::vector<std::unique_ptr<Platform::CHeldPort>> m_held;
};
