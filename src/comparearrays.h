// The loop of the typed comparison, for elements of a fixed length.
#ifndef VQ_COMPAREARRAYS_H
#define VQ_COMPAREARRAYS_H

#include <algorithm>

#include "equalelements.h"
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
    // One element, that both arrays hold.
    bool AreOne(unsigned long size) const {
        return count == 1 && (length1 == 0 || length1 >= size) && (length2 == 0 || length2 >= size);
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

template <class Element>
int CompareAt(unsigned long i, const Operands& operands) {
    return Order(Element::Load(static_cast<const unsigned char*>(operands.value1) + i * Element::Size),
                 Element::Load(static_cast<const unsigned char*>(operands.value2) + i * Element::Size));
}

template <class Element>
int CompareAll(const Operands& operands, int& error) {
    const unsigned long readable = operands.Readable(Element::Size);
    unsigned long i = 0;
    int result = 0;
    for (; i < readable; ++i) {
        result = CompareAt<Element>(i, operands);
        if (result != 0) break;
    }
    error = operands.Status(i, readable, Element::Size);
    return result;
}

// The same for elements that EqualElements knows.
template <class Element>
int CompareInBlocks(const Operands& operands, int& error) {
    const unsigned long readable = operands.Readable(Element::Size);
    const unsigned long i = EqualElements<Element>(static_cast<const unsigned char*>(operands.value1),
                                                   static_cast<const unsigned char*>(operands.value2), readable);
    error = operands.Status(i, readable, Element::Size);
    return i < readable ? CompareAt<Element>(i, operands) : 0;
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
