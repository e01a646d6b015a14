#include "vqtypcmp.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "_vqnulty.h"
#include "strcompare.h"
#include "stringarray.h"
#include "vqbase.h"
#include "vqstring.h"

static_assert(std::endian::native == std::endian::little,
              "stored forms with the low byte first are compared as they stand");

namespace {

// --- Elements
//
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

// Neither equal nor greater, as with values that are not numbers, gives -1.
template <class Value>
int Order(Value a, Value b) {
    return a == b ? 0 : a > b ? 1 : -1;
}

template <class Word>
Word LoadWord(const unsigned char* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

template <class T, bool Swapped>
struct Scalar {
    static constexpr unsigned long Size = sizeof(T);
    using Word = WordOf<Size>;

    static T Load(const unsigned char* at) {
        const Word word = LoadWord<Word>(at);
        return std::bit_cast<T>(Swapped ? ByteSwap(word) : word);
    }
    // Not 0 when the elements are not equal. Integers need no conversion for that.
    static Word Difference(const unsigned char* a, const unsigned char* b) {
        if constexpr (std::is_floating_point_v<T>) {
            return Load(a) != Load(b);
        } else {
            return LoadWord<Word>(a) ^ LoadWord<Word>(b);
        }
    }
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
int Order(const Nullable<Value>& a, const Nullable<Value>& b) {
    const int nullity = VqNullityClass(a.isNull, b.isNull);
    return nullity == VqNullity_None ? Order(a.value, b.value) : VqNullityCompare(nullity);
}

template <class Null>
struct NullableInMemory {
    using Value = Scalar<decltype(Null::value), false>;
    static constexpr unsigned long Size = sizeof(Null);
    static auto Load(const unsigned char* at) {
        return Nullable<decltype(Value::Load(at))>{at[offsetof(Null, isNull)] != 0, Value::Load(at)};
    }
};

template <class Null, bool Swapped>
struct NullableStored {
    using Value = Scalar<decltype(Null::value), Swapped>;
    static constexpr unsigned long Size = 1 + Value::Size;
    static auto Load(const unsigned char* at) {
        return Nullable<decltype(Value::Load(at))>{at[0] == 1, Value::Load(at + 1)};
    }
};

// --- Arrays

// What the caller gave: two arrays with the bytes that may be read, 0 for all of `count` elements.
struct Operands {
    unsigned long length1;
    const void* value1;
    unsigned long length2;
    const void* value2;
    unsigned long count;

    // Whole elements that both arrays hold.
    unsigned long Readable(unsigned long size) const {
        return std::min({count, length1 == 0 ? count : length1 / size, length2 == 0 ? count : length2 / size});
    }
    // The status where a comparison of elements that are `size` apart stopped: with the element `i`, or behind the
    // `readable` ones.
    int Status(unsigned long i, unsigned long readable, unsigned long size) const {
        if (i == readable) return readable < count ? VqStatus_BufferEnd : VqStatus_Ok;
        const unsigned long next = (i + 1) * size;
        const bool ended = (length1 != 0 && next >= length1) || (length2 != 0 && next >= length2);
        return i + 1 < count && ended ? VqStatus_BufferEnd : VqStatus_Ok;
    }
};

// Elements that are passed over together while they are equal: few enough to lose nothing, a power of two so that
// compilers vectorise.
constexpr unsigned long Block = 16;

template <class Element>
bool BlocksDiffer(const unsigned char* a, const unsigned char* b) {
    WordOf<Element::Size> differences = 0;
    for (unsigned long i = 0; i < Block * Element::Size; i += Element::Size) {
        differences |= Element::Difference(a + i, b + i);
    }
    return differences != 0;
}

// The number of elements at the start that are known to be equal.
template <class Element>
unsigned long EqualBlocks(const unsigned char* a, const unsigned char* b, unsigned long count) {
    unsigned long i = 0;
    while (count - i >= Block && !BlocksDiffer<Element>(a + i * Element::Size, b + i * Element::Size)) i += Block;
    return i;
}

// Compares element by element; those before `i` are known to be equal.
template <class Element>
int CompareFrom(unsigned long i, unsigned long readable, const Operands& operands, int& error) {
    const unsigned char* const a = static_cast<const unsigned char*>(operands.value1);
    const unsigned char* const b = static_cast<const unsigned char*>(operands.value2);
    int result = 0;
    for (; i < readable; ++i) {
        result = Order(Element::Load(a + i * Element::Size), Element::Load(b + i * Element::Size));
        if (result != 0) break;
    }
    error = operands.Status(i, readable, Element::Size);
    return result;
}

template <class Element>
int CompareAll(const Operands& operands, int& error) {
    return CompareFrom<Element>(0, operands.Readable(Element::Size), operands, error);
}

template <class Element>
int CompareInBlocks(const Operands& operands, int& error) {
    const unsigned long readable = operands.Readable(Element::Size);
    const unsigned long equal = EqualBlocks<Element>(static_cast<const unsigned char*>(operands.value1),
                                                     static_cast<const unsigned char*>(operands.value2), readable);
    return CompareFrom<Element>(equal, readable, operands, error);
}

bool IsBigEndian(unsigned char format) { return (format & VqFormat_OrderMask) == VqFormat_BigEndian; }

template <class T>
int CompareScalars(unsigned char format, const Operands& operands, int& error) {
    return IsBigEndian(format) ? CompareInBlocks<Scalar<T, true>>(operands, error)
                               : CompareInBlocks<Scalar<T, false>>(operands, error);
}

template <class Null>
int CompareNullables(unsigned char format, const Operands& operands, int& error) {
    if (format & VqFormat_Memory) return CompareAll<NullableInMemory<Null>>(operands, error);
    return IsBigEndian(format) ? CompareAll<NullableStored<Null, true>>(operands, error)
                               : CompareAll<NullableStored<Null, false>>(operands, error);
}

// --- Strings

using vq::StringArray;
using vq::StringElement;
using vq::TerminatedText;

int CompareTexts(const StringElement& a, const StringElement& b, unsigned char format, unsigned short flags,
                 int& error) {
    const TerminatedText text1(a), text2(b);
    if (text1.Get() == nullptr || text2.Get() == nullptr) {
        error = VqStatus_NotSupported;
        return -1;
    }
    return VqStrCmp(a.codeSet, a.language, text1.Get(), b.codeSet, b.language, text2.Get(), flags, -1,
                    format & VqFormat_OrderMask, nullptr);
}

// Compares the elements where both arrays stand and, with `more`, moves on.
int CompareNext(StringArray& first, StringArray& second, bool more, unsigned char format, unsigned short flags,
                int& error) {
    StringElement a = first.Current(), b = second.Current();
    if (a.cut || b.cut) {
        error = VqStatus_BufferEnd;
        return 0;
    }
    const bool damaged1 = a.Repair(), damaged2 = b.Repair();
    if (damaged1 || damaged2) error = VqStatus_BufferEnd;
    const int result = CompareTexts(a, b, format, flags, error);
    if (more) {
        first.Advance(a);
        second.Advance(b);
        if (error == VqStatus_Ok && (first.Ended() || second.Ended())) error = VqStatus_BufferEnd;
    }
    return result;
}

int CompareStrings(unsigned char format, const Operands& operands, unsigned short flags, unsigned long lacking,
                   int& error) {
    error = VqStatus_Ok;
    unsigned long count = operands.count;
    if (count == 0) return 0;
    if (flags == VqCmp_Default) flags = VqString::GetDefaultCmpOp();
    StringArray first(format, operands.length1, operands.value1, lacking);
    StringArray second(format, operands.length2, operands.value2, lacking);
    if (first.Ended() || second.Ended()) error = VqStatus_BufferEnd;
    int result = 0;
    for (; count != 0 && result == 0 && error == VqStatus_Ok; --count) {
        result = CompareNext(first, second, count > 1, format, flags, error);
    }
    return result;
}

}  // namespace

#define VQ_COMPARE_FUNCTION(Name, Call)                                                                    \
    int Name(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,       \
             const void* value2, [[maybe_unused]] unsigned short flags, unsigned long count, int& error) { \
        return Call;                                                                                       \
    }
#define VQ_OPERANDS \
    Operands { length1, value1, length2, value2, count }
#define VQ_SCALAR_COMPARE(Name, T) VQ_COMPARE_FUNCTION(Name, CompareScalars<T>(format, VQ_OPERANDS, error))

VQ_SCALAR_COMPARE(CharCompare, signed char)
VQ_SCALAR_COMPARE(ByteCompare, std::uint8_t)
VQ_SCALAR_COMPARE(ShortCompare, std::int16_t)
VQ_SCALAR_COMPARE(WordCompare, std::uint16_t)
VQ_SCALAR_COMPARE(IntCompare, std::int32_t)
VQ_SCALAR_COMPARE(UnsignedCompare, std::uint32_t)
VQ_SCALAR_COMPARE(LongCompare, std::int32_t)
VQ_SCALAR_COMPARE(DwordCompare, std::uint32_t)
VQ_SCALAR_COMPARE(FloatCompare, float)
VQ_SCALAR_COMPARE(DoubleCompare, double)
VQ_SCALAR_COMPARE(Int64Compare, VqInt64)
VQ_COMPARE_FUNCTION(StringCompare, CompareStrings(format, VQ_OPERANDS, flags, 0, error))
VQ_COMPARE_FUNCTION(LegacyStringCompare, CompareStrings(format, VQ_OPERANDS, flags, 2, error))

template <class Null>
VQ_COMPARE_FUNCTION(VqNullSlots<Null>::Compare, CompareNullables<Null>(format, VQ_OPERANDS, error))

#define VQ_NULLABLE_COMPARE(Null)                                                                              \
    template VQTM_API int VqNullSlots<Null>::Compare(unsigned char, unsigned long, const void*, unsigned long, \
                                                     const void*, unsigned short, unsigned long, int&);

VQ_NULLABLE_COMPARE(VqNull_char) VQ_NULLABLE_COMPARE(VqNull_uchar) VQ_NULLABLE_COMPARE(VqNull_short)
    VQ_NULLABLE_COMPARE(VqNull_ushort) VQ_NULLABLE_COMPARE(VqNull_int) VQ_NULLABLE_COMPARE(VqNull_unsigned)
        VQ_NULLABLE_COMPARE(VqNull_long) VQ_NULLABLE_COMPARE(VqNull_ulong) VQ_NULLABLE_COMPARE(VqNull_float)
            VQ_NULLABLE_COMPARE(VqNull_double) VQ_NULLABLE_COMPARE(VqNull_VqInt64)
