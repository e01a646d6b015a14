/// \file
/// Hashing by type: the codes by which hashed indexes and collections find keys whose type they know only by number.
///
/// Every function folds an array of `count` keys into one code below 2^32, on every target. Equal keys have equal codes
/// in every format, but for a few kept on purpose (docs/orders.md).
///
///     format     form of the array: low four bits 8 is the memory form, 2 stored with the high byte first, every
///                other code stored with the low byte first (9 to 15: nullables with their value before their
///                indicator, as these codes store them); strings, identifiers and references are in memory form when
///                the whole byte is 8
///     length     bytes of the array that may be read; 0 stands for exactly `count` keys
///     values     the keys; stored ones need no alignment
///     count      keys; 0 gives the code 0 and reads nothing
///     error      VqStatus_Ok; VqStatus_BufferEnd where the array ends before its next key, with the code so far
///
/// The codes stand in hashed indexes on disk and never change. Nothing is allocated, strings above 256 bytes that must
/// be terminated aside. Any number of threads may hash.
#ifndef VQTYPHASH_H
#define VQTYPHASH_H

#include "vqdefs.h"

/// Declares one of these functions, within this header alone.
#define VQTM_HASH_FUNCTION(Name)                                                                                     \
    VQTM_API unsigned long Name(unsigned char format, unsigned long length, const void* values, unsigned long count, \
                                int& error);

/// \name Scalars
/// One word of 32 bits for each key, combined by exclusive or, so that neither the order of the keys nor a key
/// that is there twice counts, and multiplied by 1103515245. Floating keys count by their bits: 0 and -0, which compare
/// equal, have different codes.
/// @{
VQTM_HASH_FUNCTION(CharHash)      ///< the byte with its sign: 0x80 counts as 0xFFFFFF80
VQTM_HASH_FUNCTION(ByteHash)      ///< the byte
VQTM_HASH_FUNCTION(ShortHash)     ///< the 16 bits with their sign
VQTM_HASH_FUNCTION(WordHash)      ///< the 16 bits
VQTM_HASH_FUNCTION(IntHash)       ///< the 32 bits
VQTM_HASH_FUNCTION(UnsignedHash)  ///< the 32 bits
VQTM_HASH_FUNCTION(LongHash)      ///< the 32 bits
VQTM_HASH_FUNCTION(DwordHash)     ///< the 32 bits
VQTM_HASH_FUNCTION(FloatHash)     ///< the 32 bits
VQTM_HASH_FUNCTION(DoubleHash)    ///< both halves of the 64 bits, combined
VQTM_HASH_FUNCTION(Int64Hash)     ///< both halves of the 64 bits, combined
/// @}

/// \name Value classes
/// As scalars: one word for each key.
/// @{
VQTM_HASH_FUNCTION(DateHash)     ///< (year << 16) + (month << 8) + day, the fields with their signs
VQTM_HASH_FUNCTION(TimeHash)     ///< (hour << 16) + (minute << 8) + second, the fields with their signs
VQTM_HASH_FUNCTION(DaTimeHash)   ///< those of date and time combined by exclusive or
VQTM_HASH_FUNCTION(BooleanHash)  ///< the byte with its sign: null counts as 0xFFFFFFFF
VQTM_HASH_FUNCTION(SealHash)     ///< the three words of 16 bits, combined by exclusive or
VQTM_HASH_FUNCTION(BlobHash)     ///< the length, 0 for null: all blobs of a length share one code
/// @}

/// Standard dates by the fields of the day that their number gives (d_Date::getAbsDate and setAbsDate), as DateHash, so
/// that dates which compare equal have one code. For days of the calendar from year 1 on these are the date's own
/// fields; before that, and for dates that are no days, they may be others.
VQTM_HASH_FUNCTION(d_DateHash)
/// Standard times: (hour - tz_hour << 16) + (minute - tz_minute << 8). Seconds do not count: each time equals others
/// less than a second apart, and these others again.
VQTM_HASH_FUNCTION(d_TimeHash)
/// Standard timestamps: the words of date and time combined by exclusive or.
VQTM_HASH_FUNCTION(d_TimestampHash)

/// Strings: the codes of their collation (HashString) combined by exclusive or, so that the order of the keys does not
/// count, and multiplied by 1103515245. Equal keys are those that compare equal under VqCmp_Exact. A record that runs
/// past the given length counts with the characters that are there. Where 254 bytes or more, but not all, are there
/// behind its length, or memory for a text runs out, the code is 0 and the error VqStatus_NotSupported. The language of
/// a damaged header (see StringCompare) counts without its top bit.
VQTM_HASH_FUNCTION(StringHash)

/// The same for the legacy string row: a record may lack its last one or two bytes.
VQTM_HASH_FUNCTION(LegacyStringHash)

/// 8-bit strings: 0 for all keys, so that all share one bucket of a hashed index.
/// @{
VQTM_HASH_FUNCTION(VqIStringHash)
VQTM_HASH_FUNCTION(VqCaseIStringHash)
/// @}

#undef VQTM_HASH_FUNCTION

// The nullable scalars' VqNullSlots<>::Hash belongs to this family: a null counts as 0xFEFE7575, a value as the code of
// the plain scalar; all are combined by exclusive or and not multiplied again.

#endif
