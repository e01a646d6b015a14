// How the keys of a type are read, in memory and stored: what the loops of comparison and hashing are made for.
#ifndef VQ_KEYELEMENTS_H
#define VQ_KEYELEMENTS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "_vqnulty.h"
#include "vqdefs.h"
#include "vqint64.h"

namespace vq {

static_assert(std::endian::native == std::endian::little,
              "stored forms with the low byte first are read as they stand");

inline bool IsBigEndian(unsigned char format) { return (format & VqFormat_OrderMask) == VqFormat_BigEndian; }

// An element type tells how far apart elements are and reads one as a value that Order puts in order. Swapped stands
// for stored forms with the high byte first. Stored elements are read where they stand, in the base library's byte
// orders: a call of its load routine for each would cost more than the comparison. The tests store through that
// library.

template <std::size_t Size>
using WordOf = std::conditional_t<
    Size == 1, std::uint8_t,
    std::conditional_t<Size == 2, std::uint16_t, std::conditional_t<Size == 4, std::uint32_t, std::uint64_t>>>;

constexpr std::uint8_t ByteSwap(std::uint8_t word) { return word; }
constexpr std::uint16_t ByteSwap(std::uint16_t word) { return __builtin_bswap16(word); }
constexpr std::uint32_t ByteSwap(std::uint32_t word) { return __builtin_bswap32(word); }
constexpr std::uint64_t ByteSwap(std::uint64_t word) { return __builtin_bswap64(word); }

// Neither equal nor greater, as with values that are not numbers, gives -1. No branch: keys come in any order.
template <class Value>
int Order(Value a, Value b) {
    return (a > b) - !(a >= b);
}

template <class Word>
Word LoadWord(const unsigned char* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// Every processor that this runs on has vectors of so many bytes, or does as if.
using Vector [[gnu::vector_size(16)]] = std::uint32_t;

template <class T, bool Swapped>
struct Scalar {
    static constexpr unsigned long Size = sizeof(T);
    using Word = WordOf<Size>;

    static T Load(const unsigned char* at) { return std::bit_cast<T>(InOrder(LoadWord<Word>(at))); }
    static std::uint32_t HashWord(const unsigned char* at) { return HashWordOf(LoadWord<Word>(at)); }
    // Of a word as it stands in the array. Floating values count by their bits, unread: reading one may change it.
    static std::uint32_t HashWordOf(Word word) {
        word = InOrder(word);
        if constexpr (Size == 8) {
            return static_cast<std::uint32_t>(word ^ word >> 32);
        } else if constexpr (std::is_integral_v<T>) {
            return static_cast<std::uint32_t>(static_cast<T>(word));
        } else {
            return word;
        }
    }

    // The four bytes that hold the exponent of a floating element, and its bits in them.
    static constexpr bool IsFloating = std::is_floating_point_v<T>;
    static constexpr unsigned long ExponentAt = Size == 8 && !Swapped ? 4 : 0;
    static constexpr std::uint32_t ExponentBits = Size == 8 ? 0x7FF00000 : 0x7F800000;
    static constexpr std::uint32_t Exponent = Swapped ? ByteSwap(ExponentBits) : ExponentBits;

  private:
    static constexpr Word InOrder(Word word) { return Swapped ? ByteSwap(word) : word; }
};

// The low half first, each half in the byte order of the format.
template <bool Swapped>
struct Scalar<VqInt64, Swapped> : Scalar<std::uint64_t, Swapped> {
    static std::int64_t Load(const unsigned char* at) {
        const auto word = Scalar<std::uint64_t, Swapped>::Load(at);
        return std::bit_cast<std::int64_t>(Swapped ? std::rotl(word, 32) : word);
    }
};

// Its sign does not depend on the flags that a caller is compiled with.
template <bool Swapped>
struct Scalar<char, Swapped> : Scalar<signed char, Swapped> {};

template <class Value>
struct Nullable {
    bool isNull;
    Value value;
};

template <class Value>
bool operator==(const Nullable<Value>& a, const Nullable<Value>& b) {
    return a.isNull == b.isNull && (a.isNull || a.value == b.value);
}
template <class Value>
int Order(const Nullable<Value>& a, const Nullable<Value>& b) {
    const int nullity = VqNullityClass(a.isNull, b.isNull);
    return nullity == VqNullity_None ? Order(a.value, b.value) : VqNullityCompare(nullity);
}

// Where the parts of a nullable element are.
template <class Null>
struct PartsInMemory {
    using Value = Scalar<decltype(Null::value), false>;
    static constexpr unsigned long Size = sizeof(Null);
    static constexpr unsigned long ValueAt = 0;
    static bool IsNull(const unsigned char* at) { return at[offsetof(Null, isNull)] != 0; }
};

template <class Null, bool Swapped>
struct StoredParts {
    using Value = Scalar<decltype(Null::value), Swapped>;
    static constexpr unsigned long Size = 1 + Value::Size;
    static constexpr unsigned long ValueAt = 1;
    static bool IsNull(const unsigned char* at) { return at[0] == 1; }
};

// As format codes store that are more than memory form.
template <class Null>
struct ValueFirstParts {
    using Value = Scalar<decltype(Null::value), false>;
    static constexpr unsigned long Size = Value::Size + 1;
    static constexpr unsigned long ValueAt = 0;
    static bool IsNull(const unsigned char* at) { return at[Value::Size] == 1; }
};

template <class Parts>
struct NullableElement : Parts {
    using Value = typename Parts::Value;
    static constexpr bool IsFloating = Value::IsFloating;
    static constexpr unsigned long ExponentAt = Parts::ValueAt + Value::ExponentAt;
    static constexpr std::uint32_t Exponent = Value::Exponent;
    static auto Load(const unsigned char* at) {
        return Nullable<decltype(Value::Load(at))>{Parts::IsNull(at), Value::Load(at + Parts::ValueAt)};
    }
};
template <class Null>
using NullableInMemory = NullableElement<PartsInMemory<Null>>;
template <class Null, bool Swapped>
using NullableStored = NullableElement<StoredParts<Null, Swapped>>;
template <class Null>
using NullableValueFirst = NullableElement<ValueFirstParts<Null>>;

}  // namespace vq

// Do(Null) for every nullable scalar.
#define VQ_EACH_NULLABLE(Do)                                                                               \
    Do(VqNull_char) Do(VqNull_uchar) Do(VqNull_short) Do(VqNull_ushort) Do(VqNull_int) Do(VqNull_unsigned) \
        Do(VqNull_long) Do(VqNull_ulong) Do(VqNull_float) Do(VqNull_double) Do(VqNull_VqInt64)

#endif
