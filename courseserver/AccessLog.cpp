#include "courseserver/AccessLog.h"

#include <QDateTime>

namespace {

constexpr qint64 c_nMaxSize = qint64{4} * 1024 * 1024;
constexpr qsizetype c_nMaxText = 200;

} // namespace

CAccessLog::CAccessLog(const QString& strFile) : m_file(strFile) {
    static_cast<void>(m_file.open(QIODevice::WriteOnly | QIODevice::Append));
}

void CAccessLog::Write(const QByteArray& peer, const QByteArray& what, const QByteArray& result) {
    if (!m_file.isOpen())
        return;
    if (m_file.size() > c_nMaxSize) {
        const QString strName = m_file.fileName();
        m_file.close();
        QFile::remove(strName + QStringLiteral(".1"));
        QFile::rename(strName, strName + QStringLiteral(".1"));
        m_file.setFileName(strName);
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append))
            return;
    }
    const QByteArray time = QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1();
    const QByteArray line =
        time + ' ' + peer + ' ' + what.left(c_nMaxText).toPercentEncoding(" /?=&.()") + ' ' + result + '\n';
    m_file.write(line);
    m_file.flush();
}
