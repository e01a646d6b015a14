#include "vqtypevl.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "keybounds.h"
#include "vqbase.h"

namespace vq {
namespace {

// What a part adds to the area: nothing where it is negative, and never more than there are numbers for.
double Part(double part) {
    if (!std::isfinite(part)) return std::numeric_limits<double>::max();
    return part < 0 ? 0 : part;
}

}  // namespace

double RangeArea(unsigned short operators, Interval key, Interval index, double step) {
    double area = 0;
    if (operators & VqOperator_Greater) {
        area += Part(index.high - (index.low <= key.high ? key.high : index.low - step));
    }
    if (operators & VqOperator_Less) area += Part((index.high < key.low ? index.high + step : key.low) - index.low);
    if (operators & VqOperator_Equal) {
        area +=
            Part((key.high <= index.high ? key.high : index.high) - (key.low < index.low ? index.low : key.low) + step);
    }
    return area;
}

void* CopyKey(const void* key, unsigned long length, std::uint32_t& keyLength) {
    void* copy;
    do {
        copy = std::malloc(length != 0 ? length : 1);
    } while (copy == nullptr && VqCallMemoryHandler(length) != 0);
    if (copy != nullptr && length != 0) std::memcpy(copy, key, length);
    keyLength = copy != nullptr ? static_cast<std::uint32_t>(length) : 0;
    return copy;
}

void RecordKey(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long length) {
    if (scanBounds == nullptr) return;
    if (scanBounds->lowKey == nullptr && !(operators & VqOperator_Less)) {
        scanBounds->lowKey = CopyKey(key, length, scanBounds->lowKeyLength);
    }
    if (scanBounds->highKey == nullptr && !(operators & VqOperator_Greater)) {
        scanBounds->highKey = CopyKey(key, length, scanBounds->highKeyLength);
    }
}

}  // namespace vq

void VqFreeBounds(VqIdxBounds& bounds) {
    std::free(bounds.lowKey);
    std::free(bounds.highKey);
    bounds = {};
}
