/// \file
/// VqSeal: a 48-bit unsigned number in three words, the highest first.
///
///     0x000200030004    high 2, middle 3, low 4    prints 8590131204
///
/// In memory and on disk the high word comes first.
#ifndef SEAL_H
#define SEAL_H

#include <cstdint>

#include "objid.h"
#include "vqdefs.h"
#include "vqint64.h"

class MemFile;
class VqString;

/// The seal of an object. A new one is 0; there is no null.
class VQTM_API VqSeal {
  public:
    // --- Conversion

    /// Bits 0 to 47 of `number`; the others are dropped.
    void ConvertFrom(const VqInt64& number) {
        low = static_cast<std::uint16_t>(number.low);
        middle = static_cast<std::uint16_t>(number.low >> 16);
        high = static_cast<std::uint16_t>(number.high);
    }
    /// The object's number. Its block is no part of it.
    void ConvertFrom(const VqObjId& object) {
        low = static_cast<std::uint16_t>(object.low);
        middle = static_cast<std::uint16_t>(object.low >> 16);
        high = object.high;
    }
    /// Sets `number`, which is never negative.
    void ConvertTo(VqInt64& number) const {
        number.low = std::uint32_t{middle} << 16 | low;
        number.high = high;
    }

    // --- Comparison

    /// Three-way: 0 when equal, else the difference of the first words that differ, this minus other. No truth value.
    int operator!=(const VqSeal& other) const {
        if (high != other.high) return high - other.high;
        if (middle != other.middle) return middle - other.middle;
        return low - other.low;
    }
    /// 1 or 0.
    int operator==(const VqSeal& other) const { return (*this != other) == 0; }

    // --- Text. There is one form; a format means nothing and may be null.

    /// Appends the number in decimal.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads a VqInt64 as "%S" does, so also 0x and octal forms, and keeps its low 48 bits. An empty text gives 0; one
    /// that is no number gives -1, all three words 65535.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::uint16_t high = 0;    ///< bits 32 to 47
    std::uint16_t middle = 0;  ///< bits 16 to 31
    std::uint16_t low = 0;     ///< bits 0 to 15
};

// --- Row of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form: high, middle, low, the high byte of each first whatever the format says. Returns
/// the bytes written.
VQTM_API unsigned long SealStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long SealLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values: 6 each. Nothing is looked at; data and file may be null.
/// @{
VQTM_API unsigned long SealNullSizeGet(unsigned long count);
VQTM_API unsigned long SealSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                   unsigned long count);
VQTM_API unsigned long SealSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
