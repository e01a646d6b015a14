#include "vqtypcmp.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <memory>

#include "testsupport.h"

namespace {

using vqtest::Sign;

// A copy in a heap block of exactly its size, so that a sanitizer sees the first byte read behind it.
class Block {
  public:
    Block(const void* bytes, std::size_t size) : bytes_(new unsigned char[size]) {
        if (size != 0) std::memcpy(bytes_.get(), bytes, size);
    }
    const unsigned char* Get() const { return bytes_.get(); }

  private:
    std::unique_ptr<unsigned char[]> bytes_;
};

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

// --- Strings

std::vector<unsigned char> Record(const VqString& string, unsigned char format) {
    std::vector<unsigned char> record(StringSizeGet(&string, VqFormat_Memory, format, 1));
    StringStore(record.data(), &string, format, 1);
    return record;
}

std::vector<VqString> SomeStrings() {
    std::vector<VqString> strings = {"", "a", "A", "ab", "abc", "b", "Zebra", "zebra", "42"};
    strings.push_back(vqtest::In(1, "\xE9t\xE9", 3));
    strings.push_back(vqtest::In(1, std::string(300, 'x')));
    strings.push_back(vqtest::In(1, std::string(300, 'x') + "y"));
    strings.push_back(vqtest::Wide(u""));
    strings.push_back(vqtest::Wide(u"abc"));
    strings.push_back(vqtest::Wide(u"ab\u0416"));
    strings.push_back(vqtest::Wide(std::u16string(300, u'\u4E2D')));
    strings.emplace_back();
    strings.back().SetNullValue();
    return strings;
}

TEST(StringComparison, OfRecordsAgreesWithThatOfValues) {
    const std::vector<VqString> strings = SomeStrings();
    for (const VqString& a : strings) {
        for (const VqString& b : strings) {
            int error = 77;
            const int inMemory = Sign(StringCompare(8, 0, &a, 0, &b, VqCmp_Exact, 1, error));
            EXPECT_EQ(error, VqStatus_Ok);
            EXPECT_EQ(inMemory, Sign(a.Compare(b, -1, VqCmp_Exact)));
            EXPECT_EQ(Sign(StringCompare(8, 0, &a, 0, &b, VqCmp_Default, 1, error)), inMemory);
            for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
                const auto recordA = Record(a, format), recordB = Record(b, format);
                const Block first(recordA.data(), recordA.size()), second(recordB.data(), recordB.size());
                for (const auto compare : {StringCompare, LegacyStringCompare}) {
                    const int result =
                        compare(format, recordA.size(), first.Get(), 0, second.Get(), VqCmp_Exact, 1, error);
                    EXPECT_EQ(Sign(result), inMemory) << a.StrGet() << " " << b.StrGet();
                    EXPECT_EQ(error, VqStatus_Ok);
                }
            }
        }
    }
}

TEST(StringComparison, WalksArrays) {
    const VqString a[] = {"one", vqtest::Wide(u"two"), "", "four"}, b[] = {"one", vqtest::Wide(u"two"), "", "five"};
    unsigned char storedA[64], storedB[64];
    const unsigned long sizeA = StringStore(storedA, a, VqFormat_BigEndian, 4);
    const unsigned long sizeB = StringStore(storedB, b, VqFormat_BigEndian, 4);
    static const struct {
        unsigned long lacking, count;
        int result, error;
    } cases[] = {
        {0, 0, 0, VqStatus_Ok},         {0, 3, 0, VqStatus_Ok},
        {0, 4, 1, VqStatus_Ok},         {0, 5, 1, VqStatus_BufferEnd},  // told after the difference as well
        {10, 4, 0, VqStatus_BufferEnd}, {10, 3, 0, VqStatus_Ok},
    };
    for (const auto& c : cases) {
        const Block first(storedA, sizeA - c.lacking);
        int error = 77;
        EXPECT_EQ(Sign(StringCompare(VqFormat_BigEndian, sizeA - c.lacking, first.Get(), sizeB, storedB, VqCmp_Exact,
                                     c.count, error)),
                  c.result)
            << c.lacking << " " << c.count;
        EXPECT_EQ(error, c.error) << c.lacking << " " << c.count;
    }
    int error = 77;
    EXPECT_EQ(Sign(StringCompare(8, 0, a, 0, b, VqCmp_Exact, 4, error)), 1);
    EXPECT_EQ(Sign(StringCompare(8, 3 * sizeof(VqString), a, 0, b, VqCmp_Exact, 4, error)), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
}

// Every truncation, and every change of one byte, on either side: never a byte behind the block, and a defined status.
TEST(StringComparison, SurvivesDamagedRecords) {
    const VqString whole("abcdef"), wide = vqtest::Wide(u"abc"), longer = vqtest::Wide(std::u16string(150, u'x'));
    for (const VqString* string : {&whole, &wide, &longer}) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            const auto record = Record(*string, format);
            const auto check = [&](const std::vector<unsigned char>& bytes, bool truncated) {
                const Block block(bytes.data(), bytes.size());
                for (const bool swapped : {false, true}) {
                    const auto& [length1, value1] = std::pair(bytes.size(), block.Get());
                    const auto& [length2, value2] = std::pair(record.size(), record.data());
                    int error = 77;
                    if (swapped) {
                        StringCompare(format, length2, value2, length1, value1, VqCmp_Exact, 2, error);
                    } else {
                        StringCompare(format, length1, value1, length2, value2, VqCmp_Exact, 2, error);
                    }
                    EXPECT_TRUE(error == VqStatus_BufferEnd) << error;
                    StringCompare(format, length1, value1, length2, value2, 0, 1, error);
                    EXPECT_TRUE(truncated ? error == VqStatus_BufferEnd : error == 0 || error == VqStatus_BufferEnd);
                }
            };
            for (std::size_t size = 1; size < record.size(); ++size)
                check({record.begin(), record.begin() + static_cast<std::ptrdiff_t>(size)}, true);
            for (std::size_t at = 0; at < record.size(); ++at) {
                for (const int byte : {0, 1, 0x7F, 0x80, 0xFE, 0xFF, record[at] - 1, record[at] + 1}) {
                    auto bytes = record;
                    bytes[at] = static_cast<unsigned char>(byte);
                    check(bytes, false);
                }
            }
        }
    }
}

TEST(StringComparison, TellsADamagedHeader) {
    auto record = Record("abc", VqFormat_LittleEndian);
    const auto sound = record;
    record[2] = 254;
    record[3] = 129;
    int error = 77;
    StringCompare(1, record.size(), record.data(), sound.size(), sound.data(), VqCmp_Exact, 1, error);
    EXPECT_EQ(error, VqStatus_BufferEnd);
}

TEST(StringComparison, LegacyRecordsMayLackTheirTrailer) {
    const auto a = Record("abc", VqFormat_LittleEndian), b = Record("abd", VqFormat_LittleEndian);
    for (unsigned long lacking = 0; lacking <= 3; ++lacking) {
        const Block first(a.data(), a.size() - lacking);
        int error = 77;
        const int result =
            LegacyStringCompare(1, a.size() - lacking, first.Get(), b.size(), b.data(), VqCmp_Exact, 1, error);
        EXPECT_EQ(error, lacking <= 2 ? VqStatus_Ok : VqStatus_BufferEnd) << lacking;
        EXPECT_EQ(Sign(result), lacking <= 2 ? -1 : 0) << lacking;
    }
}

TEST(StringComparison, ReadsTheLegacyLayout) {
    const VqString a[] = {"one", "", "two"}, b[] = {"one", "", "tz"};
    unsigned char storedA[32], storedB[32];
    const unsigned long sizeA = LegacyStringStore(storedA, a, VqFormat_BigEndian, 3);
    const unsigned long sizeB = LegacyStringStore(storedB, b, VqFormat_BigEndian, 3);
    const Block first(storedA, sizeA), second(storedB, sizeB);
    int error = 77;
    EXPECT_EQ(Sign(LegacyStringCompare(2, sizeA, first.Get(), sizeB, second.Get(), VqCmp_Exact, 3, error)), -1);
    EXPECT_EQ(error, VqStatus_Ok);
    EXPECT_EQ(LegacyStringCompare(2, 0, first.Get(), 0, second.Get(), VqCmp_Exact, 2, error), 0);
    EXPECT_EQ(error, VqStatus_Ok);
    EXPECT_EQ(LegacyStringCompare(2, sizeA, first.Get(), sizeA, first.Get(), VqCmp_Exact, 4, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
}

TEST(StringComparison, TakesTheSecondTextAsAPatternUnlessExact) {
    const VqString text("abcdef"), pattern("a*f");
    const auto a = Record(text, VqFormat_LittleEndian), b = Record(pattern, VqFormat_LittleEndian);
    int error;
    EXPECT_EQ(StringCompare(1, a.size(), a.data(), b.size(), b.data(), 0, 1, error), 0);
    EXPECT_NE(StringCompare(1, a.size(), a.data(), b.size(), b.data(), VqCmp_Exact, 1, error), 0);
}

}  // namespace
