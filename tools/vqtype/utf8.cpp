#include "utf8.h"

#include <algorithm>
#include <climits>
#include <iterator>

#include "multibyte.h"

namespace {

struct Range {
    char32_t first, last;
};

constexpr Range Wide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};
constexpr Range Combining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x200B, 0x200F}, {0x20D0, 0x20FF},
    {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};

template <std::size_t N>
bool IsIn(const Range (&ranges)[N], char32_t code) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [code](Range range) { return code >= range.first && code <= range.last; });
}

bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }
bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// A character beyond U+FFFF, which the library's 16-bit values cannot hold, has four bytes.
constexpr int PairLength = 4;

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) return out.push_back(static_cast<char>(code));
    char bytes[PairLength];
    int length = PairLength;
    if (code <= 0xFFFF) {
        length = VqWChar2MultiByte(bytes, static_cast<wchar_t>(code));
    } else {
        bytes[0] = static_cast<char>(0xF0 | code >> 18);
        for (int i = 1; i < PairLength; ++i) bytes[i] = static_cast<char>(0x80 | (code >> (18 - 6 * i) & 0x3F));
    }
    out.append(bytes, static_cast<std::size_t>(length));
}

unsigned char ByteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

// All units of a text whose characters have one to three bytes each, or none where there is more to look at.
std::u16string DecodeWhole(std::string_view text) {
    unsigned char highest = 0;
    for (const char c : text) highest = std::max(highest, static_cast<unsigned char>(c));
    if (highest >= 0xF0 || text.size() > INT_MAX) return {};
    std::u16string units(text.size(), 0);
    const int size = static_cast<int>(text.size());
    const int count = VqMultiByteStr2WCharStr(reinterpret_cast<unsigned short*>(units.data()), size, text.data(),
                                              static_cast<unsigned>(size));
    if (count < 0) return {};
    units.resize(static_cast<std::size_t>(count));
    std::size_t surrogates = 0;
    for (const char16_t unit : units) surrogates += IsSurrogate(unit);
    return surrogates == 0 ? units : std::u16string();
}

}  // namespace

std::size_t DecodeUtf8(std::string_view text, char32_t& code) {
    unsigned short unit = 0;
    const auto most = static_cast<unsigned>(std::min<std::size_t>(text.size(), PairLength));
    const int length = VqMultiByte2WChar(&unit, text.data(), most);
    if (length < 1 || (length < PairLength && IsSurrogate(unit))) return 0;
    code = unit;
    if (length == PairLength) code |= (ByteAt(text, 0) & 0x07u) << 18 | (ByteAt(text, 1) & 0x30u) << 12;
    return code <= 0x10FFFF ? static_cast<std::size_t>(length) : 0;
}

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string units = DecodeWhole(text);
    if (!units.empty()) return units;
    for (std::size_t at = 0; at < text.size();) {
        char32_t code = 0;
        const std::size_t length = DecodeUtf8(text.substr(at), code);
        if (length == 0) throw Utf8Fault{at};
        if (code > 0xFFFF) {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            code = 0xDC00 | (code & 0x3FF);
        }
        units += static_cast<char16_t>(code);
        at += length;
    }
    return units;
}

std::string Utf16ToUtf8(std::u16string_view units) {
    std::string out;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t code = units[i];
        if (IsHighSurrogate(units[i]) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
            code = 0x10000 + ((code & 0x3FF) << 10) + (units[++i] & 0x3FFu);
        }
        AppendUtf8(out, IsSurrogate(code) ? 0xFFFD : code);
    }
    return out;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < text.size();) {
        char32_t code = 0;
        const std::size_t length = DecodeUtf8(text.substr(at), code);
        at += length ? length : 1;
        width += length == 0 ? 1 : IsIn(Wide, code) ? 2 : IsIn(Combining, code) ? 0 : 1;
    }
    return width;
}
