#pragma once

#include "platform/base/NativePath.h"
#include "tests/support/Printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A folder of one test, gone with it. Its name holds a blank and Chinese on purpose: every path of a test
/// meets them.
class CTempFolder {
public:
    explicit CTempFolder(const QString& strPlace = QDir::tempPath())
        : m_dir(strPlace + QStringLiteral("/vorel 测试 XXXXXX")) {}
    /// A place in memory, where the machine offers one: for tests to which it is no matter how long a disk
    /// takes to be sure.
    static QString InMemory() {
        const QString strMemory = QStringLiteral("/dev/shm");
        return QFileInfo(strMemory).isWritable() ? strMemory : QDir::tempPath();
    }

    /// Backslash form, no trailing backslash.
    QString Path() const { return Platform::FromNative(m_dir.path()); }
    QString Path(const QString& strBelow) const { return Path() + QLatin1Char('\\') + strBelow; }
    QString Native(const QString& strBelow = QString()) const {
        return strBelow.isEmpty() ? m_dir.path()
                                  : m_dir.path() + QLatin1Char('/') +
                                        QString(strBelow).replace(QLatin1Char('\\'), QLatin1Char('/'));
    }

    void Write(const QString& strBelow, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(Native(strBelow)).path());
        QFile file(Native(strBelow));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("test folder is not writable");
    }
    QByteArray Read(const QString& strBelow) const {
        QFile file(Native(strBelow));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool Exists(const QString& strBelow) const { return QFileInfo::exists(Native(strBelow)); }
    void MakeFolder(const QString& strBelow) const { QDir().mkpath(Native(strBelow)); }

private:
    QTemporaryDir m_dir;
};
