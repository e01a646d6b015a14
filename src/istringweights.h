// Weights by which 8-bit strings are ordered, and texts compared by them.
#ifndef VQ_ISTRINGWEIGHTS_H
#define VQ_ISTRINGWEIGHTS_H

#include <climits>
#include <cstdint>

#include "vqistring.h"

namespace vq {

// The weights of all bytes in one order. A byte that sorts as two letters has the weight of the second as well.
struct WeightTable {
    std::uint8_t weight[256];
    std::uint8_t second[256];  // 0: none
    std::uint8_t ready[256];   // the weight, or Expands

    static constexpr std::uint8_t Expands = 255;  // no byte weighs as much
};

extern const WeightTable istringWeights;
extern const WeightTable caseIStringWeights;
extern const WeightTable accentIStringWeights;  // those of VqCaseIString where accents decide

// The table of a VqCaseIString comparison whose first operand has these flags.
inline const WeightTable& CaseWeights(unsigned char flags) {
    return flags & VqIStringFlag_Accents ? accentIStringWeights : caseIStringWeights;
}

// The length of a text of which only its zero byte tells the end.
constexpr unsigned long Terminated = ULONG_MAX;

// A comparison takes in no more.
constexpr unsigned long MaxWeights = 65535;

// A text that ends at its first zero byte, or behind `length` bytes.
struct ByteText {
    const unsigned char* at;
    unsigned long length;
    unsigned char flags;

    unsigned char First() const { return length != 0 ? *at : static_cast<unsigned char>(0); }
};

// The difference of the first two weights that differ among the first `n`, else 0.
int CompareWeights(const WeightTable& table, const ByteText& a, const ByteText& b, unsigned long n);

// The same for a pattern: '*' is any run of characters, '?' any one.
int MatchWeights(const WeightTable& table, const ByteText& text, const ByteText& pattern);

}  // namespace vq

#endif
