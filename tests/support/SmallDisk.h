#pragma once

#include <QByteArray>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

/// A small file system in memory that a test may fill up. It is mounted for this program alone and goes with
/// it. Made before the program has another thread: only then may somebody without rights mount one.
class CSmallDisk {
public:
    explicit CSmallDisk(int nKilobytes) {
        if (::unshare(CLONE_NEWNS) != 0 && !BecomeOwnMaster()) {
            m_strFailure = std::string("no name space of its own: ") + std::strerror(errno);
            return;
        }
        const QByteArray options = "size=" + QByteArray::number(nKilobytes) + "k";
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        if (::mount("vorel-test", m_dir.path().toUtf8().constData(), "tmpfs", 0, options.constData()) != 0)
            m_strFailure = std::string("no file system may be mounted: ") + std::strerror(errno);
        m_bMounted = m_strFailure.empty();
    }
    ~CSmallDisk() {
        if (m_bMounted)
            ::umount2(m_dir.path().toUtf8().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY(CSmallDisk)

    /// Why there is none; empty when there is one.
    const std::string& Failure() const { return m_strFailure; }
    QString Path() const { return m_dir.path(); }

    /// Fills it up until only so much is left.
    void LeaveFree(qint64 nBytes) const {
        QFile filler(Filler());
        if (!filler.open(QIODevice::WriteOnly))
            qFatal("no filler");
        const QByteArray block(4096, 'f');
        while (QStorageInfo(Path()).bytesFree() > nBytes && filler.write(block) > 0 && filler.flush())
            continue;
    }
    void MakeRoom() const { QFile::remove(Filler()); }

private:
    static bool BecomeOwnMaster() {
        const QByteArray user = "0 " + QByteArray::number(::getuid()) + " 1";
        const QByteArray group = "0 " + QByteArray::number(::getgid()) + " 1";
        return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && Put("/proc/self/setgroups", "deny") &&
               Put("/proc/self/uid_map", user) && Put("/proc/self/gid_map", group);
    }
    static bool Put(const char* szPath, const QByteArray& bytes) {
        QFile file(QString::fromLatin1(szPath));
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size();
    }
    QString Filler() const { return Path() + QStringLiteral("/filler"); }

    QTemporaryDir m_dir;
    std::string m_strFailure;
    bool m_bMounted = false;
};
