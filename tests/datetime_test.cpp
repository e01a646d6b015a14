#include "datetime.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <tuple>
#include <type_traits>

#include "base/replaced.h"
#include "rowvalues.h"
#include "vqint64.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

static_assert(std::is_trivially_copyable_v<VqDateTime>);
static_assert(std::is_same_v<decltype(VqDateTime() != VqDateTime()), int>);

using FieldList = std::array<int, 6>;

VqDateTime At(const FieldList& f) { return VqDateTime(VqDate(f[0], f[1], f[2]), VqTime(f[3], f[4], f[5])); }
FieldList Fields(const VqDateTime& at) {
    return {at.date.year, at.date.month, at.date.day, at.time.hour, at.time.minute, at.time.second};
}

// --- Clock

TEST(VqDateTime, ReadsTheClock) {
    const FixedClock clock({2005, 1, 1}, {0, 30, 9, 0}, 60);
    const FieldList local = {2005, 1, 1, 0, 30, 9};
    EXPECT_EQ(Fields(VqDateTime()), local);
    EXPECT_EQ(Fields(VqDateTime::Now()), local);
    VqTypeMgr manager(5);
    EXPECT_EQ(Fields(*static_cast<VqDateTime*>(RowValues(manager, VqTypeId_VqDateTime, 3).At(2))), local);
    EXPECT_EQ(Fields(VqDateTime::NowUTC()), (FieldList{2004, 12, 31, 23, 30, 9}));
    EXPECT_EQ(Fields(VqDateTime(VqDate(1999, 2, 3))), (FieldList{1999, 2, 3, 0, 30, 9}));
    EXPECT_EQ(Fields(VqDateTime(VqTime(7, 8, 9))), (FieldList{2005, 1, 1, 7, 8, 9}));
    VqDateTime at(VqDate(1999, 2, 3), VqTime(4, 5, 6));
    at = VqTime(7, 8, 9);
    EXPECT_EQ(Fields(at), (FieldList{1999, 2, 3, 7, 8, 9}));
}

// A clock that passes midnight between any two readings.
int readings = 0;
void ReadMidnight(btime* time, bdate* date) {
    const bool after = readings++ % 2 != 0;
    *time = after ? btime{0, 0, 0, 0} : btime{23, 59, 59, 0};
    *date = after ? bdate{2005, 1, 1} : bdate{2004, 12, 31};
}

TEST(VqDateTime, ReadsDateAndTimeInTheirOrder) {
    static constexpr VqClock midnight = {ReadMidnight, ReadMidnight, [] { return 0; }};
    const Replaced clock(VqSetClock, &midnight);
    readings = 0;
    EXPECT_EQ(Fields(VqDateTime()), (FieldList{2004, 12, 31, 0, 0, 0}));
    EXPECT_EQ(Fields(VqDateTime::Now()), (FieldList{2005, 1, 1, 23, 59, 59}));
    EXPECT_EQ(Fields(VqDateTime::NowUTC()), (FieldList{2004, 12, 31, 23, 59, 59}));
    EXPECT_EQ(readings, 5);
}

// --- Time zone

// One day at most is carried.
TEST(VqDateTime, ShiftsByTheZone) {
    const FieldList noon = {2005, 3, 7, 12, 0, 0};
    const std::tuple<FieldList, int, FieldList> cases[] = {
        {{2005, 1, 1, 0, 0, 0}, -3000, {2004, 12, 31, -26, 0, 0}}, {noon, 1439, {2005, 3, 8, 11, 59, 0}},
        {{2004, 12, 31, 23, 30, 5}, 60, {2005, 1, 1, 0, 30, 5}},   {noon, -1439, {2005, 3, 6, 12, 1, 0}},
        {{2005, 1, 1, 0, 0, 7}, -90, {2004, 12, 31, 22, 30, 7}},   {noon, 345, {2005, 3, 7, 17, 45, 0}},
        {{2004, 2, 28, 23, 59, 59}, 1, {2004, 2, 29, 0, 0, 59}},   {noon, 0, {2005, 3, 7, 12, 0, 0}},
        {{2005, 1, 1, 0, 0, 0}, 3000, {2005, 1, 2, 26, 0, 0}},     {noon, VqTimeZoneUnknown, noon},
    };
    for (const auto& [utc, zone, local] : cases) {
        const FixedClock clock({2005, 1, 1}, {0, 0, 0, 0}, zone);
        const int status = zone == VqTimeZoneUnknown ? -2171 : 0;
        VqDateTime at = At(utc);
        EXPECT_EQ(at.ToLocalTime(), status);
        EXPECT_EQ(Fields(at), local) << zone;
        EXPECT_EQ(at.ToUTCTime(), status);
        EXPECT_EQ(Fields(at), utc) << zone;
    }
}

// --- Seconds

TEST(VqDateTime, AddsSecondsAsCountedFromDayZero) {
    const auto number = [](const VqDateTime& at) {
        return std::int64_t{at.date.dayabs()} * 86400 + static_cast<long>(at.time);
    };
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const long day = static_cast<long>(random() % 100000), second = static_cast<long>(random() % 86400);
        const VqDateTime start(VqDate(2451545L + day), VqTime(second));
        const auto seconds = static_cast<std::int32_t>(random()) >> (i % 31);
        VqDateTime at = start;
        at.AddSeconds(seconds);
        ASSERT_EQ(at.IsDaTime(), 1);
        ASSERT_EQ(number(at), number(start) + seconds) << seconds;
    }
    // An hour that is no hour is reduced, and so counts as a clock that has passed midnight.
    VqDateTime odd = At({2005, 3, 7, 25, 0, 0});
    odd.AddSeconds(0);
    EXPECT_EQ(Fields(odd), (FieldList{2005, 3, 8, 1, 0, 0}));
}

// --- Comparison, null

TEST(VqDateTime, OrdersByDateThenTime) {
    const std::tuple<FieldList, FieldList, int> cases[] = {
        {{2005, 3, 7, 12, 5, 9}, {2005, 3, 7, 12, 5, 9}, 0}, {{2005, 3, 7, 12, 5, 9}, {2005, 3, 7, 12, 5, 8}, 1},
        {{2005, 3, 7, 12, 5, 9}, {2005, 3, 8, 0, 0, 0}, -1}, {{2005, -1, 7, 1, 0, 0}, {2005, 9, 7, 1, 0, 0}, 0},
        {{2005, -1, 7, 1, 0, 0}, {2005, 9, 7, 0, 59, 0}, 1}, {{2005, 3, 7, -1, 0, 0}, {2005, 3, 7, 0, 0, 0}, -1},
    };
    for (const auto& [a, b, sign] : cases) {
        EXPECT_EQ(Sign(At(a) != At(b)), sign);
        EXPECT_EQ(Sign(At(b) != At(a)), -sign);
        EXPECT_EQ(At(a).Compare(At(b)), At(a) != At(b));
    }
    EXPECT_EQ(At({2005, 3, 7, 12, 5, 9}).Compare(At({2005, 3, 7, 12, 5, 59})), -1);
}

TEST(VqDateTime, NullIsOneObjectAndNotTheNullValue) {
    VqDateTime& null = VqDateTime::Null();
    EXPECT_EQ(&null, &VqDateTime::Null());
    EXPECT_EQ(Fields(null), FieldList{});
    EXPECT_FALSE(null.IsNullValue());
    EXPECT_EQ(null.IsDaTime(), 0);

    VqDateTime at = At({2005, 3, 7, 12, 5, 9});
    EXPECT_EQ(at.IsDaTime(), 1);
    EXPECT_EQ(at.SetNullValue(), 0);
    EXPECT_TRUE(at.IsNullValue());
    at.time.second = 0;
    EXPECT_FALSE(at.IsNullValue());
    EXPECT_EQ(At({2005, 3, 7, 24, 0, 0}).IsDaTime() + At({2005, 2, 29, 12, 0, 0}).IsDaTime(), 0);
}

TEST(GetSystemTimeInMSSinceTheEpoch, IsNotSupported) {
    VqInt64 milliseconds(7, 8);
    EXPECT_EQ(GetSystemTimeInMSSinceTheEpoch(milliseconds), -2999);
    EXPECT_TRUE(milliseconds == VqInt64(7, 8));
}

// --- Rows

// Arrays of every short length, at odd addresses, between bytes that must stay.
TEST(DateAndTimeRows, StoreArraysAsTheirElements) {
    VqTypeMgr manager(5);
    std::mt19937 random(2);
    for (const char id : {VqTypeId_VqDate, VqTypeId_VqTime, VqTypeId_VqDateTime}) {
        const unsigned long inMemory = manager.MemLenGet(id, 1), size = inMemory == 8 ? 7 : inMemory;
        for (unsigned long count = 0; count <= 40; ++count) {
            for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian, VqFormat_Memory}) {
                ByteVector all(count * size + 2, 0xA5), each = all, bytes = all, memory(count * inMemory + 1);
                for (unsigned long i = 1; i <= count * size; ++i) bytes[i] = static_cast<unsigned char>(random());
                ASSERT_EQ(manager.Load(id, memory.data() + 1, &bytes[1], format, count), count * size);
                ASSERT_EQ(manager.Store(id, &all[1], memory.data() + 1, format, count), count * size);
                for (unsigned long i = 0; i < count; ++i) {
                    manager.Store(id, &each[1 + i * size], &memory[1 + i * inMemory], format, 1);
                }
                ASSERT_EQ(all, bytes) << int{id};
                ASSERT_EQ(each, bytes) << int{id} << " " << count;
            }
        }
    }
}

// Whatever the fields are.
TEST(DateAndTimeRows, TravelAsTextsThatLoseNothing) {
    VqTypeMgr manager(5);
    std::mt19937 random(3);
    const auto field = [&] { return static_cast<int>(random() >> 8); };
    for (int i = 0; i < 10000; ++i) {
        VqDateTime at = At({field(), field(), field(), field(), field(), field()});
        const std::unique_ptr<VqTypeConvertData> texts(manager.ConvertTo(VqTypeId_VqDateTime, &at, 1));
        const RowValues back(manager, VqTypeId_VqDateTime, 1, manager.ConvertFrom(VqTypeId_VqDateTime, texts.get(), 1));
        ASSERT_EQ(Fields(*static_cast<VqDateTime*>(back.Get())), Fields(at)) << Bytes(*texts->GetString(0));
    }
}

}  // namespace
