#include "byteorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "../../platform/base/src/byteswap.h"
#include "memfile.h"

namespace {

using Bytes = std::vector<unsigned char>;
using StoreFunction = unsigned long (*)(void*, const void*, unsigned char, unsigned long);
using SizeFunction = unsigned long (*)(const void*, unsigned char, unsigned char, unsigned long);
using NullSizeFunction = unsigned long (*)(unsigned long);
using FileSizeFunction = unsigned long (*)(MemFile*, unsigned char, unsigned long);

constexpr unsigned char Little = 1, Big = 2, Memory = 8;

struct Scalar {
    const char* name;
    std::size_t width;
    StoreFunction store, load;
    SizeFunction size;
    NullSizeFunction nullSize;
    FileSizeFunction fileSize;
};

#define SCALAR(Type, width, Store, Load) \
    { #Type, width, Store, Load, Type##SizeGet, Type##NullSizeGet, Type##SizeGetFromMemFile }
const Scalar Scalars[] = {
    SCALAR(Char, 1, CharStore, CharStore),
    SCALAR(Short, 2, ShortStore, ShortStore),
    SCALAR(Long, 4, LongStore, LongStore),
    SCALAR(Float, 4, FloatStore, FloatStore),
    SCALAR(Double, 8, DoubleStore, DoubleStore),
    SCALAR(Int, 4, IntStore, IntLoad),
    SCALAR(Unsigned, 4, UnsignedStore, UnsignedLoad),
};

Bytes RandomBytes(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size) + 1);
    Bytes bytes(size);
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    return bytes;
}

// The slow, obvious way: the bytes of each value from back to front.
Bytes Mirrored(Bytes bytes, std::size_t width) {
    for (std::size_t i = 0; i < bytes.size(); i += width) std::reverse(&bytes[i], &bytes[i] + width);
    return bytes;
}

// Runs a conversion from one place of the given alignment to another, or in place, with no room around either.
template <class Convert>
Bytes Converted(const Bytes& input, std::size_t dstOffset, std::size_t srcOffset, bool inPlace, Convert convert) {
    Bytes from(srcOffset + input.size()), to(dstOffset + input.size(), 0xEE);
    std::copy(input.begin(), input.end(), from.data() + srcOffset);
    Bytes& target = inPlace ? from : to;
    const std::size_t offset = inPlace ? srcOffset : dstOffset;
    convert(target.data() + offset, from.data() + srcOffset);
    EXPECT_TRUE(inPlace || std::all_of(to.data(), to.data() + dstOffset, [](int byte) { return byte == 0xEE; }));
    return Bytes(target.data() + offset, target.data() + target.size());
}

TEST(ByteOrder, HasTheseBytes) {
    const std::int16_t shorts[] = {0x0102, -2};
    const std::int32_t longs[] = {0x01020304, -2};
    const float floats[] = {1.5F};
    const double doubles[] = {-0.1};
    const struct {
        StoreFunction store;
        const void* values;
        unsigned long count;
        Bytes big, little;
    } cases[] = {
        {CharStore, "\x01\xFF", 2, {1, 0xFF}, {1, 0xFF}},
        {ShortStore, shorts, 2, {1, 2, 0xFF, 0xFE}, {2, 1, 0xFE, 0xFF}},
        {LongStore, longs, 2, {1, 2, 3, 4, 0xFF, 0xFF, 0xFF, 0xFE}, {4, 3, 2, 1, 0xFE, 0xFF, 0xFF, 0xFF}},
        {IntStore, longs, 1, {1, 2, 3, 4}, {4, 3, 2, 1}},
        {UnsignedStore, longs, 1, {1, 2, 3, 4}, {4, 3, 2, 1}},
        {FloatStore, floats, 1, {0x3F, 0xC0, 0, 0}, {0, 0, 0xC0, 0x3F}},
        {DoubleStore,
         doubles,
         1,
         {0xBF, 0xB9, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A},
         {0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0xBF}},
    };
    for (const auto& c : cases) {
        for (unsigned format = 0; format < 256; ++format) {
            if ((format & 0x0F) == Memory) continue;
            Bytes stored(c.big.size());
            EXPECT_EQ(c.store(stored.data(), c.values, static_cast<unsigned char>(format), c.count), stored.size());
            EXPECT_EQ(stored, (format & 0x0F) == Big ? c.big : c.little) << "format " << format;
        }
    }
}

// All targets are little-endian, so only the big-endian form differs from memory.
TEST(ByteOrder, ConvertsEveryCountAnywhere) {
    for (const Scalar& scalar : Scalars) {
        for (unsigned long count = 0; count <= 300; ++count) {
            const Bytes values = RandomBytes(count * scalar.width);
            const std::size_t offset = count % 7;
            for (unsigned char format : {Little, Big, Memory}) {
                SCOPED_TRACE(testing::Message() << scalar.name << ' ' << count << " format " << int{format});
                const Bytes expected = format == Big ? Mirrored(values, scalar.width) : values;
                const auto with = [&](StoreFunction convert) {
                    return [&, convert](auto* dst, auto* src) {
                        EXPECT_EQ(convert(dst, src, format, count), values.size());
                    };
                };
                for (bool inPlace : {false, true}) {
                    EXPECT_EQ(Converted(values, offset, offset / 2, inPlace, with(scalar.store)), expected);
                    EXPECT_EQ(Converted(expected, offset / 2, offset, inPlace, with(scalar.load)), values);
                }
            }
        }
    }
}

template <class Word>
class ByteSwap : public testing::Test {};
using Words = testing::Types<std::uint16_t, std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(ByteSwap, Words);

TYPED_TEST(ByteSwap, KernelsAgreeWithTheSlowWay) {
    for (const vq::SwapKernel& kernel : vq::SwapKernels<TypeParam>) {
        if (!kernel.supported()) {
            std::printf("not on this processor: %s\n", kernel.name);
            continue;
        }
        for (std::size_t size = vq::LeastKernelSize; size <= 300 * sizeof(TypeParam); size += sizeof(TypeParam)) {
            const Bytes values = RandomBytes(size);
            const Bytes expected = Mirrored(values, sizeof(TypeParam));
            const auto swap = [&](auto* dst, auto* src) { kernel.swap(dst, src, size); };
            for (std::size_t offset = 0; offset < 66; offset += 5) {
                ASSERT_EQ(Converted(values, offset, offset / 3, false, swap), expected) << kernel.name << ' ' << size;
                ASSERT_EQ(Converted(values, offset, offset, true, swap), expected) << kernel.name << ' ' << size;
            }
        }
    }
}

TEST(ByteOrder, SizesAreWidthTimesCount) {
    MemFile file("abcdef", 6);
    ASSERT_NE(file.Seek(2, 1), nullptr);
    for (const Scalar& scalar : Scalars) {
        for (unsigned long count : {0UL, 1UL, 7UL, 100000000UL}) {
            const unsigned long expected = static_cast<unsigned long>(scalar.width) * count;
            EXPECT_EQ(scalar.size(nullptr, Memory, Big, count), expected) << scalar.name;
            EXPECT_EQ(scalar.nullSize(count), expected) << scalar.name;
            EXPECT_EQ(scalar.fileSize(&file, Little, count), expected) << scalar.name;
            EXPECT_EQ(file.Position(), 2U);
        }
        EXPECT_EQ(scalar.store(nullptr, nullptr, Big, 0), 0U) << scalar.name;
        EXPECT_EQ(scalar.load(nullptr, nullptr, Memory, 0), 0U) << scalar.name;
    }
}

TEST(MemFile, SeeksOnlyWhereBytesAre) {
    constexpr unsigned long Huge = ~0UL;
    const unsigned char bytes[4] = {10, 11, 12, 13};
    const struct {
        unsigned long position, length;
        bool readable;
    } cases[] = {
        {0, 4, true},  {0, 5, false}, {3, 1, true},     {3, 2, false},    {4, 0, true},
        {4, 1, false}, {5, 0, false}, {1, Huge, false}, {Huge, 1, false}, {Huge, 2, false},
    };
    for (const auto& c : cases) {
        MemFile file(bytes, sizeof bytes);
        ASSERT_EQ(file.Seek(2, 1), bytes + 2);
        EXPECT_EQ(file.Seek(c.position, c.length), c.readable ? bytes + c.position : nullptr) << c.position;
        EXPECT_EQ(file.Position(), c.readable ? c.position : 2) << c.position;
    }
    MemFile nothing(nullptr, 9);
    EXPECT_EQ(nothing.Size(), 0U);
    EXPECT_NE(nothing.Seek(0, 0), nullptr);
    EXPECT_EQ(nothing.Seek(0, 1), nullptr);
}

}  // namespace
