#include "cformat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

#include "numbertext.h"

namespace vq {
namespace {

// More than the longest string holds is never asked for, so that a format cannot exhaust memory.
constexpr int MaxCount = 65532;

// A double has no more digits than this behind its point.
constexpr int MaxFraction = 1074;

bool ReadFlag(char c, Conversion& conversion) {
    switch (c) {
        case '-':
            return conversion.left = true;
        case '+':
            return conversion.plus = true;
        case ' ':
            return conversion.space = true;
        case '#':
            return conversion.alternate = true;
        case '0':
            return conversion.zero = true;
        default:
            return false;
    }
}

int ReadCount(const char*& at) {
    int count = 0;
    for (; *at >= '0' && *at <= '9'; ++at) count = std::min(count * 10 + (*at - '0'), MaxCount);
    return count;
}

// The bits that a length modifier leaves.
unsigned ReadLength(const char*& at) {
    static constexpr struct {
        std::string_view modifier;
        unsigned bits;
    } lengths[] = {{"hh", 8}, {"h", 16}, {"ll", 32}, {"l", 32}, {"L", 32}, {"j", 32}, {"z", 32}, {"t", 32}};
    for (const auto& [modifier, bits] : lengths) {
        if (std::strncmp(at, modifier.data(), modifier.size()) != 0) continue;
        at += modifier.size();
        return bits;
    }
    return 32;
}

bool IsSigned(const Conversion& conversion) { return conversion.letter == 'd' || conversion.letter == 'i'; }

bool IsUpperLetter(char letter) { return letter >= 'A' && letter <= 'Z'; }

void ToUpper(std::string& text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
}

// The sign-extended low `width` bits.
std::int64_t SignExtend(std::uint32_t bits, unsigned width) {
    return static_cast<std::int32_t>(bits << (32 - width)) >> (32 - width);
}

std::uint32_t ZeroExtend(std::uint32_t bits, unsigned width) { return bits << (32 - width) >> (32 - width); }

const char* SignPrefix(const Conversion& conversion, bool negative) {
    return negative ? "-" : conversion.plus ? "+" : conversion.space ? " " : "";
}

// Appends a sign or base prefix and digits, filled up to the width.
void AppendPadded(std::string& out, const Conversion& conversion, std::string_view prefix, std::string_view digits,
                  bool mayZeroFill) {
    const std::size_t length = prefix.size() + digits.size();
    const std::size_t width = static_cast<std::size_t>(conversion.width);
    const std::size_t fill = width > length ? width - length : 0;
    const bool zeros = conversion.zero && mayZeroFill && !conversion.left;
    if (!conversion.left && !zeros) out.append(fill, ' ');
    out += prefix;
    if (zeros) out.append(fill, '0');
    out += digits;
    if (conversion.left) out.append(fill, ' ');
}

int BaseOf(char letter) { return letter == 'o' ? 8 : letter == 'x' || letter == 'X' ? 16 : 10; }

std::string IntegerDigits(const Conversion& conversion, std::uint32_t magnitude) {
    char text[16];
    char* const end = std::to_chars(text, text + sizeof text, magnitude, BaseOf(conversion.letter)).ptr;
    std::string digits(text, magnitude == 0 && conversion.precision == 0 ? text : end);
    if (conversion.precision > static_cast<int>(digits.size())) {
        digits.insert(0, static_cast<std::size_t>(conversion.precision) - digits.size(), '0');
    }
    if (conversion.letter == 'o' && conversion.alternate && (digits.empty() || digits[0] != '0'))
        digits.insert(0, 1, '0');
    if (conversion.letter == 'X') ToUpper(digits);
    return digits;
}

std::string ToChars(double magnitude, std::chars_format format, int precision) {
    std::string text(static_cast<std::size_t>(std::max(precision, 0)) + 330, '\0');
    char* const end = text.data() + text.size();
    const auto result = precision < 0 ? std::to_chars(text.data(), end, magnitude, format)
                                      : std::to_chars(text.data(), end, magnitude, format, precision);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

// A point behind the digits where they have none.
void EnsurePoint(std::string& digits) {
    if (digits.find('.') != std::string::npos) return;
    digits.insert(std::min(digits.find_first_of("ep"), digits.size()), 1, '.');
}

// Digits under f, e or a. Zeros that carry no information are filled in here rather than computed.
std::string DigitsWithPrecision(double magnitude, std::chars_format format, const Conversion& conversion,
                                int precision) {
    std::string digits = ToChars(magnitude, format, std::min(precision, MaxFraction));
    if (precision > MaxFraction) {
        const std::size_t tail = std::min(digits.find_first_of("ep"), digits.size());
        digits.insert(tail, static_cast<std::size_t>(precision - MaxFraction), '0');
    }
    if (conversion.alternate) EnsurePoint(digits);
    return digits;
}

// Under g with '#' the zeros at the end stay: the style is chosen by the exponent that scientific style would print.
std::string GeneralWithZeros(double magnitude, const Conversion& conversion, int significant) {
    const std::string scientific =
        DigitsWithPrecision(magnitude, std::chars_format::scientific, conversion, significant - 1);
    const std::size_t e = scientific.find('e');
    int exponent = 0;
    std::from_chars(scientific.data() + e + 1 + (scientific[e + 1] == '+'), scientific.data() + scientific.size(),
                    exponent);
    if (exponent < -4 || exponent >= significant) return scientific;
    return DigitsWithPrecision(magnitude, std::chars_format::fixed, conversion, significant - 1 - exponent);
}

std::string FloatingDigits(double magnitude, const Conversion& conversion) {
    const int precision = conversion.precision < 0 ? 6 : conversion.precision;
    switch (conversion.letter | 0x20) {
        case 'f':
            return DigitsWithPrecision(magnitude, std::chars_format::fixed, conversion, precision);
        case 'e':
            return DigitsWithPrecision(magnitude, std::chars_format::scientific, conversion, precision);
        case 'a':
            return DigitsWithPrecision(magnitude, std::chars_format::hex, conversion, conversion.precision);
        default:
            break;
    }
    const int significant = std::max(precision, 1);
    if (conversion.alternate) return GeneralWithZeros(magnitude, conversion, significant);
    return ToChars(magnitude, std::chars_format::general, std::min(significant, MaxFraction));
}

// The base of the digits, past their prefix: letter i takes it from the text, x allows 0x before it.
unsigned ReadBase(TextCursor& text, char letter) {
    if (letter != 'i' && BaseOf(letter) != 16) return static_cast<unsigned>(BaseOf(letter));
    TextCursor ahead = text;
    if (!ahead.SkipIf('0')) return letter == 'i' ? 10 : 16;
    if ((ahead.SkipIf('x') || ahead.SkipIf('X')) && DigitValue(ahead.Code()) < 16) {
        text = ahead;
        return 16;
    }
    return letter == 'i' ? 8 : 16;
}

bool SkipSign(TextCursor& text) {
    const bool negative = text.Code() == '-';
    if (negative || text.Code() == '+') text.Skip();
    return negative;
}

bool ScanCharacter(TextCursor& text, const Conversion& conversion, std::uint32_t& bits) {
    const unsigned first = text.Code();
    TextCursor at = text;
    for (int i = 0; i < std::max(conversion.width, 1); ++i) {
        if (at.Code() == 0) return false;
        at.Skip();
    }
    text = at;
    bits = first;
    return true;
}

// The number's value, or something above 32 bits when it is larger.
std::uint64_t ReadDigits(TextCursor& text, unsigned base) {
    std::uint64_t value = 0;
    for (unsigned digit; (digit = DigitValue(text.Code())) < base; text.Skip()) {
        value = std::min(value * base + digit, std::uint64_t{UINT32_MAX} + 1);
    }
    return value;
}

bool SkipDigits(TextCursor& text, unsigned base) {
    bool any = false;
    for (; DigitValue(text.Code()) < base; text.Skip()) any = true;
    return any;
}

bool SkipWord(TextCursor& text, const char* lowerCaseWord) {
    TextCursor at = text;
    for (; *lowerCaseWord != 0; ++lowerCaseWord, at.Skip()) {
        if ((at.Code() | 0x20) != static_cast<unsigned char>(*lowerCaseWord)) return false;
    }
    text = at;
    return true;
}

// An exponent belongs to the number only when it has digits.
void SkipExponent(TextCursor& text, char letter) {
    TextCursor at = text;
    if ((at.Code() | 0x20) != static_cast<unsigned char>(letter)) return;
    at.Skip();
    SkipSign(at);
    if (SkipDigits(at, 10)) text = at;
}

// Digits with or without a point, and an exponent.
bool SkipMantissa(TextCursor& text, unsigned base) {
    TextCursor at = text;
    bool digits = SkipDigits(at, base);
    if (at.SkipIf('.')) digits |= SkipDigits(at, base);
    if (!digits) return false;
    SkipExponent(at, base == 16 ? 'p' : 'e');
    text = at;
    return true;
}

// Moves behind the longest floating number without sign; false when there is none.
bool SkipFloating(TextCursor& text) {
    TextCursor hex = text;
    if (hex.SkipIf('0') && (hex.SkipIf('x') || hex.SkipIf('X')) && SkipMantissa(hex, 16)) {
        text = hex;
        return true;
    }
    return SkipWord(text, "infinity") || SkipWord(text, "inf") || SkipWord(text, "nan") || SkipMantissa(text, 10);
}

}  // namespace

const char* ParseConversion(const char* format, const char* letters, Conversion& conversion) {
    conversion = {};
    const char* at = format + 1;
    if (*at == '*') {
        conversion.suppressed = true;
        ++at;
    }
    while (ReadFlag(*at, conversion)) ++at;
    conversion.width = ReadCount(at);
    if (*at == '.') conversion.precision = ReadCount(++at);
    const char* const length = at;
    conversion.bits = ReadLength(at);
    conversion.letter = *at;
    const bool wide = at != length && (*at == 'c' || *at == 's');
    return *at != 0 && !wide && std::strchr(letters, *at) != nullptr ? at + 1 : nullptr;
}

void AppendInteger(std::string& out, const Conversion& conversion, std::uint32_t bits, unsigned width) {
    if (conversion.letter == 'c') {
        const char c = static_cast<char>(bits);
        AppendPadded(out, conversion, {}, {&c, c != 0 ? 1u : 0u}, false);
        return;
    }
    const unsigned left = std::min(width, conversion.bits);
    const std::int64_t value = IsSigned(conversion) ? SignExtend(bits, left) : std::int64_t{ZeroExtend(bits, left)};
    const std::string digits = IntegerDigits(conversion, static_cast<std::uint32_t>(value < 0 ? -value : value));
    const bool hexPrefix = BaseOf(conversion.letter) == 16 && conversion.alternate && value != 0;
    const char* const prefix = IsSigned(conversion)       ? SignPrefix(conversion, value < 0)
                               : !hexPrefix               ? ""
                               : conversion.letter == 'x' ? "0x"
                                                          : "0X";
    AppendPadded(out, conversion, prefix, digits, conversion.precision < 0);
}

void AppendFloating(std::string& out, const Conversion& conversion, double value) {
    const double magnitude = std::fabs(value);
    const bool finite = std::isfinite(value);
    std::string prefix = SignPrefix(conversion, std::signbit(value));
    std::string digits = finite ? FloatingDigits(magnitude, conversion) : std::isnan(value) ? "nan" : "inf";
    if (finite && (conversion.letter | 0x20) == 'a') prefix += "0x";
    if (IsUpperLetter(conversion.letter)) {
        ToUpper(prefix);
        ToUpper(digits);
    }
    AppendPadded(out, conversion, prefix, digits, finite);
}

bool ScanInteger(TextCursor& text, const Conversion& conversion, std::uint32_t& bits) {
    if (conversion.letter == 'c') return ScanCharacter(text, conversion, bits);
    text.SkipBlanks();
    TextCursor field = text.Field(conversion.width);
    const bool negative = SkipSign(field);
    const unsigned base = ReadBase(field, conversion.letter);
    if (DigitValue(field.Code()) >= base) return false;

    const std::uint64_t limit = IsSigned(conversion) ? std::uint64_t{INT32_MAX} + negative : std::uint64_t{UINT32_MAX};
    const std::uint64_t magnitude = ReadDigits(field, base);
    const bool negate = negative && (magnitude <= limit || IsSigned(conversion));
    const std::uint64_t saturated = std::min(magnitude, limit);
    const auto all = static_cast<std::uint32_t>(negate ? 0 - saturated : saturated);
    bits = IsSigned(conversion) ? static_cast<std::uint32_t>(SignExtend(all, conversion.bits))
                                : ZeroExtend(all, conversion.bits);
    text.MoveTo(field);
    return true;
}

bool ScanFloating(TextCursor& text, const Conversion& conversion, double& value) {
    text.SkipBlanks();
    TextCursor field = text.Field(conversion.width);
    const bool negative = SkipSign(field);
    const char* const start = field.At();
    if (!SkipFloating(field)) return false;
    const std::string number(start, field.At());
    const double magnitude = ParseDouble(number.c_str(), 1);
    value = negative ? -magnitude : magnitude;
    text.MoveTo(field);
    return true;
}

}  // namespace vq
