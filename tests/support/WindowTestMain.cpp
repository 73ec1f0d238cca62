// The main of tests that open windows.
#include "platform/ui/ChineseTexts.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <unistd.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // The engine's sandbox doesn't run for the superuser, as whom tests run in containers.
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QApplication application(argc, argv);
    InstallChineseTexts(application);
    return RUN_ALL_TESTS();
}
