// The collation orders at one place of a text: those of one character, or of several that sort as one letter.
#ifndef VQ_ORDERUNIT_H
#define VQ_ORDERUNIT_H

#include "vqcodeset.h"

namespace vq {

struct OrderUnit {
    unsigned short orders[2];  // the second is 0 where there is one; both are 0 at the end
    unsigned characters;       // how many of the text they stand for
};

// `codes` are the next characters of the text, 0 from its end on; only a class with contractions needs more than the
// first.
inline OrderUnit OrdersAt(const VqCodeSet& set, unsigned char language, const unsigned short codes[VqMaxContraction],
                          bool contractions) {
    OrderUnit unit = {{0, 0}, 0};
    if (codes[0] == 0) return unit;
    if (contractions) unit.characters = static_cast<unsigned>(set.GetContraction(codes, language, unit.orders));
    if (unit.characters != 0) return unit;
    unit.characters = 1;
    if (set.GetOrders(codes[0], language, unit.orders) == 1) unit.orders[1] = 0;
    return unit;
}

}  // namespace vq

#endif
