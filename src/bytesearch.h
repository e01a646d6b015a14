// Searching bytes in bytes.
//
// Places where three bytes of the pattern fit are found a vector at a time; there the rest is compared. Two of them are
// the first byte and the last one that differs from it, so that runs of one byte are passed without comparing; in
// texts, two letters alone would fit too often. When comparisons at such places cost more than walking the text, the
// search goes on in linear time.
#ifndef VQ_BYTESEARCH_H
#define VQ_BYTESEARCH_H

#include <algorithm>
#include <bit>
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
    std::size_t second;  // the places of the other bytes to look for
    std::size_t third;
};

// What a kernel found: the pattern lies at `place`, or, when it does not, all places before `place` are settled.
struct ByteHit {
    std::size_t place;
    bool found;
};

// The bytes that may still be compared at places where the looked-for bytes fit.
class ComparisonBudget {
  public:
    explicit ComparisonBudget(std::size_t bytes) : left_(bytes) {}
    // A few times what walking the text costs.
    static ComparisonBudget ForText(std::size_t length) {
        return ComparisonBudget(4 * std::min(length, SIZE_MAX / 8) + 1024);
    }
    bool Spend(std::size_t bytes) {
        if (bytes > left_) return false;
        left_ -= bytes;
        return true;
    }

  private:
    std::size_t left_;
};

// memcmp's answer to whether `n` bytes are the same, without the call where they are few.
inline bool SameBytes(const unsigned char* a, const unsigned char* b, std::size_t n) {
    const auto same = [=]<class Word>(Word) {
        Word words[4];
        std::memcpy(&words[0], a, sizeof(Word));
        std::memcpy(&words[1], b, sizeof(Word));
        std::memcpy(&words[2], a + n - sizeof(Word), sizeof(Word));
        std::memcpy(&words[3], b + n - sizeof(Word), sizeof(Word));
        return ((words[0] ^ words[1]) | (words[2] ^ words[3])) == 0;
    };
    if (n > 16) return std::memcmp(a, b, n) == 0;
    if (n >= 8) return same(std::uint64_t());
    return n >= 4 ? same(std::uint32_t()) : std::memcmp(a, b, n) == 0;
}

// Searches the places from `place` up to, not including, `end`; each has the pattern's length of readable bytes behind.
using ByteKernelFunction = ByteHit (*)(const unsigned char* text, std::size_t place, std::size_t end,
                                       const BytePattern& pattern, ComparisonBudget& budget);

inline ByteHit FindBytesPortable(const unsigned char* text, std::size_t place, std::size_t end,
                                 const BytePattern& pattern, ComparisonBudget& budget) {
    const unsigned char first = pattern.bytes[0], second = pattern.bytes[pattern.second];
    for (; place < end; ++place) {
        if (text[place] != first || text[place + pattern.second] != second) continue;
        if (!budget.Spend(pattern.length)) return {place, false};
        if (SameBytes(text + place, pattern.bytes, pattern.length)) return {place, true};
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

// The places of one or two vectors as bits, from which the rest is compared. Returns true when `hit` is the answer.
inline bool TakeCandidates(std::uint64_t bits, const unsigned char* text, std::size_t place, const BytePattern& pattern,
                           ComparisonBudget& budget, ByteHit& hit) {
    for (; bits != 0; bits &= bits - 1) {
        hit.place = place + static_cast<unsigned>(std::countr_zero(bits));
        if (!budget.Spend(pattern.length)) return true;
        hit.found = SameBytes(text + hit.place, pattern.bytes, pattern.length);
        if (hit.found) return true;
    }
    return false;
}

#define VQ_SEARCH_STEP(isa) __attribute__((target(isa), always_inline))

// The bytes to look for in every lane, and the places of one vector where they fit as bits.

struct Sse2Probes {
    const BytePattern& pattern;
    __m128i first, second, third;

    VQ_SEARCH_STEP("sse2")
    explicit Sse2Probes(const BytePattern& wanted)
        : pattern(wanted), first(Splat(0)), second(Splat(wanted.second)), third(Splat(wanted.third)) {}
    VQ_SEARCH_STEP("sse2")
    __m128i Splat(std::size_t place) const { return _mm_set1_epi8(static_cast<char>(pattern.bytes[place])); }
    VQ_SEARCH_STEP("sse2")
    static __m128i Load(const unsigned char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
    VQ_SEARCH_STEP("sse2")
    unsigned FitsAt(const unsigned char* at) const {
        const __m128i fits =
            _mm_and_si128(_mm_cmpeq_epi8(Load(at), first), _mm_cmpeq_epi8(Load(at + pattern.second), second));
        return static_cast<unsigned>(
            _mm_movemask_epi8(_mm_and_si128(fits, _mm_cmpeq_epi8(Load(at + pattern.third), third))));
    }
};

struct Avx2Probes {
    const BytePattern& pattern;
    __m256i first, second, third;

    VQ_SEARCH_STEP("avx2")
    explicit Avx2Probes(const BytePattern& wanted)
        : pattern(wanted), first(Splat(0)), second(Splat(wanted.second)), third(Splat(wanted.third)) {}
    VQ_SEARCH_STEP("avx2")
    __m256i Splat(std::size_t place) const { return _mm256_set1_epi8(static_cast<char>(pattern.bytes[place])); }
    VQ_SEARCH_STEP("avx2")
    static __m256i Load(const unsigned char* at) { return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(at)); }
    VQ_SEARCH_STEP("avx2")
    unsigned FitsAt(const unsigned char* at) const {
        const __m256i fits =
            _mm256_and_si256(_mm256_cmpeq_epi8(Load(at), first), _mm256_cmpeq_epi8(Load(at + pattern.second), second));
        return static_cast<unsigned>(
            _mm256_movemask_epi8(_mm256_and_si256(fits, _mm256_cmpeq_epi8(Load(at + pattern.third), third))));
    }
};

// The last vector reaches back over places that are settled where fewer are left than it has.

VQ_SEARCH_KERNEL("sse2")
inline ByteHit FindBytesSse2(const unsigned char* text, std::size_t place, std::size_t end, const BytePattern& pattern,
                             ComparisonBudget& budget) {
    if (end < place + 16) return FindBytesPortable(text, place, end, pattern, budget);
    const Sse2Probes probes(pattern);
    ByteHit hit{end, false};
    for (std::size_t next = place; next < end; next += 16) {
        const std::size_t at = next + 16 <= end ? next : end - 16;
        const unsigned bits = probes.FitsAt(text + at) >> (next - at) << (next - at);
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
    const Avx2Probes probes(pattern);
    std::size_t next = place;
    for (; next + 64 <= end; next += 64) {
        const unsigned bits = probes.FitsAt(text + next), more = probes.FitsAt(text + next + 32);
        if ((bits | more) == 0) continue;
        if (TakeCandidates(bits, text, next, pattern, budget, hit)) return hit;
        if (TakeCandidates(more, text, next + 32, pattern, budget, hit)) return hit;
    }
    if (next == end) return {end, false};
    // Two vectors that may overlap; they are asked about at once, so that short texts take one branch.
    const std::size_t last = end - 32;
    const std::uint64_t bits = next < last ? probes.FitsAt(text + next) : 0U;
    const std::uint64_t lastBits = probes.FitsAt(text + last);
    const std::uint64_t all = next < last ? bits | lastBits << (last - next) : lastBits >> (next - last);
    if (TakeCandidates(all, text, next, pattern, budget, hit)) return hit;
    return {end, false};
}

#undef VQ_SEARCH_STEP
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
