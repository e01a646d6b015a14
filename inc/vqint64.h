/// \file
/// VqInt64: a signed 64-bit integer in two halves.
///
/// The value is high * 2^32 + low. The halves never change places: in memory and on disk the low one comes first.
///
///     1     low 1             high 0
///     -1    low 4294967295    high -1
#ifndef VQINT64_H
#define VQINT64_H

#include <cstdint>

#include "vqdefs.h"

class MemFile;
class VqString;

class VQTM_API VqInt64 {
  public:
    /// Zero.
    VqInt64() = default;
    /// The two halves as given: the low 32 bits of each.
    VqInt64(unsigned long low, long high)
        : low(static_cast<std::uint32_t>(low)), high(static_cast<std::int32_t>(high)) {}

    // 1 or 0.
    int operator==(const VqInt64& other) const { return low == other.low && high == other.high; }
    int operator<(const VqInt64& other) const { return high != other.high ? high < other.high : low < other.low; }

    /// Appends the value's text to `out` under `format` ("%S" for null): text with conversions that each insert the
    /// value, without widths. A '%' before any other character is ordinary text, and so is that character.
    ///
    ///     S d i    decimal            -31
    ///     o        octal              -037
    ///     x X      hexadecimal        -0x1f  -0X1F
    ///
    /// The least value has no sign in octal and hexadecimal: 0x8000000000000000.
    void PrintToVqString(VqString& out, const char* format) const;

    /// Reads the value from `text` under `format` ("%S" for null). The text says its base: 0x is hexadecimal, another
    /// leading 0 octal, 0 alone as well. S takes any base, o x X d i only their own. A conversion ends at the text's
    /// end, or at the character that follows it in the format. Digits beyond 64 bits wrap. A text that does not match
    /// gives -1; an empty one leaves the value.
    void ScanFromVqString(const VqString& text, const char* format);

    std::uint32_t low = 0;  // bits 0 to 31
    std::int32_t high = 0;  // bits 32 to 63; its top bit is the sign
};

// --- Rows of the descriptor table: disk form (see docs/formats.md)
//
// 8 bytes: the low half, then the high half, each as a long in the format's byte order. Addresses need no alignment.

/// Writes `count` values to disk form. Returns the bytes written.
VQTM_API unsigned long Int64Store(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long Int64Load(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values, here and below: 8 each. Nothing is looked at.
VQTM_API unsigned long Int64NullSizeGet(unsigned long count);
VQTM_API unsigned long Int64SizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                    unsigned long count);
VQTM_API unsigned long Int64SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

#endif
