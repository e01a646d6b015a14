// Text forms of blobs.

#include <algorithm>
#include <string>
#include <utility>

#include "_vqnulty.h"
#include "blob.h"
#include "textform.h"
#include "textunit.h"
#include "vqstring.h"

namespace {

constexpr const char* DefaultFormat = "[BLOB,len=%L]";
constexpr unsigned NoDigit = 16;

constexpr unsigned DigitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    return NoDigit;
}

// One element of a format: a directive, or an ordinary character.
struct Element {
    char directive = 0;  // L, X or x
    char literal = 0;
    const char* next;

    explicit Element(const char* format) : literal(*format), next(format + 1) {
        if (*format != '%') return;
        if (*next == 'L' || *next == 'X' || *next == 'x') {
            directive = *next++;
        } else if (*next == '%') {
            ++next;
        }
    }
};

// Characters that `out` has room for.
std::size_t RoomOf(const VqString& out) { return VqString::MaxSize / vq::CharSizeOf(out.GetCodeSet()) - 1 - out.Len(); }

void AppendPairs(std::string& text, const VqBlob& blob, const char* digits, std::size_t room) {
    const std::size_t left = room - std::min(room, text.size());
    const std::size_t bytes = std::min(static_cast<std::size_t>(blob.Length()), left / 2);
    const unsigned char* const data = blob.Data();
    for (std::size_t i = 0; i < bytes; ++i) {
        text += digits[data[i] >> 4];
        text += digits[data[i] & 15];
    }
}

// Behind the pairs at `text`.
const char* SkipPairs(const char* text) {
    while (DigitValue(text[0]) != NoDigit && DigitValue(text[1]) != NoDigit) text += 2;
    return text;
}

const char* SkipNumber(const char* text) {
    while (*text >= '0' && *text <= '9') ++text;
    return text;
}

void TakePairs(VqBlob& blob, const char* text, long count) {
    VqBlob bytes(count);
    if (bytes.IsNullValue()) return;
    unsigned char* const data = bytes.Data();
    for (long i = 0; i < count; ++i, text += 2) {
        data[i] = static_cast<unsigned char>(DigitValue(text[0]) << 4 | DigitValue(text[1]));
    }
    blob = std::move(bytes);
}

}  // namespace

void VqBlob::PrintToVqString(VqString& out, const char* format) const {
    if (IsNullValue()) {
        out += VqNullPrintString();
        return;
    }
    if (format == nullptr) format = DefaultFormat;
    std::string text;
    while (*format != 0) {
        const Element element(format);
        switch (element.directive) {
            case 'L':
                text += std::to_string(Length());
                break;
            case 'X':
                AppendPairs(text, *this, "0123456789ABCDEF", RoomOf(out));
                break;
            case 'x':
                AppendPairs(text, *this, "0123456789abcdef", RoomOf(out));
                break;
            default:
                text += element.literal;
        }
        format = element.next;
    }
    out << text.c_str();
}

void VqBlob::ScanFromVqString(const VqString& text, const char* format) {
    const vq::SingleByteText single(text);
    const char* at = single.Get();
    if (vq::SkipNullPrintString(at) != nullptr) {
        SetNullValue();
        return;
    }
    if (format == nullptr) format = DefaultFormat;
    while (*format != 0) {
        const Element element(format);
        format = element.next;
        if (element.directive == 'L') {
            at = SkipNumber(at);
        } else if (element.directive != 0) {
            const char* const end = SkipPairs(at);
            if (end == at && *at != *format) return;
            TakePairs(*this, at, (end - at) / 2);
            at = end;
        } else if (*at++ != element.literal) {
            return;
        }
    }
}
