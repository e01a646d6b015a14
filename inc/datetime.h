/// \file
/// VqDateTime: a point in time to the second, a date and a time of day.
///
/// What holds for dates and times (date.h) holds for the two together: any fields are taken, nothing but the zone shift
/// fails, and the results are the same on every target.
///
///     VqDateTime at(VqDate(2000, 3, 1), VqTime(0, 0, 0));
///     at.AddSeconds(-1);                                        // 2000-02-29T23:59:59
///     at.ToLocalTime();                                         // an hour ahead: 2000-03-01T00:59:59
#ifndef DATETIME_H
#define DATETIME_H

#include "date.h"

class VqInt64;

/// A date and a time of day.
class VQTM_API VqDateTime {
  public:
    // --- Construction

    /// Today and now, local time: two readings of the clock, the date first.
    VqDateTime() = default;
    /// The two parts as given.
    VqDateTime(const VqDate& date, const VqTime& time) : date(date), time(time) {}
    /// The date with the current local time.
    VqDateTime(const VqDate& date) : date(date) {}
    /// Today's local date with the time.
    VqDateTime(const VqTime& time) : time(time) {}
    /// Copies both parts.
    /// @{
    VqDateTime(const VqDateTime&) = default;
    VqDateTime& operator=(const VqDateTime&) = default;
    /// @}

    /// Replaces the time; the date stays.
    VqDateTime& operator=(const VqTime& newTime) {
        time = newTime;
        return *this;
    }

    /// Now, local time: two readings of the clock, the time first.
    static VqDateTime Now();
    /// Now, universal time, by one reading of the clock.
    static VqDateTime NowUTC();
    /// One object for all whose six fields are 0, not const because callers hold it as such; nobody changes it. It is
    /// no date, and it is not the null value either.
    static VqDateTime& Null();

    /// 1 when the date is one (IsDate) and the time is one (IsTime), else 0.
    int IsDaTime() const { return date.IsDate() && time.IsTime(); }

    // --- Comparison

    /// The order: the dates' operator!=, in which fields of -1 stand for any value, and where that is 0 the times'.
    /// Positive when this point is later, negative when it is earlier, else 0.
    int operator!=(const VqDateTime& other) const {
        const int dates = date != other.date;
        return dates != 0 ? dates : time != other.time;
    }
    /// The same as `operator!=`.
    int Compare(const VqDateTime& other) const { return *this != other; }

    // --- Arithmetic

    /// Moves the point by `seconds`, forward or back; the clock's passing midnight carries into the date.
    void AddSeconds(long seconds);
    /// Moves a point in universal time to local time, by the zone's current offset (bksgettimezone). Seconds stay. The
    /// carry into the date is one day, enough for zones within a day. Returns 0; VqStatus_UnknownTimeZone, and nothing
    /// moves, where the zone is not known.
    int ToLocalTime();
    /// The reverse: from local to universal time.
    int ToUTCTime();

    // --- Text

    /// Appends the text of both parts to `out` under `format` (null: "%Y-%m-%dT%H:%M:%S"), as for dates (date.h).
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads both parts from `text` under `format` (null: "%Y-%m-%dT%H:%M:%S").
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    // --- Null

    /// Both parts null.
    bool IsNullValue() const { return date.IsNullValue() && time.IsNullValue(); }
    /// Sets both parts null. Returns 0.
    int SetNullValue() {
        date.SetNullValue();
        return time.SetNullValue();
    }

    VqDate date;  ///< the date
    VqTime time;  ///< the time of day
};

/// Kept so that its callers link. Returns VqStatus_NotSupported; the argument stays.
VQTM_API int GetSystemTimeInMSSinceTheEpoch(VqInt64& milliseconds);

// --- Row of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form, 7 bytes of each: the date's 4, then the time's 3. Addresses need no alignment.
/// Returns the bytes written.
VQTM_API unsigned long DaTimeStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long DaTimeLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values: 7 each. Nothing is looked at; data and file may be null.
/// @{
VQTM_API unsigned long DaTimeNullSizeGet(unsigned long count);
VQTM_API unsigned long DaTimeSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                     unsigned long count);
VQTM_API unsigned long DaTimeSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
