#pragma once

#include "platform/base/NativePath.h"
#include "tests/support/Printing.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

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
    void WriteProgram(const QString& strBelow, const QByteArray& script) const {
        Write(strBelow, script);
        QFile::setPermissions(Native(strBelow), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// A link that leads to the target as it is written.
    void Link(const QString& strTarget, const QString& strBelow) const {
        if (!QFile::link(strTarget, Native(strBelow)))
            qFatal("no link can be made");
    }
    /// A pipe: whoever opens it waits for ever.
    void MakePipe(const QString& strBelow) const {
        if (::mkfifo(QFile::encodeName(Native(strBelow)).constData(), 0600) != 0)
            qFatal("no pipe can be made");
    }

    /// The names in a folder, whatever they are of, in order.
    QStringList Names(const QString& strBelow = QString()) const {
        return QDir(Native(strBelow)).entryList(c_everything, QDir::Name);
    }
    /// The paths of everything below a folder, in order and with blanks between; folders end with "/".
    QString Tree(const QString& strBelow = QString()) const {
        QStringList paths;
        QDirIterator it(Native(strBelow), c_everything, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString strPath = it.next().mid(Native(strBelow).size() + 1);
            const bool bFolder = it.fileInfo().isDir() && !it.fileInfo().isSymLink();
            paths.append(bFolder ? strPath + QLatin1Char('/') : strPath);
        }
        paths.sort();
        return paths.join(QLatin1Char(' '));
    }

private:
    static constexpr QDir::Filters c_everything =
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

    QTemporaryDir m_dir;
};
