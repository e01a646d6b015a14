#include "vqint64.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "../src/decimaltext.h"
#include "int64reference.h"
#include "testsupport.h"
#include "vqbase.h"

using namespace vqtest;

namespace {

// The slow reference takes its time where machines are emulated or watched.
#if defined(_WIN32) || defined(__i386__) || defined(__SANITIZE_ADDRESS__)
constexpr int Rounds = 100'000;
#else
constexpr int Rounds = 1'000'000;
#endif

const VqInt64 Min(INT64_MIN), Max(INT64_MAX);

const std::int64_t extremes[] = {
    // clang-format off
    INT64_MIN, INT64_MIN + 1, INT64_MIN / 2, -4294967297, -4294967296, -4294967295, -2147483649, -2147483648, -10, -3,
    -2, -1, 0, 1, 2, 3, 10, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 4294967296, 3037000500, INT64_MAX / 2, INT64_MAX - 1,
    INT64_MAX,
    // clang-format on
};

// Every width of up to 64 bits is as frequent as the others, and so are both signs.
std::int64_t Draw(std::mt19937_64& random) {
    const std::uint64_t bits = random() >> random() % 64;
    return static_cast<std::int64_t>(random() & 1 ? bits : 0 - bits);
}

// --- Construction

static_assert(std::is_trivially_copyable_v<VqInt64>);
static_assert(std::is_same_v<decltype(Min == Max), int> && std::is_same_v<decltype(Min < Max), int>);
static_assert(std::is_same_v<decltype(std::declval<VqInt64&>() += Max), VqInt64>, "a copy, not the value itself");
static_assert(std::is_same_v<decltype(++std::declval<VqInt64&>()), VqInt64>);

TEST(VqInt64, TakesNumbersOfEveryType) {
    const VqInt64 none, halves(0x80000000UL, 0L), negative(-1), most(0xFFFFFFFFU), mostLong(0xFFFFFFFFUL);
    EXPECT_TRUE(none.low == 0 && none.high == 0 && halves.low == 0x80000000 && halves.high == 0);
    EXPECT_TRUE(negative.low == 0xFFFFFFFF && negative.high == -1 && most.high == 0 && mostLong.high == 0);
    EXPECT_EQ(VqInt64(-2147483647L - 1).Value(), -2147483648LL);
    EXPECT_EQ(VqInt64(-4294967297LL).Value(), -4294967297LL);
    EXPECT_EQ(VqInt64(~0ULL).Value(), -1);
    if constexpr (sizeof(long) == 8) {
        EXPECT_EQ(VqInt64(static_cast<long>(-4294967298)).Value(), -4294967298);
        EXPECT_EQ(VqInt64(static_cast<unsigned long>(4294967298)).Value(), 4294967298);
        EXPECT_EQ(VqInt64(0xF00000001UL, static_cast<long>(0xF00000002)).Value(), 0x200000001) << "only low bits";
    }
    VqInt64 value;
    EXPECT_EQ((value = 7L).Value(), 7);
    EXPECT_EQ((value = 2.5).Value(), 2);
}

TEST(VqInt64, KeepsSevenDigitsOfDoubles) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (const double d : {0.999, -0.999, std::nan("")}) EXPECT_EQ(VqInt64(d), 0);
    for (const double d : {9223372036854775808.0, 1e30, Infinity}) {
        EXPECT_EQ(VqInt64(d), INT64_MAX);
        EXPECT_EQ(VqInt64(-d), -INT64_MAX);
    }
    EXPECT_EQ(VqInt64(9223372036854774784.0), 9223372000000000000);
    EXPECT_EQ(VqInt64(-123456789.0), -123456800);
    EXPECT_TRUE(VqInt64(1000000.5) == 1000000 && VqInt64(1000001.5) == 1000002) << "ties go to the even digit";

    std::mt19937_64 random(31);
    for (int i = 0; i < Rounds / 4; ++i) {
        // Magnitudes from 1/8 to 2^65, and whole numbers, which lie between two results more often.
        double d = std::ldexp(static_cast<double>(random() >> 11) + 0x1p53, static_cast<int>(random() % 68) - 56);
        if (random() & 1) d = static_cast<double>(Draw(random));
        if (random() & 1) d = -d;
        ASSERT_EQ(VqInt64(d), SlowInt64::FromDouble(d).Get()) << d;
    }
}

// --- Comparison and arithmetic

TEST(VqInt64, ComparesAsItsValue) {
    for (const std::int64_t a : extremes) {
        for (const std::int64_t b : extremes) {
            const VqInt64 x(a), y(b);
            SCOPED_TRACE(std::to_string(a) + " " + std::to_string(b));
            EXPECT_TRUE((x == y) == (a == b) && (x != y) == (a != b) && (x < y) == (a < b) && (x > y) == (a > b));
            EXPECT_TRUE((x <= y) == (a <= b) && (x >= y) == (a >= b));
            EXPECT_EQ(x > y, SlowInt64(x) > SlowInt64(y));
        }
    }
}

TEST(VqInt64, CompoundOperatorsChangeTheValueAndReturnACopy) {
    const struct {
        const char* what;
        VqInt64 (*apply)(VqInt64& value);
        std::int64_t expected;  // of 100
    } cases[] = {
        {"+=", [](VqInt64& x) { return x += 7; }, 107},   {"-=", [](VqInt64& x) { return x -= 7; }, 93},
        {"*=", [](VqInt64& x) { return x *= -7; }, -700}, {"/=", [](VqInt64& x) { return x /= 7; }, 14},
        {"%=", [](VqInt64& x) { return x %= 7; }, 2},     {"<<=", [](VqInt64& x) { return x <<= 3; }, 800},
        {">>=", [](VqInt64& x) { return x >>= 3; }, 12},  {"++", [](VqInt64& x) { return ++x; }, 101},
        {"--", [](VqInt64& x) { return --x; }, 99},       {"own", [](VqInt64& x) { return x *= x; }, 10000},
    };
    for (const auto& c : cases) {
        VqInt64 value(100);
        EXPECT_EQ(c.apply(value), c.expected) << c.what;
        EXPECT_EQ(value, c.expected) << c.what;
    }
}

TEST(VqInt64, ReportsDivisionByZeroAndGoesOn) {
    const std::string report = "0 && \"VqInt64 divide by zero\" src\\vqint64:737";
    for (const VqInt64 dividend : {VqInt64(0), VqInt64(5), VqInt64(-5), Max, Min}) {
        const AssertRecorder assertions;
        EXPECT_EQ(dividend / 0, 0);
        EXPECT_EQ(dividend % 0, dividend == Min ? -1 : 0);
        EXPECT_EQ(dividend % 0, SlowInt64(dividend).Division(SlowInt64(), true).Get());
        EXPECT_EQ(AssertRecorder::Lines(), std::vector<std::string>(3, report));
    }
}

void ExpectReferenceArithmetic(const VqInt64& a, const VqInt64& b) {
    SCOPED_TRACE(std::to_string(a.Value()) + " " + std::to_string(b.Value()));
    const SlowInt64 x(a), y(b);
    const auto shift = static_cast<unsigned>(b.low % 70);
    ASSERT_EQ(a + b, (x + y).Get());
    ASSERT_EQ(a - b, (x - y).Get());
    ASSERT_EQ(a * b, (x * y).Get());
    ASSERT_EQ(a & b, (x & y).Get());
    ASSERT_EQ(a | b, (x | y).Get());
    ASSERT_EQ(~a, (~x).Get());
    ASSERT_EQ(-a, (-x).Get());
    ASSERT_EQ(a.Abs(), x.Abs().Get());
    ASSERT_EQ(a << shift, (x << shift).Get());
    ASSERT_EQ(a >> shift, (x >> shift).Get());
    if (b == 0) return;
    ASSERT_EQ(a / b, x.Division(y, false).Get());
    ASSERT_EQ(a % b, x.Division(y, true).Get());
}

TEST(VqInt64, ArithmeticIsThatOfBitsAndHalves) {
    for (const std::int64_t a : extremes) {
        for (const std::int64_t b : extremes) ASSERT_NO_FATAL_FAILURE(ExpectReferenceArithmetic(a, b));
        EXPECT_EQ(VqInt64(a) << 64, 0);
        EXPECT_EQ(VqInt64(a) >> 0xFFFFFFFF, a < 0 ? -1 : 0);
    }
    // Some that do not lean on the slow way.
    EXPECT_TRUE(-Min == Min && Min.Abs() == Min && Max + 1 == Min && Min * 3 == Min && Max * 2 == -2);
    EXPECT_TRUE(Min / -1 == Min && Min % -1 == 0 && VqInt64(7) / -2 == -3 && VqInt64(-7) % 2 == -1);
    std::mt19937_64 random(32);
    for (int i = 0; i < Rounds; ++i) {
        ASSERT_NO_FATAL_FAILURE(ExpectReferenceArithmetic(Draw(random), Draw(random)));
    }
}

// --- Text

TEST(VqInt64, Prints) {
    const struct {
        std::int64_t value;
        const char *format, *text;
    } cases[] = {
        {-31, nullptr, "-31"},
        {-31, "%S %d %i %x %X %o", "-31 -31 -31 -0x1f -0X1F -037"},
        {INT64_MIN, "%S %x", "-9223372036854775808 0x8000000000000000"},
        {7, "%%d %5d %d%", "%%d %5d 7%"},
    };
    for (const auto& c : cases) {
        VqString out(">"), wide(253, 0);
        VqInt64(c.value).PrintToVqString(out, c.format);
        VqInt64(c.value).PrintToVqString(wide, c.format);
        EXPECT_EQ(Bytes(out), std::string(">") + c.text);
        wide.MapToCodeSet(1);
        EXPECT_EQ(">" + Bytes(wide), Bytes(out));
    }
}

TEST(VqInt64, TextIsThatOfDigitByDigit) {
    std::mt19937_64 random(33);
    for (int i = 0; i < Rounds / 10; ++i) {
        const VqInt64 value = Draw(random);
        VqString text;
        value.PrintToVqString(text, "%d%%x %o,%x|%X%S%");
        ASSERT_EQ(Bytes(text), SlowInt64(value).Print("%d%%x %o,%x|%X%S%"));
    }
    // Texts and formats from few characters, so that they often fit.
    const auto draw = [&random](const std::string& characters, std::size_t most) {
        std::string text;
        for (auto n = random() % (most + 1); n != 0; --n)
            text += characters[static_cast<std::size_t>(random()) % characters.size()];
        return text;
    };
    int read = 0;
    for (int i = 0; i < Rounds / 2; ++i) {
        const std::string text = random() % 4 == 0 ? draw("0123456789", 30) : draw("00179aFxX-+,%", 8);
        const std::string format = random() % 2 == 0 ? "%S" : draw("%%%SdioxX0,-", 6);
        VqInt64 value = 99;
        SlowInt64 expected(value);
        value.ScanFromVqString(VqString(text.c_str()), format.c_str());
        expected.Scan(text, format);
        ASSERT_EQ(value, expected.Get()) << "'" << text << "' under '" << format << "'";
        read += value != -1 && value != 99;
    }
    EXPECT_GT(read, Rounds / 40);
}

TEST(VqInt64, AppendsTextsLongerThanAnyBuffer) {
    std::string format, expected;
    for (int i = 0; i < 500; ++i) format += "%o;", expected += "01000000000000000000000;";
    VqString out(">");
    Min.PrintToVqString(out, format.c_str());
    EXPECT_EQ(Bytes(out), ">" + expected);
}

TEST(DecimalText, WritesAndReadsAsTheStandardLibrary) {
    std::mt19937_64 random(34);
    const auto check = [](std::uint64_t number) {
        char expected[32], text[vq::DecimalRoom];
        const std::string digits(expected, std::to_chars(expected, expected + sizeof expected, number).ptr);
        ASSERT_EQ(std::string(text, vq::WriteDecimal(text, number)), digits);
        // Nothing is read behind the end: the text fills its array.
        const std::vector<char> exact(digits.begin(), digits.end());
        std::uint64_t read = 0;
        ASSERT_TRUE(vq::ReadDecimal(exact.data(), exact.data() + exact.size(), read)) << digits;
        ASSERT_EQ(read, number);
    };
    for (std::uint64_t power = 1; power != 0; power = power > ~std::uint64_t{0} / 10 ? 0 : power * 10) {
        for (const std::uint64_t near : {power - 1, power, power + 1}) ASSERT_NO_FATAL_FAILURE(check(near));
    }
    ASSERT_NO_FATAL_FAILURE(check(~std::uint64_t{0}));
    for (int i = 0; i < Rounds; ++i) ASSERT_NO_FATAL_FAILURE(check(random() >> random() % 64));
}

TEST(DecimalText, RefusesEveryOtherCharacterAtEveryPlace) {
    for (std::size_t length = 1; length <= 25; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            for (int c = 0; c < 256; ++c) {
                std::string text(length, '7');
                text[place] = static_cast<char>(c);
                std::uint64_t number;
                EXPECT_EQ(vq::ReadDecimal(text.data(), text.data() + length, number), c >= '0' && c <= '9') << text;
            }
        }
    }
}

}  // namespace
