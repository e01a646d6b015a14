#include <gtest/gtest.h>

#include <string>

#include "memoryhandler.h"
#include "replaced.h"
#include "vqassert.h"

namespace {

std::string lastReport;
unsigned long lastSize;

TEST(Assert, WritesOneLineAndReturns) {
    const Replaced<VqAssertHandler> handler(VqSetAssertHandler, nullptr);
    testing::internal::CaptureStderr();
    VIQA_assert("a < b && \"100%s\"", "src\\vqstring", 1361);
    VIQA_assert(nullptr, nullptr, -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "src\\vqstring(1361): assertion failed: a < b && \"100%s\"\n?(-1): assertion failed: ?\n");
}

TEST(Assert, GoesToTheHandlerUntilItIsPutBack) {
    const VqAssertHandler record = [](const char* expression, const char* file, int line) {
        lastReport = std::string(expression) + '|' + file + '|' + std::to_string(line);
    };
    VqAssertHandler before;
    {
        const Replaced<VqAssertHandler> handler(VqSetAssertHandler, record);
        before = handler.Before();
        VIQA_assert("false", "file", 7);
        EXPECT_EQ(lastReport, "false|file|7");
    }
    EXPECT_NE(before, nullptr);
    EXPECT_EQ(VqSetAssertHandler(before), before);
}

TEST(MemoryHandler, IsToldTheSizeAndAnswers) {
    const Replaced<VqMemoryHandler> none(VqSetMemoryHandler, nullptr);
    EXPECT_EQ(VqCallMemoryHandler(123), 0);
    {
        const Replaced<VqMemoryHandler> handler(VqSetMemoryHandler, [](unsigned long size) {
            lastSize = size;
            return 5;
        });
        EXPECT_EQ(VqCallMemoryHandler(4000000000UL), 5);
        EXPECT_EQ(lastSize, 4000000000UL);
    }
    EXPECT_EQ(VqCallMemoryHandler(1), 0);
}

}  // namespace
