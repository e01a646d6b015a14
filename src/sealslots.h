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

struct SealSlots : ClassSlots<VqSeal, SealExchange> {
    // A format means nothing, and so do the commas in it.
    static void* Scan(void* values, VqString& text, const char*, unsigned long count) {
        return ClassSlots::Scan(values, text, "", count);
    }
};

}  // namespace vq

#endif
