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

// Characters that a format takes besides pairs.
std::size_t SizeWithoutPairs(const char* format, std::size_t lengthDigits) {
    std::size_t size = 0;
    while (*format != 0) {
        const Element element(format);
        if (element.directive == 0) ++size;
        if (element.directive == 'L') size += lengthDigits;
        format = element.next;
    }
    return size;
}

void AppendPairs(std::string& text, const VqBlob& blob, const char* digits, std::size_t room) {
    const std::size_t left = room - std::min(room, text.size());
    const std::size_t bytes = std::min(static_cast<std::size_t>(blob.Length()), left / 2);
    const unsigned char* const data = blob.Data();
    for (std::size_t i = 0; i < bytes; ++i) {
        text += digits[data[i] >> 4];
        text += digits[data[i] & 15];
    }
}

unsigned DigitAt(const char* text) { return vq::DigitValue(static_cast<unsigned char>(*text)); }

// Behind the pairs at `text`.
const char* SkipPairs(const char* text) {
    while (DigitAt(text) != vq::NoDigit && DigitAt(text + 1) != vq::NoDigit) text += 2;
    return text;
}

const char* SkipNumber(const char* text) {
    while (*text >= '0' && *text <= '9') ++text;
    return text;
}

void TakePairs(VqBlob& blob, const char* from, const char* to) {
    VqBlob bytes(static_cast<long>(to - from) / 2);
    if (bytes.IsNullValue()) return;
    unsigned char* data = bytes.Data();
    for (; from != to; from += 2) *data++ = static_cast<unsigned char>(DigitAt(from) << 4 | DigitAt(from + 1));
    blob = std::move(bytes);
}

}  // namespace

void VqBlob::PrintToVqString(VqString& out, const char* format) const {
    if (IsNullValue()) {
        out += VqNullPrintString();
        return;
    }
    if (format == nullptr) format = DefaultFormat;
    const std::string length = std::to_string(Length());
    std::string text;
    // What stands behind pairs keeps its place.
    const auto roomForPairs = [&](const char* rest) {
        const std::size_t room = RoomOf(out);
        return room - std::min(room, SizeWithoutPairs(rest, length.size()));
    };
    while (*format != 0) {
        const Element element(format);
        format = element.next;
        switch (element.directive) {
            case 'L':
                text += length;
                break;
            case 'X':
                AppendPairs(text, *this, "0123456789ABCDEF", roomForPairs(format));
                break;
            case 'x':
                AppendPairs(text, *this, "0123456789abcdef", roomForPairs(format));
                break;
            default:
                text += element.literal;
        }
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
    const char *pairs = nullptr, *pairsEnd = nullptr;
    while (*format != 0) {
        const Element element(format);
        format = element.next;
        if (element.directive == 'L') {
            at = SkipNumber(at);
        } else if (element.directive != 0) {
            pairs = at;
            at = pairsEnd = SkipPairs(at);
            if (pairs == at && *at != *format) return;
        } else if (*at++ != element.literal) {
            return;
        }
    }
    if (pairs != nullptr) TakePairs(*this, pairs, pairsEnd);
}
