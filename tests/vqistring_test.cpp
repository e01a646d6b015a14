#include "vqistring.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

#include "rowvalues.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

using namespace vqtest;

namespace {

// --- The slow comparison: byte by byte, by tables of weight and second value

struct Weight {
    int weight, second;
};

// clang-format off
constexpr int ascii[64] = {
     64,  84,  91,  94,  97, 105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183,  66,  67,  68,  69,  70,
     65,  78,  90,  92,  96, 100, 110, 112, 114, 116, 126, 128, 130, 132, 134, 138,
    150, 152, 154, 156, 158, 160, 170, 172, 174, 176, 182,  71,  72,  73,  74,  75};

constexpr Weight latin1[64] = {
    {84,3}, {84,2}, {84,4}, {84,5}, {84,1}, {189,0}, {185,0}, {94,1}, {105,3}, {105,2}, {105,4}, {105,1}, {121,3}, {121,2}, {121,4}, {121,1},
    {99,0}, {137,0}, {144,3}, {144,2}, {144,4}, {144,5}, {144,1}, {76,0}, {187,0}, {165,3}, {165,2}, {165,4}, {165,1}, {179,2}, {191,0}, {156,156},
    {78,3}, {78,2}, {78,4}, {78,5}, {78,1}, {188,0}, {184,0}, {92,1}, {100,3}, {100,2}, {100,4}, {100,1}, {116,3}, {116,2}, {116,4}, {116,1},
    {98,0}, {136,0}, {138,3}, {138,2}, {138,4}, {138,5}, {138,1}, {77,0}, {186,0}, {160,3}, {160,2}, {160,4}, {160,1}, {176,2}, {190,0}, {176,1}};
// clang-format on

Weight CasedWeightOf(unsigned char c) {
    if (c < 64) return {c, 0};
    if (c >= 160 && c < 192) return {c + 16, 0};
    if (c == 140) return {144, 105};
    if (c == 156) return {138, 100};
    if (c == 159) return {179, 1};
    if (c >= 128 && c < 160) return {c + 96, 0};
    return c < 128 ? Weight{ascii[c - 64], 0} : latin1[c - 192];
}

// What has a capital weighs as much as it where case does not count.
Weight CaselessWeightOf(unsigned char c) {
    if (c == 0xDF) return {157, 157};
    if (c == 0xFF) return {179, 1};
    if (c == 156) return CasedWeightOf(140);
    const bool lower = (c >= 'a' && c <= 'z') || (c >= 224 && c != 247);
    return CasedWeightOf(static_cast<unsigned char>(lower ? c - 32 : c));
}

struct Side {
    const unsigned char* at;
    unsigned char flags;
    int held = 0;

    int Next(bool caseless, bool accents) {
        if (flags & 128) return *at++;
        if (caseless ? held != 0 : held >= 9) return std::exchange(held, 0);
        const Weight w = caseless ? CaselessWeightOf(*at++) : CasedWeightOf(*at++);
        held = w.second;
        if (!caseless) return w.weight;
        if (accents && held != 0) return std::exchange(held, 0) < 9 ? w.weight + w.second : w.weight - 1;
        if (held < 9) held = 0;
        return w.weight;
    }
};

int SlowCompare(const char* a, const char* b, unsigned n, unsigned char fa, unsigned char fb, bool caseless) {
    if (a == nullptr || b == nullptr) return a == b ? 0 : a == nullptr ? -1 : 1;
    Side x = {reinterpret_cast<const unsigned char*>(a), fa}, y = {reinterpret_cast<const unsigned char*>(b), fb};
    if (*x.at == 0 || *y.at == 0) return *x.at - *y.at;
    if (n == 0) n = 65535;
    int difference = 0;
    for (bool end = false; difference == 0 && !end && n != 0; --n) {
        end = *x.at == 0 || *y.at == 0;
        const bool accents = (fa & 32) != 0;
        const int w = x.Next(caseless, accents);
        difference = w - y.Next(caseless, accents);
    }
    return difference;
}

template <class T>
constexpr bool IsCaseless = std::is_same_v<T, VqCaseIString>;

template <class T>
class IStrings : public testing::Test {};
using BothClasses = testing::Types<VqIString, VqCaseIString>;
TYPED_TEST_SUITE(IStrings, BothClasses);

// Near-equal texts over an alphabet of what sorts in odd ways.
TYPED_TEST(IStrings, CompareAsTheSlowComparisonDoes) {
    const std::string alphabet = "aAeEsSoOyz*\xE9\xC9\xDF\x8C\x9C\x9F\xFF\xC5\x80\xB0";
    std::mt19937 random(25);
    const auto pick = [&] { return alphabet[random() % alphabet.size()]; };
    const unsigned char flags[] = {0, 0, 0, 32, 128, 160};
    for (int round = 0; round < 200000; ++round) {
        std::string a(random() % 9, 'x');
        for (char& c : a) c = pick();
        a.insert(random() % (a.size() + 1), random() % 3 * (random() % 14), 'k');
        std::string b = a;
        for (auto edits = random() % 3; edits != 0; --edits) {
            const std::size_t at = random() % (b.size() + 1);
            if (random() % 2)
                b.insert(at, 1, pick());
            else if (at < b.size())
                b[at] = pick();
        }
        const auto n = static_cast<unsigned short>(random() % 3 ? 0 : random() % 12);
        const unsigned char fa = flags[random() % 6], fb = flags[random() % 6];
        const std::unique_ptr<char[]> exactA(new char[a.size() + 1]), exactB(new char[b.size() + 1]);
        std::strcpy(exactA.get(), a.c_str());
        std::strcpy(exactB.get(), b.c_str());
        ASSERT_EQ(TypeParam::Compare(exactA.get(), exactB.get(), n, fa, fb),
                  SlowCompare(a.c_str(), b.c_str(), n, fa, fb, IsCaseless<TypeParam>))
            << Hex(a.data(), a.size()) << " and " << Hex(b.data(), b.size()) << ", " << n << ", flags " << int{fa}
            << " " << int{fb};
    }
    for (unsigned x = 0; x < 256; ++x) {
        for (unsigned y = 0; y < 256; ++y) {
            const char a[3] = {static_cast<char>(x), 'm', 0}, b[3] = {static_cast<char>(y), 'm', 0};
            for (const unsigned char f : std::initializer_list<unsigned char>{0, 32}) {
                ASSERT_EQ(TypeParam::Compare(a, b, 0, f, 0), SlowCompare(a, b, 0, f, 0, IsCaseless<TypeParam>)) << x;
            }
        }
    }
}

TYPED_TEST(IStrings, CompareTheWholeOfLongTexts) {
    std::string a(65535, '\xDF');
    EXPECT_EQ(TypeParam::Compare(a.c_str(), (a + "x").c_str()), 0);  // 65535 weights
    a.assign(65534, 'x');
    EXPECT_LT(TypeParam::Compare((a + "a").c_str(), (a + "b").c_str()), 0);
    EXPECT_EQ(TypeParam::Compare((a + "xa").c_str(), (a + "xb").c_str()), 0);
}

TEST(IStringOrder, HasItsKnownPlaces) {
    static const struct {
        // Equality is not transitive where a text ends in a byte that sorts as two letters.
        const char *a, *b;
        int cased, caseless, accents;  // signs; accents: VqCaseIString with that flag on both sides
    } cases[] = {{"a", "A", -1, 0, 0},        {"A", "b", -1, -1, -1},    {"\xE9", "e", 0, 0, 1},
                 {"\xDF", "ss", 0, 0, -1},    {"\x8C", "OE", 0, 0, -1},  {"\x9C", "oe", 0, 0, -1},
                 {"\x9F", "\xFF", 1, 0, 0},   {"z", "\xC6", -1, -1, -1}, {"_", "a", -1, -1, -1},
                 {"", "\xE9", -1, -1, -1},    {nullptr, "", -1, -1, -1}, {"\xDF", "ssx", 0, 0, -1},
                 {"\xDF", "\xDFx", 0, 0, -1}, {"ss", "ssx", -1, -1, -1}, {"s\xDF", "\xDF", 0, 0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.a ? c.a : "null") << " and " << c.b);
        EXPECT_EQ(Sign(VqIString::Compare(c.a, c.b)), c.cased);
        EXPECT_EQ(Sign(VqCaseIString::Compare(c.a, c.b)), c.caseless);
        EXPECT_EQ(Sign(VqCaseIString::Compare(c.a, c.b, 0, 32, 32)), c.accents);
    }
    EXPECT_EQ(VqIString::Compare("a", "A", 0, 128, 0), 'a' - 84);
    EXPECT_EQ(VqIString::Compare(nullptr, nullptr), 0);
}

TYPED_TEST(IStrings, OperatorsCompareWithBothFlags) {
    const TypeParam a("a"), b("b"), null;
    EXPECT_TRUE(a < b && a <= b && a != b && b > a && b >= a && a == a);
    EXPECT_TRUE(a == "a" && "b" > a && null < a && null == TypeParam());
    EXPECT_FALSE(null == TypeParam(null)) << "a copy of the null text is an empty one, which sorts behind it";
    TypeParam x("\xE9"), y("e");
    x.SetFlags(VqIStringFlag_Accents);
    EXPECT_EQ(x > y, IsCaseless<TypeParam>);
    x.SetFlags(VqIStringFlag_Raw);
    EXPECT_TRUE(x > y);
}

// --- Construction, assignment, access

template <class T>
void Expect(const T& s, const char* text, bool isNull = false, unsigned char flags = 0) {
    EXPECT_STREQ(s.StrGet(), text);
    EXPECT_EQ(!s, isNull);
    EXPECT_EQ(s.Len(), std::strlen(text));
    EXPECT_EQ(s.GetFlags(), flags);
}

TYPED_TEST(IStrings, AreMadeFromTextsAndNumbers) {
    using T = TypeParam;
    Expect(T(), "", true);
    Expect(T('\0'), "", true);
    Expect(T(""), "", true);
    Expect(T(static_cast<const char*>(nullptr)), "", true);
    Expect(T("abc", 0), "", true);
    Expect(T("", 2), "");
    Expect(T(nullptr, 2), "");
    const T null;
    Expect(T(null), "");
    Expect(T('c'), "c");
    Expect(T("abc"), "abc");
    Expect(T("abc", 2), "ab");
    Expect(T("abc", 9), "abc");
    Expect(T(-2147483647 - 1), "-2147483648");
    Expect(T(4294967295UL), "4294967295");
    Expect(T(2.5), "2.500000");
    Expect(T(1e300), (T(1e300).Copy(0, 301) + ".000000").StrGet());
    EXPECT_EQ(T(-1.7976931348623157e308).Len(), 1 + 309 + 7);
}

TYPED_TEST(IStrings, AreAssigned) {
    using T = TypeParam;
    T a("text"), b;
    a.SetFlags(0xA0);
    b = a;
    Expect(b, "text", false, 0xA0);
    Expect(T(b), "text");
    const T& same = b;
    b = same;
    Expect(b, "text", false, 0xA0);
    b = b.StrGet() + 1;
    Expect(b, "ext");
    b = static_cast<const char*>(nullptr);
    Expect(b, "", true);
    a = b;
    Expect(a, "");
    a.SetText("abc", 2);
    Expect(a, "ab");
    a.SetText("\0bc", 3);
    Expect(a, "", true);
    T longest(std::string(70000, 'x').c_str());
    EXPECT_EQ(longest.Len(), 65535);
    longest += "more";
    EXPECT_EQ(longest.Len(), 65535);
    longest.Insert("more", 3);
    EXPECT_EQ(longest.Len(), 65535);
}

// As those of the other strings and of blobs are.
TYPED_TEST(IStrings, AreReadAsNumbers) {
    const TypeParam n("  -32770x"), null;
    EXPECT_EQ(static_cast<short>(n), 32766);
    EXPECT_TRUE(static_cast<int>(n) == -32770 && static_cast<long>(n) == -32770);
    EXPECT_EQ(static_cast<long>(TypeParam("99999999999")), 2147483647);
    EXPECT_EQ(static_cast<double>(TypeParam("1.5e2")), 150);
    EXPECT_TRUE(static_cast<int>(null) == 0 && static_cast<double>(null) == 0);
}

// --- Editing: each case starts with the text and ends in the result

TYPED_TEST(IStrings, AreEdited) {
    using T = TypeParam;
    static const struct {
        const char* text;
        void (*edit)(T&);
        const char* result;
        bool isNull = false;
    } cases[] = {
        {"ab", [](T& s) { s += "cd"; }, "abcd"},
        {"ab", [](T& s) { s += T(); }, "ab"},
        {"ab", [](T& s) { s += s; }, "abab"},
        {nullptr, [](T& s) { s += "cd"; }, "cd"},
        {nullptr, [](T& s) { s += T(); }, "", true},
        {"abc", [](T& s) { s.Insert("xy", 1); }, "axybc"},
        {"abc", [](T& s) { s.Insert("xy", 9); }, "abcxy"},
        {"abc", [](T& s) { s.Insert(s, 2); }, "ababcc"},
        {"abc", [](T& s) { s.Insert("", 2); }, "abc"},
        {nullptr, [](T& s) { s.Insert("xy", 9); }, "xy"},
        {nullptr, [](T& s) { s.Insert(T(T()), 0); }, "", true},
        {"abcd", [](T& s) { s.Replace("xy", 1); }, "axyd"},
        {"abcd", [](T& s) { s.Replace("xy", 3); }, "abcx"},
        {"abcd", [](T& s) { s.Replace("xy", 5); }, "abcd"},
        {"abcd", [](T& s) { s.Replace(s, 1); }, "aabc"},
        {nullptr, [](T& s) { s.Replace("xy", 0); }, "", true},
        {"abcde", [](T& s) { s.Fill(2, 'x'); }, "xxcde"},
        {"ab", [](T& s) { s.Fill(4, 'x'); }, "xxxx"},
        {nullptr, [](T& s) { s.Fill(2, 'x'); }, "xx"},
        {nullptr, [](T& s) { s.Fill(0, 'x'); }, "", true},
        {"ab", [](T& s) { s.Expand(4, '.'); }, "ab.."},
        {"ab", [](T& s) { s.Expand(2, '.'); }, "ab"},
        {nullptr, [](T& s) { s.Expand(1, '.'); }, "."},
        {"abcd", [](T& s) { s.Cut(1, 2); }, "ad"},
        {"abcd", [](T& s) { s.Cut(1, 65535); }, "a"},
        {"abcd", [](T& s) { s.Cut(0, 4); }, "", true},
        {"abcd", [](T& s) { s.Cut(4, 1); }, "abcd"},
        {"abcd", [](T& s) { s.Cut(5, 1); }, "abcd"},
        {"abcd", [](T& s) { s.Cut(0, 0); }, "abcd"},
        {"abcd", [](T& s) { s = s.Copy(1, 2); }, "bc"},
        {"abcd", [](T& s) { s = s.Copy(3, 9); }, "d"},
        {"abcd", [](T& s) { EXPECT_TRUE(!s.Copy(5, 1) && !s.Copy(0, 0) && !s.Copy(4, 1)); }, "abcd"},
        {" 1 20", [](T& s) { s.SpaceToZero(); }, "01020"},
        {"01020", [](T& s) { s.ZeroToSpace(); }, " 1 2 "},
        {nullptr, [](T& s) { s.SpaceToZero().ZeroToSpace().ToUpper().ToLower(); }, "", true},
        {"abc", [](T& s) { s[1] = 'x'; }, "axc"},
        {"abc", [](T& s) { s = (s + T("d")) + "e"; }, "abcde"},
        {"abc", [](T& s) { s = "x" + s; }, "xabc"},
        {"abc", [](T&) { EXPECT_FALSE(!(T() + T())) << "of two null texts an empty one"; }, "abc"},
        {"a", [](T& s) { s.Cut(0, 1), s = T(s), s.Cut(0, 1); }, "", true},
        {"abc",
         [](T& s) {
             T taken(std::move(s));
             Expect(taken, "abc");
         },
         "", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.text ? c.text : "null") << " to " << c.result);
        T s(c.text);
        c.edit(s);
        Expect(s, c.result, c.isNull);
    }
}

TYPED_TEST(IStrings, FindAPart) {
    const TypeParam s("abcabd");
    EXPECT_EQ(s.SubStringPos("abd"), 3);
    EXPECT_EQ(s.SubStringPos("a"), 0);
    EXPECT_EQ(s.SubStringPos("abda"), -1);
    EXPECT_EQ(s.SubStringPos("A"), -1);
    EXPECT_EQ(s.SubStringPos(""), 0);
    EXPECT_EQ(TypeParam().SubStringPos("a"), -1);
}

TYPED_TEST(IStrings, ChangeTheCaseOfLatin1) {
    for (int c = 1; c < 256; ++c) {
        const bool lower = (c >= 'a' && c <= 'z') || (c >= 224 && c <= 254 && c != 247);
        const bool upper = (c >= 'A' && c <= 'Z') || (c >= 192 && c <= 222 && c != 215);
        const int up = lower ? c - 32 : c == 159 ? 255 : c == 156 ? 140 : c;
        const int down = upper ? c + 32 : c == 255 ? 159 : c == 140 ? 156 : c;
        TypeParam s(static_cast<char>(c));
        EXPECT_EQ(static_cast<unsigned char>(s.ToUpper()[0]), up);
        s = TypeParam(static_cast<char>(c));
        EXPECT_EQ(static_cast<unsigned char>(s.ToLower()[0]), down);
    }
}

// --- Rows

TEST(IStringRows, RecordsHaveFlagsAndGoldenBytes) {
    VqIString texts[2] = {"ab", VqIString()};
    texts[0].SetFlags(0xA0);
    unsigned char bytes[16];
    ASSERT_EQ(VqIStringStore(bytes, texts, VqFormat_BigEndian, 2), 8u);
    EXPECT_EQ(Hex(bytes, 8), "a0 00 02 61 62 00 00 00");
    VqCaseIString loaded[2];
    ASSERT_EQ(VqCaseIStringLoad(loaded, bytes, VqFormat_BigEndian, 2), 8u);
    Expect(loaded[0], "ab", false, 0xA0);
    Expect(loaded[1], "", true);
    const unsigned char zero[] = {0x20, 3, 0, 'a', 0, 'b'};
    ASSERT_EQ(VqIStringLoad(texts, zero, VqFormat_LittleEndian, 1), 6u);
    Expect(texts[0], "a", false, 0x20);
}

TEST(IStringRows, MemoryFilesGuardEveryTruncationAndLength) {
    const VqIString texts[3] = {"ab", VqIString(), "x"};
    unsigned char bytes[12];
    ASSERT_EQ(VqIStringStore(bytes, texts, VqFormat_LittleEndian, 3), 12u);
    for (unsigned long n = 0; n <= sizeof bytes; ++n) {
        MemFile file(bytes, n);
        const unsigned long size = VqIStringSizeGetFromMemFile(&file, VqFormat_LittleEndian, 3);
        EXPECT_TRUE(n == 12 ? size == 12 : size > n) << n;
        EXPECT_EQ(file.Position(), 0u);
    }
    for (const unsigned long length : {65532u, 65535u}) {
        std::vector<unsigned char> record(3 + length, 'x');
        record[1] = record[2] = 0xFF;
        MemFile file(record.data(), static_cast<unsigned long>(record.size()));
        const unsigned long size = VqIStringSizeGetFromMemFile(&file, VqFormat_LittleEndian, 1);
        EXPECT_EQ(size <= record.size(), length == 65535) << length;
    }
}

TEST(IStringRows, TextsAreInTheNativeSet) {
    VqTypeMgr manager(5);
    VqIString values[2] = {"\x80uro", VqIString()};
    VqString out(253, 0);
    manager.PrintToVqString(VqTypeId_VqIString, out, values, "<%6s>", 1);
    EXPECT_EQ(Units(out), u"<  \u20ACuro>");
    VqString in = Wide(u"[\u20AC*],{NULL}");
    values[0].SetFlags(0x20);
    manager.ScanFromVqString(VqTypeId_VqIString, values, in, "[%s]", 2);
    Expect(values[0], "\x80*", false, 0x20);
    manager.ScanFromVqString(VqTypeId_VqIString, values, in = "{NULL}", nullptr, 1);
    Expect(values[0], "{NULL}", false, 0x20);
}

std::vector<unsigned char> Record(const char* text, unsigned char flags = 0) {
    VqIString s(text);
    s.SetFlags(flags);
    std::vector<unsigned char> bytes(3u + s.Len());
    VqIStringStore(bytes.data(), &s, VqFormat_LittleEndian, 1);
    return bytes;
}

int CompareRecords(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b, unsigned short flags,
                   int& error, unsigned long count = 1) {
    // Blocks of exactly that size, for the sanitizer.
    const std::vector<unsigned char> x(a), y(b);
    return Sign(VqIStringCompare(VqFormat_LittleEndian, x.size(), x.data(), y.size(), y.data(), flags, count, error));
}

TEST(IStringRows, StoredKeysCompareByTheirFlags) {
    int error = 77;
    EXPECT_EQ(CompareRecords(Record("a"), Record("A"), VqCmp_Exact, error), -1);
    EXPECT_EQ(CompareRecords(Record("a", 128), Record("A", 128), VqCmp_Exact, error), 1);
    EXPECT_EQ(CompareRecords(Record("\xDF"), Record("ss"), VqCmp_Exact, error), 0);
    EXPECT_EQ(error, VqStatus_Ok);
    // The null text is an empty one to an index.
    const VqIString null, empty(null);
    EXPECT_EQ(VqIStringCompare(8, 0, &null, 0, &empty, VqCmp_Exact, 1, error), 0);
    const auto one = Record("x");
    EXPECT_EQ(CompareRecords(one, one, VqCmp_Exact, error, 2), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(VqIStringCompare(8, sizeof null, &null, 0, &null, VqCmp_Exact, 2, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(VqIStringHash(1, one.size(), one.data(), 1, error), 0u);
    EXPECT_EQ(error, VqStatus_Ok);
}

TEST(IStringRows, ClippedKeysCompareAsFarAsTheyGo) {
    const auto whole = Record("abcdef"), other = Record("abd");
    for (std::size_t size = 1; size < whole.size(); ++size) {
        int error = 77;
        const std::vector<unsigned char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(CompareRecords(cut, whole, VqCmp_Exact, error), 0) << size;
        EXPECT_EQ(error, VqStatus_BufferEnd);
        EXPECT_EQ(CompareRecords(other, cut, VqCmp_Exact, error), size < 6 ? 0 : 1) << size;
        EXPECT_EQ(error, VqStatus_BufferEnd);
        EXPECT_EQ(CompareRecords(cut, Record("ab*x"), 0, error), 0) << size;
    }
    const auto large = Record(std::string(300, 'x').c_str());
    int error = 77;
    EXPECT_EQ(CompareRecords({large.begin(), large.begin() + 256}, large, VqCmp_Exact, error), 0);
    EXPECT_EQ(error, VqStatus_BufferEnd);
    EXPECT_EQ(CompareRecords({large.begin(), large.begin() + 257}, large, VqCmp_Exact, error), -1);
    EXPECT_EQ(error, VqStatus_NotSupported);
}

TEST(IStringRows, TheSecondTextIsAPatternUnlessExact) {
    static const struct {
        const char *text, *pattern;
        bool cased, caseless;  // matches
    } cases[] = {
        {"abc", "abc", true, true},       {"abc", "*", true, true},        {"", "*", true, true},
        {"", "?", false, false},          {"abc", "a*", true, true},       {"abc", "a?c", true, true},
        {"abc", "a?", false, false},      {"ABC", "a*c", false, true},     {"caf\xE9", "*fe", true, true},
        {"ma\xDFt", "mas*", true, true},  {"ma\xDFt", "ma?t", true, true}, {"masst", "ma\xDF?", true, true},
        {"ma\xDFt", "mas?t", true, true}, {"aXbXc", "a*b*c", true, true},  {"abab", "*ab", true, true},
        {"aba", "*ab", false, false},     {"abc", "**c", true, true},      {"abcd", "?*?*?d", true, true},
    };
    for (const auto& c : cases) {
        int error = 77;
        const auto a = Record(c.text), b = Record(c.pattern);
        EXPECT_EQ(CompareRecords(a, b, 0, error) == 0, c.cased) << c.text << " " << c.pattern;
        EXPECT_EQ(VqCaseIStringCompare(1, a.size(), a.data(), b.size(), b.data(), 0, 1, error) == 0, c.caseless);
        EXPECT_EQ(error, VqStatus_Ok);
        if (std::strpbrk(c.pattern, "*?") != nullptr) {
            EXPECT_NE(CompareRecords(a, b, VqCmp_Exact, error), 0) << c.text << " " << c.pattern;
        }
    }
}

}  // namespace
