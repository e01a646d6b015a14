#include "date.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <climits>
#include <concepts>
#include <tuple>
#include <type_traits>

#include "datereference.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

using Reference = DateReference<Long32>;

std::array<int, 3> Fields(const VqDate& date) { return {date.year, date.month, date.day}; }
std::array<int, 3> Fields(const VqTime& time) { return {time.hour, time.minute, time.second}; }
std::array<int, 3> Fields(int a, int b, int c) { return {a, b, c}; }

int RandomField(std::mt19937& random) { return static_cast<std::int8_t>(random()); }

// --- Day numbers

TEST(DayNumbers, AgreeWithTheCalendarFromYearMinus4713To9999) {
    using namespace std::chrono;
    constexpr int Epoch = 2440588;  // 1970-01-01
    const sys_days first = year(-4713) / January / 1, last = year(9999) / December / 31;
    for (sys_days at = first; at <= last; at += days(1)) {
        const year_month_day ymd(at);
        const VqDate date(int(ymd.year()), static_cast<int>(unsigned(ymd.month())),
                          static_cast<int>(unsigned(ymd.day())));
        const long number = static_cast<long>(at.time_since_epoch().count()) + Epoch;
        ASSERT_EQ(date.dayabs(), number) << at.time_since_epoch().count();
        ASSERT_EQ(Fields(VqDate(number)), Fields(date)) << number;
        ASSERT_EQ(date.IsDate(), 1) << number;
        ASSERT_EQ(date.IsLastDayOfTheMonth(), ymd == ymd.year() / ymd.month() / std::chrono::last) << number;
        ASSERT_EQ(date.DayOfTheDate(), Reference::Weekday(date.year, date.month, date.day)) << number;
        if (ymd >= year(0) / March / 1 && ymd < year(4600) / March / 1) {
            ASSERT_EQ(date.DayOfTheDate(), static_cast<int>(weekday(at).iso_encoding()) - 1) << number;
        }
    }
}

void ExpectDayNumberAndWeekday(int year, int month, int day) {
    const VqDate date(year, month, day);
    ASSERT_EQ(date.dayabs(), Reference::DayNumber(year, month, day)) << year << " " << month << " " << day;
    ASSERT_EQ(date.DayOfTheDate(), Reference::Weekday(year, month, day)) << year << " " << month << " " << day;
}

TEST(DayNumbers, AreTheFormulasForAllFields) {
    const int years[] = {-32768, -32767, -4901, -4900, -4899, -4801, -4800, -4799, -401, -400, -101, -100, -99,  -5,
                         -4,     -1,     0,     1,     99,    100,   101,   1999,  2000, 2004, 4599, 4600, 4601, 32767};
    for (const int year : years) {
        for (int month = -128; month < 128; ++month) {
            for (int day = -128; day < 128; ++day) ExpectDayNumberAndWeekday(year, month, day);
        }
    }
    for (int year = -32768; year < 32768; ++year) {
        for (int month = -1; month <= 15; ++month) ExpectDayNumberAndWeekday(year, month, year & 31);
    }
    std::mt19937 random(1);
    for (int i = 0; i < 1000000; ++i) {
        ExpectDayNumberAndWeekday(static_cast<std::int16_t>(random()), RandomField(random), RandomField(random));
    }
}

TEST(DayNumbers, GiveTheFormulasDates) {
    const long ends[] = {INT32_MIN, -536939481, -68569, 0, 2451545, 536802342, INT32_MAX};
    for (const long end : ends) {
        for (long offset = -200000; offset <= 200000; ++offset) {
            const std::int64_t number = std::int64_t{end} + offset;
            if (number != Long32::Of(number)) continue;
            ASSERT_EQ(Fields(VqDate(static_cast<long>(number))), Fields(Reference::DateOf(number))) << number;
        }
    }
    std::mt19937 random(2);
    for (int i = 0; i < 1000000; ++i) {
        const auto number = static_cast<std::int32_t>(random()) >> (i % 12);
        ASSERT_EQ(Fields(VqDate(long{number})), Fields(Reference::DateOf(number))) << number;
    }
}

// The documented ends are those of the formula: one step beyond, 32 bits give another date than more bits would.
TEST(DayNumbers, AreExactBetweenTheDocumentedEnds) {
    using Exact = DateReference<Unbounded>;
    for (const long number : {-536939482L, -536939481L, 536802342L, 536802343L}) {
        const bool exact = number > -536939482 && number < 536802343;
        EXPECT_EQ(Fields(Reference::DateOf(number)) == Fields(Exact::DateOf(number)), exact) << number;
    }
    EXPECT_EQ(Fields(VqDate(-68569L)), Fields(-4900, 3, 1));
}

TEST(VqDate, KnowsTheDaysOfMonths) {
    const std::array<int, 5> cases[] = {
        {2000, 2, 29, 1, 1},  {1900, 2, 29, 0, 0},  {1900, 2, 28, 1, 1},   {2004, 2, 29, 1, 1},   {2005, 2, 30, 0, -1},
        {2004, 12, 31, 1, 1}, {2004, 12, 1, 1, 31}, {2005, 4, 31, 0, 0},   {2005, 0, 1, 0, 31},   {2005, 13, 1, 0, 31},
        {2005, 1, 0, 0, 32},  {2005, 1, 32, 0, 0},  {-4713, 11, 24, 1, 7}, {32767, 12, 31, 1, 1}, {2005, 1, -1, 0, 33},
    };
    for (const auto& [year, month, day, isDate, toNextMonth] : cases) {
        const VqDate date(year, month, day);
        EXPECT_EQ(date.IsDate(), isDate) << year << " " << month << " " << day;
        EXPECT_EQ(date.daynxtmonth(), toNextMonth) << year << " " << month << " " << day;
        EXPECT_EQ(date.IsLastDayOfTheMonth(), toNextMonth == 1);
    }
    EXPECT_EQ(VqDate(2005, 127, 1).daynxtmonth(), Reference::DayNumber(2005, -128, 1) - VqDate(2005, 127, 1).dayabs());
}

TEST(VqDate, NamesTheWeekday) {
    const char* const names[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
    for (int day = 0; day < 7; ++day) EXPECT_EQ(Bytes(VqDate(2000, 1, 3 + day).PrintDayOfTheDate()), names[day]);
    EXPECT_EQ(Bytes(VqDate(9900, 3, 1).PrintDayOfTheDate()), "Sunday");  // the congruence's sum is negative
}

TEST(VqDate, DividesWithTheSignOfTheQuotient) {
    const VqDate any(0, 0, 0);
    EXPECT_EQ(any.divide(-7, 2), -3);
    EXPECT_EQ(any.modulo(-7, -2), 1);
    EXPECT_EQ(any.modulo(5, INT32_MIN), -5);
    EXPECT_EQ(any.divide(INT32_MIN, -1), INT32_MIN);
    EXPECT_EQ(any.modulo(INT32_MIN, INT32_MIN), 0);
    std::mt19937 random(3);
    for (int i = 0; i < 1000000; ++i) {
        const auto a = static_cast<std::int32_t>(random()), b = static_cast<std::int32_t>(random()) >> (i % 31);
        if (b == 0) continue;
        ASSERT_EQ(any.divide(a, b), Reference::Divide(a, b)) << a << " " << b;
        ASSERT_EQ(any.modulo(a, b), Reference::Modulo(a, b)) << a << " " << b;
    }
}

// --- Operators

template <class A, class B>
concept Addable = requires(A a, B b) {
    a + b;
};

// An operator that took the conversion to long would give another type.
template <class Integer>
constexpr bool MovesBy =
    std::is_same_v<decltype(VqDate() + Integer()), VqDate>&& std::is_same_v<decltype(VqDate() - Integer()), VqDate>&&
        std::is_same_v<decltype(VqTime() + Integer()), VqTime>&& std::is_same_v<decltype(VqTime() - Integer()), VqTime>;
static_assert(MovesBy<short> && MovesBy<int> && MovesBy<unsigned> && MovesBy<long> && MovesBy<unsigned long> &&
              MovesBy<long long> && MovesBy<unsigned char>);
static_assert(std::is_same_v<decltype(VqDate() - VqDate()), long> && std::is_same_v<decltype(5 + VqDate()), long>);
static_assert(std::is_same_v<decltype(VqTime() - VqTime()), VqTime> && !Addable<VqDate, double>);
static_assert(std::is_same_v<decltype(VqDate() != VqDate()), int>);
static_assert(std::is_same_v<decltype(VqTime() != VqTime()), int>);
static_assert(std::is_trivially_copyable_v<VqDate> && std::is_trivially_copyable_v<VqTime>);

TEST(VqDate, MovesByDays) {
    const VqDate start(2004, 2, 28);
    EXPECT_EQ(Fields(start + 2u), Fields(2004, 3, 1));
    EXPECT_EQ(Fields(start - 59), Fields(2003, 12, 31));
    EXPECT_EQ(Fields(start + -59LL), Fields(2003, 12, 31));
    EXPECT_EQ(VqDate(2005, 1, 1) - start, 308);
    EXPECT_EQ(1 + VqDate(2000, 1, 1), 2451546);
    VqDate date(1999, 12, 31);
    EXPECT_EQ(Fields(++date), Fields(2000, 1, 1));
    EXPECT_EQ(Fields(--date), Fields(1999, 12, 31));
    EXPECT_EQ(&((date += 366) -= 1), &date);
    EXPECT_EQ(Fields(date), Fields(2000, 12, 30));

    // A sum wraps in 32 bits, and what is more than 32 bits of a number does not count.
    EXPECT_EQ(Fields(start + INT32_MAX), Fields(Reference::DateOf(INT32_MIN + start.dayabs() - 1)));
    EXPECT_EQ(Fields(start + (4294967296LL + 2)), Fields(2004, 3, 1));
    EXPECT_EQ(Fields(start - INT32_MIN), Fields(start + INT32_MIN));
}

template <class T>
void ExpectOperators(const T& a, const T& b, int sign, bool equal) {
    const std::array<int, 6> results = {Sign(a != b), a == b, a<b, a> b, a <= b, a >= b};
    EXPECT_EQ(results, (std::array<int, 6>{sign, equal, sign<0, sign> 0, sign <= 0, sign >= 0}))
        << ::testing::PrintToString(Fields(a)) << ::testing::PrintToString(Fields(b));
}

TEST(VqDate, ComparesWithWildcards) {
    const std::tuple<VqDate, VqDate, int> cases[] = {
        {{2005, 3, 7}, {2005, 3, 7}, 0},     {{2005, 3, 7}, {2005, 3, 8}, -1},      {{2005, 4, 1}, {2005, 3, 31}, 1},
        {{2004, 12, 31}, {2005, 1, 1}, -1},  {{2005, -1, 7}, {2005, 3, 7}, 0},      {{2005, 3, 7}, {2005, 9, -1}, -1},
        {{-1, 3, 7}, {2005, 3, 6}, 1},       {{-1, -1, -1}, {2005, 3, 7}, 0},       {{2005, -1, 8}, {2005, -1, 7}, 1},
        {{-32768, 1, 1}, {32767, 1, 1}, -1}, {{2005, -128, 1}, {2005, 127, 1}, -1},
    };
    for (const auto& [a, b, sign] : cases) {
        EXPECT_EQ(Sign(b != a), -sign);
        ExpectOperators(a, b, sign, Fields(a) == Fields(b));
    }
    EXPECT_EQ(VqDate(2005, 3, 7) != VqDate(2003, 9, 7), 2);  // the difference of the years
}

// --- Times

TEST(VqTime, CountsSeconds) {
    const std::tuple<long, int, int, int, int> cases[] = {
        {86399, 23, 59, 59, 1},
        {90000, 25, 0, 0, 0},
        {-3661, -1, -1, -1, 0},
        {460800, -128, 0, 0, 0},
        {3600 * 256, 0, 0, 0, 1},
        {-1, 0, 0, -1, 0},
        {INT32_MIN, -596523 & 255, -14, -8, 0},
    };
    for (const auto& [seconds, hour, minute, second, isTime] : cases) {
        const VqTime time(seconds);
        EXPECT_EQ(Fields(time), Fields(VqTime(hour, minute, second))) << seconds;
        EXPECT_EQ(time.IsTime(), isTime) << seconds;
    }
    EXPECT_EQ(static_cast<long>(VqTime(23, 59, 59)), 86399);
    EXPECT_EQ(static_cast<long>(VqTime(-1, 127, -128)), -3600 + 127 * 60 - 128);
}

TEST(VqTime, MovesAroundMidnight) {
    VqTime time(23, 59, 59);
    EXPECT_EQ(Fields(++time), Fields(0, 0, 0));
    EXPECT_EQ(Fields(--time), Fields(23, 59, 59));
    EXPECT_EQ(Fields((time += 3601) -= 7200), Fields(23, 0, 0));
}

TEST(VqTime, MovesOddFieldsAndNumbersStepByStep) {
    std::mt19937 random(4);
    const auto field = [&](int i) { return i % 3 == 0 ? static_cast<int>(random() % 60) : RandomField(random); };
    for (int i = 0; i < 1000000; ++i) {
        const VqTime a(field(i), field(i), field(i)), b(field(i), field(i), field(i));
        const long s = static_cast<std::int32_t>(random()) >> (i % 32);
        ASSERT_EQ(Fields(a + s), Fields(TimeReference::Plus(a, s))) << ::testing::PrintToString(Fields(a)) << s;
        ASSERT_EQ(Fields(a - s), Fields(TimeReference::Minus(a, s))) << ::testing::PrintToString(Fields(a)) << s;
        ASSERT_EQ(Fields(a - b), Fields(TimeReference::Minus(a, b))) << ::testing::PrintToString(Fields(a));
    }
}

TEST(VqTime, OrdersByFields) {
    const VqTime ascending[] = {{-128, -128, -128}, {-1, 127, 127}, {0, -1, 0},   {0, 0, -128}, {0, 0, 0},
                                {0, 0, 127},        {0, 1, -128},   {23, 59, 59}, {127, 0, 0}};
    for (const VqTime& a : ascending) {
        for (const VqTime& b : ascending) ExpectOperators(a, b, Sign(&a - &b), &a == &b);
    }
}

// --- Clock and null

TEST(DatesAndTimes, ReadTheClock) {
    const FixedClock clock({2005, 3, 7}, {12, 5, 9, 0});
    for (const VqDate& date : {VqDate(), VqDate::Today()}) EXPECT_EQ(Fields(date), Fields(2005, 3, 7));
    for (const VqTime& time : {VqTime(), VqTime::Now()}) EXPECT_EQ(Fields(time), Fields(12, 5, 9));
}

TEST(DatesAndTimes, AreNullWhenAllFieldsAre) {
    VqDate date(2005, 3, 7);
    VqTime time(12, 5, 9);
    EXPECT_EQ(date.SetNullValue() | time.SetNullValue(), 0);
    EXPECT_TRUE(date.IsNullValue() && time.IsNullValue());
    EXPECT_FALSE(VqDate(-32768, -128, 1).IsNullValue() || VqDate(0, -128, -128).IsNullValue());
    EXPECT_FALSE(VqTime(0, -128, -128).IsNullValue() || VqTime(-128, -128, 0).IsNullValue());
    EXPECT_EQ(date.IsDate() | time.IsTime(), 0);
}

}  // namespace
