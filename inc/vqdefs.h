/// \file
/// Ground of the type library: widths, status codes, format bits, comparison operations, type identifiers.
///
/// Every number here stands in files or travels through the interface; none is ever reused for another meaning.
#ifndef VQDEFS_H
#define VQDEFS_H

#include <cstdint>

#include "vqtmdefs.h"

// Values of the rows of the same names.
using VqByte = unsigned char;   ///< 8 bits without sign
using VqWord = unsigned short;  ///< 16 bits without sign
using VqDWord = std::uint32_t;  ///< 32 bits without sign

/// Status codes. Functions return them, or write them through an `int&` status argument.
enum VqStatus : int {
    VqStatus_Ok = 0,                ///< nothing is wrong
    VqStatus_BufferEnd = 2101,      ///< an operand's buffer ends before its next element
    VqStatus_NotSupported = -2999,  ///< the question is not supported, or a string element is malformed
    VqStatus_Refused = -2002,  ///< a code-set change or a copy onto itself that is refused; an order of another kind
    VqStatus_NoMoreItems = -2005,      ///< a split list has no more items
    VqStatus_UnknownTimeZone = -2171,  ///< the time zone has no known offset
};

/// Bits of the format byte that every store, load, size and compare function takes.
enum VqFormat : unsigned char {
    VqFormat_LittleEndian = 0x01,  ///< byte order of the disk form: low byte first (as every code but 2 means)
    VqFormat_BigEndian = 0x02,     ///< byte order of the disk form: high byte first
    VqFormat_Memory = 0x08,        ///< the data is in memory form
    VqFormat_OrderMask = 0x0F,     ///< the byte-order code
    VqFormat_ToNative = 0x20,      ///< string sizes: every set but the null value's counts as native
    VqFormat_FromNative = 0x40,    ///< string sizes: the native set counts as the set that it stands for
    VqFormat_Widest = 0x80,        ///< string sizes: room for the longest form in any code set
};

/// Bits of a string comparison operation.
enum VqCmp : unsigned short {
    VqCmp_Exact = 0x10,          ///< the second text is no pattern; in the native set: bytes
    VqCmp_IgnoreCase = 0x20,     ///< case does not decide
    VqCmp_IgnoreAccents = 0x40,  ///< accents do not decide
    VqCmp_Report = 0x80,         ///< write the primary difference found so far through `out`
    VqCmp_KeyOnly = 0x100,       ///< compare key by key, without levels or wildcards
    VqCmp_EndLast = 0x200,       ///< where one text begins with the other, accents and case decide before the length
    VqCmp_Default = 65535,       ///< the class-wide default operation
};

/// The language byte, and with language 0 the code-set byte, of the null string.
constexpr unsigned char VqNullMark = 254;

/// Type identifiers: the row of each type in the descriptor table, and what objects on disk say of their members.
enum VQTM_TYPE VqTypeId : char {
    VqTypeId_char = 0,              ///< 8 bits with sign, one character
    VqTypeId_short = 1,             ///< 16 bits with sign
    VqTypeId_long = 2,              ///< 32 bits with sign, on every target
    VqTypeId_double = 3,            ///< IEEE 754 binary64
    VqTypeId_float = 4,             ///< IEEE 754 binary32
    VqTypeId_VqWord = 5,            ///< 16 bits without sign
    VqTypeId_VqDWord = 6,           ///< 32 bits without sign
    VqTypeId_int = 7,               ///< 32 bits with sign
    VqTypeId_unsigned = 8,          ///< 32 bits without sign
    VqTypeId_enum = 9,              ///< the value of an enumeration, kept as an int
    VqTypeId_VqByte = 10,           ///< 8 bits without sign
    VqTypeId_VqString = 11,         ///< a text with code set and language (vqstring.h)
    VqTypeId_VqDate = 12,           ///< a date (date.h)
    VqTypeId_VqTime = 13,           ///< a time of day (date.h)
    VqTypeId_BlockId = 14,          ///< the number of a storage block
    VqTypeId_VqObjId = 15,          ///< an object's identifier (objid.h)
    VqTypeId_VqClassId = 16,        ///< a class and its version (objid.h)
    VqTypeId_VqRef = 17,            ///< a reference to an object (ref.h)
    VqTypeId_VqBlob = 18,           ///< bytes of any number (blob.h)
    VqTypeId_VqDateTime = 19,       ///< a date and a time of day (datetime.h)
    VqTypeId_VqIString = 20,        ///< an 8-bit text (vqistring.h)
    VqTypeId_VqCaseIString = 21,    ///< an 8-bit text whose case does not decide
    VqTypeId_d_Date = 22,           ///< a standard date (stddate.h)
    VqTypeId_d_Time = 23,           ///< a standard time
    VqTypeId_d_Timestamp = 24,      ///< a standard timestamp
    VqTypeId_d_Interval = 25,       ///< a length of time
    VqTypeId_VqInt64 = 26,          ///< 64 bits with sign (vqint64.h)
    VqTypeId_VqBoolean = 27,        ///< false, true or null (boolean.h)
    VqTypeId_VqNull_char = 28,      ///< a nullable char (vqnull.h)
    VqTypeId_VqNull_uchar = 29,     ///< a nullable VqByte
    VqTypeId_VqNull_short = 30,     ///< a nullable short
    VqTypeId_VqNull_ushort = 31,    ///< a nullable VqWord
    VqTypeId_VqNull_int = 32,       ///< a nullable int
    VqTypeId_VqNull_unsigned = 33,  ///< a nullable unsigned
    VqTypeId_VqNull_long = 34,      ///< a nullable long
    VqTypeId_VqNull_ulong = 35,     ///< a nullable VqDWord
    VqTypeId_VqNull_float = 36,     ///< a nullable float
    VqTypeId_VqNull_double = 37,    ///< a nullable double
    VqTypeId_VqNull_VqInt64 = 38,   ///< a nullable VqInt64
    VqTypeId_VqSeal = 39,           ///< an object's seal (seal.h)
    VqTypeId_illegal = 40,          ///< stands for every identifier without a row
};

/// Number of rows of the current descriptor table.
constexpr int VqTypeCount = 41;

#endif
