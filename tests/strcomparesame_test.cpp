// The library's comparison against the step by step one, over random texts, patterns, operations, languages and sets.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "strcomparereference.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

using Codes = std::vector<unsigned short>;

// A text in an exact block of its own, so that a read behind its end is seen.
class ExactText {
  public:
    ExactText(const Codes& codes, unsigned charSize, bool swapped) : bytes_(new char[(codes.size() + 1) * charSize]()) {
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const unsigned short code = swapped ? static_cast<unsigned short>(codes[i] << 8 | codes[i] >> 8) : codes[i];
            if (charSize == 1)
                bytes_[i] = static_cast<char>(code);
            else
                std::memcpy(bytes_.get() + 2 * i, &code, 2);
        }
    }
    const char* Get() const { return bytes_.get(); }

  private:
    std::unique_ptr<char[]> bytes_;
};

// Characters that meet in tricky ways: cases, accents, expansions, starts and ends of contractions, wildcards.
constexpr char16_t common[] = u"aaaAbcCdDhHzZsStlLgynouijeEm";
constexpr char16_t special[] =
    u"\u00E4\u00C4\u00E1\u00E9\u00E5\u00DF\u00E6\u00C6\u0153\u00F8\u00F1\u010D\u017E\u01C6 -.19";
constexpr char16_t foreign[] = u"\u0436\u0416\u03B1\u03AC\u4E00\u4E8C\uAC01\uE000\u3042\u0250\u1E9E";
constexpr char16_t wild[] = u"***??^";

class RandomTexts {
  public:
    explicit RandomTexts(unsigned seed) : random_(seed) {}

    unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }
    bool OneIn(unsigned n) { return Below(n) == 0; }

    unsigned short Code(const VqCodeSet& set, bool pattern) {
        if (OneIn(40)) return static_cast<unsigned short>(1 + Below(set.GetCharSize() == 1 ? 255 : 65535));
        const unsigned kind = Below(pattern ? 6 : 5);
        const char16_t unit = kind < 3   ? Pick(common)
                              : kind < 4 ? Pick(special)
                              : kind < 5 ? Pick(foreign)
                                         : Pick(wild);
        const unsigned short code = set.FromUnicode(unit);
        return code == '?' && unit != u'?' ? 'x' : code;
    }

    Codes Text(const VqCodeSet& set, bool pattern) {
        Codes codes(OneIn(8) ? Below(60) : Below(9));
        for (unsigned short& code : codes) code = Code(set, pattern);
        return codes;
    }

    // The text with a few characters changed, put in or left out.
    Codes Near(Codes codes, const VqCodeSet& set, bool pattern) {
        for (unsigned changes = Below(4); changes != 0; --changes) {
            const auto at = codes.begin() + static_cast<std::ptrdiff_t>(Below(codes.size() + 1));
            switch (Below(4)) {
                case 0:
                    codes.insert(at, Code(set, pattern));
                    break;
                case 1:
                    if (at != codes.end()) codes.erase(at);
                    break;
                case 2:
                    if (at != codes.end()) *at = Code(set, pattern);
                    break;
                case 3:
                    if (at != codes.end()) *at = OneIn(2) ? set.ToUpper(*at) : set.ToLower(*at);
                    break;
            }
        }
        return codes;
    }

  private:
    template <std::size_t N>
    char16_t Pick(const char16_t (&units)[N]) {
        return units[Below(N - 1)];
    }

    std::mt19937 random_;
};

std::vector<unsigned char> CodeSets() {
    std::vector<unsigned char> codeSets;
    for (unsigned char code = 0; code < 254; ++code) {
        if (VqLanguageContext::QueryCodeSet(code) != nullptr) codeSets.push_back(code);
    }
    return codeSets;
}

VqString StringOf(const ReferenceText& text) {
    VqString string(text.codeSet, text.language);
    const bool wide = text.codeSet >= VqFirstWideCodeSet;
    string.AssignChars(text.text, text.codeSet, wide ? 65535 : static_cast<unsigned short>(std::strlen(text.text)));
    return string;
}

std::string Described(const ReferenceText& a, const ReferenceText& b, unsigned short op, short n) {
    const auto hex = [](const ReferenceText& text) {
        std::size_t size = text.codeSet < VqFirstWideCodeSet ? std::strlen(text.text) : 0;
        while (text.codeSet >= VqFirstWideCodeSet && (text.text[size] != 0 || text.text[size + 1] != 0)) size += 2;
        return std::to_string(text.codeSet) + "/" + std::to_string(text.language) + " " + Hex(text.text, size);
    };
    return hex(a) + " ~ " + hex(b) + " op " + Hex(&op, 2) + " n " + std::to_string(n);
}

constexpr unsigned short operations[] = {0x10,  0x30, 0x50, 0x70, 0x90, 0x100, 0x110, 0x210, 0x250,
                                         0x270, 0,    0x20, 0x40, 0x60, 0x80,  0x200, 0x220};

bool HasOrder(const ReferenceText& text, unsigned char byteOrder, unsigned short wanted) {
    VqStringIterator it(text.codeSet, text.language, text.text, byteOrder);
    for (unsigned short order; (order = it.GetNextOrder(1)) != 0;) {
        if (order == wanted) return true;
    }
    return false;
}

// Draws one comparison and holds both ways of asking for it to the reference.
void CheckOne(RandomTexts& random, const std::vector<unsigned char>& codeSets, const ReferenceWildcards& wildcards) {
    const unsigned short op = operations[random.Below(std::size(operations))];
    const bool pattern = !(op & (VqCmp_Exact | VqCmp_KeyOnly));
    const unsigned char codeSet1 =
        random.OneIn(2) ? (random.OneIn(2) ? 1 : 253) : codeSets[random.Below(codeSets.size())];
    const unsigned char codeSet2 = random.OneIn(6) ? codeSets[random.Below(codeSets.size())] : codeSet1;
    const unsigned char language1 = static_cast<unsigned char>(random.Below(25));
    const unsigned char language2 = random.OneIn(6) ? static_cast<unsigned char>(random.Below(25)) : language1;
    const VqCodeSet& set1 = *VqLanguageContext::QueryCodeSet(codeSet1);
    const VqCodeSet& set2 = *VqLanguageContext::QueryCodeSet(codeSet2);
    const short n = random.OneIn(4) ? static_cast<short>(random.Below(10)) : short{-1};
    const unsigned char order = random.OneIn(10) ? 2 : 1;

    const Codes codes1 = random.Text(set1, false);
    const Codes codes2 =
        &set1 == &set2 && !random.OneIn(6) ? random.Near(codes1, set2, pattern) : random.Text(set2, pattern);
    const ExactText text1(codes1, static_cast<unsigned>(set1.GetCharSize()), order == 2);
    const ExactText text2(codes2, static_cast<unsigned>(set2.GetCharSize()), order == 2);
    const ReferenceText a = {codeSet1, language1, text1.Get()}, b = {codeSet2, language2, text2.Get()};

    int expectedOut = 77, out = 77;
    const int expected = StrCmpReference(a, b, op, n, order, &expectedOut, wildcards).Run();
    const int result = VqStrCmp(a.codeSet, a.language, a.text, b.codeSet, b.language, b.text, op, n, order, &out);
    // Behind a '*' the two lay the rest at different places before they give up: there only the sign is one.
    if (pattern && HasOrder(b, order, wildcards.asterisk)) {
        ASSERT_EQ(Sign(result), Sign(expected)) << Described(a, b, op, n);
    } else {
        ASSERT_EQ(result, expected) << Described(a, b, op, n);
        ASSERT_EQ(out, expectedOut) << Described(a, b, op, n);
        ASSERT_EQ(VqStrCmp(a.codeSet, a.language, a.text, b.codeSet, b.language, b.text, op, n, order, nullptr),
                  expected);
    }
    if (order == 2) return;
    // A string without text has no buffer, and native bytes tell null from empty.
    const ReferenceText bufferA = {a.codeSet, a.language, codes1.empty() ? nullptr : a.text};
    const ReferenceText bufferB = {b.codeSet, b.language, codes2.empty() ? nullptr : b.text};
    ASSERT_EQ(Sign(StringOf(a).Compare(StringOf(b), n, op)),
              Sign(StrCmpReference(bufferA, bufferB, op, n, order, nullptr, wildcards).Run()))
        << Described(a, b, op, n);
}

long FromEnvironment(const char* name, long otherwise) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::atol(value) : otherwise;
}

// A gate run sets VQTM_COMPARE_PAIRS to millions.
void CheckMany(long count, const ReferenceWildcards& wildcards) {
    RandomTexts random(static_cast<unsigned>(FromEnvironment("VQTM_COMPARE_SEED", 20)));
    const std::vector<unsigned char> codeSets = CodeSets();
    for (long i = 0; i < count && !testing::Test::HasFatalFailure(); ++i) CheckOne(random, codeSets, wildcards);
}

TEST(StrCmpSame, AsStepByStep) { CheckMany(FromEnvironment("VQTM_COMPARE_PAIRS", 150000), {}); }

// Sets the characters that patterns read in a special way, while it lives.
class Wildcards {
  public:
    Wildcards(char asterisk, char question, char escape) {
        Set(asterisk, question, escape);
        orders_ = {OrderOf(asterisk), OrderOf(question), OrderOf(escape)};
    }
    ~Wildcards() { Set(0, 0, 0); }
    Wildcards(const Wildcards&) = delete;
    Wildcards& operator=(const Wildcards&) = delete;

    const ReferenceWildcards& Orders() const { return orders_; }

  private:
    static VqChar Latin(char c) { return VqChar(static_cast<unsigned char>(c), 1, 0); }
    static void Set(char asterisk, char question, char escape) {
        VqString::SetAsterisk(Latin(asterisk));
        VqString::SetQuestion(Latin(question));
        VqString::SetEscape(Latin(escape));
    }
    static unsigned short OrderOf(char c) {
        const char text[] = {c, 0};
        return VqStringIterator(1, 0, text).GetNextOrder(0);
    }

    ReferenceWildcards orders_;
};

TEST(StrCmpSame, WithAnEscapeCharacter) {
    const Wildcards wildcards('*', '?', '^');
    CheckMany(FromEnvironment("VQTM_COMPARE_PAIRS", 50000), wildcards.Orders());
}

TEST(StrCmpSame, WithOtherWildcards) {
    const Wildcards wildcards('-', 'a', '*');
    CheckMany(FromEnvironment("VQTM_COMPARE_PAIRS", 50000), wildcards.Orders());
}

}  // namespace
