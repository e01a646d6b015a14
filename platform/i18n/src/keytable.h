// Tables of ready keys, made when the library is compiled.
//
// The sign bit marks what takes a closer look. Below it is the key of a character that can begin a contraction, or, in
// a table of a 1-byte set, the number of the two orders of a character that sorts as two; keys are never that low.
#ifndef VQ_KEYTABLE_H
#define VQ_KEYTABLE_H

#include <array>
#include <limits>
#include <utility>

#include "contraction.h"
#include "unicodeorders.h"
#include "vqcollation.h"

namespace vq {

constexpr std::int32_t CloserLook = std::numeric_limits<std::int32_t>::min();

// The key of a unit with a single order.
constexpr std::int32_t ReadyKey(unsigned short unit, unsigned short order, std::size_t place) {
    const std::int32_t key = VqCollationKey(order, collationClasses[place]);
    return BeginsContraction(wideOrders[place], unit) ? key | CloserLook : key;
}

}  // namespace vq

#endif
