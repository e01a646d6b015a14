/// \file
/// Wall clock and time zone, and a way to put another clock in their place.
#ifndef CLOCK_H
#define CLOCK_H

#include "vqbasedefs.h"

/// A date of the proleptic Gregorian calendar.
struct bdate {
    short year;         ///< astronomical: 2005
    signed char month;  ///< [1:12]
    signed char day;    ///< [1:31]
};

/// A time of day.
struct btime {
    signed char hour;    ///< [0:23]
    signed char minute;  ///< [0:59]
    signed char second;  ///< [0:60], 60 in a leap second where the system tells
    /// Seconds that this time is ahead of universal time: positive east of Greenwich, 0 in universal time.
    long zoneSeconds;
};

/// What bksgettimezone answers when the zone is not known.
constexpr int VqTimeZoneUnknown = -2171;

/// Fills in the current local date. Null is ignored, here and below.
VQBASE_API void bksgetdate(bdate* date);

/// Fills in the current local time, with zone.
VQBASE_API void bksgettime(btime* time);

/// Fills in universal time and date, both from one reading.
VQBASE_API void bksgetsystemtime(btime* time, bdate* date);

/// Minutes that local time is ahead of universal time: positive east of Greenwich, as btime's zone.
/// Summer time counts. VqTimeZoneUnknown when the system cannot tell.
VQBASE_API int bksgettimezone();

/// A source for the functions above. No member is null; both arguments are always given.
struct VqClock {
    void (*local)(btime* time, bdate* date);  ///< local time and date
    void (*utc)(btime* time, bdate* date);    ///< universal time and date
    int (*zoneMinutes)();                     ///< minutes, local minus universal time, or VqTimeZoneUnknown
};

/// Makes `clock` the source for all threads; null restores the system's clock. The caller keeps it alive while it is in
/// use. Returns the clock before, which is never null: a clock may stand on the one that it replaces.
VQBASE_API const VqClock* VqSetClock(const VqClock* clock);

#endif
