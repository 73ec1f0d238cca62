#include "platform/base/Module.h"

#include <gtest/gtest.h>

// A program folder that lost a file must end in a message, which needs a reason.
TEST(Module, TellsWhyThereIsNone) {
    Platform::CModule module(QStringLiteral("vorelnowhere"));
    EXPECT_EQ(module.Load("AnyFunction"), nullptr);
    EXPECT_TRUE(module.Reason().contains(QStringLiteral("vorelnowhere"))) << qPrintable(module.Reason());
}
