#include "vqtypcmp.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

#include "testsupport.h"

namespace {

using vqtest::Block;
using vqtest::Sign;

// --- Scalars

template <class T>
unsigned long StoreScalars(void* dst, const T* src, unsigned char format, unsigned long count) {
    if constexpr (std::is_same_v<T, VqInt64>) {
        return Int64Store(dst, src, format, count);
    } else {
        return (sizeof(T) == 1   ? CharStore
                : sizeof(T) == 2 ? ShortStore
                : sizeof(T) == 4 ? LongStore
                                 : DoubleStore)(dst, src, format, count);
    }
}

// The rules as a plain loop over one element at a time.
template <class T>
int Reference(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,
              const void* value2, unsigned long count, int& error) {
    const unsigned char *a = static_cast<const unsigned char*>(value1), *b = static_cast<const unsigned char*>(value2);
    unsigned long left1 = length1 == 0 ? count * sizeof(T) : length1,
                  left2 = length2 == 0 ? count * sizeof(T) : length2;
    int result = 0;
    error = 0;
    while (count-- != 0 && result == 0 && error == 0) {
        if (left1 < sizeof(T) || left2 < sizeof(T)) {
            error = VqStatus_BufferEnd;
            break;
        }
        T x, y;
        StoreScalars(&x, reinterpret_cast<const T*>(a), format, 1);
        StoreScalars(&y, reinterpret_cast<const T*>(b), format, 1);
        result = x == y ? 0 : y < x ? 1 : -1;
        if (count != 0) {
            if (left1 <= sizeof(T) || left2 <= sizeof(T)) error = VqStatus_BufferEnd;
            a += sizeof(T), left1 -= sizeof(T);
            b += sizeof(T), left2 -= sizeof(T);
        }
    }
    return result;
}

template <class T>
T RandomValue(std::mt19937_64& random) {
    static const std::uint64_t pool[] = {
        0,          1,          0x7F,       0x80,    0xFF,       0x7FFF,          0x8000,
        0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 1u << 8, 1ull << 32, 0x7FF0ull << 48, 1ull << 63,
        ~0ull};
    const std::uint64_t bits = random() % 4 != 0 ? pool[random() % std::size(pool)] : random();
    T value;
    std::memcpy(static_cast<void*>(&value), &bits, sizeof value);
    return value;
}

template <class T, class Function>
void AgreesWithReference(Function compare, const char* name) {
    std::mt19937_64 random(7);
    const auto pick = [&](unsigned long n) { return static_cast<unsigned long>(random() % n); };
    for (int i = 0; i < 20000; ++i) {
        const unsigned long count = pick(40);
        T a[40], b[40];
        for (unsigned long j = 0; j < count; ++j) a[j] = b[j] = RandomValue<T>(random);
        if (count != 0 && pick(4) != 0) b[pick(count)] = RandomValue<T>(random);
        const unsigned char format = static_cast<unsigned char>("\x08\x01\x02\x22"[pick(4)]);
        T storedA[40], storedB[40];
        StoreScalars(storedA, a, format, count);
        StoreScalars(storedB, b, format, count);
        const unsigned long size = count * sizeof(T);
        const unsigned long length1 = pick(2) != 0 || size == 0 ? 0 : 1 + pick(size);
        const unsigned long length2 = pick(2) != 0 || size == 0 ? 0 : 1 + pick(size);
        const Block first(storedA, length1 == 0 ? size : length1), second(storedB, length2 == 0 ? size : length2);

        int error = 77, expectedError = 77;
        const int expected = Reference<T>(format, length1, first.Get(), length2, second.Get(), count, expectedError);
        const int result = compare(format, length1, first.Get(), length2, second.Get(), 0, count, error);
        ASSERT_EQ(result, expected) << name << " " << i;
        ASSERT_EQ(error, expectedError) << name << " " << i << " of " << length1 << " and " << length2;
    }
}

TEST(TypedComparison, OfScalarsAgreesWithAPlainLoop) {
    AgreesWithReference<signed char>(CharCompare, "char");
    AgreesWithReference<unsigned char>(ByteCompare, "byte");
    AgreesWithReference<std::int16_t>(ShortCompare, "short");
    AgreesWithReference<std::uint16_t>(WordCompare, "word");
    AgreesWithReference<std::int32_t>(IntCompare, "int");
    AgreesWithReference<std::uint32_t>(UnsignedCompare, "unsigned");
    AgreesWithReference<std::int32_t>(LongCompare, "long");
    AgreesWithReference<std::uint32_t>(DwordCompare, "dword");
    AgreesWithReference<float>(FloatCompare, "float");
    AgreesWithReference<double>(DoubleCompare, "double");
    AgreesWithReference<VqInt64>(Int64Compare, "int64");
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
    int error = 77;
    EXPECT_EQ(DoubleCompare(8, 0, nullptr, 0, nullptr, 0, 0, error), 0);
    EXPECT_EQ(error, VqStatus_Ok);
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
    double many[64] = {};
    many[63] = nan;
    EXPECT_EQ(DoubleCompare(8, 0, many, 0, many, 0, 64, error), -1);
    const double plus = 0.0, minus = -0.0;
    EXPECT_EQ(DoubleCompare(8, 0, &plus, 0, &minus, 0, 1, error), 0);
}

}  // namespace
