/// \file
/// VqChar: one character, free or in its place in a string.
///
/// A free character is a code with a code set and a language. A character in its place reads and writes the string that
/// it was taken from: assigning to it writes into the string, mapped into the string's code set. It stays bound to its
/// place when the string changes; a place that has gone reads as zero and takes no writes.
#ifndef VQCHAR_H
#define VQCHAR_H

#include "vqdefs.h"

class VqString;

/// One character, by value or by place.
class VQTM_API VqChar {
  public:
    /// A free character.
    VqChar(unsigned short code, unsigned char codeSet, unsigned char language);
    /// The free character `c` in the default 8-bit code set and the default language.
    VqChar(char c);
    /// The free character `c` in the default 16-bit code set and the default language.
    VqChar(unsigned short c);
    /// The character at byte `offset` of `string`.
    VqChar(VqString& string, int offset);
    /// The same place, or the same free character.
    VqChar(const VqChar& other) = default;

    /// Takes the other's character, mapped into this one's code set ('?' when that set lacks it). In a string, the zero
    /// character at the end is not overwritten.
    VqChar& operator=(const VqChar& other);
    /// The same from a free character of the default 8-bit or 16-bit code set.
    /// @{
    VqChar& operator=(char c) { return *this = VqChar(c); }
    VqChar& operator=(unsigned short c) { return *this = VqChar(c); }
    /// @}

    /// The character's code in its code set; 0 for a place that has gone.
    unsigned short GetCode() const;
    /// The code set's number, 0 for the native set; 255 for a place that never was.
    unsigned char GetCodeSet() const { return codeSet_; }
    /// The language's number.
    unsigned char GetLanguage() const { return language_; }
    /// The code that this character has in `codeSet`: '?' when that set lacks it.
    unsigned short GetCodeIn(unsigned char codeSet) const;

    /// Equal characters: the same code in the same set, else the same Unicode character.
    bool operator==(const VqChar& other) const;
    /// Not equal.
    bool operator!=(const VqChar& other) const { return !(*this == other); }

    // Properties, from the code set's tables.

    /// The class value: below 80 spaces, 80 to 16127 symbols, 16128 to 16383 digits, then letters and ideographs.
    unsigned short GetClass() const;
    /// White space, the zero character, or a code without a character other than U+FFFF: class value below 80.
    bool IsSpace() const;
    /// A decimal digit of any script.
    bool IsDigit() const;
    /// A letter of any script, ideographs included.
    bool IsAlpha() const;
    /// A letter or a digit.
    bool IsAlnum() const;
    /// An upper-case letter.
    bool IsUpper() const;
    /// A lower-case letter.
    bool IsLower() const;
    /// Punctuation or a symbol.
    bool IsPunct() const;
    /// A control character.
    bool IsControl() const;

    /// The character in that case, as a free character; itself when the code set has no partner for it.
    /// @{
    VqChar ToUpper() const;
    VqChar ToLower() const;
    /// @}

  private:
    VqString* string_ = nullptr;  // null for a free character
    int offset_ = 0;              // bytes
    std::uint16_t code_ = 0;      // of a free character
    std::uint8_t codeSet_ = 0;
    std::uint8_t language_ = 0;
};

#endif
