#include "vqtyphash.h"

#include "keyforms.h"
#include "vqnull.h"

namespace {

template <class T>
[[gnu::noinline]] unsigned long HashArrays(unsigned char format, unsigned long length, const void* values,
                                           unsigned long count, int& error) {
    return vq::InForm<vq::ScalarForms<T>>(
        format, [&]<class Element>() { return vq::HashArray<Element>(length, values, count, error); });
}

// Most calls bring one value. Others go on with the same arguments, so that none of them is moved for this.
template <class T>
[[gnu::always_inline]] inline unsigned long HashScalars(unsigned char format, unsigned long length, const void* values,
                                                        unsigned long count, int& error) {
    if (count != 1 || (length != 0 && length < sizeof(T))) [[unlikely]]
        return HashArrays<T>(format, length, values, count, error);
    error = VqStatus_Ok;
    const auto word = vq::LoadWord<typename vq::Scalar<T, false>::Word>(static_cast<const unsigned char*>(values));
    return vq::Scalar<T, false>::HashWordOf(vq::IsBigEndian(format) ? vq::ByteSwap(word) : word) * vq::HashMultiplier;
}

// A null counts with a word of its own, a value with its whole code, so that arrays are not multiplied again.
template <class Element>
struct NullableWord : Element {
    static std::uint32_t HashWord(const unsigned char* at) {
        constexpr std::uint32_t Null = 0xFEFE7575;
        return Element::IsNull(at) ? Null : Element::Value::HashWord(at + Element::ValueAt) * vq::HashMultiplier;
    }
};

template <class Null>
unsigned long HashNullables(unsigned char format, unsigned long length, const void* values, unsigned long count,
                            int& error) {
    return vq::InForm<vq::NullableForms<Null>>(
        format, [&]<class Element>() { return vq::XorOfWords<NullableWord<Element>>(length, values, count, error); });
}

unsigned long NoHash(int& error) {
    error = VqStatus_Ok;
    return 0;
}

}  // namespace

unsigned long VqIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}

unsigned long VqCaseIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}

#define VQ_SCALAR_HASH(Name, T) VQ_HASH_FUNCTION(Name, HashScalars<T>(format, length, values, count, error))

VQ_SCALAR_HASH(CharHash, signed char)
VQ_SCALAR_HASH(ByteHash, std::uint8_t)
VQ_SCALAR_HASH(ShortHash, std::int16_t)
VQ_SCALAR_HASH(WordHash, std::uint16_t)
VQ_SCALAR_HASH(IntHash, std::int32_t)
VQ_SCALAR_HASH(UnsignedHash, std::uint32_t)
VQ_SCALAR_HASH(LongHash, std::int32_t)
VQ_SCALAR_HASH(DwordHash, std::uint32_t)
VQ_SCALAR_HASH(FloatHash, float)
VQ_SCALAR_HASH(DoubleHash, double)
VQ_SCALAR_HASH(Int64Hash, VqInt64)

template <class Null>
VQ_HASH_FUNCTION(VqNullSlots<Null>::Hash, HashNullables<Null>(format, length, values, count, error))

#define VQ_NULLABLE_HASH(Null)                                                                                        \
    template VQTM_API unsigned long VqNullSlots<Null>::Hash(unsigned char, unsigned long, const void*, unsigned long, \
                                                            int&);

VQ_EACH_NULLABLE(VQ_NULLABLE_HASH)
