/// \file
/// VqIString and VqCaseIString: plain 8-bit texts, ordered by a fixed table of weights for the Latin-1 bytes.
///
/// A text has neither code set nor language. It lies in a buffer of exactly its length and a zero byte; an object
/// without a buffer has the null text, which reads as an empty one. The two classes differ in nothing but their
/// weights:
///
///     VqIString("a")   <  VqIString("A")          lower case just before upper case of the same letter
///     VqCaseIString("a") == VqCaseIString("A")    both cases weigh the same
///     VqIString("\xE9") == VqIString("e")         accents do not count (é), in VqCaseIString by a flag
///     VqIString("\xDF") == VqIString("ss")        ß, Œ and œ weigh like the two letters that they stand for
///
/// Lengths and positions are in bytes; no text is longer than 65535, and what would be longer is cut. Positions and
/// counts outside a text are clipped or ignored as each member says. Nothing here reports an error, except that memory
/// which the platform refuses follows the rule of `new`.
///
/// The order breaks two laws, and indexes depend on it: a text that ends in ß, œ or Œ is equal to every text that only
/// goes on behind the two letters (ß = ss, ß = ssx, yet ss < ssx), so that equality is not transitive; and a null text
/// sorts before an empty one, although a copy of it has an empty text.
///
/// An object belongs to one thread at a time. Pointers into its text are valid until its next change.
#ifndef VQISTRING_H
#define VQISTRING_H

#include <cstdint>
#include <utility>

#include "vqdefs.h"

class MemFile;
class VqString;

/// Flags of an 8-bit string, kept with it on disk.
enum VqIStringFlag : unsigned char {
    VqIStringFlag_Accents = 0x20,  ///< first operand of a VqCaseIString comparison: accents decide
    VqIStringFlag_Raw = 0x80,      ///< compares this side's bytes as they are, without weights
};

namespace vq {

/// What the two classes have in common: the text, and what does not name the class.
class VQTM_API IStringText {
  public:
    // --- Access

    /// Bytes before the zero byte; 0 for the null text.
    unsigned short Len() const;
    /// True for the null text; an empty text in a buffer is none.
    bool operator!() const { return text_ == nullptr; }
    /// The byte at `i`, which is not checked. The text is not null, and `i` is at most Len().
    /// @{
    char& operator[](int i) { return text_[i]; }
    const char& operator[](int i) const { return text_[i]; }
    /// @}

    /// The text with its zero byte, never null: a null text reads as an empty one.
    const char* StrGet() const { return text_ != nullptr ? text_ : ""; }
    /// VqIStringFlag bits. 0 in every new object; assignment from another object copies them.
    unsigned char GetFlags() const { return flags_; }
    /// Replaces the flags.
    void SetFlags(unsigned char flags) { flags_ = flags; }
    /// Takes a copy of the first `n` bytes of `s`, or up to its zero byte; without any the text is null. Flags become
    /// 0.
    void SetText(const char* s, unsigned short n);

    // --- Numbers

    /// The decimal number at the start of the text, as `atol` reads it, within the limits of 32 bits on every target; 0
    /// when there is none.
    operator long() const;
    /// The same number.
    operator int() const;
    /// Its low 16 bits.
    operator short() const;
    /// The number at the start of the text, as `atof` reads it in the C locale.
    operator double() const;

    /// \cond
  protected:
    IStringText() = default;
    IStringText(const IStringText& other);
    explicit IStringText(char c);
    explicit IStringText(const char* s);
    IStringText(const char* s, unsigned short n);
    explicit IStringText(int value);
    explicit IStringText(long value);
    explicit IStringText(unsigned long value);
    explicit IStringText(double value);
    IStringText(IStringText&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    ~IStringText() { delete[] text_; }

    int FindText(const IStringText& s) const;
    void Assign(const IStringText& other);
    void Assign(const char* s);
    void AppendText(const IStringText& s);
    void InsertText(const IStringText& s, unsigned short pos);
    void ReplaceText(const IStringText& s, unsigned short pos);
    void FillText(unsigned short n, char c);
    void ExpandText(unsigned short n, char c);
    void CutText(unsigned short pos, unsigned short n);
    void TakePart(const IStringText& s, unsigned short pos, unsigned short n);
    void Exchange(char from, char to);
    void Map(char (*map)(char));

    static char UpperOf(char c);
    static char LowerOf(char c);

    const char* Text() const { return text_; }
    /// \endcond

  private:
    template <class T>
    void SetNumber(T value);
    void Take(char* text);

    char* text_ = nullptr;  // zero-terminated, owned; null for the null text
    std::uint8_t flags_ = 0;
};

/// The members of both classes. `Own` is the class itself.
template <class Own>
class IStringMembers : public IStringText {
  public:
    // --- Construction. Flags are 0.

    /// The null text.
    IStringMembers() = default;
    /// A copy of the other's text; of a null text an empty one.
    IStringMembers(const IStringMembers& other) : IStringText(other) {}
    /// Takes over the other's text, which becomes null.
    IStringMembers(IStringMembers&& other) noexcept : IStringText(std::move(other)) {}
    /// The one byte `c`; the null text when it is 0.
    IStringMembers(char c) : IStringText(c) {}
    /// A copy of `s`; null and empty give the null text.
    IStringMembers(const char* s) : IStringText(s) {}
    /// A buffer for `n` bytes with those of `s`, at most n, and zeros behind them; the null text when n is 0.
    IStringMembers(const char* s, unsigned short n) : IStringText(s, n) {}
    /// The number in decimal.
    IStringMembers(int value) : IStringText(value) {}
    /// The number in decimal.
    IStringMembers(short value) : IStringText(static_cast<int>(value)) {}
    /// The number in decimal.
    IStringMembers(long value) : IStringText(value) {}
    /// The number in decimal.
    IStringMembers(unsigned long value) : IStringText(value) {}
    /// The number with six decimals, as "%f" prints it.
    IStringMembers(double value) : IStringText(value) {}

    /// Copies text and flags; of a null text the copy is empty.
    IStringMembers& operator=(const IStringMembers& other) {
        Assign(other);
        return *this;
    }

    // --- Editing. Each member but Copy changes this text and returns this object; the flags stay.

    /// Appends the text of `s`. A null text becomes a copy of it.
    Own& operator+=(const Own& s) { return AppendText(s), Self(); }
    /// Inserts the text of `s` before position `pos`, or at the end where that is behind it.
    Own& Insert(const Own& s, unsigned short pos) { return InsertText(s, pos), Self(); }
    /// Overwrites the text from `pos` on with that of `s`. Never lengthens it: what would pass the end is left out.
    Own& Replace(const Own& s, unsigned short pos) { return ReplaceText(s, pos), Self(); }
    /// Sets the first `n` bytes to `c`. A longer text keeps the rest; a shorter one becomes n bytes long.
    Own& Fill(unsigned short n, char c) { return FillText(n, c), Self(); }
    /// Pads on the right with `c` up to a length of `n`; a longer text stays.
    Own& Expand(unsigned short n, char c) { return ExpandText(n, c), Self(); }
    /// Removes `n` bytes from `pos` on, or as many as there are. Without any byte left the text is null.
    Own& Cut(unsigned short pos, unsigned short n) { return CutText(pos, n), Self(); }
    /// A new object with `n` bytes from `pos` on, or as many as there are; the null text when n is 0 or `pos` is behind
    /// the end.
    Own Copy(unsigned short pos, unsigned short n) const {
        Own part;
        static_cast<IStringMembers&>(part).TakePart(*this, pos, n);
        return part;
    }
    /// Every ' ' becomes '0', for numbers kept as text.
    Own& SpaceToZero() { return Exchange(' ', '0'), Self(); }
    /// Every '0' becomes ' '.
    Own& ZeroToSpace() { return Exchange('0', ' '), Self(); }
    /// Upper case of the Latin-1 letters and of œ. Byte 159 (Ÿ) becomes 255 (ÿ), unlike any other letter; stored texts
    /// depend on it.
    Own& ToUpper() { return Map(UpperOf), Self(); }
    /// Lower case likewise, where 255 becomes 159.
    Own& ToLower() { return Map(LowerOf), Self(); }

    // --- Search

    /// The first position at which the bytes of `s` stand, or -1. An empty `s` stands at 0.
    int SubStringPos(const Own& s) const { return FindText(s); }

    // --- Comparison

    /// Compares the whole texts under both objects' flags, by the sign of Own::Compare.
    /// @{
    friend bool operator==(const Own& a, const Own& b) { return Order(a, b) == 0; }
    friend bool operator!=(const Own& a, const Own& b) { return Order(a, b) != 0; }
    friend bool operator<(const Own& a, const Own& b) { return Order(a, b) < 0; }
    friend bool operator>(const Own& a, const Own& b) { return Order(a, b) > 0; }
    friend bool operator<=(const Own& a, const Own& b) { return Order(a, b) <= 0; }
    friend bool operator>=(const Own& a, const Own& b) { return Order(a, b) >= 0; }
    /// @}

    // --- Concatenation

    /// The texts one after the other, with flags 0; of two null texts an empty one.
    friend Own operator+(const Own& a, const Own& b) {
        Own sum(a);
        sum += b;
        return sum;
    }
    /// The same with a plain text; null is a null text.
    /// @{
    friend Own operator+(const Own& a, const char* b) { return a + Own(b); }
    friend Own operator+(const char* a, const Own& b) { return Own(a) + b; }
    /// @}

    /// \cond
  protected:
    ~IStringMembers() = default;
    /// \endcond

  private:
    Own& Self() { return static_cast<Own&>(*this); }
    static int Order(const IStringMembers& a, const IStringMembers& b) {
        return Own::Compare(a.Text(), b.Text(), 0, a.GetFlags(), b.GetFlags());
    }
};

}  // namespace vq

/// Lower case sorts just before upper case of the same letter.
class VQTM_TYPE VqIString : public vq::IStringMembers<VqIString> {
  public:
    using IStringMembers::IStringMembers;
    /// The null text.
    VqIString() = default;
    /// Takes a copy of `s`, null for null and empty; flags become 0.
    VqIString& operator=(const char* s) {
        Assign(s);
        return *this;
    }

    /// Compares two texts by weights: at most `n` weights of each, 0 for all. Null sorts before every text and equals
    /// null; where one text is empty, the other's first byte decides. Returns the difference of the first two weights
    /// (bytes, on a side with VqIStringFlag_Raw) that differ, else 0. The comparison ends with the step in which either
    /// text has no byte left, also when a second weight of its last one has not been looked at.
    VQTM_API static int Compare(const char* a, const char* b, unsigned short n = 0, unsigned char flagsA = 0,
                                unsigned char flagsB = 0);
};

/// Case does not decide.
class VQTM_TYPE VqCaseIString : public vq::IStringMembers<VqCaseIString> {
  public:
    using IStringMembers::IStringMembers;
    /// The null text.
    VqCaseIString() = default;
    /// Takes a copy of `s`, null for null and empty; flags become 0.
    VqCaseIString& operator=(const char* s) {
        Assign(s);
        return *this;
    }

    /// As VqIString::Compare with the weights of this class. With VqIStringFlag_Accents in `flagsA` accents raise the
    /// weights of both texts, and ß, Œ and œ are letters of their own just before s, O and o.
    VQTM_API static int Compare(const char* a, const char* b, unsigned short n = 0, unsigned char flagsA = 0,
                                unsigned char flagsB = 0);
};

// --- Rows of the descriptor table: disk form (see docs/formats.md), the same for both classes

/// Declares the row functions of a class, within this header alone.
#define VQTM_ISTRING_ROW(Name)                                                                                 \
    VQTM_API unsigned long Name##Store(void* dst, const void* src, unsigned char format, unsigned long count); \
    VQTM_API unsigned long Name##Load(void* dst, const void* src, unsigned char format, unsigned long count);  \
    VQTM_API unsigned long Name##NullSizeGet(unsigned long count);                                             \
    VQTM_API unsigned long Name##SizeGet(const void* data, unsigned char dataFormat, unsigned char format,     \
                                         unsigned long count);                                                 \
    VQTM_API unsigned long Name##SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

/// Store writes records of flags, 16-bit count of the text's bytes, text without its zero byte, and returns the bytes
/// written. Load ends a text at its first zero byte, leaves an empty one null, and returns the bytes consumed. The
/// sizes are the disk bytes of `count` texts: NullSizeGet that of empty ones, 3 bytes each; SizeGet of texts in memory
/// form when `dataFormat` has VqFormat_Memory, else of records. SizeGetFromMemFile is that of the records at the file's
/// position, which stays. Where a record would run past the file's end, it and each one after it count as the longest
/// record there is (65538 bytes), so that the sum is larger than what the file has left: that the sum is not is proof
/// that loading reads no byte behind its end.
/// @{
VQTM_ISTRING_ROW(VqIString)
VQTM_ISTRING_ROW(VqCaseIString)
/// @}

#undef VQTM_ISTRING_ROW

#endif
