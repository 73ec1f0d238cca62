#include "platform/base/ScreenAwake.h"

#include "tests/support/SessionBus.h"
#include "tests/support/Testing.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace {

/// Stands for the desktop's screen saver.
class CScreenSaver : public QDBusVirtualObject {
public:
    QString introspect(const QString& /*strPath*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QVariantList arguments = message.arguments();
        if (message.member() == u"Inhibit"_s && arguments.size() == 2) {
            m_called << u"keep away: "_s + arguments[1].toString();
            return connection.send(message.createReply(++m_nCookie));
        }
        m_called << message.member() + u' ' + QString::number(arguments.value(0).toUInt());
        return true;
    }
    QStringList m_called;
    uint m_nCookie = 6;
};

// A film that was paused before the desktop answered, and one that ends with its window, would keep the
// screen on for ever.
TEST(CScreenAwake, GivesBackWhatItWasGrantedHoweverLateThatComes) {
    const QString strAddress = CSessionBus::Address();
    ASSERT_FALSE(strAddress.isEmpty()) << "dbus-daemon is missing";
    QDBusConnection desktop = QDBusConnection::connectToBus(strAddress, u"screen saver"_s);
    CScreenSaver saver;
    ASSERT_TRUE(desktop.registerVirtualObject(u"/org/freedesktop/ScreenSaver"_s, &saver));
    ASSERT_TRUE(desktop.registerService(u"org.freedesktop.ScreenSaver"_s));
    const auto Calls = [&](int nCount) {
        WaitFor([&] { return saver.m_called.size() >= nCount; });
        return std::exchange(saver.m_called, {}).join(u", "_s);
    };
    {
        Platform::CScreenAwake awake(u"a film"_s);
        awake.Hold(true);
        awake.Hold(true);
        awake.Hold(false);
        EXPECT_EQ(Calls(2), u"keep away: a film, UnInhibit 7"_s);
        awake.Hold(false);
        awake.Hold(true);
        EXPECT_EQ(Calls(1), u"keep away: a film"_s);
        // The answer is under way.
        QTest::qWait(100);
    }
    EXPECT_EQ(Calls(1), u"UnInhibit 8"_s);
    QDBusConnection::disconnectFromBus(u"screen saver"_s);
}

} // namespace
