#include "numbertext.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "textunit.h"

namespace vq {
namespace {

constexpr bool IsBlank(unsigned short c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// A forward reader over either character size.
class Reader {
  public:
    Reader(const char* text, unsigned charSize, const char* end) : at_(text), end_(end), charSize_(charSize) {}

    // Zero behind the end.
    unsigned short operator[](unsigned ahead) const {
        if (end_ != nullptr && static_cast<std::size_t>(end_ - at_) <= ahead * charSize_) return 0;
        return LoadChar(at_ + ahead * charSize_, charSize_);
    }
    void Skip(unsigned n) { at_ += n * charSize_; }
    void SkipBlanks() {
        while (IsBlank((*this)[0])) Skip(1);
    }
    // Skips a sign; true for minus.
    bool SkipSign() {
        const unsigned short c = (*this)[0];
        if (c == '+' || c == '-') Skip(1);
        return c == '-';
    }
    // What is left of 1-byte text.
    std::string_view Bytes() const {
        return {at_, end_ != nullptr ? static_cast<std::size_t>(end_ - at_) : std::strlen(at_)};
    }
    bool AtHexPrefix() const { return (*this)[0] == '0' && ((*this)[1] | 0x20) == 'x'; }

  private:
    const char* at_;
    const char* end_;  // null where a zero character ends the text
    unsigned charSize_;
};

// Copies the leading run of characters that a floating number can be made of.
std::string NarrowRun(Reader& in) {
    std::string run;
    for (unsigned short c; (c = in[0]) != 0 && c < 128; in.Skip(1)) {
        const bool possible = (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') || c == '.' ||
                              c == '+' || c == '-' || c == '(' || c == ')' || c == '_';
        if (!possible) break;
        run += static_cast<char>(c);
    }
    return run;
}

// True when the decimal number, which a double cannot hold, is too large rather than too small: its first significant
// digit stands, exponent counted, before the point.
bool IsHuge(std::string_view digits) {
    const std::size_t e = digits.find_first_of("eE");
    const std::string_view mantissa = digits.substr(0, e);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    const long long magnitude = static_cast<long long>(point) - static_cast<long long>(first);
    if (e == std::string_view::npos) return magnitude > 0;
    long long exponent = 0;
    const std::size_t start = e + 1 + (digits[e + 1] == '+');
    const auto [end, error] = std::from_chars(digits.data() + start, digits.data() + digits.size(), exponent);
    if (error != std::errc()) return digits[start] != '-';
    return magnitude + exponent > 0;
}

// The number at the start of the characters, which a sign does not precede; false when there is none.
bool ParseDecimal(std::string_view text, double& value) {
    if (text.starts_with('-')) return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        const bool huge = IsHuge(text.substr(0, static_cast<std::size_t>(end - text.data())));
        value = huge ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return error != std::errc::invalid_argument;
}

// The same for the digits behind 0x; without any the 0 is the number.
double ParseHex(std::string_view digits) {
    double value = 0;
    if (digits.empty() || (DigitValue(static_cast<unsigned char>(digits[0])) == NoDigit && digits[0] != '.')) return 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::hex);
    if (error != std::errc::result_out_of_range) return value;
    digits = digits.substr(0, static_cast<std::size_t>(end - digits.data()));
    const std::size_t p = digits.find_first_of("pP");
    return p != std::string_view::npos && digits[p + 1] == '-' ? 0.0 : std::numeric_limits<double>::infinity();
}

}  // namespace

std::int32_t ParseLong(const char* text, unsigned charSize, int base, const char* end) {
    Reader in(text, charSize, end);
    in.SkipBlanks();
    const bool negative = in.SkipSign();
    if (base == 0) {
        base = 10;
        if (in[0] == '0') base = in.AtHexPrefix() && DigitValue(in[2]) < 16 ? 16 : 8;
        if (base == 16) in.Skip(2);
    }
    const std::int64_t limit = negative ? -std::int64_t{std::numeric_limits<std::int32_t>::min()}
                                        : std::int64_t{std::numeric_limits<std::int32_t>::max()};
    std::int64_t value = 0;
    for (unsigned digit; (digit = DigitValue(in[0])) < static_cast<unsigned>(base); in.Skip(1)) {
        value = std::min(value * base + static_cast<std::int64_t>(digit), limit);
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

double ParseDouble(const char* text, unsigned charSize, const char* end) {
    Reader in(text, charSize, end);
    in.SkipBlanks();
    const bool negative = in.SkipSign();
    const bool hex = in.AtHexPrefix();
    const std::string narrowed = charSize != 1 ? NarrowRun(in) : std::string();
    const std::string_view number = charSize != 1 ? narrowed : in.Bytes();
    double value = 0;
    if (hex) {
        value = ParseHex(number.substr(2));
    } else if (!ParseDecimal(number, value)) {
        return 0;
    }
    return negative ? -value : value;
}

}  // namespace vq
