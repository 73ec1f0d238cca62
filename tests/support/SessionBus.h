#pragma once

#include "tests/support/Testing.h"

#include <QProcess>

/// A message bus of the tests' own in place of the desktop's. One for the whole process, which knows only
/// one.
class CSessionBus {
public:
    /// Empty where there is no daemon. Every first use of the bus has to come behind it.
    static QString Address() {
        static CSessionBus* s_pBus = nullptr;
        if (s_pBus == nullptr) {
            s_pBus = new CSessionBus;
            qAddPostRoutine([] { delete s_pBus; });
        }
        return s_pBus->m_strAddress;
    }

private:
    CSessionBus() {
        m_folder.Write(
            u"bus.conf"_s,
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context='default'>"
            "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/>"
            "</policy></busconfig>");
        m_daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                          u"--config-file="_s + m_folder.Native(u"bus.conf"_s)});
        if (!m_daemon.waitForStarted() || !WaitFor([this] { return m_daemon.canReadLine(); }))
            return;
        const QByteArray address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        m_strAddress = QString::fromUtf8(address);
    }
    ~CSessionBus() {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    CTempFolder m_folder;
    QProcess m_daemon;
    QString m_strAddress;
};
