#pragma once

#include <QList>
#include <QString>

/// Holds the ports that "Port.txt" beside the program names, so that no other program takes them; no data
/// passes. A port that can't be had is left out in silence.
class CPortHolder {
public:
    /// strPath in backslash form.
    explicit CPortHolder(const QString& strPath);
    ~CPortHolder();
    CPortHolder(const CPortHolder&) = delete;
    CPortHolder& operator=(const CPortHolder&) = delete;

    /// A line that is no number takes a port of the system's choosing. A missing or empty file does nothing.
    /// At most 64 lines count, so that a strange file can't use up what the process may open.
    void Run();

    /// The ports that are held now.
    QList<quint16> GetPorts() const;

private:
    QString m_strPath;
    QList<int> m_sockets;
};
