// What the estimates of all types share: the area that a predicate covers, and the recording of keys.
#ifndef VQ_KEYBOUNDS_H
#define VQ_KEYBOUNDS_H

#include "vqtypevl.h"

namespace vq {

struct Interval {
    double low, high;
};

// How much of the index's interval a predicate on a key selects, in steps of `step`; can exceed the interval by a step.
// Never negative, and never more than the largest finite number.
double RangeArea(unsigned short operators, Interval key, Interval index, double step);

// The part of the index's interval that a predicate on a key selects; 0 for an interval whose high end is below its low
// one.
double SelectedPart(unsigned short operators, Interval key, Interval index);

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
