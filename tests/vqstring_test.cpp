#include "vqstring.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "library.h"
#include "testsupport.h"
#include "vqchar.h"
#include "vqlanguagecontext.h"

using namespace vqtest;

namespace {

class VqStringTest : public ::testing::Test {
  protected:
    void TearDown() override { ___VqI18NContext(1); }
};

// --- Construction

TEST_F(VqStringTest, PrintsNumbersAsTheirConstructorsPromise) {
    const struct {
        VqString made;
        const char* text;
    } cases[] = {
        {VqString(static_cast<short>(-32768)), "-32768"},
        {VqString(2147483647), "2147483647"},
        {VqString(0u), "0"},
        {VqString(2147483648u), "-2147483648"},
        {VqString(4294967295u), "-1"},
        {VqString(-2147483647L), "-2147483647"},
        {VqString(4294967295UL), "4294967295"},
        {VqString(1.0 / 3), "0.333333333333333"},
        {VqString(1e15), "1e+15"},
        {VqString(123456789012345.0), "123456789012345"},
        {VqString(-0.0), "-0"},
        {VqString(1e-5), "1e-05"},
        {VqString(5e-324), "4.94065645841247e-324"},
        {VqString(std::numeric_limits<double>::infinity()), "inf"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Bytes(c.made), c.text);
        EXPECT_EQ(c.made.GetSize(), c.made.Len() + 1) << c.text;
        EXPECT_EQ(c.made.GetCodeSet(), 1);
    }
}

TEST_F(VqStringTest, TextWithoutCharactersHasNoBuffer) {
    const char* const nothing = nullptr;
    const VqString cases[] = {VqString(),
                              VqString('\0'),
                              VqString(""),
                              VqString(nothing),
                              VqString("abc", 0),
                              VqString(static_cast<unsigned short>(0)),
                              VqString(VqString("")),
                              Wide(u"")};
    for (const VqString& s : cases) {
        EXPECT_EQ(s.GetSize(), 0);
        EXPECT_EQ(s.Len(), 0);
        EXPECT_TRUE(s.IsEmpty());
        EXPECT_TRUE(!s);
        EXPECT_EQ(Hex(s.StrGet(), 2), "00 00");
    }
}

TEST_F(VqStringTest, ReadsTheDefaultsAtEachConstruction) {
    const VqString before("x");
    VqString::SetDefaultCodeSet(253);
    VqString::SetDefaultLanguage(8);
    VqLanguageContext::SetDefault8CodeSet(2);
    EXPECT_EQ(VqString().GetCodeSet(), 253);
    EXPECT_EQ(VqString("x").GetCodeSet(), 2);
    EXPECT_EQ(VqString(7).GetCodeSet(), 2);
    EXPECT_EQ(VqString("x").GetLanguage(), 8);
    EXPECT_EQ(before.GetCodeSet(), 1);
    EXPECT_EQ(before.GetLanguage(), 0);
    VqString assigned(5, 3);
    assigned = "y";
    EXPECT_EQ(assigned.GetCodeSet(), 2);
    EXPECT_EQ(assigned.GetLanguage(), 8);
    EXPECT_EQ(VqString(assigned).GetLanguage(), 8);
}

TEST_F(VqStringTest, CopiesNeverShareAndMovesLeaveNothing) {
    VqString a = In(6, "text", 13);
    VqString copy(a);
    copy[0] = 'T';
    EXPECT_EQ(Bytes(a), "text");
    EXPECT_EQ(Bytes(copy), "Text");

    VqString target("old");
    target.Destruct(target);
    EXPECT_EQ(Bytes(target), "old");
    const char* const buffer = a.StrGet();
    target.Destruct(a);
    EXPECT_EQ(target.StrGet(), buffer);
    EXPECT_EQ(target.GetCodeSet(), 6);
    EXPECT_EQ(target.GetLanguage(), 13);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCodeSet(), 6);

    target.Destroy();
    EXPECT_EQ(target.GetCodeSet(), 0);
    EXPECT_EQ(target.GetLanguage(), 0);
}

TEST_F(VqStringTest, TakesItsOwnTextAsArgument) {
    VqString s("abcdef");
    s = s.StrGet() + 2;
    EXPECT_EQ(Bytes(s), "cdef");
    s += s;
    EXPECT_EQ(Bytes(s), "cdefcdef");
    s << s.StrGet() + 6;
    EXPECT_EQ(Bytes(s), "cdefcdefef");
    s = *&s;
    EXPECT_EQ(Bytes(s), "cdefcdefef");
}

// --- Appending

TEST_F(VqStringTest, AppendsEveryKindOfValue) {
    VqString s;
    s << 'a' << "bc" << static_cast<short>(-1) << 2 << 3u << -4L << 5UL << 0.5 << 0.25f << VqString("!");
    EXPECT_EQ(Bytes(s), "abc-123-450.50.25!");
    s << static_cast<unsigned short>(65);
    EXPECT_EQ(Bytes(s), "abc-123-450.50.25!65");
    VqString wide = Wide(u"x");
    wide << static_cast<unsigned short>(65) << 7 << "é" << Wide(u"\u20AC").StrGet();
    EXPECT_EQ(Units(wide).substr(0, 3), u"xA7");
    const unsigned short euro[] = {0x20AC, 0};
    VqString latin("price ");
    latin << euro;
    EXPECT_EQ(Bytes(latin), "price \x80");
    EXPECT_EQ(Bytes("<" + In(2, "a\xE9") + Wide(u"\u00FC\u0416")), "<a\xE9\xFC?");
    EXPECT_EQ((In(2, "a", 3) + Wide(u"b")).GetCodeSet(), 2);
}

// --- Access

TEST_F(VqStringTest, IndexingReachesTheZeroCharacterAndNoFurther) {
    VqString s("abc");
    EXPECT_EQ(s[2].GetCode(), 'c');
    EXPECT_EQ(s[3].GetCode(), 0);
    EXPECT_EQ(s[3].GetCodeSet(), 1);
    for (const int outside : {4, -1, 70000}) {
        EXPECT_EQ(s[outside].GetCode(), 0);
        EXPECT_EQ(s[outside].GetCodeSet(), 255);
        EXPECT_EQ(s[outside].GetLanguage(), 255);
        s[outside] = 'x';
    }
    s[3] = 'x';
    EXPECT_EQ(Bytes(s), "abc");
}

TEST_F(VqStringTest, WritesThroughACharacterIntoTheStringsCodeSet) {
    VqString s = In(4, "abc");
    s[1] = VqChar(0x00E9, 253, 0);
    EXPECT_EQ(Bytes(s),
              "a\x82"
              "c");
    VqString wide = Wide(u"abc");
    wide[0] = s[1];
    wide[2] = VqChar(0x80, 1, 0);
    EXPECT_EQ(Units(wide), u"\u00E9b\u20AC");
    VqChar place = s[2];
    s = "a";
    EXPECT_EQ(place.GetCode(), 0);
    place = 'z';
    EXPECT_EQ(Bytes(s), "a");
    s = Wide(u"ab");
    place = 'z';
    EXPECT_EQ(Units(s), u"ab");
    VqString truncated("abcd");
    truncated[2] = '\0';
    EXPECT_EQ(truncated.Len(), 2);
    EXPECT_EQ(truncated.GetSize(), 5);
}

// --- Numbers

TEST_F(VqStringTest, ReadsIntegersLikeStrtolOf32Bits) {
    const struct {
        const char* text;
        long any;      // base 0
        long decimal;  // base 10
    } cases[] = {
        {"0", 0, 0},
        {"  \t\r\n\v\f-17x", -17, -17},
        {"+5", 5, 5},
        {"0x1F", 31, 0},
        {"0X1fg", 31, 0},
        {"0x", 0, 0},
        {"0xg", 0, 0},
        {"017", 15, 17},
        {"08", 0, 8},
        {"2147483647", 2147483647L, 2147483647L},
        {"2147483648", 2147483647L, 2147483647L},
        {"-2147483648", -2147483647L - 1, -2147483647L - 1},
        {"-99999999999999999999999", -2147483647L - 1, -2147483647L - 1},
        {"0xFFFFFFFF", 2147483647L, 0},
        {"- 5", 0, 0},
        {"", 0, 0},
        {"--5", 0, 0},
    };
    for (const auto& c : cases) {
        for (const VqString& s : {VqString(c.text), Wide(std::u16string(c.text, c.text + std::strlen(c.text)))}) {
            EXPECT_EQ(static_cast<long>(s), c.any) << c.text;
            EXPECT_EQ(static_cast<int>(s), static_cast<int>(c.any)) << c.text;
            EXPECT_EQ(static_cast<short>(s), static_cast<short>(c.any)) << c.text;
            *static_cast<unsigned char*>(static_cast<void*>(___VqTypeMgrOptions())) = 1;
            EXPECT_EQ(static_cast<long>(s), c.decimal) << c.text;
            *static_cast<unsigned char*>(static_cast<void*>(___VqTypeMgrOptions())) = 0;
        }
    }
}

TEST_F(VqStringTest, NumberTextMustStartWithADigitOrMinus) {
    const struct {
        const char* text;
        int status;
        long atol, strtol;
    } cases[] = {
        {"0x10", 0, 0, 16}, {"-3", 0, -3, -3}, {"+3", -1, 0, 0}, {" 3", -1, 0, 0}, {"", -1, 0, 0}, {"-x", 0, 0, 0},
    };
    for (const auto& c : cases) {
        long out = 99;
        EXPECT_EQ(VqString(c.text).Atol(out), c.status) << c.text;
        EXPECT_EQ(out, c.atol) << c.text;
        out = 99;
        EXPECT_EQ(VqString(c.text).Strtol(out), c.status) << c.text;
        EXPECT_EQ(out, c.strtol) << c.text;
    }
}

// --- Code sets

TEST_F(VqStringTest, RelabelsWithinACharacterSizeOnly) {
    VqString s("caf\xE9");
    EXPECT_EQ(s.SetCodeSetCode(253), VqStatus_Refused);
    EXPECT_EQ(s.GetCodeSet(), 1);
    EXPECT_EQ(s.SetCodeSetCode(5), 0);
    EXPECT_EQ(Bytes(s), "caf\xE9");
    EXPECT_EQ(s.SetCodeSet(1), 0);
    EXPECT_EQ(Bytes(s), "caf\xE9");
    EXPECT_EQ(s.SetCodeSet(253), 0);
    EXPECT_EQ(Units(s), u"caf\u00E9");
    EXPECT_EQ(s.GetSize(), 10);
    EXPECT_EQ(s.SetCodeSet(0), 0);
    EXPECT_EQ(Bytes(s), "caf\xE9");
    EXPECT_EQ(s.GetCodeSet(), 0);
}

TEST_F(VqStringTest, MapsTheTextBetweenAnyTwoSets) {
    VqString s("caf\xE9 \x80");
    EXPECT_EQ(s.MapToCodeSet(0), VqStatus_Refused);
    EXPECT_EQ(s.MapToCodeSet(1), 0);
    EXPECT_EQ(s.MapToCodeSet(3), 0);
    EXPECT_EQ(Bytes(s), "caf\x82 ?");
    EXPECT_EQ(s.GetCodeSet(), 3);
    VqString empty;
    EXPECT_EQ(empty.MapToCodeSet(253), 0);
    EXPECT_EQ(empty.GetCodeSet(), 253);
    EXPECT_EQ(empty.GetSize(), 0);

    VqString target;
    EXPECT_EQ(target.CopyMapped(target, 1), VqStatus_Refused);
    EXPECT_EQ(target.CopyMapped(In(3, "\x82tat", 3), 253), 10);
    EXPECT_EQ(Units(target), u"\u00E9tat");
    EXPECT_EQ(target.GetLanguage(), 3);
    EXPECT_EQ(target.CopyMapped(Wide(u"\u00E9tat"), 1, 2), 3);
    EXPECT_EQ(Bytes(target), "\xE9t");
    EXPECT_EQ(target.CopyMapped(VqString(), 1), 0);
    EXPECT_EQ(target.GetSize(), 0);
}

TEST_F(VqStringTest, AssignsCharactersInEitherByteOrderAndCodeSet) {
    const unsigned char highFirst[] = {0x20, 0xAC, 0x00, 0x41};
    VqString wide(253, 0);
    wide.AssignChars(highFirst, 253, 2, 2);
    EXPECT_EQ(Units(wide), u"\u20ACA");
    VqString narrow(1, 0);
    narrow.AssignChars(highFirst, 253, 2, 2);
    EXPECT_EQ(Bytes(narrow),
              "\x80"
              "A");
    narrow.AssignChars("xyz", 1, 0);
    EXPECT_EQ(narrow.GetSize(), 0);
    wide.AssignChars("ab\0cd", 1, 5);
    EXPECT_EQ(Units(wide), u"ab");
    EXPECT_EQ(wide.GetSize(), 6);
}

TEST_F(VqStringTest, AppendsCharactersOfAnyCodeSet) {
    VqString s(1, 2);
    s.AppendChars(nullptr, 1, 3);
    s.AppendChars("xyz", 1, 0);
    EXPECT_EQ(s.GetSize(), 0);
    s.AppendChars("abc", 1, 2);
    s.AppendChars(u"\u20AC!", 253, VqString::All);
    s.AppendChars("\x82", 3, 1);
    EXPECT_EQ(Bytes(s), "ab\x80!\xE9");
    EXPECT_EQ(s.GetSize(), 6);
    EXPECT_EQ(s.GetLanguage(), 2);
    s.AppendChars(s.StrGet(), 1, VqString::All);
    EXPECT_EQ(Bytes(s),
              "ab\x80!\xE9"
              "ab\x80!\xE9");

    VqString wide = Wide(u"\u4E00\u4E8C\u4E09\u56DB");
    wide[2] = VqChar(static_cast<unsigned short>(0), 253, 0);
    const char* const buffer = wide.StrGet();
    wide.AppendChars(wide.StrGet(), 253, 2);
    EXPECT_EQ(Units(wide), u"\u4E00\u4E8C\u4E00\u4E8C");
    EXPECT_EQ(wide.StrGet(), buffer);
    wide += wide;
    EXPECT_EQ(wide.Len(), 8);
}

// --- Size limit

TEST_F(VqStringTest, ReportsOverflowAndKeepsWhatFits) {
    const std::string full(65532, 'x');
    const AssertRecorder recorder;
    VqString s(full.c_str());
    EXPECT_EQ(s.GetSize(), 65533);
    EXPECT_TRUE(recorder.Lines().empty());

    s += VqString("y");
    const std::vector<std::string> report = {"\"String overflow\" && 0 src\\vqstring:1361"};
    EXPECT_EQ(recorder.Lines(), report);
    EXPECT_EQ(Bytes(s), full);

    VqString wide(253, 0);
    wide += s;
    EXPECT_EQ(recorder.Lines().size(), 2u);
    EXPECT_EQ(wide.Len(), 32765);
    EXPECT_EQ(wide.GetSize(), 65532);
    wide += Wide(u"yz");
    EXPECT_EQ(recorder.Lines().size(), 3u);
    EXPECT_EQ(wide.Len(), 32765);
    EXPECT_EQ(s.SetCodeSet(253), 0);
    EXPECT_EQ(s.Len(), 32765);
}

TEST_F(VqStringTest, ConfigurationDecidesWhetherOverflowIsReported) {
    const std::string full(65532, 'x');
    VqConfig config;
    VqConfig* const before = VqSetDefaultConfig(&config);
    const AssertRecorder recorder;
    VqString s(full.c_str());
    s << 'y';
    EXPECT_EQ(recorder.Lines().size(), 0u);
    config.SetInt("debug", "stringOverflow", 1);
    s << 'y';
    EXPECT_EQ(recorder.Lines().size(), 1u);
    VqSetDefaultConfig(before);
}

// --- Null

TEST_F(VqStringTest, AnyTextLeavesTheNullState) {
    VqString s("x");
    EXPECT_FALSE(s.IsNullValue());
    EXPECT_EQ(s.SetNullValue(), 0);
    EXPECT_TRUE(s.IsNullValue());
    EXPECT_EQ(s.GetCodeSet(), 0);
    EXPECT_EQ(s.GetSize(), 0);
    s = "y";
    EXPECT_FALSE(s.IsNullValue());
    EXPECT_TRUE(VqString(254, 0).IsNullValue());
    EXPECT_FALSE(VqString(254, 1).IsNullValue());
    EXPECT_TRUE(VqString(7, 254).IsNullValue());
}

// --- The engine against a plain model

// Applies one random edit to the string and to its model.
void EditRandomly(VqString& s, std::u16string& model, std::mt19937& random) {
    const std::u16string piece(random() % 5, static_cast<char16_t>((random() % 2 ? 'a' : 0xE0) + random() % 26));
    const auto pos = static_cast<unsigned short>(random() % 24), n = static_cast<unsigned short>(random() % 24);
    const std::size_t room = model.size() > pos ? model.size() - pos : 0;
    const char c = static_cast<char>('A' + random() % 26);
    const auto wide = static_cast<unsigned short>(c);
    switch (random() % 8) {
        case 0:
            s += random() % 2 ? Wide(piece) : In(2, std::string(piece.begin(), piece.end()));
            model += piece;
            break;
        case 1:
            s.Insert(Wide(piece), pos);
            if (pos <= model.size()) model.insert(pos, piece);
            break;
        case 2:
            s.Replace(Wide(piece), pos);
            if (room != 0) model.replace(pos, std::min(room, piece.size()), piece, 0, room);
            break;
        case 3:
            s.Cut(pos, static_cast<short>(n));
            if (room != 0) model.erase(pos, n);
            break;
        case 4:
            s.Cut(pos);
            if (room != 0) model.erase(pos);
            break;
        case 5:
            random() % 2 ? s.Fill(n, c) : s.Fill(n, wide);
            model.assign(n, static_cast<char16_t>(c));
            break;
        case 6:
            random() % 2 ? s.Expand(n, c) : s.Expand(n, wide);
            if (n > model.size()) model.resize(n, static_cast<char16_t>(c));
            break;
        default:
            s.Insert(s, static_cast<unsigned short>(model.size() / 2));
            model.insert(model.size() / 2, std::u16string(model));
            model.resize(std::min<std::size_t>(model.size(), 40));
            s.Cut(40);
    }
}

TEST_F(VqStringTest, RandomEditsAgreeWithAPlainModel) {
    std::mt19937 random(1361);
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{0, 2, 253}) {
        VqString s(codeSet, 0);
        std::u16string model;
        for (int step = 0; step < 20000; ++step) {
            EditRandomly(s, model, random);
            VqString wide;
            wide.CopyMapped(s, 253);
            ASSERT_EQ(Units(wide), model) << "step " << step;
            ASSERT_EQ(s.GetCodeSet(), codeSet);
            if (s.GetSize() != 0) {
                ASSERT_EQ(s.GetSize(), (model.size() + 1) * (codeSet == 253 ? 2 : 1));
            }
        }
    }
}

TEST_F(VqStringTest, OverwritingAndFillingKeepTheirEdges) {
    VqString s("abcd");
    EXPECT_EQ(Bytes(s.Replace("xyz", 2)), "abxy");
    EXPECT_EQ(Bytes(s.Replace("", 1)), "abxy");
    EXPECT_EQ(Bytes(s.Insert("!", 5)), "abxy");
    EXPECT_EQ(Bytes(s.Insert("!", 4)), "abxy!");
    EXPECT_EQ(Bytes(s.Expand(3, ' ')), "abxy!");
    EXPECT_EQ(Bytes(s.Cut(1, -2)), "abxy!");
    EXPECT_EQ(Bytes(s.Fill(2, static_cast<unsigned short>(0x20AC))), "\x80\x80");
    EXPECT_EQ(s.Fill(0, 'x').Len(), 0);
    EXPECT_EQ(s.Fill(5, '\0').GetSize(), 6);
    EXPECT_EQ(s.Fill(5, static_cast<unsigned short>(0)).GetSize(), 6);
    const AssertRecorder recorder;
    EXPECT_EQ(s.Fill(65535, 'x').Len(), 65532);
    EXPECT_EQ(s.Insert("tail", 65530).Len(), 65532);
    EXPECT_EQ(Bytes(s).substr(65528), "xxta");
    EXPECT_EQ(recorder.Lines().size(), 2u);
}

}  // namespace
