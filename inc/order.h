/// \file
/// Collation orders taken apart and named, for tools that show why two texts sort as they do.
///
/// A collation order is the 16-bit number that VqStringIterator yields for a character:
///
///     0 .. 79           spaces; 13 is a code without a character, 0 the zero character
///     80 .. 16127       symbols: 80 + symbol code
///     16128 .. 16383    digits: 16128 + 10 * value, and 1 more where more of the number follows (¼)
///     16384 .. 32767    letters   Bits 13..12: case    Bits 11..7: accent    Bits 6..2: letter    Bits 1..0: extension
///     32768 ..          ideographs
///
/// The case is 0 for upper case; letter 3 is A, and so on through the alphabet. In the classes of Russian and Greek the
/// own script takes the first letters and the Latin ones follow, so that letters there have other letters' names. All
/// functions may be called from several threads at once.
#ifndef ORDER_H
#define ORDER_H

#include "vqdefs.h"

class VqString;

/// Writes the symbol code of a symbol's order. Returns 0, or VqStatus_Refused for an order of another kind, which
/// leaves `symbol` as it is.
VQTM_API short VqExtractSymbolFromOrder(unsigned short order, unsigned short& symbol);

/// Writes the value of a digit's order, and 1 to `expand` where more of the number follows, else 0. Returns 0, or
/// VqStatus_Refused for an order of another kind, which leaves both as they are.
VQTM_API short VqExtractDigitFromOrder(unsigned short order, unsigned short& digit, unsigned short& expand);

/// Names an order in English: "lower letter a with accent acute", "digit 7", "symbol !", "space". `collationClass` is
/// that of the text (VqStringIterator::GetCollationClass), its bit 7 without meaning; in class 20 every order is named
/// as an ideograph. A symbol without a name is "symbol ", an accent without one leaves " with ". Returns 0.
VQTM_API short VqConvertOrderToString(unsigned short order, unsigned char collationClass, VqString& text);

/// Finds the character of code set 1 that an order of `collationClass` stands for: the one that has this order alone.
/// An order that only occurs beside another one, as each second order of a character that sorts as two letters, stands
/// for the letter: ß gives s and s, Œ gives O and E. In class 20, which has no letters, it
/// stands for the first character that has it. So the characters found for all orders of a text spell the text,
/// with such letters written out.
///
/// `c` is the character's code. `count` (may be null) receives how many characters of code set 1 have the order, alone
/// or as one of two. `name` (may be null) receives the static English name of a symbol or of a letter's accent, null
/// for orders without one. Returns 0, or VqStatus_Refused when code set 1 has no such character or no language has the
/// class; then `c` and `count` are 0.
VQTM_API short VqConvertOrderToChar(unsigned short order, unsigned char collationClass, unsigned char& c, int* count,
                                    const char** name);

#endif
