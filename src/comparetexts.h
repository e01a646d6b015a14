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

// As VqStrCmp.
int CompareTextsAnyHow(const ComparedText& text1, const ComparedText& text2, unsigned short op, short n,
                       unsigned char order, int* out);

// True for whole literal texts of one known code set and language, which need no closer look.
inline bool IsUsual(const ComparedText& text1, const ComparedText& text2, unsigned short op, short n,
                    unsigned char order) {
    return text1.codeSet == text2.codeSet && text1.language == text2.language && text1.language != VqNullMark &&
           text1.codeSet != 0 && text1.codeSet != VqNullMark && text1.text != nullptr && text2.text != nullptr &&
           (op & ~(VqCmp_IgnoreCase | VqCmp_IgnoreAccents)) == VqCmp_Exact && n == -1 && order != OrderHighFirst;
}

// As VqStrCmp. Where both sizes are known, blocks of bytes are compared at once.
inline int CompareTexts(const ComparedText& text1, const ComparedText& text2, unsigned short op, short n,
                        unsigned char order, int* out) {
    if (!IsUsual(text1, text2, op, n, order)) return CompareTextsAnyHow(text1, text2, op, n, order, out);
    const VqCodeSet& set = CodeSetOf(text1.codeSet);
    const VqKeyTable table = set.GetKeyTable(text1.language);
    const ReadyTexts texts = {text1.text, text2.text, std::min(text1.size, text2.size), &set, text1.language};
    if (CharSizeOf(text1.codeSet) == 1) return CompareReadyBytes(texts, table, op);
    return CompareReadyUnits(texts, table, op);
}

}  // namespace vq

#endif
