// Comparison and hashing of types whose elements differ between memory form and the two stored forms. Forms names an
// element type for each: InMemory, LittleEndian and BigEndian.
#ifndef VQ_KEYFORMS_H
#define VQ_KEYFORMS_H

#include "comparearrays.h"
#include "hasharrays.h"

namespace vq {

inline bool IsInMemory(unsigned char format) { return (format & VqFormat_OrderMask) == VqFormat_Memory; }

template <class Forms>
int CompareForms(unsigned char format, const Operands& operands, int& error) {
    if (IsInMemory(format)) return CompareAll<typename Forms::InMemory>(operands, error);
    return IsBigEndian(format) ? CompareAll<typename Forms::BigEndian>(operands, error)
                               : CompareAll<typename Forms::LittleEndian>(operands, error);
}

template <class Forms>
unsigned long HashForms(unsigned char format, unsigned long length, const void* values, unsigned long count,
                        int& error) {
    if (IsInMemory(format)) return HashElements<typename Forms::InMemory>(length, values, count, error);
    return IsBigEndian(format) ? HashElements<typename Forms::BigEndian>(length, values, count, error)
                               : HashElements<typename Forms::LittleEndian>(length, values, count, error);
}

// One element type for every form.
template <class Element>
struct SameInEveryForm {
    using InMemory = Element;
    using LittleEndian = Element;
    using BigEndian = Element;
};

// The memory form is the stored one with the low byte first.
template <template <bool Swapped> class Element>
struct StoredAsInMemory {
    using InMemory = Element<false>;
    using LittleEndian = Element<false>;
    using BigEndian = Element<true>;
};

}  // namespace vq

#endif
