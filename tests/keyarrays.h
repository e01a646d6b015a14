// Arrays of scalar and nullable keys in every form: random ones, and how one element is read by the library's own store
// and load functions, for references that go element by element.
#ifndef TESTS_KEYARRAYS_H
#define TESTS_KEYARRAYS_H

#include <cstring>
#include <random>
#include <vector>

#include "testsupport.h"
#include "vqbase.h"
#include "vqdefs.h"
#include "vqint64.h"
#include "vqnull.h"

namespace vqtest {

// The last is more than memory form, so stored: nullables with their values first.
constexpr unsigned char KeyFormats[] = {VqFormat_Memory, VqFormat_LittleEndian, VqFormat_BigEndian, 0x22, 0x48, 9};

inline unsigned char RandomFormat(std::mt19937_64& random) { return KeyFormats[random() % std::size(KeyFormats)]; }

template <class T>
concept NullableKey = requires {
    T::TypeId;
};

template <class T>
unsigned long StoreScalars(void* dst, const void* src, unsigned char format, unsigned long count) {
    if constexpr (std::is_same_v<T, VqInt64>) {
        return Int64Store(dst, static_cast<const VqInt64*>(src), format, count);
    } else {
        return (sizeof(T) == 1   ? CharStore
                : sizeof(T) == 2 ? ShortStore
                : sizeof(T) == 4 ? LongStore
                                 : DoubleStore)(dst, src, format, count);
    }
}

// Values at which orders and signs turn. Bits that are no number end a comparison, so they are rare.
template <class T>
T RandomScalar(std::mt19937_64& random) {
    static const std::uint64_t pool[] = {0,
                                         1,
                                         0x7F,
                                         0x80,
                                         0xFF,
                                         0x7FFF,
                                         0x8000,
                                         0x7FFFFFFF,
                                         0x80000000,
                                         0xFF800000,
                                         1u << 8,
                                         1ull << 32,
                                         0x7FF0ull << 48,
                                         1ull << 63,
                                         0xFFF0ull << 48};
    const auto pick = random() % 256;
    const std::uint64_t bits = pick == 0 ? ~0ull : pick < 64 ? random() >> 2 : pool[random() % std::size(pool)];
    T value;
    std::memcpy(static_cast<void*>(&value), &bits, sizeof value);
    return value;
}

template <class T>
struct KeyOf {
    static unsigned long Size(unsigned char) { return sizeof(T); }
    static T Load(const unsigned char* at, unsigned char format) {
        T value;
        StoreScalars<T>(&value, at, format, 1);
        return value;
    }
    static void Put(unsigned char* at, unsigned char format, std::mt19937_64& random) {
        const T value = RandomScalar<T>(random);
        StoreScalars<T>(at, &value, format, 1);
    }
    static void ChangeWhatDoesNotCount(unsigned char*, unsigned char, std::mt19937_64&) {}
};

template <NullableKey Null>
struct KeyOf<Null> {
    using Value = KeyOf<decltype(Null::value)>;
    static constexpr unsigned long ValueSize = sizeof(Null::value);

    static bool InMemory(unsigned char format) { return (format & VqFormat_OrderMask) == VqFormat_Memory; }
    static unsigned long Size(unsigned char format) { return InMemory(format) ? sizeof(Null) : 1 + ValueSize; }
    static unsigned long ValueAt(unsigned char format) { return format & VqFormat_Memory ? 0 : 1; }
    static unsigned long IndicatorAt(unsigned char format) { return format & VqFormat_Memory ? ValueSize : 0; }
    static Null Load(const unsigned char* at, unsigned char format) {
        Null value;
        if (InMemory(format)) {
            std::memcpy(static_cast<void*>(&value), at, sizeof value);
        } else {
            VqNullSlots<Null>::Load(&value, at, format, 1);
        }
        return value;
    }
    // In memory every indicator but 0 is null, stored only 1 is.
    static void Put(unsigned char* at, unsigned char format, std::mt19937_64& random) {
        for (unsigned long i = 0; i < Size(format); ++i) at[i] = static_cast<unsigned char>(random());
        Value::Put(at + ValueAt(format), format, random);
        at[IndicatorAt(format)] = static_cast<unsigned char>("\0\0\0\1\2\377"[random() % 6]);
    }
    // The value of a null, and what is behind an indicator.
    static void ChangeWhatDoesNotCount(unsigned char* at, unsigned char format, std::mt19937_64& random) {
        if (Load(at, format).IsNullValue()) Value::Put(at + ValueAt(format), format, random);
        if (InMemory(format) && sizeof(Null) > ValueSize + 1) at[sizeof(Null) - 1] ^= 1;
    }
};

// An array that starts at any address.
template <class T>
class KeyArray {
  public:
    KeyArray(unsigned long count, unsigned char format, std::mt19937_64& random)
        : shift_(random() % 16), format_(format), bytes_(shift_ + count * KeyOf<T>::Size(format)) {
        for (unsigned long i = 0; i < count; ++i) Put(i, random);
    }
    void Put(unsigned long i, std::mt19937_64& random) { KeyOf<T>::Put(At(i), format_, random); }
    void ChangeWhatDoesNotCount(unsigned long i, std::mt19937_64& random) {
        KeyOf<T>::ChangeWhatDoesNotCount(At(i), format_, random);
    }
    unsigned long Size() const { return static_cast<unsigned long>(bytes_.size() - shift_); }

    // A copy that ends behind `length` bytes, or with the array where that is 0.
    class Cut {
      public:
        Cut(const KeyArray& array, unsigned long length)
            : shift_(array.shift_), block_(array.bytes_.data(), shift_ + (length == 0 ? array.Size() : length)) {}
        const unsigned char* Get() const { return block_.Get() + shift_; }

      private:
        std::size_t shift_;
        Block block_;
    };

  private:
    unsigned char* At(unsigned long i) { return bytes_.data() + shift_ + i * KeyOf<T>::Size(format_); }

    std::size_t shift_;
    unsigned char format_;
    std::vector<unsigned char> bytes_;
};

}  // namespace vqtest

#endif
