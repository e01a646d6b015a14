#include "textform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <tuple>
#include <vector>

#include "_vqnulty.h"
#include "testsupport.h"
#include "vqtypes.h"

namespace {

using vqtest::Bytes;

struct Row {
    VqPrintFunc print;
    VqScanFunc scan;
};
Row RowOf(signed char) { return {CharPrint, CharScan}; }
Row RowOf(std::int16_t) { return {ShortPrint, ShortScan}; }
Row RowOf(std::int32_t) { return {LongPrint, LongScan}; }
Row RowOf(float) { return {FloatPrint, FloatScan}; }
Row RowOf(double) { return {DoublePrint, DoubleScan}; }

template <class T>
std::string Print(T value, const char* format) {
    VqString out;
    EXPECT_EQ(&out, &RowOf(value).print(out, &value, format, 1));
    return Bytes(out);
}

template <class T>
T Scan(const char* text, const char* format, T before) {
    VqString in(text);
    EXPECT_EQ(&before, RowOf(before).scan(&before, in, format, 1));
    return before;
}

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// --- Printing

TEST(TextForm, PrintsIntegersTheSameOnEveryTarget) {
    static const struct {
        std::int32_t value;
        const char *format, *text;
    } cases[] = {
        {-1, "%ld #%lu", "-1 #4294967295"},
        {40000, "%hd", "-25536"},
        {-1, "%hhu", "255"},
        {42, "%+d|% d|%05d|%-5d|%5d", "+42| 42|00042|42   |   42"},
        {0, "[%.0d][%#.0o][%#x]", "[][0][0]"},
        {65, "<%c> <%3c> <%-3c>", "<A> <  A> <A  >"},
        // What does not fit the type is text.
        {7, "%s %n %p %f %*d %-*d %ls %lc %5% %", "%s %n %p %f %*d %-*d %ls %lc %5% %"},
        {7, "100%% of %d", "100% of 7"},
        {7, "%", "%"},
        {7, "%q %'d %I64d %d", "%q %'d %I64d 7"},
    };
    for (const auto& c : cases) EXPECT_EQ(Print(c.value, c.format), c.text) << c.format;
}

TEST(TextForm, PrintsFloatingNumbersTheSameOnEveryTarget) {
    static const struct {
        double value;
        const char *format, *text;
    } cases[] = {
        {2.5, "%lf %.0f %#.0f %G", "2.500000 2 2. 2.5"},
        {1.0 / 3, "%.15g %.17g", "0.333333333333333 0.33333333333333331"},
        {99999.5, "%#.5g", "1.0000e+05"},
        {123456, "%#.0g", "1.e+05"},
        {3.14159, "%8.2f|%-8.2f|%08.2f|%+.1f|% .1f", "    3.14|3.14    |00003.14|+3.1| 3.1"},
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
    EXPECT_EQ(Print(std::int16_t{-1}, "%hu %u %x"), "65535 65535 ffff");
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
    EXPECT_EQ(Print(1.5, "%.99999g"), "1.5");
}

// Whatever formats and arrays ask for, work ends soon behind the longest text, and what it lacks is reported.
TEST(TextForm, StopsWhereAStringIsFull) {
    constexpr unsigned long Count = 20000;
    std::string format;
    for (unsigned long i = 0; i < Count; ++i) format += "%65532d%65532f%65532s";
    const std::vector<VqString> strings(Count, VqString("text"));
    const std::vector<char> zeros(8 * Count), bytes(Count, 'A');
    const std::tuple<const char*, VqPrintFunc, const void*> rows[] = {{"char", CharPrint, bytes.data()},
                                                                      {"short", ShortPrint, zeros.data()},
                                                                      {"long", LongPrint, zeros.data()},
                                                                      {"double", DoublePrint, zeros.data()},
                                                                      {"string", StringPrint, strings.data()}};
    for (const auto& [row, print, values] : rows) {
        for (const unsigned long count : {1ul, Count}) {
            const vqtest::AssertRecorder asserts;
            VqString out, wide = vqtest::Wide(u"");
            print(out, const_cast<void*>(values), format.c_str(), count);
            EXPECT_EQ(out.Len(), 65532) << row;
            EXPECT_FALSE(asserts.Lines().empty()) << row;
            EXPECT_LT(asserts.Lines().size(), 10u) << row;
            print(wide, const_cast<void*>(values), format.c_str(), count);
            EXPECT_EQ(wide.Len(), 32765) << row;
        }
    }
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

    EXPECT_EQ(LongScan(nullptr, out, "%d", 3), nullptr);

    // An element may be empty, the last one too: its value stays. What follows a number is the next element.
    static const struct {
        const char* text;
        std::int32_t values[3];
    } cases[] = {
        {"", {7, 8, 9}},       {"1", {1, 8, 9}},
        {"1,", {1, 8, 9}},     {",2,", {7, 2, 9}},
        {",,3", {7, 8, 3}},    {"1,,,4", {1, 8, 9}},
        {"1 2,3", {1, 2, 3}},  {"1x2,3", {1, 8, 3}},
        {"1x,2,3", {1, 8, 2}}, {"10, x ,30,40", {10, 8, 30}},
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
    const auto check = [](auto value, const std::string& format) {
        char expected[2048];
        std::snprintf(expected, sizeof expected, format.c_str(), value);
        ASSERT_EQ(Print(value, format.c_str()), expected) << format << " of " << value;
    };
    for (int i = 0; i < 300000; ++i) {
        std::string format = "%";
        for (unsigned flags = pick(4); flags != 0; --flags) format += "-+ #0"[pick(5)];
        if (pick(2) != 0) format += std::to_string(pick(40));
        if (pick(2) != 0) format += "." + (pick(4) != 0 ? std::to_string(pick(30)) : "");
        if (i % 2 == 0) {
            const auto value = static_cast<std::int32_t>(random() >> pick(64));
            ASSERT_NO_FATAL_FAILURE(check(value, format + "diouxX"[pick(6)]));
        } else {
            double value = static_cast<double>(static_cast<std::int64_t>(random() >> pick(64))) / 1024;
            if (pick(2) != 0) value = std::bit_cast<double>(random());
            if (std::isnan(value)) value = NotANumber;
            ASSERT_NO_FATAL_FAILURE(check(value, format + "fFeEgGaA"[pick(8)]));
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
        double expectedNumber = std::strtod(text.c_str(), &end), number = Scan(text.c_str(), "%lf", -7.0);
        if (end == text.c_str()) expectedNumber = -7;
        if (std::isnan(number) && std::isnan(expectedNumber)) continue;
        ASSERT_EQ(number, expectedNumber) << text;
    }
}

#endif

// --- Scanning

TEST(TextForm, ScansIntegers) {
    static const struct {
        const char* format;
        std::vector<std::pair<const char*, std::int32_t>> texts;  // -7: nothing to read, the value keeps what it had
    } cases[] = {
        {"%d", {{" \t\n-42x", -42}, {"99999999999999999999", INT32_MAX}, {"0x1F", 0}, {"x", -7}}},
        {"%ld", {{"-99999999999999999999", INT32_MIN}}},
        {"%lld", {{"4294967296", INT32_MAX}}},
        {"%lu", {{"99999999999999999999", -1}, {"-99999999999999999999", -1}, {"-1", -1}}},
        {"%hd", {{"70000", 4464}, {"40000", -25536}}},
        {"%hu", {{"40000", 40000}}},
        {"%hhd", {{"200", -56}}},
        {"%i", {{"0x1F", 31}, {"017", 15}, {"0x", 0}}},
        {"%x", {{"1F", 31}, {"0x1F", 31}}},
        {"%3d", {{"12345", 123}}},
        {"%c", {{"A", 65}, {"  A", 32}}},
        {"#%lu", {{"#17", 17}, {"17", -7}}},
        {"width is %d", {{"width  is\t5", 5}}},
        {"%*d %d", {{"1 2", 2}, {"5", -7}}},
        {"%d%%", {{"50%", 50}}},
        {"[%d]", {{"[5", 5}}},
        {"%f", {{"5", -7}}},
        {"%n", {{"5", -7}}},
        {"%3c", {{"AB", -7}}},
        {"%s%d", {{"%s9", 9}}},
    };
    for (const auto& [format, texts] : cases) {
        for (const auto& [text, value] : texts) {
            EXPECT_EQ(Scan(text, format, std::int32_t{-7}), value) << text << " " << format;
        }
    }
    EXPECT_EQ(Scan("40000", "%hu", std::int16_t{0}), -25536);
    EXPECT_EQ(Scan("0x41", "%c", static_cast<signed char>(0)), '0');
    EXPECT_EQ(Scan("0x07", "%c", static_cast<signed char>(0)), 7);
}

TEST(TextForm, ScansFloatingNumbers) {
    const std::pair<const char*, double> texts[] = {
        {"1e999", Infinity},      {"-1e999", -Infinity},  {"1e-999", 0}, {"0x1.8p1", 3},
        {"-Infinity", -Infinity}, {"infinite", Infinity}, {"1e", 1},     {".", -7}};
    for (const auto& [text, value] : texts) EXPECT_EQ(Scan(text, "%lf", -7.0), value) << text;
    EXPECT_EQ(Scan("3.14159", "%4lf", -7.0), 3.14);
    EXPECT_EQ(Scan("$2.50", "$%f", -7.0), 2.5);
    EXPECT_EQ(Scan("5", "%d", -7.0), -7);
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
    EXPECT_TRUE(values[0] == -12 && values[1] == 2 && values[2] == 7);

    VqString out = vqtest::Wide(u"\u4E2D=");
    ShortPrint(out, values, nullptr, 1);
    EXPECT_EQ(vqtest::Units(out), u"\u4E2D=-12");
}

// --- Strings

TEST(TextForm, PrintsStrings) {
    static const struct {
        const char *format, *text;
    } cases[] = {
        {nullptr, "New York"}, {"[%s]", "[New York]"},     {"%10s|", "  New York|"}, {"%-10s|", "New York  |"},
        {"%.3s", "New"},       {"%d %n %ls", "%d %n %ls"}, {"%s %%", "New York %"},  {"%5.1s", "    N"},
    };
    for (const auto& c : cases) {
        VqString value("New York"), out;
        EXPECT_EQ(Bytes(StringPrint(out, &value, c.format, 1)), c.text);
    }
    VqString wide = vqtest::Wide(u"\u4E2D\u6587"), into = vqtest::Wide(u"");
    StringPrint(into, &wide, "%3.1s", 1);
    EXPECT_EQ(vqtest::Units(into), u"  \u4E2D");
}

TEST(TextForm, ScansStringsWholeAndKeepsTheirCodeSet) {
    static const struct {
        const char *text, *format, *value;
    } cases[] = {
        {"New York, NY", nullptr, "New York, NY"},
        {"[New York]", "[%s]", "New York"},
        {"New York", "%3s", "New"},
        {"no match", "[%s]", "before"},
        {"key: value", "%*s: %s", "value"},
        {"", "%s", ""},
        {"{NULL} and void", nullptr, "{NULL} and void"},
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

    VqString list("a,{NULL},c,d"), values[] = {"x", "y", "z"};
    StringScan(values, list, nullptr, 3);
    EXPECT_EQ(Bytes(values[0]) + " " + Bytes(values[2]), "a c,d");
    EXPECT_TRUE(values[1].IsNullValue());
    StringScan(values, values[2], nullptr, 1);
    EXPECT_EQ(Bytes(values[0]), "c,d");
}

}  // namespace
