/// \file
/// Sorting many texts of one code set and language in the order of VqStrCmp.
///
/// Comparing two texts finds their collation orders anew each time. A sort compares each text about twenty times, so
/// each is turned once into a key: bits that order the texts as they stand.
#ifndef VQTYPE_TEXTORDER_H
#define VQTYPE_TEXTORDER_H

#include <cstdint>
#include <vector>

#include "vqcodeset.h"

/// Collects texts, then gives their order.
class TextOrder {
  public:
    /// For texts in `codeSet` (0: the native set, whose texts sort by their bytes) and `language`, compared under the
    /// VqCmp_IgnoreCase and VqCmp_IgnoreAccents bits of `op`, none of them a pattern. The code set exists.
    TextOrder(unsigned char codeSet, unsigned char language, unsigned short op);

    /// Makes room for so many texts with so many characters in all.
    void Reserve(std::size_t texts, std::size_t characters);

    /// Takes in a text of `length` characters, 1 or 2 bytes wide as the code set has them, and a zero character behind.
    /// `number` is what the caller calls it by; numbers ascend.
    void Add(std::uint32_t number, const void* text, std::size_t length);

    /// A text in its place.
    struct Place {
        std::uint32_t number;  ///< as given to Add
        bool isFirst;          ///< the first of the texts that compare equal
    };
    /// All texts in order; those that compare equal by their numbers. Call it once.
    std::vector<Place> Sort();

  private:
    struct Entry {
        std::uint64_t word;  // of the key, at the depth that the sort has reached
        std::uint32_t number;
        std::uint32_t start;  // of the key in words_
    };
    // Entries whose keys are equal before the word at `depth`.
    struct Run {
        std::size_t first, last;
        std::size_t depth;
    };
    class BitWriter;

    template <class Code>
    void CollectKeys(const Code* text);
    std::size_t CollectFromIterator(const void* text);
    void CollectBytes(const unsigned char* text);
    void WriteKey();
    void SortRun(const Run& run);
    void SettleEqual(std::size_t first, std::size_t last, std::size_t depth);

    unsigned char codeSet_, language_;
    unsigned charSize_;
    unsigned short op_;
    VqKeyTable table_{};
    std::vector<std::int32_t> keys_;    // of the characters of one text
    std::vector<std::uint64_t> words_;  // of each text how many words its key has, then the key
    std::vector<Entry> entries_;
    std::vector<std::uint8_t> isFirst_;  // of those that compare equal, by place
    std::vector<Run> runs_;              // still to be sorted
};

#endif
