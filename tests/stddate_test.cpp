#include "stddate.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <tuple>

#include "base/replaced.h"
#include "stddatereference.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr const char* RowFormat = "%e days, %I hours, %M minutes, %S seconds";
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

template <class T>
std::string Text(const T& value, const char* format = nullptr) {
    VqString text;
    value.PrintToVqString(text, format);
    return Bytes(text);
}

template <class... T>
std::string Texts(const T&... values) {
    return ((Text(values) + " ") + ...);
}

template <class T>
T Read(const std::string& text, const char* format = nullptr) {
    T value;
    value.ScanFromVqString(VqString(text.c_str()), format);
    return value;
}

d_Interval Seconds(float seconds) { return d_Interval(0, 0, 0, seconds); }
d_Interval Days(int days) { return d_Interval(days, 0, 0, 0); }

int SetDefaultZone(int hours) {
    const int before = d_Time::default_Time_Zone();
    d_Time::set_default_Time_Zone(hours);
    return before;
}

template <class T>
T RandomFields(std::mt19937& random) {
    T value;
    unsigned char bytes[sizeof(T)];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

template <class T>
bool Same(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

static_assert(!std::is_convertible_v<long, d_Time> && !std::is_convertible_v<float, d_Interval>);
static_assert(std::is_trivially_copyable_v<d_Timestamp> && std::is_trivially_copyable_v<d_Interval>);

// --- Day numbers

TEST(StdDate, DayNumbersAndTheirDatesAreThoseOfTheFormulas) {
    d_Date date;
    const auto check = [&](std::int32_t n) {
        date.setAbsDate(n);
        ASSERT_TRUE(Same(date, ReferenceDate(n))) << n;
        ASSERT_EQ(date.getAbsDate(), ReferenceAbsDate(date.year, date.month, date.day)) << Text(date);
    };
    for (std::int32_t n = -5000; n <= 5373485; ++n) check(n);
    std::mt19937 random(1);
    for (int i = 0; i < 1000000; ++i) {
        check(static_cast<std::int32_t>(random()));
        date = RandomFields<d_Date>(random);
        ASSERT_EQ(date.getAbsDate(), ReferenceAbsDate(date.year, date.month, date.day)) << Text(date);
    }
    check(INT32_MIN);
    check(INT32_MAX);
}

TEST(StdDate, MovesADayLess) {
    const std::tuple<d_Date, const char*, const char*, const char*, const char*> cases[] = {
        {{2000, 1, 1}, "1999-12-31", "1999-12-30", "2000-01-10", "1999-12-21"},
        {{1582, 10, 15}, "1582-10-04", "1582-10-03", "1582-10-24", "1582-09-24"},
        {{2000, 3, 1}, "2000-02-29", "2000-02-28", "2000-03-10", "2000-02-19"},
    };
    for (const auto& [start, sameNumber, decremented, tenDays, tenDaysBack] : cases) {
        d_Date date = start;
        date.setAbsDate(date.getAbsDate());
        EXPECT_EQ(Text(date), sameNumber);
        EXPECT_TRUE(Same((date = start)++, start));
        EXPECT_TRUE(Same(date, start)) << "a day more than a day less";
        EXPECT_TRUE(Same((date = start)--, start));
        EXPECT_EQ(Text(date), decremented);
        EXPECT_EQ(Text(start + d_Interval(10, 23, 0, 0)), tenDays);
        EXPECT_EQ(Text(Days(10) + start), tenDays);
        EXPECT_EQ(Text(start - d_Interval(10, 23, 0, 0)), tenDaysBack);
        for (const float none : {Infinity, -Infinity, NotANumber, 86399.99f, -86399.99f}) {
            EXPECT_EQ(Text(start + Seconds(none)), sameNumber) << none;
        }
    }
    EXPECT_EQ(Text(d_Date(2001, 1)), "2000-12-31");
    EXPECT_EQ(Text(d_Date(2001, 60)), "2001-02-28");
    const d_Date saturday(2000, 1, 1);
    for (int i = 0; i < 7; ++i) {
        d_Date next = saturday, previous = saturday;
        EXPECT_EQ(Text(next.next(static_cast<d_Date::Weekday>(i))), "2000-01-0" + std::to_string(i + 1));
        const int day = i == 6 ? 24 : 25 + i;
        EXPECT_EQ(Text(previous.previous(static_cast<d_Date::Weekday>(i))), "1999-12-" + std::to_string(day));
    }
    d_Date last, first;
    last.setAbsDate(INT32_MAX);
    first.setAbsDate(INT32_MIN + saturday.getAbsDate());
    EXPECT_EQ(Text(saturday + Seconds(3e38f)), Text(last));
    EXPECT_EQ(Text(saturday - Seconds(3e38f)), Text(first));
}

TEST(StdDate, KnowsTheCalendar) {
    EXPECT_EQ(d_Date(2000, 1, 1).getAbsDate(), 2451544);
    EXPECT_EQ(d_Date(2000, 1, 1).day_of_week(), d_Date::Saturday);
    EXPECT_EQ(d_Date(-32768, 1, 1).day_of_week(), (ReferenceAbsDate(-32768, 1, 1) + 2) % 7 + 7) << "not below 0";
    EXPECT_EQ(d_Date(2004, 12, 31).day_of_year(), 366);
    EXPECT_EQ(d_Date(1582, 12, 31).day_of_year(), 355);

    for (short year = -4712; year < 9999; ++year) {
        const bool leap = year % 4 == 0 && (year < 1582 || year % 100 != 0 || year % 400 == 0);
        EXPECT_EQ(d_Date::days_in_month(year, 2), leap ? 29 : 28) << year;
    }
    int days = 0;
    for (unsigned short month = 0; month < 300; ++month) days += d_Date::days_in_month(2023, month);
    EXPECT_EQ(days, 365);
    EXPECT_EQ(d_Date(2023, 4, 7).days_in_month(), 30);
    EXPECT_EQ(d_Date(2023, 0xFF, 7).days_in_month(), 0);

    EXPECT_TRUE(d_Date(2000, 2, 30) == d_Date(2000, 3, 1));
    EXPECT_EQ(d_Date(2000, 3, 1) != d_Date(1999, 3, 1), 366);
}

// --- Clock and conversions

TEST(StdDate, ReadsTheClockAndTheDefaultZone) {
    FixedClock clock({2005, 3, 7}, {12, 5, 9, 0}, 120);
    const Replaced zone(SetDefaultZone, -3);
    EXPECT_EQ(Texts(d_Date(), d_Date::current()), "2005-03-07 2005-03-07 ");
    EXPECT_EQ(Texts(d_Time(), d_Time::current()), "09:05:09.00-03:00 09:05:09.00-03:00 ");
    const std::string now = "2005-03-07T09:05:09.00-03:00 ";
    EXPECT_EQ(Texts(d_Timestamp(), d_Timestamp::current()), now + now);

    d_Time::set_default_Time_Zone_to_local();
    EXPECT_EQ(d_Time::default_Time_Zone(), 2) << "toward the east";
    for (const int minutes : {-330, 0}) {
        clock.Set({2005, 3, 7}, {12, 5, 9, 0}, minutes);
        d_Time::set_default_Time_Zone_to_local();
        EXPECT_EQ(d_Time::default_Time_Zone(), -5) << "in whole hours, and kept without an offset";
    }
}

// A clock on which midnight comes after the first reading of the date.
TEST(StdDate, TimestampsDoNotTakeTheDateBeforeMidnightWithTheTimeAfterIt) {
    static int readings;
    static constexpr VqClock midnight = {[](btime* time, bdate* date) {
                                             const bool before = readings++ == 0;
                                             *date = {2005, 3, static_cast<signed char>(before ? 7 : 8)};
                                             *time = {static_cast<signed char>(before ? 23 : 0), 0, 0, 0};
                                         },
                                         nullptr, nullptr};
    readings = 0;
    const Replaced clock(VqSetClock, &midnight);
    const d_Timestamp now;
    EXPECT_EQ(Text(now), "2005-03-08T00:00:00.00+00:00");
}

TEST(StdDate, ConvertsFromTheOtherTypes) {
    const Replaced zone(SetDefaultZone, 2);
    const VqDate date(2005, 3, 7);
    const VqTime time(23, 5, 9);
    const VqDateTime dateTime(date, time);
    const d_Timestamp timestamp(d_Date(1999, 12, 31), d_Time(1, 2, 3.25f, -1, -30));

    EXPECT_EQ(Texts(d_Date(date), d_Date(dateTime), d_Date(timestamp)), "2005-03-07 2005-03-07 1999-12-31 ");
    EXPECT_EQ(Texts(d_Time(time), d_Time(dateTime)), "25:05:09.00+02:00 25:05:09.00+02:00 ") << "made with the zone";
    EXPECT_EQ(Texts(d_Time(timestamp), d_Timestamp(dateTime)), "00:-28:03.25-01:30 2005-03-07T25:05:09.00+02:00 ");
    EXPECT_EQ(Text(d_Timestamp(d_Date(date))), "2005-03-07T02:00:00.00+02:00");

    d_Date d;
    EXPECT_EQ(Text(d = date) + Text(d = timestamp) + Text(d = dateTime), "2005-03-071999-12-312005-03-07");
    d_Time t(timestamp);
    EXPECT_EQ(Text(t = time), "23:05:09.00+02:00") << "assigned without the zone";
    EXPECT_EQ(Text(t = timestamp) + Text(t = dateTime), "00:-28:03.25-01:3023:05:09.00+02:00");
    d_Timestamp s(timestamp);
    EXPECT_EQ(Text(s = d), "2005-03-07T00:-28:03.25-01:30");
    EXPECT_EQ(Text(s = dateTime), "2005-03-07T23:05:09.00+02:00");
}

// --- Times

TEST(StdDate, TimesAreMadeOfWhatTheirFieldsHold) {
    const std::tuple<d_Time, const char*> cases[] = {
        {{12, 5, 9.25f}, "12:05:09.25+00:00"},           {{23, 30, 0, 2, 45}, "25:75:00.00+02:45"},
        {{2, 30, 59.999f, -5, 0}, "-03:30:59.99-05:00"}, {{300, 65535, 300.5f, 300, 0}, "88:-01:44.50+44:00"},
        {{0, 0, -1.5f}, "00:00:-01.-50+00:00"},          {{1, 2, 3e38f}, "01:02:00.00+00:00"},
        {{1, 2, Infinity}, "01:02:00.00+00:00"},         {{1, 2, NotANumber}, "01:02:00.00+00:00"},
        {d_Time(25 * 3600), "25:00:00.00+00:00"},        {d_Time(-1L), "23:59:59.00+00:00"},
        {d_Time(-86400L), "00:00:00.00+00:00"},          {d_Time(-2147483647L - 1), "20:45:52.00+00:00"},
        {d_Time(2147483647L), "43:14:07.00+00:00"},
    };
    for (const auto& [time, text] : cases) EXPECT_EQ(Text(time), text);
    const Replaced zone(SetDefaultZone, -1);
    EXPECT_EQ(Text(d_Time(0, 5, 9)), "-01:05:09.00-01:00");
    EXPECT_EQ(Text(d_Time(3599L)), "-01:59:59.00-01:00");
}

TEST(StdDate, TimesCompareOnTheClocksOfTheirZones) {
    EXPECT_TRUE(d_Time(12, 0, 0, 2, 30) == d_Time(12, 0, 0, -7, -30));
    EXPECT_EQ(d_Time(3, 0, 0) != d_Time(1, 59, 59), 2);
    EXPECT_EQ(d_Time(3, 10, 0) != d_Time(3, 59, 59), -49);
    EXPECT_EQ(d_Time(3, 10, 8.25f) != d_Time(3, 10, 7.5f), 0) << "less than a second apart";
    EXPECT_EQ(d_Time(3, 10, 1.25f) != d_Time(3, 10, 3.5f), -2);
    EXPECT_EQ((d_Time(13, 0, 1.75f, 2, 0) - d_Time(12, 59, 2)).seconds, 7259.0f);
    EXPECT_EQ((d_Time(2, 30, 0, -5, 0) - d_Time(2, 0, 0, -5, 0)).seconds, 1800.0f) << "behind a negative hour";
    EXPECT_EQ((d_Time(2, 0, 0, -5, 0) - d_Time(2, 0, 59.5f, -5, 0)).seconds, -59.0f);
    EXPECT_EQ((d_Time(1, 30, 7, -2, 0) - d_Time(0, 0, 0)).seconds, -1793.0f);
}

TEST(StdDate, TimesMoveRoundMidnight) {
    const d_Time time(12, 5, 9.25f, 1, 30);
    EXPECT_EQ(Text(d_Interval(0, 11, 0, 0) + time), "00:35:09.25+01:30");
    for (const float none : {Infinity, -Infinity, NotANumber, 0.0f}) {
        EXPECT_EQ(Text(time + Seconds(none)), "13:35:09.25+01:30") << none;
    }
    EXPECT_EQ(Text(d_Time(0, 0, 0) + Seconds(3e38f)), Text(d_Time(0, 0, 0) - -Seconds(3e38f)));

    std::mt19937 random(3);
    constexpr int Parts = 128;  // of a second, so that an interval has more digits than hundredths
    for (int i = 0; i < 200000; ++i) {
        const d_Time start = RandomFields<d_Time>(random);
        const int interval = static_cast<int>(random() % (1u << 25)) - (1 << 24);
        const float seconds = static_cast<float>(interval) / Parts;
        ASSERT_TRUE(Same(start + Seconds(seconds), ReferenceSum<Parts>(start, interval))) << Text(start) << seconds;
        ASSERT_TRUE(Same(start - Seconds(seconds), ReferenceSum<Parts>(start, -interval))) << Text(start) << seconds;
    }
    // Late in the day an interval has no room for hundredths.
    for (int hundredths = 0; hundredths < 6000; ++hundredths) {
        d_Time start(23, 59, static_cast<float>(hundredths / 100));
        start.hundredths = static_cast<std::int8_t>(hundredths % 100);
        for (const d_Interval& none : {Seconds(0), Days(1), Days(-400)}) ASSERT_TRUE(Same(start + none, start));
        for (const int n : {Parts, -Parts, 59 * Parts, 1, -1, 12345678}) {
            ASSERT_TRUE(Same(start + Seconds(static_cast<float>(n) / Parts), ReferenceSum<Parts>(start, n))) << n;
        }
    }
}

// --- Timestamps

TEST(StdDate, TimestampsCarryIntoTheCalendar) {
    const std::tuple<d_Timestamp, d_Interval, const char*> cases[] = {
        {{{1999, 12, 31}, {23, 0, 0}}, d_Interval(0, 2, 0, 0), "2000-01-01T01:00:00.00+00:00"},
        {{{2000, 3, 1}, {0, 0, 0}}, Seconds(-0.25f), "2000-02-29T23:59:59.75+00:00"},
        {{{2005, 2, 31}, {12, 0, 0}}, d_Interval(0, 11, 0, 0), "2005-02-31T23:00:00.00+00:00"},
        {{{2005, 2, 28}, {23, 30, 0, 2, 0}}, Seconds(0), "2005-03-01T01:30:00.00+02:00"},
        {{{2005, 3, 1}, {1, 0, 0, -2, 0}}, Seconds(0), "2005-02-28T23:00:00.00-02:00"},
        {{{2005, 3, 1}, {1, 0, 0}}, Seconds(Infinity), "2005-03-01T01:00:00.00+00:00"},
    };
    for (const auto& [start, interval, text] : cases) {
        EXPECT_EQ(Text(start + interval), text);
        EXPECT_EQ(Text(interval + start), text);
        EXPECT_EQ(Text(start - -interval), text);
    }

    // Every day, forward and back, through the change of calendar, and from day to day.
    std::vector<d_Timestamp> all = {{d_Date(-9000, 1, 1), d_Time(0, 0, 0)}};
    while (all.back().date.year < 3000) {
        d_Date next = all.back().date;
        const bool julian = next.year < 1582 || (next.year == 1582 && next.month < 10);
        const int last = julian && next.month == 2 ? 28 + (next.year % 4 == 0) : next.days_in_month();
        if (next.year == 1582 && next.month == 10 && next.day == 4) next.day = 14;
        if (++next.day > last) next.day = 1, ++next.month;
        if (next.month > 12) next.month = 1, ++next.year;
        d_Timestamp day = all.back();
        ASSERT_TRUE(Same((day += Days(1)).date, next)) << Text(next);
        ASSERT_TRUE(Same(day - Days(1), all.back())) << Text(next);
        all.push_back(day);
    }
    std::mt19937 random(4);
    for (int i = 0; i < 200000; ++i) {
        const auto distance = static_cast<int>(random() % 24000);  // so many seconds as a float holds
        const d_Timestamp* const from = &all[random() % (all.size() - 24000)];
        ASSERT_TRUE(Same(*from + Days(distance), from[distance])) << Text(*from) << distance;
        ASSERT_TRUE(Same(from[distance] + Days(-distance), *from)) << Text(*from) << distance;
    }
    EXPECT_EQ(d_Timestamp(d_Date(2000, 1, 5)) != d_Timestamp(d_Date(2000, 1, 2), d_Time(9, 0, 0)), 3);
}

// --- Intervals

TEST(StdDate, IntervalsAddUpTheirParts) {
    EXPECT_EQ(d_Interval().seconds, 0.0f);
    EXPECT_EQ(d_Interval(1, -2, -1, -0.5f).seconds, -93660.5f) << "one sign for all";
    EXPECT_EQ(d_Interval(std::numeric_limits<int>::min(), 0, 0, 0).seconds, -2147483648.0f * 86400);
    const d_Interval a = Seconds(90.5f), b = Days(1);
    EXPECT_EQ((-a).seconds, -90.5f);
    EXPECT_EQ((a + b).seconds, 86490.5f);
    EXPECT_EQ((a - b).seconds, -86309.5f);
    EXPECT_EQ((a * -3).seconds + (-3 * a).seconds, -543.0f);
    EXPECT_EQ((a / 4).seconds, 22.625f);
    EXPECT_EQ((a / 0).seconds, 90.5f);
    EXPECT_EQ((b * std::numeric_limits<int>::min() * 2000000000 * 2000000000 * 2000000000 * 2000000000).seconds,
              -Infinity);
    EXPECT_EQ(Days(0).is_zero() + 2 * Days(1).is_zero(), 1);
    std::mt19937 random(5);
    for (int i = 0; i < 200000; ++i) {
        const float seconds = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        const d_Interval whole = Seconds(1) * 0 + Seconds(std::fabs(seconds)), part = seconds < 0 ? -whole : whole;
        const d_Interval again(part.day(), part.hour(), part.minute(), part.second());
        ASSERT_LT(std::abs(part.hour()), 24);
        ASSERT_LT(std::abs(part.minute()), 60);
        if (std::fabs(seconds) < 1e14f) {
            ASSERT_EQ(again.seconds, part.seconds) << seconds;
        }
    }
    EXPECT_EQ(Seconds(3e38f).day(), std::numeric_limits<int>::max());
    EXPECT_EQ(Seconds(NotANumber).day() + Seconds(NotANumber).hour() + Seconds(NotANumber).minute(), 0);
}

// --- Overlaps

TEST(StdDate, PeriodsOverlapInEitherOrder) {
    constexpr unsigned short Most = 5;
    const auto date = [](unsigned short i) { return d_Date(2005, 12, static_cast<unsigned short>(28 + i)); };
    const auto time = [](unsigned short i) { return d_Time(i, 0, 0, static_cast<short>(i - 2), 0); };
    const auto stamp = [&](unsigned short i, unsigned short j) { return d_Timestamp(date(i), time(j)); };
    for (int i = 0; i < Most * Most * Most * Most; ++i) {
        const auto digit = [&](int place) { return static_cast<unsigned short>(i / place % Most); };
        const auto a = digit(1), b = digit(Most), c = digit(Most * Most), d = digit(Most * Most * Most);
        // A part that the other side lacks does not count.
        const int results[] = {overlaps(date(a), date(b), date(c), date(d)),
                               overlaps(time(a), time(b), time(c), time(d)),
                               overlaps(stamp(a, 0), stamp(b, 0), stamp(c, 0), stamp(d, 0)),
                               overlaps(stamp(0, a), stamp(0, b), stamp(0, c), stamp(0, d)),
                               overlaps(stamp(a, 9), stamp(b, 1), date(c), date(d)),
                               overlaps(date(a), date(b), stamp(c, 9), stamp(d, 1)),
                               overlaps(stamp(9, a), stamp(1, b), time(c), time(d)),
                               overlaps(time(a), time(b), stamp(9, c), stamp(1, d))};
        const int expected = ReferenceOverlaps(a, b, c, d);
        for (const int& result : results) EXPECT_EQ(result, expected) << a << b << c << d << " " << &result - results;
    }
    EXPECT_EQ(overlaps(date(2), date(3), date(4), date(1)), 1) << "enclosed from its end";
    EXPECT_EQ(overlaps(date(0), date(1), date(3), date(2)), 0);
}

// --- Texts

TEST(StdDate, TextsWithoutAFormatLoseNothing) {
    std::mt19937 random(6);
    for (int i = 0; i < 100000; ++i) {
        const auto stamp = RandomFields<d_Timestamp>(random);
        ASSERT_TRUE(Same(Read<d_Timestamp>(Text(stamp)), stamp)) << Text(stamp);
        ASSERT_TRUE(Same(Read<d_Date>(Text(stamp.date)), stamp.date)) << Text(stamp);
        ASSERT_TRUE(Same(Read<d_Time>(Text(stamp.time)), stamp.time)) << Text(stamp);
        d_Interval interval;
        interval.seconds = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        for (const char* const format : {static_cast<const char*>(nullptr), RowFormat}) {
            const d_Interval read = Read<d_Interval>(Text(interval, format), format);
            ASSERT_TRUE(Same(read, interval) || std::isnan(interval.seconds)) << Text(interval, format);
        }
    }
}

TEST(StdDate, ReadsTextsWithoutAFormat) {
    const Replaced zone(SetDefaultZone, 2);
    for (const char* const text : {"2005-3-7T12:05", "2005-3-7T12:05+02:00"}) {
        EXPECT_EQ(Texts(Read<d_Timestamp>(text), Read<d_Time>(text)),
                  "2005-03-07T12:05:00.00+02:00 12:05:00.00+02:00 ");
    }
    EXPECT_EQ(Text(Read<d_Timestamp>("2451545")), "2000-01-01T00:00:00.00+02:00");
    EXPECT_EQ(Texts(Read<d_Time>("12:05"), Read<d_Time>("43509")), "12:05:00.00+02:00 12:05:09.00+02:00 ");
    EXPECT_EQ(Text(Read<d_Time>("-3661.25")), "-01:-01:-01.-25+02:00");
    EXPECT_EQ(Text(Read<d_Time>("12:05:09Z")), "12:05:09.00+00:00");
    for (int hundredths = 0; hundredths < 8640000; hundredths += 97) {
        char text[16];
        std::snprintf(text, sizeof text, "%d.%02d", hundredths / 100, hundredths % 100);
        const auto time = Read<d_Time>(text);
        ASSERT_EQ(((time.hour * 60 + time.minute) * 60 + time.second) * 100 + time.hundredths, hundredths) << text;
    }
}

TEST(StdDate, PrintsAndScansUnderFormats) {
    const FixedClock clock({1999, 12, 31}, {23, 58, 57, 0});
    const Replaced zone(SetDefaultZone, 2);
    const d_Timestamp stamp(d_Date(2005, 3, 7), d_Time(13, 5, 9.25f, -1, 0));
    EXPECT_EQ(Text(stamp.date, "%Y-%m-%d %H"), "2005-03-07 23") << "what a date lacks is the clock's";
    EXPECT_EQ(Text(stamp.time, "%H:%M:%S %d"), "12:05:09 31");
    EXPECT_EQ(Text(d_Time(26, 0, 0, 0, 0), "%I %p %H"), "14 pm 26");
    EXPECT_EQ(Text(Read<d_Date>("2001-02-30", "%Y-%m-%d")), "0000-01-01");
    EXPECT_EQ(Text(Read<d_Time>("07:30:15 PM", "%I:%M:%S %p")), "19:30:15.00+02:00");
    EXPECT_EQ(Text(Read<d_Timestamp>("2005-03-07 19:30", "%Y-%m-%d %H:%M")), "2005-03-07T19:30:00.00+02:00");
}

TEST(StdDate, IntervalsPrintAndScanUnderFormats) {
    const std::tuple<float, const char*, const char*> prints[] = {
        {59.999996f, "%M %S", "0 59.999996"},
        {86400.1f, "%e %S", "1 0.1"},
        {3723, "%H:%%%x%M%", "1:%x2"},
        {NotANumber, "%e %S", "nan 0"},
    };
    for (const auto& [seconds, format, text] : prints) EXPECT_EQ(Text(Seconds(seconds), format), text);
    EXPECT_EQ(Text(Seconds(-93600.5f), RowFormat), "-1 days, -2 hours, 0 minutes, -0.5 seconds");
    EXPECT_EQ(Text(Seconds(-Infinity), RowFormat), "-inf days, 0 hours, 0 minutes, 0 seconds");
    const std::tuple<const char*, const char*, float> scans[] = {
        {"  +2 3", "%e %H", 183600}, {"", RowFormat, 0}, {"a5", "%%%S", 5},   {"-inf", "%e", -Infinity},
        {"7", "%M%S", 420},          {"x", "%S", 0},     {"1.5", "%I", 5400},
    };
    for (const auto& [text, format, seconds] : scans)
        EXPECT_EQ(Read<d_Interval>(text, format).seconds, seconds) << text;
    EXPECT_EQ(Read<d_Interval>("1 days, -2 hours, 3 minutes, 4.5 seconds", RowFormat).seconds, -93784.5f);
}

}  // namespace
