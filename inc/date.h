/// \file
/// VqDate and VqTime: a calendar date, and a time of day to the second.
///
/// Dates compute with Julian Day Numbers in the proleptic Gregorian calendar: the leap-year rule holds for all years,
/// and the year before 1 is 0.
///
///     VqDate(2000, 1, 1).dayabs()             2451545
///     VqDate(2000, 2, 28) + 2                 2000-03-01
///     VqDate(2000, 1, 1).DayOfTheDate()       5, a Saturday
///     VqTime(23, 59, 30) + 45                 00:00:15
///     VqTime(1, 0, 0) - VqTime(23, 0, 0)      02:00:00
///
/// Three questions are apart: a value takes whatever it is given, cut to the width of its fields; IsDate and IsTime
/// tell whether it is a date or time; IsNullValue tells whether it is null. Nothing fails. Every result is the same on
/// every target: a `long` counts as its low 32 bits, and arithmetic beyond 32 bits wraps. With a null value arithmetic
/// gives some value without meaning.
///
/// Both classes are plain values: copying them copies bytes.
///
/// Texts of dates, times and date-times share one language of formats, in the manner of strftime and strptime and with
/// English names whatever the locale. A format is text with directives:
///
///             prints                                  reads, and the width it advances by
///     %Y      year, 4 digits                          4: year
///     %y      year modulo 100, 2 digits               2: year, to which 1900 is added
///     %m      month, 2 digits                         2: month
///     %d %e   day, 2 digits                           2: day
///     %H      hour, 2 digits                          2: hour
///     %I      the same; from 13 on less 12, and 12    2: hour
///             for 0 where the format has %p or %P
///     %M %S   minute, second, 2 digits                2: minute, second
///     %p %P   "am" or, from hour 12 on, "pm";         2: half of the day, by its first letter in either case
///             "AM" or "PM"
///     %B %b   month's name, its first 3 letters;      a name by its first 3 letters and on as far as it agrees;
///             another month 3 digits                  else 3: month
///     %A %a   weekday's name, its first 3 letters     likewise; nothing is stored, and without a name nothing is read
///     %%      %                                       1
///     other   the letter itself                       1
///
///     "%a %e.%b %Y"       2005-03-07     <->  Mon 07.Mar 2005
///     "%I:%M:%S %p"       00:05:09       <->  12:05:09 am
///
/// Names are Monday to Sunday, and Januar, Februar, March to December; the first two have always been spelled so. A
/// number has more digits where it needs them, and a sign before them where it is negative.
///
/// Printing appends to `out`, in its code set; a null value *sets* it to the null print string. Directives for the part
/// that a date or a time has not print the clock's.
///
/// Scanning never fails. A text that begins with the null print string is null. Otherwise all six fields start as
/// 0000-01-01T00:00:00, and the format is walked: an ordinary character passes over one of the text, which may be any;
/// a directive reads a number as scanf does, white space first and a sign allowed, or leaves its field as it is, and
/// advances by its width either way. Behind the end of the text there is nothing to read. Then the halves of the day
/// make 12 am 0 and 1 pm 13. Fields that are no date-time together give 0000-01-01T00:00:00, unless all are 0; a date
/// or a time keeps its own part. Texts in 2-byte code sets are read in the default 8-bit one.
#ifndef DATE_H
#define DATE_H

#include <bit>
#include <concepts>
#include <cstdint>

#include "vqdefs.h"

class MemFile;
class VqString;

/// A date. Two of them, `a` and `b`, and a number of days n: `a + n`, `n` days after a; `a - b`, the days from b to a.
class VQTM_API VqDate {
  public:
    static constexpr std::int16_t NullYear = -32768;  ///< the year of the null date
    static constexpr std::int8_t NullField = -128;    ///< month and day of the null date

    // --- Construction

    /// Today, local time.
    VqDate();
    /// The date with a Julian Day Number: dateabs.
    VqDate(long dayNumber) : VqDate(0, 0, 0) { dateabs(dayNumber); }
    /// The fields as given: the low 16, 8 and 8 bits.
    VqDate(int year, int month, int day)
        : year(static_cast<std::int16_t>(year)),
          month(static_cast<std::int8_t>(month)),
          day(static_cast<std::int8_t>(day)) {}
    /// Copies all fields.
    /// @{
    VqDate(const VqDate&) = default;
    VqDate& operator=(const VqDate&) = default;
    /// @}

    /// Today, local time.
    static VqDate Today() { return VqDate(); }

    // --- Day numbers

    /// The Julian Day Number, by the formula of Fliegel and Van Flandern (Communications of the ACM 11, 1968) whose
    /// divisions truncate. Any fields will do: a day outside its month counts on, month 13 is January of the next year,
    /// and so are months beyond. From -4800-03-01 on it numbers the proleptic calendar's days without a gap; before
    /// that the truncation shifts days.
    inline long dayabs() const;
    /// Becomes the date with a Julian Day Number, by the same authors' inverse. It is the proleptic calendar's date
    /// from -68569 (-4900-03-01) up to 536802342, and below that, to -536939481, what the truncating divisions give;
    /// beyond either end the formula's steps wrap around in 32 bits. The year is cut to 16 bits.
    inline void dateabs(long dayNumber);
    /// The same as dayabs().
    operator long() const { return dayabs(); }

    /// Days from this date to the first of the next month; for December, of month 13.
    long daynxtmonth() const { return VqDate(year, month + 1, 1).dayabs() - dayabs(); }
    /// 1 for a day that the calendar has, else 0. There is no limit to the years.
    int IsDate() const {
        if (day < 1 || day > 31 || month < 1 || month > 12) return 0;
        return (day <= 28 && year >= 0) || daynxtmonth() > 0;
    }
    /// 1 or 0. Asks only whether the next day is the first of the next month.
    int IsLastDayOfTheMonth() const { return daynxtmonth() == 1; }

    /// The weekday, 0 = Monday to 6 = Sunday, by Zeller's congruence (Acta Mathematica 9, 1886). It is right from
    /// 0000-03-01 to 4600-02-29. Later dates give 6 where the congruence's sum is negative; before, truncated divisions
    /// shift days.
    int DayOfTheDate() const;
    /// The weekday's English name, "Monday" to "Sunday".
    VqString PrintDayOfTheDate() const;

    // --- Arithmetic

    /// The date `days` later or earlier: dateabs(dayabs() + days), where the sum wraps at 32 bits.
    /// @{
    VqDate operator+(long days) const { return VqDate(*this) += days; }
    VqDate operator-(long days) const { return VqDate(*this) -= days; }
    /// @}

    /// The same for every other integer, so that none is taken for a sum of day numbers.
    /// @{
    template <std::integral Integer>
    VqDate operator+(Integer days) const {
        return *this + static_cast<long>(days);
    }
    template <std::integral Integer>
    VqDate operator-(Integer days) const {
        return *this - static_cast<long>(days);
    }
    /// @}

    /// Days from `other` to this date; negative when this one is earlier.
    long operator-(const VqDate& other) const { return dayabs() - other.dayabs(); }
    /// Moves this date by `days`, or by one day, as the operators above do. Returns it.
    /// @{
    VqDate& operator+=(long days) { return MoveTo(DayBits() + static_cast<std::uint32_t>(days)); }
    VqDate& operator-=(long days) { return MoveTo(DayBits() - static_cast<std::uint32_t>(days)); }
    VqDate& operator++() { return *this += 1; }
    VqDate& operator--() { return *this -= 1; }
    /// @}

    /// The quotient, truncated. Two negative operands give a positive one. `b` is not 0.
    long divide(long a, long b) const;
    /// The rest of the magnitudes, negative when the quotient is, and so not by the sign of `a`: modulo(7, -2) and
    /// modulo(-7, 2) are -1, modulo(-7, -2) is 1. `b` is not 0.
    long modulo(long a, long b) const;

    // --- Comparison

    /// 1 when all fields are equal, else 0.
    int operator==(const VqDate& other) const { return year == other.year && month == other.month && day == other.day; }
    /// The order: positive when this date is later, negative when it is earlier, else 0. It is the difference of the
    /// first field that differs, of year, month and day. A field that is -1 in either date stands for any value and is
    /// passed over, so that dates which differ (operator==) may be 0 apart. The operators below go by its sign.
    int operator!=(const VqDate& other) const {
        if (const int years = Difference(year, other.year)) return years;
        if (const int months = Difference(month, other.month)) return months;
        return Difference(day, other.day);
    }
    /// By the sign of `operator!=`: 1 or 0.
    /// @{
    int operator<(const VqDate& other) const { return (*this != other) < 0; }
    int operator>(const VqDate& other) const { return (*this != other) > 0; }
    int operator<=(const VqDate& other) const { return (*this != other) <= 0; }
    int operator>=(const VqDate& other) const { return (*this != other) >= 0; }
    /// @}

    // --- Text

    /// Appends the date's text to `out` under `format` (null: "%Y-%m-%d"), see date.h.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the date from `text` under `format` (null: "%Y-%m-%d").
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    // --- Null

    /// True when all fields are those of the null date.
    bool IsNullValue() const { return year == NullYear && month == NullField && day == NullField; }
    /// Makes this null. Returns 0.
    int SetNullValue() {
        *this = VqDate(NullYear, NullField, NullField);
        return 0;
    }

    std::int16_t year;  ///< astronomical: 0 is the year before 1
    std::int8_t month;  ///< [1:12]
    std::int8_t day;    ///< [1:31]

  private:
    static int Difference(int a, int b) { return a == -1 || b == -1 ? 0 : a - b; }

    std::uint32_t DayBits() const { return static_cast<std::uint32_t>(dayabs()); }
    VqDate& MoveTo(std::uint32_t dayNumber) {
        dateabs(static_cast<std::int32_t>(dayNumber));
        return *this;
    }

    inline void SetBits(std::uint32_t bits);  // day, month and year, from the highest bits down

    // The formulas as they stand, for all fields and day numbers.
    long AnyDayNumber() const;
    void SetAnyDayNumber(std::uint32_t dayNumber);
    int AnyWeekday() const;
};

/// A time of day. Its fields are 8 bits wide, and all arithmetic on them wraps at 8 bits.
class VQTM_API VqTime {
  public:
    /// All three fields of the null time.
    static constexpr std::int8_t NullField = -128;

    // --- Construction

    /// Now, local time.
    VqTime();
    /// The time `seconds` after midnight; 90000 give hour 25, which is no time. A negative number gives fields that are
    /// 0 or negative.
    VqTime(long seconds);
    /// The low 8 bits of each field.
    VqTime(int hour, int minute, int second)
        : hour(static_cast<std::int8_t>(hour)),
          minute(static_cast<std::int8_t>(minute)),
          second(static_cast<std::int8_t>(second)) {}
    /// Copies all fields.
    /// @{
    VqTime(const VqTime&) = default;
    VqTime& operator=(const VqTime&) = default;
    /// @}

    /// Now, local time.
    static VqTime Now() { return VqTime(); }

    /// Seconds since midnight: hour * 3600 + minute * 60 + second.
    operator long() const { return hour * 3600L + minute * 60L + second; }
    /// 1 when the hour is 0 to 23, minute and second 0 to 59, else 0.
    int IsTime() const { return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60; }

    // --- Arithmetic

    /// The time `seconds` later, around midnight. The fields take the number's hours, minutes and seconds (truncated);
    /// then seconds and minutes of 60 or more carry once, and an hour of 24 or more is reduced. A negative number is
    /// added the same way, and leaves negative fields.
    VqTime operator+(long seconds) const;
    /// The time `seconds` earlier, around midnight: negative seconds and minutes borrow once, and a negative hour gets
    /// 24 more, once.
    VqTime operator-(long seconds) const;
    /// The same for every other integer.
    /// @{
    template <std::integral Integer>
    VqTime operator+(Integer seconds) const {
        return *this + static_cast<long>(seconds);
    }
    template <std::integral Integer>
    VqTime operator-(Integer seconds) const {
        return *this - static_cast<long>(seconds);
    }
    /// @}

    /// How long it is on the clock from `other` to this time, within a day.
    VqTime operator-(const VqTime& other) const;
    /// Moves this time as the operators above do. Returns it.
    /// @{
    VqTime& operator+=(long seconds) { return *this = *this + seconds; }
    VqTime& operator-=(long seconds) { return *this = *this - seconds; }
    /// @}

    /// Moves this time by one second. Returns it.
    /// @{
    VqTime& operator++() { return *this += 1; }
    VqTime& operator--() { return *this -= 1; }
    /// @}

    // --- Comparison

    /// 1 when all fields are equal, else 0.
    int operator==(const VqTime& other) const {
        return hour == other.hour && minute == other.minute && second == other.second;
    }
    /// The order: 1 when this time is later, -1 when it is earlier, else 0. Hours decide, then minutes, then seconds.
    int operator!=(const VqTime& other) const { return (Order() > other.Order()) - (Order() < other.Order()); }
    /// By the sign of `operator!=`: 1 or 0.
    /// @{
    int operator<(const VqTime& other) const { return Order() < other.Order(); }
    int operator>(const VqTime& other) const { return Order() > other.Order(); }
    int operator<=(const VqTime& other) const { return Order() <= other.Order(); }
    int operator>=(const VqTime& other) const { return Order() >= other.Order(); }
    /// @}

    // --- Text

    /// Appends the time's text to `out` under `format` (null: "%H:%M:%S"), see date.h.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the time from `text` under `format` (null: "%H:%M:%S").
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    // --- Null

    /// True when all fields are NullField.
    bool IsNullValue() const { return hour == NullField && minute == NullField && second == NullField; }
    /// Makes this null. Returns 0.
    int SetNullValue() {
        *this = VqTime(NullField, NullField, NullField);
        return 0;
    }

    std::int8_t hour;    ///< [0:23]
    std::int8_t minute;  ///< [0:59]
    std::int8_t second;  ///< [0:59]

  private:
    // One number that orders as the fields do: each is 256 wide.
    int Order() const { return hour * 65536 + minute * 256 + second; }
};

// --- Rows of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form, 4 bytes of each date: the year as a short in the format's byte order, month,
/// day; 3 of each time: hour, minute, second. Addresses need no alignment. Returns the bytes written.
/// @{
VQTM_API unsigned long DateStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long TimeStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// @}

/// Reads `count` values from disk form. Returns the bytes consumed.
/// @{
VQTM_API unsigned long DateLoad(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long TimeLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// @}

/// Disk bytes of `count` values: 4 for each date, 3 for each time. Nothing is looked at; data and file may be null.
/// @{
VQTM_API unsigned long DateNullSizeGet(unsigned long count);
VQTM_API unsigned long TimeNullSizeGet(unsigned long count);
VQTM_API unsigned long DateSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                   unsigned long count);
VQTM_API unsigned long TimeSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                   unsigned long count);
VQTM_API unsigned long DateSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
VQTM_API unsigned long TimeSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

// --- Day numbers of the usual dates, in line
//
// The formulas' results by fewer operations, after Neri and Schneider, "Euclidean affine functions and their
// application to calendar algorithms" (Software: Practice and Experience 53, 2023). Years are counted from March on.

/// \cond
namespace vq {

// Days from March 1 to the first of each month, months 13 and 14 included.
inline constexpr std::uint16_t daysBeforeMonth[] = {0, 306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275, 306, 337};

// The days of a year that begins in March: the day in bits 31 to 24, the month in bits 23 to 16, and 1 from January on,
// where the calendar's year is one more.
struct MarchYear {
    std::uint32_t at[366];

    constexpr MarchYear() : at() {
        for (std::uint32_t dayOfYear = 0; dayOfYear < 366; ++dayOfYear) {
            const std::uint32_t months = 2141 * dayOfYear + 197913;  // 2^16 is a month
            const std::uint32_t month = months >> 16, day = (months & 0xFFFF) / 2141 + 1;
            at[dayOfYear] = day << 24 | (month > 12 ? month - 12 : month) << 16 | (month > 12);
        }
    }
};
inline constexpr MarchYear marchYear;

}  // namespace vq
/// \endcond

inline long VqDate::dayabs() const {
    if (year < -4799 || static_cast<unsigned>(month - 1) >= 14) [[unlikely]]
        return AnyDayNumber();
    const unsigned y = static_cast<unsigned>(year + 4800 - (month < 3));  // [0:37567]
    const unsigned century = y / 100;
    const unsigned days = 1461 * y / 4 - century + century / 4 + vq::daysBeforeMonth[month];
    return static_cast<int>(days) + day - 32045;
}

inline void VqDate::dateabs(long dayNumber) {
    constexpr std::uint32_t First = 68569, Last = 536870911;  // -4900-03-01 is day 0; four times the last fits a long
    const std::uint32_t bits = static_cast<std::uint32_t>(dayNumber);
    if (bits + First > Last) [[unlikely]] {
        SetAnyDayNumber(bits);
        return;
    }
    const std::uint32_t quarters = 4 * (bits + First + 3 * 36524) + 3;  // of days since -5200-03-01
    const std::uint32_t century = quarters / 146097;
    const std::uint64_t years = std::uint64_t{2939745} * (quarters % 146097 | 3);        // 2^32 is a year
    const std::uint32_t y = static_cast<std::uint32_t>(years >> 32);                     // [0:99]
    const std::uint32_t dayOfYear = static_cast<std::uint32_t>(years) / (4 * 2939745u);  // [0:365]
    const std::uint32_t found = vq::marchYear.at[dayOfYear];
    SetBits((found & 0xFFFF0000) | ((100 * century + y + found - 5200) & 0xFFFF));
}

// One store: whoever copies the date next need not wait until three of them have met.
inline void VqDate::SetBits(std::uint32_t bits) {
    if constexpr (std::endian::native == std::endian::little) {
        *this = std::bit_cast<VqDate>(bits);
    } else {
        *this = VqDate(static_cast<int>(bits), static_cast<int>(bits >> 16), static_cast<int>(bits >> 24));
    }
}

inline int VqDate::DayOfTheDate() const {
    if (year < 1 || static_cast<unsigned>(month - 1) >= 12) [[unlikely]]
        return AnyWeekday();
    const bool beforeMarch = month < 3;
    const unsigned y = static_cast<unsigned>(year - beforeMarch);                // [0:32767]
    const unsigned m = static_cast<unsigned>(beforeMarch ? month + 12 : month);  // [3:14]
    const unsigned century = y / 100;                                            // [0:327]
    const int sum = static_cast<int>(y + y / 4 - 127 * century + century / 4 + (83 * m - 170) / 32) + day + 77;
    // The rest by 7 of a small number: the highest three bits of its multiple of 2^32 / 7.
    return sum < 0 ? 6 : static_cast<int>(static_cast<std::uint32_t>(sum + 6) * 613566757u >> 29);
}

#endif
