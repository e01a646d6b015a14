// The string row's functions besides disk form, comparison, print and scan.
#ifndef STRINGSLOTS_H
#define STRINGSLOTS_H

#include "valueslots.h"

namespace vq {

struct StringSlots : ValueSlots<VqString> {
    static int IsNull(void* value) { return static_cast<const VqString*>(value)->IsNullValue() ? 1 : 0; }
    static int SetNull(void* value) { return static_cast<VqString*>(value)->SetNullValue(); }

    // Copies keep code set, language and null.
    static VqTypeConvertData* ConvertTo(void* values, unsigned long count) {
        if (values == nullptr && count != 0) return nullptr;
        return MakeTexts(count,
                         [values](unsigned long i, VqString& text) { text = static_cast<const VqString*>(values)[i]; });
    }
    static void* ConvertFrom(VqTypeConvertData* data, unsigned long count) {
        return ReadTexts<VqString>(data, count, [](VqString& value, const VqString* text) {
            if (text != nullptr) {
                value = *text;
            } else {
                value.SetNullValue();
            }
        });
    }
    static void* DefaultValue(unsigned long count, int asNull) {
        return DefaultOrNull<VqString, ConvertFrom>(count, asNull);
    }
};

}  // namespace vq

#endif
