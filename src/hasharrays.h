// The loop of hashing by type, for elements of a fixed length.
#ifndef VQ_HASHARRAYS_H
#define VQ_HASHARRAYS_H

#include <algorithm>

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
