/// \file
/// UTF-8 in and out of VqString.
///
/// The 16-bit side is code set 253; a string in another set is mapped to it, and a text becomes a string of it. UTF-8
/// is read and written in the form of one to six bytes for values up to 2^31 - 1, shortest forms only. Values are kept
/// in 16 bits: of a character beyond U+FFFF the low 16 bits stay, no surrogate pair is made or read, and each surrogate
/// unit is a value of its own with three bytes.
///
/// Nothing here is kept between calls; any number of threads may convert different strings.
#ifndef MULTIBYTE_H
#define MULTIBYTE_H

#include "vqdefs.h"
#include "vqstring.h"

// --- Single characters and plain buffers

/// Decodes the first character of the `n` bytes at `text` into `*out` (its low 16 bits; null `out` only asks for the
/// length). Returns the bytes it takes, 1 to 6; 0 when `text` is null; -1 for a fault: `n` is 0 or above 2^31 - 1, the
/// bytes end too early, a byte is out of place, or the form is longer than the value needs. A zero byte is a character.
VQTM_API int VqMultiByte2WChar(unsigned short* out, const char* text, unsigned int n);

/// Decodes all `n` bytes at `text`, zero bytes included, into at most `outSize` units at `out`. Returns the number of
/// characters in the text, also where they are more than `outSize`; 0 when `text` is null; -1 for a fault, with `out`
/// holding what came before it.
VQTM_API int VqMultiByteStr2WCharStr(unsigned short* out, int outSize, const char* text, unsigned int n);

/// Encodes the value `c` at `out`, which must have room for 3 bytes, and for 6 where `wchar_t` holds more than 16 bits
/// and `c` does. Returns the bytes written; 0 when `out` is null; -1 for a negative `c`.
VQTM_API int VqWChar2MultiByte(char* out, wchar_t c);

// --- UTF-8 into a string

/// The most bytes, less one, that one conversion into a string takes.
constexpr long VqMultiByteLimit = 32768;

/// Makes `out` the text of the `n` bytes of UTF-8 at `text`, in code set 253; its language stays. `text` may lie in
/// `out`. Returns
/// - `n` when all of it was decoded, 0 also for null `text`;
/// - the bytes before a character whose unit is zero: the text ends there;
/// - -1 at a fault (see VqMultiByte2WChar), or for a negative `n`;
/// - -2 when VqMultiByteLimit bytes or more are consumed, whatever follows.
///
/// In each case `out` holds what was decoded so far, and has no buffer when that is nothing. More characters than a
/// string takes are reported and cut, as in every change of a string.
VQTM_API long VqMBS2VqString(const char* text, VqString& out, long n);
/// The same.
VQTM_API long VqMultiByteString2VqString(const char* text, VqString& out, long n);
/// The same for the first `in.Len()` bytes of `in`, whatever its code set. `in` may be `out`.
VQTM_API long VqMultiByteString2VqString(const VqString& in, VqString& out);

// --- A string into UTF-8

/// Writes `text` as UTF-8 to the `size` bytes at `out`, with a zero byte behind it where there is room. Returns the
/// bytes written without the zero byte. Null `out` takes nothing.
///
/// When the text does not fit, the result is minus the bytes that did: whole characters, and no zero byte. Text in a
/// code set below 6 that is ASCII as far as `size` reaches is copied instead: what does not fit is cut, with the result
/// `size`, and all that is left of `out` is filled with zeros. Otherwise the bytes of `out` behind the zero byte, or
/// behind what did fit, are undefined.
VQTM_API long VqString2VqMBS(const VqString& text, char* out, long size);

/// Bytes of UTF-8 that the first `n` characters of `text` take. All of the text counts, whatever `n` but 0 is, when it
/// is ASCII in a code set below 6. Never negative, since every 16-bit value has a form.
VQTM_API long VqMBSLength(const VqString& text, unsigned short n);

/// Sets `out` to a new buffer with the whole of `text` as UTF-8 and a zero byte behind it, and `length` to its bytes
/// without that one. The caller releases the buffer with VqFreeMultiByteString. Returns `length`.
VQTM_API long VqString2MultiByteString(const VqString& text, char*& out, long& length);

/// Releases a buffer of VqString2MultiByteString; null does nothing.
VQTM_API void VqFreeMultiByteString(char* out);

#endif
