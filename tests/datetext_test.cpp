// Texts of dates, times and date-times under formats with directives.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "_vqnulty.h"
#include "datetextreference.h"
#include "testsupport.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

template <class T>
std::string Print(const T& value, const char* format, VqString out = VqString()) {
    value.PrintToVqString(out, format);
    return Bytes(out);
}

template <class T = VqDateTime>
T Scan(const std::string& text, const char* format) {
    T value = T();
    value.ScanFromVqString(VqString(text.c_str()), format);
    return value;
}

VqDateTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return VqDateTime(VqDate(year, month, day), VqTime(hour, minute, second));
}

std::string Fields(const VqDateTime& v) {
    std::string text;
    for (const int field : {+v.date.year, +v.date.month, +v.date.day, +v.time.hour, +v.time.minute, +v.time.second}) {
        text += (text.empty() ? "" : " ") + std::to_string(field);
    }
    return text;
}

// --- Printing

// Midnight is 00 where the format does not tell the half of the day. What is no directive loses its per cent sign.
// Fields outside their ranges keep all their digits, and signs do not count among them.
TEST(DateText, PrintsDirectives) {
    static const std::tuple<VqDateTime, const char*, const char*> cases[] = {
        {At(2000, 2, 29), "%A, %B %d %y", "Tuesday, Februar 29 00"}, {At(2005, 3, 7, 0), "%I%%p", "00%p"},
        {At(1999, 1, 9), "%a|%b|%B|%m|%y", "Sat|Jan|Januar|01|99"},  {At(2005, 3, 7, 0), "%I%%%P", "12%AM"},
        {At(2005, 3, 7, 0, 5, 9), "%I:%M:%S %p", "12:05:09 am"},     {At(2005, 3, 7), "%%%x%Q%-%n[%", "%xQ-n["},
        {At(2005, 3, 7), "%a %e.%b %Y", "Mon 07.Mar 2005"},
    };
    for (const auto& [value, format, text] : cases) EXPECT_EQ(Print(value, format), text) << format;
    EXPECT_EQ(Print(At(-5, -5, -5, -5), "%Y %y %b %m %d %e %H %I"), "-0005 -05 -005 -05 -05 -05 -05 -05");
    EXPECT_EQ(Print(At(-32768, 13, 100, 127, 99, -128), "%Y %y %B %d %I %M %S"), "-32768 -68 013 100 115 99 -128");
}

TEST(DateText, TakesTheOtherPartFromTheClock) {
    const FixedClock clock({2010, 11, 12}, {13, 14, 15, 0});
    const char* const all = "%Y-%m-%dT%H:%M:%S %I%p %A %b";
    EXPECT_EQ(Print(VqDate(2005, 3, 7), all), "2005-03-07T13:14:15 01pm Monday Mar");
    EXPECT_EQ(Print(VqTime(1, 2, 3), all), "2010-11-12T01:02:03 01am Friday Nov");

    // What a text says of the other part is read, checked, and not kept.
    EXPECT_EQ(Print(Scan<VqDate>("2005-03-07 23", "%Y-%m-%d %H"), nullptr), "2005-03-07");
    EXPECT_EQ(Print(Scan<VqDate>("2005-03-07 24", "%Y-%m-%d %H"), nullptr), "0000-01-01");
    EXPECT_EQ(Print(Scan<VqDate>("05", "%H"), nullptr), "0000-01-01");
    EXPECT_EQ(Print(Scan<VqTime>("01:02:03", nullptr), nullptr), "01:02:03");
    EXPECT_EQ(Print(Scan<VqTime>("01:02:03 31", "%H:%M:%S %m"), nullptr), "00:00:00");
}

TEST(DateText, AppendsInTheCodeSetOfTheString) {
    const VqDateTime value = At(2005, 3, 7, 12, 5, 9);
    VqString wide = Wide(u"\u20AC ");
    value.PrintToVqString(wide, "%d\xE9%b");
    EXPECT_EQ(Units(wide), u"\u20AC 07\u00E9Mar");
    EXPECT_EQ(Print(value, "%d\xE9%b", In(3, "> ")), "> 07\x82Mar");
    VqString out("%Y.%m.");
    value.PrintToVqString(out, out.StrGet());
    EXPECT_EQ(Bytes(out), "%Y.%m.2005.03.");
}

TEST(DateText, PrintsFormatsOfAnyLength) {
    std::string format, expected;
    for (int directives = 0; directives <= 400; ++directives) {
        ASSERT_EQ(Print(At(2005, 9, 7), format.c_str()), expected) << directives;
        format += directives % 2 == 0 ? "%B" : "%A";
        expected += directives % 2 == 0 ? "September" : "Wednesday";
    }
    const AssertRecorder asserts;
    std::string longest;
    for (int i = 0; i < 40000; ++i) longest += "%Y";
    EXPECT_EQ(Print(At(2005, 9, 7), longest.c_str()).substr(65524), "20052005");
    EXPECT_EQ(asserts.Lines().size(), 1u);

    // Midnight asks the whole format for the half of the day, once.
    std::string hours(2 * 32766, 'x');
    for (std::size_t i = 0; i < hours.size(); i += 2) hours.replace(i, 2, "%I");
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(Print(At(2005, 9, 7, 0), hours.c_str()).substr(65528), "0000") << i;
        ASSERT_EQ(Print(At(2005, 9, 7, 0), (hours + "%p").c_str()).substr(65528), "1212") << i;
    }
}

// --- Scanning

// Three letters decide on names, and as many as agree are passed over. Literals are not compared; whatever a
// directive reads, the text advances by its width.
TEST(DateText, ScansDirectives) {
    static const std::tuple<const char*, const char*, const char*> cases[] = {
        {"2005-1", "%Y-%m-%d%Y%Y%b%a%p%%%", "2005 1 1 0 0 0"}, {"2001-02-30", "%Y-%m-%d", "0 1 1 0 0 0"},
        {"0000-00-00 12 AM", "%Y-%m-%d %I %p", "0 0 0 0 0 0"}, {"11 am pm", "%I %p %p", "0 1 1 23 0 0"},
        {"Mon 07.Mar 2005", "%a %e.%b %Y", "2005 3 7 0 0 0"},  {"12 am pm", "%I %p %p", "0 1 1 0 0 0"},
        {"2005-03-07T12:05:09", nullptr, "2005 3 7 12 5 9"},   {"\t\n\v\f\r 15", "%d", "0 1 15 0 0 0"},
        {"07:30:00 PM", "%I:%M:%S %p", "0 1 1 19 30 0"},       {"Marxch05", "%Bxch%d", "0 3 5 0 0 0"},
        {"12:15:00 xm", "%I:%M:%S %p", "0 1 1 12 15 0"},       {"January05", "%by%d", "0 1 5 0 0 0"},
        {"2000-02-29T24:00:00", nullptr, "0 1 1 0 0 0"},       {"March 05", "%B %d", "0 3 5 0 0 0"},
        {"0000-00-00T00:00:00", nullptr, "0 0 0 0 0 0"},       {"-1-05", "%y-%d", "1899 1 5 0 0 0"},
        {"0000-00-00T00:00:01", nullptr, "0 1 1 0 0 0"},       {"01205", "%b%d", "0 12 5 0 0 0"},
        {"1999/12.31", "%Y-%m-%d", "1999 12 31 0 0 0"},        {"mar05", "%b%d", "0 1 5 0 0 0"},
        {"99-12-31", "%y-%m-%d", "1999 12 31 0 0 0"},          {"5x7", "%dx%m", "0 1 5 0 0 0"},
    };
    for (const auto& [text, format, fields] : cases) EXPECT_EQ(Fields(Scan(text, format)), fields) << text;
}

// --- Null

template <class T>
void ExpectNullText() {
    for (const char* const format : {static_cast<const char*>(nullptr), "", "%Y"}) {
        T value = T();
        value.SetNullValue();
        EXPECT_EQ(Print(value, format, Wide(u"before")), "{NULL}");
        EXPECT_TRUE(Scan<T>("{NULL} and more", format).IsNullValue());
        EXPECT_FALSE(Scan<T>("{NULL", format).IsNullValue());
    }
}

TEST(DateText, NullReplacesTheText) {
    ExpectNullText<VqDate>();
    ExpectNullText<VqTime>();
    ExpectNullText<VqDateTime>();
    const VqString before = VqNullPrintString();
    VqNullPrintString() = "20";
    EXPECT_TRUE(Scan<VqDate>("2005-03-07", nullptr).IsNullValue());
    VqNullPrintString() = before;
}

// An element between commas may be empty, the last one too.
TEST(DateText, ReadsEmptyElementsOfArrays) {
    VqTypeMgr manager(5);
    const VqString before = VqNullPrintString();
    for (const char* none : {"", "x"}) {
        VqString text(",2005-03-07,");
        VqDate read[] = {VqDate(1, 1, 1), VqDate(1, 1, 1), VqDate(1, 1, 1)};
        VqNullPrintString() = none;
        manager.ScanFromVqString(VqTypeId_VqDate, read, text, "%Y-%m-%d", 3);
        VqNullPrintString() = before;
        EXPECT_EQ(read[0].IsNullValue() && read[2].IsNullValue(), *none == 0);
        EXPECT_EQ(Print(read[1], nullptr), "2005-03-07");
    }
}

// --- Against the slow way

class Draws {
  public:
    explicit Draws(unsigned seed) : random_(seed) {}

    unsigned Below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    int Within(int low, int high) { return low + static_cast<int>(Below(static_cast<unsigned>(high - low + 1))); }

    std::string Format() {
        static const char letters[] = "YymdeHIMSpPAaBb%YmdHMS";
        static const char literals[] = "-:./T x%p";
        std::string format;
        for (unsigned n = Below(9); n != 0; --n) {
            format += Below(3) != 0 ? std::string("%") + letters[Below(sizeof letters - 1)]
                                    : std::string(1, literals[Below(sizeof literals - 1)]);
        }
        return format;
    }

    // A date-time, or any fields at all.
    VqDateTime Value() {
        if (Below(2) == 0) {
            return At(Within(1, 9999), Within(1, 12), Within(1, 28), Within(0, 23), Within(0, 59), Within(0, 59));
        }
        const auto any = [&] { return Within(-128, 127); };
        return At(Within(-32768, 32767), any(), any(), any(), any(), any());
    }

    // A few changes of characters.
    std::string Mutated(std::string text) {
        static const char mean[] = "0123456789-+ \t:.apAPMJanFebrTuesday\xE9";
        for (unsigned n = Below(4); n != 0; --n) {
            const std::size_t place = Below(static_cast<unsigned>(text.size() + 1));
            text = Below(3) == 0 ? text.erase(place, Below(4)) : text.insert(place, 1, mean[Below(sizeof mean - 1)]);
        }
        return text;
    }

  private:
    std::mt19937 random_;
};

#ifdef _WIN32
constexpr int Rounds = 100000;
#else
constexpr int Rounds = 1000000;
#endif

TEST(DateText, PrintsLikeTheSlowWay) {
    Draws draw(20050307);
    for (int i = 0; i < Rounds; ++i) {
        const VqDateTime value = draw.Value();
        const std::string format = draw.Format();
        ASSERT_EQ(Print(value, format.c_str()), ReferenceDatePrint(value, format)) << format << Fields(value);
    }
}

TEST(DateText, ScansLikeTheSlowWay) {
    const FixedClock clock({2010, 11, 12}, {13, 14, 15, 0});
    Draws draw(19991231);
    for (int i = 0; i < Rounds; ++i) {
        const std::string format = draw.Format();
        const std::string other = draw.Below(4) != 0 ? format : draw.Format();
        const std::string text = draw.Mutated(ReferenceDatePrint(draw.Value(), other));
        ASSERT_EQ(Fields(Scan(text, format.c_str())), Fields(ReferenceDateScan(text, format))) << text << format;
    }
}

}  // namespace
