/// \file
/// VqStringIterator: walks a text character by character in its code set, and yields collation orders.
///
/// The text is not owned and must outlive the iterator unchanged in its length. The walk ends at the zero character.
#ifndef STRINGITERATOR_H
#define STRINGITERATOR_H

#include "vqchar.h"
#include "vqdefs.h"

class VqCharOperation;
class VqCodeSet;
class VqString;

/// A place in a text, and the text's code set and language.
class VQTM_API VqStringIterator {
  public:
    /// Stands on the first character of `string`.
    explicit VqStringIterator(const VqString& string);
    /// Stands on the first character of `text`; null stands for an empty text. `order` is the byte order of 2-byte
    /// characters: 2 for high byte first, any other for the machine's own.
    VqStringIterator(unsigned char codeSet, unsigned char language, const void* text, unsigned char order = 255);

    /// Stands at the start of `buffer`, `size` bytes that Put can write, and makes it an empty text. A null or too
    /// short buffer takes no character.
    static VqStringIterator ForWriting(unsigned char codeSet, unsigned char language, void* buffer, unsigned long size);

    /// True on the zero character at the end.
    bool IsEnd() const { return GetCode() == 0; }
    /// True on the first character.
    bool IsStart() const { return current_ == start_; }

    /// One character on; stays at the end.
    VqStringIterator& operator++();
    /// One character back; stays at the start.
    VqStringIterator& operator--();

    /// The code of the current character; 0 at the end.
    unsigned short GetCode() const;
    /// The current character, free.
    VqChar Get() const { return VqChar(GetCode(), codeSet_, language_); }

    /// The next collation order; 0 at the end. `advance` 0 only looks. A character that sorts as two gives two orders,
    /// one after the other; several characters that sort as one letter in the language (ch in Czech) give that
    /// letter's. The place moves when the last order of such a group is taken, over all of its characters. Moving by ++
    /// or -- is by single characters, and orders start anew from the new one.
    unsigned short GetNextOrder(int advance);
    /// Ends the orders after the first `characters` characters of the text, as if it ended there: letters written with
    /// several characters do not reach beyond. At the start there is no limit.
    void SetLimit(unsigned long characters);
    /// The collation class byte that the code set gives the language.
    unsigned char GetCollationClass() const { return collationClass_; }

    /// Writes `code` and a zero character behind it, and moves on to that. False, and nothing changes, for a zero code,
    /// where the buffer has no room for both, and when the iterator is not one for writing.
    bool Put(unsigned short code);
    /// Applies `op` to each character from this one to the end, and writes what it gives to `target`, mapped into
    /// target's code set. Stops where `target` has no more room: then false, and the iterator stands on the character
    /// whose result was cut.
    bool Transform(VqStringIterator& target, VqCharOperation& op);

    /// The text's code set as given; 0 is the native one.
    unsigned char GetCodeSet() const { return codeSet_; }
    /// The text's language.
    unsigned char GetLanguage() const { return language_; }
    /// Bytes between the start and the current character.
    unsigned long GetOffset() const { return static_cast<unsigned long>(current_ - start_); }
    /// Characters between the start and the current character.
    unsigned long GetPosition() const { return GetOffset() / charSize_; }

  private:
    unsigned short CodeAhead(unsigned long characters) const;
    void Move(unsigned characters);

    const unsigned char* start_;
    const unsigned char* current_;
    const VqCodeSet* set_;
    unsigned char* end_ = nullptr;        // of the buffer to write; null when reading
    unsigned long limit_ = ~0UL;          // in characters
    std::uint16_t pendingOrder_ = 0;      // second order of the current characters, while their first is used up
    std::uint8_t pendingCharacters_ = 0;  // how many these are
    std::uint8_t codeSet_;
    std::uint8_t language_;
    std::uint8_t charSize_;
    std::uint8_t order_;
    std::uint8_t collationClass_;
    bool contractions_;
};

#endif
