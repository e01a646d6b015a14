// The boolean row's functions besides disk form.
#ifndef BOOLEANSLOTS_H
#define BOOLEANSLOTS_H

#include "boolean.h"
#include "classslots.h"
#include "vqchar.h"

namespace vq {

struct BooleanExchange {
    static void ToText(const VqBoolean& value, VqString& text) { text << (value.value == 1 ? '1' : '0'); }
    static void FromText(VqBoolean& value, const VqString& text) { value = text[0].GetCode() == '1'; }
};

using BooleanSlots = ClassSlots<VqBoolean, BooleanExchange, Formats::Ignored>;

}  // namespace vq

#endif
