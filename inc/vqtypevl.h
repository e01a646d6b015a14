/// \file
/// Index key bounds and selectivity: what a query asks before it scans an index.
///
/// For a predicate on an indexed value, an operator and a key, a function tells the part of the index's keys that the
/// predicate selects, and records the key as an end of the range to be scanned.
///
///     indexBounds   the smallest and the largest key of the index, in `format`; null without statistics
///     operators     VqOperator bits; VqOperator_Wildcard is set for a key that holds a wildcard
///     key           `count` values in disk form
///     format        byte order of all keys
///     count         values of a key; the first one is estimated
///     scanBounds    range to be scanned, which the function narrows; null when no range is wanted
///
/// The estimate is a number from 0, nothing, to 1, the whole index.
///
/// An end of the range that is null takes a copy of the key: the low key unless the predicate asks for less, the high
/// key unless it asks for greater. Ends that are set stay. The copies come from the C heap (malloc) and belong to the
/// caller, who frees them with VqFreeBounds.
#ifndef VQTYPEVL_H
#define VQTYPEVL_H

#include <cstdint>

#include "vqdefs.h"

/// A range of keys in disk form, both ends included.
struct VqIdxBounds {
    void* lowKey = nullptr;   ///< null: from the first key on
    void* highKey = nullptr;  ///< null: to the last key
    std::uint32_t lowKeyLength = 0;
    std::uint32_t highKeyLength = 0;
};

/// What a predicate asks of a value, compared with the key: "less or equal" is both bits. The other bits of a set are
/// the caller's.
enum VqOperator : unsigned short {
    VqOperator_Equal = 1,
    VqOperator_Less = 2,
    VqOperator_Greater = 4,
    VqOperator_Wildcard = 8,
};

/// The most bytes of a string key in an index; longer ones are clipped.
constexpr unsigned long VqINDEX_MAX_KEYLEN = 254;

/// Frees both keys of bounds that were filled here and makes them empty.
VQTM_API void VqFreeBounds(VqIdxBounds& bounds);

#endif
