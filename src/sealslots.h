// The seal row's functions besides disk form.
#ifndef SEALSLOTS_H
#define SEALSLOTS_H

#include "classslots.h"
#include "seal.h"

namespace vq {

struct SealExchange {
    static void ToText(const VqSeal& value, VqString& text) { value.PrintToVqString(text); }
    static void FromText(VqSeal& value, const VqString& text) { value.ScanFromVqString(text); }
};

using SealSlots = ClassSlots<VqSeal, SealExchange, Formats::Ignored>;

}  // namespace vq

#endif
