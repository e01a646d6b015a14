#include "stddate.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "storedyear.h"
#include "vqbase.h"

namespace {

constexpr int SecondsPerDay = 86400;
constexpr std::int64_t HundredthsPerDay = 100 * SecondsPerDay;

constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); }
constexpr std::int64_t FloorModulo(std::int64_t a, std::int64_t b) { return a - FloorDivide(a, b) * b; }

constexpr std::int32_t Saturate(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

// The whole part; 0 for what is not a number.
std::int32_t Saturate(double value) {
    constexpr double Most = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::clamp(value, -Most - 1, Most));
}

double FiniteSeconds(const d_Interval& interval) {
    return std::isfinite(interval.seconds) ? static_cast<double>(interval.seconds) : 0.0;
}

}  // namespace

// --- Intervals

d_Interval::d_Interval(int day, int hour, int minute, float second) {
    const auto magnitude = [](int number) { return std::fabs(static_cast<double>(number)); };
    const double sum = magnitude(day) * SecondsPerDay + magnitude(hour) * 3600 + magnitude(minute) * 60 +
                       std::fabs(static_cast<double>(second));
    const bool negative = day < 0 || hour < 0 || minute < 0 || second < 0;
    seconds = static_cast<float>(negative ? -sum : sum);
}

int d_Interval::day() const { return Saturate(std::trunc(static_cast<double>(seconds) / SecondsPerDay)); }
int d_Interval::hour() const { return Saturate(std::fmod(static_cast<double>(seconds), SecondsPerDay) / 3600); }
int d_Interval::minute() const { return Saturate(std::fmod(static_cast<double>(seconds), 3600) / 60); }
float d_Interval::second() const { return std::fmod(seconds, 60.0f); }

int operator!=(const d_Interval& a, const d_Interval& b) {
    if (a.seconds < b.seconds) return -1;
    if (a.seconds > b.seconds) return 1;
    return std::isnan(a.seconds) - std::isnan(b.seconds);
}

// --- Day numbers
//
// The usual formulas, with 365.25 and 30.6001 days to a year and a month of a calendar that begins in March. They are
// given in floating numbers truncated toward zero; the fractions here are exact and so have the same whole parts.

namespace {

constexpr std::int32_t DaysOfYears(std::int32_t years) { return 1461 * years / 4; }
constexpr std::int32_t DaysOfYearsFloored(std::int32_t years) {
    return static_cast<std::int32_t>(FloorDivide(1461 * years, 4));
}
constexpr std::int64_t DaysOfMonths(std::int64_t months) { return 306001 * months / 10000; }

std::int32_t DayNumber(const d_Date& date, std::int32_t (*daysOfYears)(std::int32_t)) {
    constexpr std::int32_t FirstGregorian = 2299170;
    const bool beforeMarch = date.month < 3;
    const std::int32_t year = date.year - beforeMarch;
    const std::int32_t month = date.month + (beforeMarch ? 13 : 1);
    const std::int32_t days = daysOfYears(year) + static_cast<std::int32_t>(DaysOfMonths(month)) + date.day + 1720994;
    const std::int32_t century = year / 100;
    return days < FirstGregorian ? days : days + 2 - century + century / 4;
}

// To the right day of the calendar. Years far back are reckoned as if a number of Julian leap cycles later.
void MoveByDays(d_Date& date, std::int64_t days) {
    constexpr std::int64_t Cycle = 1461;
    const std::int64_t julianDay = DayNumber(date, DaysOfYearsFloored) + 1 + days;
    const std::int64_t cycles = julianDay < 0 ? -FloorDivide(julianDay, Cycle) : 0;
    date.setAbsDate(Saturate(julianDay + cycles * Cycle));
    date.year = static_cast<std::int16_t>(date.year - 4 * cycles);
}

}  // namespace

long d_Date::getAbsDate() const { return DayNumber(*this, DaysOfYears); }

void d_Date::setAbsDate(long n) {
    constexpr std::int64_t LastJulian = 2299160;
    std::int64_t julianDay = static_cast<std::int32_t>(n);
    if (julianDay > LastJulian) {
        const std::int64_t century = (4 * julianDay - 7468865) / 146097;  // (n - 1867216.25) / 36524.25
        julianDay += 1 + century - century / 4;
    }
    const std::int64_t b = julianDay + 1524;
    const std::int64_t c = (20 * b - 2442) / 7305;  // (b - 122.1) / 365.25
    const std::int64_t rest = b - 1461 * c / 4;
    const std::int64_t e = 10000 * rest / 306001;
    const std::int64_t m = e < 14 ? e - 1 : e - 13;
    day = static_cast<std::int8_t>(rest - DaysOfMonths(e));
    month = static_cast<std::int8_t>(m);
    year = static_cast<std::int16_t>(c - 4716 + (m < 3));
}

// --- Dates

d_Date::d_Date(short year, unsigned short day_of_year) : d_Date(year, 1, 1) {
    setAbsDate(getAbsDate() + day_of_year - 1);
}
d_Date::d_Date(const d_Timestamp& timestamp) : d_Date(timestamp.date) {}
d_Date& d_Date::operator=(const d_Timestamp& timestamp) { return *this = timestamp.date; }

int d_Date::day_of_year() const { return static_cast<int>(getAbsDate() - d_Date(year, 1, 1).getAbsDate()) + 1; }
d_Date::Weekday d_Date::day_of_week() const { return static_cast<Weekday>(FloorModulo(getAbsDate() + 2, 7)); }

int d_Date::days_in_month() const { return days_in_month(year, static_cast<unsigned short>(month)); }

int d_Date::days_in_month(short year, unsigned short month) {
    static constexpr int days[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month >= std::size(days)) return 0;
    const bool leapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0 || year < 1600);
    return days[month] + (month == 2 && leapYear);
}

d_Date& d_Date::next(Weekday weekday) {
    const int days = weekday - day_of_week();
    setAbsDate(getAbsDate() + (days > 0 ? days : days + 7));
    return *this;
}
d_Date& d_Date::previous(Weekday weekday) {
    const int days = day_of_week() - weekday;
    setAbsDate(getAbsDate() - (days > 0 ? days : days + 7));
    return *this;
}

d_Date& d_Date::operator+=(const d_Interval& interval) {
    const std::int64_t days = Saturate(FiniteSeconds(interval) / SecondsPerDay);
    setAbsDate(Saturate(getAbsDate() + days));
    return *this;
}

d_Date d_Date::operator++(int) {
    const d_Date before = *this;
    setAbsDate(getAbsDate() + 1);
    return before;
}
d_Date d_Date::operator--(int) {
    const d_Date before = *this;
    setAbsDate(getAbsDate() - 1);
    return before;
}

int operator!=(const d_Date& a, const d_Date& b) { return static_cast<int>(a.getAbsDate() - b.getAbsDate()); }

// --- Times: construction

namespace {

constinit std::atomic<int> defaultZone{0};

std::int8_t LowByte(std::int64_t value) { return static_cast<std::int8_t>(value); }

}  // namespace

void d_Time::set_default_Time_Zone(Time_Zone zone) { defaultZone = zone; }
d_Time::Time_Zone d_Time::default_Time_Zone() { return defaultZone; }

void d_Time::set_default_Time_Zone_to_local() {
    btime now;
    bksgettime(&now);
    if (now.zoneSeconds != 0) set_default_Time_Zone(static_cast<Time_Zone>(now.zoneSeconds / 3600));
}

d_Time::d_Time(unsigned short hour, unsigned short minute, float second)
    : d_Time(hour, minute, second, static_cast<short>(default_Time_Zone()), 0) {}

d_Time::d_Time(unsigned short hour, unsigned short minute, float second, short tz_hour, short tz_minute)
    : tz_hour(LowByte(tz_hour)),
      tz_minute(LowByte(tz_minute)),
      hour(LowByte(hour + tz_hour)),
      minute(LowByte(minute + tz_minute)),
      second(0),
      hundredths(0) {
    if (!std::isfinite(second)) return;
    const double whole = std::trunc(static_cast<double>(second));
    this->second = LowByte(static_cast<std::int64_t>(std::fmod(whole, 256)));
    hundredths = LowByte(static_cast<std::int64_t>((static_cast<double>(second) - whole) * 100));
}

d_Time::d_Time(long seconds) : d_Time(0, 0, 0) {
    const std::int32_t given = static_cast<std::int32_t>(seconds);
    const std::int64_t s = given < 0 ? FloorModulo(given, SecondsPerDay) : given;
    hour = LowByte(hour + s / 3600);
    minute = LowByte(s % 3600 / 60);
    second = LowByte(s % 60);
}

d_Time::d_Time(const VqTime& time) {
    *this = time;
    hour = LowByte(hour + tz_hour);
}
d_Time::d_Time(const d_Timestamp& timestamp) : d_Time(timestamp.time) {}
d_Time& d_Time::operator=(const d_Timestamp& timestamp) { return *this = timestamp.time; }

d_Time& d_Time::operator=(const VqTime& time) {
    tz_hour = LowByte(default_Time_Zone());
    tz_minute = 0;
    hour = time.hour;
    minute = time.minute;
    second = time.second;
    hundredths = 0;
    return *this;
}

// --- Times: order and arithmetic

namespace {

// Hundredths of a second since midnight, before it where a field is negative.
std::int32_t Clock(int hour, int minute, int hundredths) {
    const std::int32_t magnitude = std::abs(hour) * 360000 + std::abs(minute) * 6000 + std::abs(hundredths);
    return hour < 0 || minute < 0 || hundredths < 0 ? -magnitude : magnitude;
}

// Moves the time round midnight. Returns the days passed, with those of the interval.
std::int64_t MoveTime(d_Time& time, const d_Interval& interval) {
    const double distance = 100 * FiniteSeconds(interval);  // exact, as is all of the following
    const double withinDay = std::fmod(distance, static_cast<double>(HundredthsPerDay));
    const std::int64_t days = Saturate((distance - withinDay) / static_cast<double>(HundredthsPerDay));
    const std::int64_t clock = Clock(time.hour, time.minute, time.second * 100 + time.hundredths) +
                               static_cast<std::int64_t>(std::floor(withinDay));
    const std::int64_t rest = FloorModulo(clock, HundredthsPerDay);
    time.hour = LowByte(rest / 360000);
    time.minute = LowByte(rest / 6000 % 60);
    time.second = LowByte(rest / 100 % 60);
    time.hundredths = LowByte(rest % 100);
    return days + FloorDivide(clock, HundredthsPerDay);
}

}  // namespace

int operator!=(const d_Time& a, const d_Time& b) {
    const int hours = a.hour - a.tz_hour - (b.hour - b.tz_hour);
    if (hours != 0) return hours;
    const int minutes = a.minute - a.tz_minute - (b.minute - b.tz_minute);
    if (minutes != 0) return minutes;
    return (a.second * 100 + a.hundredths - (b.second * 100 + b.hundredths)) / 100;
}

d_Time& d_Time::operator+=(const d_Interval& interval) {
    MoveTime(*this, interval);
    return *this;
}

d_Interval operator-(const d_Time& a, const d_Time& b) {
    const auto seconds = [](const d_Time& time) { return time.hour * 3600 + time.minute * 60 + time.second; };
    return d_Interval(0, 0, 0, static_cast<float>(seconds(a) - seconds(b)));
}

// --- Timestamps

d_Timestamp d_Timestamp::current() {
    d_Date today;
    d_Time now;
    if (const d_Date after; after != today) {  // midnight came between the readings
        today = after;
        now = d_Time();
    }
    return d_Timestamp(today, now);
}

d_Timestamp& d_Timestamp::operator+=(const d_Interval& interval) {
    if (const std::int64_t days = MoveTime(time, interval)) MoveByDays(date, days);
    return *this;
}

int operator!=(const d_Timestamp& a, const d_Timestamp& b) {
    const int days = a.date != b.date;
    return days != 0 ? days : a.time != b.time;
}

// --- Disk form

namespace {

constexpr unsigned long TimeSize = 6, TimestampSize = 10;

}  // namespace

unsigned long d_DateStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    return DateStore(dst, src, format, count);
}
unsigned long d_DateLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return DateLoad(dst, src, format, count);
}

unsigned long d_TimeStore(void* dst, const void* src, unsigned char, unsigned long count) {
    if (count != 0) std::memmove(dst, src, count * TimeSize);
    return count * TimeSize;
}
unsigned long d_TimeLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return d_TimeStore(dst, src, format, count);
}

unsigned long d_TimestampStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    const bool foreign = vq::IsForeignOrder(format);
    for (unsigned long i = 0; i < count; ++i) {
        char* const to = static_cast<char*>(dst) + i * TimestampSize;
        const char* const from = static_cast<const char*>(src) + i * TimestampSize;
        vq::MoveDate(to, from, foreign);
        std::memmove(to + 4, from + 4, TimestampSize - 4);
    }
    return count * TimestampSize;
}
unsigned long d_TimestampLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return d_TimestampStore(dst, src, format, count);
}

unsigned long d_IntervalStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    return FloatStore(dst, src, format, count);
}
unsigned long d_IntervalLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return FloatStore(dst, src, format, count);
}

unsigned long d_DateNullSizeGet(unsigned long count) { return DateNullSizeGet(count); }
unsigned long d_DateSizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
    return d_DateNullSizeGet(count);
}
unsigned long d_DateSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
    return d_DateNullSizeGet(count);
}

unsigned long d_TimeNullSizeGet(unsigned long count) { return count * TimeSize; }
unsigned long d_TimeSizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
    return d_TimeNullSizeGet(count);
}
unsigned long d_TimeSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
    return d_TimeNullSizeGet(count);
}

unsigned long d_TimestampNullSizeGet(unsigned long count) { return count * TimestampSize; }
unsigned long d_TimestampSizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
    return d_TimestampNullSizeGet(count);
}
unsigned long d_TimestampSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
    return d_TimestampNullSizeGet(count);
}
