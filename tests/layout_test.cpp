// Lengths in memory: the same on every target, but for the values that hold a pointer. Where their fields lie is told
// in docs/abi/layouts.txt.
#include <gtest/gtest.h>

#include <cstddef>

#include "vqtm.h"

namespace {

constexpr bool Wide = sizeof(void*) == 8;

// Bytes of a value that holds a pointer, on 32-bit and on 64-bit targets.
constexpr std::size_t With(std::size_t on32, std::size_t on64) { return Wide ? on64 : on32; }

// The lengths and flags that engines reckon with.
TEST(Layout, EveryRowTellsTheLengthOfItsValues) {
    const struct {
        char id;
        unsigned long length;
        unsigned short fixed;
    } rows[] = {
        {VqTypeId_char, 1, 1},
        {VqTypeId_short, 2, 1},
        {VqTypeId_long, 4, 1},
        {VqTypeId_double, 8, 1},
        {VqTypeId_float, 4, 1},
        {VqTypeId_VqWord, 2, 1},
        {VqTypeId_VqDWord, 4, 1},
        {VqTypeId_int, 4, 1},
        {VqTypeId_unsigned, 4, 1},
        {VqTypeId_enum, 4, 1},
        {VqTypeId_VqByte, 1, 1},
        {VqTypeId_VqString, With(8, 16), 0},
        {VqTypeId_VqDate, 4, 1},
        {VqTypeId_VqTime, 3, 1},
        {VqTypeId_BlockId, 4, 1},
        {VqTypeId_VqObjId, 12, 1},
        {VqTypeId_VqClassId, 4, 1},
        {VqTypeId_VqRef, 20, 1},
        {VqTypeId_VqBlob, With(4, 8), 0},
        {VqTypeId_VqDateTime, 8, 1},
        {VqTypeId_VqIString, With(8, 16), 0},
        {VqTypeId_VqCaseIString, With(8, 16), 0},
        {VqTypeId_d_Date, 4, 1},
        {VqTypeId_d_Time, 6, 1},
        {VqTypeId_d_Timestamp, 10, 1},
        {VqTypeId_d_Interval, 4, 1},
        {VqTypeId_VqInt64, 8, 1},
        {VqTypeId_VqBoolean, 1, 1},
        {VqTypeId_VqNull_char, 2, 1},
        {VqTypeId_VqNull_uchar, 2, 1},
        {VqTypeId_VqNull_short, 4, 1},
        {VqTypeId_VqNull_ushort, 4, 1},
        {VqTypeId_VqNull_int, 8, 1},
        {VqTypeId_VqNull_unsigned, 8, 1},
        {VqTypeId_VqNull_long, 8, 1},
        {VqTypeId_VqNull_ulong, 8, 1},
        {VqTypeId_VqNull_float, 8, 1},
        {VqTypeId_VqNull_double, 12, 1},
        {VqTypeId_VqNull_VqInt64, 12, 1},
        {VqTypeId_VqSeal, 6, 1},
        {VqTypeId_illegal, 0, 1},
    };
    static_assert(std::size(rows) == VqTypeCount);
    const VqTypeMgr manager(5);
    for (const auto& row : rows) {
        EXPECT_EQ(manager.MemLenGet(row.id, 1), row.length) << manager.NameGet(row.id, nullptr);
        EXPECT_EQ(manager.MemLenGet(row.id, 3), 3 * row.length) << manager.NameGet(row.id, nullptr);
        EXPECT_EQ(manager.IsFixed(row.id), row.fixed) << manager.NameGet(row.id, nullptr);
    }
}

}  // namespace
