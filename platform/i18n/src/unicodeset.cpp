#include "unicodeset.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "keytable.h"
#include "languages.h"

namespace vq {
namespace {

#include "../data/generated/unicodecharacters.inc"
#include "../data/generated/unicodeorders.inc"

std::uint8_t PropertiesOf(unsigned short unit) { return propertyPages[propertyIndex[unit >> 8]][unit & 255]; }

int SyllableOrders(unsigned short unit, unsigned short orders[2]) {
    const int place = unit - HangulFirst, final = place % HangulFinals;
    orders[0] = static_cast<unsigned short>(HangulOrder + place / HangulFinals);
    orders[1] = static_cast<unsigned short>(HangulFinalOrder + final);
    return final != 0 ? 2 : 1;
}

int PrivateOrders(unsigned short unit, unsigned short orders[2]) {
    const int place = unit - PrivateFirst;
    orders[0] = static_cast<unsigned short>(PrivateOrder + place / 256);
    orders[1] = static_cast<unsigned short>(PrivateTrailOrder + place % 256);
    return 2;
}

int BlockOrder(int place, unsigned short blockOrder, unsigned short orders[2]) {
    orders[0] = static_cast<unsigned short>(blockOrder + place);
    return 1;
}

int OrdersByRule(unsigned short unit, unsigned short orders[2]) {
    if (unit < ExtensionAEnd) return BlockOrder(unit - ExtensionAFirst, ExtensionAOrder, orders);
    if (unit < UnifiedEnd) return BlockOrder(unit - UnifiedFirst, UnifiedOrder, orders);
    if (unit < HangulEnd) return SyllableOrders(unit, orders);
    if (unit < SurrogateEnd) return BlockOrder(unit - SurrogateFirst, SurrogateOrder, orders);
    if (unit < PrivateEnd) return PrivateOrders(unit, orders);
    return BlockOrder(unit - CompatibilityFirst, CompatibilityOrder, orders);
}

int OrdersOfPair(const WideOrders& table, unsigned short unit, unsigned short orders[2]) {
    const OrderPair* const pair =
        std::lower_bound(table.pairs, table.pairs + table.pairCount, unit,
                         [](const OrderPair& entry, unsigned short wanted) { return entry.unit < wanted; });
    orders[0] = pair->orders[0];
    orders[1] = pair->orders[1];
    return 2;
}

// Latin and its extensions; most texts that are not of another script stay within.
constexpr std::size_t LatinEnd = 0x250;

using LatinKeys = std::array<std::int32_t, LatinEnd>;

constexpr LatinKeys KeysOf(const WideOrders& orders, unsigned char collationClass) {
    LatinKeys keys{};
    for (std::size_t unit = 0; unit < LatinEnd; ++unit) {
        keys[unit] = ReadyKey(orderPages[orders.index[unit >> 8]][unit & 255], collationClass);
    }
    return keys;
}

template <std::size_t Place>
constexpr LatinKeys latinKeysOf = KeysOf(wideOrders[Place], collationClasses[Place]);

constexpr auto latinKeys = []<std::size_t... Place>(std::index_sequence<Place...>) {
    return std::array<const std::int32_t*, ClassCount>{latinKeysOf<Place>.data()...};
}
(std::make_index_sequence<ClassCount>());

}  // namespace

constinit const UnicodeCodeSet unicodeCodeSet;

void UnicodeCodeSet::MapToUnicode(const void* text, std::size_t n, void* units) const {
    if (n != 0) std::memcpy(units, text, 2 * n);
}

void UnicodeCodeSet::MapFromUnicode(const void* units, std::size_t n, void* text) const {
    if (n != 0) std::memcpy(text, units, 2 * n);
}

unsigned char UnicodeCodeSet::GetCollationClass(unsigned char language) const { return CollationClass(language); }

unsigned short UnicodeCodeSet::GetClass(unsigned short code) const {
    unsigned short orders[2];
    GetOrders(code, 0, orders);
    return ClassOf(orders[0], PropertiesOf(code));
}

unsigned short UnicodeCodeSet::GetProperties(unsigned short code) const {
    return PropertiesOf(code) & ~ForeignLetterBit & 0xFF;
}

unsigned short UnicodeCodeSet::ToUpper(unsigned short code) const {
    return static_cast<unsigned short>(code + upperPages[upperIndex[code >> 8]][code & 255]);
}

unsigned short UnicodeCodeSet::ToLower(unsigned short code) const {
    return static_cast<unsigned short>(code + lowerPages[lowerIndex[code >> 8]][code & 255]);
}

int UnicodeCodeSet::GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const {
    const WideOrders& table = wideOrders[CollationPlace(language)];
    const unsigned short order = orderPages[table.index[code >> 8]][code & 255];
    if (!IsMark(order)) {
        orders[0] = order;
        return 1;
    }
    return order == RuleOrder ? OrdersByRule(code, orders) : OrdersOfPair(table, code, orders);
}

VqKeyTable UnicodeCodeSet::GetKeyTable(unsigned char language) const {
    return {latinKeys[CollationPlace(language)], LatinEnd, false};
}

int UnicodeCodeSet::GetContraction(const unsigned short[VqMaxContraction], unsigned char, unsigned short[2]) const {
    return 0;
}

std::uint32_t OrderVersion() { return orderVersion; }

}  // namespace vq
