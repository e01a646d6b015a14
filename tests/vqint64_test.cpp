#include "vqint64.h"

#include <gtest/gtest.h>

#include "testsupport.h"
#include "vqbase.h"

using namespace vqtest;

namespace {

VqInt64 Number(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return VqInt64(static_cast<std::uint32_t>(bits), static_cast<std::int32_t>(static_cast<std::uint32_t>(bits >> 32)));
}

TEST(VqInt64, OrdersByTheSignedHighHalfThenTheUnsignedLowOne) {
    const std::int64_t ascending[] = {INT64_MIN,  -4294967297, -4294967296, -1,       0,
                                      0x7FFFFFFF, 0x80000000,  4294967296,  INT64_MAX};
    for (const std::int64_t a : ascending) {
        for (const std::int64_t b : ascending) {
            EXPECT_EQ(Number(a) < Number(b), a < b) << a << " " << b;
            EXPECT_EQ(Number(a) == Number(b), a == b) << a << " " << b;
        }
    }
}

TEST(VqInt64, Prints) {
    const struct {
        std::int64_t value;
        const char* format;
        const char* text;
    } cases[] = {
        {-31, nullptr, "-31"},
        {-31, "%S %d %i %x %X %o", "-31 -31 -31 -0x1f -0X1F -037"},
        {0, "%S %o %x", "0 00 0x0"},
        {255, "[%X]", "[0XFF]"},
        {INT64_MIN, "%S", "-9223372036854775808"},
        {INT64_MIN, "%x %X", "0x8000000000000000 0X8000000000000000"},
        {INT64_MIN, "%o", "01000000000000000000000"},
        {INT64_MAX, "%d", "9223372036854775807"},
        {7, "%%d %5d %d%", "%%d %5d 7%"},
        {7, "", ""},
    };
    for (const auto& c : cases) {
        VqString out(">");
        Number(c.value).PrintToVqString(out, c.format);
        EXPECT_EQ(Bytes(out), std::string(">") + c.text) << c.value;
    }
}

TEST(VqInt64, ScansAndFailsWithMinusOne) {
    const struct {
        const char* text;
        const char* format;
        std::int64_t value;  // from 99
    } cases[] = {
        {"-9223372036854775808", nullptr, INT64_MIN},
        {"+12", "%S", 12},
        {"-0x1F", "%S", -31},
        {"0XfF", "%x", 255},
        {"017", "%S", 15},
        {"017", "%o", 15},
        {"0", "%S", 0},
        {"18446744073709551617", "%S", 1},
        {"<5>", "<%d>", 5},
        {"", "%S", 99},
        {"5", "", 99},
        // failures
        {"12", "%x", -1},
        {"017", "%d", -1},
        {"0", "%d", -1},
        {"08", "%S", -1},
        {"12a", "%S", -1},
        {"0x1G", "%S", -1},
        {"<5", "<%d>", -1},
        {"[5>", "<%d>", -1},
        {" 5", "%S", -1},
    };
    for (const auto& c : cases) {
        VqInt64 value = Number(99);
        value.ScanFromVqString(VqString(c.text), c.format);
        EXPECT_EQ(value, Number(c.value)) << c.text << " under " << (c.format ? c.format : "null");
    }
    VqInt64 value;
    value.ScanFromVqString(Wide(u"-12"), "%S");
    EXPECT_EQ(value, Number(-12)) << "of 2-byte characters";
}

TEST(VqInt64, HalvesKeepTheirPlacesOnDisk) {
    const VqInt64 value(0x01020304, 0x05060708);
    unsigned char bytes[9] = {};
    EXPECT_EQ(Int64Store(bytes + 1, &value, VqFormat_BigEndian, 1), 8u);
    EXPECT_EQ(Hex(bytes + 1, 8), "01 02 03 04 05 06 07 08");
    EXPECT_EQ(Int64Store(bytes + 1, &value, VqFormat_LittleEndian, 1), 8u);
    EXPECT_EQ(Hex(bytes + 1, 8), "04 03 02 01 08 07 06 05");
    VqInt64 loaded;
    EXPECT_EQ(Int64Load(&loaded, bytes + 1, VqFormat_LittleEndian, 1), 8u);
    EXPECT_EQ(loaded, value);
    EXPECT_EQ(Int64SizeGet(nullptr, VqFormat_Memory, VqFormat_BigEndian, 3), 24u);
    EXPECT_EQ(Int64NullSizeGet(3), 24u);
    EXPECT_EQ(Int64SizeGetFromMemFile(nullptr, VqFormat_BigEndian, 3), 24u);
}

}  // namespace
