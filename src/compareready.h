// Comparison of two texts of one code set and language through its table of ready keys.
#ifndef VQ_COMPAREREADY_H
#define VQ_COMPAREREADY_H

#include <cstddef>

#include "vqcodeset.h"

namespace vq {

// Two literal texts in the machine's byte order whose keys come from one table.
struct ReadyTexts {
    const char* text1;
    const char* text2;
    std::size_t
        readable;  // bytes that may be read of both, zero characters included; 0: none behind the zero characters
    const VqCodeSet* set;
    unsigned char language;
};

// Gives what CompareLevels, or with VqCmp_KeyOnly CompareKeys, gives for the whole texts. The first is for sets of
// 1-byte characters, the second for the others.
int CompareReadyBytes(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op);
int CompareReadyUnits(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op);

// The same for the first `limit` characters.
int CompareReadyBytes(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op, std::size_t limit);
int CompareReadyUnits(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op, std::size_t limit);

}  // namespace vq

#endif
