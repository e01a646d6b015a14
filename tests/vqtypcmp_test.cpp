#include "vqtypcmp.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

#include "keyarrays.h"
#include "vqslots.h"

namespace {

using vqtest::KeyArray;
using vqtest::KeyOf;
using vqtest::Sign;

// The rules as a plain loop over one element at a time.
template <class T>
int Reference(unsigned char format, unsigned long length1, const unsigned char* a, unsigned long length2,
              const unsigned char* b, unsigned long count, int& error) {
    const unsigned long size = KeyOf<T>::Size(format);
    unsigned long left1 = length1 == 0 ? count * size : length1, left2 = length2 == 0 ? count * size : length2;
    int result = 0;
    error = 0;
    while (count-- != 0 && result == 0 && error == 0) {
        if (left1 < size || left2 < size) {
            error = VqStatus_BufferEnd;
            break;
        }
        const T x = KeyOf<T>::Load(a, format), y = KeyOf<T>::Load(b, format);
        result = x == y ? 0 : y < x ? 1 : -1;
        if (count != 0) {
            if (left1 <= size || left2 <= size) error = VqStatus_BufferEnd;
            a += size, left1 -= size;
            b += size, left2 -= size;
        }
    }
    return result;
}

// Arrays that are equal but for what does not count and, most of the time, one element: across every length of the
// blocks in which equal elements are passed over.
template <class T>
void AgreesWithReference(VqCompareFunc compare) {
    std::mt19937_64 random(7);
    const auto pick = [&](unsigned long n) { return static_cast<unsigned long>(random() % n); };
    for (unsigned long i = 0; i < 4000; ++i) {
        const unsigned long count = i % 4 == 0 ? pick(1200 / sizeof(T)) : pick(70);
        const unsigned char format = vqtest::RandomFormat(random);
        const KeyArray<T> a(count, format, random);
        KeyArray<T> b = a;
        const unsigned long changes = count == 0 ? 0 : i % 8 == 0 ? 4 * count : pick(3);
        for (unsigned long j = 0; j < changes; ++j) b.ChangeWhatDoesNotCount(pick(count), random);
        if (count != 0 && pick(4) != 0) b.Put(pick(count), random);
        const auto length = [&] { return pick(2) == 0 || count == 0 ? 0 : 1 + pick(a.Size()); };
        const unsigned long length1 = length(), length2 = length();
        const typename KeyArray<T>::Cut first(a, length1), second(b, length2);

        int error = 77, expectedError = 77;
        const int expected = Reference<T>(format, length1, first.Get(), length2, second.Get(), count, expectedError);
        const int result = compare(format, length1, first.Get(), length2, second.Get(), 0, count, error);
        ASSERT_EQ(result, expected) << i << ": " << count << " in format " << int{format};
        ASSERT_EQ(error, expectedError) << i << ": " << length1 << " and " << length2;
    }
}

template <class... Nulls>
void NullablesAgreeWithReference() {
    (AgreesWithReference<Nulls>(VqNullSlots<Nulls>::Compare), ...);
}

TEST(TypedComparison, AgreesWithAPlainLoop) {
    AgreesWithReference<signed char>(CharCompare);
    AgreesWithReference<unsigned char>(ByteCompare);
    AgreesWithReference<std::int16_t>(ShortCompare);
    AgreesWithReference<std::uint16_t>(WordCompare);
    AgreesWithReference<std::int32_t>(IntCompare);
    AgreesWithReference<std::uint32_t>(UnsignedCompare);
    AgreesWithReference<std::int32_t>(LongCompare);
    AgreesWithReference<std::uint32_t>(DwordCompare);
    AgreesWithReference<float>(FloatCompare);
    AgreesWithReference<double>(DoubleCompare);
    AgreesWithReference<VqInt64>(Int64Compare);
    NullablesAgreeWithReference<VqNull_char, VqNull_uchar, VqNull_short, VqNull_ushort, VqNull_int, VqNull_unsigned,
                                VqNull_long, VqNull_ulong, VqNull_float, VqNull_double, VqNull_VqInt64>();
}

TEST(TypedComparison, OfOneByteTypesIsRightForEveryPair) {
    for (int i = 0; i < 256; ++i) {
        for (int j = 0; j < 256; ++j) {
            const unsigned char a = static_cast<unsigned char>(i), b = static_cast<unsigned char>(j);
            int error;
            EXPECT_EQ(ByteCompare(2, 1, &a, 1, &b, 0, 1, error), Sign(i - j));
            EXPECT_EQ(CharCompare(2, 1, &a, 1, &b, 0, 1, error),
                      Sign(static_cast<signed char>(a) - static_cast<signed char>(b)));
        }
    }
}

TEST(TypedComparison, SaysWhereABufferEnds) {
    const std::int32_t a[] = {1, 2, 3}, b[] = {1, 5, 3};
    static const struct {
        unsigned long length1, length2, count;
        int result, error;
    } cases[] = {
        {0, 0, 0, 0, VqStatus_Ok},         {0, 0, 1, 0, VqStatus_Ok},
        {0, 0, 3, -1, VqStatus_Ok},        {12, 12, 3, -1, VqStatus_Ok},
        {4, 0, 1, 0, VqStatus_Ok},         {4, 0, 2, 0, VqStatus_BufferEnd},
        {0, 4, 2, 0, VqStatus_BufferEnd},  {8, 0, 2, -1, VqStatus_Ok},
        {8, 0, 3, -1, VqStatus_BufferEnd},  // after the difference the end is still told
        {7, 0, 2, 0, VqStatus_BufferEnd},   // half an element is none
        {3, 0, 1, 0, VqStatus_BufferEnd},
    };
    for (const auto& c : cases) {
        int error = 77;
        EXPECT_EQ(IntCompare(8, c.length1, a, c.length2, b, 0, c.count, error), c.result)
            << c.length1 << " " << c.count;
        EXPECT_EQ(error, c.error) << c.length1 << " " << c.length2 << " " << c.count;
    }
}

TEST(TypedComparison, AnUnorderedNumberIsLessOnBothSides) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const float signalling = std::bit_cast<float>(0x7FA00001u);
    int error;
    for (const double other : {0.0, -1e300, 1e300, nan}) {
        EXPECT_EQ(DoubleCompare(8, 0, &nan, 0, &other, 0, 1, error), -1);
        EXPECT_EQ(DoubleCompare(8, 0, &other, 0, &nan, 0, 1, error), -1);
        const float narrow = static_cast<float>(other);
        EXPECT_EQ(FloatCompare(8, 0, &signalling, 0, &narrow, 0, 1, error), -1);
        EXPECT_EQ(FloatCompare(8, 0, &narrow, 0, &signalling, 0, 1, error), -1);
    }
    // Behind equal elements, of which some look as if they were none; in every form.
    for (const unsigned char format : vqtest::KeyFormats) {
        std::vector<double> many(200, 1), stored(200);
        many[20] = std::numeric_limits<double>::infinity();
        for (const bool unordered : {false, true}) {
            if (unordered) many[190] = nan;
            DoubleStore(stored.data(), many.data(), format, 200);
            EXPECT_EQ(DoubleCompare(format, 0, stored.data(), 0, stored.data(), 0, 200, error), unordered ? -1 : 0);
        }
    }
    const double plus = 0.0, minus = -0.0;
    EXPECT_EQ(DoubleCompare(8, 0, &plus, 0, &minus, 0, 1, error), 0);
}

}  // namespace
