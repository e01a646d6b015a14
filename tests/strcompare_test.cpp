#include "strcompare.h"

#include <gtest/gtest.h>

#include "testsupport.h"
#include "vqstring.h"

using namespace vqtest;

namespace {

int Cmp(const VqString& a, const VqString& b, unsigned short op = VqCmp_Exact, short n = -1) {
    return Sign(a.Compare(b, n, op));
}

TEST(VqStrCmp, OrdersByLetterThenAccentThenCase) {
    // Ascending, each text in Windows-1252.
    const char* const ascending[] = {
        "",        " ",       "-",          "1",     "2",    "a",       "A",     "ab",    "abc",    "b", "cote",
        "c\xF4te", "cot\xE9", "c\xF4t\xE9", "Cote2", "cotf", "ma\337e", "masse", "Masse", "Masten", "z",
    };
    const int n = static_cast<int>(std::size(ascending));
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 2, 253}) {
        for (int i = 0; i < n; ++i) {
            for (int k = 0; k < n; ++k) {
                VqString a(ascending[i]), b(ascending[k]);
                a.MapToCodeSet(codeSet);
                b.MapToCodeSet(codeSet);
                EXPECT_EQ(Cmp(a, b), Sign(i - k)) << ascending[i] << " ~ " << ascending[k] << " in " << int{codeSet};
            }
        }
    }
}

TEST(VqStrCmp, TextsOfDifferentCodeSetsCompareByTheirCharacters) {
    EXPECT_EQ(Cmp(In(3, "caf\x82"), Wide(u"caf\u00E9")), 0);
    EXPECT_EQ(Cmp(In(0, "caf\xE9"), In(1, "caf\xE9")), 0);
    EXPECT_LT(Cmp(In(0, "caf"), Wide(u"caf\u00E9")), 0);
}

TEST(VqStrCmp, OptionsMaskLevels) {
    const struct {
        const char *a, *b;
        unsigned short op;
        int sign;
    } cases[] = {
        {"ABC", "abc", VqCmp_IgnoreCase, 0},
        {"ABC", "abc", VqCmp_IgnoreCase | VqCmp_Exact, 0},
        {"ABC", "abc", 0, 1},  // the sign of the case level is reversed: lower case first
        {"ABC", "abc", VqCmp_IgnoreAccents | VqCmp_Exact, 1},
        {"\xE9t\xE9", "ete", VqCmp_IgnoreAccents | VqCmp_Exact, 0},
        {"\xE9t\xE9", "ete", VqCmp_IgnoreCase | VqCmp_Exact, 1},
        {"\xC9t\xE9", "ete", VqCmp_IgnoreCase | VqCmp_IgnoreAccents | VqCmp_Exact, 0},
        {"\xE9te", "et\xE9", VqCmp_Exact, -1},  // the last accent decides
        {"\xDF", "ss", VqCmp_IgnoreCase | VqCmp_IgnoreAccents | VqCmp_Exact, 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Cmp(In(1, c.a), In(1, c.b), c.op), c.sign) << c.a << " ~ " << c.b;
}

TEST(VqStrCmp, NullSortsFirst) {
    VqString null1, null2;
    null1.SetNullValue();
    null2 = VqString(254, 0);
    for (const unsigned short op : {VqCmp_Exact, VqCmp_KeyOnly}) {
        EXPECT_EQ(Cmp(null1, null2, op), 0);
        EXPECT_EQ(Cmp(null1, VqString(), op), -1);
        EXPECT_EQ(Cmp(VqString(), null1, op), 1);
    }
    EXPECT_EQ(Cmp(VqString("x"), null1, 0), 1);
    EXPECT_EQ(Cmp(null1, VqString("x"), VqCmp_Exact, 0), -1);
}

TEST(VqStrCmp, NativeTextsCompareByBytes) {
    EXPECT_EQ(VqStrCmp(0, 0, "abc", 0, 0, "abd", VqCmp_Exact, -1, 1, nullptr), -1);
    EXPECT_EQ(VqStrCmp(0, 0, "\xE9", 0, 0, "z", VqCmp_Exact, -1, 1, nullptr), 0xE9 - 'z');
    EXPECT_EQ(VqStrCmp(0, 0, "abc", 0, 0, "abd", VqCmp_Exact, 2, 1, nullptr), 0);
    EXPECT_EQ(VqStrCmp(0, 0, nullptr, 0, 0, "a", VqCmp_Exact, -1, 1, nullptr), -1);
    EXPECT_EQ(VqStrCmp(0, 0, nullptr, 0, 0, "", VqCmp_Exact, -1, 1, nullptr), 0);
    EXPECT_EQ(VqStrCmp(0, 0, "ABC", 0, 0, "abc", VqCmp_IgnoreCase, -1, 1, nullptr), 'A' - 'a');
    EXPECT_EQ(VqStrCmp(1, 0, "anything", 1, 0, "else", VqCmp_Exact, 0, 1, nullptr), 0);
}

TEST(VqStrCmp, CountsCharactersOfEachText) {
    EXPECT_EQ(Cmp(In(1, "abcx"), In(1, "abcy"), VqCmp_Exact, 3), 0);
    EXPECT_EQ(Cmp(Wide(u"abcx"), In(1, "abc"), VqCmp_Exact, 3), 0);
    EXPECT_EQ(Cmp(In(1, "ab"), In(1, "abc"), VqCmp_Exact, 3), -1);
    EXPECT_EQ(Cmp(In(1, "abcx"), In(1, "abcy"), VqCmp_KeyOnly, 3), 0);
}

TEST(VqStrCmp, KeyOnlyCountsPairsOfOrders) {
    EXPECT_EQ(Cmp(In(1, "\xDF"), In(1, "s"), VqCmp_Exact, 1), 1);
    EXPECT_EQ(Cmp(In(1, "\xDF"), In(1, "s"), VqCmp_KeyOnly, 1), 0);
    EXPECT_EQ(Cmp(In(1, "\xDF"), In(1, "s"), VqCmp_KeyOnly, 2), 1);
    EXPECT_EQ(Cmp(In(1, "x\xDFy"), In(1, "x\xDFz"), VqCmp_KeyOnly, 3), 0);
    EXPECT_EQ(Cmp(In(1, "x\xDFy"), In(1, "x\xDFz"), VqCmp_KeyOnly, 4), -1);
}

// A slow matcher by recursion, on the letters a, b and both wildcards.
bool Matches(const char* text, const char* pattern) {
    if (*pattern == '*') return Matches(text, pattern + 1) || (*text != 0 && Matches(text + 1, pattern));
    if (*text == 0) return *pattern == 0;
    return (*pattern == '?' || *pattern == *text) && Matches(text + 1, pattern + 1);
}

// All texts over the alphabet up to a length.
std::vector<std::string> AllTexts(const std::string& alphabet, std::size_t longest) {
    std::vector<std::string> all = {""};
    for (std::size_t from = 0; all.back().size() < longest;) {
        const std::size_t to = all.size();
        for (; from < to; ++from) {
            for (const char c : alphabet) all.push_back(all[from] + c);
        }
    }
    return all;
}

TEST(VqStrCmp, PatternsMatchExactlyWhatTheSlowMatcherFinds) {
    const std::vector<std::string> texts = AllTexts("ab", 6);
    const std::vector<std::string> patterns = AllTexts("ab*?", 5);
    for (const std::string& pattern : patterns) {
        for (const std::string& text : texts) {
            const bool expected = Matches(text.c_str(), pattern.c_str());
            const bool bytes = VqStrCmp(0, 0, text.c_str(), 0, 0, pattern.c_str(), 0, -1, 1, nullptr) == 0;
            const bool orders = VqStrCmp(1, 0, text.c_str(), 1, 0, pattern.c_str(), 0, -1, 1, nullptr) == 0;
            ASSERT_EQ(bytes, expected) << text << " ~ " << pattern;
            ASSERT_EQ(orders, expected) << text << " ~ " << pattern;
        }
    }
}

TEST(VqStrCmp, PatternsFollowTheOptions) {
    EXPECT_EQ(Cmp(In(1, "xABcd"), In(1, "*abc?"), VqCmp_IgnoreCase), 0);
    EXPECT_NE(Cmp(In(1, "xABcd"), In(1, "*abc?"), 0), 0);
    EXPECT_EQ(Cmp(In(1, "Stra\337e"), In(1, "*SSE"), VqCmp_IgnoreCase | VqCmp_IgnoreAccents), 0);
    EXPECT_EQ(Cmp(In(1, "abc"), In(1, "a*")), 1) << "exact: no pattern";
    EXPECT_EQ(VqStrCmp(1, 0, "", 1, 0, "?", 0, -1, 1, nullptr), -1);
}

TEST(VqStrCmp, HostilePatternsStayPolynomial) {
    const std::string text(10000, 'a');
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{0, 1}) {
        EXPECT_NE(VqStrCmp(codeSet, 0, text.c_str(), codeSet, 0, "*a*a*a*a*a*a*b", 0, -1, 1, nullptr), 0);
    }
}

TEST(VqStrCmp, EqualityIgnoresLanguageOnRequest) {
    EXPECT_TRUE(In(1, "abc", 1).EqualsIgnoreLanguage(In(1, "abc", 2)));
    EXPECT_FALSE(In(1, "abc", 1).EqualsIgnoreLanguage(In(1, "Abc", 1)));
    const VqString s("x");
    EXPECT_TRUE(s == s);
    EXPECT_TRUE(VqString("a") < VqString("b"));
    EXPECT_TRUE(VqString("b") >= VqString("b"));
    EXPECT_TRUE(VqString("b") != VqString("B"));
}

}  // namespace
