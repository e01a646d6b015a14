// Strings of the East Asian code sets: whatever works on the other sets works on these.
#include <gtest/gtest.h>

#include "stringiterator.h"
#include "testsupport.h"
#include "vqchar.h"
#include "vqlanguagecontext.h"

using namespace vqtest;

namespace {

struct Sample {
    unsigned char codeSet;
    unsigned char language;
    std::u16string text;
    std::u16string codes;  // the same in the set
};

const Sample samples[] = {
    {225, 20, u"日本 ｱア7", u"\u93FA\u967B \u00B1\u83417"},
    {226, 21, u"中文 €é", u"\uD6D0\uCEC4 \u0080\uA8A6"},
    {227, 22, u"中文 €十", u"\uA4A4\uA4E5 \uA3E1\uA451"},
    {228, 23, u"한글 똠漢", u"\uC7D1\uB1DB \u8C63\uF9D3"},
};

VqString Stored(const Sample& sample) {
    VqString s(sample.codeSet, sample.language);
    s.AssignChars(sample.codes.c_str(), sample.codeSet, VqString::All);
    return s;
}

TEST(EastAsianString, MapsToUnicodeAndBack) {
    for (const Sample& sample : samples) {
        VqString s = Stored(sample);
        EXPECT_EQ(s.Len(), sample.text.size());
        EXPECT_EQ(s.MapToCodeSet(253), 0);
        EXPECT_EQ(Units(s), sample.text);
        EXPECT_EQ(s.MapToCodeSet(sample.codeSet), 0);
        EXPECT_EQ(Units(s), sample.codes);
        VqString bytes = Stored(sample);
        EXPECT_EQ(bytes.SetCodeSet(1), 0);
        EXPECT_EQ(Bytes(bytes).substr(0, 3), "?? ");
        EXPECT_EQ(Stored(sample).SetCodeSetCode(253), 0);  // relabelled, not mapped
    }
}

TEST(EastAsianString, TakesTextOfOtherSetsMapped) {
    for (const Sample& sample : samples) {
        VqString s(sample.codeSet, sample.language);
        s += Wide(sample.text);
        s << "a\xDF";
        VqString expected = Stored(sample);
        expected += Wide(sample.codeSet == 228 ? u"aß" : u"a?");
        EXPECT_EQ(Units(s), Units(expected));
        s[0] = VqChar(u'本', 253, 0);
        EXPECT_EQ(s[0].GetCodeIn(253), u'本');
        EXPECT_TRUE(s[0].IsAlpha());
    }
}

TEST(EastAsianString, ComparesAndWalksAsItsUnicodeTextDoes) {
    const std::u16string others[] = {u"", u"7", u"é", u"ab", u"日本", u"中", u"中文 €", u"한글", u"하나", u"漢字"};
    for (const Sample& sample : samples) {
        VqString wide = Wide(sample.text);
        wide.SetLanguage(sample.language);
        const VqString s = Stored(sample);
        EXPECT_TRUE(s == wide);
        EXPECT_TRUE(s.EqualsIgnoreLanguage(wide));
        VqStringIterator here(s), there(wide);
        while (const unsigned short order = there.GetNextOrder(1)) EXPECT_EQ(here.GetNextOrder(1), order);
        EXPECT_TRUE(here.IsEnd());
        for (const std::u16string& text : others) {
            VqString other = Wide(text);
            other.SetLanguage(sample.language);
            VqString mapped(other);
            mapped.MapToCodeSet(sample.codeSet);
            if (mapped.Compare(other) != 0) continue;  // the set lacks a character of it
            EXPECT_EQ(Sign(s.Compare(mapped)), Sign(wide.Compare(other)));
            EXPECT_EQ(Sign(mapped.Compare(s)), Sign(other.Compare(wide)));
        }
    }
}

TEST(EastAsianString, DefaultsReachThem) {
    VqLanguageContext::SetDefault16CodeSet(225);
    const unsigned short code = 0x93FA;
    EXPECT_EQ(VqString(code).GetCodeSet(), 225);
    EXPECT_EQ(VqChar(code).GetCodeIn(253), u'日');
    ___VqI18NContext(1);
}

}  // namespace
