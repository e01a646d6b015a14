#include "strcompare.h"

#include "comparebytes.h"
#include "comparelevels.h"
#include "compareready.h"
#include "comparetexts.h"
#include "textunit.h"
#include "vqcollation.h"

namespace vq {
namespace {

constexpr unsigned short LiteralBits = VqCmp_Exact | VqCmp_KeyOnly;

// Every count but -1 is a number of characters, those of long texts too, which a short holds as negative numbers.
std::size_t LimitFrom(short n) { return n == -1 ? NoLimit : static_cast<unsigned short>(n); }

// True when the ready keys of a code set can serve both texts under the operation.
bool ServedByReadyKeys(const ComparedText& text1, const ComparedText& text2, unsigned short op, std::size_t limit,
                       unsigned char order, const int* out) {
    if (text1.codeSet != text2.codeSet || order == OrderHighFirst) return false;
    if (op & VqCmp_KeyOnly) return limit == NoLimit;
    return (op & (VqCmp_Exact | VqCmp_EndLast)) == VqCmp_Exact && (out == nullptr || !(op & VqCmp_Report));
}

int CompareByReaders(const ComparedText& text1, const ComparedText& text2, unsigned short op, std::size_t limit,
                     unsigned char order, int* out) {
    const KeySource source1(CodeSetOf(text1.codeSet), text1.language, order);
    const KeySource source2(CodeSetOf(text2.codeSet), text2.language, order);
    if (op & VqCmp_KeyOnly) {
        return CompareKeys(KeyReader(source1, text1.text, NoLimit), KeyReader(source2, text2.text, NoLimit), limit);
    }
    const KeyReader keys1(source1, text1.text, limit), keys2(source2, text2.text, limit);
    if (op & VqCmp_Exact) return CompareLevels(keys1, keys2, {}, op, out);
    return MatchLevels(keys1, keys2, source2.collationClass, op, out);
}

// The same text with a pointer.
ComparedText NotNull(const ComparedText& text) {
    return text.text != nullptr ? text : ComparedText{text.codeSet, text.language, emptyText, sizeof emptyText};
}

int CompareCharacters(const ComparedText& text1, const ComparedText& text2, unsigned short op, std::size_t limit,
                      unsigned char order, int* out) {
    if (ServedByReadyKeys(text1, text2, op, limit, order, out)) {
        const VqCodeSet& set = CodeSetOf(text1.codeSet);
        const VqKeyTable table = set.GetKeyTable(text1.language);
        const bool sameKeys = text1.language == text2.language || table.keys == set.GetKeyTable(text2.language).keys;
        if (sameKeys && table.count != 0) return CompareReady(text1.text, text2.text, limit, set, text1.language, op);
    }
    return CompareByReaders(text1, text2, op, limit, order, out);
}

}  // namespace

int CompareTextsAnyHow(ComparedText text1, ComparedText text2, unsigned short op, short n, unsigned char order,
                       int* out) {
    const bool literal = op & LiteralBits;
    const bool null1 = IsNullText(text1.codeSet, text1.language), null2 = IsNullText(text2.codeSet, text2.language);
    if (null2) return null1 ? 0 : 1;
    if (null1 && literal) return -1;
    if (n == 0) return 0;
    const std::size_t limit = LimitFrom(n);
    if (text1.codeSet == 0 && text2.codeSet == 0) {
        return literal ? CompareBytes(text1.text, text2.text, limit) : MatchBytes(text1.text, text2.text, limit);
    }
    return CompareCharacters(NotNull(text1), NotNull(text2), op, limit, order, out);
}

}  // namespace vq

int VqStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1, unsigned char codeSet2,
             unsigned char language2, const char* text2, unsigned short op, short n, unsigned char order, int* out) {
    return vq::CompareTexts({codeSet1, language1, text1, 0}, {codeSet2, language2, text2, 0}, op, n, order, out);
}
