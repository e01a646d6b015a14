// Skips what two zero-terminated texts have in common, without reading behind either.
#ifndef VQ_EQUALRUN_H
#define VQ_EQUALRUN_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define VQ_MASKED_LOADS
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "textunit.h"

namespace vq {

// Two texts of units of one width, walked together.
template <class Unit>
struct TextPair {
    const unsigned char* text1;
    const unsigned char* text2;

    static unsigned short Load(const unsigned char* at) { return LoadChar(at, sizeof(Unit)); }
    unsigned short Code1() const { return Load(text1); }
    unsigned short Code2() const { return Load(text2); }
    unsigned short CodeBefore() const { return Load(text1 - sizeof(Unit)); }

    void Move(std::ptrdiff_t units) {
        text1 += units * static_cast<std::ptrdiff_t>(sizeof(Unit));
        text2 += units * static_cast<std::ptrdiff_t>(sizeof(Unit));
    }
};

// --- Both texts may be read for a known number of bytes

#ifdef __SSE2__

// Bit k: the units at byte k differ or are the end of both.
template <class Unit>
unsigned StopMask(__m128i block1, __m128i block2) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i same = sizeof(Unit) == 1 ? _mm_cmpeq_epi8(block1, block2) : _mm_cmpeq_epi16(block1, block2);
    const __m128i end = sizeof(Unit) == 1 ? _mm_cmpeq_epi8(block1, zero) : _mm_cmpeq_epi16(block1, zero);
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(end, same))) ^ 0xFFFFU;
}

inline __m128i LoadBlock(const unsigned char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

// The 8 bytes at both places, as one block.
inline __m128i LoadHalves(const unsigned char* low, const unsigned char* high) {
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(low)),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(high)));
}

// StopMask of the first 16 bytes at both places, which may be read.
template <class Unit>
unsigned BlockStops(const unsigned char* text1, const unsigned char* text2) {
    return StopMask<Unit>(LoadBlock(text1), LoadBlock(text2));
}

// The byte of the first stop from `at` on, or `bytes`.
template <class Unit>
std::size_t StopByBlocks(TextPair<Unit> pair, std::size_t bytes) {
    std::size_t at = 0;
    for (; at + 16 <= bytes; at += 16) {
        const unsigned mask = BlockStops<Unit>(pair.text1 + at, pair.text2 + at);
        if (mask != 0) return at + static_cast<unsigned>(std::countr_zero(mask));
    }
    if (at == bytes) return bytes;
    at = bytes - 16;  // again over some that are known to be the same
    const unsigned mask = BlockStops<Unit>(pair.text1 + at, pair.text2 + at);
    return at + (mask != 0 ? static_cast<unsigned>(std::countr_zero(mask)) : 16U);
}

// The same for 8 to 15 bytes: their first and their last 8.
template <class Unit>
std::size_t StopByHalves(TextPair<Unit> pair, std::size_t bytes) {
    const std::size_t last = bytes - 8;
    const unsigned mask =
        StopMask<Unit>(LoadHalves(pair.text1, pair.text1 + last), LoadHalves(pair.text2, pair.text2 + last));
    if (mask == 0) return bytes;
    const unsigned at = static_cast<unsigned>(std::countr_zero(mask));
    return at < 8 ? at : at - 8 + last;
}

#else

template <class Unit>
unsigned BlockStops(const unsigned char* text1, const unsigned char* text2) {
    unsigned stops = 0;
    for (unsigned at = 0; at < 16; at += sizeof(Unit)) {
        const unsigned short code = LoadChar(text1 + at, sizeof(Unit));
        if (code == 0 || code != LoadChar(text2 + at, sizeof(Unit))) stops |= 1U << at;
    }
    return stops;
}

#endif

template <class Unit>
std::size_t StopByUnits(TextPair<Unit> pair, std::size_t bytes) {
    std::size_t at = 0;
    while (at < bytes) {
        const unsigned short code = pair.Load(pair.text1 + at);
        if (code == 0 || code != pair.Load(pair.text2 + at)) break;
        at += sizeof(Unit);
    }
    return at;
}

#ifdef VQ_MASKED_LOADS

inline bool HasMaskedLoads() {
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
}

// Up to 64 bytes at once without a branch on how many: what the mask leaves out is not read.
template <class Unit>
[[gnu::noinline, gnu::target("avx512f,avx512bw,avx512vl,bmi,bmi2")]] std::size_t StopByMasks(const unsigned char* text1,
                                                                                             const unsigned char* text2,
                                                                                             std::size_t bytes) {
    std::size_t at = 0;
    std::uint64_t stops = 0;
    do {
        const std::size_t count = bytes - at;
        const __mmask64 here = _bzhi_u64(~std::uint64_t{0}, count < 64 ? static_cast<unsigned>(count) : 64U);
        const __m512i block1 = _mm512_maskz_loadu_epi8(here, text1 + at);
        const __m512i block2 = _mm512_maskz_loadu_epi8(here, text2 + at);
        // A bit for each unit that differs or is 0, also behind what may be read.
        stops = sizeof(Unit) == 1 ? _mm512_cmpneq_epi8_mask(block1, block2) | _mm512_testn_epi8_mask(block1, block1)
                                  : _mm512_cmpneq_epi16_mask(block1, block2) | _mm512_testn_epi16_mask(block1, block1);
        at += 64;
    } while (stops == 0 && at < bytes);
    const std::size_t stop = at - 64 + sizeof(Unit) * static_cast<unsigned>(std::countr_zero(stops));
    return stop < bytes ? stop : bytes;
}

#endif

// The byte of the first unit that differs or is the end of both, or `bytes`; `bytes` may be read of both texts.
template <class Unit>
std::size_t FirstStop(TextPair<Unit> pair, std::size_t bytes) {
#ifdef VQ_MASKED_LOADS
    if (HasMaskedLoads()) return StopByMasks<Unit>(pair.text1, pair.text2, bytes);
#endif
#ifdef __SSE2__
    if (bytes >= 16) return StopByBlocks(pair, bytes);
    if (bytes >= 8) return StopByHalves(pair, bytes);
#endif
    return StopByUnits(pair, bytes);
}

// --- Skipping: true at a difference, false where both texts end without one

// Knows how much of both texts may be read.
template <class Unit>
class SizedRun {
  public:
    explicit SizedRun(std::size_t bytes) : bytes_(bytes) {}

    [[gnu::always_inline]] bool Skip(TextPair<Unit>& pair) {
        const std::size_t at = FirstStop(pair, bytes_);
        bytes_ -= at;
        pair.text1 += at;
        pair.text2 += at;
        return bytes_ != 0 && pair.Code1() != pair.Code2();
    }
    void Took() { bytes_ -= sizeof(Unit); }

  private:
    std::size_t bytes_;
};

// Knows only that both texts end.
template <class Unit>
class TerminatedRun {
  public:
    bool Skip(TextPair<Unit>& pair) const {
        for (;; pair.Move(1)) {
            const unsigned short code = pair.Code1();
            if (code != pair.Code2()) return true;
            if (code == 0) return false;
        }
    }
    void Took() const {}
};

// Bytes, of which a known number may be read, or (0) only those up to the zero bytes. The C library sees that texts are
// equal without a branch for each byte; blocks find where they are not.
class ByteRun {
  public:
    explicit ByteRun(std::size_t readable) : readable_(readable) {}

    [[gnu::always_inline]] bool Skip(TextPair<unsigned char>& pair) {
        if (*pair.text1 != *pair.text2) return true;
        const char* const text1 = reinterpret_cast<const char*>(pair.text1);
        const char* const text2 = reinterpret_cast<const char*>(pair.text2);
        if (std::strcmp(text1, text2) == 0) return false;
        if (readable_ == 0) readable_ = std::min(ShortSize(text1), ShortSize(text2));
        if (readable_ != 0) {
            const std::size_t at = FirstStop(pair, readable_);
            pair.Move(static_cast<std::ptrdiff_t>(at));
            readable_ -= at;
        }
        while (*pair.text1 == *pair.text2) pair.Move(1);
        return true;
    }
    void Took() { readable_ -= readable_ != 0; }

  private:
    // With the zero byte; 0 for a text that is not short.
    static std::size_t ShortSize(const char* text) {
        const void* const end = std::memchr(text, 0, 64);
        return end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - text) + 1 : 0;
    }

    std::size_t readable_;
};

// Knows that both texts end, at the latest after a number of units.
template <class Unit>
class LimitedRun {
  public:
    explicit LimitedRun(std::size_t units) : units_(units) {}

    bool Skip(TextPair<Unit>& pair) {
        for (; units_ != 0; --units_, pair.Move(1)) {
            const unsigned short code = pair.Code1();
            if (code != pair.Code2()) return true;
            if (code == 0) return false;
        }
        return false;
    }
    void Took() { --units_; }

  private:
    std::size_t units_;
};

}  // namespace vq

#endif
