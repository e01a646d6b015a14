/// \file
/// Index key bounds and selectivity: what a query asks before it scans an index.
///
/// For a predicate on an indexed value, an operator and a key, a function tells the part of the index's keys that the
/// predicate selects, and records the key as an end of the range to be scanned.
///
///     indexBounds   the smallest and the largest key of the index, in `format`; null without statistics
///     operators     VqOperator bits; VqOperator_Wildcard is set for a key that holds a wildcard
///     key           `count` values in disk form
///     format        byte order of all keys; of strings, VqFormat_Memory stands for the machine's
///     count         values of a key; the first one is estimated
///     scanBounds    range to be scanned, which the function narrows; null when no range is wanted
///
/// The estimate is a number from 0, nothing, to 1, the whole index, and above 1 where the formula below adds up to
/// more. It is finite and never negative, whatever the bounds and the key are. It is 0 without statistics: without
/// index bounds, where one of their keys is missing or shorter than a value, and where the high key lies below the low
/// one. A key that is a null pointer, or a count of 0, is no predicate: the estimate is 0 and nothing is recorded.
/// Identifiers differ (objid.h): without statistics, the index of a VqObjId holds the number 0 alone; a VqRef needs
/// none; a VqClassId is 1 whatever comes.
///
/// How it is computed. Each type places its keys on a line of numbers, in its order, identifiers aside; a step on the
/// line is 1. With the key from a to b (the same number, unless it holds wildcards) and the index from lo to hi, the
/// predicate selects
///
///     greater    hi - b, or all and a step more where b is below lo
///     less       a - lo, or all and a step more where a is above hi
///     equal      from a to b and a step, as far as the index goes
///
/// and the estimate is the sum of what is asked for, divided by hi - lo + 1. A part below 0 counts as 0; one that is
/// not finite, and a length of the index that is not, as the largest number. On a line of whole numbers "less" and
/// "greater or equal" add up to 1. Where numbers lie between, "at least" a key within a step below lo exceeds 1, and so
/// may a key that is infinite or no number. Index keys that are such are cut to the same numbers. An estimate of any of
/// them means nothing.
///
/// An end of the range that is null takes a copy of the key, `count` values: the low key unless the predicate asks for
/// less, the high key unless it asks for greater. Ends that are set stay. The copies come from the C heap (malloc) and
/// belong to the caller, who frees them with VqFreeBounds. Where memory runs out and the memory handler
/// (VqCallMemoryHandler) cannot help, the end stays null. Nothing else is allocated.
#ifndef VQTYPEVL_H
#define VQTYPEVL_H

#include <cstdint>

#include "vqdefs.h"

/// A range of keys in disk form, both ends included.
struct VqIdxBounds {
    void* lowKey = nullptr;           ///< null: from the first key on
    void* highKey = nullptr;          ///< null: to the last key
    std::uint32_t lowKeyLength = 0;   ///< bytes at `lowKey`
    std::uint32_t highKeyLength = 0;  ///< bytes at `highKey`
};

/// What a predicate asks of a value, compared with the key: "less or equal" is both bits. The other bits of a set are
/// the caller's.
enum VqOperator : unsigned short {
    VqOperator_Equal = 1,     ///< equal to the key
    VqOperator_Less = 2,      ///< less than the key
    VqOperator_Greater = 4,   ///< greater than the key
    VqOperator_Wildcard = 8,  ///< set by the functions: the key holds a wildcard
};

/// The most bytes of a string key in an index; longer ones are clipped.
constexpr unsigned long VqINDEX_MAX_KEYLEN = 254;

/// Declares one of these functions, within this header alone.
#define VQTM_BOUNDS_FUNCTION(Name)                                                                           \
    VQTM_API double Name##EvalAndBound(VqIdxBounds* indexBounds, unsigned short& operators, const void* key, \
                                       unsigned char format, unsigned long count, VqIdxBounds* scanBounds);

/// \name Integers
/// They lie at their value. 64-bit ones are rounded to the nearest of 53 bits.
/// @{
VQTM_BOUNDS_FUNCTION(Char)      ///< [-128:127]
VQTM_BOUNDS_FUNCTION(Byte)      ///< [0:255]
VQTM_BOUNDS_FUNCTION(Short)     ///< signed 16 bits
VQTM_BOUNDS_FUNCTION(Word)      ///< unsigned 16 bits
VQTM_BOUNDS_FUNCTION(Int)       ///< signed 32 bits
VQTM_BOUNDS_FUNCTION(Unsigned)  ///< unsigned 32 bits
VQTM_BOUNDS_FUNCTION(Long)      ///< signed 32 bits
VQTM_BOUNDS_FUNCTION(Dword)     ///< unsigned 32 bits
VQTM_BOUNDS_FUNCTION(Int64)     ///< signed 64 bits
/// @}

/// \name Floating values
/// They lie at their value, intervals of time at their seconds. An estimate above 0 is at least 1.1920929e-7,
/// the precision of a float, so that a selective predicate does not look like an impossible one.
/// @{
VQTM_BOUNDS_FUNCTION(Float)   ///< IEEE 754 binary32, and d_Interval
VQTM_BOUNDS_FUNCTION(Double)  ///< IEEE 754 binary64
/// @}

/// Dates: the Julian Day Number (VqDate::dayabs). A day outside its month lies at the nearest end of the month, a month
/// outside the year at the nearest end of the year, so that any fields lie in the order of dates. A key's field that is
/// -1 stands for any value, and the key for all days from the first to the last that it may be: for its month without a
/// day, for its year without a month, for all without a year. The fields behind one that stands for any value do not
/// narrow an index's range, and count no more.
VQTM_BOUNDS_FUNCTION(Date)
/// Times: seconds since midnight. A second or minute out of range lies at the nearest end of its minute or hour.
VQTM_BOUNDS_FUNCTION(Time)
/// Date-times: seconds since day 0, the date's day and the time's seconds as above, a time out of range at the nearest
/// end of the day, and without a time where the date is none. There are no wildcards, as in the order of stored
/// date-times.
VQTM_BOUNDS_FUNCTION(DaTime)

/// The standard dates: the day number of the historical calendar (d_Date::getAbsDate).
VQTM_BOUNDS_FUNCTION(d_Date)
/// The standard times: seconds in the order of stored keys, hours less zone hours before minutes less zone minutes
/// before seconds; hundredths are fractions. Out of range as for times: minutes that the zone makes negative lie at the
/// start of their hour.
VQTM_BOUNDS_FUNCTION(d_Time)
/// The standard timestamps: seconds since day 0, out of range as for date-times.
VQTM_BOUNDS_FUNCTION(d_Timestamp)

/// Booleans: false 0, true 1, null -1.
VQTM_BOUNDS_FUNCTION(Boolean)
/// Seals: their number, below 2^48.
VQTM_BOUNDS_FUNCTION(Seal)
/// Blobs: their first six bytes as the digits 1 to 256 of a number to the base 257, where the blob's end is the digit
/// 0; null -1. Blobs that begin alike lie in one place.
VQTM_BOUNDS_FUNCTION(Blob)

/// \name Strings
/// A string lies where, in the order of collation, the part of all texts ends that is below it: a fraction that a model
/// of texts tells, by which letters words begin with and which follow which (as an arithmetic coder over a Markov chain
/// of the first order; C. E. Shannon, A Mathematical Theory of Communication, 1948). It is made from word lists of
/// seven languages, with the first letters of the key's language where it is one of these. Digits, symbols, ideographs
/// and letters of other scripts share their part evenly. What the index's two keys begin with in common is left out,
/// and the estimate is what the predicate selects of the line from the low key to the high one: never more than 1, and
/// no less than 1.1920929e-7 where it is above 0. On word lists it errs by a few hundredths. Only letters count, not
/// accents and case. Null lies below all texts, a 64th of the line. Collation classes lie apart, each on a line of its
/// own, in their order. Where key and index are all in the native code set, texts lie in the order of their bytes.
///
/// Of the operators only VqOperator bits and 0x8000 remain on return. Keys must be complete, those of the index can be
/// clipped. A recorded key has at most VqINDEX_MAX_KEYLEN bytes; of a longer one these are the first, with the length
/// that the whole has, as comparison expects it. A clipped key sorts by what is there, and by accents and case before
/// the letters that are not: compare with such ends under VqCmp_IgnoreCase and VqCmp_IgnoreAccents, and read the
/// records. It is compared as far as it goes, by characters: a text that spells a letter otherwise (the one of German
/// that is equal to "ss") is cut a letter earlier or later, and can lie outside of a clipped key that it is equal to.
///
/// A key with a wildcard or escape character (see VqStrCmp) sets VqOperator_Wildcard and stands for all texts that
/// begin with what is in front of it; that is what the estimate counts. The low key is that beginning (the null string
/// where it is empty, as '*' matches null too). The high key is the beginning followed by 0xFF bytes up to the most
/// that a key has: in Unicode, where U+FFFF sorts last, for whatever code set the pattern is in. Whatever text matches
/// the pattern under some of VqCmp_IgnoreCase and VqCmp_IgnoreAccents lies between both keys under VqCmp_Exact and the
/// same; of a beginning too long for a key, with what is said of clipped ones, and not what consists of U+FFFF beyond a
/// key's length.
///
/// A pattern in the native code set, of an index whose two keys are native or that has no statistics, is read and goes
/// on byte by byte, for texts of that set alone. With other indexes it ends at whichever comes first, a wildcard byte
/// or a wildcard or escape character, and goes on in Unicode.
///
/// A pattern that begins with a wildcard stands for all of the index, null included. Its high key is in a language of
/// the last collation class. Null is no pattern, whatever its text.
///
/// Of an array the first element that is a pattern counts for the range: the keys are the elements in front of it, and
/// behind them its low or high key. The estimate is that of the first element.
/// @{
VQTM_BOUNDS_FUNCTION(String)  ///< the current row's strings, in the current or the legacy layout
/// The legacy row's strings. A clipped key, and those of a pattern, are records of the current layout.
VQTM_BOUNDS_FUNCTION(LegacyString)

/// 8-bit strings, likewise by their weights; '*' and '?' are the wildcards. 0xFF is not the last byte there but for raw
/// strings: a pattern's high key goes on with the byte that weighs most. The two keys hold what is as raw as the
/// pattern: a raw text with 0xFF in it can lie above the high key of a pattern that is not raw.
VQTM_BOUNDS_FUNCTION(VqIString)
/// The same by the weights that the key's flags choose.
VQTM_BOUNDS_FUNCTION(VqCaseIString)
/// @}

#undef VQTM_BOUNDS_FUNCTION

// The nullable scalars' VqNullSlots<>::EvalAndBound belongs to this family: values lie as those of the plain scalar,
// null a step below the least value of the index. An index that begins with null does not tell that value: it is taken
// to be 0, or the high key where that is less, and lesser keys lie there too. So of an index from null to 998, "= null"
// selects a thousandth, "< null" nothing, "< 499" one half, and no more than the nulls lie below a negative key.

/// Frees both keys of bounds that were filled here and makes them empty.
VQTM_API void VqFreeBounds(VqIdxBounds& bounds);

#endif
