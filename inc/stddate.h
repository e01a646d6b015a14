/// \file
/// d_Date, d_Time, d_Timestamp, d_Interval: the standard date and time types of object databases, and `overlaps`.
///
/// A date is a day of the historical calendar, Julian up to 1582-10-04 and Gregorian from 1582-10-15 on. A time of day
/// has hundredths of a second and a time zone. A timestamp is a date and a time. An interval is a length of time in
/// seconds. None has a null, no field is checked on assignment, and all have the same layout on every target.
///
///     d_Date(2005, 3, 7).day_of_week()                        d_Date::Monday
///     d_Time(12, 5, 9.25f) + d_Interval(0, 12, 0, 0)          00:05:09.25
///     overlaps(d_Date(2005, 1, 1), d_Date(2005, 1, 31), d_Date(2005, 1, 31), d_Date(2005, 2, 9))    1
///
/// Day numbers have a step that applications and stored data rely on: setAbsDate(getAbsDate()) is the day before. All
/// that moves a date goes that way, so `date++` leaves the date where it is, and `date += d_Interval(5, 0, 0, 0)` moves
/// it by four days. A timestamp moves by what it is told:
///
///     d_Timestamp t(d_Date(1999, 12, 31), d_Time(23, 0, 0));
///     t += d_Interval(0, 2, 0, 0);                            2000-01-01, 01:00:00
///
/// Comparisons go by the three-way result of `operator!=`: negative where the first value is earlier, 0 where they are
/// equal, positive where it is later. The other operators give 1 or 0.
///
/// Values are as safe as plain structures: different ones may be used in different threads. The default time zone is
/// one for the process, and may be set and read at any time.
///
/// Texts. With a format, dates, times and timestamps print and scan as a VqDate, VqTime or VqDateTime of the same
/// fields does, names of weekdays by the Gregorian calendar included; hundredths and zones have no directives. Without
/// one (null) the text keeps every value of every field:
///
///     d_Date         2005-03-07                       -0044-03-15
///     d_Time         12:05:09.25+01:00                the stored hour, and then the zone
///     d_Timestamp    2005-03-07T12:05:09.25+01:00
///     d_Interval     -93784.5                         seconds, by as few digits as give the same value back
#ifndef STDDATE_H
#define STDDATE_H

#include <cstdint>

#include "datetime.h"
#include "vqdefs.h"

class MemFile;
class VqString;
class d_Timestamp;

/// A length of time. Sums, products and quotients are computed in double and rounded to a float.
class VQTM_API d_Interval {
  public:
    // --- Construction

    /// Zero.
    d_Interval() = default;
    /// The magnitudes of the four added up; negative when any of them is negative. So d_Interval(1, -2, 0, 0) is
    /// 26 hours back in time.
    d_Interval(int day, int hour, int minute, float second);

    /// \name Parts
    /// The magnitude in days, hours, minutes and seconds, each with the sign of the interval. The constructor makes the
    /// same interval of the four again, where the days fit an int.
    /// @{

    /// Whole days. Saturates; 0 for an interval that is not a number.
    int day() const;
    /// Hours beyond the whole days, [-23:23].
    int hour() const;
    /// Minutes beyond the whole hours, [-59:59].
    int minute() const;
    /// Seconds beyond the whole minutes, (-60, 60); not a number where the interval is none or infinite.
    float second() const;
    /// @}

    /// 1 for an interval of no length, else 0.
    int is_zero() const { return seconds == 0; }

    // --- Arithmetic

    /// As long in the other direction.
    d_Interval operator-() const { return Seconds(-seconds); }
    /// The sum or difference of the seconds.
    /// @{
    friend d_Interval operator+(const d_Interval& a, const d_Interval& b) {
        return Seconds(static_cast<double>(a.seconds) + static_cast<double>(b.seconds));
    }
    friend d_Interval operator-(const d_Interval& a, const d_Interval& b) { return a + -b; }
    /// @}

    /// `n` times the interval.
    /// @{
    friend d_Interval operator*(const d_Interval& a, int n) { return Seconds(static_cast<double>(a.seconds) * n); }
    friend d_Interval operator*(int n, const d_Interval& a) { return a * n; }
    /// @}

    /// The `n`th part; a division by 0 leaves the interval as it is.
    friend d_Interval operator/(const d_Interval& a, int n) {
        return n == 0 ? a : Seconds(static_cast<double>(a.seconds) / n);
    }
    /// Changes this interval to what the operator of the same name gives. Returns it.
    /// @{
    d_Interval& operator+=(const d_Interval& other) { return *this = *this + other; }
    d_Interval& operator-=(const d_Interval& other) { return *this = *this - other; }
    d_Interval& operator*=(int n) { return *this = *this * n; }
    d_Interval& operator/=(int n) { return *this = *this / n; }
    /// @}

    // --- Text

    /// Appends the interval's text to `out` under `format`; null gives the text without loss. Directives are "%e" for
    /// whole days, "%I" (or "%H") for hours below 24, "%M" for minutes below 60 and "%S" for seconds below 60, with
    /// as many decimals as are needed for all four to give the interval back. Each number that is not 0 has the
    /// interval's sign. "%%" is a per cent sign, and another character behind a '%' stands for itself.
    ///
    ///     "%e days, %I hours, %M minutes, %S seconds"    -1 days, -2 hours, 0 minutes, -0.5 seconds
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the interval from `text` under `format`. A directive reads a decimal number; one that is not there counts
    /// as 0. Any other character of the format passes over one of the text. The numbers make an interval as they do in
    /// the constructor, fractions counted. A null format reads seconds, or a time of day ("12:05:09") as so much time,
    /// whatever its zone; a date, and text without a number, gives 0.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    float seconds = 0;  ///< negative for an interval back in time

  private:
    static d_Interval Seconds(double seconds) {
        d_Interval interval;
        interval.seconds = static_cast<float>(seconds);
        return interval;
    }
};

/// The order: -1, 0 or 1 where `a` is shorter than, as long as or longer than `b`. An interval that is not a number is
/// longer than all others, and equal to itself.
VQTM_API int operator!=(const d_Interval& a, const d_Interval& b);

/// A day of the historical calendar.
class VQTM_API d_Date {
  public:
    /// Days of the week, from 0 to 6.
    enum Weekday { Sunday = 0, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

    // --- Construction

    /// Today, local time.
    d_Date() : d_Date(VqDate::Today()) {}
    /// setAbsDate(getAbsDate() of January 1 of the year + day_of_year - 1), which is a day early: day 1 is December 31.
    d_Date(short year, unsigned short day_of_year);
    /// The fields as they are; the low 8 bits of month and day.
    d_Date(short year, unsigned short month, unsigned short day)
        : year(year), month(static_cast<std::int8_t>(month)), day(static_cast<std::int8_t>(day)) {}
    /// The timestamp's date.
    d_Date(const d_Timestamp& timestamp);
    /// The same fields, whatever the calendar.
    /// @{
    d_Date(const VqDate& date) : year(date.year), month(date.month), day(date.day) {}
    d_Date(const VqDateTime& dateTime) : d_Date(dateTime.date) {}
    /// @}

    /// Copies all fields.
    /// @{
    d_Date(const d_Date&) = default;
    d_Date& operator=(const d_Date&) = default;
    /// @}

    /// Takes the fields as the constructors do.
    /// @{
    d_Date& operator=(const d_Timestamp& timestamp);
    d_Date& operator=(const VqDate& date) { return *this = d_Date(date); }
    d_Date& operator=(const VqDateTime& dateTime) { return *this = d_Date(dateTime); }
    /// @}

    /// Today, local time.
    static d_Date current() { return d_Date(); }

    // --- Day numbers

    /// The day's number, one less than its Julian day number: 2451544 for 2000-01-01, 2299160 for 1582-10-15 and
    /// 2299159 for 1582-10-04, the day before. Defined for all fields; from year 1 on numbers and days go together.
    /// Dates that the change of calendar left out (1582-10-05 to 1582-10-14) count as Julian.
    long getAbsDate() const;
    /// The date with the Julian day number `n`: not the inverse of getAbsDate, but a day before it. Right from -1401 on
    /// (year -4716); the fields keep the low bits of what the formula gives. Of `n` the low 32 bits count, as in all
    /// arguments of its type here.
    void setAbsDate(long n);

    // --- Calendar

    /// 1 for January 1.
    int day_of_year() const;
    /// The weekday by the day number, in the historical calendar.
    Weekday day_of_week() const;
    /// Days in the month; 0 for a month that is none. In years before 1600 every fourth year is a leap year, though the
    /// day numbers change calendars in 1582.
    /// @{
    static int days_in_month(short year, unsigned short month);
    int days_in_month() const;
    /// @}

    /// Moves the date by the days to the next such weekday (1 to 7), less the one that moving a date loses.
    d_Date& next(Weekday weekday);
    /// Likewise back, and a day more.
    d_Date& previous(Weekday weekday);

    // --- Arithmetic

    /// Moves by whole days of the interval, truncated toward zero, less the day that moving a date loses. An interval
    /// that is infinite or not a number counts as 0.
    /// @{
    d_Date& operator+=(const d_Interval& interval);
    d_Date& operator-=(const d_Interval& interval) { return *this += -interval; }
    friend d_Date operator+(d_Date date, const d_Interval& interval) { return date += interval; }
    friend d_Date operator+(const d_Interval& interval, d_Date date) { return date += interval; }
    friend d_Date operator-(d_Date date, const d_Interval& interval) { return date -= interval; }
    /// @}

    /// setAbsDate(getAbsDate() + 1), which leaves the date as it is. Returns the date before.
    d_Date operator++(int);
    /// setAbsDate(getAbsDate() - 1): two days back. Returns the date before.
    d_Date operator--(int);

    // --- Text

    /// Appends the date's text to `out` under `format`, see stddate.h; null gives year, month and day, "2005-03-07".
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the date from `text` under `format`, see stddate.h. Null reads year, month and day; a whole number alone
    /// is a Julian day number, and text that is neither gives 0000-01-01.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::int16_t year;  ///< astronomical: 0 is the year before 1
    std::int8_t month;  ///< [1:12]
    std::int8_t day;    ///< [1:31]
};

/// The order: the days from `b` to `a`, as a number that is negative where `a` is earlier.
VQTM_API int operator!=(const d_Date& a, const d_Date& b);

/// A time of day in a time zone.
///
/// The stored hour and minute are those given plus the zone's, and are not reduced to a day: 23:30 in zone 2 is stored
/// as 25:30. Fields keep the low 8 bits of what they are given.
class VQTM_API d_Time {
  public:
    /// A time zone: the whole hours that its clocks are ahead of universal time, negative west of Greenwich.
    using Time_Zone = int;

    // --- The zone of times that are made without one

    /// Sets the process's default zone, 0 at start.
    static void set_default_Time_Zone(Time_Zone zone);
    /// Sets it to the clock's zone offset (btime::zoneSeconds, positive east of Greenwich) in whole hours, unless that
    /// offset is 0.
    static void set_default_Time_Zone_to_local();
    /// The default zone.
    static Time_Zone default_Time_Zone();

    // --- Construction

    /// Now, local time: the hour that the clock shows plus the zone.
    d_Time() : d_Time(VqTime::Now()) {}
    /// The hour plus the zone, the minute, and the second with its hundredths, truncated. Here and wherever no zone is
    /// given, it is the default one: tz_hour is that and tz_minute 0.
    d_Time(unsigned short hour, unsigned short minute, float second);
    /// The same in the zone given: hour + tz_hour, minute + tz_minute.
    d_Time(unsigned short hour, unsigned short minute, float second, short tz_hour, short tz_minute);
    /// The time `seconds` after midnight; the hour is not reduced, so 90000 give 25 plus the zone. A negative number
    /// counts back from a midnight.
    explicit d_Time(long seconds);
    /// The hour plus the zone; no hundredths.
    /// @{
    d_Time(const VqTime& time);
    d_Time(const VqDateTime& dateTime) : d_Time(dateTime.time) {}
    /// @}

    /// The timestamp's time, all fields as they are.
    d_Time(const d_Timestamp& timestamp);
    /// Copies all fields.
    /// @{
    d_Time(const d_Time&) = default;
    d_Time& operator=(const d_Time&) = default;
    /// @}

    /// Takes the timestamp's time, all fields as they are.
    d_Time& operator=(const d_Timestamp& timestamp);
    /// As the constructors do, but the hour is taken as it is, without the zone.
    /// @{
    d_Time& operator=(const VqTime& time);
    d_Time& operator=(const VqDateTime& dateTime) { return *this = dateTime.time; }
    /// @}

    /// Now, local time.
    static d_Time current() { return d_Time(); }

    // --- Arithmetic

    /// The clock moves round midnight and the zone fields stay. Stored fields and interval are added exactly, not in
    /// the single precision of intervals, so that no hundredth is lost; what is cut off are parts of one. As in the
    /// constructor of an interval, one negative field makes the time count from midnight back: a stored -3:30 (02:30 in
    /// zone -5, by its minutes) is three hours and a half before midnight. An interval that is infinite or not a number
    /// counts as 0.
    /// @{
    d_Time& operator+=(const d_Interval& interval);
    d_Time& operator-=(const d_Interval& interval) { return *this += -interval; }
    friend d_Time operator+(d_Time time, const d_Interval& interval) { return time += interval; }
    friend d_Time operator+(const d_Interval& interval, d_Time time) { return time += interval; }
    friend d_Time operator-(d_Time time, const d_Interval& interval) { return time -= interval; }
    /// @}

    // --- Text

    /// Appends the time's text to `out` under `format`, see stddate.h; null gives the stored hour, and the zone behind
    /// it.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the time from `text` under `format`, see stddate.h. A scanned hour is stored as it stands; a text without
    /// a zone has the default one. A null format reads hour, minute and second, with decimals and zone ("+01:00", "Z")
    /// where they follow. Minutes and seconds that are missing are 0, and a date before the hour ("2005-03-07T") is
    /// passed over. A number alone is seconds since midnight, with decimals or without, and text that is neither gives
    /// zeros.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::int8_t tz_hour;     ///< hours of the time zone
    std::int8_t tz_minute;   ///< minutes of the time zone
    std::int8_t hour;        ///< with the zone's hours, so not limited to [0:23]
    std::int8_t minute;      ///< with the zone's minutes
    std::int8_t second;      ///< [0:59]
    std::int8_t hundredths;  ///< [0:99]
};

/// The order of the times on the clocks of their zones: hour - tz_hour, then minute - tz_minute, then seconds with
/// hundredths. The first difference is the result, that of the seconds truncated to whole ones: less than a second
/// apart is equal.
VQTM_API int operator!=(const d_Time& a, const d_Time& b);

/// Seconds from `b` to `a`: of each hour * 3600 + minute * 60 + second, as they are stored, each field with its sign.
/// Hundredths and zones do not count.
VQTM_API d_Interval operator-(const d_Time& a, const d_Time& b);

/// A date and a time of day.
class VQTM_API d_Timestamp {
  public:
    // --- Construction

    /// Now, local time, as d_Date and d_Time have it.
    d_Timestamp() : d_Timestamp(current()) {}
    /// The beginning of the day: d_Time(0, 0, 0) of the default zone.
    d_Timestamp(const d_Date& date) : date(date), time(0, 0, 0) {}
    /// The two parts as given.
    d_Timestamp(const d_Date& date, const d_Time& time) : date(date), time(time) {}
    /// Each part as it is constructed: the hour plus the default zone.
    d_Timestamp(const VqDateTime& dateTime) : date(dateTime), time(dateTime) {}
    /// Copies both parts.
    /// @{
    d_Timestamp(const d_Timestamp&) = default;
    d_Timestamp& operator=(const d_Timestamp&) = default;
    /// @}

    /// Sets the date; the time stays.
    d_Timestamp& operator=(const d_Date& other) {
        date = other;
        return *this;
    }
    /// Each part as it assigns: the hour is taken as it is.
    d_Timestamp& operator=(const VqDateTime& dateTime) {
        date = dateTime;
        time = dateTime;
        return *this;
    }

    /// Now, local time.
    static d_Timestamp current();

    // --- Arithmetic

    /// The time of day moves as a d_Time does, and the days that it passes are carried into the date, to the day of the
    /// calendar. A date that nothing is carried into stays as it is, valid or not.
    /// @{
    d_Timestamp& operator+=(const d_Interval& interval);
    d_Timestamp& operator-=(const d_Interval& interval) { return *this += -interval; }
    friend d_Timestamp operator+(d_Timestamp timestamp, const d_Interval& interval) { return timestamp += interval; }
    friend d_Timestamp operator+(const d_Interval& interval, d_Timestamp timestamp) { return timestamp += interval; }
    friend d_Timestamp operator-(d_Timestamp timestamp, const d_Interval& interval) { return timestamp -= interval; }
    /// @}

    // --- Text

    /// Appends the text of both parts to `out` under `format`, see stddate.h; null puts a 'T' between the two.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads both parts from `text` under `format`, see stddate.h. Under a null format a missing time is midnight, and
    /// a number behind the date an hour; text without a date gives zeros but for month and day, 1.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    d_Date date;  ///< the day
    d_Time time;  ///< the time of day and its zone
};

/// The order: the dates' difference, or where that is 0 the times'.
VQTM_API int operator!=(const d_Timestamp& a, const d_Timestamp& b);

// --- Comparison by the three-way results

/// Defines the other comparisons of a class by its `operator!=`, within this header alone.
#define VQTM_COMPARISONS(Value)                                                     \
    inline int operator==(const Value& a, const Value& b) { return (a != b) == 0; } \
    inline int operator<(const Value& a, const Value& b) { return (a != b) < 0; }   \
    inline int operator>(const Value& a, const Value& b) { return (a != b) > 0; }   \
    inline int operator<=(const Value& a, const Value& b) { return (a != b) <= 0; } \
    inline int operator>=(const Value& a, const Value& b) { return (a != b) >= 0; }

/// By the sign of the values' `operator!=`: 1 or 0.
/// @{
VQTM_COMPARISONS(d_Interval)
VQTM_COMPARISONS(d_Date)
VQTM_COMPARISONS(d_Time)
VQTM_COMPARISONS(d_Timestamp)
/// @}

#undef VQTM_COMPARISONS

// --- Overlaps

/// Tells whether two periods have a moment in common: from `a` to `b` and from `c` to `d`, ends included, each in
/// either order. 1 or 0. With timestamps on one side only, the parts that both sides have are compared.
/// @{
VQTM_API int overlaps(const d_Date& a, const d_Date& b, const d_Date& c, const d_Date& d);
VQTM_API int overlaps(const d_Time& a, const d_Time& b, const d_Time& c, const d_Time& d);
VQTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Timestamp& c, const d_Timestamp& d);
VQTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Date& c, const d_Date& d);
VQTM_API int overlaps(const d_Date& a, const d_Date& b, const d_Timestamp& c, const d_Timestamp& d);
VQTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Time& c, const d_Time& d);
VQTM_API int overlaps(const d_Time& a, const d_Time& b, const d_Timestamp& c, const d_Timestamp& d);
/// @}

// --- Rows of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form, 4 bytes of each date: the year as a short in the format's byte order, month,
/// day; 6 of each time, its fields as they are; 10 of each timestamp, which is both; 4 of each interval, a float.
/// Addresses need no alignment. Returns the bytes written.
/// @{
VQTM_API unsigned long d_DateStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimeStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimestampStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_IntervalStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// @}

/// Reads `count` values from disk form. Returns the bytes consumed.
/// @{
VQTM_API unsigned long d_DateLoad(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimeLoad(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimestampLoad(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long d_IntervalLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// @}

/// Disk bytes of `count` values: 4 for each date, 6 for each time, 10 for each timestamp. Nothing is looked at; data
/// and file may be null. Sizes of intervals are those of floats.
/// @{
VQTM_API unsigned long d_DateNullSizeGet(unsigned long count);
VQTM_API unsigned long d_TimeNullSizeGet(unsigned long count);
VQTM_API unsigned long d_TimestampNullSizeGet(unsigned long count);
VQTM_API unsigned long d_DateSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                     unsigned long count);
VQTM_API unsigned long d_TimeSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                     unsigned long count);
VQTM_API unsigned long d_TimestampSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                          unsigned long count);
VQTM_API unsigned long d_DateSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimeSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
VQTM_API unsigned long d_TimestampSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
