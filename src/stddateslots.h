// Functions of the standard types' rows besides disk form. Their texts without a format lose nothing, and are what they
// exchange.
#ifndef STDDATESLOTS_H
#define STDDATESLOTS_H

#include "classslots.h"
#include "stddate.h"

namespace vq {

template <class T>
struct StdDateExchange {
    static void ToText(const T& value, VqString& text) { value.PrintToVqString(text, nullptr); }
    static void FromText(T& value, const VqString& text) { value.ScanFromVqString(text, nullptr); }
};

template <class T>
using StdDateSlots = ClassSlots<T, StdDateExchange<T>>;

}  // namespace vq

#endif
