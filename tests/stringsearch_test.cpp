#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "../src/bytesearch.h"
#include "../src/twowaysearch.h"
#include "searchreference.h"
#include "testsupport.h"
#include "vqchar.h"
#include "vqlanguagecontext.h"

using namespace vqtest;

namespace {

// Every class-wide setting that a search reads is put back.
class StringSearch : public testing::Test {
  protected:
    ~StringSearch() override {
        VqString::SetDefaultCmpOp(VqCmp_Exact);
        const VqChar none(0, 1, 0);
        for (const auto set : {VqString::SetAsterisk, VqString::SetQuestion, VqString::SetEscape}) set(none);
    }
};

TEST_F(StringSearch, FindsByTheRulesOfTheOperation) {
    const unsigned short both = VqCmp_IgnoreCase | VqCmp_IgnoreAccents;
    const struct {
        const char *text, *pattern;
        unsigned short start, op;
        int place;
    } cases[] = {
        {"abcabc", "bc", 0, VqCmp_Default, 1},
        {"abcabc", "bc", 2, VqCmp_Default, 4},
        {"abcabc", "bc", 5, VqCmp_Default, -1},
        {"abcabc", "abcabcd", 0, VqCmp_Default, -1},
        {"abc", "c", 4, VqCmp_Default, -1},
        {"Caf\xE9 CAFE", "cafe", 0, VqCmp_Exact, -1},
        {"Caf\xE9 CAFE", "cafe", 0, VqCmp_Exact | VqCmp_IgnoreCase, 5},
        {"Caf\xE9 CAFE", "cafe", 0, VqCmp_Exact | VqCmp_IgnoreAccents, -1},
        {"Caf\xE9 cafe", "caf\xE9", 1, VqCmp_Exact | VqCmp_IgnoreAccents, 5},
        {"Caf\xE9 CAFE", "cafe", 0, both | VqCmp_Exact, 0},
        {"Stra\337e", "strasse", 0, both, -1},  // two bytes fewer than the pattern has
        {"Stra\337e am See", "strasse", 0, both, 0},
        {"Stra\337e am See", "strasse", 0, both | VqCmp_Exact, -1},  // seven characters of each
        {"what if?", "f?", 0, VqCmp_Default, 6},
        {"what if?", "?i", 0, VqCmp_IgnoreCase, 4},
        {"what if?", "?i", 0, VqCmp_Exact, -1},
        {"one two", "o*t", 0, 0, 0},
        {"a*b ab", "*b", 0, VqCmp_Exact, 1},
    };
    for (const auto& c : cases) {
        for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 2, 253}) {
            VqString text = In(1, c.text), pattern = In(1, c.pattern);
            text.MapToCodeSet(codeSet);
            pattern.MapToCodeSet(codeSet);
            EXPECT_EQ(text.Find(pattern, c.start, c.op), c.place) << c.text << " / " << c.pattern;
            EXPECT_EQ(FindSlowly(text, pattern, c.start, c.op), c.place) << c.text << " / " << c.pattern;
        }
    }
    EXPECT_EQ(VqString("abc").Find('c'), 2);
    EXPECT_EQ(Wide(u"a\u20AC").Find(static_cast<unsigned short>(0x20AC)), 1);
    EXPECT_EQ(VqString("abc").Find('\0'), -1);
    EXPECT_EQ(VqString("abcabc").SubStringPos("ca"), 2);
    EXPECT_EQ(VqString().SubStringPos("a"), -1);
}

TEST_F(StringSearch, PlacesBehindTheRangeOfShortAreReadUnsigned) {
    const VqString text((std::string(65000, 'x') + "needle").c_str());
    EXPECT_EQ(static_cast<unsigned short>(text.Find("needle")), 65000);
    VqString native = text, pattern("needle");
    native.SetCodeSetCode(0);
    pattern.SetCodeSetCode(0);
    EXPECT_EQ(static_cast<unsigned short>(native.Find(pattern)), 65000);
}

// --- Against the slow way

constexpr unsigned char codeSets[] = {0, 0, 1, 1, 2, 6, 7, 12, 253, 253, 225};
constexpr unsigned char languages[] = {0, 1, 2, 8, 10, 14, 16, 17, 18, 20};
constexpr unsigned short operations[] = {
    VqCmp_Default, VqCmp_Default, VqCmp_Exact,   VqCmp_Exact | VqCmp_IgnoreCase, 0x50, 0x70,  0, VqCmp_IgnoreCase,
    0x40,          0x60,          VqCmp_KeyOnly, VqCmp_KeyOnly | VqCmp_Exact,    0xE0, 0x270,
};

// Letters that contract, expand and differ by little, in Unicode.
constexpr char16_t letters[] =
    u"aabbAB\u00E1\u00E0\u00E4ccchhszzdzlyss\u00DF\u00E6oe\u0153SSn\u00F1  **??%\\123\u0430\u0410\u0436\u4E00\u4E01";

template <class T, std::size_t n>
T Pick(const T (&from)[n], std::mt19937& random) {
    return from[random() % n];
}

// Maps a text into a code set, 0 included, and gives it a language.
void Relabel(VqString& s, unsigned char codeSet, unsigned char language) {
    s.SetLanguage(language);
    s.MapToCodeSet(codeSet != 0 ? codeSet : static_cast<unsigned char>(1));
    if (codeSet == 0) s.SetCodeSetCode(0);
}

class SearchMaker {
  public:
    explicit SearchMaker(unsigned seed) : random_(seed) {}

    VqString Text(std::size_t most) {
        VqString text = Wide(Units(random_() % (most + 1)));
        Relabel(text, Pick(codeSets, random_), Pick(languages, random_));
        return text;
    }
    // Mostly a changed piece of the text, in its code set and language.
    VqString Pattern(const VqString& text) {
        if (random_() % 16 == 0) return Text(6);
        VqString pattern =
            text.Copy(static_cast<unsigned short>(random_() % (text.Len() + 1u)), static_cast<short>(random_() % 6));
        if (random_() % 3 == 0) {
            VqString extra = Wide(Units(1));
            pattern.Replace(extra, static_cast<unsigned short>(random_() % 4));
        }
        for (int i = 0; i < pattern.Len(); ++i) {
            if (random_() % 4 == 0) pattern[i] = pattern[i].ToUpper();
        }
        if (random_() % 8 == 0) Relabel(pattern, Pick(codeSets, random_), text.GetLanguage());
        if (random_() % 8 == 0) pattern.SetLanguage(Pick(languages, random_));
        if (random_() % 64 == 0) pattern.SetLanguage(VqNullMark);
        return pattern;
    }
    void Settings() {
        VqString::SetDefaultCmpOp(random_() % 2 ? unsigned{VqCmp_Exact} : Pick(operations, random_));
        const auto maybe = [this](char other) { return VqChar(random_() % 4 ? '\0' : other); };
        VqString::SetAsterisk(maybe(Pick("*?%ab", random_)));
        VqString::SetQuestion(maybe(Pick("*?%ab", random_)));
        VqString::SetEscape(maybe('\\'));
    }
    unsigned Below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    unsigned short Operation() { return Pick(operations, random_); }

  private:
    std::u16string Units(std::size_t n) {
        std::u16string units;
        const unsigned spread = random_() % 2 ? 6 : static_cast<unsigned>(std::size(letters) - 1);
        const unsigned from = Below(static_cast<unsigned>(std::size(letters)) - spread);
        while (units.size() < n) units += letters[from + random_() % spread];
        for (char16_t& unit : units) unit = unit != 0 ? unit : u'a';
        return units;
    }
    std::mt19937 random_;
};

std::string Describe(const VqString& s) {
    return Hex(s.StrGet(), s.GetSize()) + " in " + std::to_string(s.GetCodeSet()) + "/" +
           std::to_string(s.GetLanguage());
}

void ExpectFindsSlowly(const VqString& text, const VqString& pattern, unsigned short start, unsigned short op) {
    ASSERT_EQ(text.Find(pattern, start, op), FindSlowly(text, pattern, start, op))
        << Describe(text) << "\n"
        << Describe(pattern) << "\nfrom " << start << ", op " << op << ", default " << VqString::GetDefaultCmpOp();
}

TEST_F(StringSearch, FindsWhatTheSlowWayFinds) {
    SearchMaker maker(2202);
    int found = 0;
    for (int round = 0; round < 60000; ++round) {
        if (round % 16 == 0) maker.Settings();
        const VqString text = maker.Text(round % 64 == 0 ? 300 : 24), pattern = maker.Pattern(text);
        const auto start = static_cast<unsigned short>(maker.Below(4) ? 0 : maker.Below(text.Len() + 3u));
        const unsigned short op = maker.Operation();
        ASSERT_NO_FATAL_FAILURE(ExpectFindsSlowly(text, pattern, start, op));
        found += text.Find(pattern, start, op) != -1;
    }
    EXPECT_GT(found, 15000);
}

TEST_F(StringSearch, ReplacesWhatTheSlowWayReplaces) {
    SearchMaker maker(2203);
    int replaced = 0;
    for (int round = 0; round < 20000; ++round) {
        if (round % 16 == 0) maker.Settings();
        VqString text = maker.Text(60), slow = text;
        const VqString before = text, from = maker.Pattern(text), to = maker.Pattern(text);
        const auto start = static_cast<unsigned short>(maker.Below(3) ? 0 : maker.Below(text.Len() + 3u));
        if (from.Len() != 0) ReplaceSlowly(slow, from, to, start);
        text.ReplaceAll(from, to, start);
        ASSERT_EQ(Describe(text), Describe(slow)) << Describe(before) << "\n" << Describe(from) << "\n" << Describe(to);
        replaced += Describe(text) != Describe(before);
    }
    EXPECT_GT(replaced, 4000);
}

// Texts long enough for a filter, in letters that come one by one, as two and in pairs.
TEST_F(StringSearch, FiltersNothingThatFits) {
    std::mt19937 random(512);
    for (int round = 0; round < 1500; ++round) {
        std::u16string units(600 + random() % 100, u'x'), wanted(1 + random() % 4, u's');
        for (std::size_t i = 200; i < units.size(); ++i) units[i] = Pick(u"sS\u00DFa\u00E6\u00E4echx", random);
        for (char16_t& unit : wanted) unit = Pick(u"ssaech", random);
        std::replace(units.begin(), units.end(), u'\0', u'\u4E00');
        std::replace(wanted.begin(), wanted.end(), u'\0', u'\u00DF');
        VqString text = Wide(units), pattern = Wide(wanted);
        const unsigned char codeSet = Pick(codeSets, random), language = Pick(languages, random);
        Relabel(text, codeSet, language);
        Relabel(pattern, codeSet, language);
        ASSERT_NO_FATAL_FAILURE(ExpectFindsSlowly(text, pattern, 0, Pick(operations, random)));
    }
    EXPECT_EQ(Wide(u"ab").Find(In(1, "*"), 2, 0), -1);  // no byte left for the one of the pattern
}

// Texts in which many places fit for long.
TEST_F(StringSearch, StaysExactWhereManyPlacesFitForLong) {
    std::mt19937 random(1977);
    for (int round = 0; round < 120; ++round) {
        std::string units(2000 + random() % 1000, 'a');
        const unsigned rare = 1 + static_cast<unsigned>(random() % 60);
        for (char& unit : units) {
            if (random() % rare == 0) unit = random() % 4 ? 'b' : 'A';
            if (random() % 400 == 0) unit = '\xDF';
        }
        std::string wanted = units.substr(random() % 1900, 20 + random() % 80);
        if (random() % 2) wanted.back() ^= 1;
        if (random() % 2) wanted.insert(random() % 20, round % 3 == 0 ? "ss" : "b");
        const unsigned char codeSet = Pick(codeSets, random);
        VqString text = In(1, units), pattern = In(1, wanted);
        Relabel(text, codeSet, 2);
        Relabel(pattern, codeSet, 2);
        ASSERT_NO_FATAL_FAILURE(ExpectFindsSlowly(text, pattern, 0, Pick(operations, random)));
    }
}

// --- Bytes

// Exact sizes, so that a sanitizer sees any read outside.
using ByteText = std::vector<unsigned char>;

TEST(ByteSearch, KernelsAgreeWithThePlainLoop) {
    std::mt19937 random(64);
    for (const vq::ByteKernel& kernel : vq::ByteKernels) {
        if (!kernel.supported()) continue;
        int unfinished = 0;
        for (int round = 0; round < 40000; ++round) {
            const std::size_t length = 2 + random() % 120,
                              wanted = 2 + random() % std::min(length - 1, std::size_t{20});
            ByteText text(length);
            for (unsigned char& byte : text) byte = random() % 8 ? 'a' : 0xFE;
            ByteText pattern(text.end() - static_cast<std::ptrdiff_t>(wanted), text.end());
            if (random() % 2) pattern[random() % wanted] ^= 0x9F;
            const vq::BytePattern prepared{pattern.data(), wanted, 1 + random() % (wanted - 1), random() % wanted};
            const std::size_t end = length - wanted + 1, start = random() % end;
            std::size_t expected = start;
            while (expected < end && std::memcmp(&text[expected], pattern.data(), wanted) != 0) ++expected;
            const bool scarce = round % 2 != 0;
            vq::ComparisonBudget budget(scarce ? random() % 61 : 100000);
            const vq::ByteHit hit = kernel.find(text.data(), start, end, prepared, budget);
            if (scarce && !hit.found) {
                ASSERT_GE(hit.place, start) << kernel.name;
                ASSERT_LE(hit.place, expected) << kernel.name;
                unfinished += hit.place < expected;
            } else {
                ASSERT_EQ(hit.place, expected) << kernel.name;
                ASSERT_EQ(hit.found, expected < end) << kernel.name;
            }
        }
        EXPECT_GT(unfinished, 1000) << kernel.name;
    }
}

std::size_t FindInLinearTime(const std::string& text, std::size_t start, const std::string& wanted) {
    const ByteText bytes(text.begin(), text.end()), pattern(wanted.begin(), wanted.end());
    return vq::FindTwoWay(bytes.data(), start, bytes.size() - pattern.size() + 1, pattern.data(), pattern.size());
}

std::string Word(std::size_t number, unsigned letters, std::size_t length) {
    std::string word(length, 'a');
    for (char& letter : word) {
        letter = static_cast<char>('a' + number % letters);
        number /= letters;
    }
    return word;
}

TEST(ByteSearch, LinearTimeFindsEveryShortWordInEveryShortText) {
    const struct {
        unsigned letters;
        std::size_t longestWord, longestText, words[11];  // as many of each length
    } alphabets[] = {{2, 6, 10, {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024}}, {3, 4, 6, {1, 3, 9, 27, 81, 243, 729}}};
    for (const auto& [letters, longestWord, longestText, words] : alphabets) {
        for (std::size_t length = 2; length <= longestText; ++length) {
            for (std::size_t i = 0; i < words[length]; ++i) {
                const std::string text = Word(i, letters, length);
                for (std::size_t wanted = 2; wanted <= std::min(length, longestWord); ++wanted) {
                    for (std::size_t j = 0; j < words[wanted]; ++j) {
                        const std::string word = Word(j, letters, wanted);
                        ASSERT_EQ(FindInLinearTime(text, 0, word), text.find(word)) << word << " in " << text;
                    }
                }
            }
        }
    }
}

// Words with a period, whole or broken, in texts that are made of pieces of them.
TEST(ByteSearch, LinearTimeFindsPeriodicWords) {
    std::mt19937 random(1991);
    int found = 0;
    for (int round = 0; round < 40000; ++round) {
        const unsigned letters = random() % 2 ? 2 : 3;
        const std::string root = Word(random(), letters, 1 + random() % 7);
        const std::size_t length = 2 + random() % 24, textLength = 2 * length + random() % 80;
        std::string word, text;
        while (word.size() < length) word += root;
        word.resize(length);
        if (random() % 2) word[random() % length] = static_cast<char>('a' + random() % letters);
        while (text.size() < textLength) {
            text += random() % 3 ? word.substr(random() % length) : Word(random(), letters, random() % 3);
        }
        const std::size_t start = random() % 4 ? 0 : random() % (text.size() - length);
        const std::size_t expected = text.find(word, start);
        ASSERT_EQ(FindInLinearTime(text, start, word), expected) << word << " in " << text << " from " << start;
        found += expected != text.npos;
    }
    EXPECT_GT(found, 10000);
}

}  // namespace
