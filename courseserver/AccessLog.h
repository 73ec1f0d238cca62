#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// One line for each request. Starts anew, keeping the last file beside it, when it has grown to 4 MB.
class CAccessLog {
public:
    /// Native path. A file that can't be written leaves the log out.
    explicit CAccessLog(const QString& strFile);

    /// Bytes that are no plain text are written as "%XX".
    void Write(const QByteArray& peer, const QByteArray& what, const QByteArray& result);

private:
    QFile m_file;
};
