#include "textform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

#include "_vqnulty.h"
#include "testsupport.h"
#include "vqtypes.h"

namespace {

using vqtest::Bytes;

template <class T>
struct Row;
template <>
struct Row<signed char> {
    static constexpr auto Print = CharPrint;
    static constexpr auto Scan = CharScan;
};
template <>
struct Row<std::int16_t> {
    static constexpr auto Print = ShortPrint;
    static constexpr auto Scan = ShortScan;
};
template <>
struct Row<std::int32_t> {
    static constexpr auto Print = LongPrint;
    static constexpr auto Scan = LongScan;
};
template <>
struct Row<float> {
    static constexpr auto Print = FloatPrint;
    static constexpr auto Scan = FloatScan;
};
template <>
struct Row<double> {
    static constexpr auto Print = DoublePrint;
    static constexpr auto Scan = DoubleScan;
};

template <class T>
std::string Print(T value, const char* format) {
    VqString out;
    EXPECT_EQ(&out, &Row<T>::Print(out, &value, format, 1));
    return Bytes(out);
}

template <class T>
T Scan(const char* text, const char* format, T before) {
    VqString in(text);
    EXPECT_EQ(&before, Row<T>::Scan(&before, in, format, 1));
    return before;
}

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// --- Printing

TEST(TextForm, PrintsIntegersTheSameOnEveryTarget) {
    static const struct {
        std::int32_t value;
        const char* format;
        const char* text;
    } cases[] = {
        {-31, "%ld", "-31"},
        {-1, "%lu", "4294967295"},
        {-1, "#%lu", "#4294967295"},
        {INT32_MIN, "%d", "-2147483648"},
        {40000, "%hd", "-25536"},
        {-1, "%hhu", "255"},
        {42, "%+d|% d|%05d|%-5d|%5d", "+42| 42|00042|42   |   42"},
        {-42, "%+06d|%.5d|%8.4d|%08.4d", "-00042|-00042|   -0042|   -0042"},
        {0, "[%.0d][%#.0o][%#x]", "[][0][0]"},
        {255, "%x %X %#x %#X %o %#o", "ff FF 0xff 0XFF 377 0377"},
        {65, "<%c> <%3c> <%-3c>", "<A> <  A> <A  >"},
        // What does not fit the type is text.
        {7, "%s %n %p %f %*d %-*d %ls %lc %5% %", "%s %n %p %f %*d %-*d %ls %lc %5% %"},
        {7, "100%% of %d", "100% of 7"},
        {7, "%", "%"},
        {7, "", ""},
        {7, "%q %'d %I64d %d", "%q %'d %I64d 7"},
    };
    for (const auto& c : cases) EXPECT_EQ(Print(c.value, c.format), c.text) << c.format;
}

TEST(TextForm, PrintsFloatingNumbersTheSameOnEveryTarget) {
    static const struct {
        double value;
        const char* format;
        const char* text;
    } cases[] = {
        {2.5, "%lf", "2.500000"},
        {0.5, "%.0f", "0"},
        {1.5, "%.0f", "2"},
        {2.5, "%.0f %#.0f", "2 2."},
        {1e15, "%e", "1.000000e+15"},
        {1e-5, "%G", "1E-05"},
        {1e100, "%g", "1e+100"},
        {1.0 / 3, "%.15g %.17g", "0.333333333333333 0.33333333333333331"},
        {100000, "%g", "100000"},
        {1000000, "%g", "1e+06"},
        {0, "%#g", "0.00000"},
        {0.0001, "%#.3g", "0.000100"},
        {99999.5, "%#.5g", "1.0000e+05"},
        {123456, "%#.0g", "1.e+05"},
        {-0.0, "%f %+f", "-0.000000 -0.000000"},
        {3.14159, "%8.2f|%-8.2f|%08.2f|%+.1f|% .1f", "    3.14|3.14    |00003.14|+3.1| 3.1"},
        {1, "%a %A", "0x1p+0 0X1P+0"},
        {-0.1, "%a %.3a", "-0x1.999999999999ap-4 -0x1.99ap-4"},
        {Infinity, "%f %E %5g %05f %+a", "inf INF   inf   inf +inf"},
        {-Infinity, "%f", "-inf"},
        {NotANumber, "%f %F %05f", "nan NAN   nan"},
        {5e-324, "%.3e", "4.941e-324"},
        {1e23, "%.0f", "99999999999999991611392"},
        {1, "%d %c %s", "%d %c %s"},
    };
    for (const auto& c : cases) EXPECT_EQ(Print(c.value, c.format), c.text) << c.format;
    EXPECT_EQ(Print(16777216.0f, "%f"), "16777216.000000");
    EXPECT_EQ(Print(0.1f, "%.9g"), "0.100000001");
}

TEST(TextForm, ReadsUnsignedTypesByTheirOwnWidth) {
    EXPECT_EQ(Print(std::int16_t{-1}, "%hu"), "65535");
    EXPECT_EQ(Print(std::int16_t{-1}, "%u"), "65535");
    EXPECT_EQ(Print(std::int16_t{-1}, "%x"), "ffff");
    EXPECT_EQ(Print(static_cast<signed char>('~'), "%o"), "176");
    EXPECT_EQ(Scan("200", "%u", static_cast<signed char>(0)), -56);
}

TEST(TextForm, KeepsHostileWidthsWithinTheLongestString) {
    for (const char* format : {"%99999999999d", "%.99999999999d", "%-2147483648d", "%065532d"}) {
        EXPECT_EQ(Print(std::int32_t{5}, format).size(), 65532u) << format;
    }
    const vqtest::AssertRecorder asserts;  // 65532 digits behind the point are more than a string holds
    EXPECT_EQ(Print(0.1, "%.99999f").substr(0, 20), "0.100000000000000005");
    EXPECT_EQ(Print(0.1, "%.99999a").substr(0, 17), "0x1.999999999999a");
    EXPECT_EQ(Print(0.1, "%#.99999g").substr(0, 20), "0.100000000000000005");
    EXPECT_EQ(Print(1.5, "%.99999g"), "1.5");
}

// Whatever formats and arrays ask for, work ends soon behind the longest text, and what it lacks is reported.
TEST(TextForm, StopsWhereAStringIsFull) {
    constexpr unsigned long Count = 20000;
    std::string format;
    for (unsigned long i = 0; i < Count; ++i) format += "%65532d%65532f%65532s";
    const std::vector<VqString> strings(Count, VqString("text"));
    const std::vector<char> zeros(8 * Count), bytes(Count, 'A');
    struct Case {
        const char* row;
        VqPrintFunc print;
        const void* values;
    };
    for (const Case& c : {Case{"char", CharPrint, bytes.data()}, Case{"short", ShortPrint, zeros.data()},
                          Case{"long", LongPrint, zeros.data()}, Case{"double", DoublePrint, zeros.data()},
                          Case{"string", StringPrint, strings.data()}}) {
        for (const unsigned long count : {1ul, Count}) {
            const vqtest::AssertRecorder asserts;
            VqString out, wide = vqtest::Wide(u"");
            c.print(out, const_cast<void*>(c.values), format.c_str(), count);
            EXPECT_EQ(out.Len(), 65532) << c.row;
            EXPECT_FALSE(asserts.Lines().empty()) << c.row;
            c.print(wide, const_cast<void*>(c.values), format.c_str(), count);
            EXPECT_EQ(wide.Len(), 32765) << c.row;
        }
    }
}

// A full string takes no further element, and the rest of the array is not gone through.
TEST(TextForm, StopsArraysWhereAStringIsFull) {
    const vqtest::AssertRecorder asserts;
    constexpr unsigned long Count = 1000000;
    std::vector<std::int32_t> values(Count, 1234567);
    VqString out;
    VqTypeMgr(5).PrintToVqString(VqTypeId_long, out, values.data(), nullptr, Count);
    EXPECT_EQ(out.Len(), 65532);
    EXPECT_EQ(Bytes(out).substr(65520), "1234567,1234");
    EXPECT_FALSE(asserts.Lines().empty());
    EXPECT_LT(asserts.Lines().size(), 10u);
}

TEST(TextForm, PrintsBytesAsOnePieceWithEscapes) {
    char bytes[] = {'A', ' ', '~', 0, 0x1F, 0x7F, static_cast<char>(0xE9), 'z'};
    VqString out("<");
    CharPrint(out, bytes, "%c", sizeof bytes);
    EXPECT_EQ(Bytes(out), "<A ~0x000x1f0x7f0xe9z");

    char back[sizeof bytes] = {};
    VqString text(Bytes(out).substr(1).c_str());
    CharScan(back, text, "%c", sizeof back);
    EXPECT_EQ(vqtest::Hex(back, sizeof back), vqtest::Hex(bytes, sizeof bytes));
    for (const char* format : {"[%c]", "[%d]", "%x", "", "%ld %n"}) {
        EXPECT_EQ(Print<signed char>(1, format), "0x01") << format;
        EXPECT_EQ(Scan<signed char>("0x01", format, 'A'), 1) << format;
    }
    EXPECT_EQ(Print<signed char>('A', "[%d]"), "[65]");
    EXPECT_EQ(Scan<signed char>("[65]", "[%d]", 0), 'A');
}

TEST(TextForm, PrintsAndScansArraysWithCommas) {
    std::int32_t values[] = {1, -2, 3};
    VqString out("=");
    LongPrint(out, values, nullptr, 3);
    EXPECT_EQ(Bytes(out), "=1,-2,3");
    LongPrint(out, values, "%d", 0);
    LongPrint(out, nullptr, "%d", 3);
    EXPECT_EQ(Bytes(out), "=1,-2,3");

    VqString text("10, x ,30,40");
    LongScan(values, text, "%d", 3);
    EXPECT_EQ(values[0], 10);
    EXPECT_EQ(values[1], -2);
    EXPECT_EQ(values[2], 30);
    EXPECT_EQ(LongScan(nullptr, text, "%d", 3), nullptr);

    // An element may be empty, the last one too: its value stays. What follows a number is the next element.
    static const struct {
        const char* text;
        std::int32_t values[3];
    } cases[] = {
        {"", {7, 8, 9}},      {"1", {1, 8, 9}},     {"1,", {1, 8, 9}},    {",2,", {7, 2, 9}},    {",,3", {7, 8, 3}},
        {"1,,,4", {1, 8, 9}}, {"1 2,3", {1, 2, 3}}, {"1x2,3", {1, 8, 3}}, {"1x,2,3", {1, 8, 2}},
    };
    for (const auto& c : cases) {
        std::int32_t read[] = {7, 8, 9};
        VqString in(c.text);
        LongScan(read, in, "%d", 3);
        EXPECT_TRUE(std::equal(read, read + 3, c.values)) << c.text;
    }
}

#ifdef __GLIBC__

// Random conversions agree with the C library, over values with all exponents.
TEST(TextForm, PrintsLikeTheCLibrary) {
    std::mt19937_64 random(20051207);
    const auto pick = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    char expected[2048];
    for (int i = 0; i < 300000; ++i) {
        std::string format = "%";
        for (unsigned flags = pick(4); flags != 0; --flags) format += "-+ #0"[pick(5)];
        if (pick(2) != 0) format += std::to_string(pick(40));
        if (pick(2) != 0) format += "." + (pick(4) != 0 ? std::to_string(pick(30)) : "");
        if (i % 2 == 0) {
            const auto value = static_cast<std::int32_t>(random() >> pick(64));
            format += "diouxX"[pick(6)];
            std::snprintf(expected, sizeof expected, format.c_str(), value);
            ASSERT_EQ(Print(value, format.c_str()), expected) << format << " of " << value;
        } else {
            double value = static_cast<double>(static_cast<std::int64_t>(random() >> pick(64))) / 1024;
            if (pick(2) != 0) value = std::bit_cast<double>(random());
            if (std::isnan(value)) value = NotANumber;
            format += "fFeEgGaA"[pick(8)];
            std::snprintf(expected, sizeof expected, format.c_str(), value);
            ASSERT_EQ(Print(value, format.c_str()), expected) << format;
        }
    }
}

TEST(TextForm, ScansLikeTheCLibrary) {
    std::mt19937_64 random(4711);
    const auto pick = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    static const char mean[] = "0123456789+-.eExXpPaf nNiI";
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        for (unsigned n = pick(9); n != 0; --n) text += mean[pick(sizeof mean - 1)];
        const std::string width = pick(3) == 0 ? std::to_string(pick(6) + 1) : "";
        const std::string integer = "%" + width + "diuxo"[pick(5)];
        int expected = -7;
        std::sscanf(text.c_str(), integer.c_str(), &expected);
        // Here the C library gives up where a number stands before an unfinished prefix.
        const bool bareprefix = text.find_first_of("xX") != std::string::npos;
        if (!bareprefix) {
            ASSERT_EQ(Scan(text.c_str(), integer.c_str(), std::int32_t{-7}), expected) << text << " " << integer;
        }

        char* end;
        const double strtod = std::strtod(text.c_str(), &end);
        const double number = Scan(text.c_str(), "%lf", -7.0);
        ASSERT_EQ(std::isnan(number) ? 0 : number, end == text.c_str()  ? -7.0
                                                   : std::isnan(strtod) ? 0
                                                                        : strtod)
            << text;
    }
}

#endif

// --- Scanning

TEST(TextForm, ScansIntegers) {
    static const struct {
        const char* text;
        const char* format;
        std::int32_t value;
    } cases[] = {
        {"42", "%d", 42},
        {" \t\n-42x", "%d", -42},
        {"99999999999999999999", "%d", INT32_MAX},
        {"-99999999999999999999", "%ld", INT32_MIN},
        {"99999999999999999999", "%lu", -1},
        {"-99999999999999999999", "%u", -1},
        {"-1", "%u", -1},
        {"4294967296", "%lld", INT32_MAX},
        {"70000", "%hd", 4464},
        {"40000", "%hd", -25536},
        {"40000", "%hu", 40000},
        {"200", "%hhd", -56},
        {"0x1F", "%i", 31},
        {"017", "%i", 15},
        {"0x", "%i", 0},
        {"1F", "%x", 31},
        {"0x1F", "%x", 31},
        {"0x1F", "%d", 0},
        {"12345", "%3d", 123},
        {"#17", "#%lu", 17},
        {"A", "%c", 65},
        {"  A", "%c", 32},
        {"width  is\t5", "width is %d", 5},
        {"1 2", "%*d %d", 2},
        {"50%", "%d%%", 50},
        {"[5", "[%d]", 5},
        // Nothing to read: the value keeps what it had.
        {"", "%d", -7},
        {"x", "%d", -7},
        {"-", "%d", -7},
        {"17", "#%d", -7},
        {"5", "%*d", -7},
        {"5", "%f", -7},
        {"5", "%n", -7},
        {"AB", "%3c", -7},
        {"%s9", "%s%d", 9},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Scan(c.text, c.format, std::int32_t{-7}), c.value) << c.text << " " << c.format;
    EXPECT_EQ(Scan("40000", "%hu", std::int16_t{0}), -25536);
    EXPECT_EQ(Scan("0x41", "%c", static_cast<signed char>(0)), '0');
    EXPECT_EQ(Scan("0x07", "%c", static_cast<signed char>(0)), 7);
}

TEST(TextForm, ScansFloatingNumbers) {
    static const struct {
        const char* text;
        const char* format;
        double value;
    } cases[] = {
        {"2.5", "%lf", 2.5},
        {" +.5e1", "%f", 5},
        {"1e", "%lf", 1},
        {"1e999", "%lf", Infinity},
        {"-1e999", "%lf", -Infinity},
        {"1e-999", "%lf", 0},
        {"0x1.8p1", "%lf", 3},
        {"-Infinity", "%lf", -Infinity},
        {"infinite", "%lf", Infinity},
        {"3.14159", "%4lf", 3.14},
        {"$2.50", "$%lf", 2.5},
        {"", "%lf", -7},
        {".", "%lf", -7},
        {"e5", "%lf", -7},
        {"5", "%d", -7},
    };
    for (const auto& c : cases) EXPECT_EQ(Scan(c.text, c.format, -7.0), c.value) << c.text << " " << c.format;
    EXPECT_TRUE(std::isnan(Scan("-NaN", "%lf", 0.0)));
    EXPECT_EQ(Scan("1e39", "%f", 0.0f), static_cast<float>(Infinity));
}

TEST(TextForm, ScansBackWhatItPrints) {
    std::mt19937_64 random(99);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        const double d = std::bit_cast<double>(bits);
        const float f = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        if (!std::isnan(d)) {
            ASSERT_EQ(Scan(Print(d, "%.17g").c_str(), "%lf", 0.0), d);
        }
        if (!std::isnan(d)) {
            ASSERT_EQ(Scan(Print(d, "%a").c_str(), "%lf", 0.0), d);
        }
        if (!std::isnan(f)) {
            ASSERT_EQ(Scan(Print(f, "%.9g").c_str(), "%f", 0.0f), f);
        }
    }
}

TEST(TextForm, ReadsNumbersFromWideTexts) {
    VqString wide = vqtest::Wide(u"-12,\u4E2D,7");
    std::int16_t values[] = {1, 2, 3};
    ShortScan(values, wide, nullptr, 3);
    EXPECT_EQ(values[0], -12);
    EXPECT_EQ(values[1], 2);
    EXPECT_EQ(values[2], 7);

    VqString out = vqtest::Wide(u"\u4E2D=");
    ShortPrint(out, values, nullptr, 1);
    EXPECT_EQ(vqtest::Units(out), u"\u4E2D=-12");
}

// --- Strings

TEST(TextForm, PrintsStrings) {
    static const struct {
        const char* format;
        const char* text;
    } cases[] = {
        {nullptr, "New York"}, {"[%s]", "[New York]"},     {"%10s|", "  New York|"}, {"%-10s|", "New York  |"},
        {"%.3s", "New"},       {"%d %n %ls", "%d %n %ls"}, {"%s %%", "New York %"},  {"%5.1s", "    N"},
    };
    for (const auto& c : cases) {
        VqString value("New York"), out;
        EXPECT_EQ(Bytes(StringPrint(out, &value, c.format, 1)), c.text);
    }
    VqString values[] = {"a", "", "c"}, out;
    values[1].SetNullValue();
    EXPECT_EQ(Bytes(StringPrint(out, values, nullptr, 3)), "a,{NULL},c");

    VqString wide = vqtest::Wide(u"\u4E2D\u6587"), into = vqtest::Wide(u"");
    StringPrint(into, &wide, "%3.1s", 1);
    EXPECT_EQ(vqtest::Units(into), u"  \u4E2D");
}

TEST(TextForm, ScansStringsWholeAndKeepsTheirCodeSet) {
    static const struct {
        const char* text;
        const char* format;
        const char* value;
    } cases[] = {
        {"New York, NY", nullptr, "New York, NY"},
        {"[New York]", "[%s]", "New York"},
        {"New York", "%3s", "New"},
        {"no match", "[%s]", "before"},
        {"key: value", "%*s: %s", "value"},
        {"", "%s", ""},
    };
    for (const auto& c : cases) {
        VqString text(c.text), value("before");
        StringScan(&value, text, c.format, 1);
        EXPECT_EQ(Bytes(value), c.value) << c.text;
    }
    VqString wide = vqtest::Wide(u"<\u4E2D>"), value("x");
    StringScan(&value, wide, "<%s>", 1);
    EXPECT_EQ(vqtest::Units(value), u"\u4E2D");
    EXPECT_EQ(value.GetCodeSet(), wide.GetCodeSet());

    VqString null("{NULL}");
    StringScan(&value, null, nullptr, 1);
    EXPECT_TRUE(value.IsNullValue());
    VqString notNull("{NULL} and void");
    StringScan(&value, notNull, nullptr, 1);
    EXPECT_EQ(Bytes(value), "{NULL} and void");

    VqString list("a,{NULL},c,d"), values[] = {"x", "y", "z"};
    StringScan(values, list, nullptr, 3);
    EXPECT_EQ(Bytes(values[0]), "a");
    EXPECT_TRUE(values[1].IsNullValue());
    EXPECT_EQ(Bytes(values[2]), "c,d");
    StringScan(values, values[2], nullptr, 1);
    EXPECT_EQ(Bytes(values[0]), "c,d");
}

}  // namespace
