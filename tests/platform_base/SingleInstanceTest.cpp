#include "platform/base/SingleInstance.h"
#include "tests/support/Environment.h"
#include "tests/support/Testing.h"

#include <QThread>

namespace {

// A second start that were taken for the first would open the same course twice; a first start that waited
// for an instance which never gets a window would not come up.
TEST(SingleInstance, ALaterStartEndsOnlyForAnInstanceWithAWindow) {
    const QString strName = u"vorel-test-%1"_s.arg(QCoreApplication::applicationPid());
    Platform::CSingleInstance first(strName);
    EXPECT_FALSE(first.ActivateOther());

    // The first holds the name but has no window yet.
    EXPECT_FALSE(Platform::CSingleInstance(strName).ActivateOther());

    int nActivated = 0;
    first.Listen([&] { ++nActivated; });
    // Busy in a long step: it is there all the same, and comes to the front afterwards.
    EXPECT_TRUE(Platform::CSingleInstance(strName).ActivateOther());
    while (nActivated == 0)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);

    bool bAnswered = false;
    QThread* pSecond =
        QThread::create([&] { bAnswered = Platform::CSingleInstance(strName).ActivateOther(); });
    pSecond->start();
    while (!pSecond->isFinished())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    delete pSecond;
    EXPECT_TRUE(bAnswered);
    EXPECT_EQ(nActivated, 2);
}

// A terminal that writes the display otherwise would get a second program, and another display's start none.
TEST(SingleInstance, KnowsADisplayByAnyOfItsNames) {
    const QString strName = u"vorel-display-%1"_s.arg(QCoreApplication::applicationPid());
    CEnvironment environment{{"DISPLAY", u"server.room.school.test:10"_s}};
    Platform::CSingleInstance first(strName);
    first.Listen([] {});
    environment.Set("DISPLAY", u"server.room.school.test:10.0"_s);
    EXPECT_TRUE(Platform::CSingleInstance(strName).ActivateOther());
    environment.Set("DISPLAY", u"server.room.school.test:11"_s);
    EXPECT_FALSE(Platform::CSingleInstance(strName).ActivateOther());
}

} // namespace
