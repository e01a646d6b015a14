/// \file
/// VqBoolean: false, true or null in one byte.
///
///     VqBoolean(0)     byte 0      FALSE
///     VqBoolean(-5)    byte 1      TRUE: every number but 0 is
///     null             byte 255    sorts before false; equals null only
///
/// Bytes from 2 to 254 come from files alone. They count as true where two values are tested for equality, print as
/// FALSE, and are ordered as signed numbers: of byte 200 and true, which are equal, true is the greater one as well.
#ifndef BOOLEAN_H
#define BOOLEAN_H

#include <cstdint>

#include "vqdefs.h"

class MemFile;
class VqString;

/// False, true or null.
class VQTM_API VqBoolean {
  public:
    // --- Construction

    /// False.
    VqBoolean() = default;
    /// Copies the byte.
    VqBoolean(const VqBoolean& other) = default;
    /// True when `truth` is not 0. Comparisons with a number turn it into a boolean by this rule.
    VqBoolean(long truth) : value(truth != 0) {}
    /// Copies the byte.
    VqBoolean& operator=(const VqBoolean& other) = default;
    /// True when `truth` is not 0.
    VqBoolean& operator=(long truth) {
        value = truth != 0;
        return *this;
    }

    // --- Null

    /// True when the byte is 255.
    bool IsNullValue() const { return value > Greatest; }
    /// Makes this null. Returns 0.
    int SetNullValue() {
        value = Null;
        return 0;
    }

    // --- Comparison: null before false before true

    /// Both null, or neither and of the same truth.
    bool operator==(const VqBoolean& other) const {
        if (IsNullValue() || other.IsNullValue()) return IsNullValue() && other.IsNullValue();
        return (value != 0) == (other.value != 0);
    }
    /// False where this is null; true where only the other is; else by the bytes as signed numbers.
    bool operator>(const VqBoolean& other) const {
        if (IsNullValue() || other.IsNullValue()) return !IsNullValue();
        return static_cast<std::int8_t>(value) > static_cast<std::int8_t>(other.value);
    }
    /// Neither greater nor equal.
    bool operator<(const VqBoolean& other) const { return !(*this > other) && !(*this == other); }
    /// Greater or equal.
    bool operator>=(const VqBoolean& other) const { return *this > other || *this == other; }
    /// Less or equal.
    bool operator<=(const VqBoolean& other) const { return *this < other || *this == other; }

    /// The same with a number, which counts as true when it is not 0. It is never null.
    /// @{
    bool operator==(long truth) const { return *this == VqBoolean(truth); }
    bool operator>(long truth) const { return *this > VqBoolean(truth); }
    bool operator<(long truth) const { return *this < VqBoolean(truth); }
    bool operator>=(long truth) const { return *this >= VqBoolean(truth); }
    bool operator<=(long truth) const { return *this <= VqBoolean(truth); }
    /// @}

    // --- Text. There is one form; a format means nothing and may be null.

    /// Appends "TRUE" where the byte is 1, the null print string where it is 255, else "FALSE".
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads "T", "t", "TRUE", "true" and "1" as true, a text that begins with the null print string as null, and every
    /// other text as false.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::uint8_t value = 0;  ///< 0 false, 1 true, 255 null

  private:
    static constexpr std::uint8_t Greatest = 254;  // of the bytes that are not null
    static constexpr std::uint8_t Null = 255;
};

// --- Row of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` values to disk form, the byte of each as it is. Returns the bytes written.
VQTM_API unsigned long BooleanStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long BooleanLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values: 1 each. Nothing is looked at; data and file may be null.
/// @{
VQTM_API unsigned long BooleanNullSizeGet(unsigned long count);
VQTM_API unsigned long BooleanSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                      unsigned long count);
VQTM_API unsigned long BooleanSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
