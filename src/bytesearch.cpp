#include "bytesearch.h"

#include <atomic>

#include "twowaysearch.h"

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
    ComparisonBudget budget = ComparisonBudget::ForText(textLength - start);
    const ByteHit hit = findFunction.load(std::memory_order_relaxed)(bytes, start, end, prepared, budget);
    if (hit.found) return hit.place;
    return hit.place < end ? FindTwoWay(bytes, hit.place, end, wanted, patternLength) : NotFound;
}

}  // namespace vq
