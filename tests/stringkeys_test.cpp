// Strings as keys, in memory and stored: order, cut keys, damaged records.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "testsupport.h"
#include "vqchar.h"
#include "vqslots.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

using vqtest::Block;
using vqtest::Sign;

std::vector<unsigned char> Record(const VqString& string, unsigned char format) {
    std::vector<unsigned char> record(StringSizeGet(&string, VqFormat_Memory, format, 1));
    StringStore(record.data(), &string, format, 1);
    return record;
}

// Whole records of one set and language are compared without a walk.
TEST(StringComparison, OfSimilarRecordsAgreesWithThatOfValues) {
    std::mt19937 random(51);
    const auto pick = [&random](auto from) {
        return *(std::begin(from) + static_cast<std::ptrdiff_t>(random() % std::size(from)));
    };
    using Numbers = std::initializer_list<unsigned char>;
    const std::string characters("aAbcdhsz\xDF\xE4\xE9 aAbcdhsz\0", 21);  // texts end at the first zero character
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 40, 'x');
        for (char& c : text) c = pick(characters);
        std::string other = text;
        for (auto edits = random() % 3; edits != 0; --edits) {
            other.insert(random() % (other.size() + 1), 1, pick(std::string("aAhz\xDF\xE4")));
        }
        const unsigned char codeSet = pick(Numbers{0, 1, 2, 12, 253}), language = pick(Numbers{0, 2, 8, 14, 16});
        VqString a = vqtest::In(1, text, language), b = vqtest::In(1, other, language);
        a.MapToCodeSet(codeSet);
        b.MapToCodeSet(random() % 8 != 0 ? codeSet : static_cast<unsigned char>(1));
        const auto flags = static_cast<unsigned short>(VqCmp_Exact | (random() & (VqCmp_IgnoreCase | VqCmp_KeyOnly)));
        const unsigned char format = pick(Numbers{VqFormat_LittleEndian, VqFormat_BigEndian});
        const auto recordA = Record(a, format), recordB = Record(b, format);
        const Block first(recordA.data(), recordA.size()), second(recordB.data(), recordB.size());
        int error = 77;
        ASSERT_EQ(
            Sign(StringCompare(format, recordA.size(), first.Get(), recordB.size(), second.Get(), flags, 1, error)),
            Sign(a.Compare(b, -1, flags)))
            << text << " and " << other << " in " << int{codeSet} << ", language " << int{language} << " " << flags;
        ASSERT_EQ(error, VqStatus_Ok);
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
                const bool large = bytes.size() >= 256;  // no clipped key
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
                    EXPECT_TRUE((error == VqStatus_BufferEnd && !(large && truncated)) ||
                                (error == VqStatus_NotSupported && large))
                        << error << " of " << bytes.size();
                    StringCompare(format, length1, value1, length2, value2, 0, 1, error);
                    EXPECT_TRUE(error == VqStatus_Ok ? !truncated : large || error == VqStatus_BufferEnd) << error;
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

// A record of the text; from '|' on, where it has one, the bytes are missing.
std::vector<unsigned char> CutRecord(const char* text, unsigned char codeSet, unsigned char format) {
    std::string whole = text;
    const std::size_t cut = whole.find('|');
    if (cut != std::string::npos) whole.erase(cut, 1);
    VqString string = vqtest::In(1, whole);
    string.MapToCodeSet(codeSet);
    auto record = Record(string, format);
    if (cut != std::string::npos) record.resize(4 + cut * (codeSet == 253 ? 2 : 1));
    return record;
}

int CompareRecords(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b, unsigned char format,
                   unsigned short flags, int& error) {
    const Block first(a.data(), a.size()), second(b.data(), b.size());
    return Sign(StringCompare(format, a.size(), first.Get(), b.size(), second.Get(), flags, 1, error));
}

struct CutCase {
    const char *a, *b;
    unsigned short flags;
    int result;
    bool decided;  // else VqStatus_BufferEnd
};

constexpr unsigned short Pattern = 0, Report = VqCmp_Exact | VqCmp_Report;

constexpr CutCase cutCases[] = {
    // As far as the first goes, or to the end of the second.
    {"abc|def", "abcdef", VqCmp_Exact, 0, false},
    {"abc|def", "abd", VqCmp_Exact, -1, false},
    {"abc|def", "ab", VqCmp_Exact, 1, true},
    {"abc|def", "b", VqCmp_Exact, -1, true},
    {"abc|def", "abc", VqCmp_Exact, 1, false},
    {"abc|def", "abc", VqCmp_KeyOnly, 1, false},
    {"abcdef|", "abcdef", VqCmp_Exact, 0, false},  // nothing but the trailer is missing
    {"abC|def", "abcd", VqCmp_Exact, 1, false},
    {"abC|def", "abcd", VqCmp_Exact | VqCmp_IgnoreCase, 0, false},
    // The same for the second, and for both.
    {"abcd", "abc|def", VqCmp_Exact, 0, false},
    {"abc", "abc|def", VqCmp_Exact, -1, false},
    {"ab", "abc|def", VqCmp_Exact, -1, true},
    {"abx|c", "aby|c", VqCmp_Exact, -1, false},
    {"abc|d", "ab|d", VqCmp_Exact, 0, false},
    // What a pattern says before its first wildcard.
    {"abc|def", "ab*", Pattern, 0, true},
    {"abc|def", "abc*", Pattern, 0, true},
    {"abc|def", "abd*", Pattern, -1, true},
    {"abc|def", "*", Pattern, 0, true},
    {"abc|def", "ab*f", Pattern, 0, false},
    {"abc|def", "ab*", Pattern | VqCmp_Report, 0, false},
    {"abc|def", "abcd*", Pattern, 0, false},  // the '*' is behind the cut
    {"abc|def", "abcdef", Pattern, 0, false},
    {"abc|def", "ab", Pattern, 1, true},
    {"abcdef", "ab*|x", Pattern, 0, false},
    {"abcdef", "abc|*", Pattern, 0, false},
    {"ab", "abc*|x", Pattern, -1, false},
    {"abc|def", "a*", VqCmp_Exact, 1, true},  // no pattern
    {"x|", "a*", VqCmp_Exact, 1, false},
    // Letters alone, and never more than a part of the answer.
    {"abC|def", "abcd", Report, 0, false},
    {"abC|def", "abd", Report, -1, false},
    {"abc|def", "ab", Report, 1, false},
    {"ab", "abc|def", Report, -1, false},
};

TEST(StringComparison, TakesClippedKeysAsFarAsTheyGo) {
    for (const CutCase& c : cutCases) {
        for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 253}) {
            for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
                int error = 77;
                EXPECT_EQ(CompareRecords(CutRecord(c.a, codeSet, format), CutRecord(c.b, codeSet, format), format,
                                         c.flags, error),
                          c.result)
                    << c.a << " " << c.b << " in " << int{codeSet} << ", flags " << c.flags;
                EXPECT_EQ(error, c.decided ? VqStatus_Ok : VqStatus_BufferEnd) << c.a << " " << c.b;
            }
        }
        // Characters of the two sets count alike.
        int error = 77;
        EXPECT_EQ(CompareRecords(CutRecord(c.a, 1, 1), CutRecord(c.b, 253, 1), 1, c.flags, error), c.result)
            << c.a << " " << c.b;
    }
}

// Native texts have no levels, so that nothing is reported; what they say themselves stands.
TEST(StringComparison, TakesClippedNativeKeysByTheirBytes) {
    static constexpr CutCase cases[] = {
        {"ab|c", "ac", Report, -1, false}, {"ab|c", "ab", Report, 0, false},   {"ab|c", "ab", VqCmp_Exact, 1, false},
        {"ab|c", "a*", Pattern, 0, true},  {"ab|c", "a?c", Pattern, 0, false}, {"ab|c", "A", VqCmp_Exact, 1, true},
    };
    for (const CutCase& c : cases) {
        auto a = CutRecord(c.a, 1, 1), b = CutRecord(c.b, 1, 1);
        a[2] = b[2] = 0;
        int error = 77;
        EXPECT_EQ(CompareRecords(a, b, 1, c.flags, error), c.result) << c.a << " " << c.b;
        EXPECT_EQ(error, c.decided ? VqStatus_Ok : VqStatus_BufferEnd) << c.a << " " << c.b;
    }
}

TEST(StringComparison, AnEscapeCharacterEndsWhatAClippedKeyIsComparedWith) {
    VqString::SetEscape(VqChar('!', 1, 0));
    int error = 77;
    EXPECT_EQ(CompareRecords(CutRecord("a*b|cc", 1, 1), CutRecord("a!*b*", 1, 1), 1, Pattern, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    VqString::SetEscape(VqChar(0, 1, 0));
    EXPECT_EQ(CompareRecords(CutRecord("a*b|cc", 1, 1), CutRecord("a!*b*", 1, 1), 1, Pattern, error), 1);
}

// A native pattern is read by letters where the text is of another set, else by bytes.
TEST(StringComparison, ReadsTheWildcardsOfANativePatternAsTheTextAsks) {
    static const struct {
        unsigned char codeSet;
        const char* pattern;
        int result, error;
    } cases[] = {
        {1, "ab%", 0, VqStatus_Ok}, {1, "ab*", 1, VqStatus_BufferEnd}, {0, "ab%", 1, VqStatus_BufferEnd},
        {0, "ab*", 0, VqStatus_Ok}, {253, "ab%", 0, VqStatus_Ok},
    };
    VqString::SetAsterisk(VqChar('%', 1, 0));
    for (const auto& c : cases) {
        auto pattern = CutRecord(c.pattern, 1, 1), text = CutRecord("abc|d", c.codeSet == 253 ? 253 : 1, 1);
        pattern[2] = 0;
        text[2] = c.codeSet;
        int error = 77;
        EXPECT_EQ(CompareRecords(text, pattern, 1, Pattern, error), c.result) << int{c.codeSet} << c.pattern;
        EXPECT_EQ(error, c.error) << int{c.codeSet} << c.pattern;
    }
    VqString::SetAsterisk(VqChar('*', 1, 0));
}

TEST(StringComparison, RefusesWhatNoClippingLeaves) {
    const auto large = Record(VqString(std::string(300, 'x').c_str()), 1);
    const auto small = Record(VqString("x"), 1);
    for (const std::size_t size : {254u, 255u, 256u, 303u, 304u}) {
        const std::vector<unsigned char> cut(large.begin(), large.begin() + static_cast<std::ptrdiff_t>(size));
        const bool refused = size >= 256 && size < large.size();
        int error = 77;
        EXPECT_EQ(CompareRecords(cut, small, 1, VqCmp_Exact, error), refused ? -1 : 1) << size;
        EXPECT_EQ(error, refused ? VqStatus_NotSupported : VqStatus_Ok) << size;
        EXPECT_EQ(CompareRecords(small, cut, 1, VqCmp_Exact, error), -1) << size;
        EXPECT_EQ(error, refused ? VqStatus_NotSupported : VqStatus_Ok) << size;
    }
}

// Of a pattern under a damaged header only the beginning counts. Null's language is damaged under this set as well.
TEST(StringComparison, TellsADamagedHeader) {
    const auto text = Record(vqtest::Wide(u"abcdef"), 1), beginning = Record(vqtest::Wide(u"abc"), 1);
    static const struct {
        unsigned char language;
        unsigned short flags;
        int result;
    } cases[] = {{129, VqCmp_Exact, 1}, {129, VqCmp_KeyOnly, 1}, {129, Pattern, 0}, {254, VqCmp_Exact, 1}};
    for (const auto& c : cases) {
        auto damaged = beginning;
        damaged[2] = 254;
        damaged[3] = c.language;
        int error = 77;
        EXPECT_EQ(CompareRecords(text, damaged, 1, c.flags, error), c.result) << c.flags;
        EXPECT_EQ(error, VqStatus_BufferEnd);
        EXPECT_EQ(CompareRecords(damaged, text, 1, c.flags, error), -1) << c.flags;
        EXPECT_EQ(error, VqStatus_BufferEnd);
        EXPECT_EQ(CompareRecords(damaged, beginning, 1, c.flags, error), 0) << c.flags;
        EXPECT_EQ(error, VqStatus_BufferEnd);
    }
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
        const unsigned long code = LegacyStringHash(1, a.size() - lacking, first.Get(), 1, error);
        EXPECT_EQ(error, VqStatus_Ok) << lacking;
        EXPECT_EQ(code == LegacyStringHash(1, a.size(), a.data(), 1, error), lacking <= 2) << lacking;
    }
}

// An area of texts, each with a zero byte behind it; '|' in a text is where the area is clipped.
std::vector<unsigned char> LegacyArea(std::string texts, unsigned char format) {
    const std::size_t clip = texts.find('|');
    if (clip != std::string::npos) texts.erase(clip, 1);
    std::vector<unsigned char> area(2 + texts.size());
    area[format == VqFormat_BigEndian] = static_cast<unsigned char>(texts.size());
    area[format != VqFormat_BigEndian] = static_cast<unsigned char>(texts.size() >> 8);
    std::copy(texts.begin(), texts.end(), area.begin() + 2);
    area.resize(2 + std::min(clip, texts.size()));
    return area;
}

TEST(StringComparison, TakesClippedLegacyAreasAsFarAsTheyGo) {
    using namespace std::string_literals;
    static const struct {
        std::string a, b;
        unsigned long count;
        int currentResult, currentError, legacyResult, legacyError;
    } cases[] = {
        {"abcd|ef\0"s, "abcdef\0"s, 1, 0, VqStatus_BufferEnd, 0, VqStatus_BufferEnd},
        {"abcd|ef\0"s, "abdd|ef\0"s, 1, -1, VqStatus_BufferEnd, -1, VqStatus_BufferEnd},
        {"zbcd|ef\0"s, "abcdef\0"s, 1, 1, VqStatus_BufferEnd, 1, VqStatus_BufferEnd},
        {"zbcd|ef\0"s, "y\0"s, 1, 1, VqStatus_Ok, 1, VqStatus_Ok},
        {"abcdef\0"s, "abcd|efgh\0"s, 1, 0, VqStatus_BufferEnd, 0, VqStatus_BufferEnd},
        // Of two bytes that legacy keys may lack the last text's zero byte is one.
        {"abcdef|\0"s, "abcdefg\0"s, 1, 0, VqStatus_BufferEnd, -1, VqStatus_Ok},
        {"abcdef|\0"s, "abcdef\0"s, 1, 0, VqStatus_BufferEnd, 0, VqStatus_Ok},
        {"abcde|f\0"s, "abcdef\0"s, 1, 0, VqStatus_BufferEnd, -1, VqStatus_Ok},
        {"ab\0cde|f\0"s, "ab\0cd\0"s, 1, 0, VqStatus_Ok, 0, VqStatus_Ok},
        {"ab\0cde|fgh\0"s, "ab\0cd\0"s, 2, 1, VqStatus_Ok, 1, VqStatus_Ok},
        {"ab\0|cd\0"s, "ab\0cd\0"s, 2, 0, VqStatus_BufferEnd, 0, VqStatus_BufferEnd},
        {"one\0\0two\0"s, "one\0\0tz\0"s, 3, -1, VqStatus_Ok, -1, VqStatus_Ok},
        {"one\0\0two\0"s, "one\0\0tz\0"s, 2, 0, VqStatus_Ok, 0, VqStatus_Ok},
        // Whole areas that end with an empty text.
        {"ab\0\0"s, "ab\0\0"s, 1, 0, VqStatus_Ok, 0, VqStatus_Ok},
        {"ab\0\0"s, "ab\0\0"s, 2, 0, VqStatus_Ok, 0, VqStatus_Ok},
        {"ab\0\0"s, "ab\0\0"s, 3, 0, VqStatus_BufferEnd, 0, VqStatus_BufferEnd},
        {"\0"s, "\0"s, 1, 0, VqStatus_Ok, 0, VqStatus_Ok},
    };
    for (const auto& c : cases) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            SCOPED_TRACE(c.a + " and " + c.b);
            const auto a = LegacyArea(c.a, format), b = LegacyArea(c.b, format);
            const Block first(a.data(), a.size()), second(b.data(), b.size());
            const auto compare = [&](VqCompareFunc function, int& error) {
                return Sign(
                    function(format, a.size(), first.Get(), b.size(), second.Get(), VqCmp_Exact, c.count, error));
            };
            int error = 77;
            EXPECT_EQ(compare(StringCompare, error), c.currentResult);
            EXPECT_EQ(error, c.currentError);
            EXPECT_EQ(compare(LegacyStringCompare, error), c.legacyResult);
            EXPECT_EQ(error, c.legacyError);
        }
    }
}

// Clipped as an index clips them, and where no index does.
TEST(StringComparison, TellsClippedLegacyAreasApart) {
    std::string text(300, 'a');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i % 26);
    const auto clipped = [](std::string whole, std::size_t size) {
        auto area = LegacyArea(whole + '\0', 1);
        area.resize(size);
        return area;
    };
    const auto compare = [](const auto& a, const auto& b, int& error) {
        return Sign(LegacyStringCompare(1, a.size(), a.data(), b.size(), b.data(), VqCmp_Exact, 1, error));
    };
    const auto hash = [](const auto& area, int& error) {
        const Block block(area.data(), area.size());
        return LegacyStringHash(1, area.size(), block.Get(), 1, error);
    };
    const auto cut = clipped(text, 254), same = clipped(text + "more", 254), other = clipped("z" + text, 254);
    const auto whole = clipped(text, 303), large = clipped(text, 256);
    int error = 77;
    EXPECT_EQ(compare(cut, whole, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(compare(cut, other, error), -1);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(hash(cut, error), hash(same, error));
    EXPECT_EQ(error, VqStatus_Ok);
    EXPECT_NE(hash(cut, error), hash(other, error));
    EXPECT_EQ(compare(large, whole, error), -1);
    EXPECT_EQ(error, VqStatus_NotSupported);
    EXPECT_EQ(hash(large, error), 0u);
    EXPECT_EQ(error, VqStatus_NotSupported);
}

TEST(StringComparison, FindsNoTextInARecordWithoutAHeader) {
    static constexpr unsigned char record[] = {2, 0, 1, 1};
    int error = 77;
    EXPECT_EQ(StringCompare(1, sizeof record, record, sizeof record, record, VqCmp_Exact, 1, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
}

TEST(StringComparison, TakesTheDefaultOperationFromTheClass) {
    const auto a = Record("ABcdef", 1), b = Record("ab*", 1);
    const unsigned char bytes[] = {0, 4, 0, 'a', 'b', 'c', 'd'}, pattern[] = {0, 3, 0, 'a', 'b', '*'};
    static const struct {
        unsigned short byDefault;
        bool equal, bytesEqual;
    } cases[] = {{VqCmp_Exact, false, false}, {0, false, true}, {VqCmp_IgnoreCase, true, true}};
    for (const auto& c : cases) {
        VqString::SetDefaultCmpOp(c.byDefault);
        int error;
        EXPECT_EQ(CompareRecords(a, b, 1, VqCmp_Default, error) == 0, c.equal) << c.byDefault;
        EXPECT_EQ(VqIStringCompare(1, sizeof bytes, bytes, sizeof pattern, pattern, VqCmp_Default, 1, error) == 0,
                  c.bytesEqual)
            << c.byDefault;
    }
    VqString::SetDefaultCmpOp(VqCmp_Exact);
}

}  // namespace
