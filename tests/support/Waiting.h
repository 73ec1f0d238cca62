#pragma once

#include <QTest>

#include <functional>

/// Whether it comes true, with the event loop running, in more time than it could ever need.
inline bool WaitFor(const std::function<bool()>& done) {
    return QTest::qWaitFor(done, 20000);
}
