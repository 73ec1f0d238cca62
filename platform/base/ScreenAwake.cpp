#include "platform/base/ScreenAwake.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <optional>
#include <utility>

namespace Platform {

struct CScreenAwake::SHold {
    bool bWanted = true;
    /// The desktop's name for it, from its answer on.
    std::optional<uint> cookie;
};

namespace {

QDBusMessage CallOf(const QString& strMethod, const QVariantList& arguments) {
    const QString strName = QStringLiteral("org.freedesktop.ScreenSaver");
    QDBusMessage call = QDBusMessage::createMethodCall(
        strName, QStringLiteral("/org/freedesktop/ScreenSaver"), strName, strMethod);
    call.setArguments(arguments);
    // A desktop without a screen saver gets none for this.
    call.setAutoStartService(false);
    return call;
}

void LetGo(uint nCookie) {
    QDBusConnection::sessionBus().send(CallOf(QStringLiteral("UnInhibit"), {nCookie}));
}

} // namespace

void CScreenAwake::Hold(bool bOn) {
    if (bOn == (m_pHold != nullptr))
        return;
    if (!bOn) {
        m_pHold->bWanted = false;
        if (m_pHold->cookie)
            LetGo(*m_pHold->cookie);
        m_pHold.reset();
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    m_pHold = std::make_shared<SHold>();
    const QDBusMessage call =
        CallOf(QStringLiteral("Inhibit"), {QCoreApplication::applicationName(), m_strReason});
    auto* const pReply = new QDBusPendingCallWatcher(bus.asyncCall(call), QCoreApplication::instance());
    QObject::connect(pReply, &QDBusPendingCallWatcher::finished, pReply, [pReply, pHold = m_pHold] {
        const QDBusPendingReply<uint> reply = *pReply;
        pReply->deleteLater();
        if (reply.isError())
            return;
        // It may be over before the desktop has answered.
        if (pHold->bWanted)
            pHold->cookie = reply.value();
        else
            LetGo(reply.value());
    });
}

} // namespace Platform
