// The library's option block, on the ground floor so that values can read what the entry hands out.
#ifndef VQ_OPTIONS_H
#define VQ_OPTIONS_H

#include <cstdint>

namespace vq {

// Bit 0 of the block: numbers in strings are decimal only (`atol`), else any base (`strtol` with base 0).
constexpr std::uint32_t OptionDecimalNumbers = 1;

extern std::uint32_t optionBlock;

}  // namespace vq

#endif
