// What the estimates of all types share: the area that a predicate covers, and the recording of keys.
#ifndef VQ_KEYBOUNDS_H
#define VQ_KEYBOUNDS_H

#include "vqtypevl.h"

namespace vq {

struct Interval {
    double low, high;
};

// How much of the index's interval a predicate on a key selects, in steps of `step`; can exceed the interval by a step.
double RangeArea(unsigned short operators, Interval key, Interval index, double step);

// Copies of `length` bytes become the ends of the range that are open and that the operators limit.
void RecordKey(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long length);

// A copy of `length` bytes from the C heap, its length written to `keyLength`; null when memory runs out.
void* CopyKey(const void* key, unsigned long length, std::uint32_t& keyLength);

}  // namespace vq

#endif
