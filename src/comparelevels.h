// Comparison of two texts by levels, key by key: any code sets, expansions, contractions and patterns.
#ifndef VQ_COMPARELEVELS_H
#define VQ_COMPARELEVELS_H

#include "keyreader.h"
#include "vqcollation.h"
#include "vqdefs.h"

namespace vq {

// The bits of a key that decide under an operation.
constexpr std::int32_t KeyMask(unsigned short op) {
    if (op & VqCmp_KeyOnly) return ~0;
    return ~((op & VqCmp_IgnoreCase ? VqKeyCaseBits : 0) | (op & VqCmp_IgnoreAccents ? VqKeyAccentBits : 0));
}

// What the pairs of keys so far say on each level.
struct Levels {
    std::int32_t primary = 0;
    std::int32_t accent = 0;        // the last difference
    std::int32_t caseReversed = 0;  // the first difference, with its sign reversed
    std::int32_t end = 0;           // one text begins with the other, and that decides last

    // Takes in one pair.
    void Note(std::int32_t key1, std::int32_t key2) {
        primary = (key1 & VqKeyPrimaryMask) - (key2 & VqKeyPrimaryMask);
        if (caseReversed == 0) caseReversed = (key2 & ~VqKeyAccentBits) - (key1 & ~VqKeyAccentBits);
        if (const std::int32_t difference = (key1 & ~VqKeyCaseBits) - (key2 & ~VqKeyCaseBits)) accent = difference;
    }
    int Result(unsigned short op) const {
        if (primary != 0) return primary;
        if (accent != 0 && !(op & VqCmp_IgnoreAccents)) return accent;
        if (caseReversed != 0 && !(op & VqCmp_IgnoreCase)) return caseReversed;
        return end;
    }
};

// Compares level by level; `before` is what already compared texts in front said. With VqCmp_Report the primary
// difference of each pair goes to `out`, which may be null.
int CompareLevels(KeyReader text1, KeyReader text2, Levels before, unsigned short op, int* out);

// Matches a text with a pattern. Keeps one place to go back to, whatever the number of '*': time is at most the product
// of both lengths, memory constant.
int MatchLevels(const KeyReader& text, const KeyReader& pattern, unsigned char patternClass, unsigned short op,
                int* out);

// The difference of the first keys that differ among so many pairs.
int CompareKeys(KeyReader text1, KeyReader text2, std::size_t pairs);

}  // namespace vq

#endif
