// Plain numbers and characters: the slots that the base library does not have.
#ifndef SCALAR_H
#define SCALAR_H

#include "valueslots.h"

namespace vq {

// T is the value in memory, Text the type as which it becomes a text and is read from one. Rows of unsigned types share
// the slots of the signed type of their width: the bits are the same.
template <class T, class Text>
struct ScalarSlots : ValueSlots<T> {
    static VqTypeConvertData* ConvertTo(void* values, unsigned long count) {
        if (values == nullptr && count != 0) return nullptr;
        return MakeTexts(count, [values](unsigned long i, VqString& text) {
            text += VqString(static_cast<Text>(LoadValue<T>(values, i)));
        });
    }

    static void* ConvertFrom(VqTypeConvertData* data, unsigned long count) {
        return ReadTexts<T>(data, count, [](T& value, const VqString* text) {
            if (text != nullptr) value = static_cast<T>(static_cast<Text>(*text));
        });
    }

    static void* DefaultValue(unsigned long count, int asNull) { return vq::DefaultValue<ConvertFrom>(count, asNull); }
};

}  // namespace vq

#endif
