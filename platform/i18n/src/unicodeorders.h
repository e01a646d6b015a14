// The orders of Unicode's characters in every collation class. All of it can be computed while the library is compiled:
// the tables of the 1-byte sets are.
#ifndef VQ_UNICODEORDERS_H
#define VQ_UNICODEORDERS_H

#include <algorithm>
#include <iterator>

#include "codetables.h"
#include "languages.h"

namespace vq {

#include "../data/generated/unicodeorders.inc"

static_assert(std::size(wideOrders) == ClassCount);

constexpr int SyllableOrders(unsigned short unit, unsigned short orders[2]) {
    const int place = unit - HangulFirst, final = place % HangulFinals;
    orders[0] = static_cast<unsigned short>(HangulOrder + place / HangulFinals);
    orders[1] = static_cast<unsigned short>(HangulFinalOrder + final);
    return final != 0 ? 2 : 1;
}

constexpr int PrivateOrders(unsigned short unit, unsigned short orders[2]) {
    const int place = unit - PrivateFirst;
    orders[0] = static_cast<unsigned short>(PrivateOrder + place / 256);
    orders[1] = static_cast<unsigned short>(PrivateTrailOrder + place % 256);
    return 2;
}

constexpr int BlockOrder(int place, unsigned short blockOrder, unsigned short orders[2]) {
    orders[0] = static_cast<unsigned short>(blockOrder + place);
    return 1;
}

constexpr int OrdersByRule(unsigned short unit, unsigned short orders[2]) {
    if (unit < ExtensionAEnd) return BlockOrder(unit - ExtensionAFirst, ExtensionAOrder, orders);
    if (unit < UnifiedEnd) return BlockOrder(unit - UnifiedFirst, UnifiedOrder, orders);
    if (unit < HangulEnd) return SyllableOrders(unit, orders);
    if (unit < SurrogateEnd) return BlockOrder(unit - SurrogateFirst, SurrogateOrder, orders);
    if (unit < PrivateEnd) return PrivateOrders(unit, orders);
    return BlockOrder(unit - CompatibilityFirst, CompatibilityOrder, orders);
}

constexpr int OrdersOfPair(const WideOrders& table, unsigned short unit, unsigned short orders[2]) {
    const OrderPair* const pair =
        std::lower_bound(table.pairs, table.pairs + table.pairCount, unit,
                         [](const OrderPair& entry, unsigned short wanted) { return entry.unit < wanted; });
    orders[0] = pair->orders[0];
    orders[1] = pair->orders[1];
    return 2;
}

// The orders of a unit in the class at that place: writes one or two, and returns how many.
constexpr int OrdersOfUnit(unsigned short unit, std::size_t place, unsigned short orders[2]) {
    const WideOrders& table = wideOrders[place];
    const unsigned short order = orderPages[table.index[unit >> 8]][unit & 255];
    if (!IsMark(order)) {
        orders[0] = order;
        return 1;
    }
    return order == RuleOrder ? OrdersByRule(unit, orders) : OrdersOfPair(table, unit, orders);
}

}  // namespace vq

#endif
