// Conversions of C formats: reading them, printing numbers under them, scanning numbers under them.
#ifndef VQ_CFORMAT_H
#define VQ_CFORMAT_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "textunit.h"
#include "vqstring.h"

namespace vq {

// One conversion %[flags][width][.precision][length]letter.
struct Conversion {
    bool left = false;        // -
    bool plus = false;        // +
    bool space = false;       // blank
    bool alternate = false;   // #
    bool zero = false;        // 0
    bool suppressed = false;  // *: read without storing
    int width = 0;            // characters, 0: none given
    int precision = -1;       // -1: none given
    unsigned bits = 32;       // what the length leaves of an integer
    char letter = 0;
};

constexpr const char* IntegerLetters = "diouxXc";
constexpr const char* FloatingLetters = "fFeEgGaA";
constexpr const char* StringLetters = "s";

// Reads the conversion that starts with the '%' at `format` and returns where it ends; null when it is none of
// `letters`.
const char* ParseConversion(const char* format, const char* letters, Conversion& conversion);

// True when a text of `length` characters is more than any string holds: what comes behind is lost whatever it is.
constexpr bool IsTooLong(std::size_t length) { return length >= VqString::MaxSize; }

// Copies `format` to `text`; where a conversion stands, calls print(conversion). Stops when the text is too long.
template <class Text, class Print>
void ExpandFormat(const char* format, const char* letters, Text& text, Print print) {
    while (*format != 0 && !IsTooLong(text.size())) {
        Conversion conversion;
        const char* const next = *format == '%' ? ParseConversion(format, letters, conversion) : nullptr;
        if (next != nullptr && !conversion.suppressed) {
            print(conversion);
            format = next;
        } else {
            text += *format;
            format += format[0] == '%' && format[1] == '%' ? 2 : 1;
        }
    }
}

constexpr bool IsBlank(unsigned c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// A place in a text of 1- or 2-byte characters.
class TextCursor {
  public:
    // `end` may be null where a zero character ends the text.
    explicit TextCursor(const char* at, const char* end = nullptr, unsigned charSize = 1)
        : at_(at), end_(end), charSize_(charSize) {}

    // The character, or 0 at the end.
    unsigned Code() const { return at_ == end_ ? 0u : LoadChar(at_, charSize_); }
    void Skip() { at_ += charSize_; }
    bool SkipIf(unsigned code) {
        if (Code() != code) return false;
        Skip();
        return true;
    }
    void SkipBlanks() {
        while (IsBlank(Code())) Skip();
    }
    const char* At() const { return at_; }
    // To the place of another cursor in the same text.
    void MoveTo(const TextCursor& other) { at_ = other.at_; }

    // The same place in a text that ends after `width` characters, unless that is 0.
    TextCursor Field(int width) const {
        if (width == 0) return *this;
        const char* const limit = at_ + static_cast<std::ptrdiff_t>(width) * static_cast<std::ptrdiff_t>(charSize_);
        return TextCursor(at_, end_ != nullptr && end_ - at_ < limit - at_ ? end_ : limit, charSize_);
    }

  private:
    const char* at_;
    const char* end_;
    unsigned charSize_;
};

// Walks format and text together up to the first mismatch; where a conversion stands, calls
// read(text, conversion, rest of the format), which tells whether it matched.
template <class Read>
void MatchFormat(TextCursor& text, const char* format, const char* letters, Read read) {
    while (*format != 0) {
        Conversion conversion;
        const char* const next = *format == '%' ? ParseConversion(format, letters, conversion) : nullptr;
        if (next != nullptr) {
            if (!read(text, conversion, next)) return;
            format = next;
        } else if (IsBlank(static_cast<unsigned char>(*format))) {
            text.SkipBlanks();
            ++format;
        } else {
            if (!text.SkipIf(static_cast<unsigned char>(*format))) return;
            format += format[0] == '%' && format[1] == '%' ? 2 : 1;
        }
    }
}

// Appends the low `width` bits (8, 16, 32) of an integer.
void AppendInteger(std::string& out, const Conversion& conversion, std::uint32_t bits, unsigned width);
void AppendFloating(std::string& out, const Conversion& conversion, double value);

// Each reads one number and moves behind it. False, and the value stays, when none stands there.
bool ScanInteger(TextCursor& text, const Conversion& conversion, std::uint32_t& bits);
bool ScanFloating(TextCursor& text, const Conversion& conversion, double& value);

}  // namespace vq

#endif
