// Characters in raw text: one byte or one 16-bit unit, at any address and in either byte order.
#ifndef VQ_TEXTUNIT_H
#define VQ_TEXTUNIT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vqcodeset.h"
#include "vqdefs.h"
#include "vqlanguagecontext.h"

namespace vq {

constexpr unsigned CharSizeOf(unsigned char codeSet) { return codeSet < VqFirstWideCodeSet ? 1 : 2; }

constexpr bool IsNullText(unsigned char codeSet, unsigned char language) {
    return language == VqNullMark || (codeSet == VqNullMark && language == 0);
}

// Reads as an empty text of either character size.
inline constexpr char emptyText[4] = {};

inline unsigned short LoadUnit(const void* at) {
    std::uint16_t unit;
    std::memcpy(&unit, at, sizeof unit);
    return unit;
}

inline void StoreUnit(void* at, unsigned short unit) {
    const std::uint16_t value = unit;
    std::memcpy(at, &value, sizeof value);
}

constexpr unsigned short SwapUnit(unsigned short unit) { return static_cast<unsigned short>(unit << 8 | unit >> 8); }

// Byte order of 2-byte characters: 2 is high byte first, every other code the machine's own.
constexpr unsigned char OrderHighFirst = 2;

inline unsigned short LoadChar(const void* at, unsigned charSize, unsigned char order = 1) {
    if (charSize == 1) return *static_cast<const unsigned char*>(at);
    const unsigned short unit = LoadUnit(at);
    return order == OrderHighFirst ? SwapUnit(unit) : unit;
}

// A 1-byte text cannot hold a wider code, wherever it came from.
inline void StoreChar(void* at, unsigned charSize, unsigned short code) {
    if (charSize == 2)
        StoreUnit(at, code);
    else
        *static_cast<unsigned char*>(at) = code < 256 ? static_cast<unsigned char>(code) : '?';
}

// A digit's value in bases up to 16, or NoDigit.
constexpr unsigned NoDigit = 16;
constexpr unsigned DigitValue(unsigned c) {
    if (c >= '0' && c <= '9') return c - '0';
    const unsigned letter = c | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : NoDigit;
}

// Characters before the zero character.
inline std::size_t TextLength(const void* text, unsigned charSize) {
    const char* const bytes = static_cast<const char*>(text);
    if (charSize == 1) return std::strlen(bytes);
    std::size_t n = 0;
    while (LoadUnit(bytes + 2 * n) != 0) ++n;
    return n;
}

// True if one of the four units in `units` is zero.
constexpr bool HasZeroUnit(std::uint64_t units) {
    return ((units - 0x0001000100010001U) & ~units & 0x8000800080008000U) != 0;
}

// Characters before the zero character, or `most` when there is none among them. All of them can be read.
inline std::size_t BoundedLength(const void* text, unsigned charSize, std::size_t most) {
    if (most == 0) return 0;
    const char* const bytes = static_cast<const char*>(text);
    if (charSize == 1) {
        const void* const end = std::memchr(bytes, 0, most);
        return end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - bytes) : most;
    }
    std::size_t n = 0;
    for (std::uint64_t units[2]; n + 8 <= most; n += 8) {
        std::memcpy(units, bytes + 2 * n, sizeof units);
        if (HasZeroUnit(units[0]) || HasZeroUnit(units[1])) break;
    }
    while (n < most && LoadUnit(bytes + 2 * n) != 0) ++n;
    return n;
}

// The tables of a code set. A number that no set has reads as the native set or, with 2-byte characters, as Unicode.
inline const VqCodeSet& CodeSetOf(unsigned char codeSet) {
    if (const VqCodeSet* set = VqLanguageContext::QueryCodeSet(codeSet)) return *set;
    return *VqLanguageContext::QueryCodeSet(CharSizeOf(codeSet) == 1 ? 0 : 253);
}

inline unsigned short MapCode(unsigned short code, const VqCodeSet& from, const VqCodeSet& to) {
    return &from == &to ? code : to.FromUnicode(from.ToUnicode(code));
}

}  // namespace vq

#endif
