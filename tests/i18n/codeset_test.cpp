#include "vqcodeset.h"

#include <gtest/gtest.h>

#include <cstring>

#include "i18nsupport.h"

#ifndef _WIN32
#include <iconv.h>
#include <wctype.h>

#include <clocale>
#endif

namespace {

using namespace vqtest;

constexpr unsigned short NoCharacter = 0xFFFD;

unsigned short U(unsigned code) { return static_cast<unsigned short>(code); }

TEST(CodeSet, UnitsWithoutCodeBecomeQuestionMarks) {
    for (const VqCodeSet* set : AllSets()) {
        unsigned has = 0;
        for (unsigned unit = 0; unit < 65536; ++unit) {
            const unsigned short code = set->FromUnicode(U(unit));
            has += set->HasUnicode(U(unit));
            ASSERT_EQ(set->HasUnicode(U(unit)), set->ToUnicode(code) == unit) << Label(*set, unit);
            if (!set->HasUnicode(U(unit))) {
                ASSERT_EQ(code, '?') << Label(*set, unit);
            }
        }
        EXPECT_GE(has, IsEastAsian(*set) ? 9000 : CodeCount(*set) - 3) << set->GetName();
    }
}

TEST(CodeSet, CodesAbove255StandForNothingInOneByteSets) {
    for (const VqCodeSet* set : AllSets()) {
        if (set->GetCharSize() == 2) continue;
        for (const unsigned short code : {u'\u0100', u'\u0141', u'\u8041', u'\uFFFF'}) {
            EXPECT_EQ(set->ToUnicode(code), NoCharacter);
            EXPECT_EQ(set->GetClass(code), 13);
            EXPECT_EQ(set->GetProperties(code), 0);
            EXPECT_EQ(set->ToUpper(code), code);
            EXPECT_EQ(set->ToLower(code), code);
            EXPECT_EQ(OrdersOf(*set, code).order[0], 13);
        }
    }
}

// The tables of each set were written apart; all must tell what Unicode's tell.
TEST(CodeSet, CodesHaveWhatTheirCharacterHasInUnicode) {
    for (const VqCodeSet* set : AllSets()) {
        for (unsigned code = 0; code < CodeCount(*set); ++code) {
            const unsigned short unit = set->ToUnicode(U(code));
            const bool known = unit != NoCharacter || set == &Unicode();
            const auto here = [&](unsigned short other) {
                return other != unit && set->HasUnicode(other) ? set->FromUnicode(other) : U(code);
            };
            ASSERT_EQ(set->HasUnicode(unit), known) << Label(*set, code);
            ASSERT_TRUE(!known || IsEastAsian(*set) || set->FromUnicode(unit) == code) << Label(*set, code);
            ASSERT_EQ(set->GetProperties(U(code)), known ? Unicode().GetProperties(unit) : 0) << Label(*set, code);
            ASSERT_EQ(set->GetClass(U(code)), known ? Unicode().GetClass(unit) : 13) << Label(*set, code);
            ASSERT_EQ(set->ToUpper(U(code)), here(Unicode().ToUpper(unit))) << Label(*set, code);
            ASSERT_EQ(set->ToLower(U(code)), here(Unicode().ToLower(unit))) << Label(*set, code);
            for (const unsigned char language : ClassLanguages()) {
                const Orders expected = known ? OrdersOf(Unicode(), unit, language) : Orders{1, {13, 0}};
                ASSERT_EQ(OrdersOf(*set, code, language), expected) << Label(*set, code);
            }
        }
    }
}

TEST(CodeSet, CasePairsLeadToEachOther) {
    for (const VqCodeSet* set : AllSets()) {
        unsigned pairs = 0;
        for (unsigned code = 0; code < CodeCount(*set); ++code) {
            const unsigned short upper = set->ToUpper(U(code)), lower = set->ToLower(U(code));
            ASSERT_EQ(set->ToUpper(upper), upper) << Label(*set, code);
            ASSERT_EQ(set->ToLower(lower), lower) << Label(*set, code);
            if (upper == code) continue;
            // Two forms may share one upper case: then the lower case of it is the usual form of both.
            ASSERT_EQ(set->ToUpper(set->ToLower(upper)), upper) << Label(*set, code);
            pairs += set->ToLower(upper) == code;
        }
        EXPECT_GE(pairs, 26U) << set->GetName();
    }
}

TEST(CodeSet, PropertiesTellTheKind) {
    struct Case {
        unsigned unit;
        unsigned properties;
    };
    static const Case cases[] = {
        {0x0000, VqCharProperty_Space | VqCharProperty_Control},
        {0x0009, VqCharProperty_Space | VqCharProperty_Control},
        {0x007F, VqCharProperty_Control},
        {0x00A0, VqCharProperty_Space},
        {0x0035, VqCharProperty_Digit},
        {0x00B2, 0},
        {0x0665, VqCharProperty_Digit},
        {0x0041, VqCharProperty_Letter | VqCharProperty_Upper},
        {0x03B1, VqCharProperty_Letter | VqCharProperty_Lower},
        {0x00AA, VqCharProperty_Letter},
        {0x4E00, VqCharProperty_Letter},
        {0xAC01, VqCharProperty_Letter},
        {0x0021, VqCharProperty_Punct},
        {0x20AC, VqCharProperty_Punct},
        {0x0301, 0},
        {0xFFFF, 0},
    };
    for (const Case& c : cases) EXPECT_EQ(Unicode().GetProperties(U(c.unit)), c.properties) << std::hex << c.unit;
}

#ifdef _WIN32

TEST(CodeSet, AgreesWithTheSystemsConverter) { GTEST_SKIP() << "the system has no iconv to compare with"; }
TEST(CodeSet, CaseAgreesWithTheSystem) { GTEST_SKIP() << "the system has no 32-bit wide characters to compare with"; }

#else

// Converts one byte; -1 where the converter knows no character.
int SystemUnit(iconv_t converter, unsigned code) {
    char in = static_cast<char>(code), out[4] = {};
    char *from = &in, *to = out;
    std::size_t inLeft = 1, outLeft = sizeof out;
    if (iconv(converter, &from, &inLeft, &to, &outLeft) != 0 || outLeft != 2) return -1;
    return static_cast<unsigned char>(out[0]) | static_cast<unsigned char>(out[1]) << 8;
}

TEST(CodeSet, AgreesWithTheSystemsConverter) {
    static const char* const names[] = {"CP1252",      "ISO-8859-1", "CP850",      "CP437",  "MACINTOSH",
                                        "ISO-8859-2",  "ISO-8859-5", "ISO-8859-7", "KOI8-R", "ISO-8859-9",
                                        "ISO-8859-15", "CP1250",     "CP1251",     "CP1253"};
    int missing = 0;
    for (unsigned char number = 1; number <= std::size(names); ++number) {
        const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(number);
        const iconv_t converter = iconv_open("UTF-16LE", names[number - 1]);
        if (converter == reinterpret_cast<iconv_t>(-1)) {
            ++missing;
            continue;
        }
        for (unsigned code = 0; code < 256; ++code) {
            // The converter has the increment's Greek look-alike and another private unit for the maker's mark.
            if (number == 5 && (code == 0xC6 || code == 0xF0)) continue;
            const int expected = SystemUnit(converter, code);
            const int filler = code >= 0x80 && code < 0xA0 ? static_cast<int>(code) : NoCharacter;
            EXPECT_EQ(set.ToUnicode(U(code)), expected < 0 ? filler : expected) << Label(set, code);
        }
        iconv_close(converter);
    }
    if (missing > 0) GTEST_SKIP() << missing << " of the converters are not installed; the others agree";
}

TEST(CodeSet, CaseAgreesWithTheSystem) {
    const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (locale == nullptr) GTEST_SKIP() << "the locale C.UTF-8 is not installed";
    int differences = 0;
    for (unsigned unit = 0; unit < 65536; ++unit) {
        differences += towupper_l(unit, locale) != Unicode().ToUpper(U(unit));
        differences += towlower_l(unit, locale) != Unicode().ToLower(U(unit));
        differences += (iswspace_l(unit, locale) != 0) > (Unicode().GetProperties(U(unit)) & VqCharProperty_Space);
    }
    freelocale(locale);
    EXPECT_EQ(differences, 0);
}

#endif

}  // namespace
