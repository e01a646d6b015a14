/// \file
/// Numbers that stand in for keys while they are sorted: most keys are told apart by them, without a comparison.
///
/// A hint is never the last word. Where the numbers contradict the manager's comparison, the keys come out of order,
/// which whoever appends them to a tree is told.
#ifndef VQTYPE_STORE_SORTHINT_H
#define VQTYPE_STORE_SORTHINT_H

#include <cstdint>
#include <optional>
#include <vector>

#include "vqcodeset.h"

#include "bytes.h"

namespace store {

/// Words of the letters of stored strings of one code set and language. Of two strings that differ within the letters
/// that a word tells, case and accents aside, the one with the lesser word is in front.
class LetterHint {
  public:
    /// `format` is the byte order of the strings.
    LetterHint(unsigned char codeSet, unsigned char language, unsigned char format);

    /// The word of the letters from number `depth` * LettersOfWord on; those in front of them are known to be the same
    /// in all strings that are compared by it. None of a string in another code set or language.
    std::optional<std::uint64_t> Word(ByteView stored, unsigned depth) const;
    /// True where strings with this word can have more letters, which the next word tells.
    static bool GoesOn(std::uint64_t word) { return (word & Letter) != 0 && (word & Crowd) == 0; }

    static constexpr unsigned LettersOfWord = 9;

  private:
    // A letter is 7 bits of a word, from bit 57 down; bit 0 is not used. An odd number stands for all letters between
    // two that have a number of their own, and ends the word.
    static constexpr unsigned LetterBits = 7;
    static constexpr std::uint64_t Letter = 0xFE, Crowd = 0x02;
    static constexpr std::size_t MostLetters = 60;
    static constexpr unsigned char LookCloser = 0xFF;

    class Writer;

    void ChooseLetters();
    void FillRanks();
    std::uint32_t PrimaryOf(unsigned code) const;
    unsigned char RankOf(std::uint32_t primary) const;
    unsigned CodeAt(const unsigned char* text) const;
    std::size_t AddCloser(Writer& writer, const unsigned char* text, const unsigned char* end) const;

    unsigned char codeSet_, language_, format_, collationClass_;
    const VqCodeSet& set_;
    unsigned charSize_;
    std::vector<std::uint32_t> letters_;  // primaries with numbers of their own, in order
    std::vector<unsigned char> ranks_;    // of codes
};

/// Where a key lies between the least and the greatest of many, by the manager's estimate of how many are less. None
/// where that takes the key for a pattern.
std::optional<std::uint64_t> PlaceBetween(char type, unsigned char format, ByteView key, ByteView least,
                                          ByteView greatest);

}  // namespace store

#endif
