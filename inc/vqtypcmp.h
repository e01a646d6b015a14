/// \file
/// Typed key comparison: how an index orders keys whose type it knows only by number.
///
/// Every function compares two arrays of `count` values element by element, up to the first difference, and returns a
/// negative value, 0 or a positive value where the first array sorts before, like or after the second. Only the sign
/// counts; functions of scalars give -1, 0 and 1.
///
///     format     form of both arrays: low four bits 8 is the memory form, 2 stored with the high byte first, every
///                other code stored with the low byte first (9 to 15: nullables with their value before their
///                indicator, as these codes store them); strings, identifiers and references are in memory form when
///                the whole byte is 8
///     length1    bytes of the first array that may be read; 0 stands for exactly `count` elements
///     value1     the first array; needs no alignment, strings and blobs in memory form aside
///     length2    the same for the second array
///     value2
///     flags      VqCmp bits, for strings, where 65535 is the class-wide default operation, and for stored dates
///     count      elements; 0 is equal and reads nothing
///     error      VqStatus_Ok, or why the comparison stopped
///
/// An array that ends before its next element stops the comparison with VqStatus_BufferEnd and the result of the last
/// element compared (0 when there was none). The end is looked for after every element that others follow, after a
/// difference as well. Nothing is ever read behind a given length.
///
/// These orders are part of every index on disk: keys that change places make it unreadable.
///
/// Nothing is allocated, strings above 256 bytes that must be terminated aside. Any number of threads may compare.
#ifndef VQTYPCMP_H
#define VQTYPCMP_H

#include "vqdefs.h"
#include "vqnull.h"

/// Declares one of these functions, within this header alone.
#define VQTM_COMPARE_FUNCTION(Name)                                                                           \
    VQTM_API int Name(unsigned char format, unsigned long length1, const void* value1, unsigned long length2, \
                      const void* value2, unsigned short flags, unsigned long count, int& error);

/// \name Integers
/// @{
VQTM_COMPARE_FUNCTION(CharCompare)      ///< signed bytes: 0x80 before 0x7F
VQTM_COMPARE_FUNCTION(ByteCompare)      ///< unsigned bytes
VQTM_COMPARE_FUNCTION(ShortCompare)     ///< signed 16 bits
VQTM_COMPARE_FUNCTION(WordCompare)      ///< unsigned 16 bits
VQTM_COMPARE_FUNCTION(IntCompare)       ///< signed 32 bits
VQTM_COMPARE_FUNCTION(UnsignedCompare)  ///< unsigned 32 bits
VQTM_COMPARE_FUNCTION(LongCompare)      ///< signed 32 bits
VQTM_COMPARE_FUNCTION(DwordCompare)     ///< unsigned 32 bits
VQTM_COMPARE_FUNCTION(Int64Compare)     ///< signed 64 bits, stored as two halves, the low half first
/// @}

/// Floating values. The zeros are equal. A value that is not a number gives -1 against every value, itself included, on
/// either side.
/// @{
VQTM_COMPARE_FUNCTION(FloatCompare)
VQTM_COMPARE_FUNCTION(DoubleCompare)
/// @}

/// Dates. In memory form by VqDate's operator!=, in which a field of -1 in either date stands for any value. A stored
/// second array is what is searched for: its fields of -1 stand for any value, those of the first array for themselves.
/// With VqCmp_Exact all fields of stored dates are compared as they stand. That, and memory form without fields of -1,
/// is an order; search keys are equal to dates that are not equal. Code 1 is a stored form like 2, though its bytes are
/// those of the memory form: an index with the low byte first needs that order, too.
VQTM_COMPARE_FUNCTION(DateCompare)

/// Times: hour, minute and second with their signs.
VQTM_COMPARE_FUNCTION(TimeCompare)

/// Date-times. In memory form by VqDateTime's operator!=, with its fields of -1; stored ones by all fields as they
/// stand. A stored element has 7 bytes.
VQTM_COMPARE_FUNCTION(DaTimeCompare)

/// Standard dates by their day numbers (d_Date::getAbsDate), in every form: dates of the same day are equal.
VQTM_COMPARE_FUNCTION(d_DateCompare)

/// Standard times on the clocks of their zones, hour - tz_hour and then minute - tz_minute; timestamps by their dates
/// first. In memory form seconds and hundredths decide by the operators, which find less than a second equal; keep no
/// keys in that order, for two times that each equal a third may differ. Stored ones are compared to the hundredth.
/// @{
VQTM_COMPARE_FUNCTION(d_TimeCompare)
VQTM_COMPARE_FUNCTION(d_TimestampCompare)
/// @}

/// Booleans: null, false, true. Bytes from 2 to 254, which no boolean has, are compared as VqBoolean's operators do.
VQTM_COMPARE_FUNCTION(BooleanCompare)

/// Seals as numbers.
VQTM_COMPARE_FUNCTION(SealCompare)

/// Blobs by VqBlob's operator!=: null first, with -2 and 2, then bytes, then lengths. A stored array begins with its
/// total; it ends there, or with the bytes that may be read where these are fewer. A blob that is not all within the
/// array is none: it ends the comparison with VqStatus_BufferEnd. A negative length is a null blob.
VQTM_COMPARE_FUNCTION(BlobCompare)

/// Strings by their collation (VqStrCmp). Without VqCmp_Exact and VqCmp_KeyOnly the second text is a pattern. Stored
/// arrays may be in either layout that StringLoad reads, and are compared where they stand.
///
/// A record that runs past the given length is a clipped key, of which up to 253 bytes are there behind its length.
/// It is compared as far as it goes, and VqStatus_BufferEnd says that what is missing could change the result. There
/// is no error where it cannot:
///
///     the other text ends before the clipped one does
///     a whole pattern whose first wildcard is its last character, and not behind the cut
///
/// Of a pattern only the characters before its first wildcard are compared with a clipped key, or of a clipped pattern
/// with a text; an escape character ends them too. Where all that is compared is equal, a clipped text is behind a
/// whole one that ends with the part compared. With VqCmp_Report the result is the difference of the letters alone
/// (what VqStrCmp reports; its own result where it reports nothing), always with VqStatus_BufferEnd.
///
/// VqStatus_BufferEnd is also the answer to a record with less than the five bytes which the least one begins with
/// (result 0), and to a damaged header: code set 254 with a language above 127. Such an element is compared with the
/// language's top bit cleared, and as a pattern like a clipped key. VqStatus_NotSupported, with -1, is the answer to a
/// record of which 254 or more bytes, but not all, are there behind its length, and when memory for a text runs out.
VQTM_COMPARE_FUNCTION(StringCompare)

/// The same for the legacy string row: a record may lack its last one or two bytes.
VQTM_COMPARE_FUNCTION(LegacyStringCompare)

/// 8-bit strings by their weights and flags (VqIString::Compare, VqCaseIString::Compare), the whole texts; the null
/// text is an empty one. Without VqCmp_Exact and VqCmp_KeyOnly a second text with '*' (any run of characters) or '?'
/// (any one) is a pattern; it matches by weights. A record that runs past the given length is compared as far as it
/// goes, a pattern then up to its first wildcard, and ends the comparison with VqStatus_BufferEnd; where 254 bytes or
/// more of its text, but not all, are there, with -1 and VqStatus_NotSupported.
/// @{
VQTM_COMPARE_FUNCTION(VqIStringCompare)
VQTM_COMPARE_FUNCTION(VqCaseIStringCompare)
/// @}

#undef VQTM_COMPARE_FUNCTION

// The nullable scalars' VqNullSlots<>::Compare belongs to this family: null before every value and equal to null, then
// the values in their type's order. Stored elements are one byte longer than their value.

#endif
