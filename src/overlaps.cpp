#include "stddate.h"

namespace {

// The second period may be given in either order, and is looked at as it is given: the last two answers are for one
// that encloses the first, once from its beginning and once from its end.
template <class T>
int Overlap(const T& a, const T& b, const T& c, const T& d) {
    const bool ascending = a <= b;
    const T& low = ascending ? a : b;
    const T& high = ascending ? b : a;
    const auto isWithin = [&](const T& moment) { return low <= moment && moment <= high; };
    if (isWithin(c) || isWithin(d)) return 1;
    return (c <= low && d >= high) || (d <= low && c >= high);
}

}  // namespace

int overlaps(const d_Date& a, const d_Date& b, const d_Date& c, const d_Date& d) { return Overlap(a, b, c, d); }
int overlaps(const d_Time& a, const d_Time& b, const d_Time& c, const d_Time& d) { return Overlap(a, b, c, d); }
int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Timestamp& c, const d_Timestamp& d) {
    return Overlap(a, b, c, d);
}

int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Date& c, const d_Date& d) {
    return Overlap(a.date, b.date, c, d);
}
int overlaps(const d_Date& a, const d_Date& b, const d_Timestamp& c, const d_Timestamp& d) {
    return Overlap(a, b, c.date, d.date);
}
int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Time& c, const d_Time& d) {
    return Overlap(a.time, b.time, c, d);
}
int overlaps(const d_Time& a, const d_Time& b, const d_Timestamp& c, const d_Timestamp& d) {
    return Overlap(a, b, c.time, d.time);
}
