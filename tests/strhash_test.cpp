#include "strhash.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "../src/hash9.h"
#include "stringiterator.h"
#include "testsupport.h"
#include "vqcollation.h"
#include "vqslots.h"
#include "vqtyphash.h"

using namespace vqtest;

namespace {

// What is hashed, unit by unit.
template <class Value>
std::uint32_t Fold(std::size_t n, Value value) {
    std::uint32_t h = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const auto [unit, v] = value(i);
        if (unit == 0) break;
        h = h * 9 + static_cast<std::uint32_t>(v);
    }
    return h;
}

template <vq::HashUnit unit>
std::uint32_t Slow(const unsigned char* text, std::size_t n) {
    return Fold(n, [text](std::size_t i) {
        std::uint16_t word = text[i];
        if constexpr (vq::HashTraits<unit>::IsWide) std::memcpy(&word, text + 2 * i, 2);
        int v = word;
        if constexpr (unit == vq::HashUnit::SignedByte) v = static_cast<signed char>(text[i]);
        if constexpr (vq::HashTraits<unit>::IsLow) v &= 127;
        return std::pair(word, v);
    });
}

// Texts that end with their block, so that a sanitizer sees every byte read behind them.
template <vq::HashUnit unit>
void CompareKernels() {
    std::mt19937 random(9);
    for (std::size_t n = 0; n <= 600; ++n) {
        const std::size_t size = n * vq::HashTraits<unit>::Size;
        const std::unique_ptr<unsigned char[]> text(new unsigned char[size]);
        for (const unsigned zeros : {0u, 1u, 2u}) {
            for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<unsigned char>(random() | 1);
            for (unsigned k = 0; k < zeros && n != 0; ++k) {
                std::fill_n(&text[random() % n * vq::HashTraits<unit>::Size], vq::HashTraits<unit>::Size, 0);
            }
            const std::uint32_t expected = Slow<unit>(text.get(), n);
            for (const vq::HashKernel& kernel : vq::hashKernels<unit>) {
                if (!kernel.supported()) continue;
                ASSERT_EQ(kernel.hash(text.get(), size), expected)
                    << kernel.name << " " << n << " units, " << zeros << " zeros";
            }
        }
    }
}

TEST(Hash9, EveryKernelGivesWhatTheLoopGives) {
    CompareKernels<vq::HashUnit::SignedByte>();
    CompareKernels<vq::HashUnit::Byte>();
    CompareKernels<vq::HashUnit::LowBitsOfByte>();
    CompareKernels<vq::HashUnit::Word>();
    CompareKernels<vq::HashUnit::LowBitsOfWord>();
}

TEST(HashVqString, ReadsUnitsInUnicodeAndSignedBytesElsewhere) {
    VqString gbk(226, 0);
    const unsigned short units[] = {0x6162, 0x0063, 0x6465};
    gbk.AssignChars(units, 226, 3);
    static const struct {
        VqString string;
        std::uint32_t hash, hash7;
    } cases[] = {
        {VqString(), 0, 0},
        {VqString("a"), 97, 97},
        {VqString("ab"), 971, 971},
        {VqString("\xC8"), static_cast<std::uint32_t>(-56), 72},
        {In(1, std::string("a\0b", 3)), 97, 97},
        {Wide(u"\uFFFF\u0101"), 0xFFFF * 9 + 0x101, 127 * 9 + 1},
        {gbk, (0x62 * 9 + 0x61) * 9 + 0x63, (0x62 * 9 + 0x61) * 9 + 0x63},  // low bytes first, up to a zero byte
        {VqString("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"), 0x69452D88, 0x69452D88},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HashVqString(c.string), c.hash) << c.string.StrGet();
        EXPECT_EQ(HashVqString7(c.string), c.hash7) << c.string.StrGet();
    }
}

std::uint32_t HashOf(const VqString& s, short n = -1) {
    return HashString(s.GetCodeSet(), s.GetLanguage(), s.StrGet(), n, 255);
}

TEST(HashString, NullAndBounds) {
    EXPECT_EQ(HashString(1, 254, "text", -1, 255), 0xFEFE7575);
    EXPECT_EQ(HashString(254, 0, "text", 0, 255), 0xFEFE7575);
    EXPECT_EQ(HashString(1, 0, "text", 0, 255), 0u);
    EXPECT_EQ(HashString(0, 0, "ab", -1, 255), 971u);
    EXPECT_EQ(HashString(0, 0, "abc", 2, 255), 971u);
    EXPECT_EQ(HashString(0, 0, "ab", 5, 255), 971u);
    EXPECT_EQ(HashString(0, 0, "\xC8", -1, 255), 200u);
    EXPECT_EQ(HashString(1, 0, nullptr, -1, 255), 0u);
    EXPECT_EQ(HashString(1, 14, "ch", 1, 255), HashString(1, 14, "c", -1, 255)) << "Czech ch, cut";
    EXPECT_EQ(HashString(1, 16, "adzs", 3, 255), HashString(1, 16, "adz", -1, 255)) << "Hungarian dzs, cut";
    EXPECT_EQ(HashOf("abc", 2), HashOf("ab"));
    EXPECT_EQ(HashOf("ab", 7), HashOf("ab"));
}

TEST(HashString, FoldsTheKeysOfTheIterator) {
    std::mt19937 random(27);
    const unsigned char languages[] = {0, 2, 8, 14, 16, 18, 20};
    for (int round = 0; round < 4000; ++round) {
        const unsigned char language = languages[random() % std::size(languages)];
        const std::size_t n = random() % 12;
        VqString s;
        if (round % 2 == 0) {
            std::string text;
            for (std::size_t i = 0; i < n; ++i) text += static_cast<char>(random() % 255 + 1);
            s = In(static_cast<unsigned char>(1 + random() % 14), text, language);
        } else {
            std::u16string text;
            for (std::size_t i = 0; i < n; ++i) {
                const unsigned most[] = {0x80, 0x24F, 0x530, 0xFFFF};
                text += static_cast<char16_t>(random() % most[random() % 4] + 1);
            }
            s = Wide(text);
            s.SetLanguage(language);
        }
        VqStringIterator at(s);
        std::uint32_t expected = 0;
        while (!at.IsEnd()) {
            expected =
                expected * 9 + static_cast<std::uint32_t>(VqCollationKey(at.GetNextOrder(1), at.GetCollationClass()));
        }
        ASSERT_EQ(HashOf(s), expected) << int{s.GetCodeSet()} << " " << Hex(s.StrGet(), s.GetSize());
    }
}

TEST(HashString, ReadsSwappedUnits) {
    const unsigned short native[] = {'a', 0xE9, 0x4E2D, 0}, swapped[] = {0x6100, 0xE900, 0x2D4E, 0};
    EXPECT_EQ(HashString(253, 0, reinterpret_cast<const char*>(swapped), -1, 2),
              HashString(253, 0, reinterpret_cast<const char*>(native), -1, 255));
}

// --- Hashing by type

unsigned long Hash(VqHashFunc function, const std::vector<unsigned char>& bytes, unsigned long count, int& error,
                   unsigned char format = VqFormat_BigEndian) {
    return function(format, static_cast<unsigned long>(bytes.size()), bytes.data(), count, error);
}

TEST(StringHash, CombinesTheElements) {
    const VqString strings[] = {"one", "two", "one"};
    int error = 77;
    const auto code = [](const VqString& s) { return HashOf(s) * 1103515245u; };
    EXPECT_EQ(StringHash(8, 0, strings, 0, error), 0u);
    EXPECT_EQ(StringHash(8, 0, strings, 1, error), code("one"));
    EXPECT_EQ(StringHash(8, 0, strings, 2, error), (HashOf("one") ^ HashOf("two")) * 1103515245u);
    EXPECT_EQ(StringHash(8, 0, strings, 3, error), code("two"));
    EXPECT_EQ(error, VqStatus_Ok);
    EXPECT_EQ(StringHash(8, sizeof(VqString), strings, 2, error), code("one"));
    EXPECT_EQ(error, VqStatus_BufferEnd);
}

TEST(StringHash, TakesClippedRecordsAsFarAsTheyGo) {
    const VqString text("abcdef"), longer(std::string(300, 'x').c_str());
    std::vector<unsigned char> record(StringSizeGet(&text, 8, 2, 1)), large(StringSizeGet(&longer, 8, 2, 1));
    StringStore(record.data(), &text, 2, 1);
    StringStore(large.data(), &longer, 2, 1);
    int error = 77;
    EXPECT_EQ(Hash(StringHash, {record.begin(), record.begin() + 7}, 1, error), HashOf("abc") * 1103515245u);
    EXPECT_EQ(error, VqStatus_Ok);
    EXPECT_EQ(Hash(StringHash, {record.begin(), record.begin() + 4}, 1, error), 0u);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(Hash(StringHash, {large.begin(), large.begin() + 256}, 1, error), 0u);
    EXPECT_EQ(error, VqStatus_NotSupported);
    EXPECT_EQ(Hash(StringHash, {large.begin(), large.begin() + 255}, 1, error),
              HashOf(VqString(std::string(251, 'x').c_str())) * 1103515245u);
    EXPECT_EQ(Hash(LegacyStringHash, {record.begin(), record.end() - 2}, 1, error), HashOf("abcdef") * 1103515245u);
    EXPECT_EQ(error, VqStatus_Ok);
    record[2] = 254;
    record[3] = 130;
    Hash(StringHash, record, 1, error);
    EXPECT_EQ(error, VqStatus_Ok);
}

}  // namespace
