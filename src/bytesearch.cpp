#include "bytesearch.h"

#include <algorithm>
#include <atomic>

namespace vq {
namespace {

ByteHit FindChoosing(const unsigned char* text, std::size_t place, std::size_t end, const BytePattern& pattern,
                     ComparisonBudget& budget);

// Constant-initialised, so that other libraries' start-up code may search already.
constinit std::atomic<ByteKernelFunction> findFunction{FindChoosing};

ByteHit FindChoosing(const unsigned char* text, std::size_t place, std::size_t end, const BytePattern& pattern,
                     ComparisonBudget& budget) {
#ifdef VQ_X86_KERNELS
    __builtin_cpu_init();
#endif
    const ByteKernel* kernel = ByteKernels;
    while (!kernel->supported()) ++kernel;
    findFunction.store(kernel->find, std::memory_order_relaxed);
    return kernel->find(text, place, end, pattern, budget);
}

// The last byte that differs from the first one; in a run of one byte, the last.
std::size_t SecondPlace(const unsigned char* pattern, std::size_t length) {
    std::size_t place = length - 1;
    while (place != 0 && pattern[place] == pattern[0]) --place;
    return place != 0 ? place : length - 1;
}

// One that differs from both, as far from them as can be; else one in the middle.
std::size_t ThirdPlace(const unsigned char* pattern, std::size_t length, std::size_t second) {
    const std::size_t middle = second / 2;
    const auto differs = [&](std::size_t place) {
        return pattern[place] != pattern[0] && pattern[place] != pattern[second];
    };
    for (std::size_t i = 0; i <= middle; ++i) {
        if (differs(middle - i)) return middle - i;
        if (middle + i < length && differs(middle + i)) return middle + i;
    }
    return middle;
}

// --- Linear time in the worst case, without memory of its own
//
// Crochemore and Perrin: Two-way string-matching (1991). The pattern is cut in two so that after a mismatch behind the
// cut no place up to there can fit, and after one before it none closer than the pattern's period.

struct Suffix {
    std::size_t start, period;
};

// The largest suffix in the order of the bytes, or in the reversed one, and its period.
Suffix MaximalSuffix(const unsigned char* pattern, std::size_t length, bool reversed) {
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

std::size_t FindLinear(const unsigned char* text, std::size_t start, std::size_t end, const BytePattern& pattern) {
    const unsigned char* const wanted = pattern.bytes;
    const Suffix upward = MaximalSuffix(wanted, pattern.length, false);
    const Suffix downward = MaximalSuffix(wanted, pattern.length, true);
    const auto [cut, cutPeriod] = upward.start > downward.start ? upward : downward;
    const bool periodic = std::memcmp(wanted, wanted + cutPeriod, cut) == 0;
    const std::size_t period = periodic ? cutPeriod : std::max(cut, pattern.length - cut) + 1;
    std::size_t known = 0;  // bytes that are known to fit
    for (std::size_t place = start; place < end;) {
        const unsigned char* const here = text + place;
        std::size_t i = std::max(cut, known);
        while (i < pattern.length && wanted[i] == here[i]) ++i;
        if (i < pattern.length) {
            place += i - cut + 1;
            known = 0;
            continue;
        }
        i = cut;
        while (i > known && wanted[i - 1] == here[i - 1]) --i;
        if (i <= known) return place;
        place += period;
        known = periodic ? pattern.length - period : 0;
    }
    return NotFound;
}

}  // namespace

std::size_t FindBytes(const char* text, std::size_t textLength, std::size_t start, const char* pattern,
                      std::size_t patternLength) {
    if (start > textLength || textLength - start < patternLength) return NotFound;
    if (patternLength == 0) return start;
    if (patternLength == 1) {
        const void* const found = std::memchr(text + start, *pattern, textLength - start);
        return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - text) : NotFound;
    }
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    const auto* const wanted = reinterpret_cast<const unsigned char*>(pattern);
    const std::size_t second = SecondPlace(wanted, patternLength);
    const BytePattern prepared{wanted, patternLength, second, ThirdPlace(wanted, patternLength, second)};
    const std::size_t end = textLength - patternLength + 1;
    ComparisonBudget budget(textLength - start);
    const ByteHit hit = findFunction.load(std::memory_order_relaxed)(bytes, start, end, prepared, budget);
    if (hit.found) return hit.place;
    return hit.place < end ? FindLinear(bytes, hit.place, end, prepared) : NotFound;
}

}  // namespace vq
