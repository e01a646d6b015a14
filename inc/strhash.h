/// \file
/// Hash codes of texts: over the stored bytes, and over collation orders.
///
/// All three fold their values one after the other: h starts at 0, and every value v makes it h * 9 + v, in 32 bits
/// that wrap. Hashed indexes on disk hold these codes. Nothing is allocated; any number of threads may hash.
#ifndef STRHASH_H
#define STRHASH_H

#include <cstdint>

#include "vqdefs.h"

class VqString;

/// The code of the stored text: its units up to the first zero unit in code set 253, in every other set its bytes up to
/// the first zero byte, where bytes from 128 up count as negative. A text of 2-byte characters in a set other than 253
/// is thus hashed by the bytes before its first zero byte only; stored codes depend on it. 0 for an empty string.
VQTM_API std::uint32_t HashVqString(const VqString& s);

/// The same with the low seven bits of each unit or byte.
VQTM_API std::uint32_t HashVqString7(const VqString& s);

/// The code of a text in a code set and language, over the comparison keys of its collation orders (VqCollationKey):
/// texts that compare equal under the whole comparison have equal codes. In code set 0 over the bytes, without sign:
/// equal codes there and in other sets have nothing to do with each other.
///
/// `text` is zero-terminated; null is an empty text. At most `n` characters count, as if the text ended there; -1 is
/// all. `order` is the byte order of 2-byte characters (2: high byte first, any other the machine's own). A null string
/// (language 254, or code set 254 with language 0) has the code 0xFEFE7575 whatever its text.
VQTM_API std::uint32_t HashString(unsigned char codeSet, unsigned char language, const char* text, short n,
                                  unsigned char order);

#endif
