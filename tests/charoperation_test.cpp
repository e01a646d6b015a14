#include "charoperation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "stringiterator.h"
#include "testsupport.h"
#include "vqcase.h"
#include "vqchar.h"
#include "vqlanguagecontext.h"

#ifdef VQTM_HAVE_ICU
#include <unicode/ustring.h>
#endif

using namespace vqtest;

namespace {

constexpr unsigned char Turkish = 17;

// A Unicode text in any code set; what the set lacks must not be in it.
VqString Coded(unsigned char codeSet, const std::u16string& text, unsigned char language = 0) {
    VqString s = Wide(text);
    if (codeSet == 0)
        s.SetCodeSet(0);
    else
        s.MapToCodeSet(codeSet);
    s.SetLanguage(language);
    return s;
}

std::u16string Decoded(VqString s) {
    s.MapToCodeSet(253);
    return Units(s);
}

// --- Case

TEST(CaseOperation, MapsInEveryCodeSetWhatThatSetHas) {
    struct Case {
        unsigned char codeSet;
        unsigned char language;
        std::u16string text, upper, lower;
    };
    static const Case cases[] = {
        {1, 0, u"Straße 7b", u"STRASSE 7B", u"straße 7b"},
        {0, 2, u"ß", u"SS", u"ß"},
        {253, 0, u"ﬁ eﬃ ŉ ΐ", u"FI EFFI ʼN \u0399\u0308\u0301", u"ﬁ eﬃ ŉ ΐ"},
        {5, 0, u"ﬁﬂæ", u"FIFLÆ", u"ﬁﬂæ"},
        {1, 0, u"ÿµŒé", u"ŸµŒÉ", u"ÿµœé"},
        {2, 0, u"ÿÉ", u"ÿÉ", u"ÿé"},
        {4, 0, u"âÇ", u"âÇ", u"âç"},
        {13, 18, u"Ёлка", u"ЁЛКА", u"ёлка"},
        {253, 0, u"\u1FB3\u1F88", u"\u0391\u0399\u1F08\u0399", u"\u1FB3\u1F80"},
        {253, 0, u"ǅ", u"Ǆ", u"ǆ"},
        // The final sigma stands where a word ends; the marks and apostrophes inside one do not end it.
        {8, 19, u"ΣΑΣ ΟΣ", u"ΣΑΣ ΟΣ", u"σας ος"},
        {253, 0, u"ΑΣ'Α ΑΣ' Σ", u"ΑΣ'Α ΑΣ' Σ", u"ασ'α ας' σ"},
        {4, 0, u"aΣ", u"AΣ", u"aσ"},
        // The Turkish pairs, and the others where the language is not Turkish.
        {253, Turkish, u"iı Iİ", u"İI Iİ", u"iı ıi"},
        {10, Turkish, u"iı Iİ", u"İI Iİ", u"iı ıi"},
        {1, Turkish, u"iI", u"iI", u"iI"},
        {253, Turkish, u"I\u0307I\u0323\u0307 \u0307", u"I\u0307I\u0323\u0307 \u0307", u"ii\u0323 \u0307"},
        {253, 0, u"iı Iİ", u"II Iİ", u"iı ii\u0307"},
        {10, 0, u"iı Iİ", u"II Iİ", u"iı ii"},
        // East Asian sets have letters of others.
        {225, 20, u"aя\u03C3日ａ①ⅸ", u"AЯ\u03A3日Ａ①Ⅸ", u"aя\u03C3日ａ①ⅸ"},
        {226, 21, u"ǎЁ中", u"ǎЁ中", u"ǎё中"},
        {228, 23, u"ßæ가", u"SSÆ가", u"ßæ가"},
    };
    for (const Case& c : cases) {
        const VqString text = Coded(c.codeSet, c.text, c.language);
        ASSERT_EQ(Decoded(text), c.text) << int{c.codeSet};
        VqString upper(text), lower(text);
        EXPECT_EQ(&upper.ToUpper(), &upper);
        EXPECT_EQ(&lower.ToLower(), &lower);
        EXPECT_EQ(Decoded(upper), c.upper) << int{c.codeSet};
        EXPECT_EQ(Decoded(lower), c.lower) << int{c.codeSet};
        for (const VqString* s : {&upper, &lower}) {
            EXPECT_EQ(s->GetCodeSet(), c.codeSet);
            EXPECT_EQ(s->GetLanguage(), c.language);
            EXPECT_EQ(s->GetSize(), (s->Len() + 1) * (c.codeSet < 225 ? 1 : 2));
        }
    }
}

TEST(CaseOperation, KeepsTheCodeWhereACharacterHasTwo) {
    for (const unsigned short code : {u'\uEEEF', u'\uFA40'}) {  // Shift_JIS: two codes of the small Roman one
        VqString s(225, 0);
        s.AssignChars(&code, 225, 1);
        EXPECT_EQ(VqString(s).ToLower()[0].GetCode(), code);
        EXPECT_EQ(VqString(s).ToUpper()[0].GetCode(), 0x8754);
    }
}

TEST(CaseOperation, LeavesStringsWithoutBufferAlone) {
    VqString null, empty(253, 5);
    null.SetNullValue();
    EXPECT_TRUE(null.ToUpper().ToLower().IsNullValue());
    EXPECT_EQ(empty.ToUpper().GetSize(), 0);
    EXPECT_EQ(empty.GetCodeSet(), 253);
    VqString cut("x");
    EXPECT_EQ(cut.Cut(0).ToUpper().GetSize(), 1);
}

TEST(CaseOperation, AgreesWithTheSimpleMappingWhereOneCharacterStaysOne) {
    for (const unsigned char codeSet :
         std::initializer_list<unsigned char>{1, 3, 5, 8, 10, 14, 225, 226, 227, 228, 253}) {
        const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(codeSet);
        unsigned longer = 0;
        for (unsigned code = 1; code < (codeSet < 225 ? 256U : 65536U); ++code) {
            const unsigned short units[] = {static_cast<unsigned short>(code), 0};
            const unsigned char byte[] = {static_cast<unsigned char>(code), 0};
            VqString s(codeSet, 0);
            s.AssignChars(codeSet < 225 ? static_cast<const void*>(byte) : units, codeSet, 1);
            VqString upper(s), lower(s);
            upper.ToUpper();
            lower.ToLower();
            longer += upper.Len() > 1;
            if (upper.Len() == 1) {
                ASSERT_EQ(upper[0].GetCode(), set.ToUpper(units[0])) << set.GetName() << code;
            }
            if (lower.Len() == 1) {
                ASSERT_EQ(lower[0].GetCode(), set.ToLower(units[0])) << set.GetName() << code;
            }
        }
        EXPECT_LE(longer, 102U) << set.GetName();
    }
}

#ifndef VQTM_HAVE_ICU

TEST(CaseOperation, AgreesWithIcu) {
    GTEST_SKIP() << "no ICU here: native builds compare with it where libicu-dev is installed";
}

#else

using IcuMapping = std::int32_t (*)(UChar*, std::int32_t, const UChar*, std::int32_t, const char*, UErrorCode*);

std::u16string ByIcu(IcuMapping mapping, const std::u16string& text, const char* locale) {
    UChar out[256];
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t size = mapping(out, 256, text.data(), static_cast<std::int32_t>(text.size()), locale, &status);
    EXPECT_TRUE(U_SUCCESS(status));
    return std::u16string(out, static_cast<std::size_t>(size));
}

void ExpectCaseOfIcu(const std::u16string& text) {
    for (const auto& [locale, language] : {std::pair{"", static_cast<unsigned char>(0)}, {"tr", Turkish}}) {
        const VqString wide = Coded(253, text, language);
        ASSERT_EQ(Units(VqString(wide).ToUpper()), ByIcu(u_strToUpper, text, locale)) << locale;
        ASSERT_EQ(Units(VqString(wide).ToLower()), ByIcu(u_strToLower, text, locale)) << locale;
    }
}

// What depends on its neighbours, and neighbours of each kind: cased, ignorable, both, marks above and elsewhere.
constexpr char16_t neighbours[] = u"\u03A3Ii\u0130\u0131\u0307\u0301\u0323'\u02B0\u0345a \u00DF";

TEST(CaseOperation, AgreesWithIcuForEveryCharacter) {
    for (unsigned unit = 1; unit < 65536; ++unit) {
        if (unit >= 0xD800 && unit < 0xE000) continue;
        ExpectCaseOfIcu({static_cast<char16_t>(unit)});
        ExpectCaseOfIcu({u'a', u'\u03A3', static_cast<char16_t>(unit), u'a'});
        ExpectCaseOfIcu({u'I', static_cast<char16_t>(unit), u'\u0307'});
        if (HasFatalFailure()) FAIL() << std::hex << unit;
    }
}

TEST(CaseOperation, AgreesWithIcuForShortAndRandomTexts) {
    constexpr std::size_t kinds = std::size(neighbours) - 1;
    for (std::size_t i = 0; i < kinds * kinds * kinds * kinds; ++i) {
        std::u16string text;
        for (std::size_t rest = i; rest != 0; rest /= kinds) text += neighbours[rest % kinds];
        ExpectCaseOfIcu(text);
        if (HasFatalFailure()) return;
    }
    std::mt19937 random(7);
    for (int i = 0; i < 4000; ++i) {
        std::u16string text(random() % 40, u' ');
        for (char16_t& unit : text) {
            const unsigned long any = random() % 0xD7FF + 1;
            unit = random() % 2 != 0 ? neighbours[random() % kinds] : static_cast<char16_t>(any >> (random() % 8));
            if (unit == 0) unit = u'x';
        }
        ExpectCaseOfIcu(text);
        if (HasFatalFailure()) return;
    }
}

#endif

// --- Operations of others

// Gives each character so many times, and counts what it was called for.
class Repeat final : public VqCharOperation {
  public:
    explicit Repeat(int times) : times_(times) {}
    int Apply(const VqStringIterator& place, unsigned short result[MaxResult]) override {
        called += static_cast<char>(place.GetCode());
        for (int i = 0; i < MaxResult; ++i) result[i] = place.GetCode();
        return times_;
    }
    std::string called;

  private:
    int times_;
};

TEST(Transform, AppliesAnOperationToEachCharacterInTurn) {
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{0, 3, 225, 253}) {
        const std::string results[] = {"", "abc", "aabbcc", "aaabbbccc", "aaabbbccc"};
        for (int times = 0; times < 5; ++times) {  // more than MaxResult counts as that
            Repeat repeat(times);
            VqString s = Coded(codeSet, u"abc");
            s.Transform(repeat);
            s.MapToCodeSet(1);
            EXPECT_EQ(Bytes(s), results[times]);
            EXPECT_EQ(repeat.called, "abc");
        }
    }
}

TEST(Transform, EndsAtTheZeroCharacterAndLeavesZerosOut) {
    class Zeros final : public VqCharOperation {
        int Apply(const VqStringIterator& place, unsigned short result[MaxResult]) override {
            result[0] = 0;
            result[1] = place.GetCode();
            return 2;
        }
    } zeros;
    VqString s = In(1, std::string("ab\0cd", 5));
    EXPECT_EQ(Bytes(s.Transform(zeros)), "ab");
    EXPECT_EQ(s.GetSize(), 3);
}

TEST(Transform, CutsAtTheLargestSizeAndReportsIt) {
    struct Case {
        unsigned char codeSet;
        unsigned length, size;
        bool reported;
    };
    static const Case cases[] = {
        {1, 32766, 65533, false},   {1, 32767, 65533, true},   {1, 65532, 65533, true},
        {253, 16382, 65530, false}, {253, 16383, 65532, true}, {253, 32765, 65532, true},
    };
    for (const Case& c : cases) {
        VqString s(c.codeSet, 0);
        s.Fill(static_cast<unsigned short>(c.length), 'x');
        AssertRecorder recorder;
        Repeat twice(2);
        s.Transform(twice);
        EXPECT_EQ(s.GetSize(), c.size) << c.length;
        EXPECT_EQ(s.GetSize(), (s.Len() + 1) * (c.codeSet < 225 ? 1 : 2));
        EXPECT_EQ(recorder.Lines().size(), c.reported) << c.length;
    }
}

// --- Writing through an iterator

TEST(WritingIterator, StaysInsideItsBuffer) {
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 253}) {
        const unsigned z = codeSet < 225 ? 1 : 2;
        for (unsigned long size = 0; size < 10; ++size) {
            std::vector<unsigned char> buffer(size + 4, 0xEE);
            VqStringIterator target = VqStringIterator::ForWriting(codeSet, 0, buffer.data(), size);
            Repeat twice(2);
            VqStringIterator source(codeSet, 0, codeSet < 225 ? static_cast<const void*>("abc") : u"abc");
            EXPECT_EQ(source.Transform(target, twice), size / z >= 7);
            const unsigned long room = size / z == 0 ? 0 : std::min<unsigned long>(size / z - 1, 6);
            EXPECT_EQ(target.GetPosition(), room);
            EXPECT_EQ(source.GetPosition(), room / 2);
            EXPECT_TRUE(target.IsEnd());
            for (unsigned long i = (size >= z ? room + 1 : 0) * z; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], 0xEE);
        }
    }
    EXPECT_FALSE(VqStringIterator::ForWriting(1, 0, nullptr, 9).Put('a'));
    EXPECT_FALSE(VqStringIterator(VqString("text")).Put('a'));
}

TEST(WritingIterator, TakesWhatAnotherCodeSetGivesMapped) {
    unsigned short buffer[8];
    VqStringIterator target = VqStringIterator::ForWriting(253, 0, buffer, sizeof buffer);
    const VqString text = In(1, "\x80\xE9z");
    Repeat once(1);
    EXPECT_TRUE(VqStringIterator(text).Transform(target, once));
    EXPECT_EQ(Units(VqString(buffer)), u"€éz");
    EXPECT_FALSE(target.Put(0));
    EXPECT_TRUE(target.Put('!'));
    EXPECT_EQ(Units(VqString(buffer)), u"€éz!");
}

}  // namespace
