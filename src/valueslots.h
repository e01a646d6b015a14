// Slot functions that value classes share, written once: life of values, translation, exchange form, default values.
#ifndef VALUESLOTS_H
#define VALUESLOTS_H

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

#include "convert.h"
#include "memoryhandler.h"
#include "vqdefs.h"
#include "vqslots.h"
#include "vqstring.h"

namespace vq {

// --- Life of values

// A new array of constructed values; null when neither the heap nor the memory handler has room for it.
template <class T>
T* NewValues(unsigned long count) {
    constexpr std::size_t Most = PTRDIFF_MAX / sizeof(T) - sizeof(std::max_align_t);
    const unsigned long size = count <= Most ? static_cast<unsigned long>(count * sizeof(T)) : ULONG_MAX;
    do {
        if (T* const values = count <= Most ? new (std::nothrow) T[count]() : nullptr) return values;
    } while (VqCallMemoryHandler(size) != 0);
    return nullptr;
}

// Plain values are moved as bytes: the arrays need no alignment and may overlap.
template <class T>
struct ValueSlots {
    static constexpr bool IsPlain = std::is_trivially_copyable_v<T>;

    static void* Create(unsigned long count) { return NewValues<T>(count); }

    static unsigned long Delete(void* values, unsigned long) {
        delete[] static_cast<T*>(values);
        return 0;
    }

    static void Constructor(void* values, unsigned long count) {
        if (values == nullptr) return;
        if constexpr (IsPlain) {
            Fill(values, T(), count);
        } else {
            std::uninitialized_value_construct_n(static_cast<T*>(values), count);
        }
    }

    static void Destructor(void* values, unsigned long count) {
        if (values != nullptr) std::destroy_n(static_cast<T*>(values), count);
    }

    static void Assignment(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (dst == nullptr || src == nullptr) return;
        if constexpr (IsPlain) {
            CopyBytes(dst, src, count, broadcast);
        } else {
            const T* const from = static_cast<const T*>(src);
            for (unsigned long i = 0; i < count; ++i) static_cast<T*>(dst)[i] = from[broadcast != 0 ? 0 : i];
        }
    }

    static void Copy(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (dst == nullptr || src == nullptr) return;
        if constexpr (IsPlain) {
            CopyBytes(dst, src, count, broadcast);
        } else {
            const T* const from = static_cast<const T*>(src);
            for (unsigned long i = 0; i < count; ++i) new (static_cast<T*>(dst) + i) T(from[broadcast != 0 ? 0 : i]);
        }
    }

  private:
    static void Fill(void* dst, const T& value, unsigned long count) {
        char* const to = static_cast<char*>(dst);
        for (unsigned long i = 0; i < count; ++i) std::memcpy(to + i * sizeof(T), &value, sizeof(T));
    }

    static void CopyBytes(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (count == 0) return;
        if (broadcast == 0) {
            std::memmove(dst, src, count * sizeof(T));
            return;
        }
        T value;
        std::memcpy(&value, src, sizeof(T));
        Fill(dst, value, count);
    }
};

// --- Disk form

// Between two disk forms the bytes stay as they are, whatever the byte orders.
inline unsigned long TranslateStored(void* dst, unsigned long dstLength, const void* src, unsigned long srcLength) {
    const unsigned long length = std::min(dstLength, srcLength);
    if (length != 0) std::memmove(dst, src, length);
    if (dstLength > length) std::memset(static_cast<char*>(dst) + length, 0, dstLength - length);
    return dstLength;
}

template <class T, VqStoreFunc Store, VqLoadFunc Load>
unsigned long Translate(void* dst, unsigned char dstFormat, unsigned long dstLength, const void* src,
                        unsigned char srcFormat, unsigned long srcLength, unsigned long count) {
    const bool fromMemory = (srcFormat & VqFormat_Memory) != 0;
    if ((dstFormat & VqFormat_Memory) == 0) {
        return fromMemory ? Store(dst, src, dstFormat, count) : TranslateStored(dst, dstLength, src, srcLength);
    }
    if (fromMemory) {
        ValueSlots<T>::Assignment(dst, src, count, 0);
    } else {
        Load(dst, src, srcFormat, count);
    }
    return count * static_cast<unsigned long>(sizeof(T));
}

// --- Exchange form

// A record of `count` strings, each made by `setText(index, string)` from an empty one.
template <class SetText>
VqTypeConvertData* MakeTexts(unsigned long count, SetText setText) {
    std::unique_ptr<VqString[]> texts(NewValues<VqString>(count));
    if (texts == nullptr) return nullptr;
    for (unsigned long i = 0; i < count; ++i) setText(i, texts[i]);
    VqTypeConvertData* const record = VqTypeConvertData::Make(VqTypeId_VqString, count, texts.get(), nullptr);
    if (record != nullptr) texts.release();
    return record;
}

// A new array of `count` values, each read by `read(value, text)`, where the text is null for a missing or null string.
template <class T, class Read>
void* ReadTexts(const VqTypeConvertData* data, unsigned long count, Read read) {
    std::unique_ptr<T[]> values(NewValues<T>(count));
    for (unsigned long i = 0; values != nullptr && i < count; ++i) {
        const VqString* const text = data != nullptr && i <= static_cast<unsigned long>(INT_MAX)
                                         ? data->GetString(static_cast<int>(i))
                                         : nullptr;
        read(values[i], text != nullptr && text->IsNullValue() ? nullptr : text);
    }
    return values.release();
}

// --- Default values

// What empty texts convert to.
template <VqConvertFromFunc ConvertFrom>
void* DefaultValue(unsigned long count, int) {
    VqTypeConvertData* const record = MakeTexts(count, [](unsigned long, VqString&) {});
    if (record == nullptr) return nullptr;
    void* const values = ConvertFrom(record, count);
    delete[] static_cast<VqString*>(record->data);
    record->data = nullptr;
    delete record;
    return values;
}

// The same for a class T with a null of its own, which `asNull` asks for.
template <class T, VqConvertFromFunc ConvertFrom>
void* DefaultOrNull(unsigned long count, int asNull) {
    if (asNull == 0) return DefaultValue<ConvertFrom>(count, asNull);
    T* const values = NewValues<T>(count);
    for (unsigned long i = 0; values != nullptr && i < count; ++i) values[i].SetNullValue();
    return values;
}

}  // namespace vq

#endif
