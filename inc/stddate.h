/// \file
/// d_Date, d_Time, d_Timestamp, d_Interval: the standard date and time types. They have no null. A new value's fields
/// are not set, but an interval starts at 0.
#ifndef STDDATE_H
#define STDDATE_H

#include <cstdint>

class d_Date {
  public:
    std::int16_t year;
    std::int8_t month;  // [1:12]
    std::int8_t day;    // [1:31]
};

class d_Time {
  public:
    std::int8_t tz_hour;     // hours of the time zone
    std::int8_t tz_minute;   // minutes of the time zone
    std::int8_t hour;        // with the zone's hours, so not limited to 23
    std::int8_t minute;      // with the zone's minutes
    std::int8_t second;      // [0:59]
    std::int8_t hundredths;  // [0:99]
};

class d_Timestamp {
  public:
    d_Date date;
    d_Time time;
};

class d_Interval {
  public:
    float seconds = 0;  // negative for an interval back in time
};

#endif
