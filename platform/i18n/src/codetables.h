// The shapes of the generated tables, and what both kinds of code set do with them.
#ifndef VQ_CODETABLES_H
#define VQ_CODETABLES_H

#include <cstddef>
#include <cstdint>

#include "orderlayout.h"
#include "vqcodeset.h"

namespace vq {

// A letter that its script counts as one, whatever its order says; beside the VqCharProperty bits.
constexpr std::uint8_t ForeignLetterBit = 0x80;

struct ByteCharacter {
    std::uint16_t unit;  // 0xFFFD: no character
    std::uint8_t upper;
    std::uint8_t lower;
    std::uint8_t properties;
};

// One 1-byte set.
struct ByteSetData {
    std::uint8_t code;
    const char* name;
    const ByteCharacter* characters;
    const std::uint8_t* codePages;  // page of codes for each 256 units
};

struct OrderPair {
    std::uint16_t unit;
    std::uint16_t orders[2];
};

// A letter that is written with several characters: their lower-case text, and the orders of its upper case.
struct Contraction {
    char letters[VqMaxContraction + 1];
    std::uint16_t orders[2];
};

// The orders of all units in one collation class.
struct WideOrders {
    const std::uint8_t* index;  // page of orders for each 256 units
    const OrderPair* pairs;     // by unit, ascending
    std::size_t pairCount;
    const Contraction* contractions;  // the longest first
    std::size_t contractionCount;
};

constexpr bool IsMark(unsigned short order) { return order >= WidePairOrder && order < MarkEnd; }

// A class value from the neutral order and the properties.
constexpr unsigned short ClassOf(unsigned short order, std::uint8_t properties) {
    if (!(properties & ForeignLetterBit) || order >= LetterBase) return order;
    return properties & VqCharProperty_Upper ? LetterBase : LetterBase | LowerCase;
}

}  // namespace vq

#endif
