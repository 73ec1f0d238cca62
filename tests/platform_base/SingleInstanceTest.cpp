#include "platform/base/SingleInstance.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

namespace {

// A second start that were taken for the first would open the same course twice; a first start that waited
// for an instance which never answers would not come up.
TEST(SingleInstance, ALaterStartActivatesTheFirstOnlyWhenThatAnswers) {
    const QString strName = QStringLiteral("vorel-test-%1").arg(QCoreApplication::applicationPid());
    Platform::CSingleInstance first(strName);
    EXPECT_FALSE(first.ActivateOther());

    // The first holds the name but does not listen yet.
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(Platform::CSingleInstance(strName).ActivateOther());
    EXPECT_LT(timer.elapsed(), 5000);

    int nActivated = 0;
    first.Listen([&] { ++nActivated; });
    // The unanswered call still waits in the queue, and counts as one.
    bool bAnswered = false;
    QThread* pSecond =
        QThread::create([&] { bAnswered = Platform::CSingleInstance(strName).ActivateOther(); });
    pSecond->start();
    while (!pSecond->isFinished())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    delete pSecond;
    EXPECT_TRUE(bAnswered);
    EXPECT_GE(nActivated, 1);
}

} // namespace
