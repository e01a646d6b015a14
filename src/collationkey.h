// Comparison keys: a collation order rearranged so that each level is a run of bits.
//
//   Bits 31..24: collation class    Bits 23..8: primary (letter index, extension, kind)
//   Bits 7: 0    Bits 6..5: case    Bits 4..0: accent
#ifndef VQ_COLLATIONKEY_H
#define VQ_COLLATIONKEY_H

#include <cstdint>

namespace vq {

// The class of the languages whose orders are all taken as they are, without letters.
constexpr unsigned char IdeographicClass = 20;

// The key of an order; the end of a text, order 0, has key 0.
constexpr std::int32_t KeyOfOrder(unsigned short order, unsigned char collationClass) {
    if (order == 0) return 0;
    const std::int32_t o = order, top = std::int32_t{collationClass} << 24;
    const bool letter = (o & 0xC000) == 0x4000 && collationClass != IdeographicClass;
    if (!letter) return top | o << 8;
    return top | (o & 0x407F) << 8 | (o & 0x3000) >> 7 | (o & 0x0F80) >> 7;
}

// The orders that patterns read as any run of characters, as any one character, and as a mark before a character that
// stands for itself (0: none). Setting asterisk or question to 0 restores that of '*' or '?'.
unsigned short AsteriskOrder();
unsigned short QuestionOrder();
unsigned short EscapeOrder();
void SetAsteriskOrder(unsigned short order);
void SetQuestionOrder(unsigned short order);
void SetEscapeOrder(unsigned short order);

}  // namespace vq

#endif
