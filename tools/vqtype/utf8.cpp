#include "utf8.h"

#include <algorithm>
#include <iterator>

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

// Bytes that follow the lead byte, and the bits of the character that it carries; -1 for a byte that leads nothing.
int SplitLead(unsigned char lead, char32_t& bits) {
    if (lead < 0x80) return bits = lead, 0;
    if (lead < 0xC2) return -1;
    if (lead < 0xE0) return bits = lead & 0x1Fu, 1;
    if (lead < 0xF0) return bits = lead & 0x0Fu, 2;
    if (lead < 0xF5) return bits = lead & 0x07u, 3;
    return -1;
}

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
        return;
    }
    const int tail = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned Leads[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(Leads[tail] | (code >> (6 * tail)));
    for (int i = tail - 1; i >= 0; --i) out += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
}

}  // namespace

std::size_t DecodeUtf8(std::string_view text, char32_t& code) {
    constexpr char32_t Shortest[] = {0, 0x80, 0x800, 0x10000};
    const int tail = SplitLead(static_cast<unsigned char>(text[0]), code);
    if (tail < 0 || text.size() < static_cast<std::size_t>(tail) + 1) return 0;
    for (int i = 1; i <= tail; ++i) {
        const auto byte = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
        if ((byte & 0xC0) != 0x80) return 0;
        code = code << 6 | (byte & 0x3Fu);
    }
    if (code < Shortest[tail] || code > 0x10FFFF || IsSurrogate(code)) return 0;
    return static_cast<std::size_t>(tail) + 1;
}

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string units;
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
