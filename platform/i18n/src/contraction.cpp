#include "contraction.h"

namespace vq {
namespace {

bool IsUpper(unsigned short code) { return code >= 'A' && code <= 'Z'; }

// The case of a letter with two characters. Higher cases sort first: ch, cH, Ch, CH.
int CaseOf(unsigned short first, unsigned short last) {
    return (IsUpper(first) ? 0 : 2 * LowerCase) + (IsUpper(last) ? 0 : LowerCase);
}

bool IsSpelled(const Contraction& contraction, const unsigned short codes[VqMaxContraction]) {
    for (int i = 0; i < LengthOf(contraction); ++i) {
        if (codes[i] >= 128 || ToLowerAscii(codes[i]) != contraction.letters[i]) return false;
    }
    return true;
}

// Adds the case of the spelling. A third character that differs in case from the second leaves more forms than there
// are cases: an accent tells them.
void SetCase(const Contraction& contraction, const unsigned short codes[VqMaxContraction], unsigned short orders[2]) {
    const unsigned short first = codes[0], middle = codes[LengthOf(contraction) - 2];
    const unsigned short last = codes[LengthOf(contraction) - 1];
    const bool doubled = contraction.orders[1] != 0;
    const bool mixed = !doubled && LengthOf(contraction) == 3 && IsUpper(middle) != IsUpper(last);
    orders[0] = static_cast<unsigned short>(contraction.orders[0] + CaseOf(first, doubled ? first : last) +
                                            (mixed ? ContractionAccent : 0));
    orders[1] = static_cast<unsigned short>(doubled ? contraction.orders[1] + CaseOf(middle, last) : 0);
}

}  // namespace

int FindContraction(const WideOrders& table, const unsigned short codes[VqMaxContraction], unsigned short orders[2]) {
    for (std::size_t i = 0; i < table.contractionCount; ++i) {
        const Contraction& contraction = table.contractions[i];
        if (!IsSpelled(contraction, codes)) continue;
        SetCase(contraction, codes, orders);
        return LengthOf(contraction);
    }
    return 0;
}

}  // namespace vq
