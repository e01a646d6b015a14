#include "vqint64.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

#include "decimaltext.h"
#include "textform.h"
#include "textunit.h"
#include "vqbase.h"
#include "vqlanguagecontext.h"
#include "vqstring.h"

namespace {

constexpr std::int64_t Least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t Greatest = std::numeric_limits<std::int64_t>::max();

// --- Numbers from floating ones

constexpr int FractionDigits = 6;  // of "%E", behind the point

// The digits of "d.dddddde+xx" before the point that the exponent stands for, for a number from 1 up to 2^63.
std::int64_t LeadingDigits(double number) {
    char text[32];
    const char* const end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::scientific, FractionDigits).ptr;
    int exponent = 0;
    std::from_chars(end - 2, end, exponent);
    std::int64_t value = text[0] - '0';
    for (int i = 0; i < exponent; ++i) value = value * 10 + (i < FractionDigits ? text[2 + i] - '0' : 0);
    return value;
}

std::int64_t FromDouble(double number) {
    constexpr double Above = 9223372036854775808.0;  // 2^63; the double before it still fits
    const double magnitude = std::fabs(number);
    if (!(magnitude >= 1)) return 0;
    const std::int64_t value = magnitude >= Above ? Greatest : LeadingDigits(magnitude);
    return number < 0 ? -value : value;
}

// --- Conversions of a format

// The base that a conversion letter stands for, 0 for a letter that is none. S stands for decimal in print.
unsigned BaseOf(char letter) {
    switch (letter) {
        case 'S':
        case 'd':
        case 'i':
            return 10;
        case 'o':
            return 8;
        case 'x':
        case 'X':
            return 16;
        default:
            return 0;
    }
}

bool BeginsConversion(const char* format) { return *format == '%' && BaseOf(format[1]) != 0; }

// The format of nearly all numbers: one decimal conversion.
bool IsDecimal(const char* format) {
    return *format == '%' && (format[1] == 'S' || format[1] == 'd' || format[1] == 'i') && format[2] == 0;
}

// --- Text of a number

// Digits of `width` bits each, without leading zeros.
char* WriteBits(char* out, std::uint64_t bits, int width, const char* digits) {
    const int count = (static_cast<int>(std::bit_width(bits | 1)) + width - 1) / width;
    for (int i = count; i != 0; bits >>= width) out[--i] = digits[bits & ((1U << width) - 1)];
    return out + count;
}

char* WriteNumber(char* out, std::int64_t value, char letter) {
    if (BaseOf(letter) == 10) return vq::WriteSignedDecimal(out, value);
    const bool negative = value < 0 && value != Least;
    if (negative) *out++ = '-';
    *out++ = '0';
    const auto bits = static_cast<std::uint64_t>(negative ? -value : value);
    if (letter == 'o') return WriteBits(out, bits, 3, "01234567");
    *out++ = letter;
    return WriteBits(out, bits, 4, letter == 'x' ? "0123456789abcdef" : "0123456789ABCDEF");
}

// Room for the text under a format: each two characters may be a conversion, the longest of which gives 23.
std::size_t RoomFor(const char* format) { return 12 * std::strlen(format) + vq::DecimalRoom; }

char* WriteUnder(char* out, std::int64_t value, const char* format) {
    for (; *format != 0; ++format) {
        if (BeginsConversion(format)) {
            out = WriteNumber(out, value, *++format);
        } else {
            if (*format == '%' && format[1] != 0) *out++ = *format++;
            *out++ = *format;
        }
    }
    return out;
}

void Append(VqString& out, const char* text, const char* end) {
    const auto length = std::min<std::size_t>(static_cast<std::size_t>(end - text), VqString::MaxSize);
    out.AppendChars(text, VqLanguageContext::GetDefault8CodeSet(), static_cast<unsigned short>(length));
}

// Apart from the decimal way, which does without all this.
[[gnu::noinline]] void AppendUnder(VqString& out, std::int64_t value, const char* format) {
    char stack[256];
    const std::size_t room = RoomFor(format);
    const std::unique_ptr<char[]> heap(room > sizeof stack ? new char[room] : nullptr);
    char* const text = heap != nullptr ? heap.get() : stack;
    Append(out, text, WriteUnder(text, value, format));
}

// --- Number of a text

// Takes the prefix that says hexadecimal; the 0 that says octal is a digit too.
unsigned TakeBase(const char*& text) {
    if (text[0] != '0') return 10;
    if (text[1] != 'x' && text[1] != 'X') return 8;
    text += 2;
    return 16;
}

bool ReadDigits(const char* at, const char* end, unsigned base, std::uint64_t& bits) {
    if (base == 10) return vq::ReadDecimal(at, end, bits);
    bits = 0;
    for (; at != end; ++at) {
        const unsigned digit = vq::DigitValue(static_cast<unsigned char>(*at));
        if (digit >= base) return false;
        bits = bits * base + digit;
    }
    return true;
}

// Reads one conversion up to the terminator, which is the text's end for 0; false when the text is none.
bool TakeNumber(const char*& text, char letter, char terminator, std::int64_t& value) {
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    const unsigned base = TakeBase(text);
    if (letter != 'S' && base != BaseOf(letter)) return false;
    const char* const end = std::strchr(text, terminator);
    std::uint64_t bits;
    if (end == nullptr || !ReadDigits(text, end, base, bits)) return false;
    value = static_cast<std::int64_t>(negative ? 0 - bits : bits);
    text = end;
    return true;
}

bool ScanText(const char* text, const char* format, std::int64_t& value) {
    for (; *format != 0 && *text != 0; ++format) {
        if (BeginsConversion(format)) {
            ++format;
            if (!TakeNumber(text, *format, format[1], value)) return false;
        } else if (*text++ != *format) {
            return false;
        }
    }
    return true;
}

}  // namespace

// --- Construction and division

VqInt64::VqInt64(double value) : VqInt64(FromDouble(value)) {}

VqInt64 VqInt64::DivideByZero(int wantRemainder) const {
    VIQA_assert("0 && \"VqInt64 divide by zero\"", "src\\vqint64", 737);
    return wantRemainder != 0 && Value() == Least ? -1 : 0;
}

// --- Text

void VqInt64::PrintToVqString(VqString& out, const char* format) const {
    if (format != nullptr && !IsDecimal(format)) return AppendUnder(out, Value(), format);
    char text[vq::DecimalRoom];
    Append(out, text, vq::WriteSignedDecimal(text, Value()));
}

void VqInt64::ScanFromVqString(const VqString& text, const char* format) {
    const vq::SingleByteText single(text);
    std::int64_t value = Value();
    if (!ScanText(single.Get(), format != nullptr ? format : "%S", value)) value = -1;
    *this = value;
}

// --- Disk form: the halves are longs, in the order in which they lie in memory

unsigned long Int64Store(void* dst, const void* src, unsigned char format, unsigned long count) {
    return LongStore(dst, src, format, 2 * count);
}
unsigned long Int64Load(void* dst, const void* src, unsigned char format, unsigned long count) {
    return LongStore(dst, src, format, 2 * count);
}
unsigned long Int64NullSizeGet(unsigned long count) { return LongNullSizeGet(2 * count); }
unsigned long Int64SizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    return LongSizeGet(data, dataFormat, format, 2 * count);
}
unsigned long Int64SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return LongSizeGetFromMemFile(file, format, 2 * count);
}
