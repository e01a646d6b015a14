/// \file
/// VqInt64: a signed 64-bit integer in two halves.
///
/// The value is high * 2^32 + low. The halves never change places: in memory and on disk the low one comes first.
///
///     1     low 1             high 0
///     -1    low 4294967295    high -1
///
/// Arithmetic is that of two's complement: every result is taken modulo 2^64, and no overflow is reported. The least
/// value, MIN, is its own negative.
///
///     MAX + 1 == MIN        -MIN == MIN        MIN / -1 == MIN        MIN * 3 == MIN
#ifndef VQINT64_H
#define VQINT64_H

#include <bit>
#include <cstdint>
#include <cstring>

#include "vqdefs.h"

class MemFile;
class VqString;

/// The integer. Copies are plain copies of both halves; values of any built-in number type can be assigned.
class VQTM_API VqInt64 {
  public:
    // --- Construction

    /// Zero.
    VqInt64() : low(0), high(0) {}
    /// An integer of any width keeps its value; one without sign of 64 bits keeps its bits. A `long` has 32 bits on
    /// some targets and 64 on others, where it may be std::int64_t, and `unsigned long` std::uint64_t: only with values
    /// of 32 bits does it give the same everywhere.
    /// @{
    VqInt64(int value) { SetBits(static_cast<std::uint64_t>(value)); }
    VqInt64(long value) { SetBits(static_cast<std::uint64_t>(value)); }
    VqInt64(long long value) { SetBits(static_cast<std::uint64_t>(value)); }
    VqInt64(unsigned int value) { SetBits(value); }
    VqInt64(unsigned long value) { SetBits(value); }
    VqInt64(unsigned long long value) { SetBits(value); }
    /// @}

    /// The two halves as given: the low 32 bits of each.
    VqInt64(unsigned long low, long high)
        : low(static_cast<std::uint32_t>(low)), high(static_cast<std::int32_t>(high)) {}
    /// The first seven significant digits of the number, rounded as "%E" rounds them, with zeros behind them and
    /// without its fraction. Beyond the range of the type MAX, or -MAX below it; what is no number gives 0.
    ///
    ///     12345678.9    12345680         1e19     9223372036854775807
    ///     -2.5          -2               -1e19    -9223372036854775807
    VqInt64(double value);

    /// The value as a native integer.
    std::int64_t Value() const { return static_cast<std::int64_t>(Bits()); }

    // --- Comparison

    /// Compares the numbers: 1 or 0.
    /// @{
    int operator==(const VqInt64& other) const { return Bits() == other.Bits(); }
    int operator!=(const VqInt64& other) const { return Bits() != other.Bits(); }
    int operator<(const VqInt64& other) const { return Value() < other.Value(); }
    int operator>(const VqInt64& other) const { return Value() > other.Value(); }
    int operator<=(const VqInt64& other) const { return Value() <= other.Value(); }
    int operator>=(const VqInt64& other) const { return Value() >= other.Value(); }
    /// @}

    // --- Arithmetic

    /// The result modulo 2^64.
    /// @{
    VqInt64 operator-() const { return 0 - Bits(); }
    VqInt64 operator+(const VqInt64& other) const { return Bits() + other.Bits(); }
    VqInt64 operator-(const VqInt64& other) const { return Bits() - other.Bits(); }
    VqInt64 operator*(const VqInt64& other) const { return Bits() * other.Bits(); }
    /// @}

    /// Division for the quotient.
    VqInt64 operator/(const VqInt64& other) const { return Division(other, 0); }
    /// Division for the remainder.
    VqInt64 operator%(const VqInt64& other) const { return Division(other, 1); }
    /// Bit by bit, on the number's two's complement.
    /// @{
    VqInt64 operator~() const { return ~Bits(); }
    VqInt64 operator|(const VqInt64& other) const { return Bits() | other.Bits(); }
    VqInt64 operator&(const VqInt64& other) const { return Bits() & other.Bits(); }
    /// @}

    /// Shifts zeros in; 0 from 64 bits on.
    VqInt64 operator<<(unsigned int bits) const { return bits < 64 ? Bits() << bits : 0; }
    /// Shifts the sign in; 0 or -1 from 64 bits on.
    VqInt64 operator>>(unsigned int bits) const { return Value() >> (bits < 64 ? bits : 63); }

    /// The absolute value; that of MIN is MIN, which is its own negative.
    VqInt64 Abs() const { return Value() > 0 ? *this : -*this; }

    /// The quotient rounded toward zero when `wantRemainder` is 0, else the remainder, which has the dividend's sign.
    ///
    ///     7 / -2 == -3    -7 % 2 == -1    MIN / MIN == 1    MIN % -1 == 0
    ///
    /// A divisor of 0 is reported through VIQA_assert; if that returns, the result is 0, but -1 for MIN % 0.
    VqInt64 Division(const VqInt64& divisor, int wantRemainder) const {
        const std::int64_t b = divisor.Value();
        if (b == 0) [[unlikely]]
            return DivideByZero(wantRemainder);
        if (b == -1) [[unlikely]]
            return wantRemainder != 0 ? VqInt64() : -*this;  // MIN / -1 has no native quotient
        return wantRemainder != 0 ? Value() % b : Value() / b;
    }

    /// Changes this value to what the operator of the same name gives, ++ and -- by 1, and returns a copy of it.
    /// @{
    VqInt64 operator+=(const VqInt64& other) { return *this = *this + other; }
    VqInt64 operator-=(const VqInt64& other) { return *this = *this - other; }
    VqInt64 operator*=(const VqInt64& other) { return *this = *this * other; }
    VqInt64 operator/=(const VqInt64& other) { return *this = *this / other; }
    VqInt64 operator%=(const VqInt64& other) { return *this = *this % other; }
    VqInt64 operator<<=(unsigned int bits) { return *this = *this << bits; }
    VqInt64 operator>>=(unsigned int bits) { return *this = *this >> bits; }
    VqInt64 operator++() { return *this = *this + 1; }
    VqInt64 operator--() { return *this = *this - 1; }
    /// @}

    // --- Text

    /// Appends the value's text to `out` under `format` ("%S" for null): text with conversions that each insert the
    /// value, without widths. A '%' before any other character is ordinary text, and so is that character.
    ///
    ///     S d i    decimal            -31
    ///     o        octal              -037
    ///     x X      hexadecimal        -0x1f  -0X1F
    ///
    /// MIN has no sign in octal and hexadecimal: 0x8000000000000000.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;

    /// Reads the value from `text` under `format` ("%S" for null). The text says its base: 0x is hexadecimal, another
    /// leading 0 octal, 0 alone as well. S takes any base, o x X d i only their own. A conversion ends at the text's
    /// end, or at the character that follows it in the format. Digits beyond 64 bits wrap. A text that does not match
    /// gives -1; an empty one leaves the value.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::uint32_t low;  ///< bits 0 to 31
    std::int32_t high;  ///< bits 32 to 63; its top bit is the sign

  private:
    static constexpr bool LowComesFirst = std::endian::native == std::endian::little;

    // Both halves at once where they lie as in a native integer: compilers then keep values in one register.
    std::uint64_t Bits() const {
        if constexpr (LowComesFirst) {
            std::uint64_t bits;
            std::memcpy(&bits, this, sizeof bits);
            return bits;
        } else {
            return std::uint64_t{static_cast<std::uint32_t>(high)} << 32 | low;
        }
    }
    void SetBits(std::uint64_t bits) {
        if constexpr (LowComesFirst) {
            std::memcpy(static_cast<void*>(this), &bits, sizeof bits);
        } else {
            low = static_cast<std::uint32_t>(bits);
            high = static_cast<std::int32_t>(static_cast<std::uint32_t>(bits >> 32));
        }
    }

    VqInt64 DivideByZero(int wantRemainder) const;
};

static_assert(sizeof(VqInt64) == 8);

// --- Rows of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form, 8 bytes of each: the low half, then the high half, each as a long in the
/// format's byte order. Addresses need no alignment. Returns the bytes written.
VQTM_API unsigned long Int64Store(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long Int64Load(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values: 8 each. Nothing is looked at; data and file may be null.
/// @{
VQTM_API unsigned long Int64NullSizeGet(unsigned long count);
VQTM_API unsigned long Int64SizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                    unsigned long count);
VQTM_API unsigned long Int64SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
