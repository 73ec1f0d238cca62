#include <QCoreApplication>

#include <gtest/gtest.h>

// Window tests bring a main of their own, with a QApplication.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
