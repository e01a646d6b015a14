/// \file
/// Sorting typed values by the manager's comparison of their keys on disk, as an index orders them.
#ifndef VQTYPE_VALUEORDER_H
#define VQTYPE_VALUEORDER_H

#include <cstdint>
#include <vector>

#include "values.h"

struct OrderRule {
    bool reverse = false;   ///< last first, nulls behind; equal values keep their sequence
    bool unique = false;    ///< of equal values only the first
    bool nullLast = false;  ///< nulls behind all values
};

/// The indices of the values in order; the sort is stable. A value that is not equal to itself (not a number) stands
/// behind all that are.
std::vector<std::uint32_t> SortedOrder(const ValueArray& values, const OrderRule& rule);

#endif
