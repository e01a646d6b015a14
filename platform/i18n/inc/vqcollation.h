/// \file
/// Comparison keys: collation orders rearranged so that each level of a comparison is a run of bits.
///
/// Bits 31..24: collation class    Bits 23..8: primary (what kind of character, which letter)    Bit 7: 0
/// Bits 6..5: case    Bits 4..0: accent
///
/// Two texts differ at the primary level where their keys differ above bit 7. Keys are never negative: class bytes are
/// below 128.
#ifndef VQCOLLATION_H
#define VQCOLLATION_H

#include <cstdint>

/// The collation class of languages whose orders are plain numbers: letters have no case and accent of their own there.
constexpr unsigned char VqIdeographicClass = 20;

// The bits of a key by the level that they decide.
constexpr std::int32_t VqKeyCaseBits = 0x60;    ///< those that tell the case
constexpr std::int32_t VqKeyAccentBits = 0x1F;  ///< those that tell the accent
/// All others: the collation class, and what kind of character or which letter it is.
constexpr std::int32_t VqKeyPrimaryMask = ~(VqKeyCaseBits | VqKeyAccentBits);

/// The comparison key of a collation order (VqCodeSet::GetOrders) in a collation class (VqCodeSet::GetCollationClass).
/// Order 0, which also stands for the end of a text, has key 0.
constexpr std::int32_t VqCollationKey(unsigned short order, unsigned char collationClass) {
    if (order == 0) return 0;
    const std::int32_t o = order, top = std::int32_t{collationClass} << 24;
    const bool letter = (o & 0xC000) == 0x4000 && collationClass != VqIdeographicClass;
    if (!letter) return top | o << 8;
    return top | (o & 0x407F) << 8 | (o & 0x3000) >> 7 | (o & 0x0F80) >> 7;
}

/// The order that has that key: the inverse of VqCollationKey. The key must be one that an order has.
constexpr unsigned short VqCollationOrder(std::int32_t key) {
    const std::int32_t o = key >> 8 & 0xFFFF;
    const bool letter = (o & 0xC000) == 0x4000 && key >> 24 != VqIdeographicClass;
    return static_cast<unsigned short>(letter ? o | (key & 0x60) << 7 | (key & 0x1F) << 7 : o);
}

#endif
