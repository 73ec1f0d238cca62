#include "platform/base/ProgramChooser.h"

#include "platform/base/FileCalls.h"
#include "platform/base/Process.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>

namespace Platform {

namespace {

bool OpenPlainly(const QString& strFile) {
    return StartQuietly({QStringLiteral("xdg-open"), strFile});
}

/// The desktop wants the open file. Writable, if it can be, so that a program in a sandbox may save it.
QVariantList PortalArguments(const QString& strFile) {
    int nFile = -1;
    const QByteArray path = strFile.toUtf8();
    const bool bWritable = OpenPlainFile(path, true, false, nFile) == 0;
    if (!bWritable && OpenPlainFile(path, false, false, nFile) != 0)
        return {};
    QDBusUnixFileDescriptor file;
    file.giveFileDescriptor(nFile);
    return {QString(), QVariant::fromValue(file),
            QVariantMap{{QStringLiteral("ask"), true}, {QStringLiteral("writable"), bWritable}}};
}

} // namespace

bool ChooseProgram(const QString& strFile) {
    // The desktop takes its dialog away when who asked for it leaves the bus: a tool that only sends the call
    // won't do.
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QVariantList arguments = bus.isConnected() ? PortalArguments(strFile) : QVariantList();
    if (arguments.isEmpty())
        return OpenPlainly(strFile);
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.OpenURI"), QStringLiteral("OpenFile"));
    call.setArguments(arguments);
    auto* const pReply = new QDBusPendingCallWatcher(bus.asyncCall(call), QCoreApplication::instance());
    QObject::connect(pReply, &QDBusPendingCallWatcher::finished, pReply, [pReply, strFile] {
        if (pReply->isError())
            OpenPlainly(strFile);
        pReply->deleteLater();
    });
    return true;
}

} // namespace Platform
