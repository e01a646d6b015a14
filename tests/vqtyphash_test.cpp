#include "vqtyphash.h"

#include <gtest/gtest.h>

#include <bit>

#include "keyarrays.h"
#include "vqslots.h"
#include "vqtypes.h"

namespace {

using vqtest::KeyArray;
using vqtest::KeyOf;

constexpr std::uint32_t Multiplier = 1103515245;

// --- Against a plain loop

std::uint32_t WordOf(std::integral auto value) { return static_cast<std::uint32_t>(value); }
std::uint32_t WordOf(char value) { return static_cast<std::uint32_t>(static_cast<signed char>(value)); }
std::uint32_t WordOf(const VqInt64& value) { return value.low ^ static_cast<std::uint32_t>(value.high); }
std::uint32_t WordOf(float value) { return std::bit_cast<std::uint32_t>(value); }
std::uint32_t WordOf(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return static_cast<std::uint32_t>(bits) ^ static_cast<std::uint32_t>(bits >> 32);
}

template <class T>
std::uint32_t Reference(unsigned char format, unsigned long length, const unsigned char* values, unsigned long count,
                        int& error) {
    const unsigned long size = KeyOf<T>::Size(format), left = length == 0 ? count * size : length;
    std::uint32_t hash = 0;
    error = VqStatus_Ok;
    for (unsigned long i = 0; i < count; ++i) {
        if (left < (i + 1) * size) {
            error = VqStatus_BufferEnd;
            break;
        }
        const T value = KeyOf<T>::Load(values + i * size, format);
        if constexpr (vqtest::NullableKey<T>) {
            hash ^= value.IsNullValue() ? 0xFEFE7575 : WordOf(value.value) * Multiplier;
        } else {
            hash ^= WordOf(value);
        }
    }
    return vqtest::NullableKey<T> ? hash : hash * Multiplier;
}

template <class T>
void AgreesWithReference(VqHashFunc hash) {
    std::mt19937_64 random(11);
    const auto pick = [&](unsigned long n) { return static_cast<unsigned long>(random() % n); };
    for (int i = 0; i < 3000; ++i) {
        const unsigned long count = pick(i % 4 == 0 ? 300 : 40);
        const unsigned char format = vqtest::RandomFormat(random);
        KeyArray<T> keys(count, format, random);
        const unsigned long length = pick(2) == 0 || count == 0 ? 0 : 1 + pick(keys.Size());
        const typename KeyArray<T>::Cut cut(keys, length);
        int error = 77, expectedError = 77;
        const std::uint32_t expected = Reference<T>(format, length, cut.Get(), count, expectedError);
        ASSERT_EQ(hash(format, length, cut.Get(), count, error), expected) << i << ": " << count;
        ASSERT_EQ(error, expectedError) << i << ": " << length;

        // Keys that compare equal hash equal.
        if (count == 0) continue;
        keys.ChangeWhatDoesNotCount(pick(count), random);
        const typename KeyArray<T>::Cut changed(keys, length);
        ASSERT_EQ(hash(format, length, changed.Get(), count, error), expected) << i << ": " << count;
    }
}

template <class... Nulls>
void NullablesAgreeWithReference() {
    (AgreesWithReference<Nulls>(VqNullSlots<Nulls>::Hash), ...);
}

TEST(HashByType, AgreesWithAPlainLoop) {
    AgreesWithReference<signed char>(CharHash);
    AgreesWithReference<unsigned char>(ByteHash);
    AgreesWithReference<std::int16_t>(ShortHash);
    AgreesWithReference<std::uint16_t>(WordHash);
    AgreesWithReference<std::int32_t>(IntHash);
    AgreesWithReference<std::uint32_t>(UnsignedHash);
    AgreesWithReference<std::int32_t>(LongHash);
    AgreesWithReference<std::uint32_t>(DwordHash);
    AgreesWithReference<float>(FloatHash);
    AgreesWithReference<double>(DoubleHash);
    AgreesWithReference<VqInt64>(Int64Hash);
    NullablesAgreeWithReference<VqNull_char, VqNull_uchar, VqNull_short, VqNull_ushort, VqNull_int, VqNull_unsigned,
                                VqNull_long, VqNull_ulong, VqNull_float, VqNull_double, VqNull_VqInt64>();
}

// --- Codes that stand in indexes on disk

TEST(HashByType, NeverChanges) {
    static const struct {
        char id;
        const char* bytes;  // stored, high byte first
        unsigned long count;
        std::uint32_t code;
    } cases[] = {
        // clang-format off
        {VqTypeId_char,          "\x80",                      1, 0x1CD8C980},
        {VqTypeId_VqByte,        "\x80",                      1, 0xE3273680},
        {VqTypeId_char,          "\x05\x05",                  2, 0},
        {VqTypeId_short,         "\xFF\xFE",                  1, 0x7C736326},
        {VqTypeId_VqWord,        "\xFF\xFE",                  1, 0xCAE06326},
        {VqTypeId_long,          "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_VqDWord,       "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_int,           "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_unsigned,      "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_enum,          "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_BlockId,       "\x12\x34\x56\x78",          1, 0x0B716118},
        {VqTypeId_float,         "\x3F\xC0\0\0",              1, 0xA4C00000},
        {VqTypeId_d_Interval,    "\x3F\xC0\0\0",              1, 0xA4C00000},
        {VqTypeId_double,        "\x3F\xF8\0\0\0\0\0\1",      1, 0x0E5E4E6D},
        {VqTypeId_VqInt64,       "\0\0\0\1\x80\0\0\0",      1, 0xC1C64E6D},
        {VqTypeId_VqNull_short,  "\1\0\0",                   1, 0xFEFE7575},
        {VqTypeId_VqNull_short,  "\0\xFF\xFE",               1, 0x7C736326},
        {VqTypeId_VqNull_double, "\1\0\0\0\0\0\0\0\0" "\1\0\0\0\0\0\0\0\0", 2, 0},
        // clang-format on
    };
    const VqTypeMgr manager(5);
    for (const auto& c : cases) {
        int error = 77;
        EXPECT_EQ(manager.Hash(c.id, 0, c.bytes, c.count, VqFormat_BigEndian, error), c.code) << &c - cases;
        EXPECT_EQ(error, VqStatus_Ok);
    }
}

}  // namespace
