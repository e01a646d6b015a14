#include "numbertext.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <string_view>

#include "textunit.h"

namespace vq {
namespace {

constexpr bool IsBlank(unsigned short c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The digit's value in bases up to 16, or 16 when it is none.
constexpr unsigned DigitValue(unsigned c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

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
    bool AtHexPrefix() const { return (*this)[0] == '0' && ((*this)[1] | 0x20) == 'x'; }

  private:
    const char* at_;
    const char* end_;  // null where a zero character ends the text
    unsigned charSize_;
};

// The leading run of characters that a floating number can be made of.
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

// The value of the number at the start of `run`; 0 when there is none.
double ParseDecimal(const std::string& run) {
    double value = 0;
    const auto [end, error] = std::from_chars(run.data(), run.data() + run.size(), value);
    if (error != std::errc::result_out_of_range) return value;
    const std::string_view number(run.data(), static_cast<std::size_t>(end - run.data()));
    return IsHuge(number) ? std::numeric_limits<double>::infinity() : 0.0;
}

// The same for the digits behind 0x.
double ParseHex(const std::string& digits) {
    double value = 0;
    if (digits.empty() || (DigitValue(static_cast<unsigned char>(digits[0])) == 16 && digits[0] != '.')) return 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::hex);
    if (error != std::errc::result_out_of_range) return value;
    const std::size_t p = digits.find_first_of("pP");
    return p != std::string::npos && digits[p + 1] == '-' ? 0.0 : std::numeric_limits<double>::infinity();
}

// True when the run begins with a number, so that a sign before it counts.
bool BeginsNumber(const std::string& run) {
    double value = 0;
    return std::from_chars(run.data(), run.data() + run.size(), value).ec != std::errc::invalid_argument;
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
    const std::string run = NarrowRun(in);
    if (run.empty() || run[0] == '-' || run[0] == '+' || !BeginsNumber(run)) return 0;
    const double value = hex ? ParseHex(run.substr(2)) : ParseDecimal(run);
    return negative ? -value : value;
}

}  // namespace vq
