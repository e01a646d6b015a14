// Comparison of two texts of which more may be known than VqStrCmp's arguments tell.
#ifndef VQ_COMPARETEXTS_H
#define VQ_COMPARETEXTS_H

#include <algorithm>
#include <cstddef>

#include "compareready.h"
#include "textunit.h"
#include "vqdefs.h"

namespace vq {

struct ComparedText {
    unsigned char codeSet;
    unsigned char language;
    const char* text;  // null is an empty text
    std::size_t size;  // bytes that may be read, the zero character included; 0: none behind the zero character
};

// As VqStrCmp. Takes its texts by value: with references they would be built in memory for every comparison.
int CompareTextsAnyHow(ComparedText text1, ComparedText text2, unsigned short op, short n, unsigned char order,
                       int* out);

// True for whole literal texts of one known code set and language, which need no closer look. The bytes are compared by
// XOR: as equal members of two structures they would be compared as one word, which waits for stores of single bytes.
inline bool IsUsual(ComparedText text1, ComparedText text2, unsigned short op, short n, unsigned char order) {
    const int apart = (text1.codeSet ^ text2.codeSet) | (text1.language ^ text2.language);
    return apart == 0 && text1.language != VqNullMark && text1.codeSet != 0 && text1.codeSet != VqNullMark &&
           text1.text != nullptr && text2.text != nullptr &&
           (op & ~(VqCmp_IgnoreCase | VqCmp_IgnoreAccents)) == VqCmp_Exact && n == -1 && order != OrderHighFirst;
}

// As VqStrCmp. Where both sizes are known, blocks of bytes are compared at once.
inline int CompareTexts(ComparedText text1, ComparedText text2, unsigned short op, short n, unsigned char order,
                        int* out) {
    if (!IsUsual(text1, text2, op, n, order)) return CompareTextsAnyHow(text1, text2, op, n, order, out);
    const std::size_t readable = std::min(text1.size, text2.size);
    if (CharSizeOf(text1.codeSet) == 1) {
        return CompareUsualBytes(text1.text, text2.text, readable, text1.codeSet, text1.language, op);
    }
    return CompareUsualUnits(text1.text, text2.text, readable, text1.codeSet, text1.language, op);
}

}  // namespace vq

#endif
