// Where collation orders lie, as named ranges. The table generator reads the constants from this file.
//
//   0          the zero character         13              a code without a character
//   1..79      spaces                     80..16127       symbols: 80 + symbol code
//   16128..    digits: + 10 * value, bit 0 set for a fraction that begins with the value
//   16384..    letters   Bits 13..12: case    Bits 11..7: accent    Bits 6..2: letter (A is 3)    Bits 1..0: extension
//   32768..    ideographs, syllables, surrogates and private use units, by the constants below
#ifndef VQ_ORDERLAYOUT_H
#define VQ_ORDERLAYOUT_H

namespace vq {

constexpr unsigned short UndefinedOrder = 13;
constexpr unsigned short SymbolBase = 80;
constexpr unsigned short DigitBase = 0x3F00;
constexpr unsigned short LetterBase = 0x4000;
constexpr unsigned short LowerCase = 0x1000;
constexpr unsigned short ContractionAccent = 0x0F80;  // of several characters that sort like a single one
constexpr unsigned short IdeographBase = 0x8000;

// Orders that no character has stand in the tables for what takes more than one look.
constexpr unsigned short WidePairOrder = 16;  // two orders, in the list of pairs
constexpr unsigned short RuleOrder = 17;      // the orders follow from the code, as below
constexpr unsigned short MarkEnd = 32;        // what lies from 16 up to here is such a mark

// Ideographs keep the order of their codes, block after block.
constexpr unsigned short ExtensionAFirst = 0x3400;
constexpr unsigned short ExtensionAEnd = 0x4DC0;
constexpr unsigned short ExtensionAOrder = 0x8000;
constexpr unsigned short UnifiedFirst = 0x4E00;
constexpr unsigned short UnifiedEnd = 0xA000;
constexpr unsigned short UnifiedOrder = 0x99C0;
constexpr unsigned short CompatibilityFirst = 0xF900;
constexpr unsigned short CompatibilityEnd = 0xFB00;
constexpr unsigned short CompatibilityOrder = 0xF5A0;

// Hangul: one order for leading consonant and vowel; a final consonant adds a second one that is above every first
// order, so that a syllable with a final sorts behind all texts that begin with the syllable without it.
constexpr unsigned short HangulFirst = 0xAC00;
constexpr unsigned short HangulEnd = 0xD7A4;
constexpr unsigned short HangulFinals = 28;
constexpr unsigned short HangulOrder = 0xEBC0;
constexpr unsigned short HangulFinalOrder = 0xFFE3;  // + 1..27

// A surrogate sorts by its value. A private use unit takes two orders: its 256-unit block, then its place in it.
constexpr unsigned short SurrogateFirst = 0xD800;
constexpr unsigned short SurrogateEnd = 0xE000;
constexpr unsigned short SurrogateOrder = 0xED80;
constexpr unsigned short PrivateFirst = 0xE000;
constexpr unsigned short PrivateEnd = 0xF900;
constexpr unsigned short PrivateOrder = 0xF580;
constexpr unsigned short PrivateTrailOrder = 0xFEE0;

// U+FFFF stands for no character in a text. It sorts last, behind second orders too, so that a range of texts has an
// end: whatever begins with "abc" lies before "abc" and one of these.
constexpr unsigned short LastUnit = 0xFFFF;
constexpr unsigned short LastOrder = 0xFFFF;

}  // namespace vq

#endif
