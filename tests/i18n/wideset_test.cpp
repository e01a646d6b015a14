// The East Asian sets of 16-bit codes: what they map, beside a converter that others made.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "i18nsupport.h"

#ifndef _WIN32
#include <iconv.h>
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
};

const SetCase setCases[] = {
    {225, "Shift_JIS", 9795, 9397, "CP932"},
    {226, "GBK", 21920, 21920, "GBK"},
    {227, "Big5", 14039, 14029, "BIG5"},
    {228, "Unified Hangul", 17176, 17176, "UHC"},
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

#ifdef _WIN32

TEST(WideSet, AgreesWithTheSystemsConverter) { GTEST_SKIP() << "the system has no iconv to compare with"; }

#else

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

bool IsPrivate(unsigned unit) { return unit >= 0xE000 && unit < 0xF900; }

// Everything that the set maps the converter maps alike, in both directions. Codes that only it knows are nobody's
// characters: private units in rows for users, and single bytes that others take for lead bytes.
void ExpectAgreement(const SetCase& c, const Converter& other) {
    const VqCodeSet& set = Set(c.number);
    for (unsigned code = 0; code < 65536; ++code) {
        const auto unit = other.units.find(code);
        const unsigned short ours = set.ToUnicode(U(code));
        if (ours == NoCharacter) {
            ASSERT_TRUE(unit == other.units.end() || IsPrivate(unit->second) || code < 256) << Label(set, code);
        } else {
            ASSERT_EQ(ours, unit != other.units.end() ? unit->second : NoCharacter) << Label(set, code);
        }
        const auto back = other.codes.find(code);
        if (set.HasUnicode(U(code))) {
            ASSERT_EQ(set.FromUnicode(U(code)), back != other.codes.end() ? back->second : '?') << Label(set, code);
        }
    }
}

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
        ExpectAgreement(c, other);
        iconv_close(to);
        iconv_close(from);
    }
    if (missing > 0) GTEST_SKIP() << missing << " of the converters are not installed; the others agree";
}

#endif

}  // namespace
