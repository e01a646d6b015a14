/// \file
/// Code sets: what a character code means, which other character is its other case, and where it sorts.
///
/// A code set is a numbered set of character codes. Sets below VqFirstWideCodeSet have 1-byte codes, sets from there up
/// have codes of one 16-bit unit. All objects are constant, live as long as the library and may be used by any number
/// of threads.
#ifndef VQCODESET_H
#define VQCODESET_H

#include "vqi18ndefs.h"

/// The first number of the sets with 2-byte characters.
constexpr unsigned char VqFirstWideCodeSet = 225;

/// Property bits of a character, from its general category in the Unicode Character Database.
enum VqCharProperty : unsigned short {
    VqCharProperty_Space = 0x01,    ///< white space, and the zero character
    VqCharProperty_Digit = 0x02,    ///< a decimal digit (category Nd)
    VqCharProperty_Upper = 0x04,    ///< an upper-case letter
    VqCharProperty_Lower = 0x08,    ///< a lower-case letter
    VqCharProperty_Letter = 0x10,   ///< any letter or ideograph (categories L*)
    VqCharProperty_Control = 0x20,  ///< a control character (category Cc)
    VqCharProperty_Punct = 0x40,    ///< punctuation or symbol (categories P*, S*)
};

/// One code set. The first virtual operation is the one that comparison and hashing ask for; it stays first.
class VQI18N_API VqCodeSet {
  public:
    /// The collation class byte of `language` in this set: texts whose classes are equal share one order. From 1 to
    /// 127; an unknown language has the neutral class.
    virtual unsigned char GetCollationClass(unsigned char language) const = 0;

    /// The code of this set, 1 to 253.
    virtual unsigned char GetCode() const = 0;
    /// The set's usual name, for example "Windows-1252". Static text.
    virtual const char* GetName() const = 0;
    /// Bytes of one character: 1 or 2.
    int GetCharSize() const { return GetCode() < VqFirstWideCodeSet ? 1 : 2; }

    /// The Unicode unit of `code`; 0xFFFD for a code that stands for no character in this set.
    virtual unsigned short ToUnicode(unsigned short code) const = 0;
    /// The code of Unicode unit `unit` in this set, or '?' when the set lacks it. 0 stays 0.
    virtual unsigned short FromUnicode(unsigned short unit) const = 0;
    /// True when the set has a code for Unicode unit `unit`.
    virtual bool HasUnicode(unsigned short unit) const = 0;

    /// The class value of `code`, laid out like a collation order of the neutral language: below 80 a space (and the
    /// zero character), 80 to 16127 a symbol, 16128 to 16383 a digit, 16384 to 32767 a letter, 32768 up an ideograph.
    virtual unsigned short GetClass(unsigned short code) const = 0;
    /// The property bits of `code` (VqCharProperty_…).
    virtual unsigned short GetProperties(unsigned short code) const = 0;

    /// The upper-case partner of `code` within this set, or `code` itself when it has none here.
    virtual unsigned short ToUpper(unsigned short code) const = 0;
    /// The lower-case partner of `code` within this set, or `code` itself when it has none here.
    virtual unsigned short ToLower(unsigned short code) const = 0;

    /// The collation orders of `code` in `language`: writes one order, or two for a character that sorts as two, and
    /// returns how many. Order 0 belongs to the zero character alone; 13 is the order of a code without a character.
    virtual int GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const = 0;

  protected:
    ~VqCodeSet() = default;
};

#endif
