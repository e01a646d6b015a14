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

inline constexpr auto PowersOf9 = [] {
    std::array<std::uint32_t, 8> powers = {};
    for (unsigned n = 0; n < powers.size(); ++n) powers[n] = Power(n);
    return powers;
}();

inline constexpr std::uint64_t EachByte = 0x0101010101010101, EachWord = 0x0001000100010001;

template <HashUnit unit>
struct HashTraits {
    static constexpr bool IsWide = unit == HashUnit::Word || unit == HashUnit::LowBitsOfWord;
    static constexpr bool IsSigned = unit == HashUnit::SignedByte;
    static constexpr bool IsLow = unit == HashUnit::LowBitsOfByte || unit == HashUnit::LowBitsOfWord;
    static constexpr unsigned Size = IsWide ? 2 : 1;
    static constexpr unsigned UnitsPerWord = 8 / Size;
    static constexpr std::uint64_t Each = IsWide ? EachWord : EachByte;
    static constexpr std::uint64_t Top = Each << (8 * Size - 1);
    static constexpr std::uint64_t Keep = IsLow ? 0x7F * Each : ~std::uint64_t{0};
};

// Not 0 where the word has a zero unit; the lowest bit set is the top bit of the first one.
template <class T>
constexpr std::uint64_t ZeroUnits(std::uint64_t word) {
    return (word - T::Each) & ~word & T::Top;
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

// True when no unit is zero or has its top bit set, as in most words of most texts: fewer steps than ZeroUnits.
template <class T>
constexpr bool IsPlainWord(std::uint64_t word) {
    return (((word - T::Each) | word) & T::Top) == 0;
}

// The hash of a word's values from 0 on. A byte with sign is 256 less when its top bit is set.
template <class T>
constexpr std::uint32_t FoldValues(std::uint64_t word) {
    if constexpr (!T::IsSigned) return FoldWord<T>(word & T::Keep);
    return FoldWord<T>(word) - 256 * FoldWord<T>((word & T::Top) >> 7);
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
inline std::uint32_t HashEnd(std::uint64_t word, std::uint32_t h) {
    const unsigned bits = static_cast<unsigned>(std::countr_zero(ZeroUnits<T>(word))) & ~(8 * T::Size - 1);
    // They move to the top: zeros below them are a beginning that adds nothing.
    return h * PowersOf9[bits / (8 * T::Size)] + FoldValues<T>(word << 1 << (63 - bits));
}

// Goes on over the last `size` bytes of a text, fewer than 8, which stand at the low end of `word` with zeros above.
template <class T>
inline std::uint32_t HashTail(std::uint64_t word, std::size_t size, std::uint32_t h) {
    if (!IsPlainWord<T>(word | T::Each << 8 * size)) return HashEnd<T>(word, h);
    return h * PowersOf9[size / T::Size] + FoldWord<T>(word << 1 << (63 - 8 * size) & T::Keep);
}

// Goes on word by word over `left` bytes; `before` tells that 8 or more stand before them.
template <class T>
[[gnu::noinline]] std::uint32_t HashWords(const unsigned char* at, std::size_t left, bool before, std::uint32_t h) {
    before |= left >= 8;
    for (; left >= 8; at += 8, left -= 8) {
        const std::uint64_t word = LoadHashWord(at);
        if (IsPlainWord<T>(word)) [[likely]] {
            h = h * Power(T::UnitsPerWord) + FoldWord<T>(word & T::Keep);
        } else if (ZeroUnits<T>(word) == 0) {
            h = h * Power(T::UnitsPerWord) + FoldValues<T>(word);
        } else {
            return HashEnd<T>(word, h);
        }
    }
    if (left == 0) return h;
    // Where bytes stand before the last ones, one load takes them all.
    return HashTail<T>(before ? LoadHashWord(at + left - 8) >> 8 * (8 - left) : LoadShortWord(at, left), left, h);
}

template <class T>
std::uint32_t HashByWords(const unsigned char* text, std::size_t size) {
    return HashWords<T>(text, size, false, 0);
}

#ifdef VQ_X86_HASH

// By blocks of 32 bytes, then one of 16 and one of 8, and the rest as words. A block with a zero unit is left to them.
template <class T>
struct Avx2Hash {
    static constexpr unsigned UnitsPerLane = 4 / T::Size;  // of 32 bits
    // Multiplication takes words as signed, so that they go in with 32768 less.
    static constexpr bool IsBiased = T::IsWide && !T::IsLow;
    static constexpr std::uint32_t Bias(unsigned units) { return IsBiased ? 32768 * Ones(units) : 0; }
    // What n units add to the hash when each is 1.
    static constexpr std::uint32_t Ones(unsigned n) { return n == 0 ? 0 : 9 * Ones(n - 1) + 1; }
    static constexpr int Weight(unsigned lanesBehind) { return static_cast<int>(Power(lanesBehind * UnitsPerLane)); }

    // The units of each 32-bit lane folded into it.
    VQ_HASH_KERNEL("avx2") static __m256i Fold(__m256i units) {
        if (T::IsLow) units = _mm256_and_si256(units, _mm256_set1_epi64x(static_cast<long long>(T::Keep)));
        if (IsBiased) units = _mm256_xor_si256(units, _mm256_set1_epi16(-32768));
        if (T::IsWide) return _mm256_madd_epi16(units, _mm256_set1_epi32(0x00010009));
        const __m256i nine = _mm256_set1_epi16(0x0109);
        const __m256i pairs = T::IsSigned ? _mm256_maddubs_epi16(nine, units) : _mm256_maddubs_epi16(units, nine);
        return _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00010051));
    }
    VQ_HASH_KERNEL("avx2") static __m128i Fold(__m128i units) {
        if (T::IsLow) units = _mm_and_si128(units, _mm_set1_epi64x(static_cast<long long>(T::Keep)));
        if (IsBiased) units = _mm_xor_si128(units, _mm_set1_epi16(-32768));
        if (T::IsWide) return _mm_madd_epi16(units, _mm_set1_epi32(0x00010009));
        const __m128i nine = _mm_set1_epi16(0x0109);
        const __m128i pairs = T::IsSigned ? _mm_maddubs_epi16(nine, units) : _mm_maddubs_epi16(units, nine);
        return _mm_madd_epi16(pairs, _mm_set1_epi32(0x00010051));
    }

    VQ_HASH_KERNEL("avx2") static bool HasZero(__m256i units) {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i equal = T::IsWide ? _mm256_cmpeq_epi16(units, zero) : _mm256_cmpeq_epi8(units, zero);
        return _mm256_movemask_epi8(equal) != 0;
    }
    // In the low `bytes` bytes.
    VQ_HASH_KERNEL("avx2") static bool HasZero(__m128i units, int bytes) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i equal = T::IsWide ? _mm_cmpeq_epi16(units, zero) : _mm_cmpeq_epi8(units, zero);
        return (_mm_movemask_epi8(equal) & ((1 << bytes) - 1)) != 0;
    }

    VQ_HASH_KERNEL("avx2") static std::uint32_t Sum(__m128i lanes) {
        lanes = _mm_add_epi32(lanes, _mm_shuffle_epi32(lanes, 0x4E));
        lanes = _mm_add_epi32(lanes, _mm_shuffle_epi32(lanes, 0xB1));
        return static_cast<std::uint32_t>(_mm_cvtsi128_si32(lanes));
    }

    // The hash of the blocks before the first one with a zero unit, and their bytes. A function of its own: that leaves
    // the upper halves of the registers clean for what follows, on every compiler.
    [[gnu::noinline]] VQ_HASH_KERNEL("avx2") static std::uint32_t
        HashBlocks(const unsigned char* text, std::size_t size, std::size_t& done) {
        constexpr unsigned units = 32 / T::Size;
        const __m256i step = _mm256_set1_epi32(static_cast<int>(Power(units)));
        std::size_t i = 0;
        __m256i sums = _mm256_setzero_si256();
        std::uint32_t biases = 0;
        for (; i + 32 <= size; i += 32) {
            const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(text + i));
            if (HasZero(block)) break;
            sums = _mm256_add_epi32(_mm256_mullo_epi32(sums, step), Fold(block));
            if (IsBiased) biases = biases * Power(units) + Bias(units);
        }
        const __m256i weights =
            _mm256_setr_epi32(Weight(7), Weight(6), Weight(5), Weight(4), Weight(3), Weight(2), Weight(1), Weight(0));
        sums = _mm256_mullo_epi32(sums, weights);
        done = i;
        return biases + Sum(_mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1)));
    }

    VQ_HASH_KERNEL("avx2") static std::uint32_t FoldEight(__m128i units) {
        const __m128i lanes = Fold(units);
        const auto first = static_cast<std::uint32_t>(_mm_cvtsi128_si32(lanes));
        const auto second = static_cast<std::uint32_t>(_mm_extract_epi32(lanes, 1));
        return first * Power(UnitsPerLane) + second + Bias(8 / T::Size);
    }

    // True, and h, at and left have gone on, when the 16 bytes have no zero unit.
    VQ_HASH_KERNEL("avx2") static bool AddSixteen(const unsigned char*& at, std::size_t& left, std::uint32_t& h) {
        constexpr unsigned units = 16 / T::Size;
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(at));
        if (HasZero(block, 16)) return false;
        const __m128i weights = _mm_setr_epi32(Weight(3), Weight(2), Weight(1), Weight(0));
        h = h * Power(units) + Sum(_mm_mullo_epi32(Fold(block), weights)) + Bias(units);
        at += 16;
        left -= 16;
        return true;
    }
    VQ_HASH_KERNEL("avx2") static bool AddEight(const unsigned char*& at, std::size_t& left, std::uint32_t& h) {
        const __m128i block = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(at));
        if (HasZero(block, 8)) return false;
        h = h * Power(8 / T::Size) + FoldEight(block);
        at += 8;
        left -= 8;
        return true;
    }

    // The same for fewer than 8 bytes that have 8 or more before them: these go in as zeros, which add nothing.
    VQ_HASH_KERNEL("avx2") static bool AddTail(const unsigned char* at, std::size_t size, std::uint32_t& h) {
        const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(64 - 8 * size));
        const __m128i tail = _mm_srl_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at + size - 8)), shift);
        if (HasZero(tail, static_cast<int>(size))) return false;
        h = h * PowersOf9[size / T::Size] + FoldEight(_mm_sll_epi64(tail, shift));
        return true;
    }

    // Fewer than 32 bytes; `before` tells that 8 or more stand before them.
    [[gnu::always_inline]] VQ_HASH_KERNEL("avx2") static inline std::uint32_t
        HashShort(const unsigned char* text, std::size_t size, bool before, std::uint32_t h) {
        before |= size >= 8;
        if (size >= 16 && !AddSixteen(text, size, h)) return HashWords<T>(text, size, false, h);
        if (size >= 8 && !AddEight(text, size, h)) return HashWords<T>(text, size, false, h);
        if (size == 0 || (before && AddTail(text, size, h))) return h;
        return HashWords<T>(text, size, before, h);
    }
    [[gnu::noinline]] VQ_HASH_KERNEL("avx2") static std::uint32_t
        HashLong(const unsigned char* text, std::size_t size) {
        std::size_t done;
        const std::uint32_t h = HashBlocks(text, size, done);
        // What is left of a block with a zero unit may be longer than short.
        return size - done < 32 ? HashShort(text + done, size - done, true, h)
                                : HashWords<T>(text + done, size - done, true, h);
    }
    VQ_HASH_KERNEL("avx2") static std::uint32_t Hash(const unsigned char* text, std::size_t size) {
        return size >= 32 ? HashLong(text, size) : HashShort(text, size, false, 0);
    }
};

#undef VQ_HASH_KERNEL
#endif

// The hash of the units in the `size` bytes at `text`, up to the first zero unit. Reads nothing behind them, and no
// alignment is asked for.
using HashFunction = std::uint32_t (*)(const unsigned char* text, std::size_t size);

struct HashKernel {
    const char* name;
    bool (*supported)();  // by this processor
    HashFunction hash;
};

// The fastest first; the last runs everywhere. Each gives the same results.
template <HashUnit unit>
inline constexpr HashKernel hashKernels[] = {
#ifdef VQ_X86_HASH
    {"avx2", [] { return __builtin_cpu_supports("avx2") != 0; }, Avx2Hash<HashTraits<unit>>::Hash},
#endif
    {"words", [] { return true; }, HashByWords<HashTraits<unit>>},
};

}  // namespace vq

#endif
