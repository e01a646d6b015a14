/// \file
/// VqStrCmp: the one comparison of two texts by which strings are ordered and matched.
///
/// In the native code set (both codes 0) texts compare by bytes. In every other set each text gives collation orders
/// (VqStringIterator), and these compare by levels:
///
///   letters   The first difference decides: which letter, symbol, digit or ideograph it is, without case and accent.
///             Where one text ends first, it sorts first.
///   accents   The last difference in the texts decides: côte sorts before coté, as French dictionaries have it.
///   case      The first difference decides, with its sign reversed: the tables order upper case first, the result
///             puts lower case first.
///
/// The results order texts of one collation class. Texts of different classes are apart at the first letter.
#ifndef STRCOMPARE_H
#define STRCOMPARE_H

#include "vqdefs.h"

/// Compares two texts in their code sets and languages; returns a negative value, 0 or a positive value.
///
/// A null string (language 254, or code set 254 with language 0) equals another one and sorts before all others;
/// without VqCmp_Exact and VqCmp_KeyOnly a null first text is matched like any text. A null pointer is an empty text;
/// among native bytes it sorts before every text that is not empty. Code set 254 with another language reads as
/// Unicode.
///
/// `n` limits the comparison to the first n characters of each text, as if both ended there; a letter written with
/// several characters that the limit cuts is single characters. 0 makes all texts equal, -1 takes the whole texts, and
/// any other negative value is a count above 32767 (n + 65536). With VqCmp_KeyOnly n counts pairs of orders, of which a
/// character that sorts as two takes two. `order` is the byte order of 2-byte characters (2: high
/// byte first, any other: the machine's own).
///
/// `op` is a set of VqCmp bits:
/// - VqCmp_Exact: the second text is literal. Without it (and without VqCmp_KeyOnly) it is a pattern, and 0 means that
///   the whole first text matches: '*' is any run of characters, '?' any one collation order, and a character behind
///   the escape character, where one is set, stands for itself (see VqString::SetEscape; at the end of a pattern the
///   escape character stands for itself). A part behind a '*' must agree with the text on every level that counts;
///   in front of the first '*', accents and case that differ decide the result. Native patterns know '*' and '?' alone,
///   and match a text whose first n bytes match.
/// - VqCmp_IgnoreCase, VqCmp_IgnoreAccents: that level does not decide.
/// - VqCmp_KeyOnly: the first orders that differ at all decide, whatever the level; no wildcards.
/// - VqCmp_EndLast: where one text begins with the other, accents and case decide before the length does. Made for
///   looking at beginnings: it is no order to sort by.
/// - VqCmp_Report: `*out` (when not null) receives the difference at the letter level of each pair of orders that lies
///   within n characters of both texts, so in the end that of the last such pair: 0 says that the texts agree as far as
///   they were compared. With a pattern it tells of the place at which the part behind the last '*' was laid last.
///   Nothing is written for native bytes, nulls, n = 0 and VqCmp_KeyOnly.
///
/// Reentrant, and allocates nothing. A comparison takes time in proportion to the texts, a pattern at most to the
/// product of both lengths, however many '*' it has.
VQTM_API int VqStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1, unsigned char codeSet2,
                      unsigned char language2, const char* text2, unsigned short op, short n, unsigned char order,
                      int* out);

#endif
