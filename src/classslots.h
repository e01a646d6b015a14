// Slots of a value class that prints and scans itself.
#ifndef CLASSSLOTS_H
#define CLASSSLOTS_H

#include "textform.h"
#include "textunit.h"
#include "valueslots.h"

namespace vq {

// Whether a class reads formats. Where they mean nothing, the commas in one do not either.
enum class Formats { Read, Ignored };

// T has PrintToVqString and ScanFromVqString, and may have a null of its own. Exchange makes the exchange text of a
// value: ToText(value, text) appends it, FromText(value, text) reads it back.
template <class T, class Exchange, Formats formats = Formats::Read>
struct ClassSlots : ValueSlots<T> {
    static constexpr bool HasNull = requires(T value) { value.SetNullValue(); };

    // --- Null

    static int IsNull(void* value) requires HasNull {
        return LookAt(value, 0, [](const T& element) { return element.IsNullValue() ? 1 : 0; });
    }
    static int SetNull(void* value) requires HasNull {
        Change(value, 0, [](T& element) { element.SetNullValue(); });
        return VqStatus_Ok;
    }

    // --- Exchange form and default values

    static VqTypeConvertData* ConvertTo(void* values, unsigned long count) {
        if (values == nullptr && count != 0) return nullptr;
        return MakeTexts(count, [values](unsigned long i, VqString& text) {
            LookAt(values, i, [&](const T& value) { SetText(value, text); });
        });
    }
    static void* ConvertFrom(VqTypeConvertData* data, unsigned long count) {
        return ReadTexts<T>(data, count, [](T& value, const VqString* text) {
            if (text != nullptr) return Exchange::FromText(value, *text);
            if constexpr (HasNull) {
                value.SetNullValue();
            } else {
                Exchange::FromText(value, VqString());
            }
        });
    }
    static void* DefaultValue(unsigned long count, int asNull) {
        if constexpr (HasNull) {
            return DefaultOrNull<T, ConvertFrom>(count, asNull);
        } else {
            return vq::DefaultValue<ConvertFrom>(count, asNull);
        }
    }

    // --- Text

    static VqString& Print(VqString& out, void* values, const char* format, unsigned long count) {
        if (values == nullptr) return out;
        if (count == 1) {
            PrintElement(out, values, 0, format);
            return out;
        }
        PrintElements(out, count, [&](unsigned long i) {
            VqString element(out.GetCodeSet(), out.GetLanguage());
            PrintElement(element, values, i, format);
            out += element;
        });
        return out;
    }
    static void* Scan(void* values, VqString& text, const char* format, unsigned long count) {
        if (values == nullptr) return values;
        if constexpr (formats == Formats::Ignored) format = "";
        if (count == 1) {
            ScanElement(values, 0, text, format);
            return values;
        }
        ScanElements(text, count, [&](const char* at, unsigned long i, bool& found) {
            const char* const end = EndOfElement(at, format);
            ScanElement(values, i, SingleByteElement(text, at, end), format);
            found = true;
            return end;
        });
        return values;
    }

  private:
    // Plain values may lie at any address.
    template <class Look>
    static auto LookAt(const void* values, unsigned long index, Look look) {
        if constexpr (IsPlain<T>) {
            return look(LoadValue<T>(values, index));
        } else {
            return look(static_cast<const T*>(values)[index]);
        }
    }
    template <class Edit>
    static void Change(void* values, unsigned long index, Edit edit) {
        if constexpr (IsPlain<T>) {
            T value = LoadValue<T>(values, index);
            edit(value);
            StoreValue(values, index, value);
        } else {
            edit(static_cast<T*>(values)[index]);
        }
    }

    static void SetText(const T& value, VqString& text) {
        if constexpr (HasNull) {
            if (value.IsNullValue()) {
                text.SetNullValue();
                return;
            }
        }
        Exchange::ToText(value, text);
    }

    static void PrintElement(VqString& out, const void* values, unsigned long index, const char* format) {
        LookAt(values, index, [&](const T& value) { value.PrintToVqString(out, format); });
    }
    static void ScanElement(void* values, unsigned long index, const VqString& text, const char* format) {
        Change(values, index, [&](T& value) { value.ScanFromVqString(text, format); });
    }

    // The characters from `at` to `end` of the text's 1-byte form.
    static VqString SingleByteElement(const VqString& text, const char* at, const char* end) {
        const unsigned char own = text.GetCodeSet();
        const unsigned char codeSet = CharSizeOf(own) == 1 ? own : VqString::GetDefault8CodeSet();
        VqString element(codeSet, VqString::GetDefaultLanguage());
        element.AssignChars(at, codeSet, static_cast<unsigned short>(end - at));
        return element;
    }
};

}  // namespace vq

#endif
