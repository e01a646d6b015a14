// Slot functions that value classes share, written once: life of values, translation, exchange form, default values.
#ifndef VALUESLOTS_H
#define VALUESLOTS_H

#include <algorithm>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

template <class T>
constexpr bool IsPlain = std::is_trivially_copyable_v<T>;

// Arrays of plain values are made as bytes and filled with one constructed value: a class whose constructor reads the
// clock reads it once, not once an element.
template <class T>
struct PlainStorage {
    alignas(T) unsigned char bytes[sizeof(T)];
};
template <class T>
using ValueStorage = std::conditional_t<IsPlain<T>, PlainStorage<T>, T>;

template <class T>
struct DeleteValues {
    void operator()(void* values) const { delete[] static_cast<ValueStorage<T>*>(values); }
};
template <class T>
using Values = std::unique_ptr<T[], DeleteValues<T>>;

template <class T>
void FillValues(void* dst, const T& value, unsigned long count) {
    char* const to = static_cast<char*>(dst);
    for (unsigned long i = 0; i < count; ++i) std::memcpy(to + i * sizeof(T), &value, sizeof(T));
}

// Element `index` of plain values at any address.
template <class T>
T LoadValue(const void* values, unsigned long index) {
    PlainStorage<T> storage;
    std::memcpy(&storage, static_cast<const char*>(values) + index * sizeof(T), sizeof(T));
    return std::bit_cast<T>(storage);
}
template <class T>
void StoreValue(void* values, unsigned long index, const T& value) {
    std::memcpy(static_cast<char*>(values) + index * sizeof(T), &value, sizeof(T));
}

// A new array of constructed values; null when neither the heap nor the memory handler has room for it. About one that
// no heap has room for, the handler is told once.
template <class T>
Values<T> NewValues(unsigned long count) {
    constexpr std::size_t Most = PTRDIFF_MAX / sizeof(T) - sizeof(std::max_align_t);
    if (count > Most) {
        VqCallMemoryHandler(ULONG_MAX);
        return nullptr;
    }
    do {
        void* const values = new (std::nothrow) ValueStorage<T>[count];
        if (values == nullptr) continue;
        if constexpr (IsPlain<T>) FillValues(values, T(), count);
        return Values<T>(static_cast<T*>(values));
    } while (VqCallMemoryHandler(static_cast<unsigned long>(count * sizeof(T))) != 0);
    return nullptr;
}

// Plain values are moved as bytes: the arrays need no alignment and may overlap.
template <class T>
struct ValueSlots {
    static void* Create(unsigned long count) { return NewValues<T>(count).release(); }

    static unsigned long Delete(void* values, unsigned long) {
        DeleteValues<T>()(values);
        return 0;
    }

    static void Constructor(void* values, unsigned long count) {
        if (values == nullptr) return;
        if constexpr (IsPlain<T>) {
            FillValues(values, T(), count);
        } else {
            std::uninitialized_value_construct_n(static_cast<T*>(values), count);
        }
    }

    static void Destructor(void* values, unsigned long count) {
        if (values != nullptr) std::destroy_n(static_cast<T*>(values), count);
    }

    static void Assignment(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (dst == nullptr || src == nullptr) return;
        if constexpr (IsPlain<T>) {
            CopyBytes(dst, src, count, broadcast);
        } else {
            const T* const from = static_cast<const T*>(src);
            for (unsigned long i = 0; i < count; ++i) static_cast<T*>(dst)[i] = from[broadcast != 0 ? 0 : i];
        }
    }

    static void Copy(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (dst == nullptr || src == nullptr) return;
        if constexpr (IsPlain<T>) {
            CopyBytes(dst, src, count, broadcast);
        } else {
            const T* const from = static_cast<const T*>(src);
            for (unsigned long i = 0; i < count; ++i) new (static_cast<T*>(dst) + i) T(from[broadcast != 0 ? 0 : i]);
        }
    }

  private:
    static void CopyBytes(void* dst, const void* src, unsigned long count, unsigned long broadcast) {
        if (count == 0) return;
        if (broadcast == 0) {
            std::memmove(dst, src, count * sizeof(T));
            return;
        }
        FillValues(dst, LoadValue<T>(src, 0), count);
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
    Values<VqString> texts = NewValues<VqString>(count);
    if (texts == nullptr) return nullptr;
    for (unsigned long i = 0; i < count; ++i) setText(i, texts[i]);
    VqTypeConvertData* const record = VqTypeConvertData::Make(VqTypeId_VqString, count, texts.get(), nullptr);
    if (record != nullptr) texts.release();
    return record;
}

// A new array of `count` values, each read by `read(value, text)`, where the text is null for a missing or null string.
template <class T, class Read>
void* ReadTexts(const VqTypeConvertData* data, unsigned long count, Read read) {
    Values<T> values = NewValues<T>(count);
    for (unsigned long i = 0; values != nullptr && i < count; ++i) {
        const VqString* const text = data != nullptr && i <= static_cast<unsigned long>(INT_MAX)
                                         ? data->GetString(static_cast<int>(i))
                                         : nullptr;
        read(values[i], text != nullptr && text->IsNullValue() ? nullptr : text);
    }
    return values.release();
}

// --- Default values

// Frees a record and the strings that it holds without a manager.
struct DeleteTexts {
    void operator()(VqTypeConvertData* record) const {
        delete[] static_cast<VqString*>(record->data);
        record->data = nullptr;
        delete record;
    }
};

// What empty texts convert to.
template <VqConvertFromFunc ConvertFrom>
void* DefaultValue(unsigned long count, int) {
    const std::unique_ptr<VqTypeConvertData, DeleteTexts> record(MakeTexts(count, [](unsigned long, VqString&) {}));
    return record != nullptr ? ConvertFrom(record.get(), count) : nullptr;
}

// The same for a class T with a null of its own, which `asNull` asks for.
template <class T, VqConvertFromFunc ConvertFrom>
void* DefaultOrNull(unsigned long count, int asNull) {
    if (asNull == 0) return DefaultValue<ConvertFrom>(count, asNull);
    Values<T> values = NewValues<T>(count);
    for (unsigned long i = 0; values != nullptr && i < count; ++i) values[i].SetNullValue();
    return values.release();
}

}  // namespace vq

#endif
