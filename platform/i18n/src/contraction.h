// Letters that are written with several characters. All of these are of ASCII, so that codes of any set do.
#ifndef VQ_CONTRACTION_H
#define VQ_CONTRACTION_H

#include "codetables.h"

namespace vq {

constexpr unsigned char ToLowerAscii(unsigned short code) {
    return static_cast<unsigned char>(code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code);
}

// How many characters the text of a contraction has.
constexpr int LengthOf(const Contraction& contraction) { return contraction.letters[2] != 0 ? 3 : 2; }

// True when some contraction of the class has the character before its last place.
constexpr bool BeginsContraction(const WideOrders& table, unsigned short code) {
    for (std::size_t i = 0; i < table.contractionCount && code < 128; ++i) {
        const Contraction& contraction = table.contractions[i];
        for (int at = 0; at < LengthOf(contraction) - 1; ++at) {
            if (contraction.letters[at] == ToLowerAscii(code)) return true;
        }
    }
    return false;
}

// See VqCodeSet::GetContraction.
int FindContraction(const WideOrders& table, const unsigned short codes[VqMaxContraction], unsigned short orders[2]);

}  // namespace vq

#endif
