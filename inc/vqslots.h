/// \file
/// The slots of a type descriptor: one function type for each operation that every value type has.
///
/// A slot function works on an array of `count` values of its type, known to the caller only by address. Unless its
/// type says otherwise:
///
/// - Values in memory form are at the type's memory length from each other; values in disk form follow one another
///   without a gap and at any address. A format byte is a set of VqFormat bits.
/// - A count of 0 does nothing, whatever the addresses are; only Translate from disk to disk goes by its lengths alone.
/// - The functions for life, conversion and text look whether an array is there: with a null one they do nothing. Those
///   for disk form, keys and null trust their addresses, unless the count is 0. (Nullable scalars look in Store, Load,
///   IsNull and SetNull as well.)
/// - Nothing else is checked: the array holds `count` values, the destination has the room that the size function says.
/// - No slot but SetNull is ever empty. An operation that a type does not have does nothing and gives 0 or null.
/// - No exception leaves a slot function, except that memory which the platform refuses to a string follows the
///   platform's rule for `new`.
/// - Different arrays may be worked on from different threads.
#ifndef VQSLOTS_H
#define VQSLOTS_H

class MemFile;
class VqString;
class VqTypeConvertData;
struct VqIdxBounds;

// --- Life of values

/// Allocates an array of `count` constructed values: scalars are 0, values with a null of their own start as their
/// class says, nullable scalars null. A count of 0 gives an array without values, not null, but for identifiers, which
/// make at least one. The caller frees it with the same type's VqDeleteFunc. Null when memory runs out and the memory
/// handler could not help.
using VqCreateFunc = void* (*)(unsigned long count);
/// Destroys and frees an array that VqCreateFunc made; null does nothing. Returns 0.
using VqDeleteFunc = unsigned long (*)(void* values, unsigned long count);
/// Constructs values in raw memory, as Create leaves them.
using VqConstructorFunc = void (*)(void* values, unsigned long count);
/// Destroys values in place; the memory stays the caller's.
using VqDestructorFunc = void (*)(void* values, unsigned long count);
/// Assigns to constructed values: element i of `src` to element i of `dst`, or, when `broadcast` is not 0, the one
/// value at `src` to every element.
using VqAssignmentFunc = void (*)(void* dst, const void* src, unsigned long count, unsigned long broadcast);
/// The same into raw memory, which it constructs by copying.
using VqCopyFunc = void (*)(void* dst, const void* src, unsigned long count, unsigned long broadcast);
/// Makes an array (to be freed like Create's) of default values: what an empty text converts to. Where the type has a
/// null of its own and `asNull` is not 0, the values are null. Nullable scalars are null whatever `asNull` says.
using VqDefaultValueFunc = void* (*)(unsigned long count, int asNull);

// --- Disk form

/// Writes values from memory form at `src` to disk form at `dst`. Returns the bytes written.
using VqStoreFunc = unsigned long (*)(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads values from disk form at `src` into constructed values at `dst`. Returns the bytes consumed.
using VqLoadFunc = unsigned long (*)(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` null values; of `count` values where the type has a fixed length.
using VqNullSizeGetFunc = unsigned long (*)(unsigned long count);
/// Disk bytes in `format` of the values at `data`, which are in memory form when `dataFormat` has VqFormat_Memory and
/// in disk form otherwise. Types of fixed length do not look at `data`; it may be null.
using VqSizeGetFunc = unsigned long (*)(const void* data, unsigned char dataFormat, unsigned char format,
                                        unsigned long count);
/// Disk bytes of the values that begin at the file's position, which stays. Never looks past the file's end.
using VqSizeGetFromMemFileFunc = unsigned long (*)(MemFile* file, unsigned char format, unsigned long count);
/// Converts values between two forms, each memory (VqFormat_Memory in its format) or disk: stores, loads, or assigns
/// from memory to memory. From disk to disk the bytes are copied as they are: the shorter of the lengths, the rest of a
/// longer destination zero. The lengths, in bytes, mean nothing else. Returns the bytes set at `dst`.
using VqTranslateFunc = unsigned long (*)(void* dst, unsigned char dstFormat, unsigned long dstLength, const void* src,
                                          unsigned char srcFormat, unsigned long srcLength, unsigned long count);

// --- Keys

/// Compares two arrays element by element up to the first difference. Only the sign of the result counts: negative
/// where the first array sorts before the second, 0 where they are equal. A length is the bytes that may be read at its
/// value; 0 stands for `count` elements. `flags` are VqCmp bits, for texts. `status` becomes VqStatus_Ok, or
/// VqStatus_BufferEnd when an array ends before its next element, with the result so far.
using VqCompareFunc = int (*)(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,
                              const void* value2, unsigned short flags, unsigned long count, int& status);
/// Estimates the fraction of an index, from 0 to 1, that a predicate with the stored key at `key` selects, and records
/// the key in `scanBounds` as an end of the range to scan. `operators` are 1 equal, 2 less, 4 greater. Both bounds may
/// be null: no statistics, no range wanted.
using VqEvalAndBoundFunc = double (*)(VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                                      unsigned char format, unsigned long count, VqIdxBounds* scanBounds);
/// The hash code, below 2^32 on every target, of `length` bytes of values (0: of `count` elements). Equal keys have
/// equal codes in every format. `status` as for VqCompareFunc.
using VqHashFunc = unsigned long (*)(unsigned char format, unsigned long length, const void* values,
                                     unsigned long count, int& status);

// --- Conversion

/// Makes the exchange form of the values: a record with one string per value, a null string for a null value. The
/// caller deletes the record; the record has no manager yet and so does not own its strings (VqTypeMgr::ConvertTo sets
/// it). Null when memory runs out.
using VqConvertToFunc = VqTypeConvertData* (*)(void* values, unsigned long count);
/// Makes an array (to be freed like Create's) of `count` values from a record's strings. A missing or null string gives
/// a null value, or what an empty text gives where the type has no null. `data` stays the caller's; null is a record
/// without strings.
using VqConvertFromFunc = void* (*)(VqTypeConvertData* data, unsigned long count);

// --- Null

/// Tells whether one value is null: not 0 when it is, always 0 for a type without a null of its own.
using VqIsNullFunc = int (*)(void* value);
/// Makes one value null. Returns 0, or a status that says why the value stayed. The slot is empty (a null pointer)
/// where the type has no null of its own.
using VqSetNullFunc = int (*)(void* value);

// --- Text

/// Appends the values' text under `format` to `out`, and returns `out`. The format is never null. Where a single date
/// or time is null, and where a single identifier or reference is printed, its text replaces what `out` holds.
using VqPrintFunc = VqString& (*)(VqString& out, void* values, const char* format, unsigned long count);
/// Reads constructed values from `text` under `format`; what cannot be read leaves its value. Returns `values`.
using VqScanFunc = void* (*)(void* values, VqString& text, const char* format, unsigned long count);

#endif
