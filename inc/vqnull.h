/// \file
/// VqNull_…: scalars that can be null, and their row functions.
///
/// A nullable is a scalar with a null indicator behind it. It starts null, becomes a value by assignment, and becomes
/// null again by SetNullValue; a null nullable holds 0.
///
///     VqNull_int n;            n.IsNullValue()   true
///     n = 5;                   n.value           5
///     n < VqNull_int(7)                          true
///     VqNull_int() < n                           true: null sorts first
///
/// Memory form, the same on every target (values are aligned to 4 bytes at most):
///
///     VqNull_char, VqNull_uchar                                        value 1, indicator 1                    2 bytes
///     VqNull_short, VqNull_ushort                                      value 2, indicator 1, padding 1         4
///     VqNull_int, VqNull_unsigned, VqNull_long, VqNull_ulong, VqNull_float   4, indicator 1, padding 3         8
///     VqNull_double, VqNull_VqInt64                                    value 8, indicator 1, padding 3        12
///
/// Disk form: one byte, 1 for null, then the value in the format's byte order (0 for null). VqNull_short, big-endian:
///
///     01 00 00    null
///     00 12 34    0x1234
#ifndef VQNULL_H
#define VQNULL_H

#include <cstdint>
#include <type_traits>

#include "vqdefs.h"
#include "vqint64.h"

class MemFile;
class VqString;
class VqTypeConvertData;
struct VqIdxBounds;

#pragma pack(push, 4)

/// A nullable `T`. `Id` keeps types apart whose values are alike, and is their row.
template <class T, VqTypeId Id>
struct VQTM_TYPE VqNullable {
    using ValueType = T;                    ///< the plain scalar
    static constexpr VqTypeId TypeId = Id;  ///< the row

    T value;              ///< 0 while null
    std::uint8_t isNull;  ///< 1 when null, else 0

    // --- Construction

    /// Null.
    VqNullable() : value(), isNull(1) {}
    /// The value `v`, not null.
    VqNullable(T v) : value(v), isNull(0) {}
    /// Becomes the value `v`, not null.
    VqNullable& operator=(T v) {
        value = v;
        isNull = 0;
        return *this;
    }

    // --- Null

    /// True when the indicator is not 0.
    bool IsNullValue() const { return isNull != 0; }
    /// Makes this null. Returns 0.
    int SetNullValue() {
        *this = VqNullable();
        return 0;
    }

    // --- Comparison

    /// Null equals null and sorts before every value. Floating values compare as such, so that one that is not a number
    /// is neither equal, less nor greater; indexes order them by Compare of the row instead.
    /// @{
    friend bool operator==(const VqNullable& a, const VqNullable& b) {
        return a.IsNullValue() || b.IsNullValue() ? a.IsNullValue() == b.IsNullValue()
                                                  : static_cast<bool>(a.value == b.value);
    }
    friend bool operator!=(const VqNullable& a, const VqNullable& b) { return !(a == b); }
    friend bool operator<(const VqNullable& a, const VqNullable& b) {
        return !b.IsNullValue() && (a.IsNullValue() || static_cast<bool>(Key(a.value) < Key(b.value)));
    }
    friend bool operator>(const VqNullable& a, const VqNullable& b) { return b < a; }
    friend bool operator<=(const VqNullable& a, const VqNullable& b) { return a < b || a == b; }
    friend bool operator>=(const VqNullable& a, const VqNullable& b) { return b <= a; }
    /// @}

  private:
    // What orders the value: a char is signed whatever a caller is compiled with.
    static auto Key(T v) {
        if constexpr (std::is_same_v<T, char>) {
            return static_cast<signed char>(v);
        } else {
            return v;
        }
    }
};

#pragma pack(pop)

using VqNull_char = VqNullable<char, VqTypeId_VqNull_char>;                   ///< a char
using VqNull_uchar = VqNullable<unsigned char, VqTypeId_VqNull_uchar>;        ///< a VqByte
using VqNull_short = VqNullable<std::int16_t, VqTypeId_VqNull_short>;         ///< 16 bits with sign
using VqNull_ushort = VqNullable<std::uint16_t, VqTypeId_VqNull_ushort>;      ///< 16 bits without sign
using VqNull_int = VqNullable<std::int32_t, VqTypeId_VqNull_int>;             ///< 32 bits with sign
using VqNull_unsigned = VqNullable<std::uint32_t, VqTypeId_VqNull_unsigned>;  ///< 32 bits without sign
using VqNull_long = VqNullable<std::int32_t, VqTypeId_VqNull_long>;           ///< 32 bits with sign
using VqNull_ulong = VqNullable<std::uint32_t, VqTypeId_VqNull_ulong>;        ///< 32 bits without sign
using VqNull_float = VqNullable<float, VqTypeId_VqNull_float>;                ///< IEEE 754 binary32
using VqNull_double = VqNullable<double, VqTypeId_VqNull_double>;             ///< IEEE 754 binary64
using VqNull_VqInt64 = VqNullable<VqInt64, VqTypeId_VqNull_VqInt64>;          ///< 64 bits with sign

static_assert(sizeof(VqNull_char) == 2 && sizeof(VqNull_uchar) == 2);
static_assert(sizeof(VqNull_short) == 4 && sizeof(VqNull_ushort) == 4);
static_assert(sizeof(VqNull_int) == 8 && sizeof(VqNull_unsigned) == 8);
static_assert(sizeof(VqNull_long) == 8 && sizeof(VqNull_ulong) == 8 && sizeof(VqNull_float) == 8);
static_assert(sizeof(VqNull_double) == 12 && sizeof(VqNull_VqInt64) == 12);

/// Row functions of the nullable type `Null`, one of eleven. A null array is passed over by those that walk
/// values in memory; a count of 0 does nothing.
template <class Null>
struct VQTM_API VqNullSlots {
    // --- Life

    /// A new array of null values; Delete frees it.
    static void* Create(unsigned long count);
    /// Frees an array that Create made; null does nothing. Returns 0.
    static unsigned long Delete(void* values, unsigned long count);
    /// Makes raw storage null values.
    static void Constructor(void* values, unsigned long count);
    /// Nothing: values need no destruction.
    static void Destructor(void* values, unsigned long count);
    /// Copies from one source element to all of `dst` when `broadcast` is non-zero, else element by element. The arrays
    /// may overlap.
    static void Assignment(void* dst, const void* src, unsigned long count, unsigned long broadcast);
    /// The same into raw storage.
    static void Copy(void* dst, const void* src, unsigned long count, unsigned long broadcast);
    /// The same as Create, whatever `asNull` says.
    static void* DefaultValue(unsigned long count, int asNull);

    // --- Disk

    /// Writes values to disk form. Returns the bytes written: for every element one more than its value takes. With
    /// VqFormat_Memory the indicator comes behind the value.
    static unsigned long Store(void* dst, const void* src, unsigned char format, unsigned long count);
    /// Reads values from disk form. Returns the bytes consumed. Only an indicator of exactly 1 means null.
    static unsigned long Load(void* dst, const void* src, unsigned char format, unsigned long count);
    /// Disk bytes of `count` values: for every one a byte more than its value takes. Nothing is looked at; data and
    /// file may be null.
    /// @{
    static unsigned long NullSizeGet(unsigned long count);
    static unsigned long SizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count);
    static unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
    /// @}

    /// Converts between memory form (VqFormat_Memory) and disk form. Between two disk forms bytes are copied as they
    /// stand, and a destination longer than the source is filled with zeros. Returns the bytes written.
    static unsigned long Translate(void* dst, unsigned char dstFormat, unsigned long dstLen, const void* src,
                                   unsigned char srcFormat, unsigned long srcLen, unsigned long count);

    // --- Keys

    /// As all key comparisons: null before every value and equal to null, then the values in their order.
    static int Compare(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,
                       const void* value2, unsigned short flags, unsigned long count, int& error);

    /// As all hashes by type: null counts as 0xFEFE7575, a value as the plain scalar's code, combined by exclusive or.
    /// A null is told as Compare tells it: in memory by an indicator that is not 0, stored by one of exactly 1.
    static unsigned long Hash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                              int& error);

    /// As all estimates by type (vqtypevl.h): a value lies where the plain scalar's does, null below all.
    static double EvalAndBound(VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                               unsigned char format, unsigned long count, VqIdxBounds* scanBounds);

    // --- Text

    /// Values print and scan as those of the plain type; null is the null print string.
    static VqString& Print(VqString& out, void* values, const char* format, unsigned long count);
    /// A text that begins with the null print string gives null; one without a number leaves the value.
    static void* Scan(void* values, VqString& text, const char* format, unsigned long count);

    // --- Null

    /// The indicator of one value: not 0 when it is null.
    static int IsNull(void* value);
    /// Makes one value null. Returns 0.
    static int SetNull(void* value);

    // --- Conversion

    /// The exchange strings of the plain type; null is a null string. The caller owns the record; its strings belong to
    /// whom its manager is set to.
    static VqTypeConvertData* ConvertTo(void* values, unsigned long count);
    /// A new array: null where the record has no string or a null one.
    static void* ConvertFrom(VqTypeConvertData* data, unsigned long count);
};

#endif
