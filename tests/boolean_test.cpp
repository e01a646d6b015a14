#include "boolean.h"

#include <gtest/gtest.h>

#include "testsupport.h"
#include "vqbase.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

VqBoolean Byte(int byte) {
    VqBoolean boolean;
    boolean.value = static_cast<std::uint8_t>(byte);
    return boolean;
}
const VqBoolean null = Byte(255);

TEST(VqBoolean, IsMadeAndAssignedFromAnyNumber) {
    EXPECT_TRUE(VqBoolean().value == 0 && VqBoolean(0).value == 0);
    EXPECT_TRUE(VqBoolean(-5).value == 1 && VqBoolean(65536L).value == 1);
    VqBoolean boolean(null);
    EXPECT_TRUE(boolean.IsNullValue());
    boolean = 256;
    EXPECT_EQ(boolean.value, 1);
    EXPECT_EQ(boolean.SetNullValue(), 0);
    EXPECT_EQ(boolean.value, 255);
    EXPECT_FALSE(Byte(254).IsNullValue());
}

// A byte of no boolean is a signed number in order: 200 is -56.
TEST(VqBoolean, ComparesOddBytes) {
    const struct {
        int a, b;
        bool equal, greater, less;
    } cases[] = {
        {200, 255, false, true, false}, {255, 200, false, false, true}, {200, 0, false, false, true},
        {0, 200, false, true, false},   {1, 200, true, true, false},    {200, 1, true, false, false},
        {2, 1, true, true, false},      {255, 0, false, false, true},
    };
    for (const auto& c : cases) {
        const VqBoolean a = Byte(c.a), b = Byte(c.b);
        SCOPED_TRACE(std::to_string(c.a) + " " + std::to_string(c.b));
        EXPECT_TRUE((a == b) == c.equal && (a != b) == !c.equal);
        EXPECT_TRUE((a > b) == c.greater && (a < b) == c.less);
        EXPECT_TRUE((a >= b) == (c.greater || c.equal) && (a <= b) == (c.less || c.equal));
    }
}

TEST(VqBoolean, ComparesWithNumbersOfAnyWidth) {
    const VqBoolean yes(1), no(0);
    EXPECT_TRUE(yes == 7 && yes == 7L && yes == true && 7 == yes && yes != 0 && 0L != yes);
    EXPECT_TRUE(no < 7 && no < 7L && !(no < 0) && no <= 0 && no >= 0L);
    EXPECT_TRUE(yes > 0 && !(yes > -1) && yes >= -1);
    EXPECT_TRUE(null < 0 && !(null == 0) && !(null > 0) && null != 255);
}

TEST(VqBoolean, PrintsAndScans) {
    const struct {
        const char* text;
        int byte;
    } scans[] = {
        {"T", 1},     {"t", 1},  {"TRUE", 1}, {"true", 1},  {"1", 1},        {"yes", 0},       {"True", 0},
        {"TRUE ", 0}, {"1x", 0}, {"", 0},     {"FALSE", 0}, {"{NULL}", 255}, {"{NULL}x", 255}, {"{null}", 0},
    };
    for (const auto& c : scans) {
        VqBoolean boolean = Byte(7);
        boolean.ScanFromVqString(VqString(c.text), "%d");
        EXPECT_EQ(boolean.value, c.byte) << c.text;
    }
    VqString text(">");
    for (const int byte : {0, 1, 2, 254, 255}) Byte(byte).PrintToVqString(text << ' ');
    EXPECT_EQ(Bytes(text), "> FALSE TRUE FALSE FALSE {NULL}");
    VqBoolean booleans[2];
    VqString array("T,1");
    VqTypeMgr(5).ScanFromVqString(VqTypeId_VqBoolean, booleans, array, ",,", 2);  // whatever commas the format has
    EXPECT_TRUE(booleans[0] == 1 && booleans[1] == 1);
}

}  // namespace
