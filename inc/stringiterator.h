/// \file
/// VqStringIterator: walks a text character by character in its code set, and yields collation orders.
///
/// The text is not owned and must outlive the iterator unchanged in its length. The walk ends at the zero character.
#ifndef STRINGITERATOR_H
#define STRINGITERATOR_H

#include "vqchar.h"
#include "vqdefs.h"

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

    /// The next collation order: a character that sorts as two gives them one after the other; 0 at the end. `advance`
    /// 0 only looks. Moving by ++ or -- starts the orders of the new character.
    unsigned short GetNextOrder(int advance);
    /// The collation class byte that the code set gives the language.
    unsigned char GetCollationClass() const { return collationClass_; }

    /// The text's code set as given; 0 is the native one.
    unsigned char GetCodeSet() const { return codeSet_; }
    /// The text's language.
    unsigned char GetLanguage() const { return language_; }
    /// Bytes between the start and the current character.
    unsigned long GetOffset() const { return static_cast<unsigned long>(current_ - start_); }
    /// Characters between the start and the current character.
    unsigned long GetPosition() const { return GetOffset() / charSize_; }

  private:
    const unsigned char* start_;
    const unsigned char* current_;
    const VqCodeSet* set_;
    std::uint16_t pendingOrder_ = 0;  // second order of the current character, while its first is used up
    std::uint8_t codeSet_;
    std::uint8_t language_;
    std::uint8_t charSize_;
    std::uint8_t order_;
    std::uint8_t collationClass_;
};

#endif
