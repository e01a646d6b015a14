#include "datetime.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "base/replaced.h"
#include "convert.h"
#include "testsupport.h"
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

TEST(VqDateTime, ShiftsByTheZone) {
    const struct {
        FieldList utc;
        int zone;
        FieldList local;
    } cases[] = {
        {{2004, 12, 31, 23, 30, 5}, 60, {2005, 1, 1, 0, 30, 5}},
        {{2005, 1, 1, 0, 0, 0}, -30, {2004, 12, 31, 23, 30, 0}},
        {{2005, 1, 1, 0, 0, 7}, -60, {2004, 12, 31, 23, 0, 7}},
        {{2005, 1, 1, 0, 0, 0}, -90, {2004, 12, 31, 22, 30, 0}},
        {{2004, 2, 28, 23, 59, 59}, 1, {2004, 2, 29, 0, 0, 59}},
        {{2005, 3, 7, 12, 0, 0}, 345, {2005, 3, 7, 17, 45, 0}},
        {{2005, 3, 7, 12, 0, 0}, 0, {2005, 3, 7, 12, 0, 0}},
        {{2005, 3, 7, 12, 0, 0}, 1439, {2005, 3, 8, 11, 59, 0}},
        {{2005, 3, 7, 12, 0, 0}, -1439, {2005, 3, 6, 12, 1, 0}},
    };
    FixedClock clock({2005, 1, 1}, {0, 0, 0, 0});
    for (const auto& c : cases) {
        clock.Set({2005, 1, 1}, {0, 0, 0, 0}, c.zone);
        VqDateTime at = At(c.utc);
        EXPECT_EQ(at.ToLocalTime(), 0);
        EXPECT_EQ(Fields(at), c.local);
        EXPECT_EQ(at.ToUTCTime(), 0);
        EXPECT_EQ(Fields(at), c.utc);
    }
}

TEST(VqDateTime, CarriesOneDayAtMost) {
    FixedClock clock({2005, 1, 1}, {0, 0, 0, 0}, 3000);
    VqDateTime at = At({2005, 1, 1, 0, 0, 0});
    EXPECT_EQ(at.ToLocalTime(), 0);
    EXPECT_EQ(Fields(at), (FieldList{2005, 1, 2, 26, 0, 0}));
    at = At({2005, 1, 1, 0, 0, 0});
    EXPECT_EQ(at.ToUTCTime(), 0);
    EXPECT_EQ(Fields(at), (FieldList{2004, 12, 31, -26, 0, 0}));
}

TEST(VqDateTime, StaysWhereTheZoneIsUnknown) {
    const FixedClock clock({2005, 1, 1}, {0, 0, 0, 0}, VqTimeZoneUnknown);
    VqDateTime at = At({2005, 3, 7, 12, 5, 9});
    EXPECT_EQ(at.ToLocalTime(), -2171);
    EXPECT_EQ(at.ToUTCTime(), -2171);
    EXPECT_EQ(Fields(at), (FieldList{2005, 3, 7, 12, 5, 9}));
}

// --- Seconds

TEST(VqDateTime, AddsSeconds) {
    const struct {
        FieldList from;
        long seconds;
        FieldList to;
    } cases[] = {
        {{2000, 3, 1, 0, 0, 0}, -1, {2000, 2, 29, 23, 59, 59}},
        {{2000, 2, 29, 23, 59, 59}, 86400L * 2 + 5, {2000, 3, 3, 0, 0, 4}},
        {{2005, 3, 7, 12, 0, 0}, 86400, {2005, 3, 8, 12, 0, 0}},
        {{2005, 3, 7, 12, 0, 0}, -86400, {2005, 3, 6, 12, 0, 0}},
        {{2005, 3, 7, 12, 0, 0}, 0, {2005, 3, 7, 12, 0, 0}},
        {{2005, 3, 7, 0, 0, 10}, -86420, {2005, 3, 5, 23, 59, 50}},
        // An hour that is no hour is reduced, and so counts as a clock that has passed midnight.
        {{2005, 3, 7, 25, 0, 0}, 0, {2005, 3, 8, 1, 0, 0}},
    };
    for (const auto& c : cases) {
        VqDateTime at = At(c.from);
        at.AddSeconds(c.seconds);
        EXPECT_EQ(Fields(at), c.to) << c.seconds;
    }
}

TEST(VqDateTime, AddsSecondsAsCountedFromDayZero) {
    const auto number = [](const VqDateTime& at) {
        return std::int64_t{at.date.dayabs()} * 86400 + static_cast<long>(at.time);
    };
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const VqDateTime start(VqDate(2451545L + static_cast<long>(random() % 100000)),
                               VqTime(static_cast<long>(random() % 86400)));
        const auto seconds = static_cast<std::int32_t>(random()) >> (i % 31);
        VqDateTime at = start;
        at.AddSeconds(seconds);
        ASSERT_EQ(at.IsDaTime(), 1);
        ASSERT_EQ(number(at), number(start) + seconds) << seconds;
    }
}

// --- Comparison, null

TEST(VqDateTime, OrdersByDateThenTime) {
    const struct {
        FieldList a, b;
        int sign;
    } cases[] = {
        {{2005, 3, 7, 12, 5, 9}, {2005, 3, 7, 12, 5, 9}, 0}, {{2005, 3, 7, 12, 5, 9}, {2005, 3, 7, 12, 5, 8}, 1},
        {{2005, 3, 7, 12, 5, 9}, {2005, 3, 8, 0, 0, 0}, -1}, {{2005, -1, 7, 1, 0, 0}, {2005, 9, 7, 1, 0, 0}, 0},
        {{2005, -1, 7, 1, 0, 0}, {2005, 9, 7, 0, 59, 0}, 1}, {{2005, 3, 7, -1, 0, 0}, {2005, 3, 7, 0, 0, 0}, -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Sign(At(c.a) != At(c.b)), c.sign);
        EXPECT_EQ(Sign(At(c.b) != At(c.a)), -c.sign);
        EXPECT_EQ(At(c.a).Compare(At(c.b)), At(c.a) != At(c.b));
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
    EXPECT_EQ(Fields(at), (FieldList{-32768, -128, -128, -128, -128, -128}));
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

VqDateTime RandomDateTime(std::mt19937& random) {
    const auto field = [&] { return static_cast<int>(random() >> 8); };
    return At({field(), field(), field(), field(), field(), field()});
}

void Append(std::vector<unsigned char>& bytes, const VqDate& date, bool bigEndian) {
    const auto year = static_cast<std::uint16_t>(date.year);
    const unsigned char low = static_cast<unsigned char>(year), high = static_cast<unsigned char>(year >> 8);
    bytes.insert(bytes.end(), {bigEndian ? high : low, bigEndian ? low : high, static_cast<unsigned char>(date.month),
                               static_cast<unsigned char>(date.day)});
}
void Append(std::vector<unsigned char>& bytes, const VqTime& time, bool) {
    for (const std::int8_t field : {time.hour, time.minute, time.second}) {
        bytes.push_back(static_cast<unsigned char>(field));
    }
}
void Append(std::vector<unsigned char>& bytes, const VqDateTime& at, bool bigEndian) {
    Append(bytes, at.date, bigEndian);
    Append(bytes, at.time, bigEndian);
}

bool IsSame(const VqDate& a, const VqDate& b) { return a == b; }
bool IsSame(const VqTime& a, const VqTime& b) { return a == b; }
bool IsSame(const VqDateTime& a, const VqDateTime& b) { return Fields(a) == Fields(b); }

// Arrays of every short length, at odd addresses, between bytes that must stay.
template <class Value>
void ExpectStoredFieldByField(const std::vector<Value>& all, VqStoreFunc store, VqLoadFunc load) {
    for (std::size_t count = 0; count <= all.size(); ++count) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian, VqFormat_Memory}) {
            std::vector<unsigned char> expected = {0xA5};
            for (std::size_t i = 0; i < count; ++i) Append(expected, all[i], format == VqFormat_BigEndian);
            expected.push_back(0xA5);
            std::vector<unsigned char> bytes(expected.size(), 0xA5), memory(count * sizeof(Value) + 1);
            const auto size = static_cast<unsigned long>(bytes.size() - 2), n = static_cast<unsigned long>(count);
            if (count != 0) std::memcpy(memory.data() + 1, static_cast<const void*>(all.data()), memory.size() - 1);
            ASSERT_EQ(store(bytes.data() + 1, memory.data() + 1, format, n), size);
            ASSERT_EQ(bytes, expected);
            std::vector<Value> loaded(count, Value(all[0]));
            ASSERT_EQ(load(loaded.data(), bytes.data() + 1, format, n), size);
            for (std::size_t i = 0; i < count; ++i) ASSERT_TRUE(IsSame(loaded[i], all[i])) << count << " " << i;
        }
    }
}

TEST(DateAndTimeRows, StoreFieldByField) {
    std::mt19937 random(2);
    std::vector<VqDateTime> both;
    std::vector<VqDate> dates;
    std::vector<VqTime> times;
    for (int i = 0; i < 40; ++i) {
        both.push_back(RandomDateTime(random));
        dates.push_back(both.back().date);
        times.push_back(both.back().time);
    }
    ExpectStoredFieldByField(dates, DateStore, DateLoad);
    ExpectStoredFieldByField(times, TimeStore, TimeLoad);
    ExpectStoredFieldByField(both, DaTimeStore, DaTimeLoad);
}

TEST(DateAndTimeRows, CreateTodayAndNow) {
    const FixedClock clock({2005, 3, 7}, {12, 5, 9, 0});
    VqTypeMgr manager(5);
    void* const values = manager.Create(VqTypeId_VqDateTime, 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Fields(static_cast<VqDateTime*>(values)[i]), (FieldList{2005, 3, 7, 12, 5, 9}));
    }
    manager.Delete(VqTypeId_VqDateTime, values, 3);
}

std::string TextOf(VqTypeMgr& manager, char id, void* value) {
    const std::unique_ptr<VqTypeConvertData> record(manager.ConvertTo(id, value, 1));
    return record->GetString(0)->IsNullValue() ? "null" : Bytes(*record->GetString(0));
}

template <class Value>
Value ValueOf(VqTypeMgr& manager, char id, const char* text) {
    auto* const strings = static_cast<VqString*>(manager.Create(VqTypeId_VqString, 1));
    *strings = text;
    const std::unique_ptr<VqTypeConvertData> record(VqTypeConvertData::Make(VqTypeId_VqString, 1, strings, &manager));
    void* const values = manager.ConvertFrom(id, record.get(), 1);
    const Value value = *static_cast<Value*>(values);
    manager.Delete(id, values, 1);
    return value;
}

TEST(DateAndTimeRows, TravelAsTexts) {
    VqTypeMgr manager(5);
    VqDate date(2000, 1, 1);
    VqTime time(25, 0, 1);
    EXPECT_EQ(TextOf(manager, VqTypeId_VqDate, &date), "2451545");
    EXPECT_EQ(TextOf(manager, VqTypeId_VqTime, &time), "90001");
    EXPECT_TRUE(IsSame(ValueOf<VqDate>(manager, VqTypeId_VqDate, "2451545"), date));
    EXPECT_TRUE(IsSame(ValueOf<VqDate>(manager, VqTypeId_VqDate, ""), VqDate(-4713, 11, 24)));
    EXPECT_TRUE(IsSame(ValueOf<VqTime>(manager, VqTypeId_VqTime, "90001"), time));
    EXPECT_TRUE(IsSame(ValueOf<VqTime>(manager, VqTypeId_VqTime, ""), VqTime(0, 0, 0)));

    const struct {
        const char* text;
        FieldList fields;
    } cases[] = {
        {"2005-03-07T12:05:09", {2005, 3, 7, 12, 5, 9}},
        {"2005-3-7", {2005, 3, 7, 0, 0, 0}},
        {"2005-03-07T12", {2005, 3, 7, 12, 0, 0}},
        {"2005-03-07 12:05:09", {2005, 3, 7, 0, 0, 0}},
        // A number alone, as dates read it.
        {"2451545", {2000, 1, 1, 0, 0, 0}},
        {" +2451545 days", {2000, 1, 1, 0, 0, 0}},
        {"-5", {-4713, 11, 19, 0, 0, 0}},
        {"0x10", {-4713, 12, 10, 0, 0, 0}},
        {"", {-4713, 11, 24, 0, 0, 0}},
        {"noon", {-4713, 11, 24, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Fields(ValueOf<VqDateTime>(manager, VqTypeId_VqDateTime, c.text)), c.fields) << c.text;
    }
    for (const char* number : {"99999999999", "-99999999999", "017", "2147483647", "-2147483649"}) {
        EXPECT_TRUE(IsSame(ValueOf<VqDateTime>(manager, VqTypeId_VqDateTime, number).date,
                           ValueOf<VqDate>(manager, VqTypeId_VqDate, number)))
            << number;
    }
    VqDateTime at = At({2005, 3, 7, 12, 5, 9});
    EXPECT_EQ(TextOf(manager, VqTypeId_VqDateTime, &at), "2005-03-07T12:05:09");
    at = At({-5, -5, 100, -128, 0, -1});
    EXPECT_EQ(TextOf(manager, VqTypeId_VqDateTime, &at), "-0005--05-100T-128:00:-01");
    std::mt19937 random(3);
    for (int i = 0; i < 10000; ++i) {
        at = RandomDateTime(random);
        const std::string text = TextOf(manager, VqTypeId_VqDateTime, &at);
        ASSERT_EQ(Fields(ValueOf<VqDateTime>(manager, VqTypeId_VqDateTime, text.c_str())), Fields(at)) << text;
    }
}

}  // namespace
