/// \file
/// Code sets: what a character code means, which other character is its other case, and where it sorts.
///
/// A code set is a numbered set of character codes. Sets below VqFirstWideCodeSet have 1-byte codes, sets from there up
/// have codes of one 16-bit unit. All objects are constant, live as long as the library and may be used by any number
/// of threads.
#ifndef VQCODESET_H
#define VQCODESET_H

#include <cstddef>
#include <cstdint>

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

/// The most characters that sort as one letter (Hungarian dzs).
constexpr int VqMaxContraction = 3;

/// Ready comparison keys of a collation class in a set, by code (VqCollationKey of the order). Belongs to the library.
struct VqKeyTable {
    /// keys[0] is 0. A negative key says to look closer: the character sorts as two (GetOrders), or can begin letters
    /// that are written with several characters (GetContraction). In the second case its key by itself is what remains
    /// without the sign bit, which is then 0x01000000 at least. Null when there are no entries.
    const std::int32_t* keys;
    /// Codes below this have an entry: 256 in sets of 1-byte characters, the Latin blocks (0x250) in Unicode, 0 in
    /// other sets of 2-byte characters.
    unsigned count;
    /// Letters of the class are written with several characters; every character of one but the last has a negative
    /// key.
    bool contractions;
};

/// One code set. The first virtual operation is the one that comparison and hashing ask for; it stays first.
class VQI18N_TYPE VqCodeSet {
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
    /// 13 is that of a code without a character, which so counts as a space. U+FFFF, which has no character either, has
    /// 65535 as in the orders, is no space, and has no properties.
    virtual unsigned short GetClass(unsigned short code) const = 0;
    /// The property bits of `code` (VqCharProperty_…).
    virtual unsigned short GetProperties(unsigned short code) const = 0;

    /// The upper-case partner of `code` within this set, or `code` itself when it has none here.
    virtual unsigned short ToUpper(unsigned short code) const = 0;
    /// The lower-case partner of `code` within this set, or `code` itself when it has none here.
    virtual unsigned short ToLower(unsigned short code) const = 0;

    /// The collation orders of `code` in `language`: writes one order, or two for a character that sorts as two, and
    /// returns how many. Order 0 belongs to the zero character alone; 13 is the order of a code without a character;
    /// 65535, which sorts last, that of U+FFFF alone, in sets that have it.
    virtual int GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const = 0;

    /// The ready keys of the set's first codes in `language`; they agree with GetOrders.
    virtual VqKeyTable GetKeyTable(unsigned char language) const = 0;
    /// Letters that are written with several characters (ch in Czech). `codes` are the next VqMaxContraction codes of
    /// the text, 0 from its end on. Returns how many of them (2 or 3) are one such letter, and writes its orders: one
    /// or two, the second 0 where there is one. Returns 0 when the first code stands by itself.
    virtual int GetContraction(const unsigned short codes[VqMaxContraction], unsigned char language,
                               unsigned short orders[2]) const = 0;

    /// ToUnicode for a whole text: the units of the `n` characters at `text`. Characters of 2 bytes and units lie in
    /// the machine's order at any address; the two areas do not overlap.
    virtual void MapToUnicode(const void* text, std::size_t n, void* units) const = 0;
    /// FromUnicode for a whole text: the codes of the `n` units at `units`, in the set's character size.
    virtual void MapFromUnicode(const void* units, std::size_t n, void* text) const = 0;

  protected:
    ~VqCodeSet() = default;
};

#endif
