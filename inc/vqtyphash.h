/// \file
/// Hashing by type: the codes by which hashed indexes and collections find keys whose type they know only by number.
///
/// Every function folds an array of `count` keys into one code below 2^32, on every target. Equal keys have equal codes
/// in every format.
///
///     format     form of the array: strings are in memory form when the whole byte is 8; else 2 is stored with the
///                high byte first, every other code stored with the low byte first
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

#define VQTM_HASH_FUNCTION(Name)                                                                                     \
    VQTM_API unsigned long Name(unsigned char format, unsigned long length, const void* values, unsigned long count, \
                                int& error);

/// Strings: the codes of their collation (HashString) combined by exclusive or, so that the order of the keys does not
/// count, and multiplied by 1103515245. Equal keys are those that compare equal under VqCmp_Exact. A record that runs
/// past the given length counts with the characters that are there; where the array has 254 bytes or more left for it,
/// or memory for a text runs out, the code is 0 and the error VqStatus_NotSupported.
VQTM_HASH_FUNCTION(StringHash)

/// The same for the legacy string row: a record may lack its last one or two bytes.
VQTM_HASH_FUNCTION(LegacyStringHash)

/// 8-bit strings: 0 for all keys, so that all share one bucket of a hashed index.
VQTM_HASH_FUNCTION(VqIStringHash)
VQTM_HASH_FUNCTION(VqCaseIStringHash)

#undef VQTM_HASH_FUNCTION

#endif
