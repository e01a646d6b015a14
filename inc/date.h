/// \file
/// VqDate and VqTime: a calendar date, and a time of day to the second.
///
/// Fields are not checked on assignment. A new value's fields are not set.
#ifndef DATE_H
#define DATE_H

#include <cstdint>

class VqDate {
  public:
    std::int16_t year;  // Gregorian; -32768 in the null date
    std::int8_t month;  // [1:12]; -128 in the null date
    std::int8_t day;    // [1:31]; -128 in the null date
};

class VqTime {
  public:
    std::int8_t hour;    // [0:23]; all three are -128 in the null time
    std::int8_t minute;  // [0:59]
    std::int8_t second;  // [0:59]
};

#endif
