// The year of stored dates and date-times: their first two bytes, and the only ones that byte order moves.
#ifndef STOREDYEAR_H
#define STOREDYEAR_H

#include <bit>
#include <cstdint>
#include <cstring>

#include "vqdefs.h"

namespace vq {

constexpr bool IsForeignOrder(unsigned char format) {
    const unsigned char order = format & VqFormat_OrderMask;
    return order != VqFormat_Memory && (order == VqFormat_BigEndian) != (std::endian::native == std::endian::big);
}

// A value as one word of the machine, with the bytes of its year exchanged.
template <class Word>
constexpr Word SwapYear(Word value) {
    constexpr int Shift = std::endian::native == std::endian::little ? 0 : 8 * static_cast<int>(sizeof(Word)) - 16;
    constexpr Word LowByte = Word{0xFF} << Shift, HighByte = Word{0xFF00} << Shift;
    return (value & ~(LowByte | HighByte)) | (value & LowByte) << 8 | (value & HighByte) >> 8;
}

// The four bytes of a date; `foreign` where its year changes its byte order.
inline void MoveDate(void* dst, const void* src, bool foreign) {
    std::uint32_t date;
    std::memcpy(&date, src, sizeof date);
    if (foreign) date = SwapYear(date);
    std::memcpy(dst, &date, sizeof date);
}

}  // namespace vq

#endif
