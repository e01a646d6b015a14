#include "stddate.h"

#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "convert.h"
#include "rowvalues.h"
#include "stddatereference.h"
#include "testsupport.h"
#include "vqbase.h"
#include "vqtypcmp.h"

using namespace vqtest;

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

template <class T>
std::string Text(const T& value, const char* format = nullptr) {
    VqString text;
    value.PrintToVqString(text, format);
    return Bytes(text);
}

template <class T>
T Read(const std::string& text, const char* format = nullptr) {
    T value;
    value.ScanFromVqString(VqString(text.c_str()), format);
    return value;
}

d_Interval Seconds(float seconds) { return d_Interval(0, 0, 0, seconds); }
d_Interval Days(int days) { return d_Interval(days, 0, 0, 0); }

// Sets the default zone while it lives.
class DefaultZone {
  public:
    explicit DefaultZone(int hours) : before_(d_Time::default_Time_Zone()) { d_Time::set_default_Time_Zone(hours); }
    ~DefaultZone() { d_Time::set_default_Time_Zone(before_); }
    DefaultZone(const DefaultZone&) = delete;
    DefaultZone& operator=(const DefaultZone&) = delete;

  private:
    int before_;
};

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

// All operators agree with the sign.
template <class T>
void ExpectOrder(const T& a, const T& b, int sign) {
    EXPECT_EQ(Sign(a != b), sign) << Text(a) << " and " << Text(b);
    const int results[] = {a == b, a<b, a> b, a <= b, a >= b};
    const int expected[] = {sign == 0, sign<0, sign> 0, sign <= 0, sign >= 0};
    EXPECT_TRUE(std::equal(results, std::end(results), expected)) << Text(a) << " and " << Text(b);
}

template <class T>
void ExpectAscending(const std::vector<T>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            ExpectOrder(values[i], values[j], Sign(static_cast<long long>(i) - static_cast<long long>(j)));
        }
    }
}

static_assert(!std::is_convertible_v<long, d_Time> && !std::is_convertible_v<float, d_Interval>);
static_assert(std::is_trivially_copyable_v<d_Timestamp> && std::is_trivially_copyable_v<d_Interval>);

// --- Day numbers

TEST(StdDate, DayNumbersAreThoseOfTheFormulas) {
    d_Date date(0, 1, 1);
    for (int year = -4713; year <= 9999; ++year) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= 31; ++day) {
                date.year = static_cast<std::int16_t>(year);
                date.month = static_cast<std::int8_t>(month);
                date.day = static_cast<std::int8_t>(day);
                ASSERT_EQ(date.getAbsDate(), ReferenceAbsDate(year, month, day)) << Text(date);
            }
        }
    }
    std::mt19937 random(1);
    for (int i = 0; i < 1000000; ++i) {
        date = RandomFields<d_Date>(random);
        ASSERT_EQ(date.getAbsDate(), ReferenceAbsDate(date.year, date.month, date.day)) << Text(date);
    }
}

TEST(StdDate, DatesOfDayNumbersAreThoseOfTheFormulas) {
    d_Date date;
    const auto check = [&](std::int32_t n) {
        date.setAbsDate(n);
        ASSERT_TRUE(Same(date, ReferenceDate(n))) << n;
    };
    for (std::int32_t n = -5000; n <= 5373485; ++n) check(n);
    std::mt19937 random(2);
    for (int i = 0; i < 1000000; ++i) check(static_cast<std::int32_t>(random()));
    check(INT32_MIN);
    check(INT32_MAX);
}

TEST(StdDate, MovesADayLess) {
    const struct {
        d_Date date;
        const char* sameNumber;  // setAbsDate(getAbsDate())
        const char* incremented;
        const char* decremented;
        const char* tenDays;
        const char* tenDaysBack;
    } cases[] = {
        {{2000, 1, 1}, "1999-12-31", "2000-01-01", "1999-12-30", "2000-01-10", "1999-12-21"},
        {{1582, 10, 15}, "1582-10-04", "1582-10-15", "1582-10-03", "1582-10-24", "1582-09-24"},
        {{2000, 3, 1}, "2000-02-29", "2000-03-01", "2000-02-28", "2000-03-10", "2000-02-19"},
    };
    for (const auto& c : cases) {
        d_Date date = c.date;
        date.setAbsDate(date.getAbsDate());
        EXPECT_EQ(Text(date), c.sameNumber);
        EXPECT_TRUE(Same((date = c.date)++, c.date));
        EXPECT_EQ(Text(date), c.incremented);
        EXPECT_TRUE(Same((date = c.date)--, c.date));
        EXPECT_EQ(Text(date), c.decremented);
        EXPECT_EQ(Text(c.date + d_Interval(10, 23, 0, 0)), c.tenDays);
        EXPECT_EQ(Text(Days(10) + c.date), c.tenDays);
        EXPECT_EQ(Text(c.date - d_Interval(10, 23, 0, 0)), c.tenDaysBack);
        for (const float none : {Infinity, -Infinity, NotANumber, 86399.99f, -86399.99f}) {
            EXPECT_EQ(Text(c.date + Seconds(none)), c.sameNumber) << none;
        }
    }
    EXPECT_EQ(Text(d_Date(2001, 1)), "2000-12-31");
    EXPECT_EQ(Text(d_Date(2001, 60)), "2001-02-28");
    const d_Date saturday(2000, 1, 1);
    const char* const next[] = {"2000-01-01", "2000-01-02", "2000-01-03", "2000-01-04",
                                "2000-01-05", "2000-01-06", "2000-01-07"};
    const char* const previous[] = {"1999-12-25", "1999-12-26", "1999-12-27", "1999-12-28",
                                    "1999-12-29", "1999-12-30", "1999-12-24"};
    for (int i = 0; i < 7; ++i) {
        d_Date date = saturday;
        EXPECT_EQ(Text(date.next(static_cast<d_Date::Weekday>(i))), next[i]);
        date = saturday;
        EXPECT_EQ(Text(date.previous(static_cast<d_Date::Weekday>(i))), previous[i]);
    }
    d_Date last, first;
    last.setAbsDate(INT32_MAX);
    first.setAbsDate(INT32_MIN + saturday.getAbsDate());
    EXPECT_EQ(Text(saturday + Seconds(3e38f)), Text(last));
    EXPECT_EQ(Text(saturday - Seconds(3e38f)), Text(first));
}

TEST(StdDate, KnowsTheCalendar) {
    EXPECT_EQ(d_Date(2000, 1, 1).getAbsDate(), 2451544);
    EXPECT_EQ(d_Date(1582, 10, 15).getAbsDate(), 2299160);
    EXPECT_EQ(d_Date(1582, 10, 4).getAbsDate(), 2299159);
    EXPECT_EQ(d_Date(2000, 1, 1).day_of_week(), d_Date::Saturday);
    EXPECT_EQ(d_Date(1582, 10, 4).day_of_week(), d_Date::Thursday);
    EXPECT_EQ(d_Date(-32768, 1, 1).day_of_week(), (ReferenceAbsDate(-32768, 1, 1) + 2) % 7 + 7) << "not below 0";
    EXPECT_EQ(d_Date(2004, 12, 31).day_of_year(), 366);
    EXPECT_EQ(d_Date(1582, 12, 31).day_of_year(), 355);

    const struct {
        short year;
        int february;
    } years[] = {{1500, 29}, {1582, 28}, {1584, 29}, {1600, 29}, {1700, 28}, {1900, 28},
                 {2000, 29}, {2023, 28}, {2024, 29}, {0, 29},    {-100, 29}, {-1, 28}};
    for (const auto& c : years) EXPECT_EQ(d_Date::days_in_month(c.year, 2), c.february) << c.year;
    int days = 0;
    for (unsigned short month = 0; month < 300; ++month) days += d_Date::days_in_month(2023, month);
    EXPECT_EQ(days, 365);
    EXPECT_EQ(d_Date(2023, 4, 7).days_in_month(), 30);
    EXPECT_EQ(d_Date(2023, 0xFF, 7).days_in_month(), 0);

    ExpectAscending<d_Date>({{-4712, 1, 1}, {1582, 10, 4}, {1582, 10, 15}, {1999, 12, 31}, {2000, 1, 1}, {2000, 2, 1}});
    ExpectOrder(d_Date(2000, 2, 30), d_Date(2000, 3, 1), 0);
    EXPECT_EQ(d_Date(2000, 3, 1) != d_Date(1999, 3, 1), 366);
}

// --- Clock and conversions

TEST(StdDate, ReadsTheClockAndTheDefaultZone) {
    FixedClock clock({2005, 3, 7}, {12, 5, 9, 0}, 120);
    const DefaultZone zone(-3);
    EXPECT_EQ(Text(d_Date()) + Text(d_Date::current()), "2005-03-072005-03-07");
    EXPECT_EQ(Text(d_Time()) + Text(d_Time::current()), "09:05:09.00-03:0009:05:09.00-03:00");
    EXPECT_EQ(Text(d_Timestamp()), "2005-03-07T09:05:09.00-03:00");
    EXPECT_EQ(Text(d_Timestamp::current()), Text(d_Timestamp()));

    d_Time::set_default_Time_Zone_to_local();
    EXPECT_EQ(d_Time::default_Time_Zone(), 2) << "toward the east";
    clock.Set({2005, 3, 7}, {12, 5, 9, 0}, -330);
    d_Time::set_default_Time_Zone_to_local();
    EXPECT_EQ(d_Time::default_Time_Zone(), -5) << "in whole hours";
    clock.Set({2005, 3, 7}, {12, 5, 9, 0}, 0);
    d_Time::set_default_Time_Zone_to_local();
    EXPECT_EQ(d_Time::default_Time_Zone(), -5) << "stays without an offset";
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
    const VqClock* const before = VqSetClock(&midnight);
    const d_Timestamp now;
    VqSetClock(before);
    EXPECT_EQ(Text(now), "2005-03-08T00:00:00.00+00:00");
}

TEST(StdDate, ConvertsFromTheOtherTypes) {
    const DefaultZone zone(2);
    const VqDate date(2005, 3, 7);
    const VqTime time(23, 5, 9);
    const VqDateTime dateTime(date, time);
    const d_Timestamp timestamp(d_Date(1999, 12, 31), d_Time(1, 2, 3.25f, -1, -30));

    EXPECT_EQ(Text(d_Date(date)) + Text(d_Date(dateTime)) + Text(d_Date(timestamp)), "2005-03-072005-03-071999-12-31");
    EXPECT_EQ(Text(d_Time(time)), "25:05:09.00+02:00") << "made with the zone";
    EXPECT_EQ(Text(d_Time(dateTime)), "25:05:09.00+02:00");
    EXPECT_EQ(Text(d_Time(timestamp)), "00:-28:03.25-01:30");
    EXPECT_EQ(Text(d_Timestamp(dateTime)), "2005-03-07T25:05:09.00+02:00");
    EXPECT_EQ(Text(d_Timestamp(d_Date(date))), "2005-03-07T02:00:00.00+02:00");

    d_Date d;
    EXPECT_EQ(Text(d = date), "2005-03-07");
    EXPECT_EQ(Text(d = timestamp), "1999-12-31");
    EXPECT_EQ(Text(d = dateTime), "2005-03-07");
    d_Time t(timestamp);
    EXPECT_EQ(Text(t = time), "23:05:09.00+02:00") << "assigned without the zone";
    EXPECT_EQ(Text(t = timestamp), "00:-28:03.25-01:30");
    EXPECT_EQ(Text(t = dateTime), "23:05:09.00+02:00");
    d_Timestamp s(timestamp);
    EXPECT_EQ(Text(s = d), "2005-03-07T00:-28:03.25-01:30");
    EXPECT_EQ(Text(s = dateTime), "2005-03-07T23:05:09.00+02:00");
}

// --- Times

TEST(StdDate, TimesAreMadeOfWhatTheirFieldsHold) {
    const struct {
        d_Time time;
        const char* text;
    } cases[] = {
        {{12, 5, 9.25f}, "12:05:09.25+00:00"},           {{23, 30, 0, 2, 45}, "25:75:00.00+02:45"},
        {{2, 30, 59.999f, -5, 0}, "-03:30:59.99-05:00"}, {{300, 65535, 300.5f, 300, 0}, "88:-01:44.50+44:00"},
        {{0, 0, -1.5f}, "00:00:-01.-50+00:00"},          {{1, 2, 3e38f}, "01:02:00.00+00:00"},
        {{1, 2, Infinity}, "01:02:00.00+00:00"},         {{1, 2, NotANumber}, "01:02:00.00+00:00"},
        {d_Time(25 * 3600), "25:00:00.00+00:00"},        {d_Time(-1L), "23:59:59.00+00:00"},
        {d_Time(-86400L), "00:00:00.00+00:00"},          {d_Time(-2147483647L - 1), "20:45:52.00+00:00"},
        {d_Time(2147483647L), "43:14:07.00+00:00"},
    };
    for (const auto& c : cases) EXPECT_EQ(Text(c.time), c.text);
    const DefaultZone zone(-1);
    EXPECT_EQ(Text(d_Time(0, 5, 9)), "-01:05:09.00-01:00");
    EXPECT_EQ(Text(d_Time(3599L)), "-01:59:59.00-01:00");
}

TEST(StdDate, TimesCompareOnTheClocksOfTheirZones) {
    ExpectAscending<d_Time>(
        {{0, 0, 0, 9, 0}, {11, 59, 59, -5, 0}, {12, 0, 0}, {12, 0, 1}, {12, 1, 0, 0, 30}, {13, 0, 0}});
    ExpectOrder(d_Time(12, 0, 0, 2, 30), d_Time(12, 0, 0, -7, -30), 0);
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
    EXPECT_EQ(Text(time + d_Interval(0, 11, 0, 0)), "00:35:09.25+01:30");
    EXPECT_EQ(Text(d_Interval(0, 11, 0, 0) + time), "00:35:09.25+01:30");
    EXPECT_EQ(Text(time - d_Interval(3, 14, 0, 0)), "23:35:09.25+01:30");
    EXPECT_EQ(Text(d_Time(0, 0, 0) + Seconds(-0.001f)), "23:59:59.99+00:00");
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
        ASSERT_TRUE(Same(start + Seconds(seconds), ReferenceSum<Parts>(start, interval)))
            << Text(start) << " " << seconds;
        ASSERT_TRUE(Same(start - Seconds(seconds), ReferenceSum<Parts>(start, -interval))) << Text(start);
    }
    // Late in the day an interval has no room for hundredths.
    for (int hundredths = 0; hundredths < 6000; ++hundredths) {
        d_Time start(23, 59, static_cast<float>(hundredths / 100));
        start.hundredths = static_cast<std::int8_t>(hundredths % 100);
        for (const d_Interval& none : {Seconds(0), Days(1), Days(-400)}) ASSERT_TRUE(Same(start + none, start));
        for (const int interval : {Parts, -Parts, 59 * Parts, 1, -1, 12345678}) {
            ASSERT_TRUE(
                Same(start + Seconds(static_cast<float>(interval) / Parts), ReferenceSum<Parts>(start, interval)))
                << Text(start) << " " << interval;
        }
    }
}

// --- Timestamps

TEST(StdDate, TimestampsCarryIntoTheCalendar) {
    const struct {
        d_Timestamp start;
        d_Interval interval;
        const char* text;
    } cases[] = {
        {{{1999, 12, 31}, {23, 0, 0}}, d_Interval(0, 2, 0, 0), "2000-01-01T01:00:00.00+00:00"},
        {{{2000, 3, 1}, {0, 0, 0}}, Seconds(-0.25f), "2000-02-29T23:59:59.75+00:00"},
        {{{1582, 10, 4}, {12, 0, 0}}, Days(1), "1582-10-15T12:00:00.00+00:00"},
        {{{1582, 10, 15}, {12, 0, 0}}, Days(-1), "1582-10-04T12:00:00.00+00:00"},
        {{{0, 2, 29}, {12, 0, 0}}, Days(1), "0000-03-01T12:00:00.00+00:00"},
        {{{2005, 2, 31}, {12, 0, 0}}, d_Interval(0, 11, 0, 0), "2005-02-31T23:00:00.00+00:00"},
        {{{2005, 2, 28}, {23, 30, 0, 2, 0}}, Seconds(0), "2005-03-01T01:30:00.00+02:00"},
        {{{2005, 3, 1}, {1, 0, 0, -2, 0}}, Seconds(0), "2005-02-28T23:00:00.00-02:00"},
        {{{2005, 3, 1}, {1, 0, 0}}, Seconds(Infinity), "2005-03-01T01:00:00.00+00:00"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Text(c.start + c.interval), c.text);
        EXPECT_EQ(Text(c.interval + c.start), c.text);
        EXPECT_EQ(Text(c.start - -c.interval), c.text);
    }

    // Every day, forward and back, through the change of calendar.
    d_Timestamp day(d_Date(-9000, 1, 1), d_Time(0, 0, 0));
    while (day.date.year < 3000) {
        d_Date next = day.date;
        const bool julian = next.year < 1582 || (next.year == 1582 && next.month < 10);
        const int last = julian && next.month == 2 ? 28 + (next.year % 4 == 0) : next.days_in_month();
        if (next.year == 1582 && next.month == 10 && next.day == 4) next.day = 14;
        if (++next.day > last) next.day = 1, ++next.month;
        if (next.month > 12) next.month = 1, ++next.year;
        const d_Timestamp before = day;
        day += Days(1);
        ASSERT_TRUE(Same(day.date, next)) << Text(before);
        ASSERT_TRUE(Same(day - Days(1), before)) << Text(before);
    }

    using namespace std::chrono;
    std::mt19937 random(4);
    for (int i = 0; i < 200000; ++i) {
        const sys_days from(days(static_cast<int>(random() % 1000000)));
        const int distance = static_cast<int>(random() % 48000) - 24000;  // seconds that a float holds
        const year_month_day a(from), b(from + days(distance));
        const auto asDate = [](const year_month_day& ymd) {
            return d_Date(static_cast<short>(int(ymd.year())), static_cast<unsigned short>(unsigned(ymd.month())),
                          static_cast<unsigned short>(unsigned(ymd.day())));
        };
        const d_Timestamp moved = d_Timestamp(asDate(a)) + d_Interval(distance, 0, 0, 0);
        if (b.year() > year(1582)) {
            ASSERT_TRUE(Same(moved.date, asDate(b))) << Text(moved);
        }
    }
    ExpectAscending<d_Timestamp>(
        {{{2000, 1, 1}, {23, 0, 0}}, {{2000, 1, 2}, {1, 0, 0, 9, 0}}, {{2000, 1, 2}, {2, 0, 0}}});
    EXPECT_EQ(d_Timestamp(d_Date(2000, 1, 5)) != d_Timestamp(d_Date(2000, 1, 2), d_Time(9, 0, 0)), 3);
}

// --- Intervals

TEST(StdDate, IntervalsAddUpTheirParts) {
    EXPECT_EQ(d_Interval().seconds, 0.0f);
    EXPECT_EQ(d_Interval(1, -2, 0, 0.0f).seconds, -93600.0f);
    EXPECT_EQ(d_Interval(0, 0, -1, -0.5f).seconds, -60.5f);
    EXPECT_EQ(d_Interval(std::numeric_limits<int>::min(), 0, 0, 0).seconds, -2147483648.0f * 86400);
    EXPECT_TRUE(std::isnan(Seconds(NotANumber).seconds));
    const d_Interval a = Seconds(90.5f), b(1, 0, 0, 0);
    EXPECT_EQ((-a).seconds, -90.5f);
    EXPECT_EQ((a + b).seconds, 86490.5f);
    EXPECT_EQ((a - b).seconds, -86309.5f);
    EXPECT_EQ((a * -3).seconds, -271.5f);
    EXPECT_EQ((-3 * a).seconds, -271.5f);
    EXPECT_EQ((a / 4).seconds, 22.625f);
    EXPECT_EQ((a / 0).seconds, 90.5f);
    EXPECT_EQ((b * std::numeric_limits<int>::min() * 2000000000 * 2000000000 * 2000000000 * 2000000000).seconds,
              -Infinity);

    ExpectAscending<d_Interval>(
        {Seconds(-Infinity), Days(-1), Seconds(-0.5f), Seconds(0), Days(1), Seconds(Infinity), Seconds(NotANumber)});
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
    for (unsigned short a = 0; a < Most; ++a) {
        for (unsigned short b = 0; b < Most; ++b) {
            for (unsigned short c = 0; c < Most; ++c) {
                for (unsigned short d = 0; d < Most; ++d) {
                    const int expected = ReferenceOverlaps(a, b, c, d);
                    const int results[] = {
                        overlaps(date(a), date(b), date(c), date(d)),
                        overlaps(time(a), time(b), time(c), time(d)),
                        overlaps(stamp(a, 0), stamp(b, 0), stamp(c, 0), stamp(d, 0)),
                        overlaps(stamp(0, a), stamp(0, b), stamp(0, c), stamp(0, d)),
                        // The part that the other side lacks does not count.
                        overlaps(stamp(a, 9), stamp(b, 1), date(c), date(d)),
                        overlaps(date(a), date(b), stamp(c, 9), stamp(d, 1)),
                        overlaps(stamp(9, a), stamp(1, b), time(c), time(d)),
                        overlaps(time(a), time(b), stamp(9, c), stamp(1, d)),
                    };
                    for (const int result : results) {
                        EXPECT_EQ(result, expected) << a << b << c << d << " " << &result - results;
                    }
                }
            }
        }
    }
    EXPECT_EQ(overlaps(date(0), date(1), date(1), date(2)), 1) << "an end in common";
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
        if (std::isnan(interval.seconds)) {
            ASSERT_TRUE(std::isnan(Read<d_Interval>(Text(interval)).seconds));
        } else {
            ASSERT_TRUE(Same(Read<d_Interval>(Text(interval)), interval)) << Text(interval);
        }
    }
}

TEST(StdDate, ReadsTextsWithoutAFormat) {
    const DefaultZone zone(2);
    const struct {
        const char* text;
        const char* timestamp;
    } cases[] = {
        {"2005-03-07T12:05:09.25+01:00", "2005-03-07T12:05:09.25+01:00"},
        {"2005-03-07 12:05:09", "2005-03-07T12:05:09.00+02:00"},
        {"2005-3-7T1:2:3Z", "2005-03-07T01:02:03.00+00:00"},
        {"2005-03-07T12:05:09.5", "2005-03-07T12:05:09.50+02:00"},
        {"2005-03-07T12:05:09.2599-05", "2005-03-07T12:05:09.25-05:00"},
        {"2005-03-07T12:05:09-00:30", "2005-03-07T12:05:09.00-00:30"},
        {"2005-03-07T12", "2005-03-07T12:00:00.00+02:00"},
        {"2005-03-07T12-01:30", "2005-03-07T12:00:00.00-01:30"},
        {"2005-03-07T12:05", "2005-03-07T12:05:00.00+02:00"},
        {"2005-03-07", "2005-03-07T00:00:00.00+02:00"},
        {"2451545", "2000-01-01T00:00:00.00+02:00"},
        {"+44-03-15", "0044-03-15T00:00:00.00+02:00"},
        // what is no timestamp
        {"", "0000-01-01T00:00:00.00+00:00"},
        {"x", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-200", "0000-01-01T00:00:00.00+00:00"},
        {"40000-01-01", "0000-01-01T00:00:00.00+00:00"},
        {"99999999999", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-07T12:", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-07T200", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-07T12:05:09.", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-07T12:05:09+", "0000-01-01T00:00:00.00+00:00"},
        {"2005-03-07T12:05:09+1:", "0000-01-01T00:00:00.00+00:00"},
    };
    for (const auto& c : cases) EXPECT_EQ(Text(Read<d_Timestamp>(c.text)), c.timestamp) << c.text;
    const struct {
        const char* text;
        const char* time;
    } times[] = {
        {"43509", "12:05:09.00+02:00"},
        {"43509.25", "12:05:09.25+02:00"},
        {"43509.58", "12:05:09.58+02:00"},
        {"9.5799999", "00:00:09.57+02:00"},
        {"-3661.25", "-01:-01:-01.-25+02:00"},
        {"4e+04", "11:06:40.00+02:00"},
        {"12:05", "12:05:00.00+02:00"},
        {"2005-03-07T12:05:09.25+01:00", "12:05:09.25+01:00"},
        {"2005-03-07 12", "12:00:00.00+02:00"},
        {"2005-03-07", "00:00:00.00+02:00"},
        // what is no time
        {"2005-03-07Tx", "00:00:00.00+00:00"},
        {"12 x", "00:00:00.00+00:00"},
        {"12.5x", "00:00:00.00+00:00"},
        {"1e+10", "00:00:00.00+00:00"},
        {"nan", "00:00:00.00+00:00"},
    };
    for (const auto& c : times) EXPECT_EQ(Text(Read<d_Time>(c.text)), c.time) << c.text;
    for (int hundredths = 0; hundredths < 8640000; hundredths += 97) {
        char text[16];
        std::snprintf(text, sizeof text, "%d.%02d", hundredths / 100, hundredths % 100);
        const auto time = Read<d_Time>(text);
        ASSERT_EQ(((time.hour * 60 + time.minute) * 60 + time.second) * 100 + time.hundredths, hundredths) << text;
    }
    EXPECT_EQ(Text(Read<d_Date>("2005-03-07T12:05:09")), "2005-03-07");
    d_Date wide;
    wide.ScanFromVqString(Wide(u"2005-03-07"));
    EXPECT_EQ(Text(wide), "2005-03-07") << "of 2-byte characters";

    EXPECT_EQ(Read<d_Interval>(" +1.5 seconds").seconds, 1.5f);
    EXPECT_EQ(Read<d_Interval>("1e999").seconds, Infinity);
    EXPECT_EQ(Read<d_Interval>("-1e-999").seconds, 0.0f);
    EXPECT_EQ(Read<d_Interval>("x").seconds + Read<d_Interval>("").seconds, 0.0f);
    EXPECT_EQ(Read<d_Interval>("12:05:09.25+01:00").seconds, 43509.25f);
    EXPECT_EQ(Read<d_Interval>("-03:30:00.00-05:00").seconds, -12600.0f);
    EXPECT_EQ(Read<d_Interval>("100:05").seconds, 360300.0f);
    EXPECT_EQ(Read<d_Interval>("2005-03-07T12:05:09").seconds, 0.0f) << "no length of time";
    EXPECT_EQ(Read<d_Interval>("5 - 3").seconds, 5.0f);
    EXPECT_EQ(Text(Seconds(0.1f)) + Text(Days(-2)), "0.1-172800");
}

TEST(StdDate, PrintsAndScansUnderFormats) {
    const FixedClock clock({1999, 12, 31}, {23, 58, 57, 0});
    const DefaultZone zone(2);
    const d_Timestamp stamp(d_Date(2005, 3, 7), d_Time(13, 5, 9.25f, -1, 0));
    EXPECT_EQ(Text(stamp, "%a %b %e %I:%M:%S %p"), "Mon Mar 07 12:05:09 pm");
    EXPECT_EQ(Text(stamp.date, "%Y-%m-%d %H"), "2005-03-07 23") << "what a date lacks is the clock's";
    EXPECT_EQ(Text(stamp.time, "%H:%M:%S %d"), "12:05:09 31");
    EXPECT_EQ(Text(d_Time(26, 0, 0, 0, 0), "%I %p %H"), "14 pm 26");
    EXPECT_EQ(Text(Read<d_Date>("Mon Mar 07", "%a %b %e")), "0000-03-07");
    EXPECT_EQ(Text(Read<d_Date>("2001-02-30", "%Y-%m-%d")), "0000-01-01");
    EXPECT_EQ(Text(Read<d_Time>("07:30:15 PM", "%I:%M:%S %p")), "19:30:15.00+02:00");
    EXPECT_EQ(Text(Read<d_Timestamp>("2005-03-07 19:30", "%Y-%m-%d %H:%M")), "2005-03-07T19:30:00.00+02:00");
}

TEST(StdDate, IntervalsPrintAndScanUnderFormats) {
    constexpr const char* RowFormat = "%e days, %I hours, %M minutes, %S seconds";
    const struct {
        float seconds;
        const char* format;
        const char* text;
    } prints[] = {
        {93784, RowFormat, "1 days, 2 hours, 3 minutes, 4 seconds"},
        {-93600.5f, RowFormat, "-1 days, -2 hours, 0 minutes, -0.5 seconds"},
        {0, RowFormat, "0 days, 0 hours, 0 minutes, 0 seconds"},
        {0.1f, "%S", "0.1"},
        {86400.1f, "%e %S", "1 0.1"},
        {59.999996f, "%M %S", "0 59.999996"},
        {-Infinity, RowFormat, "-inf days, 0 hours, 0 minutes, 0 seconds"},
        {NotANumber, "%e %S", "nan 0"},
        {3723, "%H:%%%x%M%", "1:%x2"},
    };
    for (const auto& c : prints) EXPECT_EQ(Text(Seconds(1) * 0 + Seconds(c.seconds), c.format), c.text);
    const struct {
        const char* text;
        const char* format;
        float seconds;
    } scans[] = {
        {"1 days, -2 hours, 3 minutes, 4.5 seconds", RowFormat, -93784.5f},
        {"  +2 3", "%e %H", 2 * 86400 + 3 * 3600},
        {"1.5", "%I", 5400},
        {"7", "%M%S", 420},
        {"a5", "%%%S", 5},
        {"x", "%S", 0},
        {"", RowFormat, 0},
        {"-inf", "%e", -Infinity},
    };
    for (const auto& c : scans) EXPECT_EQ(Read<d_Interval>(c.text, c.format).seconds, c.seconds) << c.text;
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        d_Interval interval;
        interval.seconds = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isnan(interval.seconds)) continue;
        ASSERT_TRUE(Same(Read<d_Interval>(Text(interval, RowFormat), RowFormat), interval))
            << Text(interval, RowFormat);
    }
}

}  // namespace
