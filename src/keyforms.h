// Comparison and hashing of types whose elements differ between memory form and the stored forms. Forms names an
// element type for each: InMemory, LittleEndian and BigEndian, and ValueFirst where the codes 9 to 15 store otherwise
// than low byte first.
#ifndef VQ_KEYFORMS_H
#define VQ_KEYFORMS_H

#include "comparearrays.h"
#include "hasharrays.h"

namespace vq {

inline bool IsInMemory(unsigned char format) { return (format & VqFormat_OrderMask) == VqFormat_Memory; }

// Calls work.operator()<Element>() for the element type of a format.
template <class Forms, class Work>
[[gnu::always_inline]] inline auto InForm(unsigned char format, Work work) {
    using InMemory = typename Forms::InMemory;
    using LittleEndian = typename Forms::LittleEndian;
    if (IsBigEndian(format)) return work.template operator()<typename Forms::BigEndian>();
    if constexpr (!std::is_same_v<InMemory, LittleEndian>) {
        if (IsInMemory(format)) return work.template operator()<InMemory>();
    }
    if constexpr (requires { typename Forms::ValueFirst; }) {
        if (format & VqFormat_Memory) return work.template operator()<typename Forms::ValueFirst>();
    }
    return work.template operator()<LittleEndian>();
}

// The operands one by one: together they would come through memory.
template <class Forms>
[[gnu::noinline]] int CompareArrays(unsigned char format, unsigned long length1, const void* value1,
                                    unsigned long length2, const void* value2, unsigned long count, int& error) {
    return InForm<Forms>(format, [&]<class Element>() {
        if constexpr (requires { Element::IsFloating; }) {
            return CompareInBlocks<Element>(VQ_OPERANDS, error);
        } else {
            return CompareAll<Element>(VQ_OPERANDS, error);
        }
    });
}

// Most calls bring one key. Others go on with the same arguments, so that none of them is moved for this.
template <class Forms>
[[gnu::always_inline]] inline int CompareForms(unsigned char format, const Operands& operands, int& error) {
    const auto& [length1, value1, length2, value2, count] = operands;
    const unsigned long size = InForm<Forms>(format, []<class Element>() { return Element::Size; });
    if (!operands.AreOne(size)) [[unlikely]]
        return CompareArrays<Forms>(format, length1, value1, length2, value2, count, error);
    error = VqStatus_Ok;
    return InForm<Forms>(format, [&]<class Element>() { return CompareAt<Element>(0, operands); });
}

template <class Forms>
unsigned long HashForms(unsigned char format, unsigned long length, const void* values, unsigned long count,
                        int& error) {
    return InForm<Forms>(format, [&]<class Element>() { return HashElements<Element>(length, values, count, error); });
}

// One element type for every form.
template <class Element>
struct SameInEveryForm {
    using InMemory = Element;
    using LittleEndian = Element;
    using BigEndian = Element;
};

template <class Element>
[[gnu::always_inline]] inline int CompareKeys(const Operands& operands, int& error) {
    return CompareForms<SameInEveryForm<Element>>(VqFormat_Memory, operands, error);
}

// The memory form is the stored one with the low byte first.
template <template <bool Swapped> class Element>
struct StoredAsInMemory {
    using InMemory = Element<false>;
    using LittleEndian = Element<false>;
    using BigEndian = Element<true>;
};

template <class T>
struct ScalarForms {
    using InMemory = Scalar<T, false>;
    using LittleEndian = Scalar<T, false>;
    using BigEndian = Scalar<T, true>;
};

template <class Null>
struct NullableForms {
    using InMemory = NullableInMemory<Null>;
    using LittleEndian = NullableStored<Null, false>;
    using BigEndian = NullableStored<Null, true>;
    using ValueFirst = NullableValueFirst<Null>;
};

}  // namespace vq

#endif
