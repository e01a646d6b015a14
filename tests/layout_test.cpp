// Sizes, alignments and offsets in memory: the same on every target, but for the values that hold a pointer.
#include <gtest/gtest.h>

#include <cstddef>

#include "vqtm.h"

namespace {

constexpr bool Wide = sizeof(void*) == 8;

// Bytes of a value that holds a pointer, on 32-bit and on 64-bit targets.
constexpr std::size_t With(std::size_t on32, std::size_t on64) { return Wide ? on64 : on32; }

#define EXPECT_LAYOUT(Type, Size, Alignment) \
    static_assert(sizeof(Type) == (Size) && alignof(Type) == (Alignment), #Type " has another layout")
#define EXPECT_FIELD(Type, Field, Offset) \
    static_assert(offsetof(Type, Field) == (Offset), #Type "::" #Field " has moved")

EXPECT_LAYOUT(VqString, With(8, 16), sizeof(void*));
EXPECT_LAYOUT(VqIString, With(8, 16), sizeof(void*));
EXPECT_LAYOUT(VqCaseIString, With(8, 16), sizeof(void*));
EXPECT_LAYOUT(VqBlob, With(4, 8), sizeof(void*));

EXPECT_LAYOUT(VqInt64, 8, 4);
EXPECT_FIELD(VqInt64, low, 0);
EXPECT_FIELD(VqInt64, high, 4);

EXPECT_LAYOUT(VqDate, 4, 2);
EXPECT_FIELD(VqDate, year, 0);
EXPECT_FIELD(VqDate, month, 2);
EXPECT_FIELD(VqDate, day, 3);
EXPECT_LAYOUT(VqTime, 3, 1);
EXPECT_FIELD(VqTime, hour, 0);
EXPECT_FIELD(VqTime, minute, 1);
EXPECT_FIELD(VqTime, second, 2);
EXPECT_LAYOUT(VqDateTime, 8, 2);
EXPECT_FIELD(VqDateTime, date, 0);
EXPECT_FIELD(VqDateTime, time, 4);

EXPECT_LAYOUT(d_Date, 4, 2);
EXPECT_FIELD(d_Date, year, 0);
EXPECT_FIELD(d_Date, month, 2);
EXPECT_FIELD(d_Date, day, 3);
EXPECT_LAYOUT(d_Time, 6, 1);
EXPECT_FIELD(d_Time, tz_hour, 0);
EXPECT_FIELD(d_Time, tz_minute, 1);
EXPECT_FIELD(d_Time, hour, 2);
EXPECT_FIELD(d_Time, minute, 3);
EXPECT_FIELD(d_Time, second, 4);
EXPECT_FIELD(d_Time, hundredths, 5);
EXPECT_LAYOUT(d_Timestamp, 10, 2);
EXPECT_FIELD(d_Timestamp, date, 0);
EXPECT_FIELD(d_Timestamp, time, 4);
EXPECT_LAYOUT(d_Interval, 4, 4);

EXPECT_LAYOUT(VqBoolean, 1, 1);
EXPECT_LAYOUT(VqSeal, 6, 2);
EXPECT_FIELD(VqSeal, high, 0);
EXPECT_FIELD(VqSeal, middle, 2);
EXPECT_FIELD(VqSeal, low, 4);

EXPECT_LAYOUT(VqObjId, 12, 4);
EXPECT_FIELD(VqObjId, block, 0);
EXPECT_FIELD(VqObjId, low, 4);
EXPECT_FIELD(VqObjId, high, 8);
EXPECT_LAYOUT(VqDBOId, 16, 4);
EXPECT_FIELD(VqDBOId, id, 0);
EXPECT_FIELD(VqDBOId, database, 12);
EXPECT_LAYOUT(VqClassId, 4, 2);
EXPECT_FIELD(VqClassId, classNumber, 0);
EXPECT_FIELD(VqClassId, version, 2);
EXPECT_LAYOUT(VqRef, 20, 4);
EXPECT_FIELD(VqRef, id, 0);
EXPECT_FIELD(VqRef, database, 12);
EXPECT_FIELD(VqRef, classId, 14);
EXPECT_LAYOUT(VqLocalRef, 16, 4);
EXPECT_FIELD(VqLocalRef, id, 0);
EXPECT_FIELD(VqLocalRef, classId, 12);

#define EXPECT_NULLABLE(Type, Size, Alignment, Indicator) \
    EXPECT_LAYOUT(Type, Size, Alignment);                 \
    EXPECT_FIELD(Type, value, 0);                         \
    EXPECT_FIELD(Type, isNull, Indicator)

EXPECT_NULLABLE(VqNull_char, 2, 1, 1);
EXPECT_NULLABLE(VqNull_uchar, 2, 1, 1);
EXPECT_NULLABLE(VqNull_short, 4, 2, 2);
EXPECT_NULLABLE(VqNull_ushort, 4, 2, 2);
EXPECT_NULLABLE(VqNull_int, 8, 4, 4);
EXPECT_NULLABLE(VqNull_unsigned, 8, 4, 4);
EXPECT_NULLABLE(VqNull_long, 8, 4, 4);
EXPECT_NULLABLE(VqNull_ulong, 8, 4, 4);
EXPECT_NULLABLE(VqNull_float, 8, 4, 4);
EXPECT_NULLABLE(VqNull_double, 12, 4, 8);
EXPECT_NULLABLE(VqNull_VqInt64, 12, 4, 8);

EXPECT_FIELD(VqTypeConvertData, manager, 0);
EXPECT_FIELD(VqTypeConvertData, data, sizeof(void*));
EXPECT_FIELD(VqTypeConvertData, count, 2 * sizeof(void*));
EXPECT_FIELD(VqTypeConvertData, type, 2 * sizeof(void*) + sizeof(long));
EXPECT_LAYOUT(VqTypeMgr, 2 * sizeof(void*), sizeof(void*));

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
