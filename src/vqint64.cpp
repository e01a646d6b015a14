#include "vqint64.h"

#include <charconv>
#include <string>

#include "textform.h"
#include "vqbase.h"
#include "vqstring.h"

namespace {

std::uint64_t Bits(const VqInt64& value) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(value.high)) << 32 | value.low;
}

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

void AppendNumber(std::string& out, std::uint64_t bits, char letter) {
    constexpr std::uint64_t Sign = std::uint64_t{1} << 63;
    const unsigned base = BaseOf(letter);
    const bool negative = (bits & Sign) != 0;
    if (negative && (bits != Sign || base == 10)) out += '-';
    if (base != 10) out += '0';
    if (base == 16) out += letter;
    char digits[22];  // the octal ones of 2^63
    char* const end =
        std::to_chars(digits, digits + sizeof digits, negative ? 0 - bits : bits, static_cast<int>(base)).ptr;
    for (char* at = digits; letter == 'X' && at != end; ++at) *at = *at >= 'a' ? static_cast<char>(*at - 32) : *at;
    out.append(digits, end);
}

// Takes the prefix that says hexadecimal; the 0 that says octal is a digit too.
unsigned TakeBase(const char*& text) {
    if (text[0] != '0') return 10;
    if (text[1] != 'x' && text[1] != 'X') return 8;
    text += 2;
    return 16;
}

unsigned DigitOf(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A') + 10;
    return 99;
}

// Reads one conversion up to the end of the text or the terminator; false when the text is none.
bool TakeNumber(const char*& text, char letter, char terminator, std::uint64_t& bits) {
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    const unsigned base = TakeBase(text);
    if (letter != 'S' && base != BaseOf(letter)) return false;
    bits = 0;
    for (; *text != 0 && *text != terminator; ++text) {
        const unsigned digit = DigitOf(*text);
        if (digit >= base) return false;
        bits = bits * base + digit;
    }
    if (negative) bits = 0 - bits;
    return *text == terminator;
}

bool ScanText(const char* text, const char* format, std::uint64_t& bits) {
    for (; *format != 0 && *text != 0; ++format) {
        if (*format == '%' && BaseOf(format[1]) != 0) {
            ++format;
            if (!TakeNumber(text, *format, format[1], bits)) return false;
        } else if (*text++ != *format) {
            return false;
        }
    }
    return true;
}

}  // namespace

// --- Text

void VqInt64::PrintToVqString(VqString& out, const char* format) const {
    std::string text;
    for (const char* at = format != nullptr ? format : "%S"; *at != 0; ++at) {
        if (*at == '%' && BaseOf(at[1]) != 0) {
            AppendNumber(text, Bits(*this), *++at);
        } else {
            if (*at == '%' && at[1] != 0) text += *at++;
            text += *at;
        }
    }
    out << text.c_str();
}

void VqInt64::ScanFromVqString(const VqString& text, const char* format) {
    const vq::SingleByteText single(text);
    std::uint64_t bits = Bits(*this);
    if (!ScanText(single.Get(), format != nullptr ? format : "%S", bits)) bits = ~std::uint64_t{0};
    low = static_cast<std::uint32_t>(bits);
    high = static_cast<std::int32_t>(static_cast<std::uint32_t>(bits >> 32));
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
