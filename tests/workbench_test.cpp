// What the workbench says and does about the order of texts, held to VqStrCmp.
#include <gtest/gtest.h>

#include <algorithm>

#include "../tools/vqtype/collation.h"
#include "../tools/vqtype/ownletters.h"
#include "../tools/vqtype/textorder.h"
#include "strcompare.h"
#include "testsupport.h"
#include "vqlanguagecontext.h"

namespace {

constexpr unsigned short Levels[] = {0, VqCmp_IgnoreCase, VqCmp_IgnoreAccents, VqCmp_IgnoreCase | VqCmp_IgnoreAccents};
constexpr unsigned char CodeSets[] = {0, 1, 12, 13, 14, 226, 253};

// Words of few letters, so that many are equal at some level: letters with accents, letters that sort as two, letters
// that sort as one with the next, other scripts, digits and symbols.
class Words {
  public:
    Words(unsigned char codeSet, unsigned char language, unsigned seed = 1, const std::u16string& often = u"")
        : codeSet_(codeSet), language_(language), random_(seed) {
        const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(codeSet);
        for (const char16_t unit : often + u"aAáàäÄåhcCčdzyæÆßsS l1- \u00e9eEоОйжαά漢") {
            if (unit != 0 && set.HasUnicode(unit)) codes_.push_back(set.FromUnicode(unit));
        }
        isWide_ = set.GetCharSize() == 2;
    }

    VqString Next(int most = 6) {
        const auto size = static_cast<unsigned>(Below(static_cast<unsigned>(most) + 1));
        std::vector<unsigned short> wide;
        std::vector<char> narrow;
        for (unsigned i = 0; i < size; ++i) {
            wide.push_back(codes_[Below(static_cast<unsigned>(Below(4) ? 8 : codes_.size()))]);
            narrow.push_back(static_cast<char>(wide.back()));
        }
        VqString word(codeSet_, language_);
        word.AssignChars(isWide_ ? static_cast<const void*>(wide.data()) : narrow.data(), codeSet_,
                         static_cast<unsigned short>(size));
        return word;
    }

  private:
    std::size_t Below(unsigned limit) { return random_() % limit; }

    unsigned char codeSet_, language_;
    bool isWide_;
    std::vector<unsigned short> codes_;
    std::mt19937 random_;
};

template <class Check>
void ForEachOrder(Check check) {
    for (const unsigned char codeSet : CodeSets) {
        for (unsigned char language = 0; VqLanguageContext::GetLanguageName(language); ++language) {
            for (const unsigned short ignored : Levels) {
                SCOPED_TRACE(testing::Message() << "code set " << +codeSet << ", language " << +language
                                                << ", ignored levels " << ignored);
                check(codeSet, language, ignored);
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}

TEST(TextOrder, IsThatOfAStableSortByComparison) {
    ForEachOrder([](unsigned char codeSet, unsigned char language, unsigned short ignored) {
        Words random(codeSet, language);
        std::vector<VqString> words;
        TextOrder order(codeSet, language, ignored);
        for (std::uint32_t i = 0; i < 200; ++i) {
            words.push_back(random.Next(i % 10 ? 6 : 40));
            order.Add(i, words[i].StrGet(), words[i].Len());
        }
        const auto compare = [&](std::uint32_t a, std::uint32_t b) {
            return words[a].Compare(words[b], -1, static_cast<unsigned short>(VqCmp_Exact | ignored));
        };
        std::vector<std::uint32_t> expected(words.size());
        for (std::uint32_t i = 0; i < expected.size(); ++i) expected[i] = i;
        std::stable_sort(expected.begin(), expected.end(), [&](auto a, auto b) { return compare(a, b) < 0; });
        const auto places = order.Sort();
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(expected[i], places[i].number);
            ASSERT_EQ(i == 0 || compare(expected[i - 1], expected[i]) != 0, places[i].isFirst);
        }
    });
}

TEST(TextOrder, LongTextsDifferAtTheirEnds) {
    const std::vector<std::string> texts{std::string(60000, 'a') + "b", std::string(60001, 'a'),
                                         std::string(60000, 'a')};
    TextOrder order(1, 0, 0);
    for (std::uint32_t i = 0; i < 3; ++i) order.Add(i, texts[i].c_str(), texts[i].size());
    const auto places = order.Sort();
    EXPECT_EQ(2u, places[0].number);
    EXPECT_EQ(1u, places[1].number);
    EXPECT_EQ(0u, places[2].number);
}

int Compared(const VqString& a, const VqString& b, int op) {
    return VqStrCmp(a.GetCodeSet(), a.GetLanguage(), a.StrGet(), b.GetCodeSet(), b.GetLanguage(), b.StrGet(),
                    static_cast<unsigned short>(op), -1, 1, nullptr);
}

// The level that decides, found by leaving levels out.
CollationLevel DecidingLevel(const VqString& a, const VqString& b, int op) {
    if (Compared(a, b, op | VqCmp_IgnoreCase | VqCmp_IgnoreAccents) != 0) return CollationLevel::Primary;
    if (Compared(a, b, op | VqCmp_IgnoreCase) != 0) return CollationLevel::Accent;
    return Compared(a, b, op) != 0 ? CollationLevel::Case : CollationLevel::None;
}

TEST(Collation, DecidesAsTheComparisonDoes) {
    ForEachOrder([](unsigned char codeSet, unsigned char language, unsigned short ignored) {
        Words left(codeSet, language, 1), right(codeSet, language, 2);
        const auto op = static_cast<unsigned short>(VqCmp_Exact | ignored);
        for (int i = 0; i < 100; ++i) {
            const VqString a = left.Next(i % 2 ? 6 : 2), b = right.Next(i % 2 ? 6 : 2);
            const Collation collation = Collate(a, b, op);
            ASSERT_EQ(vqtest::Sign(Compared(a, b, op)), collation.sign) << i;
            ASSERT_EQ(DecidingLevel(a, b, op), collation.level) << i;
        }
    });
}

// Behind a '*' that the text is too short for, no level decides.
TEST(Collation, MatchesAsThePatternDoes) {
    int misfits = 0, fits = 0;
    ForEachOrder([&](unsigned char codeSet, unsigned char language, unsigned short ignored) {
        Words texts(codeSet, language, 1), patterns(codeSet, language, 2, u"*?");
        for (int i = 0; i < 100; ++i) {
            const VqString text = texts.Next(i % 2 ? 6 : 2), pattern = patterns.Next(i % 2 ? 6 : 2);
            const Collation collation = CollatePattern(text, pattern, ignored);
            ASSERT_EQ(vqtest::Sign(Compared(text, pattern, ignored)), collation.sign) << i;
            ASSERT_EQ(collation.fits ? DecidingLevel(text, pattern, ignored) : CollationLevel::None, collation.level);
            ++(collation.fits ? fits : misfits);
        }
    });
    EXPECT_LT(1000, misfits);
    EXPECT_LT(1000, fits);
}

TEST(Collation, NamesThePositionThatDecidesAPattern) {
    const struct {
        const char *text, *pattern;
        CollationLevel level;
        std::size_t position;
        bool fits;
    } cases[] = {
        {"Ab", "aC", CollationLevel::Primary, 1, true},         {"aB\xE9", "abe", CollationLevel::Accent, 2, true},
        {"\xDF", "S", CollationLevel::Primary, 1, true},        {"\xF1u", "n*z", CollationLevel::None, 2, false},
        {"\xE9\xE9u", "ee*u", CollationLevel::Accent, 1, true}, {"ABc", "ab*c", CollationLevel::Case, 0, true},
    };
    for (const auto& c : cases) {
        const Collation collation = CollatePattern(vqtest::In(1, c.text, 2), vqtest::In(1, c.pattern, 2), 0);
        EXPECT_EQ(c.level, collation.level) << c.pattern;
        EXPECT_EQ(c.position, collation.position) << c.pattern;
        EXPECT_EQ(c.fits, collation.fits) << c.pattern;
    }
}

VqString InUnicode(std::u16string_view text, unsigned char language) {
    VqString string(253, language);
    string.AssignChars(text.data(), 253, static_cast<unsigned short>(text.size()));
    return string;
}

void CheckIsOwnLetter(const VqString& letter, unsigned char language) {
    EXPECT_EQ(1u, CollationSteps(letter).size());
    for (char16_t basic = u'a'; basic <= u'z'; ++basic) {
        const Collation collation = Collate(InUnicode({&basic, 1}, language), letter, VqCmp_Exact);
        EXPECT_EQ(CollationLevel::Primary, collation.level) << static_cast<char>(basic);
    }
}

TEST(OwnLetters, SortAsLettersOfTheirOwnInTheirSequence) {
    for (unsigned char language = 0; VqLanguageContext::GetLanguageName(language); ++language) {
        VqString last = InUnicode(u"", language);
        std::size_t number = 0;
        ForEachOwnLetter(language, [&](std::u16string_view text) {
            SCOPED_TRACE(testing::Message() << "language " << +language << ", letter " << number++);
            const VqString letter = InUnicode(text, language);
            CheckIsOwnLetter(letter, language);
            const Collation collation = Collate(last, letter, VqCmp_Exact);
            EXPECT_EQ(CollationLevel::Primary, collation.level);
            EXPECT_EQ(-1, collation.sign);
            last = letter;
        });
    }
}

TEST(Collation, ShowsEveryCharacterOnce) {
    Words random(253, 14);
    for (int i = 0; i < 1000; ++i) {
        const VqString word = random.Next();
        std::size_t next = 0;
        for (const CollationStep& step : CollationSteps(word)) {
            ASSERT_EQ(next, step.first);
            if (step.part == step.parts) next += step.count;
        }
        ASSERT_EQ(word.Len(), next);
    }
}

}  // namespace
