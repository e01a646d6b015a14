#include "objid.h"

#include <gtest/gtest.h>

#include "idsupport.h"
#include "testsupport.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

constexpr std::uint32_t Max = 0xFFFFFFFF;
constexpr unsigned char German = 2;

TEST(VqObjId, CountsModulo48Bits) {
    const struct {
        VqObjId from;
        short step;
        VqObjId to;
    } cases[] = {
        {Object(5, Max), 1, Object(6, 0)},
        {Object(6, 0), -1, Object(5, Max)},
        {Object(0xFFFF, Max), 1, Object(0, 0)},
        {Object(0, 0), -1, Object(0xFFFF, Max)},
        {Object(1, 9), 0, Object(1, 9)},
        {Object(1, 0), 0, Object(1, 0)},
        {Object(1, Max - 5), 32767, Object(2, 32761)},
        {Object(1, 5), -32768, Object(0, Max - 32762)},
    };
    for (const auto& [from, step, to] : cases) {
        VqObjId id = Object(from.high, from.low, 77);
        EXPECT_EQ(&(id += step), &id);
        EXPECT_EQ(NumbersOf(id), NumbersOf(Object(to.high, to.low, 77))) << NumbersOf(from) << " " << step;
    }
    VqObjId id = Object(1, Max, 3);
    EXPECT_EQ(NumbersOf(++id), "2 0 3");
    EXPECT_EQ(NumbersOf(--id), "1 4294967295 3");
    EXPECT_EQ(NumbersOf(id.SetHighestValue()), "65535 4294967295 0");
}

// --- Objects and databases

TEST(VqDBOId, ComparesDatabaseAndObjectOrTheObjectAlone) {
    const VqDBOId a = Object(Object(1, 5, 8), 2), b = Object(Object(1, 4, 8), 3), c = Object(Object(1, 5, 9), 3);
    EXPECT_EQ((a != b) + 10 * (b != a) + 100 * (b != c) + 1000 * (c != c), -1 + 10 - 100);
    EXPECT_TRUE(a == a && !(a == c));
    const VqObjId object = Object(1, 5, 7);
    EXPECT_TRUE(object == a && a == object && c == object && !(b == object));
    EXPECT_EQ((object != a) + 10 * (c != object) + 100 * (b != object) + 1000 * (object != b), -100 + 1000);

    VqDBOId to = c;
    to = object;
    EXPECT_EQ(NumbersOf(to), "1 5 7 0");
    VqObjId from;
    from = c;
    EXPECT_EQ(NumbersOf(from), "1 5 9");
    VqString text;
    c.PrintToVqString(text);
    EXPECT_EQ(Bytes(text), "(1-5#9)");
    to = c;
    to.ScanFromVqString("(2-6#1)");
    EXPECT_EQ(NumbersOf(to), "2 6 1 3") << "the database stays";
}

// --- Text

template <class Id>
std::string Printed(const Id& id, const char* format) {
    VqString text("replaced");
    id.PrintToVqString(text, format);
    return Bytes(text);
}
template <class Id>
std::string Scanned(const char* text, const char* format) {
    Id id;
    id.SetNullValue();
    id.ScanFromVqString(VqString(text), format);
    return NumbersOf(id);
}

TEST(IdentifierText, ReplacesDirectives) {
    const VqObjId object = Object(1, 42, 7);
    const std::pair<const char*, const char*> objects[] = {
        {nullptr, "(1-42#7)"},
        {"%B%%%L %H", "7%42 1"},
        {"%h-%l#%l %h %l|", "1-42#7  |"},
        {"%l,%h,%l", ",,7"},  // the wrong width takes its place
        {"%H%h%C%D%d%5%", "11CDd5"},
        {"", ""},
    };
    for (const auto& [format, text] : objects) EXPECT_EQ(Printed(object, format), text);
    EXPECT_EQ(Printed(Object(65535, Max, Max), nullptr), "(65535-4294967295#4294967295)");
    const VqClassId classId = Class(12, 3);
    EXPECT_EQ(Printed(classId, nullptr) + Printed(classId, "%V.%C") + Printed(classId, "%h/%h/%l%L"),
              "(12v3)3.1212/3/L");
    EXPECT_EQ(Printed(Object(0, 0, 7), "%B") + Printed(Class(65535, 65535), "x"), "{NULL}{NULL}");
}

TEST(IdentifierText, KeepsTheCodeSetAndLanguageOfItsTarget) {
    const std::pair<VqObjId, const char*> cases[] = {{Object(1, 42, 7), "(1-42#7)"}, {VqObjId(), "{NULL}"}};
    for (const auto& [object, printed] : cases) {
        VqString wide = Wide(u"gone");
        wide.SetLanguage(German);
        const unsigned char codeSet = wide.GetCodeSet();
        object.PrintToVqString(wide);
        EXPECT_EQ(Units(wide), std::u16string(printed, printed + std::strlen(printed)));
        EXPECT_TRUE(wide.GetCodeSet() == codeSet && wide.GetLanguage() == German) << printed;
        VqString null;
        null.SetNullValue();
        object.PrintToVqString(null);
        EXPECT_EQ(Bytes(null), printed);
        EXPECT_EQ(null.GetLanguage(), VqString().GetLanguage());
    }
}

TEST(IdentifierText, IsReadInStepWithItsFormat) {
    const struct {
        const char *text, *format, *numbers;
    } objects[] = {{"(1-42#7)", nullptr, "1 42 7"},
                   {"[1:42/7", nullptr, "1 42 7"},
                   {"( 1- 42# +7)", nullptr, "1 42 7"},
                   {"(1", nullptr, "1 0 0"},
                   {"", nullptr, "0 0 0"},
                   {"42", "%L", "0 42 0"},
                   {"(x-5#6)", nullptr, "0 4294967291 6"},
                   {"65537 4294967296 99999999999999999999", "%H %L %B", "1 4294967295 4294967295"},
                   {"99999 99999999999 -1", "%H %L %B", "34463 4294967295 4294967295"},
                   {"1%2", "%H%%%L", "1 2 0"},
                   {"1-42#7", "%h-%l#%l", "1 42 7"},
                   {"12 34", "%l%h %l", "0 0 2"},
                   {"5", "%", "0 0 0"},
                   {"{NULL} or not", "%L", "0 0 0"}};
    for (const auto& c : objects) EXPECT_EQ(Scanned<VqObjId>(c.text, c.format), c.numbers) << c.text;
    EXPECT_EQ(Scanned<VqClassId>("(12v3)", nullptr) + ", " + Scanned<VqClassId>("3.12", "%V.%C") + ", " +
                  Scanned<VqClassId>("7", "%V") + ", " + Scanned<VqClassId>("{NULL}", "%V"),
              "12 3, 12 3, 0 7, 65535 65535");
    VqObjId id;
    id.ScanFromVqString(Wide(u"(1-42#7)"));
    EXPECT_EQ(NumbersOf(id), "1 42 7");

    VqString null;
    null.SetNullValue();
    VqClassId classId = Class(12, 3);
    classId.ScanFromVqString(null);
    id.ScanFromVqString(null);
    EXPECT_TRUE(classId.IsNullValue() && NumbersOf(id) == "0 0 0");
}

}  // namespace
