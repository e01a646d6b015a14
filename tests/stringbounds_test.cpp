// Bounds of strings: estimates against the truth of word lists, and the ends of ranges against comparison.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "multibyte.h"
#include "testsupport.h"
#include "vqchar.h"
#include "vqistring.h"
#include "vqslots.h"
#include "vqtypcmp.h"
#include "vqtypevl.h"

using namespace vqtest;

namespace {

constexpr unsigned short Equal = VqOperator_Equal, Less = VqOperator_Less, Greater = VqOperator_Greater;
constexpr unsigned short Wildcard = VqOperator_Wildcard;
constexpr unsigned char BothOrders[] = {VqFormat_LittleEndian, VqFormat_BigEndian};

using Record = std::vector<unsigned char>;

Record RecordOf(const VqString& string, unsigned char format) {
    Record record(StringSizeGet(&string, VqFormat_Memory, format, 1));
    StringStore(record.data(), &string, format, 1);
    return record;
}

Record RecordOf(unsigned char flags, const std::string& text, unsigned char format) {
    const auto length = static_cast<unsigned char>(text.size());
    const unsigned char high = static_cast<unsigned char>(text.size() >> 8);
    Record record(3 + text.size());
    record[0] = flags;
    record[format == VqFormat_BigEndian ? 2 : 1] = length;
    record[format == VqFormat_BigEndian ? 1 : 2] = high;
    std::copy(text.begin(), text.end(), record.begin() + 3);
    return record;
}

// Texts with zero bytes between them, low byte first.
Record LegacyRecordOf(const std::string& texts) {
    const std::size_t size = texts.size() + 1;
    Record area(size + 2);
    area[0] = static_cast<unsigned char>(size);
    area[1] = static_cast<unsigned char>(size >> 8);
    std::copy(texts.begin(), texts.end(), area.begin() + 2);
    return area;
}

// The functions of one row, asked about keys in blocks of exactly their size.
struct Row {
    const char* name;
    VqEvalAndBoundFunc bound;
    VqCompareFunc compare;

    int Compare(const Record& a, const Record& b, unsigned short op, unsigned char format,
                unsigned long count = 1) const {
        const Block first(a.data(), a.size()), second(b.data(), b.size());
        int status;
        return Sign(compare(format, a.size(), first.Get(), b.size(), second.Get(), op, count, status));
    }
    double Estimate(const Record& low, const Record& high, unsigned short operators, const Record& key,
                    unsigned char format) const {
        const Block lowBlock(low.data(), low.size()), highBlock(high.data(), high.size()),
            block(key.data(), key.size());
        VqIdxBounds bounds = {const_cast<unsigned char*>(lowBlock.Get()), const_cast<unsigned char*>(highBlock.Get()),
                              static_cast<std::uint32_t>(low.size()), static_cast<std::uint32_t>(high.size())};
        return bound(&bounds, operators, block.Get(), format, 1, nullptr);
    }
};

constexpr Row stringRows[] = {{"VqString", StringEvalAndBound, StringCompare},
                              {"legacy", LegacyStringEvalAndBound, LegacyStringCompare}};
constexpr Row byteRows[] = {{"VqIString", VqIStringEvalAndBound, VqIStringCompare},
                            {"VqCaseIString", VqCaseIStringEvalAndBound, VqCaseIStringCompare}};

// The range that a predicate leaves to be scanned.
struct Range {
    Record low, high;
    bool hasLow, hasHigh;
    unsigned short operators;

    // `ends`: the index's low and high key, where it has statistics.
    Range(const Row& row, unsigned short asked, const Record& key, unsigned char format, unsigned long count = 1,
          const Record* ends = nullptr)
        : operators(asked) {
        const Block block(key.data(), key.size());
        VqIdxBounds bounds, index;
        if (ends != nullptr) {
            index = {const_cast<unsigned char*>(ends[0].data()), const_cast<unsigned char*>(ends[1].data()),
                     static_cast<std::uint32_t>(ends[0].size()), static_cast<std::uint32_t>(ends[1].size())};
        }
        row.bound(ends != nullptr ? &index : nullptr, operators, block.Get(), format, count, &bounds);
        hasLow = Take(bounds.lowKey, bounds.lowKeyLength, low);
        hasHigh = Take(bounds.highKey, bounds.highKeyLength, high);
        VqFreeBounds(bounds);
        EXPECT_LE(low.size(), VqINDEX_MAX_KEYLEN);
        EXPECT_LE(high.size(), VqINDEX_MAX_KEYLEN);
    }
    bool Holds(const Row& row, const Record& text, unsigned short op, unsigned char format,
               unsigned long count = 1) const {
        return row.Compare(text, low, op, format, count) >= 0 && row.Compare(text, high, op, format, count) <= 0;
    }

  private:
    static bool Take(const void* key, std::uint32_t length, Record& to) {
        const auto* const bytes = static_cast<const unsigned char*>(key);
        if (bytes != nullptr) to.assign(bytes, bytes + length);
        return bytes != nullptr;
    }
};

// --- The estimate and the truth

struct WordList {
    const char* file;  // in /usr/share/dict
    unsigned char language;
    double mostError;
};

// Strings of every so many lines, in UTF-8 or ISO 8859-1, so that there are no more than `most`.
std::vector<VqString> ReadWords(const WordList& list, std::size_t most) {
    std::ifstream file(std::string("/usr/share/dict/") + list.file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    std::vector<VqString> words;
    for (std::size_t i = 0; i < lines.size(); i += lines.size() / most + 1) {
        VqString word(253, list.language);
        if (VqMBS2VqString(lines[i].c_str(), word, static_cast<long>(lines[i].size())) < 0) {
            word = In(2, lines[i], list.language);
        }
        word.MapToCodeSet(1);
        word.SetLanguage(list.language);
        if (word.Len() != 0 && word.Find('?') < 0) words.push_back(word);
    }
    std::sort(words.begin(), words.end(),
              [](const VqString& a, const VqString& b) { return a.Compare(b, -1, VqCmp_Exact) < 0; });
    return words;
}

// How far one estimate is from the part of the sorted words that compare as one of the operators asks.
double Error(const std::vector<VqString>& words, unsigned short operators, const VqString& key, unsigned short op) {
    const auto selected = std::count_if(words.begin(), words.end(), [&](const VqString& word) {
        const int sign = Sign(word.Compare(key, -1, op));
        return operators & (sign < 0 ? Less : sign > 0 ? Greater : Equal);
    });
    const double estimate =
        stringRows[0].Estimate(RecordOf(words.front(), 2), RecordOf(words.back(), 2), operators, RecordOf(key, 2), 2);
    return estimate - static_cast<double>(selected) / static_cast<double>(words.size());
}

// Of a random predicate: less, greater, between, or a pattern.
double RandomError(const std::vector<VqString>& words, unsigned kind, std::mt19937& random) {
    VqString a = words[random() % words.size()], b = words[random() % words.size()];
    if (kind < 2) return Error(words, kind == 0 ? Less : Greater, a, VqCmp_Exact);
    if (kind == 2) {
        if (a.Compare(b, -1, VqCmp_Exact) > 0) std::swap(a, b);
        return Error(words, Equal | Greater, a, VqCmp_Exact) + Error(words, Equal | Less, b, VqCmp_Exact);
    }
    const unsigned char language = a.GetLanguage();
    a.Cut(static_cast<unsigned short>(1 + random() % 3), 20000);
    a += VqString("*");
    a.SetLanguage(language);
    return Error(words, Equal, a, VqCmp_IgnoreCase | VqCmp_IgnoreAccents);
}

TEST(StringEstimates, AreNearTheTruthOfWordLists) {
    constexpr WordList lists[] = {
        {"ngerman", 2, 0.03}, {"ngerman", 0, 0.05}, {"american-english", 1, 0.03}, {"french", 3, 0.03},
        {"spanish", 4, 0.03}, {"swedish", 8, 0.03}, {"danish", 10, 0.03},          {"polish", 13, 0.05},
    };
    int found = 0;
    for (const WordList& list : lists) {
        SCOPED_TRACE(std::string(list.file) + " in language " + std::to_string(list.language));
        const std::vector<VqString> words = ReadWords(list, 10000);
        if (words.empty()) continue;
        ++found;
        std::mt19937 random(7);
        double sum = 0;
        for (unsigned i = 0; i < 200; ++i) sum += std::abs(RandomError(words, i % 4, random));
        EXPECT_LT(sum / 200, list.mostError);
    }
    if (found == 0) GTEST_SKIP() << "no word lists here (Debian's wngerman and others)";
}

// --- Laws of estimates

// Random texts of a few characters that have much in common.
struct Alphabet {
    unsigned char codeSet, language;
    std::u16string characters;

    VqString Text(const std::u16string& units) const {
        if (codeSet == 0) return In(0, std::string(units.begin(), units.end()));
        VqString text = Wide(units);
        text.SetLanguage(language);
        text.MapToCodeSet(codeSet);
        return text;
    }
    std::u16string Some(std::mt19937& random, std::size_t most) const {
        std::u16string units(random() % (most + 1), 0);
        for (char16_t& unit : units) unit = characters[random() % characters.size()];
        return units;
    }
};

const Alphabet alphabets[] = {
    {1, 2, u"sSß\u00E4aAeæz"},  // expansions
    {12, 16, u"cszdyCSZ"},      // contractions, one of them the last letter
    {1, 10, u"aåAæb"},          // a contraction equal to a letter
    {253, 0, u"aß1½ \uAC00\uAC01\uAC1B\u4E2D\uE000\uE001\uF8FF\uFAFF\uFFFF"},  // syllables with a second order
    {228, 23, u"a\uAC00\uAC01\uAC1B\u4E2D"},
    {13, 18, u"\u0430\u0431\u044F\u0451az9"},
    {0, 0, u"aAbÿþ0_~"},
};

const std::string byteTexts =
    "sS\xDFoe\x9C\x8CzZ\xDE\x9E\xFF"
    "1";

double Total(const Row& row, const Record& low, const Record& high, const Record& key, unsigned char format) {
    return row.Estimate(low, high, Less, key, format) + row.Estimate(low, high, Equal, key, format) +
           row.Estimate(low, high, Greater, key, format);
}

// Keys in their order have growing estimates, within 0 and 1, that add up to everything.
void ExpectGrowing(const Row& row, std::vector<Record> keys, unsigned char format) {
    std::sort(keys.begin(), keys.end(),
              [&](const Record& a, const Record& b) { return row.Compare(a, b, VqCmp_Exact, format) < 0; });
    const std::size_t ends[][2] = {{0, keys.size() - 1}, {keys.size() / 4, keys.size() / 2}};
    for (const auto& [first, last] : ends) {
        double before = 0;
        for (const Record& key : keys) {
            SCOPED_TRACE(Hex(key.data(), key.size()));
            const double less = row.Estimate(keys[first], keys[last], Less, key, format);
            ASSERT_GE(less, before - 1e-9);
            ASSERT_LE(less, 1);
            ASSERT_NEAR(Total(row, keys[first], keys[last], key, format), 1, 1e-6);
            before = less;
        }
        ASSERT_GT(before, 0.99);
    }
}

TEST(StringEstimates, GrowInTheOrderOfKeys) {
    std::mt19937 random(11);
    for (const unsigned char format : BothOrders) {
        for (const Alphabet& alphabet : alphabets) {
            SCOPED_TRACE(static_cast<int>(alphabet.codeSet));
            std::vector<Record> keys;
            VqString null;
            null.SetNullValue();
            keys.push_back(RecordOf(null, format));
            for (int i = 0; i < 400; ++i) keys.push_back(RecordOf(alphabet.Text(alphabet.Some(random, 6)), format));
            for (const Row& row : stringRows) ExpectGrowing(row, keys, format);
        }
        for (const Row& row : byteRows) {
            for (const auto flags : std::initializer_list<unsigned char>{0, 0x80}) {
                std::vector<Record> keys;
                for (int i = 0; i < 400; ++i) {
                    std::string text(1 + random() % 5, 0);
                    for (char& c : text) c = static_cast<char>(random() % 255 + 1);
                    std::replace_if(
                        text.begin(), text.end(), [](char c) { return std::strchr("*?\xDF\x9C\x8C", c); }, 'x');
                    keys.push_back(RecordOf(flags, text, format));
                }
                ExpectGrowing(row, keys, format);
            }
        }
    }
}

// Texts of ready keys are read in a way of their own, which Unicode's are not.
TEST(StringEstimates, AreThoseOfTheSameTextsInUnicode) {
    std::mt19937 random(12);
    for (const auto language : std::initializer_list<unsigned char>{0, 2, 10, 16}) {
        Alphabet alphabet{1, language, u"abcdeghklmnorstzABCSZ\u00E4\u00DF\u00E60159 -*"};
        for (int round = 0; round < 3000; ++round) {
            const std::u16string units[] = {alphabet.Some(random, 3), alphabet.Some(random, 9),
                                            alphabet.Some(random, 9)};
            for (const unsigned short operators : {Equal, Less, Greater}) {
                const auto estimate = [&](unsigned char codeSet) {
                    alphabet.codeSet = codeSet;
                    const auto record = [&](int i) { return RecordOf(alphabet.Text(units[i]), 2); };
                    return stringRows[0].Estimate(record(0), record(1), operators, record(2), 2);
                };
                ASSERT_DOUBLE_EQ(estimate(1), estimate(253)) << round;
            }
        }
    }
}

TEST(StringEstimates, AtAndBeyondTheEndsOfAnIndex) {
    struct Case {
        const char *low, *high;  // null: the null string
        unsigned short operators;
        const char* key;
        double least, most;
    };
    const Case cases[] = {
        {"b", "y", Less, "a", 0, 0},
        {"b", "y", Greater, "a", 1, 1},
        {"b", "y", Less, "z", 1, 1},
        {"b", "y", Equal, "z", 0, 0},
        {"b", "y", Less | Greater, "m", 0.9, 1},
        {"b", "y", 0, "m", 0, 0},
        {"b", "y", Equal, "m*", 0.02, 0.1},
        {"b", "y", Less, "m*", 0.3, 0.6},
        {"b", "y", Equal, "*m", 1, 1},
        {"b", "y", Less, "*m", 0, 0},
        {nullptr, "z", Equal, "?", 1, 1},
        {nullptr, nullptr, Equal, "*", 1, 1},
        {"common a", "common z", Equal, "com*", 1, 1},
        {"m", "m", Equal, "m", 1, 1},
        {"m", "m", Greater, "a", 1, 1},
        {"m", "m", Equal, "ma", 0, 0},
        {"y", "b", Equal, "m", 0, 0},
        {"y", "b", Greater, "*", 0, 0},
        {nullptr, "z", Equal, nullptr, 0.001, 0.1},
        {nullptr, "z", Less, "", 0.001, 0.1},
        {"a", "z", Less, nullptr, 0, 0},
        {"a", "z", Greater, nullptr, 1, 1},
        {nullptr, nullptr, Equal, nullptr, 1, 1},
        {"10000", "99999", Less, "55000", 0.45, 0.55},
    };
    const auto key = [](const char* text) {
        VqString string(text != nullptr ? text : "");
        if (text == nullptr) string.SetNullValue();
        return RecordOf(string, 1);
    };
    AssertRecorder assertions;
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.low ? c.low : "null") + " " + (c.key ? c.key : "null"));
        const double estimate = stringRows[0].Estimate(key(c.low), key(c.high), c.operators, key(c.key), 1);
        EXPECT_GE(estimate, c.least);
        EXPECT_LE(estimate, c.most);
    }
    EXPECT_TRUE(assertions.Lines().empty());
}

// Each collation class lies apart, in the order of the classes.
TEST(StringEstimates, OfAnIndexOfSeveralClasses) {
    const auto russian = [](const char16_t* text) {
        VqString string = Wide(text);
        string.SetLanguage(18);
        return RecordOf(string, 1);
    };
    const auto neutral = [](const char* text) { return RecordOf(In(1, text), 1); };
    const Record low = neutral("a"), high = russian(u"\u044F");
    const struct {
        Record key;
        unsigned short operators;
        double least, most;
    } cases[] = {
        {neutral("m"), Less, 0.01, 0.2},
        {neutral("zz"), Less, 0.03, 0.2},
        {russian(u"\u0430"), Less, 0.7, 0.99},
        {russian(u"\u0430"), Greater, 0.01, 0.3},
        {neutral("*"), Equal, 1, 1},
        {russian(u"*"), Equal, 1, 1},
        {russian(u"\u0430*"), Equal, 0.0001, 0.1},
    };
    for (const auto& c : cases) {
        const double estimate = stringRows[0].Estimate(low, high, c.operators, c.key, 1);
        EXPECT_TRUE(estimate >= c.least && estimate <= c.most)
            << estimate << " for " << Hex(c.key.data(), c.key.size());
    }
}

// Areas of the legacy layout are clipped like records.
TEST(StringEstimates, TakeClippedEndsOfTheLegacyLayout) {
    Record low = LegacyRecordOf("ba" + std::string(300, 'x')), high = LegacyRecordOf("yz" + std::string(300, 'x'));
    const Record key = LegacyRecordOf("mm");
    for (const Row& row : stringRows) {
        const double whole = row.Estimate(low, high, Less, key, 1);
        EXPECT_NEAR(whole, 0.5, 0.2);
        const Record lowCut(low.begin(), low.begin() + 254), highCut(high.begin(), high.begin() + 254);
        EXPECT_NEAR(row.Estimate(lowCut, highCut, Less, key, 1), whole, 1e-6) << row.name;
    }
}

// The code of the memory form stands for this machine's byte order, and its option bits for nothing.
TEST(StringEstimates, TakeTheByteOrderFromTheFormat) {
    const Record low = RecordOf(In(1, "b"), 1), high = RecordOf(In(1, "y"), 1), key = RecordOf(Wide(u"m*"), 1);
    const Record byteLow = RecordOf(0, "b", 1), byteHigh = RecordOf(0, "y", 1), byteKey = RecordOf(0, "m*", 1);
    for (const unsigned char format : std::initializer_list<unsigned char>{8, 0x21, 0x88}) {
        EXPECT_EQ(stringRows[0].Estimate(low, high, Less, key, format),
                  stringRows[0].Estimate(low, high, Less, key, 1));
        EXPECT_EQ(byteRows[0].Estimate(byteLow, byteHigh, Less, byteKey, format),
                  byteRows[0].Estimate(byteLow, byteHigh, Less, byteKey, 1));
        EXPECT_EQ(Range(stringRows[0], Equal, key, format).high, Range(stringRows[0], Equal, key, 1).high);
        EXPECT_EQ(Range(byteRows[0], Equal, byteKey, format).high, Range(byteRows[0], Equal, byteKey, 1).high);
    }
}

// --- Ranges

// Whatever a pattern matches lies between its ends, under the same levels. Texts of the native set and others are kept
// in one index where its statistics tell so.
TEST(StringRanges, HoldAllThatMatches) {
    std::mt19937 random(5);
    for (const Alphabet& alphabet : alphabets) {
        SCOPED_TRACE(static_cast<int>(alphabet.codeSet));
        int matches = 0;
        for (int round = 0; round < 4000; ++round) {
            const unsigned char format = BothOrders[round % 2];
            const Row& row = stringRows[round / 2 % 2];
            const std::u16string beginning = alphabet.Some(random, 4);
            const Record pattern =
                RecordOf(alphabet.Text(beginning + (round % 5 ? u"*" : u"?") + alphabet.Some(random, 1)), format);
            const bool mixed = alphabet.codeSet != 0 || round % 3 == 0;
            const Record ends[] = {RecordOf(In(1, "a"), format), RecordOf(In(alphabet.codeSet != 0, "z"), format)};
            const Range range(row, Equal, pattern, format, 1, mixed ? ends : nullptr);
            for (int i = 0; i < 8; ++i) {
                VqString string = alphabet.Text((i % 2 ? beginning : u"") + alphabet.Some(random, 5));
                if (i % 4 == 3 && mixed) string.MapToCodeSet(alphabet.codeSet == 0 && i == 3 ? 1 : 253);
                if (i == 0) string.SetNullValue();
                const Record text = RecordOf(string, format);
                for (const auto levels : std::initializer_list<unsigned short>{0, 0x20, 0x40, 0x60}) {
                    if (row.Compare(text, pattern, levels, format) != 0) continue;
                    ++matches;
                    ASSERT_TRUE(range.Holds(row, text, static_cast<unsigned short>(levels | VqCmp_Exact), format))
                        << Hex(pattern.data(), pattern.size()) << " matches " << Hex(text.data(), text.size())
                        << " levels " << levels;
                }
            }
        }
        EXPECT_GT(matches, 1000);
    }
}

TEST(StringRanges, OfEightBitStringsHoldAllThatMatches) {
    std::mt19937 random(6);
    const auto some = [&](std::size_t most) {
        std::string text(random() % (most + 1), 0);
        for (char& c : text) c = byteTexts[random() % byteTexts.size()];
        return text;
    };
    for (const Row& row : byteRows) {
        for (const auto flags : std::initializer_list<unsigned char>{0, 0x20, 0x80}) {
            int matches = 0;
            for (int round = 0; round < 4000; ++round) {
                const unsigned char format = BothOrders[round % 2];
                const std::string beginning = some(3);
                const Record pattern = RecordOf(flags, beginning + (round % 5 ? "*" : "?") + some(1), format);
                const Range range(row, Equal, pattern, format);
                for (int i = 0; i < 6; ++i) {
                    const Record text = RecordOf(flags, (i % 2 ? beginning : "") + some(4), format);
                    if (row.Compare(text, pattern, 0, format) != 0) continue;
                    ++matches;
                    ASSERT_TRUE(range.Holds(row, text, VqCmp_Exact, format))
                        << Hex(pattern.data(), pattern.size()) << " matches " << Hex(text.data(), text.size());
                }
            }
            EXPECT_GT(matches, 1000);
        }
    }
}

TEST(StringRanges, OfPatternsAreRecordsInTheOrderOfTheFormat) {
    struct Case {
        unsigned char format;
        const char *low, *high;
    };
    const Case cases[] = {
        {1, "06 00 01 02 61 62 00 ff", "fc 00 fd 02 61 00 62 00 ff ff ff ff"},
        {2, "00 06 01 02 61 62 00 ff", "00 fc fd 02 00 61 00 62 ff ff ff ff"},
    };
    for (const Case& c : cases) {
        const Range range(stringRows[0], Equal, RecordOf(In(1, "ab?d", 2), c.format), c.format);
        EXPECT_EQ(Hex(range.low.data(), range.low.size()), c.low);
        EXPECT_EQ(Hex(range.high.data(), 12), c.high);
        EXPECT_EQ(range.high.size(), VqINDEX_MAX_KEYLEN);
    }
    const Range native(stringRows[0], Equal, RecordOf(In(0, "ab*"), 1), 1);
    EXPECT_EQ(Hex(native.high.data(), 8), "ff 00 00 00 61 62 ff ff");
    const Range bytes(byteRows[0], Equal, RecordOf(0, "ab*", 1), 1);
    EXPECT_EQ(Hex(bytes.high.data(), 8), "00 fe 00 61 62 9e 9e 9e");
}

TEST(StringRanges, TakeTheEndsThatTheOperatorsAskFor) {
    struct Case {
        const char* key;
        unsigned short operators;
        bool low, high;
        unsigned short after;
    };
    const Case cases[] = {
        {"a", Equal, true, true, Equal},
        {"a", Less, false, true, Less},
        {"a", 0x7FF0 | Greater | Equal, true, false, Greater | Equal},
        {"a*", 0x8000 | Less, false, true, 0x8000 | Less | Wildcard},
        {"a?b", Greater, true, false, Greater | Wildcard},
        {"a*", Less | Greater, false, false, Less | Greater | Wildcard},
    };
    for (const Case& c : cases) {
        for (const auto& [row, key] :
             {std::pair(stringRows[0], RecordOf(VqString(c.key), 1)), std::pair(byteRows[1], RecordOf(0, c.key, 1))}) {
            const Range range(row, c.operators, key, 1);
            EXPECT_EQ(range.hasLow, c.low) << c.key;
            EXPECT_EQ(range.hasHigh, c.high) << c.key;
            EXPECT_EQ(range.operators, c.after) << c.key;
            if (c.low && !(c.after & Wildcard)) {
                EXPECT_EQ(range.low, key);
            }
        }
    }
}

// What a leading wildcard matches can be of any language.
TEST(StringRanges, OfLeadingWildcardsHoldTextsOfAllLanguages) {
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{0, 1, 253}) {
        VqString pattern = In(codeSet == 0 ? 0 : 1, "?*");
        if (codeSet != 0) pattern.MapToCodeSet(codeSet);
        const Range range(stringRows[0], Equal, RecordOf(pattern, 2), 2);
        for (unsigned char language = 0; language < 24; ++language) {
            for (const char16_t* const text : {u"abc", u"\u0416", u"\u4E2D\uAC1B", u"\uFFFF"}) {
                VqString string = Wide(text);
                string.SetLanguage(language);
                EXPECT_TRUE(range.Holds(stringRows[0], RecordOf(string, 2), VqCmp_Exact, 2))
                    << int{codeSet} << " " << int{language};
            }
        }
    }
}

// Native texts have wildcards of their own, which those of letters join where texts of other sets are in the index.
TEST(StringRanges, OfNativePatternsEndAtEitherWildcard) {
    const Record native[] = {RecordOf(In(0, "a"), 1), RecordOf(In(0, "z"), 1)};
    const Record mixed[] = {RecordOf(In(0, "a"), 1), RecordOf(In(1, "z"), 1)};
    const struct {
        const char* pattern;
        const Record* ends;
        const char *low, *high;  // their first bytes
    } cases[] = {
        {"ab*", native, "06 00 00 00 61 62 00 ff", "ff 00 00 00 61 62 ff ff"},
        {"ab*", mixed, "06 00 00 00 61 62 00 ff", "fc 00 fd 00 61 00 62 00"},
        {"ab%", native, nullptr, nullptr},
        {"ab%", mixed, "06 00 00 00 61 62 00 ff", "fc 00 fd 00 61 00 62 00"},
        {"a*b%", mixed, "05 00 00 00 61 00 ff", "fc 00 fd 00 61 00 ff ff"},
        {"a%b*", mixed, "05 00 00 00 61 00 ff", "fc 00 fd 00 61 00 ff ff"},
        {"*", mixed, "04 00 00 fe 00 ff", "fc 00 fd 14 ff ff ff ff"},
    };
    VqString::SetAsterisk(VqChar('%', 1, 0));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pattern);
        const Record key = RecordOf(In(0, c.pattern), 1);
        const Range range(stringRows[0], Equal, key, 1, 1, c.ends);
        EXPECT_EQ(range.operators, c.low != nullptr ? Equal | Wildcard : Equal);
        EXPECT_EQ(Hex(range.low.data(), range.low.size()), c.low != nullptr ? c.low : Hex(key.data(), key.size()));
        EXPECT_EQ(Hex(range.high.data(), 8), c.high != nullptr ? c.high : Hex(key.data(), 8));
    }
    VqString::SetAsterisk(VqChar('*', 1, 0));
}

// What stands behind the end of a text, or in null, is no wildcard; under a damaged header it is.
TEST(StringRanges, FindWildcardsInTextsAlone) {
    Record ended = RecordOf(In(0, "ab-*"), 1), null = RecordOf(In(1, "ab*"), 1), damaged = RecordOf(Wide(u"ab*"), 1);
    ended[6] = 0;
    null[3] = VqNullMark;
    damaged[2] = 254, damaged[3] = 129;
    const struct {
        const Row* row;
        Record key;
        unsigned short after;
        Record low;
    } cases[] = {
        {&stringRows[0], ended, Equal, ended},
        {&stringRows[0], null, Equal, null},
        {&stringRows[0], damaged, Equal | Wildcard, {8, 0, 254, 1, 'a', 0, 'b', 0, 0, 0xFF}},
        {&byteRows[0], RecordOf(0, std::string("ab\0*", 4), 1), Equal, RecordOf(0, std::string("ab\0*", 4), 1)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Hex(c.key.data(), c.key.size()));
        const Range range(*c.row, Equal, c.key, 1);
        EXPECT_EQ(range.operators, c.after);
        EXPECT_EQ(range.low, c.low);
        const double estimate = c.row->Estimate(c.key, c.key, Equal, c.key, 1);
        EXPECT_TRUE(estimate >= 0 && estimate <= 1);
    }
}

TEST(StringRanges, OfPatternsEndAtTheEscapeCharacter) {
    VqString::SetEscape(VqChar('\\', 1, 0));
    const Range range(stringRows[0], Equal, RecordOf(VqString("ab\\*c*"), 1), 1);
    const bool holds = range.Holds(stringRows[0], RecordOf(VqString("ab*cd"), 1), VqCmp_Exact, 1);
    VqString::SetEscape(VqChar(0, 1, 0));
    EXPECT_TRUE(holds);
    EXPECT_EQ(Hex(range.low.data() + 4, 4), "61 62 00 ff");
}

// A long key is clipped to one that is equal to the whole, and lies where it lies.
TEST(StringRanges, ClipLongKeys) {
    AssertRecorder assertions;
    const auto legacy = [](std::size_t n) { return LegacyRecordOf(std::string(n, 'm')); };
    const auto wide = [](std::size_t n) { return RecordOf(Wide(std::u16string(n, u'm')), 1); };
    const auto bytes = [](std::size_t n) { return RecordOf(In(1, std::string(n, 'm')), 1); };
    const auto byteString = [](std::size_t n) { return RecordOf(0, std::string(n, 'm'), 1); };
    struct Case {
        Row row;
        Record key, below, above;
        std::size_t recorded;
    };
    const Record a = bytes(0), z = RecordOf(VqString("n"), 1);
    const Case cases[] = {
        {stringRows[0], bytes(248), a, z, 254},
        {stringRows[0], bytes(249), a, z, 254},
        {stringRows[0], bytes(60000), a, z, 254},
        {stringRows[0], wide(124), a, z, 254},
        {stringRows[0], wide(125), a, z, 254},
        {stringRows[1], bytes(251), a, z, 254},
        {stringRows[1], legacy(251), a, z, 254},
        {stringRows[1], legacy(252), a, z, 254},
        {stringRows[0], legacy(300), a, z, 254},
        {byteRows[0], byteString(251), byteString(0), RecordOf(0, "n", 1), 254},
        {byteRows[1], byteString(900), byteString(0), RecordOf(0, "n", 1), 254},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.row.name) + " " + std::to_string(c.key.size()));
        const Range range(c.row, Equal, c.key, 1);
        EXPECT_EQ(range.low.size(), c.recorded);
        EXPECT_EQ(range.low, range.high);
        EXPECT_EQ(c.row.Compare(c.key, range.low, VqCmp_Exact, 1), 0);
        EXPECT_LT(c.row.Compare(c.below, range.low, VqCmp_Exact, 1), 0);
        EXPECT_GT(c.row.Compare(c.above, range.low, VqCmp_Exact, 1), 0);
    }
    // Beginnings too long for a key, of letters that two characters spell: the high key ends between two of them.
    for (const std::size_t n : {60U, 61U, 124U, 200U}) {
        std::u16string beginning;
        for (std::size_t i = 0; i < n; ++i) beginning += u"cs";
        const Alphabet hungarian{12, 16, u"cs"};
        for (const std::u16string shift : {u"", u"a"}) {
            const Range range(stringRows[0], Equal, RecordOf(hungarian.Text(shift + beginning + u"*"), 1), 1);
            EXPECT_TRUE(
                range.Holds(stringRows[0], RecordOf(hungarian.Text(shift + beginning + u"csz"), 1), VqCmp_Exact, 1))
                << n;
        }
    }
    // The last unit alone sorts behind the finals of syllables.
    const std::u16string syllables(123, u'\uAC00');
    const Range range(stringRows[0], Equal, RecordOf(Wide(syllables + u"*"), 1), 1);
    EXPECT_TRUE(range.Holds(stringRows[0], RecordOf(Wide(syllables + u"\uAC1Bx"), 1), VqCmp_Exact, 1));
    EXPECT_TRUE(assertions.Lines().empty());
}

Record Joined(std::initializer_list<Record> elements) {
    Record array;
    for (const Record& element : elements) array.insert(array.end(), element.begin(), element.end());
    return array;
}

TEST(StringRanges, OfArraysTakeAllElements) {
    const Record array = Joined({RecordOf(VqString("a"), 1), RecordOf(VqString(std::string(300, 'b').c_str()), 1)});
    EXPECT_EQ(Range(stringRows[0], Equal, array, 1, 1).low.size(), 7U);
    const Range both(stringRows[0], Equal, array, 1, 2);
    EXPECT_EQ(both.low, Record(array.begin(), array.begin() + 254));
}

// The elements in front of the first pattern stay as they are.
TEST(StringRanges, OfArraysHoldWhatALaterPatternMatches) {
    using Texts = std::array<std::string, 3>;
    const auto bytes = [](const Texts& t) {
        return Joined({RecordOf(0, t[0], 1), RecordOf(0, t[1], 1), RecordOf(0, t[2], 1)});
    };
    const struct {
        Row row;
        Record (*arrayOf)(const Texts& texts);
    } forms[] = {
        {stringRows[0],
         [](const Texts& t) {
             const VqString second = Wide(std::u16string(t[1].begin(), t[1].end()));
             return Joined({RecordOf(In(1, t[0]), 1), RecordOf(second, 1), RecordOf(In(1, t[2]), 1)});
         }},
        {stringRows[1], [](const Texts& t) { return LegacyRecordOf(t[0] + '\0' + t[1] + '\0' + t[2]); }},
        {byteRows[0], bytes},
        {byteRows[1], bytes},
    };
    const std::string long1(240, 'k'), long2(260, 'k');
    const Texts patterns[] = {{"x", "ab*", "y"},   {"x", "y", "ab*"},   {"x", "ab?", "*"},  {"x", "*", "y"},
                              {long1, "ab*", "y"}, {long2, "ab*", "y"}, {"x", long1, "ab*"}};
    const AssertRecorder assertions;
    for (const Texts& pattern : patterns) {
        Texts like = pattern;
        for (std::string& text : like) {
            if (text.find_first_of("*?") != text.npos) text.back() = 'c';
        }
        const Texts unlike = {"w", like[1], like[2]};
        for (const auto& [row, arrayOf] : forms) {
            SCOPED_TRACE(std::string(row.name) + " " + pattern[0] + " " + pattern[1] + " " + pattern[2]);
            const Range range(row, Equal, arrayOf(pattern), 1, 3);
            EXPECT_EQ(range.operators, Equal | Wildcard);
            EXPECT_TRUE(range.Holds(row, arrayOf(like), VqCmp_Exact, 1, 3));
            EXPECT_FALSE(range.Holds(row, arrayOf(unlike), VqCmp_Exact, 1, 3));
        }
    }
    EXPECT_TRUE(assertions.Lines().empty());
}

}  // namespace
