/// \file
/// VqString: a text with a code set and a language.
///
/// A string owns one buffer of exactly its size: the characters, then one zero character. Characters are 1 or 2 bytes
/// wide, chosen by the code set's number alone: below 225 one byte, from 225 up two bytes in the machine's own order.
/// The length is not kept: it is the number of characters before the first zero character. Positions and counts are in
/// characters.
///
/// A string belongs to one thread at a time. Pointers into a string (StrGet) and positions (VqChar) are valid until its
/// next change.
#ifndef VQSTRING_H
#define VQSTRING_H

#include <cstddef>
#include <cstdint>

#include "vqdefs.h"

class VqChar;
class VqCharOperation;

/// One text. Without text it has no buffer; the null value (SetNullValue) has none either.
///
/// Text given by pointer is taken to be in the string's code set as it stands. Null or empty text gives no buffer.
class VQTM_API VqString {
  public:
    /// A count that means all characters, or up to the end.
    static constexpr unsigned short All = 65535;
    /// The largest buffer in bytes, zero character included; what would be longer is reported and cut.
    static constexpr unsigned MaxSize = 65533;

    // --- Construction

    /// Empty, in the default code set and language.
    VqString();
    /// Empty, in the given code set and language.
    VqString(unsigned char codeSet, unsigned char language);
    /// The other's text up to its zero character, in a buffer of its own, with its code set and language.
    VqString(const VqString& other);
    /// Takes over the other's buffer, code set and language; the other is left without a buffer.
    VqString(VqString&& other) noexcept;
    /// The one character `c` in the default 8-bit code set; empty when it is zero.
    VqString(char c);
    /// The one character `c` in the default 16-bit code set; empty when it is zero.
    VqString(unsigned short c);
    /// The text up to its zero character, in the default 8-bit code set.
    VqString(const char* text);
    /// The text up to its zero unit, in the default 16-bit code set.
    VqString(const unsigned short* text);
    /// The first `n` characters of `text`; All means up to the zero character.
    VqString(const char* text, unsigned short n);
    /// The same with 2-byte characters.
    VqString(const unsigned short* text, unsigned short n);
    /// The number in decimal, in the default 8-bit code set.
    VqString(short value);
    /// Likewise.
    VqString(int value);
    /// Prints like an int, so that values from 2147483648 up appear negative: stored texts depend on it.
    VqString(unsigned int value);
    /// The number in decimal; a 64-bit `long` keeps all its digits.
    VqString(long value);
    /// Likewise.
    VqString(unsigned long value);
    /// Fifteen significant digits, as "%.15g" prints them.
    VqString(double value);
    /// Releases the buffer.
    ~VqString();

    /// Releases the buffer; code set and language become 0.
    void Destroy();
    /// The hook by which an object's deactivation releases a string member: Destroy.
    void d_deactivate();
    /// Moves: takes over the other's buffer, size, code set and language, and leaves the other without a buffer but
    /// with its code set and language. A string moved onto itself stays.
    void Destruct(VqString& other);

    // --- Assignment and appending

    /// The other's text, code set and language.
    VqString& operator=(const VqString& other);
    /// Destruct.
    VqString& operator=(VqString&& other) noexcept;
    /// Takes the text in the default 8-bit code set and the default language, whatever the string had before.
    VqString& operator=(const char* text);
    /// The same with the default 16-bit code set.
    VqString& operator=(const unsigned short* text);

    /// Appends the other's text, mapped into this string's code set where they differ.
    VqString& operator+=(const VqString& other);

    /// Appends what the constructor from the same type makes, and returns this string.
    /// @{
    VqString& operator<<(char c);
    VqString& operator<<(const char* text);
    VqString& operator<<(const unsigned short* text);
    VqString& operator<<(const VqString& other);
    VqString& operator<<(short value);
    VqString& operator<<(int value);
    VqString& operator<<(unsigned int value);
    VqString& operator<<(long value);
    VqString& operator<<(unsigned long value);
    VqString& operator<<(double value);
    /// @}

    /// Appends what a double of the same value does.
    VqString& operator<<(float value);
    /// The odd one appends a decimal number into a 1-byte string, one character into a 2-byte string.
    VqString& operator<<(unsigned short value);

    /// Replaces the contents by `n` characters of `text` in `codeSet` (All: up to the zero character), mapped into this
    /// string's code set where they differ. Null text or no characters leave the string without a buffer. `order` is
    /// the byte order of 2-byte characters: 2 for high byte first, 255 and any other for the machine's own.
    void AssignChars(const void* text, unsigned char codeSet, unsigned short n, unsigned char order = 255);
    /// Appends `n` characters of `text` in `codeSet` (All: up to the zero character), mapped into this string's code
    /// set where they differ. Null text or no characters append nothing. The buffer stays where its size does, as when
    /// a text that was emptied through operator[] is written anew.
    void AppendChars(const void* text, unsigned char codeSet, unsigned short n);

    /// \name Editing
    /// Each returns this string. A text in another code set is mapped.
    /// @{

    /// Inserts `text` before position `pos`; nothing happens behind the end.
    VqString& Insert(const VqString& text, unsigned short pos);
    /// Overwrites the characters from `pos` on with those of `text`. Never lengthens the string: what would pass its
    /// end is left out.
    VqString& Replace(const VqString& text, unsigned short pos);
    /// Removes `n` characters from `pos` on; -1, and more than there are, to the end.
    VqString& Cut(unsigned short pos, short n = -1);
    /// Becomes `n` times the character `c` of the default 8-bit code set.
    VqString& Fill(unsigned short n, char c);
    /// The same with a character of the default 16-bit code set.
    VqString& Fill(unsigned short n, unsigned short c);
    /// Pads on the right with `c` up to a length of `n`; a longer string stays.
    VqString& Expand(unsigned short n, char c);
    /// The same with a character of the default 16-bit code set.
    VqString& Expand(unsigned short n, unsigned short c);
    /// Replaces each character by what `op` makes of it (see charoperation.h). The text may grow; past the largest size
    /// it is reported and cut. A string without a buffer stays.
    VqString& Transform(VqCharOperation& op);
    /// Transform by VqUpperCaseOperation, in every code set: ß becomes SS.
    VqString& ToUpper();
    /// Transform by VqLowerCaseOperation.
    VqString& ToLower();
    /// Removes white space (VqChar::IsSpace) at both ends: LeftTrim, then RightTrim.
    VqString& Trim();
    /// Removes white space at the start.
    VqString& LeftTrim();
    /// Removes white space at the end. The first character always stays, so that one of a text of nothing but white
    /// space is left; Trim leaves none.
    VqString& RightTrim();
    /// Replaces every place from `start` on where Find with the default operation finds `from`. The search goes on
    /// behind what was put in, so a `to` that contains `from` is not searched. Each place loses as many characters as
    /// `from` has. An empty `from` is found nowhere. Both arguments are taken as they are at the call: either may be
    /// this string. Where the result is too long, each replacement that passes the largest size is reported and cut.
    VqString& ReplaceAll(const VqString& from, const VqString& to, unsigned short start = 0);
    /// The same with one character each, of the default 8-bit code set; a zero `to` removes.
    VqString& ReplaceAll(char from, char to, unsigned short start = 0);
    /// The same with characters of the default 16-bit code set.
    VqString& ReplaceAll(unsigned short from, unsigned short to, unsigned short start = 0);
    /// @}

    // --- Parts

    /// The `n` characters from `pos` on, or as many as there are, in this string's code set and language; -1 is all of
    /// them, any other negative `n` counts as the unsigned number of its bits, which texts above 32767 characters need.
    /// With `pos` at or behind the end the result is empty and in the default 8-bit code set and language.
    VqString Copy(unsigned short pos, short n = -1) const;
    /// The first `n` characters: Copy from 0.
    VqString Left(unsigned short n) const;
    /// The last `n` characters; none are a Copy from the end.
    VqString Right(unsigned short n) const;
    /// One empty string for all, in the native code set and the neutral language.
    static const VqString& EmptyString();

    /// \name Search
    /// Results are the position of the first match at or after `start`, or -1. A position above 32767 comes out
    /// negative: convert to unsigned short, where only 65535 is none.
    /// @{

    /// Searches by VqStrCmp of the text from each position with `pattern`. With VqCmp_Exact in `op`, and with
    /// VqCmp_Default, the pattern is taken as it is and compared over its own length. Any other `op` reads the pattern
    /// as if it ended in '*': the text has to begin with what matches it, wildcards included. VqCmp_Default is the
    /// class-wide operation, whose own bits do not change how the pattern is taken. Nothing is found in or by a string
    /// without a buffer, nor where fewer bytes are left than the pattern has.
    ///
    /// Takes time in proportion to the text, but where VqStrCmp has to decide at many positions: with a pattern that
    /// has a '*' inside, or a letter that sorts as two behind a beginning that fits often, at most its time for each.
    short Find(const VqString& pattern, unsigned short start = 0, unsigned short op = VqCmp_Default) const;
    /// The same with one character of the default 8-bit code set; a zero character is found nowhere.
    short Find(char c, unsigned short start = 0, unsigned short op = VqCmp_Default) const;
    /// The same with one character of the default 16-bit code set.
    short Find(unsigned short c, unsigned short start = 0, unsigned short op = VqCmp_Default) const;
    /// Find from the start.
    short SubStringPos(const VqString& pattern, unsigned short op = VqCmp_Default) const;
    /// @}

    /// Makes VqStrCmp read characters with the first collation order of `c` as any run of characters ('*' at start), as
    /// any one character ('?' at start), or as a mark that takes the next one literally (none at start). A zero
    /// character sets what was there at start. Texts in the native code set always use '*' and '?'. For all strings and
    /// threads.
    /// @{
    static void SetAsterisk(const VqChar& c);
    static void SetQuestion(const VqChar& c);
    static void SetEscape(const VqChar& c);
    /// @}

    // --- Access

    /// Characters before the zero character.
    unsigned short Len() const;
    /// Bytes of the buffer, zero character included; 0 without a buffer.
    unsigned short GetSize() const { return size_; }
    /// True without characters before the zero character.
    bool IsEmpty() const;
    /// IsEmpty.
    bool operator!() const { return IsEmpty(); }
    /// The characters, never null: a string without a buffer gives an empty text of either character size.
    const char* StrGet() const { return buffer_ != nullptr ? buffer_ : "\0\0\0"; }
    /// The character at `i`, through which the string can be written; `i` up to Len(), which is the zero character. Any
    /// other `i` gives a zero character with code set and language 255.
    VqChar operator[](int i);
    /// The same for reading only.
    VqChar operator[](int i) const;

    /// The code set's number; 0 is the native set.
    unsigned char GetCodeSet() const { return codeSet_; }
    /// The language's number; 254 marks the null value.
    unsigned char GetLanguage() const { return language_; }
    /// Relabels the text; nothing else changes.
    void SetLanguage(unsigned char language) { language_ = language; }

    /// \name Numbers
    /// Integers are read as `strtol` with base 0 does (0x: hexadecimal, leading 0: octal), or as `atol` where the
    /// lowest bit of the library's option byte is set. They saturate at the limits of 32 bits on every target. Text
    /// without a number gives 0.
    /// @{

    /// The number at the start of the text.
    operator int() const;
    /// Its low 16 bits.
    operator short() const;
    /// The same as a `long`, of the same 32 bits on every target.
    operator long() const;
    /// The number at the start of the text, as `atof` reads it in the C locale.
    operator double() const;
    /// Reads a decimal number. Returns 0, or -1 with `out` 0 when the text starts with neither a digit nor '-'.
    int Atol(long& out) const;
    /// As Atol with base 0.
    int Strtol(long& out) const;
    /// @}

    // --- Code set

    /// Relabels without touching a byte. VqStatus_Refused when the character sizes differ.
    short SetCodeSetCode(unsigned char codeSet);
    /// Changes the code set; maps the text only where the character sizes differ. Code set 0 maps into the native set.
    /// Always 0.
    short SetCodeSet(unsigned char codeSet);
    /// Maps the text into `codeSet`, also between sets of equal character size. VqStatus_Refused for code set 0.
    short MapToCodeSet(unsigned char codeSet);
    /// Becomes `src`'s text mapped into `codeSet`, with `src`'s language; at most `n` characters, or all for -1.
    /// Returns the low 16 bits of the new size in bytes, or VqStatus_Refused when `src` is this string.
    short CopyMapped(const VqString& src, unsigned char codeSet, short n = -1);

    /// The class-wide defaults (VqLanguageContext holds them and tells which values it takes), read at each
    /// construction; strings that exist stay.
    /// @{
    static unsigned char GetDefaultCodeSet();
    static unsigned char GetDefaultLanguage();
    static unsigned char GetDefault8CodeSet();
    static unsigned char GetDefault16CodeSet();
    static unsigned short GetDefaultCmpOp();
    static void SetDefaultCodeSet(unsigned char codeSet);
    static void SetDefaultLanguage(unsigned char language);
    static void SetDefaultCmpOp(unsigned short op);
    /// @}

    // --- Null

    /// True when the language is 254, or the code set is 254 and the language 0.
    bool IsNullValue() const;
    /// Releases the text and marks the string null (code set 0, language 254). Returns 0.
    int SetNullValue();

    // --- Comparison

    /// Negative, 0 or positive by the collation of both languages (VqStrCmp): at most `n` characters, -1 for all, under
    /// operation `op` (VqCmp bits; VqCmp_Default: the class-wide one).
    int Compare(const VqString& other, short n = -1, unsigned short op = VqCmp_Default) const;
    /// The same object, or no difference under the default operation.
    bool operator==(const VqString& other) const;
    /// Not equal.
    bool operator!=(const VqString& other) const { return !(*this == other); }
    /// By the sign of Compare under the default operation.
    /// @{
    bool operator<(const VqString& other) const { return Compare(other) < 0; }
    bool operator>(const VqString& other) const { return Compare(other) > 0; }
    bool operator<=(const VqString& other) const { return Compare(other) <= 0; }
    bool operator>=(const VqString& other) const { return Compare(other) >= 0; }
    /// @}

    /// Equal key by key; two different languages count as the neutral one.
    bool EqualsIgnoreLanguage(const VqString& other) const;

  private:
    friend class VqChar;
    friend VQTM_API long VqMBS2VqString(const char* text, VqString& out, long n);

    enum SpliceMode { Overwrite = 1, InsertAt = 2, TruncateAndWrite = 3 };
    // One change of contents. Positions and counts are in characters.
    struct Splice {
        SpliceMode mode;
        const void* source;  // may be the string's own buffer
        unsigned char codeSet;
        std::size_t position;  // in this string
        std::size_t start;     // in the source
        std::size_t count;     // taken from the source, and by Overwrite from this string
        std::size_t repeat;    // more than 1: the source's first character so often
        unsigned char order;   // byte order of the source's 2-byte characters
    };

    void SpliceChars(const Splice& splice);
    void ConstructSame(const void* text, std::size_t bytes, unsigned charSize);
    void AssignSame(const void* text, std::size_t bytes, unsigned charSize);
    void AppendToText(const void* text, unsigned char codeSet, unsigned short n);
    void AppendSame(std::size_t head, const void* text, std::size_t bytes, unsigned charSize);
    template <unsigned charSize>
    void ConstructFrom(const void* text, unsigned short n);
    void TakeMapped(const VqString& src, unsigned char codeSet, unsigned short most);
    template <class T>
    void AssignNumber(T value);
    VqString& FillFrom(unsigned short position, unsigned short n, const VqString& character);
    void CutChars(std::size_t position, std::size_t n);
    bool ReplaceAt(const std::uint16_t* places, std::size_t count, std::size_t fromLength, const VqString& to);
    void ReplaceOneByOne(const VqString& from, const VqString& to, std::size_t start);
    unsigned CharSize() const;

    char* buffer_ = nullptr;
    std::uint16_t size_ = 0;
    std::uint8_t codeSet_ = 0;
    std::uint8_t language_ = 0;
};

/// The texts of `a` and `b` one after the other, in a's code set and language.
VQTM_API VqString operator+(const VqString& a, const VqString& b);
/// The same with a plain text, which is in the default 8-bit code set.
/// @{
VQTM_API VqString operator+(const VqString& a, const char* b);
VQTM_API VqString operator+(const char* a, const VqString& b);
/// @}

/// Takes the next item of a separated list: the text from position `pos` up to the next `separator` (Find with the
/// default operation) or the end goes to `item` without white space at its ends, and `pos` moves to the character
/// behind the separator's first. A separator at the very start of the list is skipped. Returns VqStatus_Ok, or
/// VqStatus_NoMoreItems with `item` unchanged.
VQTM_API short VqSplitList(VqString& list, VqString& item, const VqString& separator, unsigned short& pos);

// --- Rows of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` strings to their disk records: 16-bit length of what follows, code set, language, characters, 0x00,
/// 0xFF. A text too long for the 16-bit length is cut to what fits. Returns the bytes written.
VQTM_API unsigned long StringStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` strings in the current or the legacy layout, told apart by the first record's last byte. Returns the
/// bytes consumed. Trusts the lengths: ask StringsFitMemFile about bytes from elsewhere.
VQTM_API unsigned long StringLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` null strings: 6 each.
VQTM_API unsigned long StringNullSizeGet(unsigned long count);
/// Disk bytes of `count` strings, in memory form when `dataFormat` has VqFormat_Memory, else as disk records (current
/// ones when `format` has VqFormat_Widest, else in either layout; the first record decides, as in StringLoad).
VQTM_API unsigned long StringSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                     unsigned long count);
class MemFile;
/// Disk bytes of the `count` records at the file's position, which stays. 65535 for the record that would run past the
/// file's end and for each one after it; records may be that long themselves, so that the number alone is no proof in
/// files of 65535 bytes and more.
VQTM_API unsigned long StringSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

/// True when the `count` strings at the file's position, in either layout, lie within the file: loading them reads no
/// byte behind its end. The position stays.
VQTM_API bool StringsFitMemFile(MemFile* file, unsigned char format, unsigned long count);

/// Store and the sizes for the legacy layout: one 16-bit count of the bytes that follow, then each text as 1-byte
/// characters of the native code set with its zero character. On disk both layouts are measured, since StringLoad reads
/// both; the format's code-set bits mean nothing here.
/// @{
VQTM_API unsigned long LegacyStringStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQTM_API unsigned long LegacyStringSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                           unsigned long count);
VQTM_API unsigned long LegacyStringSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
/// @}

#endif
