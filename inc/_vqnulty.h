/// \file
/// Nullity: how values that may be null are ordered, and the text that stands for null.
///
/// Null sorts before every value, and two nulls are equal. This is written here, in front of every value comparison:
///
///     const VqNullity nullity = VqNullityClass(a.IsNullValue(), b.IsNullValue());
///     return nullity == VqNullity_None ? Order(a, b) : VqNullityCompare(nullity);
#ifndef VQNULTY_H
#define VQNULTY_H

#include "vqdefs.h"

class VqString;

/// Which of two values are null.
enum VqNullity : int {
    VqNullity_None = 0,    ///< neither: the values have to be compared
    VqNullity_First = 1,   ///< the first alone
    VqNullity_Second = 2,  ///< the second alone
    VqNullity_Both = 3,    ///< both: they are equal
};

/// The class of a pair of values.
constexpr VqNullity VqNullityClass(bool firstIsNull, bool secondIsNull) {
    return static_cast<VqNullity>((firstIsNull ? VqNullity_First : 0) | (secondIsNull ? VqNullity_Second : 0));
}

/// Reports that a class was asked for an order that it does not have. Returns 0.
VQTM_API int VqNullityUnknown();

/// The order that nullity alone decides: -1 where only the first is null, 1 where only the second is, 0 where both are.
/// VqNullity_None is a programming error: it is reported, and gives 0.
inline int VqNullityCompare(int nullity) {
    return nullity == VqNullity_None ? VqNullityUnknown() : (nullity >> 1) - (nullity & 1);
}

/// The text that stands for a null value in print and scan, "{NULL}" at start. One for the process, read and written
/// without a lock.
VQTM_API VqString& VqNullPrintString();

#endif
