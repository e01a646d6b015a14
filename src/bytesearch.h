// Searching bytes in bytes.
//
// Places where two bytes of the pattern fit are found a vector at a time; there the rest is compared. The two are the
// first byte and the last one that differs from it, so that runs of one byte are passed without comparing. When
// comparisons at such places cost more than walking the text, the search goes on in linear time.
#ifndef VQ_BYTESEARCH_H
#define VQ_BYTESEARCH_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "linearsearch.h"

#if defined(__x86_64__) || defined(__i386__)
#define VQ_X86_KERNELS 1
#include <immintrin.h>
#endif

namespace vq {

struct BytePattern {
    const unsigned char* bytes;
    std::size_t length;  // at least 2
    std::size_t second;  // the place of the second byte to look for
};

// What a kernel found: the pattern lies at `place`, or, when it does not, all places before `place` are settled.
struct ByteHit {
    std::size_t place;
    bool found;
};

// The bytes that may be compared at places where both looked-for bytes fit.
class ComparisonBudget {
  public:
    explicit ComparisonBudget(std::size_t textLength) : left_(4 * std::min(textLength, SIZE_MAX / 8) + 1024) {}
    bool Spend(std::size_t bytes) {
        if (bytes > left_) return false;
        left_ -= bytes;
        return true;
    }

  private:
    std::size_t left_;
};

// Searches the places from `place` up to, not including, `end`; each has the pattern's length of readable bytes behind.
using ByteKernelFunction = ByteHit (*)(const unsigned char* text, std::size_t place, std::size_t end,
                                       const BytePattern& pattern, ComparisonBudget& budget);

inline ByteHit FindBytesPortable(const unsigned char* text, std::size_t place, std::size_t end,
                                 const BytePattern& pattern, ComparisonBudget& budget) {
    const unsigned char first = pattern.bytes[0], second = pattern.bytes[pattern.second];
    for (; place < end; ++place) {
        if (text[place] != first || text[place + pattern.second] != second) continue;
        if (!budget.Spend(pattern.length)) return {place, false};
        if (std::memcmp(text + place, pattern.bytes, pattern.length) == 0) return {place, true};
    }
    return {end, false};
}

#ifdef VQ_X86_KERNELS

// Windows only promises 4 bytes of stack alignment to 32-bit code.
#ifdef __i386__
#define VQ_SEARCH_KERNEL(isa) __attribute__((target(isa), force_align_arg_pointer))
#else
#define VQ_SEARCH_KERNEL(isa) __attribute__((target(isa)))
#endif

// The places of one vector as bits, from which the rest is compared. Returns true when `hit` is the answer.
inline bool TakeCandidates(unsigned bits, const unsigned char* text, std::size_t place, const BytePattern& pattern,
                           ComparisonBudget& budget, ByteHit& hit) {
    for (; bits != 0; bits &= bits - 1) {
        hit.place = place + static_cast<unsigned>(__builtin_ctz(bits));
        if (!budget.Spend(pattern.length)) return true;
        hit.found = std::memcmp(text + hit.place, pattern.bytes, pattern.length) == 0;
        if (hit.found) return true;
    }
    return false;
}

// The last vector reaches back over places that are settled where fewer are left than it has.

VQ_SEARCH_KERNEL("sse2")
inline ByteHit FindBytesSse2(const unsigned char* text, std::size_t place, std::size_t end, const BytePattern& pattern,
                             ComparisonBudget& budget) {
    if (end < place + 16) return FindBytesPortable(text, place, end, pattern, budget);
    const __m128i first = _mm_set1_epi8(static_cast<char>(pattern.bytes[0]));
    const __m128i second = _mm_set1_epi8(static_cast<char>(pattern.bytes[pattern.second]));
    ByteHit hit{end, false};
    for (std::size_t next = place; next < end; next += 16) {
        const std::size_t at = next + 16 <= end ? next : end - 16;
        const __m128i* const here = reinterpret_cast<const __m128i*>(text + at);
        const __m128i* const there = reinterpret_cast<const __m128i*>(text + at + pattern.second);
        const __m128i fits =
            _mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(here), first), _mm_cmpeq_epi8(_mm_loadu_si128(there), second));
        const unsigned bits = static_cast<unsigned>(_mm_movemask_epi8(fits)) >> (next - at) << (next - at);
        if (bits != 0 && TakeCandidates(bits, text, at, pattern, budget, hit)) return hit;
    }
    return {end, false};
}

VQ_SEARCH_KERNEL("avx2")
inline ByteHit FindBytesAvx2(const unsigned char* text, std::size_t place, std::size_t end, const BytePattern& pattern,
                             ComparisonBudget& budget) {
    ByteHit hit{end, false};
    if (end < place + 32) {
        hit = FindBytesSse2(text, place, end, pattern, budget);
        return hit;
    }
    const __m256i first = _mm256_set1_epi8(static_cast<char>(pattern.bytes[0]));
    const __m256i second = _mm256_set1_epi8(static_cast<char>(pattern.bytes[pattern.second]));
    for (std::size_t next = place; next < end; next += 32) {
        const std::size_t at = next + 32 <= end ? next : end - 32;
        const __m256i_u* const here = reinterpret_cast<const __m256i_u*>(text + at);
        const __m256i_u* const there = reinterpret_cast<const __m256i_u*>(text + at + pattern.second);
        const __m256i fits = _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(here), first),
                                              _mm256_cmpeq_epi8(_mm256_loadu_si256(there), second));
        const unsigned bits = static_cast<unsigned>(_mm256_movemask_epi8(fits)) >> (next - at) << (next - at);
        if (bits != 0 && TakeCandidates(bits, text, at, pattern, budget, hit)) return hit;
    }
    return {end, false};
}

#undef VQ_SEARCH_KERNEL
#endif

struct ByteKernel {
    const char* name;
    bool (*supported)();  // by this processor
    ByteKernelFunction find;
};

// The fastest first; the last runs everywhere.
inline constexpr ByteKernel ByteKernels[] = {
#ifdef VQ_X86_KERNELS
    {"avx2", [] { return __builtin_cpu_supports("avx2") != 0; }, FindBytesAvx2},
    {"sse2", [] { return __builtin_cpu_supports("sse2") != 0; }, FindBytesSse2},
#endif
    {"portable", [] { return true; }, FindBytesPortable},
};

// The first place from `start` on where the `patternLength` bytes of `pattern` lie within the `textLength` of `text`,
// or NotFound. Linear in time, whatever the bytes, and without memory.
std::size_t FindBytes(const char* text, std::size_t textLength, std::size_t start, const char* pattern,
                      std::size_t patternLength);

}  // namespace vq

#endif
