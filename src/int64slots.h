// The 64-bit integer row's functions besides disk form.
#ifndef INT64SLOTS_H
#define INT64SLOTS_H

#include "classslots.h"
#include "vqint64.h"

namespace vq {

struct Int64Exchange {
    static void ToText(const VqInt64& value, VqString& text) { value.PrintToVqString(text); }
    static void FromText(VqInt64& value, const VqString& text) { value.ScanFromVqString(text); }
};

using Int64Slots = ClassSlots<VqInt64, Int64Exchange>;

}  // namespace vq

#endif
