// Searching bytes in time linear in the text, whatever text and pattern hold, without memory.
//
// Crochemore and Perrin: Two-way string-matching (1991). The pattern is cut in two so that after a mismatch behind the
// cut no place up to there can fit, and after one before it none closer than the pattern's period.
#ifndef VQ_TWOWAYSEARCH_H
#define VQ_TWOWAYSEARCH_H

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "linearsearch.h"

namespace vq {

struct Suffix {
    std::size_t start, period;
};

// The largest suffix in the order of the bytes, or in the reversed one, and its period.
inline Suffix MaximalSuffix(const unsigned char* pattern, std::size_t length, bool reversed) {
    Suffix largest{0, 1};
    std::size_t other = 1, fitting = 0;
    while (other + fitting < length) {
        const unsigned char a = pattern[other + fitting], b = pattern[largest.start + fitting];
        if (a == b) {
            if (++fitting == largest.period) {
                other += fitting;
                fitting = 0;
            }
        } else if ((a < b) != reversed) {
            other += fitting + 1;
            fitting = 0;
            largest.period = other - largest.start;
        } else {
            largest = {other++, 1};
            fitting = 0;
        }
    }
    return largest;
}

// The first place from `start` up to, not including, `end` where the `length` bytes of `wanted`, at least 2, lie, or
// NotFound. Each place has that many readable bytes behind.
inline std::size_t FindTwoWay(const unsigned char* text, std::size_t start, std::size_t end,
                              const unsigned char* wanted, std::size_t length) {
    const Suffix upward = MaximalSuffix(wanted, length, false);
    const Suffix downward = MaximalSuffix(wanted, length, true);
    const auto [cut, cutPeriod] = upward.start > downward.start ? upward : downward;
    const bool periodic = std::memcmp(wanted, wanted + cutPeriod, cut) == 0;
    const std::size_t period = periodic ? cutPeriod : std::max(cut, length - cut) + 1;
    std::size_t known = 0;  // bytes that are known to fit
    for (std::size_t place = start; place < end;) {
        const unsigned char* const here = text + place;
        std::size_t i = std::max(cut, known);
        while (i < length && wanted[i] == here[i]) ++i;
        if (i < length) {
            place += i - cut + 1;
            known = 0;
            continue;
        }
        i = cut;
        while (i > known && wanted[i - 1] == here[i - 1]) --i;
        if (i <= known) return place;
        place += period;
        known = periodic ? length - period : 0;
    }
    return NotFound;
}

}  // namespace vq

#endif
