// The East Asian sets of 16-bit codes: what they map, beside two converters that others made.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "i18nsupport.h"

#ifndef _WIN32
#include <iconv.h>
#endif
#ifdef VQTM_HAVE_ICU
#include <unicode/ucnv.h>
#endif

namespace {

using namespace vqtest;

constexpr unsigned short NoCharacter = 0xFFFD;

unsigned short U(unsigned code) { return static_cast<unsigned short>(code); }

const VqCodeSet& Set(unsigned char number) { return *VqLanguageContext::QueryCodeSet(number); }

struct SetCase {
    unsigned char number;
    const char* name;
    unsigned codes;       // that stand for a character
    unsigned characters;  // of which some have two codes
    const char* iconvName;
    const char* icuName;
};

const SetCase setCases[] = {
    {225, "Shift_JIS", 9795, 9397, "CP932", "Shift_JIS"},
    {226, "GBK", 21920, 21920, "GBK", "GBK"},
    {227, "Big5", 14039, 14029, "BIG5", "Big5"},
    {228, "Unified Hangul", 17176, 17176, "UHC", "windows-949"},
};

TEST(WideSet, EveryCodeAndEveryCharacterComeBack) {
    for (const SetCase& c : setCases) {
        const VqCodeSet& set = Set(c.number);
        EXPECT_STREQ(set.GetName(), c.name);
        unsigned codes = 0, characters = 0;
        for (unsigned code = 0; code < 65536; ++code) {
            const unsigned short unit = set.ToUnicode(U(code));
            if (unit == NoCharacter) continue;
            ++codes;
            characters += set.FromUnicode(unit) == code;
            ASSERT_TRUE(set.HasUnicode(unit)) << Label(set, code);
            ASSERT_EQ(set.ToUnicode(set.FromUnicode(unit)), unit) << Label(set, code);
        }
        EXPECT_EQ(codes, c.codes) << c.name;
        EXPECT_EQ(characters, c.characters) << c.name;
        for (unsigned ascii = 0; ascii < 128; ++ascii) EXPECT_EQ(set.ToUnicode(U(ascii)), ascii) << c.name;
    }
}

TEST(WideSet, CodesHaveWhatTheirCharacterHasInUnicode) {
    for (const SetCase& c : setCases) {
        const VqCodeSet& set = Set(c.number);
        for (unsigned code = 0; code < 65536; ++code) {
            const unsigned short unit = set.ToUnicode(U(code));
            const bool known = unit != NoCharacter;
            const auto here = [&](unsigned short other) {
                return other != unit && set.HasUnicode(other) ? set.FromUnicode(other) : U(code);
            };
            ASSERT_EQ(set.GetProperties(U(code)), known ? Unicode().GetProperties(unit) : 0) << Label(set, code);
            ASSERT_EQ(set.GetClass(U(code)), known ? Unicode().GetClass(unit) : 13) << Label(set, code);
            ASSERT_EQ(set.ToUpper(U(code)), here(Unicode().ToUpper(unit))) << Label(set, code);
            ASSERT_EQ(set.ToLower(U(code)), here(Unicode().ToLower(unit))) << Label(set, code);
            const Orders expected = known ? OrdersOf(Unicode(), unit) : Orders{1, {13, 0}};
            ASSERT_EQ(OrdersOf(set, code), expected) << Label(set, code);
        }
        for (const unsigned char language : ClassLanguages()) {
            EXPECT_EQ(set.GetCollationClass(language), Unicode().GetCollationClass(language)) << c.name;
        }
    }
}

#if !defined(_WIN32) || defined(VQTM_HAVE_ICU)

// What another converter makes of each code and of each unit, where that is one unit and one code.
struct Converter {
    std::map<unsigned, unsigned> units, codes;
};

std::string BytesOf(unsigned code) {
    std::string bytes;
    if (code >= 256) bytes += static_cast<char>(code >> 8);
    return bytes += static_cast<char>(code & 255);
}

unsigned CodeOf(const std::string& bytes) {
    unsigned code = 0;
    for (const char byte : bytes) code = code << 8 | static_cast<unsigned char>(byte);
    return code;
}

// Codes and units that the other converter treats differently for a reason.
using Reasons = std::map<unsigned, const char*>;

bool IsPrivate(unsigned unit) { return unit >= 0xE000 && unit < 0xF900; }

// Everything that the set maps the converter maps alike, in both directions. Codes that only it knows are nobody's
// characters: private units in rows for users, and single bytes that others take for lead bytes.
void ExpectAgreement(const SetCase& c, const Converter& other, const Reasons& reasons) {
    const VqCodeSet& set = Set(c.number);
    for (unsigned code = 0; code < 65536; ++code) {
        const auto unit = other.units.find(code);
        const unsigned short ours = set.ToUnicode(U(code));
        if (ours == NoCharacter) {
            ASSERT_TRUE(unit == other.units.end() || IsPrivate(unit->second) || code < 256) << Label(set, code);
        } else if (!reasons.contains(code)) {
            ASSERT_EQ(ours, unit != other.units.end() ? unit->second : NoCharacter) << Label(set, code);
        }
        const auto back = other.codes.find(code);
        if (set.HasUnicode(U(code)) && !reasons.contains(code)) {
            ASSERT_EQ(set.FromUnicode(U(code)), back != other.codes.end() ? back->second : '?') << Label(set, code);
        }
    }
}

#endif

#ifdef _WIN32

TEST(WideSet, AgreesWithTheSystemsConverter) { GTEST_SKIP() << "the system has no iconv to compare with"; }

#else

std::string Converted(iconv_t converter, std::string in) {
    char out[8];
    char *from = in.data(), *to = out;
    std::size_t inLeft = in.size(), outLeft = sizeof out;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &from, &inLeft, &to, &outLeft) != 0) return {};
    return std::string(out, sizeof out - outLeft);
}

TEST(WideSet, AgreesWithTheSystemsConverter) {
    int missing = 0;
    for (const SetCase& c : setCases) {
        const iconv_t to = iconv_open("UTF-16BE", c.iconvName), from = iconv_open(c.iconvName, "UTF-16BE");
        if (to == reinterpret_cast<iconv_t>(-1) || from == reinterpret_cast<iconv_t>(-1)) {
            ++missing;
            continue;
        }
        Converter other;
        for (unsigned code = 0; code < 65536; ++code) {
            const std::string unit = Converted(to, BytesOf(code));
            if (unit.size() == 2) other.units[code] = CodeOf(unit);
            const std::string bytes = Converted(from, {static_cast<char>(code >> 8), static_cast<char>(code & 255)});
            if (!bytes.empty() && bytes.size() <= 2) other.codes[code] = CodeOf(bytes);
        }
        ExpectAgreement(c, other, {});
        iconv_close(to);
        iconv_close(from);
    }
    if (missing > 0) GTEST_SKIP() << missing << " of the converters are not installed; the others agree";
}

#endif

TEST(WideSet, AgreesWithIcu) {
#ifndef VQTM_HAVE_ICU
    GTEST_SKIP() << "no ICU here: native builds compare with it where libicu-dev is installed";
#else
    static const std::map<unsigned, Reasons> reasons = {
        {225, {{0x1A, "a mainframe's controls"}, {0x1C, "a mainframe's controls"}, {0x7F, "a mainframe's controls"}}},
        {227,
         {{0x2550, "prefers the other code of a double line"},
          {0x255E, "prefers the other code of a double line"},
          {0x2561, "prefers the other code of a double line"},
          {0x256A, "prefers the other code of a double line"}}},
    };
    for (const SetCase& c : setCases) {
        UErrorCode status = U_ZERO_ERROR;
        UConverter* const converter = ucnv_open(c.icuName, &status);
        ASSERT_TRUE(U_SUCCESS(status)) << c.icuName;
        Converter other;
        for (unsigned code = 0; code < 65536; ++code) {
            const std::string bytes = BytesOf(code);
            UChar units[8];
            status = U_ZERO_ERROR;
            const int count = ucnv_toUChars(converter, units, 8, bytes.data(), static_cast<int>(bytes.size()), &status);
            if (count == 1 && units[0] != NoCharacter && (units[0] != 0x1A || code == 0x1A))
                other.units[code] = units[0];
            const UChar unit = U(code);
            char out[8];
            status = U_ZERO_ERROR;
            const int size = ucnv_fromUChars(converter, out, 8, &unit, 1, &status);
            if (size == 1 || size == 2) other.codes[code] = CodeOf(std::string(out, static_cast<std::size_t>(size)));
        }
        ucnv_close(converter);
        const auto known = reasons.find(c.number);
        ExpectAgreement(c, other, known != reasons.end() ? known->second : Reasons{});
    }
#endif
}

}  // namespace
