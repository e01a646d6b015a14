// Strings as keys, in memory and stored: order, cut keys, damaged records.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "testsupport.h"
#include "vqslots.h"
#include "vqtypcmp.h"

namespace {

using vqtest::Block;
using vqtest::Sign;

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
