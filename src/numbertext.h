// Numbers at the start of a text of 1- or 2-byte characters, as the C library's functions read them in the C locale.
// The text ends at a zero character, or at `end` where that is given.
#ifndef VQ_NUMBERTEXT_H
#define VQ_NUMBERTEXT_H

#include <cstdint>

namespace vq {

// As `strtol`: white space, sign, digits of `base` (0: 0x is hexadecimal, a leading 0 octal). Saturates at 32 bits.
std::int32_t ParseLong(const char* text, unsigned charSize, int base, const char* end = nullptr);

// As `atof`: decimal or hexadecimal, "inf" and "nan" in any case; too large is infinite, too small is zero.
double ParseDouble(const char* text, unsigned charSize, const char* end = nullptr);

}  // namespace vq

#endif
