// Texts of 16-bit units at any address, and what is ASCII in them many characters at a time.
#ifndef VQ_UNITTEXT_H
#define VQ_UNITTEXT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vq {

inline std::uint16_t UnitAt(const void* units, std::size_t i) {
    std::uint16_t unit;
    std::memcpy(&unit, static_cast<const char*>(units) + 2 * i, sizeof unit);
    return unit;
}

inline void SetUnitAt(void* units, std::size_t i, std::uint16_t unit) {
    std::memcpy(static_cast<char*>(units) + 2 * i, &unit, sizeof unit);
}

// So long that texts with letters beyond ASCII seldom have such a run, and the branch on it is foreseen in all texts.
constexpr std::size_t AsciiStep = 32;

// Writes the AsciiStep bytes at `bytes` as units from place `i` on, if all are ASCII.
inline bool WidenAscii(const unsigned char* bytes, void* units, std::size_t i) {
    unsigned char all = 0;
    for (std::size_t k = 0; k < AsciiStep; ++k) all = static_cast<unsigned char>(all | bytes[k]);
    if (all >= 0x80) return false;
    for (std::size_t k = 0; k < AsciiStep; ++k) SetUnitAt(units, i + k, bytes[k]);
    return true;
}

// Writes the AsciiStep units from place `i` on as bytes, if all are ASCII.
inline bool NarrowAscii(const void* units, std::size_t i, unsigned char* bytes) {
    std::uint16_t all = 0;
    for (std::size_t k = 0; k < AsciiStep; ++k) all = static_cast<std::uint16_t>(all | UnitAt(units, i + k));
    if (all >= 0x80) return false;
    for (std::size_t k = 0; k < AsciiStep; ++k) bytes[k] = static_cast<unsigned char>(UnitAt(units, i + k));
    return true;
}

}  // namespace vq

#endif
