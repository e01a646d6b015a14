// Keys of 8-bit strings: their stored header, and the weights that order them.
#ifndef VQ_ISTRINGKEYS_H
#define VQ_ISTRINGKEYS_H

#include <cstdint>

#include "istringweights.h"
#include "vqbase.h"

namespace vq {

// Flags, and the 16-bit length of the text behind them.
struct ByteHeader {
    static constexpr unsigned long Size = 3;

    ByteHeader(const unsigned char* at, unsigned char order) : flags(at[0]) { ShortStore(&length, at + 1, order, 1); }

    std::uint16_t length;
    unsigned char flags;
};

// The table of a comparison whose first operand has these flags.
inline const WeightTable& WeightsOf(const VqIString*, unsigned char) { return istringWeights; }
inline const WeightTable& WeightsOf(const VqCaseIString*, unsigned char flags) { return CaseWeights(flags); }

}  // namespace vq

#endif
