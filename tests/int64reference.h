// A 64-bit integer over two 32-bit halves, bit by bit and digit by digit: slow, and what the fast ways must agree with.
#ifndef VQ_INT64REFERENCE_H
#define VQ_INT64REFERENCE_H

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "vqint64.h"

namespace vqtest {

struct SlowInt64 {
    std::uint32_t low = 0;
    std::int32_t high = 0;

    SlowInt64() = default;
    SlowInt64(std::uint32_t l, std::int32_t h) : low(l), high(h) {}
    explicit SlowInt64(const VqInt64& value) : low(value.low), high(value.high) {}
    static SlowInt64 Of(std::uint32_t small) { return {small, 0}; }
    static SlowInt64 Min() { return {0, INT32_MIN}; }

    VqInt64 Get() const { return VqInt64(low, high); }

    // --- Comparison

    bool operator==(const SlowInt64& b) const { return low == b.low && high == b.high; }
    bool operator>(const SlowInt64& b) const { return high != b.high ? high > b.high : low > b.low; }
    bool operator<(const SlowInt64& b) const { return !(*this > b) && !(*this == b); }
    bool operator>=(const SlowInt64& b) const { return *this > b || *this == b; }

    // --- Arithmetic

    SlowInt64 operator~() const { return {~low, ~high}; }
    SlowInt64 operator+(const SlowInt64& b) const {
        std::uint32_t sumHigh = Unsigned(high) + Unsigned(b.high);
        const std::uint32_t sumLow = low + b.low;
        if (sumLow < b.low) ++sumHigh;
        return {sumLow, Signed(sumHigh)};
    }
    SlowInt64 operator-() const { return ~*this + Of(1); }
    SlowInt64 operator-(const SlowInt64& b) const { return *this + -b; }
    SlowInt64 operator&(const SlowInt64& b) const { return {low & b.low, high & b.high}; }
    SlowInt64 operator|(const SlowInt64& b) const { return {low | b.low, high | b.high}; }
    SlowInt64 operator<<(unsigned n) const {
        SlowInt64 x = *this;
        for (; n != 0; --n) x = {x.low * 2, Signed(Unsigned(x.high) * 2 + (x.low >> 31))};
        return x;
    }
    SlowInt64 operator>>(unsigned n) const {
        SlowInt64 x = *this;
        for (; n != 0; --n) x = {x.low >> 1 | Unsigned(x.high) << 31, x.high >> 1};
        return x;
    }
    SlowInt64 Abs() const { return *this > SlowInt64() ? *this : -*this; }

    bool IsNegative() const { return high < 0; }
    bool IsOdd() const { return (low & 1) != 0; }
    bool IsZero() const { return low == 0 && high == 0; }

    SlowInt64 operator*(const SlowInt64& b) const {
        if (*this == Min()) return b.IsOdd() ? Min() : SlowInt64();
        if (b == Min()) return IsOdd() ? Min() : SlowInt64();
        const SlowInt64 m = b.IsNegative() ? -b : b;
        SlowInt64 result;
        for (SlowInt64 mask = Of(1) << 62; !mask.IsZero(); mask = mask >> 1) {
            result = result << 1;
            if ((m & mask).IsZero()) continue;
            for (SlowInt64 t = Of(1); !t.IsZero(); t = t << 1) result = result + (*this & t);
        }
        return b.IsNegative() ? -result : result;
    }

    // A divisor of 0 is not reported here.
    SlowInt64 Division(SlowInt64 b, bool wantRemainder) const {
        const bool negative = wantRemainder ? IsNegative() : (high ^ b.high) < 0;
        SlowInt64 a = IsNegative() ? -*this : *this;
        const bool correct = a.IsNegative();
        if (correct) a = ~Min();
        if (b.IsNegative()) b = -b;
        SlowInt64 quotient, remainder;
        if (b.IsNegative()) {
            remainder = a;
        } else if (!b.IsZero()) {
            for (SlowInt64 mask = Of(1) << 62; !mask.IsZero() && remainder < b; mask = mask >> 1) {
                remainder = remainder << 1;
                quotient = quotient << 1;
                if (!(a & mask).IsZero()) remainder = remainder + Of(1);
                if (remainder >= b) {
                    remainder = remainder - b;
                    quotient = quotient + Of(1);
                }
            }
        }
        if (correct) {
            remainder = remainder + Of(1);
            if (remainder == b) {
                remainder = SlowInt64();
                quotient = quotient + Of(1);
            }
        }
        const SlowInt64 result = wantRemainder ? remainder : quotient;
        return negative ? -result : result;
    }

    // --- From a floating number

    static SlowInt64 FromDouble(double d) {
        const bool negative = d < 0;
        const double magnitude = negative ? -d : d;
        SlowInt64 value;
        if (magnitude > 9223372036854774784.0) {
            value = ~Min();
        } else if (magnitude >= 1.0) {
            char text[64];  // "1.234568E+07"
            std::snprintf(text, sizeof text, "%E", magnitude);
            for (int i = 0; i <= std::atoi(text + 9); ++i) {
                const char digit = i < 7 ? text[i == 0 ? 0 : i + 1] : '0';
                value = value * Of(10) + Of(static_cast<std::uint32_t>(digit - '0'));
            }
        }
        return negative ? value * -Of(1) : value;
    }

    // --- Text

    std::string Print(const std::string& format) const {
        std::string out;
        for (std::size_t i = 0; i < format.size(); ++i) {
            if (format[i] == '%' && i + 1 < format.size() && IsLetter(format[i + 1])) {
                out += PrintOne(format[++i]);
            } else {
                out += format[i];
                if (format[i] == '%' && i + 1 < format.size()) out += format[++i];
            }
        }
        return out;
    }

    // Changes this value as ScanFromVqString does.
    void Scan(const std::string& text, const std::string& format) {
        std::size_t at = 0;
        bool good = true;
        for (std::size_t f = 0; good && f < format.size() && at < text.size(); ++f) {
            if (format[f] == '%' && f + 1 < format.size() && IsLetter(format[f + 1])) {
                const char letter = format[++f];
                good = ScanOne(text, at, letter, f + 1 < format.size() ? format[f + 1] : '\0');
            } else {
                good = text[at++] == format[f];
            }
        }
        if (!good) *this = -Of(1);
    }

  private:
    static std::uint32_t Unsigned(std::int32_t word) { return static_cast<std::uint32_t>(word); }
    static std::int32_t Signed(std::uint32_t word) { return static_cast<std::int32_t>(word); }
    static bool IsLetter(char c) { return std::string("SdioxX").find(c) != std::string::npos; }

    std::string PrintOne(char letter) const {
        const std::uint32_t base = letter == 'o' ? 8 : letter == 'x' || letter == 'X' ? 16 : 10;
        const std::string prefix = base == 10 ? "" : base == 8 ? "0" : std::string("0") + letter;
        if (*this == Min()) {
            return base == 10  ? "-9223372036854775808"
                   : base == 8 ? prefix + "1000000000000000000000"
                               : prefix + "8000000000000000";
        }
        const char* const digits = letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
        std::string text;
        SlowInt64 x = IsNegative() ? -*this : *this;
        do {
            text += digits[x.Division(Of(base), true).low];
            x = x.Division(Of(base), false);
        } while (!x.IsZero());
        std::reverse(text.begin(), text.end());
        return (IsNegative() ? "-" : "") + prefix + text;
    }

    bool ScanOne(const std::string& text, std::size_t& at, char letter, char terminator) {
        const auto peek = [&](std::size_t ahead) { return at + ahead < text.size() ? text[at + ahead] : '\0'; };
        const bool negative = peek(0) == '-';
        if (negative || peek(0) == '+') ++at;
        std::uint32_t base = 10;
        if (peek(0) == '0') base = peek(1) == 'x' || peek(1) == 'X' ? 16 : 8;
        if (base == 16) at += 2;
        if ((letter == 'o' && base != 8) || ((letter == 'x' || letter == 'X') && base != 16)) return false;
        if ((letter == 'd' || letter == 'i') && base != 10) return false;
        SlowInt64 value;
        for (; at < text.size() && text[at] != terminator; ++at) {
            const auto digit = std::string("0123456789abcdef")
                                   .find(static_cast<char>(std::tolower(static_cast<unsigned char>(text[at]))));
            if (digit >= base) return false;
            value = value * Of(base) + Of(static_cast<std::uint32_t>(digit));
        }
        *this = negative ? -value : value;
        return peek(0) == terminator;
    }
};

}  // namespace vqtest

#endif
