#pragma once

// What every test begins with: GoogleTest, which shows texts as texts, a folder of the test's own, and the
// little of the libraries that nearly every one uses.
#include "tests/support/TempFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QtCore/qtestsupport_core.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

/// A file that the build names, such as a script that lies beside its test.
inline QByteArray ReadTestFile(const char* szPath) {
    QFile file(QString::fromUtf8(szPath));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s can't be read", szPath);
    return file.readAll();
}

/// Whether it comes true, with the event loop running, in more time than it could ever need.
inline bool WaitFor(const std::function<bool()>& done) {
    return QTest::qWaitFor(done, 20000);
}
#define EXPECT_SOON(...) EXPECT_TRUE(::WaitFor([&] { return __VA_ARGS__; }))
#define ASSERT_SOON(...) ASSERT_TRUE(::WaitFor([&] { return __VA_ARGS__; }))
