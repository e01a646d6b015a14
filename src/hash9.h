// The hash h = h * 9 + v over the units of a text, by words and vectors instead of one unit after the other.
#ifndef VQ_HASH9_H
#define VQ_HASH9_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#define VQ_X86_HASH 1
#include <immintrin.h>
// Windows only promises 4 bytes of stack alignment to 32-bit code.
#ifdef __i386__
#define VQ_HASH_KERNEL(isa) __attribute__((target(isa), force_align_arg_pointer))
#else
#define VQ_HASH_KERNEL(isa) __attribute__((target(isa)))
#endif
#endif

static_assert(std::endian::native == std::endian::little, "words are taken apart from their low byte up");

namespace vq {

// How a unit becomes the value v.
enum class HashUnit { SignedByte, Byte, LowBitsOfByte, Word, LowBitsOfWord };

constexpr std::uint32_t Power(unsigned exponent) { return exponent == 0 ? 1 : 9 * Power(exponent - 1); }

// What every one of `n` units adds to the hash when each is 1.
constexpr std::uint32_t Ones(unsigned n) { return n == 0 ? 0 : 9 * Ones(n - 1) + 1; }

template <std::uint32_t (*function)(unsigned)>
inline constexpr auto FirstNine = [] {
    std::array<std::uint32_t, 9> values = {};
    for (unsigned n = 0; n < values.size(); ++n) values[n] = function(n);
    return values;
}();

inline constexpr std::uint64_t EachByte = 0x0101010101010101, EachWord = 0x0001000100010001;

// Values with a sign are taken as the unit with its top bit flipped, less a bias: nothing in a word is ever negative.
template <HashUnit unit>
struct HashTraits {
    static constexpr bool IsWide = unit == HashUnit::Word || unit == HashUnit::LowBitsOfWord;
    static constexpr bool IsSigned = unit == HashUnit::SignedByte;
    static constexpr bool IsLow = unit == HashUnit::LowBitsOfByte || unit == HashUnit::LowBitsOfWord;
    static constexpr unsigned Size = IsWide ? 2 : 1;
    static constexpr unsigned UnitsPerWord = 8 / Size;
    static constexpr std::uint64_t Each = IsWide ? EachWord : EachByte;
    static constexpr std::uint64_t Flip = IsSigned ? 0x80 * Each : 0;
    static constexpr std::uint64_t Keep = IsLow ? 0x7F * Each : ~std::uint64_t{0};
    static constexpr std::uint32_t Bias = IsSigned ? 0x80 : 0;
};

// Not 0 where the word has a zero unit; the lowest bit set is the top bit of the first one.
template <class T>
constexpr std::uint64_t ZeroUnits(std::uint64_t word) {
    return (word - T::Each) & ~word & T::Each << (8 * T::Size - 1);
}

// The hash of a word's units from 0 on: neighbours are folded in lanes that become twice as wide.
template <class T>
constexpr std::uint32_t FoldWord(std::uint64_t word) {
    constexpr std::uint64_t evenBytes = 0x00FF00FF00FF00FF, evenWords = 0x0000FFFF0000FFFF;
    std::uint64_t lanes = word;
    if constexpr (!T::IsWide) lanes = (lanes & evenBytes) * Power(1) + (lanes >> 8 & evenBytes);
    constexpr unsigned perLane = T::IsWide ? 1 : 2;
    lanes = (lanes & evenWords) * Power(perLane) + (lanes >> 16 & evenWords);
    return static_cast<std::uint32_t>(lanes) * Power(2 * perLane) + static_cast<std::uint32_t>(lanes >> 32);
}

template <class T>
constexpr std::uint64_t Values(std::uint64_t word) {
    return (word ^ T::Flip) & T::Keep;
}

inline std::uint64_t LoadHashWord(const unsigned char* at) {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// Fewer than 8 bytes, with zeros behind.
inline std::uint64_t LoadShortWord(const unsigned char* at, std::size_t size) {
    if (size >= 4) {
        std::uint32_t first, last;
        std::memcpy(&first, at, 4);
        std::memcpy(&last, at + size - 4, 4);
        return first | std::uint64_t{last} << 8 * (size - 4);
    }
    if (size == 0) return 0;
    const std::size_t middle = size / 2;
    return at[0] | std::uint64_t{at[middle]} << 8 * middle | std::uint64_t{at[size - 1]} << 8 * (size - 1);
}

// Goes on over the units before the first zero one of a word that has one.
template <class T>
std::uint32_t HashEnd(std::uint64_t word, std::uint32_t h) {
    const unsigned bits = static_cast<unsigned>(std::countr_zero(ZeroUnits<T>(word))) / (8 * T::Size) * (8 * T::Size);
    const unsigned units = bits / (8 * T::Size);
    // They move to the top: zeros below them are a beginning that adds nothing.
    const std::uint64_t values = Values<T>(word) << 1 << (63 - bits);
    return h * FirstNine<Power>[units] + FoldWord<T>(values) - T::Bias * FirstNine<Ones>[units];
}

#ifdef VQ_X86_HASH

// The units of a vector in four steps: to 16-bit lanes, to 32-bit lanes, block by block, and the lanes at the end.
template <class T>
struct Avx2Hash {
    VQ_HASH_KERNEL("avx2") static __m256i Fold(__m256i units) {
        if constexpr (T::IsLow) {
            units = _mm256_and_si256(units, _mm256_set1_epi64x(static_cast<long long>(T::Keep)));
        }
        if constexpr (T::IsWide) {
            // Multiplication takes words as signed: 32768 less, which the end puts right.
            const __m256i less = _mm256_xor_si256(units, _mm256_set1_epi16(T::IsLow ? 0 : -32768));
            return _mm256_madd_epi16(less, _mm256_set1_epi32(0x00010009));
        } else {
            const __m256i nine = _mm256_set1_epi16(0x0109);
            const __m256i pairs = T::IsSigned ? _mm256_maddubs_epi16(nine, units) : _mm256_maddubs_epi16(units, nine);
            return _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00010051));
        }
    }

    VQ_HASH_KERNEL("avx2") static bool HasZero(__m256i units) {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i equal = T::IsWide ? _mm256_cmpeq_epi16(units, zero) : _mm256_cmpeq_epi8(units, zero);
        return _mm256_movemask_epi8(equal) != 0;
    }

    VQ_HASH_KERNEL("avx2")
    static std::uint32_t Blocks(const unsigned char* text, std::size_t size, std::uint32_t h, std::size_t& done) {
        constexpr unsigned perBlock = 32 / T::Size, perLane = 4 / T::Size;
        constexpr auto weight = [](unsigned lane) { return static_cast<int>(Power((7 - lane) * perLane)); };
        const __m256i step = _mm256_set1_epi32(static_cast<int>(Power(perBlock)));
        __m256i sums = _mm256_setzero_si256();
        std::uint32_t scale = 1, bias = 0;
        std::size_t i = 0;
        for (; i + 32 <= size; i += 32) {
            const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(text + i));
            if (HasZero(units)) break;
            sums = _mm256_add_epi32(_mm256_mullo_epi32(sums, step), Fold(units));
            scale *= Power(perBlock);
            if constexpr (IsBiased) bias = bias * Power(perBlock) + 32768 * Ones(perBlock);
        }
        const __m256i weights =
            _mm256_setr_epi32(weight(0), weight(1), weight(2), weight(3), weight(4), weight(5), weight(6), weight(7));
        sums = _mm256_mullo_epi32(sums, weights);
        __m128i sum = _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0x4E));
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0xB1));
        done += i;
        return h * scale + static_cast<std::uint32_t>(_mm_cvtsi128_si32(sum)) + bias;
    }

    static constexpr bool IsBiased = T::IsWide && !T::IsLow;
};

#endif

inline std::uint32_t NoBlocks(const unsigned char*, std::size_t, std::uint32_t h, std::size_t&) { return h; }

// One way to hash whole blocks of 32 bytes without a zero unit: continues `h` over as many as there are among the
// `size` bytes at `text`, and adds their bytes to `done`.
using HashBlocks = std::uint32_t (*)(const unsigned char* text, std::size_t size, std::uint32_t h, std::size_t& done);

struct HashKernel {
    const char* name;
    bool (*supported)();  // by this processor
    HashBlocks blocks;
};

// The fastest first; the last leaves all to words and runs everywhere. Each gives the same results.
template <HashUnit unit>
inline constexpr HashKernel hashKernels[] = {
#ifdef VQ_X86_HASH
    {"avx2", [] { return __builtin_cpu_supports("avx2") != 0; }, Avx2Hash<HashTraits<unit>>::Blocks},
#endif
    {"words", [] { return true; }, NoBlocks},
};

// Shorter texts gain nothing by blocks.
constexpr std::size_t LeastHashBlocks = 32;

// The hash of the units at `text` up to the first zero unit, at most `n` units. Reads nothing behind the n units, and
// no alignment is asked for. `blocks` gives the blocks' function when there are enough bytes for it.
template <HashUnit unit, class Blocks>
std::uint32_t Hash9(const void* text, std::size_t n, Blocks blocks) {
    using T = HashTraits<unit>;
    const unsigned char* at = static_cast<const unsigned char*>(text);
    std::size_t left = n * T::Size;
    const bool hasWord = left >= 8;
    std::uint32_t h = 0;
    if (left >= LeastHashBlocks) {
        std::size_t done = 0;
        h = blocks()(at, left, h, done);
        at += done;
        left -= done;
    }
    for (; left >= 8; at += 8, left -= 8) {
        const std::uint64_t word = LoadHashWord(at);
        if (ZeroUnits<T>(word) != 0) return HashEnd<T>(word, h);
        h = h * Power(T::UnitsPerWord) + FoldWord<T>(Values<T>(word)) - T::Bias * Ones(T::UnitsPerWord);
    }
    if (left == 0) return h;
    // Where bytes stand before the last ones, one load takes them all.
    return HashEnd<T>(hasWord ? LoadHashWord(at + left - 8) >> 8 * (8 - left) : LoadShortWord(at, left), h);
}

#ifdef VQ_X86_HASH
#undef VQ_HASH_KERNEL
#endif

}  // namespace vq

#endif
