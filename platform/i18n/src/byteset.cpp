#include "byteset.h"

#include <algorithm>

#include "keytable.h"
#include "unittext.h"
#include "vqlanguagecontext.h"

namespace vq {
namespace {

#include "../data/generated/bytecharacters.inc"
#include "../data/generated/byteunits.inc"

constexpr unsigned short NoCharacter = 0xFFFD;
constexpr std::size_t SetCount = std::size(byteSetData);

constexpr bool NumberedFromOne() {
    for (std::size_t i = 0; i < SetCount; ++i) {
        if (byteSetData[i].code != i + 1) return false;
    }
    return true;
}
static_assert(NumberedFromOne());

// Texts are mapped with this in mind.
constexpr bool AreAsciiBelow128() {
    for (const ByteSetData& set : byteSetData) {
        for (unsigned i = 0; i < 128; ++i) {
            if (set.characters[i].unit != i || codePages[set.codePages[0]][i] != i) return false;
        }
    }
    return true;
}
static_assert(AreAsciiBelow128());

constexpr ByteKeys KeysOf(const ByteSetData& set, std::size_t place) {
    ByteKeys table{};
    int pairs = 0;
    for (std::size_t code = 0; code < 256; ++code) {
        const unsigned short unit = set.characters[code].unit;
        unsigned short orders[2] = {UndefinedOrder, 0};
        if (unit == NoCharacter || OrdersOfUnit(unit, place, orders) == 1) {
            table.keys[code] = ReadyKey(unit, orders[0], place);
        } else {
            table.pairs[pairs][0] = orders[0];
            table.pairs[pairs][1] = orders[1];
            table.keys[code] = CloserLook | pairs++;
        }
    }
    return table;
}

template <std::size_t Set, std::size_t Place>
constexpr ByteKeys keysOf = KeysOf(byteSetData[Set], Place);

template <std::size_t Set>
constexpr auto keysOfSet = []<std::size_t... Place>(std::index_sequence<Place...>) {
    return std::array<const ByteKeys*, ClassCount>{&keysOf<Set, Place>...};
}
(std::make_index_sequence<ClassCount>());

constexpr auto byteCodeSets = []<std::size_t... Set>(std::index_sequence<Set...>) {
    return std::array<ByteCodeSet, SetCount>{ByteCodeSet(byteSetData[Set], keysOfSet<Set>.data())...};
}
(std::make_index_sequence<SetCount>());

// The keys of all sets in all classes, without their objects.
constexpr auto keysOfSets = [] {
    std::array<const std::int32_t*, SetCount * ClassCount> all{};
    auto next = all.begin();
    [&]<std::size_t... Set>(std::index_sequence<Set...>) {
        ((next = std::transform(keysOfSet<Set>.begin(), keysOfSet<Set>.end(), next,
                                [](const ByteKeys* table) { return table->keys; })),
         ...);
    }
    (std::make_index_sequence<SetCount>());
    return all;
}();

}  // namespace

unsigned char ByteCodeSet::GetCollationClass(unsigned char language) const { return CollationClass(language); }

unsigned short ByteCodeSet::ToUnicode(unsigned short code) const {
    return code < 256 ? data_.characters[code].unit : NoCharacter;
}

// 0 for the unit 0 and for a unit that the set lacks.
std::uint8_t ByteCodeSet::CodeOf(unsigned short unit) const {
    return codePages[data_.codePages[unit >> 8]][unit & 255];
}

unsigned short ByteCodeSet::FromUnicode(unsigned short unit) const {
    const std::uint8_t code = CodeOf(unit);
    return code != 0 || unit == 0 ? code : '?';
}

void ByteCodeSet::MapToUnicode(const void* text, std::size_t n, void* units) const {
    const auto* const codes = static_cast<const unsigned char*>(text);
    const ByteCharacter* const characters = data_.characters;
    std::size_t i = 0;
    for (std::size_t end; i < n; i = end) {
        end = std::min(i + AsciiStep, n);
        if (end - i == AsciiStep && WidenAscii(codes + i, units, i)) continue;
        for (std::size_t k = i; k < end; ++k) SetUnitAt(units, k, characters[codes[k]].unit);
    }
}

void ByteCodeSet::MapFromUnicode(const void* units, std::size_t n, void* text) const {
    auto* const codes = static_cast<unsigned char*>(text);
    const std::uint8_t* const firstPage = codePages[data_.codePages[0]];
    std::size_t i = 0;
    for (std::size_t end; i < n; i = end) {
        end = std::min(i + AsciiStep, n);
        if (end - i == AsciiStep && NarrowAscii(units, i, codes + i)) continue;
        for (std::size_t k = i; k < end; ++k) {
            const std::uint16_t unit = UnitAt(units, k);
            const std::uint8_t code = unit < 256 ? firstPage[unit] : CodeOf(unit);
            codes[k] = code != 0 || unit == 0 ? code : std::uint8_t{'?'};
        }
    }
}

bool ByteCodeSet::HasUnicode(unsigned short unit) const { return unit == 0 || CodeOf(unit) != 0; }

unsigned short ByteCodeSet::GetClass(unsigned short code) const {
    unsigned short orders[2];
    GetOrders(code, 0, orders);
    return code < 256 ? ClassOf(orders[0], data_.characters[code].properties) : orders[0];
}

unsigned short ByteCodeSet::GetProperties(unsigned short code) const {
    return code < 256 ? data_.characters[code].properties & ~ForeignLetterBit & 0xFF : 0;
}

unsigned short ByteCodeSet::ToUpper(unsigned short code) const {
    return code < 256 ? data_.characters[code].upper : code;
}

unsigned short ByteCodeSet::ToLower(unsigned short code) const {
    return code < 256 ? data_.characters[code].lower : code;
}

int ByteCodeSet::GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const {
    const ByteKeys& table = *keys_[CollationPlace(language)];
    const std::int32_t entry = code < 256 ? table.keys[code] : UndefinedOrder << 8, key = entry & ~CloserLook;
    if (entry >= 0 || key >= MostPairs) {
        orders[0] = VqCollationOrder(key);
        return 1;
    }
    const std::uint16_t(&pair)[2] = table.pairs[key];
    orders[0] = pair[0];
    orders[1] = pair[1];
    return 2;
}

VqKeyTable ByteCodeSet::GetKeyTable(unsigned char language) const {
    const std::size_t place = CollationPlace(language);
    return {keys_[place]->keys, 256, wideOrders[place].contractionCount != 0};
}

int ByteCodeSet::GetContraction(const unsigned short codes[VqMaxContraction], unsigned char language,
                                unsigned short orders[2]) const {
    return FindContraction(wideOrders[CollationPlace(language)], codes, orders);
}

const VqCodeSet* FindByteCodeSet(unsigned char codeSet) {
    const std::size_t i = codeSet - std::size_t{1};
    return i < SetCount ? &byteCodeSets[i] : nullptr;
}

}  // namespace vq

constinit const VqLanguageContext::ByteKeys VqLanguageContext::byteKeys_ = {
    vq::keysOfSets.data(), vq::placeOfLanguage.data(), vq::SetCount, vq::ClassCount};
