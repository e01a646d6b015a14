#include "vqnull.h"

#include <concepts>
#include <cstring>
#include <type_traits>

#include "_vqnulty.h"
#include "textform.h"
#include "valueslots.h"
#include "vqbase.h"
#include "vqstring.h"

namespace {

// --- The plain type behind each value: disk form, text form, exchange text

// The scalar as which a value is stored, prints, scans and converts; unsigned types share the functions of signed ones.
template <class T>
struct PlainOf {
    using Type = T;
};
template <std::integral T>
struct PlainOf<T> {
    using Type = std::make_signed_t<T>;
};
template <class T>
using Plain = typename PlainOf<T>::Type;

template <class T>
struct DiskForm;

#define VQ_DISK_FORM(T, Name, StoreFunction, LoadFunction)                                                          \
    template <>                                                                                                     \
    struct DiskForm<T> {                                                                                            \
        static void Store(void* dst, const void* src, unsigned char format) { StoreFunction(dst, src, format, 1); } \
        static void Load(void* dst, const void* src, unsigned char format) { LoadFunction(dst, src, format, 1); }   \
        static unsigned long SizeGet(unsigned char format, unsigned long count) {                                   \
            return Name##SizeGet(nullptr, VqFormat_Memory, format, count);                                          \
        }                                                                                                           \
        static unsigned long NullSizeGet(unsigned long count) { return Name##NullSizeGet(count); }                  \
        static unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {         \
            return Name##SizeGetFromMemFile(file, format, count);                                                   \
        }                                                                                                           \
    };

VQ_DISK_FORM(signed char, Char, CharStore, CharStore)
VQ_DISK_FORM(std::int16_t, Short, ShortStore, ShortStore)
VQ_DISK_FORM(std::int32_t, Int, IntStore, IntLoad)
VQ_DISK_FORM(float, Float, FloatStore, FloatStore)
VQ_DISK_FORM(double, Double, DoubleStore, DoubleStore)
VQ_DISK_FORM(VqInt64, Int64, Int64Store, Int64Load)

#undef VQ_DISK_FORM

template <class Null>
using FormOf = DiskForm<Plain<typename Null::ValueType>>;

template <class T>
void PrintValue(VqString& out, T value, const char* format) {
    vq::PrintScalar(out, static_cast<Plain<T>>(value), format);
}
void PrintValue(VqString& out, const VqInt64& value, const char* format) { value.PrintToVqString(out, format); }

template <class T>
const char* ScanValue(const char* text, const char* format, bool, T& value, bool& found) {
    auto plain = static_cast<Plain<T>>(value);
    text = vq::ScanScalar(text, format, plain, found);
    value = static_cast<T>(plain);
    return text;
}
// A 64-bit integer reads its whole text, which in an array ends at the comma between elements.
const char* ScanValue(const char* text, const char* format, bool alone, VqInt64& value, bool& found) {
    const char* const end = alone ? text + std::strlen(text) : vq::EndOfElement(text, format);
    value.ScanFromVqString(VqString(text, static_cast<unsigned short>(end - text)), format);
    found = end != text;
    return end;
}

// Exchange texts are those of the plain rows: numbers of the signed type.
void ToExchange(VqString& text, signed char value) { text << static_cast<short>(value); }
void ToExchange(VqString& text, std::int16_t value) { text << value; }
void ToExchange(VqString& text, std::int32_t value) { text << static_cast<int>(value); }
void ToExchange(VqString& text, float value) { text << static_cast<double>(value); }
void ToExchange(VqString& text, double value) { text << value; }
void ToExchange(VqString& text, const VqInt64& value) { value.PrintToVqString(text); }

void FromExchange(const VqString& text, signed char& value) {
    value = static_cast<signed char>(static_cast<short>(text));
}
void FromExchange(const VqString& text, std::int16_t& value) { value = static_cast<short>(text); }
void FromExchange(const VqString& text, std::int32_t& value) { value = static_cast<int>(text); }
void FromExchange(const VqString& text, float& value) { value = static_cast<float>(static_cast<double>(text)); }
void FromExchange(const VqString& text, double& value) { value = static_cast<double>(text); }
void FromExchange(const VqString& text, VqInt64& value) { value.ScanFromVqString(text, nullptr); }

// The element that starts at `at` on disk, in the order in which `format` has its parts.
template <class Null>
struct Parts {
    static constexpr unsigned long ValueSize = sizeof(typename Null::ValueType);
    static constexpr unsigned long Size = ValueSize + 1;

    static unsigned long ValueAt(unsigned char format) { return format & VqFormat_Memory ? 0 : 1; }
    static unsigned long IndicatorAt(unsigned char format) { return format & VqFormat_Memory ? ValueSize : 0; }
};

}  // namespace

// --- Life

template <class Null>
void* VqNullSlots<Null>::Create(unsigned long count) {
    return vq::ValueSlots<Null>::Create(count);
}

template <class Null>
unsigned long VqNullSlots<Null>::Delete(void* values, unsigned long count) {
    return vq::ValueSlots<Null>::Delete(values, count);
}

template <class Null>
void VqNullSlots<Null>::Constructor(void* values, unsigned long count) {
    vq::ValueSlots<Null>::Constructor(values, count);
}

template <class Null>
void VqNullSlots<Null>::Destructor(void* values, unsigned long count) {
    vq::ValueSlots<Null>::Destructor(values, count);
}

template <class Null>
void VqNullSlots<Null>::Assignment(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
    vq::ValueSlots<Null>::Assignment(dst, src, count, broadcast);
}

template <class Null>
void VqNullSlots<Null>::Copy(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
    vq::ValueSlots<Null>::Copy(dst, src, count, broadcast);
}

template <class Null>
void* VqNullSlots<Null>::DefaultValue(unsigned long count, int) {
    return Create(count);
}

// --- Disk

template <class Null>
unsigned long VqNullSlots<Null>::Store(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (src == nullptr) return 0;
    unsigned char* out = static_cast<unsigned char*>(dst);
    for (unsigned long i = 0; i < count; ++i, out += Parts<Null>::Size) {
        const Null element = vq::LoadValue<Null>(src, i);
        const auto value = element.value;
        FormOf<Null>::Store(out + Parts<Null>::ValueAt(format), &value, format & VqFormat_OrderMask);
        out[Parts<Null>::IndicatorAt(format)] = element.IsNullValue();
    }
    return count * Parts<Null>::Size;
}

template <class Null>
unsigned long VqNullSlots<Null>::Load(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (dst == nullptr) return 0;
    const unsigned char* in = static_cast<const unsigned char*>(src);
    for (unsigned long i = 0; i < count; ++i, in += Parts<Null>::Size) {
        typename Null::ValueType value;
        FormOf<Null>::Load(&value, in + Parts<Null>::ValueAt(format), format & VqFormat_OrderMask);
        vq::StoreValue(dst, i, in[Parts<Null>::IndicatorAt(format)] == 1 ? Null() : Null(value));
    }
    return count * Parts<Null>::Size;
}

template <class Null>
unsigned long VqNullSlots<Null>::NullSizeGet(unsigned long count) {
    return FormOf<Null>::NullSizeGet(count) + count;
}

template <class Null>
unsigned long VqNullSlots<Null>::SizeGet(const void*, unsigned char, unsigned char format, unsigned long count) {
    return FormOf<Null>::SizeGet(format, count) + count;
}

template <class Null>
unsigned long VqNullSlots<Null>::SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return FormOf<Null>::SizeGetFromMemFile(file, format, count) + count;
}

template <class Null>
unsigned long VqNullSlots<Null>::Translate(void* dst, unsigned char dstFormat, unsigned long dstLen, const void* src,
                                           unsigned char srcFormat, unsigned long srcLen, unsigned long count) {
    return vq::Translate<Null, Store, Load>(dst, dstFormat, dstLen, src, srcFormat, srcLen, count);
}

// --- Text

template <class Null>
VqString& VqNullSlots<Null>::Print(VqString& out, void* values, const char* format, unsigned long count) {
    if (values == nullptr) return out;
    vq::PrintElements(out, count, [&](unsigned long i) {
        const Null element = vq::LoadValue<Null>(values, i);
        if (element.IsNullValue()) {
            out += VqNullPrintString();
        } else {
            PrintValue(out, element.value, format);
        }
    });
    return out;
}

template <class Null>
void* VqNullSlots<Null>::Scan(void* values, VqString& text, const char* format, unsigned long count) {
    if (values == nullptr) return values;
    vq::ScanElements(text, count, [&](const char* at, unsigned long i, bool& found) {
        if (const char* const rest = vq::SkipNullPrintString(at)) {
            vq::StoreValue(values, i, Null());
            found = true;
            return rest;
        }
        auto value = vq::LoadValue<Null>(values, i).value;
        at = ScanValue(at, format, count == 1, value, found);
        if (found) vq::StoreValue(values, i, Null(value));
        return at;
    });
    return values;
}

// --- Null

template <class Null>
int VqNullSlots<Null>::IsNull(void* value) {
    return value != nullptr ? vq::LoadValue<Null>(value, 0).isNull : 0;
}

template <class Null>
int VqNullSlots<Null>::SetNull(void* value) {
    if (value != nullptr) vq::StoreValue(value, 0, Null());
    return VqStatus_Ok;
}

// --- Conversion

template <class Null>
VqTypeConvertData* VqNullSlots<Null>::ConvertTo(void* values, unsigned long count) {
    if (values == nullptr && count != 0) return nullptr;
    return vq::MakeTexts(count, [values](unsigned long i, VqString& text) {
        const Null element = vq::LoadValue<Null>(values, i);
        if (element.IsNullValue()) {
            text.SetNullValue();
        } else {
            ToExchange(text, static_cast<Plain<typename Null::ValueType>>(element.value));
        }
    });
}

template <class Null>
void* VqNullSlots<Null>::ConvertFrom(VqTypeConvertData* data, unsigned long count) {
    return vq::ReadTexts<Null>(data, count, [](Null& element, const VqString* text) {
        if (text == nullptr) return;
        Plain<typename Null::ValueType> value{};
        FromExchange(*text, value);
        element = static_cast<typename Null::ValueType>(value);
    });
}

template struct VQTM_API VqNullSlots<VqNull_char>;
template struct VQTM_API VqNullSlots<VqNull_uchar>;
template struct VQTM_API VqNullSlots<VqNull_short>;
template struct VQTM_API VqNullSlots<VqNull_ushort>;
template struct VQTM_API VqNullSlots<VqNull_int>;
template struct VQTM_API VqNullSlots<VqNull_unsigned>;
template struct VQTM_API VqNullSlots<VqNull_long>;
template struct VQTM_API VqNullSlots<VqNull_ulong>;
template struct VQTM_API VqNullSlots<VqNull_float>;
template struct VQTM_API VqNullSlots<VqNull_double>;
template struct VQTM_API VqNullSlots<VqNull_VqInt64>;
