// Arrays of scalars with the bytes of each one reversed.
//
// Compilers turn the plain loop into scalar swaps, or into SSE2 code that is no faster, so the byte shuffles are
// written out, each behind the instructions that it needs; the caller picks one that the processor has.
#ifndef VQ_BYTESWAP_H
#define VQ_BYTESWAP_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#define VQ_X86_KERNELS 1
#include <immintrin.h>
#endif

namespace vq {

inline std::uint16_t ByteSwap(std::uint16_t word) { return __builtin_bswap16(word); }
inline std::uint32_t ByteSwap(std::uint32_t word) { return __builtin_bswap32(word); }
inline std::uint64_t ByteSwap(std::uint64_t word) { return __builtin_bswap64(word); }

template <class Word>
inline void SwapOne(unsigned char* dst, const unsigned char* src) {
    Word word;
    std::memcpy(&word, src, sizeof word);
    word = ByteSwap(word);
    std::memcpy(dst, &word, sizeof word);
}

// Reverses the bytes of each Word of `size` bytes, a multiple of its own size and at least LeastKernelSize.
// No alignment is asked for; dst is src, or the areas do not overlap.
using SwapFunction = void (*)(unsigned char* dst, const unsigned char* src, std::size_t size);

inline constexpr std::size_t LeastKernelSize = 32;

template <class Word>
void SwapPortable(unsigned char* dst, const unsigned char* src, std::size_t size) {
    for (std::size_t i = 0; i < size; i += sizeof(Word)) SwapOne<Word>(dst + i, src + i);
}

#ifdef VQ_X86_KERNELS

// Windows only promises 4 bytes of stack alignment to 32-bit code.
#ifdef __i386__
#define VQ_KERNEL(isa) __attribute__((target(isa), force_align_arg_pointer))
#else
#define VQ_KERNEL(isa) __attribute__((target(isa)))
#endif

// The byte at i comes from i ^ (sizeof(Word) - 1): the mirrored place within its word. A shuffle only looks at the
// place within 16 bytes, so one table serves all widths.
template <class Word>
struct MirrorTable {
    alignas(64) unsigned char at[64];
    constexpr MirrorTable() : at() {
        for (unsigned i = 0; i < sizeof at; ++i) at[i] = static_cast<unsigned char>(i ^ (sizeof(Word) - 1));
    }
};
template <class Word>
inline constexpr MirrorTable<Word> Mirror;

// One whole vector at the end stands for the words that do not fill one. It is read before anything is written, so that
// no word is swapped twice in place.

template <class Word>
VQ_KERNEL("ssse3")
void SwapSsse3(unsigned char* dst, const unsigned char* src, std::size_t size) {
    const __m128i mirror = *reinterpret_cast<const __m128i*>(Mirror<Word>.at);
    const __m128i last = *reinterpret_cast<const __m128i_u*>(src + size - 16);
    for (std::size_t i = 0; i + 16 <= size; i += 16) {
        const __m128i words = *reinterpret_cast<const __m128i_u*>(src + i);
        *reinterpret_cast<__m128i_u*>(dst + i) = _mm_shuffle_epi8(words, mirror);
    }
    *reinterpret_cast<__m128i_u*>(dst + size - 16) = _mm_shuffle_epi8(last, mirror);
}

template <class Word>
VQ_KERNEL("avx2")
void SwapAvx2(unsigned char* dst, const unsigned char* src, std::size_t size) {
    const __m256i mirror = *reinterpret_cast<const __m256i*>(Mirror<Word>.at);
    const __m256i last = *reinterpret_cast<const __m256i_u*>(src + size - 32);
    for (std::size_t i = 0; i + 32 <= size; i += 32) {
        const __m256i words = *reinterpret_cast<const __m256i_u*>(src + i);
        *reinterpret_cast<__m256i_u*>(dst + i) = _mm256_shuffle_epi8(words, mirror);
    }
    *reinterpret_cast<__m256i_u*>(dst + size - 32) = _mm256_shuffle_epi8(last, mirror);
}

template <class Word>
VQ_KERNEL("avx512bw")
void SwapAvx512(unsigned char* dst, const unsigned char* src, std::size_t size) {
    const __m512i mirror = *reinterpret_cast<const __m512i*>(Mirror<Word>.at);
    // Whole vectors go to aligned places, since a store across cache lines costs two; masked ones before and after.
    const std::size_t head = -reinterpret_cast<std::uintptr_t>(dst) % 64 / sizeof(Word) * sizeof(Word);
    const auto part = [=](std::size_t at, std::size_t length) VQ_KERNEL("avx512bw") {
        const __mmask64 bytes = (std::uint64_t{1} << length) - 1;
        _mm512_mask_storeu_epi8(dst + at, bytes, _mm512_shuffle_epi8(_mm512_maskz_loadu_epi8(bytes, src + at), mirror));
    };
    std::size_t i = std::min(head, size);
    part(0, i);
    for (; i + 64 <= size; i += 64) {
        const __m512i words = *reinterpret_cast<const __m512i_u*>(src + i);
        *reinterpret_cast<__m512i_u*>(dst + i) = _mm512_shuffle_epi8(words, mirror);
    }
    part(i, size - i);
}

#undef VQ_KERNEL
#endif

struct SwapKernel {
    const char* name;
    bool (*supported)();  // by this processor
    SwapFunction swap;
};

// The fastest first; the last runs everywhere.
template <class Word>
inline constexpr SwapKernel SwapKernels[] = {
#ifdef VQ_X86_KERNELS
    {"avx512", [] { return __builtin_cpu_supports("avx512bw") != 0; }, SwapAvx512<Word>},
    {"avx2", [] { return __builtin_cpu_supports("avx2") != 0; }, SwapAvx2<Word>},
    {"ssse3", [] { return __builtin_cpu_supports("ssse3") != 0; }, SwapSsse3<Word>},
#endif
    {"portable", [] { return true; }, SwapPortable<Word>},
};

}  // namespace vq

#endif
