// The loop of hashing by type, for elements of a fixed length.
#ifndef VQ_HASHARRAYS_H
#define VQ_HASHARRAYS_H

#include <algorithm>
#include <array>

#include "keyelements.h"

namespace vq {

constexpr std::uint32_t HashMultiplier = 1103515245;

// Whole elements of `size` bytes that can be read of an array; `error` tells when they are fewer than `count`.
inline unsigned long ReadableElements(unsigned long length, unsigned long size, unsigned long count, int& error) {
    const unsigned long readable = length == 0 ? count : std::min(count, length / size);
    error = readable < count ? VqStatus_BufferEnd : VqStatus_Ok;
    return readable;
}

// The elements' words by exclusive or. Element has Size and `std::uint32_t HashWord(const unsigned char* at)`.
template <class Element>
std::uint32_t XorOfWords(unsigned long length, const void* values, unsigned long count, int& error) {
    const auto* const at = static_cast<const unsigned char*>(values);
    const unsigned long readable = ReadableElements(length, Element::Size, count, error);
    std::uint32_t hash = 0;
    for (unsigned long i = 0; i < readable; ++i) hash ^= Element::HashWord(at + i * Element::Size);
    return hash;
}

// The exclusive or of the whole 8-byte words of an array, with what is left over as the low bytes of a last one.
inline std::uint64_t XorOfBytes(const unsigned char* at, std::size_t size) {
    constexpr std::size_t Word = sizeof(std::uint64_t);
    // Two chains, since one waits for itself.
    Vector even = {}, odd = {};
    std::size_t i = 0;
    for (; size - i >= 2 * sizeof(Vector); i += 2 * sizeof(Vector)) {
        even ^= LoadWord<Vector>(at + i);
        odd ^= LoadWord<Vector>(at + i + sizeof(Vector));
    }
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(even ^ odd);
    std::uint64_t all = halves[0] ^ halves[1];
    for (; size - i >= Word; i += Word) all ^= LoadWord<std::uint64_t>(at + i);
    std::uint64_t rest = 0;
    std::memcpy(&rest, at + i, size - i);
    return all ^ rest;
}

// The same as XorOfWords for scalars: neither exclusive or minds whether bytes are swapped and signs extended before it
// or once behind it.
template <class Element>
unsigned long HashArray(unsigned long length, const void* values, unsigned long count, int& error) {
    const unsigned long readable = ReadableElements(length, Element::Size, count, error);
    if (readable == 0) return 0;
    std::uint64_t word = XorOfBytes(static_cast<const unsigned char*>(values), std::size_t{readable} * Element::Size);
    for (unsigned bits = 32; bits >= 8 * Element::Size; bits /= 2) word ^= word >> bits;
    return Element::HashWordOf(static_cast<typename Element::Word>(word)) * HashMultiplier;
}

template <class Element>
unsigned long HashElements(unsigned long length, const void* values, unsigned long count, int& error) {
    return XorOfWords<Element>(length, values, count, error) * HashMultiplier;
}

}  // namespace vq

// Defines a function of the family from the call that does its work.
#define VQ_HASH_FUNCTION(Name, Call)                                                                    \
    unsigned long Name([[maybe_unused]] unsigned char format, unsigned long length, const void* values, \
                       unsigned long count, int& error) {                                               \
        return Call;                                                                                    \
    }

#endif
