// What the estimates of all types share: the area that a predicate covers, and the recording of keys.
#ifndef VQ_KEYBOUNDS_H
#define VQ_KEYBOUNDS_H

#include <algorithm>
#include <cmath>
#include <limits>

#include "vqtypevl.h"

namespace vq {

// The source that assertions name.
constexpr const char* BoundsSource = "src\\vqtypevl";

struct Interval {
    double low, high;
};

constexpr double MostArea = std::numeric_limits<double>::max();

// What a part adds to the area: nothing where it is negative, and never more than there are numbers for. Only lines of
// floating values have places that are so far apart.
template <bool IsFloating>
double AreaPart(double part) {
    if (IsFloating && !std::isfinite(part)) return MostArea;
    return part > 0 ? part : 0;
}

// How much of the index's interval a predicate on a key selects, in steps of `step`; can exceed the interval by a step.
// Never negative, and never more than the largest finite number.
template <bool IsFloating = false>
[[gnu::always_inline]] inline double RangeArea(unsigned short operators, Interval key, Interval index, double step) {
    double area = 0;
    if (operators & VqOperator_Greater) {
        area += AreaPart<IsFloating>(index.high - (index.low <= key.high ? key.high : index.low - step));
    }
    if (operators & VqOperator_Less) {
        area += AreaPart<IsFloating>((index.high < key.low ? index.high + step : key.low) - index.low);
    }
    if (operators & VqOperator_Equal) {
        area += AreaPart<IsFloating>(std::min(index.high, key.high) - std::max(key.low, index.low) + step);
    }
    return IsFloating ? std::min(area, MostArea) : area;
}

// Copies of `length` bytes become the ends of the range that are open and that the operators limit.
void RecordKey(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long length);

// A copy of `length` bytes from the C heap, its length written to `keyLength`; null when memory runs out.
void* CopyKey(const void* key, unsigned long length, std::uint32_t& keyLength);

}  // namespace vq

// Defines a function of the family from the call that does its work.
#define VQ_BOUNDS_FUNCTION(Name, Call)                                                                      \
    double Name(VqIdxBounds* indexBounds, unsigned short& operators, const void* key, unsigned char format, \
                unsigned long count, VqIdxBounds* scanBounds) {                                             \
        return Call;                                                                                        \
    }

#endif
