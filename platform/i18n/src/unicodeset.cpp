#include "unicodeset.h"

#include <cstring>

#include "keytable.h"

namespace vq {
namespace {

#include "../data/generated/unicodecharacters.inc"

std::uint8_t PropertiesOf(unsigned short unit) { return propertyPages[propertyIndex[unit >> 8]][unit & 255]; }

// Latin and its extensions; most texts that are not of another script stay within.
constexpr unsigned short LatinEnd = 0x250;

using LatinKeys = std::array<std::int32_t, LatinEnd>;

constexpr LatinKeys KeysOf(std::size_t place) {
    LatinKeys keys{};
    for (unsigned short unit = 0; unit < LatinEnd; ++unit) {
        unsigned short orders[2] = {};
        keys[unit] = OrdersOfUnit(unit, place, orders) == 1 ? ReadyKey(unit, orders[0], place) : CloserLook;
    }
    return keys;
}

template <std::size_t Place>
constexpr LatinKeys latinKeysOf = KeysOf(Place);

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
    return OrdersOfUnit(code, CollationPlace(language), orders);
}

VqKeyTable UnicodeCodeSet::GetKeyTable(unsigned char language) const {
    const std::size_t place = CollationPlace(language);
    return {latinKeys[place], LatinEnd, wideOrders[place].contractionCount != 0};
}

int UnicodeCodeSet::GetContraction(const unsigned short codes[VqMaxContraction], unsigned char language,
                                   unsigned short orders[2]) const {
    return FindContraction(wideOrders[CollationPlace(language)], codes, orders);
}

std::uint32_t OrderVersion() { return orderVersion; }

}  // namespace vq
