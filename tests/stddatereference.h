// The standard types' formulas in loops, and for dates in floating numbers, as they are given in books.
#ifndef VQ_STDDATEREFERENCE_H
#define VQ_STDDATEREFERENCE_H

#include <cstdint>
#include <cstdlib>

#include "stddate.h"

namespace vqtest {

inline std::int64_t Truncated(double value) { return static_cast<std::int64_t>(value); }

inline std::int64_t ReferenceAbsDate(int year, int month, int day) {
    const int y = month < 3 ? year - 1 : year;
    const int m = month < 3 ? month + 13 : month + 1;
    const std::int64_t n = Truncated(365.25 * y) + Truncated(30.6001 * m) + day + 1720994;
    if (n < 2299170) return n;
    const int a = y / 100;
    return n + 2 - a + a / 4;
}

inline d_Date ReferenceDate(std::int64_t n) {
    std::int64_t j = n;
    if (n > 2299160) {
        const std::int64_t alpha = Truncated((static_cast<double>(n) - 1867216.25) / 36524.25);
        j = n + 1 + alpha - alpha / 4;
    }
    const std::int64_t b = j + 1524;
    const std::int64_t c = Truncated((static_cast<double>(b) - 122.1) / 365.25);
    const std::int64_t d = Truncated(365.25 * static_cast<double>(c));
    const std::int64_t e = Truncated(static_cast<double>(b - d) / 30.6001);
    const std::int64_t month = e < 14 ? e - 1 : e - 13;
    d_Date date(0, 0, 0);
    date.day = static_cast<std::int8_t>(b - d - Truncated(30.6001 * static_cast<double>(e)));
    date.month = static_cast<std::int8_t>(month);
    date.year = static_cast<std::int16_t>(c - 4716 + (month < 3 ? 1 : 0));
    return date;
}

// The interval in parts of a second, `Parts` of them, so that whole numbers tell all.
template <std::int64_t Parts>
d_Time ReferenceSum(const d_Time& time, std::int64_t interval) {
    const std::int64_t seconds = 100 * time.second + time.hundredths;
    std::int64_t sum = std::abs(seconds) + 6000 * std::abs(time.minute) + 360000 * std::abs(time.hour);
    if (seconds < 0 || time.minute < 0 || time.hour < 0) sum = -sum;
    sum = sum * Parts + interval * 100;
    while (sum < 0) sum += 8640000 * Parts;
    const std::int64_t hundredths = sum / Parts;
    d_Time result = time;
    result.hour = static_cast<std::int8_t>(hundredths / 360000 % 24);
    result.minute = static_cast<std::int8_t>(hundredths / 6000 % 60);
    result.second = static_cast<std::int8_t>(hundredths / 100 % 60);
    result.hundredths = static_cast<std::int8_t>(hundredths % 100);
    return result;
}

// The moments of days, or of whatever has an order.
inline int ReferenceOverlaps(int a, int b, int c, int d) {
    const int low = a <= b ? a : b, high = a <= b ? b : a;
    if ((low <= c && c <= high) || (low <= d && d <= high) || (c <= low && d >= high)) return 1;
    return d <= low && c >= high ? 1 : 0;
}

}  // namespace vqtest

#endif
