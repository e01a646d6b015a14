// The loop of the typed comparison, for elements of a fixed length.
#ifndef VQ_COMPAREARRAYS_H
#define VQ_COMPAREARRAYS_H

#include <algorithm>

#include "keyelements.h"

namespace vq {

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

}  // namespace vq

// Defines a function of the family from the call that does its work; VQ_OPERANDS are its two arrays.
#define VQ_COMPARE_FUNCTION(Name, Call)                                                                               \
    int Name([[maybe_unused]] unsigned char format, unsigned long length1, const void* value1, unsigned long length2, \
             const void* value2, [[maybe_unused]] unsigned short flags, unsigned long count, int& error) {            \
        return Call;                                                                                                  \
    }
#define VQ_OPERANDS \
    vq::Operands { length1, value1, length2, value2, count }

#endif
