#include "vqtypcmp.h"

#include "keyforms.h"

#define VQ_SCALAR_COMPARE(Name, T) \
    VQ_COMPARE_FUNCTION(Name, vq::CompareForms<vq::ScalarForms<T>>(format, VQ_OPERANDS, error))

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
VQ_COMPARE_FUNCTION(VqNullSlots<Null>::Compare, vq::CompareForms<vq::NullableForms<Null>>(format, VQ_OPERANDS, error))

#define VQ_NULLABLE_COMPARE(Null)                                                                              \
    template VQTM_API int VqNullSlots<Null>::Compare(unsigned char, unsigned long, const void*, unsigned long, \
                                                     const void*, unsigned short, unsigned long, int&);

VQ_EACH_NULLABLE(VQ_NULLABLE_COMPARE)
