#include "vqtypcmp.h"

#include "comparearrays.h"

namespace {

using vq::CompareInBlocks;
using vq::Operands;
using vq::Order;

template <class T>
struct ScalarForms {
    using InMemory = vq::Scalar<T, false>;
    using LittleEndian = InMemory;
    using BigEndian = vq::Scalar<T, true>;
    static bool IsInMemory(unsigned char) { return false; }
};

template <class Null>
struct NullableForms {
    using InMemory = vq::NullableInMemory<Null>;
    using LittleEndian = vq::NullableStored<Null, false>;
    using BigEndian = vq::NullableStored<Null, true>;
    static bool IsInMemory(unsigned char format) { return (format & VqFormat_Memory) != 0; }
};

template <class Forms>
int CompareForms(unsigned char format, const Operands& operands, int& error) {
    if (Forms::IsInMemory(format)) return CompareInBlocks<typename Forms::InMemory>(operands, error);
    return vq::IsBigEndian(format) ? CompareInBlocks<typename Forms::BigEndian>(operands, error)
                                   : CompareInBlocks<typename Forms::LittleEndian>(operands, error);
}

template <class T>
[[gnu::noinline]] VQ_COMPARE_FUNCTION(CompareArrays, CompareForms<ScalarForms<T>>(format, VQ_OPERANDS, error))

    template <class T>
    int CompareOne(unsigned char format, const void* value1, const void* value2) {
    const auto *const a = static_cast<const unsigned char*>(value1), *const b =
                                                                         static_cast<const unsigned char*>(value2);
    using vq::Scalar;
    return vq::IsBigEndian(format) ? Order(Scalar<T, true>::Load(a), Scalar<T, true>::Load(b))
                                   : Order(Scalar<T, false>::Load(a), Scalar<T, false>::Load(b));
}

// Most calls bring one element. Others go on with the same arguments, so that none of them is moved for this.
template <class T>
int CompareScalars(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,
                   const void* value2, unsigned short flags, unsigned long count, int& error) {
    if (!VQ_OPERANDS.AreOne(sizeof(T))) [[unlikely]]
        return CompareArrays<T>(format, length1, value1, length2, value2, flags, count, error);
    error = VqStatus_Ok;
    return CompareOne<T>(format, value1, value2);
}

}  // namespace

#define VQ_SCALAR_COMPARE(Name, T) \
    VQ_COMPARE_FUNCTION(Name, CompareScalars<T>(format, length1, value1, length2, value2, flags, count, error))

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

template <class Null>
VQ_COMPARE_FUNCTION(VqNullSlots<Null>::Compare, CompareForms<NullableForms<Null>>(format, VQ_OPERANDS, error))

#define VQ_NULLABLE_COMPARE(Null)                                                                              \
    template VQTM_API int VqNullSlots<Null>::Compare(unsigned char, unsigned long, const void*, unsigned long, \
                                                     const void*, unsigned short, unsigned long, int&);

VQ_EACH_NULLABLE(VQ_NULLABLE_COMPARE)
