// The functions of the 8-bit strings' rows besides disk form, comparison and hashing.
#ifndef VQ_ISTRINGSLOTS_H
#define VQ_ISTRINGSLOTS_H

#include "textform.h"
#include "textscan.h"
#include "valueslots.h"
#include "vqistring.h"

namespace vq {

// Outside, the bytes of such a text are characters of the native code set.
template <class Value>
struct IStringSlots : ValueSlots<Value> {
    static VqTypeConvertData* ConvertTo(void* values, unsigned long count) {
        if (values == nullptr && count != 0) return nullptr;
        return MakeTexts(count, [values](unsigned long i, VqString& text) {
            text.SetCodeSet(VqLanguageContext::GetNativeCodeSet());
            text += NativeText(values, i);
        });
    }
    static void* ConvertFrom(VqTypeConvertData* data, unsigned long count) {
        return ReadTexts<Value>(data, count, [](Value& value, const VqString* text) {
            if (text == nullptr) return;
            if (CharSizeOf(text->GetCodeSet()) == 1) {
                value = text->StrGet();
            } else {
                value = InNativeSet(*text).StrGet();
            }
        });
    }
    static void* DefaultValue(unsigned long count, int asNull) { return vq::DefaultValue<ConvertFrom>(count, asNull); }

    // As the string row's, but that no text means null.
    static VqString& Print(VqString& out, void* values, const char* format, unsigned long count) {
        if (values == nullptr) return out;
        PrintElements(out, count, [&](unsigned long i) {
            VqString text = NativeText(values, i);
            StringPrint(out, &text, format, 1);
        });
        return out;
    }
    static void* Scan(void* values, VqString& text, const char* format, unsigned long count) {
        if (values == nullptr) return values;
        const VqString source = InNativeSet(text);
        ScanTexts(source, format, count, [values](unsigned long i, const char* from, const char* to) {
            Value& value = static_cast<Value*>(values)[i];
            const unsigned char flags = value.GetFlags();
            value.SetText(from, static_cast<unsigned short>(to - from));
            value.SetFlags(flags);
        });
        return values;
    }

  private:
    static VqString NativeText(const void* values, unsigned long i) {
        VqString text(0, VqString::GetDefaultLanguage());
        text.AssignChars(static_cast<const Value*>(values)[i].StrGet(), 0, VqString::All);
        return text;
    }
    static VqString InNativeSet(const VqString& text) {
        VqString native;
        native.CopyMapped(text, VqLanguageContext::GetNativeCodeSet());
        return native;
    }
};

}  // namespace vq

#endif
