#include "bytesearch.h"

#include <atomic>
#include <vector>

#include "linearsearch.h"

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

std::size_t FindLinear(const unsigned char* text, std::size_t start, std::size_t end, const BytePattern& pattern) {
    const PatternBorders borders(std::vector<std::int32_t>(pattern.bytes, pattern.bytes + pattern.length));
    return borders.Find(
        start, end, [text](std::size_t at) { return std::int32_t{text[at]}; }, [](std::size_t, bool) { return true; });
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
    const BytePattern prepared{wanted, patternLength, SecondPlace(wanted, patternLength)};
    const std::size_t end = textLength - patternLength + 1;
    ComparisonBudget budget(textLength - start);
    const ByteHit hit = findFunction.load(std::memory_order_relaxed)(bytes, start, end, prepared, budget);
    if (hit.found) return hit.place;
    return hit.place < end ? FindLinear(bytes, hit.place, textLength, prepared) : NotFound;
}

}  // namespace vq
