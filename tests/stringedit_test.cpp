#include <gtest/gtest.h>

#include "searchreference.h"
#include "testsupport.h"
#include "vqchar.h"

using namespace vqtest;

namespace {

TEST(StringEdit, TrimmingRemovesWhiteSpaceAtTheEnds) {
    const struct {
        const char *text, *left, *right, *both;
    } cases[] = {
        {" \t a b \n ", "a b \n ", " \t a b", "a b"},
        {"ab", "ab", "ab", "ab"},
        {"a ", "a ", "a", "a"},
        {"   ", "", " ", ""},  // the right end never takes the first character
        {" ", "", " ", ""},
        {"", "", "", ""},
    };
    for (const auto& c : cases) {
        for (const unsigned char codeSet : std::initializer_list<unsigned char>{0, 1, 8}) {
            const VqString text = In(codeSet, c.text);
            EXPECT_EQ(Bytes(VqString(text).LeftTrim()), c.left);
            EXPECT_EQ(Bytes(VqString(text).RightTrim()), c.right);
            EXPECT_EQ(Bytes(VqString(text).Trim()), c.both);
        }
    }
    EXPECT_EQ(Units(Wide(u"\u3000\u00E9 \u2003").Trim()), u"\u00E9");
    VqString spaces((std::string(40000, ' ') + "x").c_str());
    EXPECT_EQ(Bytes(spaces.Trim()), "x");
    EXPECT_EQ(VqString().Trim().GetSize(), 0);
    EXPECT_EQ(Bytes(VqString("a \0d", 4).RightTrim()), "a") << "the text ends at its first zero character";
    EXPECT_EQ(Bytes(VqString("ab\0\0", 4).RightTrim()), "ab");
}

TEST(StringEdit, PartsKeepCodeSetAndLanguageUpToTheEnd) {
    const VqString text = In(2, "abc", 8);
    const struct {
        unsigned short pos;
        short n;
        const char* part;
    } cases[] = {{0, 2, "ab"}, {1, -1, "bc"}, {1, 9, "bc"}, {2, 0, ""}, {0, static_cast<short>(65000), "abc"}};
    for (const auto& c : cases) {
        const VqString part = text.Copy(c.pos, c.n);
        EXPECT_EQ(Bytes(part), c.part);
        EXPECT_EQ(part.GetCodeSet(), 2);
        EXPECT_EQ(part.GetLanguage(), 8);
    }
    for (const VqString& none : {Wide(u"abc").Copy(3, 1), Wide(u"abc").Copy(10, 2), Wide(u"abc").Right(0)}) {
        EXPECT_EQ(none.GetCodeSet(), VqString::GetDefault8CodeSet());
        EXPECT_EQ(none.GetSize(), 0);
    }
    EXPECT_EQ(Units(Wide(u"a\u20ACc").Left(2)), u"a\u20AC");
    EXPECT_EQ(Units(Wide(u"a\u20ACc").Right(2)), u"\u20ACc");
    EXPECT_EQ(Wide(u"abc").Left(0).GetCodeSet(), 253);
    EXPECT_TRUE(VqString::EmptyString().IsEmpty());
    EXPECT_FALSE(VqString::EmptyString().IsNullValue());
}

TEST(StringEdit, LongTextsAreCountedBeyondShort) {
    const VqString text((std::string(40000, 'a') + std::string(25532, 'b')).c_str());
    EXPECT_EQ(text.Len(), 65532);
    EXPECT_EQ(text.Left(40001).Len(), 40001);
    EXPECT_EQ(Bytes(text.Right(25533)).substr(0, 2), "ab");
    const VqString half = text.Left(40000);
    EXPECT_EQ(Bytes(VqString(text).ReplaceAll(half, "x")), "x" + std::string(25532, 'b'));
    VqString list = text, item;
    list[40000] = ',';
    unsigned short pos = 0;
    EXPECT_EQ(VqSplitList(list, item, ",", pos), 0);
    EXPECT_EQ(item.Len(), 40000);
    EXPECT_EQ(VqSplitList(list, item, ",", pos), 0);
    EXPECT_EQ(item.Len(), 25531);
    EXPECT_EQ(VqSplitList(list, item, ",", pos), VqStatus_NoMoreItems);
}

TEST(StringEdit, AStringTakesPartInItsOwnEdits) {
    VqString s("abcd");
    EXPECT_EQ(Bytes(s.Insert(s, 1)), "aabcdbcd");
    EXPECT_EQ(Bytes(s.Replace(s, 6)), "aabcdbaa");
    EXPECT_EQ(s.Find(s), 0);
    EXPECT_EQ(Bytes(s.ReplaceAll("b", s)), "aaaabcdbaacdaabcdbaaaa");
    EXPECT_EQ(Bytes(s.ReplaceAll(s, "new")), "new");
    EXPECT_EQ(Bytes(s.ReplaceAll(s, s)), "new");
    EXPECT_EQ(Bytes(s.ReplaceAll(s, VqString())), "");
}

TEST(StringEdit, ReplacingGoesOnBehindWhatWasPutIn) {
    const struct {
        const char *text, *from, *to;
        unsigned short start;
        const char* result;
    } cases[] = {
        {"aba", "a", "aa", 0, "aabaa"},      {"aba", "a", "aa", 1, "abaa"}, {"aaaa", "aa", "a", 0, "aa"},
        {"a,b,,c", ",", "", 0, "abc"},       {"abc", "x", "y", 0, "abc"},   {"abc", "c", "d", 3, "abc"},
        {"abc", "c", "d", 9, "abc"},         {"aaa", "a", "", 0, ""},       {"caf\xE9", "\xE9", "e\xB4", 0, "cafe\xB4"},
        {"one two", "two", "2", 0, "one 2"},
    };
    for (const auto& c : cases) EXPECT_EQ(Bytes(In(1, c.text).ReplaceAll(c.from, c.to, c.start)), c.result) << c.text;
    EXPECT_EQ(Bytes(VqString("a-b-").ReplaceAll('-', '+', 2)), "a-b+");
    // One byte left at the end is less than the two of the character looked for.
    constexpr unsigned short euro = 0x20AC, letter = 'E';
    EXPECT_EQ(Bytes(In(1, "10 \x80 10 \x80").ReplaceAll(euro, letter)), "10 E 10 \x80");
    EXPECT_EQ(Units(Wide(u"10 E").ReplaceAll("E", Wide(u"\u20AC"))), u"10 \u20AC");
    VqString empty("x");
    empty.Cut(0);
    EXPECT_EQ(Bytes(VqString("abc").ReplaceAll(empty, "-")), "abc");
}

TEST(StringEdit, ReplacingTooMuchReportsAndCutsEachTime) {
    for (const unsigned toLength : {10U, 30000U, 65532U}) {
        const std::string units = "a" + std::string(30000, 'x') + "a" + std::string(30000, 'y') + "aaaa";
        const VqString to(std::string(toLength, 'a').c_str());
        VqString text(units.c_str()), slow(units.c_str());
        std::size_t reports = 0;
        {
            const AssertRecorder recorder;
            ReplaceSlowly(slow, "a", to, 0);
            reports = recorder.Lines().size();
        }
        const AssertRecorder recorder;
        text.ReplaceAll("a", to);
        EXPECT_EQ(recorder.Lines().size(), reports);
        EXPECT_EQ(reports != 0, toLength > 10);
        EXPECT_TRUE(Bytes(text) == Bytes(slow)) << toLength;
    }
}

std::vector<std::string> Split(const char* text, const char* separator) {
    VqString list(text), item;
    std::vector<std::string> items;
    unsigned short pos = 0;
    for (short status = 0; (status = VqSplitList(list, item, separator, pos)) == 0;) items.push_back(Bytes(item));
    return items;
}

TEST(StringEdit, ListsGiveTheirItemsTrimmed) {
    using Items = std::vector<std::string>;
    EXPECT_EQ(Split("x, y", ","), (Items{"x", "y"}));
    EXPECT_EQ(Split(",x,,  y z ,", ","), (Items{"x", "", "y z"}));
    EXPECT_EQ(Split("", ","), Items{});
    EXPECT_EQ(Split("one", ","), Items{"one"});
    EXPECT_EQ(Split("a::b", "::"), (Items{"a", ":b"}));  // only the separator's first character is passed
    VqString list("a,b");
    unsigned short pos = 0;
    EXPECT_EQ(VqSplitList(list, list, ",", pos), 0);
    EXPECT_EQ(Bytes(list), "a");
}

TEST(StringEdit, WildcardsAreWhatTheyWereSetTo) {
    const VqString text = In(1, "50% off? *yes");
    VqString::SetAsterisk(VqChar('%', 1, 0));
    VqString::SetQuestion(VqChar('#', 1, 0));
    EXPECT_EQ(text.Find("0#%f%", 0, 0), -1);  // the '*' put behind is a character now
    EXPECT_NE(text.Compare("5%yes"), 0);
    EXPECT_EQ(text.Compare("5%yes", -1, 0), 0);
    EXPECT_EQ(text.Compare("##% off? *y%", -1, 0), 0);
    VqString::SetEscape(VqChar('\\', 1, 0));
    EXPECT_EQ(text.Compare("50\\% off? *%", -1, 0), 0);
    EXPECT_NE(text.Compare("50\\# off? *%", -1, 0), 0);
    const VqChar usual(0, 1, 0);
    VqString::SetAsterisk(usual);
    VqString::SetQuestion(usual);
    VqString::SetEscape(usual);
    EXPECT_EQ(text.Find("o??", 0, 0), 4);
    EXPECT_NE(text.Compare("5%yes", -1, 0), 0);
}

}  // namespace
