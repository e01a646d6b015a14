// What the workbench says and does about the order of texts, held to VqStrCmp.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "../tools/vqtype/collation.h"
#include "../tools/vqtype/textorder.h"
#include "vqlanguagecontext.h"

namespace {

constexpr unsigned short Levels[] = {0, VqCmp_IgnoreCase, VqCmp_IgnoreAccents, VqCmp_IgnoreCase | VqCmp_IgnoreAccents};
constexpr unsigned char CodeSets[] = {0, 1, 12, 13, 14, 226, 253};

int SignOf(int result) { return (result > 0) - (result < 0); }

// Words of few letters, so that many are equal at some level: letters with accents, letters that sort as two, letters
// that sort as one with the next, other scripts, digits and symbols.
class Words {
  public:
    Words(unsigned char codeSet, unsigned char language, const std::u16string& extra = u"")
        : codeSet_(codeSet), language_(language) {
        const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(codeSet);
        for (const char16_t unit : u"aAáàäÄåhcCčdzyæÆßsS l1- \u00e9eEоОйжαά漢" + extra) {
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
    std::mt19937 random_{1};
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

TEST(Collation, DecidesAsTheComparisonDoes) {
    ForEachOrder([](unsigned char codeSet, unsigned char language, unsigned short ignored) {
        Words random(codeSet, language);
        const auto op = static_cast<unsigned short>(VqCmp_Exact | ignored);
        for (int i = 0; i < 100; ++i) {
            const VqString a = random.Next(), b = random.Next();
            ASSERT_EQ(SignOf(a.Compare(b, -1, op)), Collate(a, b, op).sign) << i;
        }
    });
}

TEST(Collation, MatchesAsThePatternDoes) {
    ForEachOrder([](unsigned char codeSet, unsigned char language, unsigned short ignored) {
        Words random(codeSet, language), patterns(codeSet, language, u"****??");
        for (int i = 0; i < 100; ++i) {
            const VqString text = random.Next(), pattern = patterns.Next();
            ASSERT_EQ(text.Compare(pattern, -1, ignored) == 0, CollatePattern(text, pattern, ignored).sign == 0) << i;
        }
    });
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
