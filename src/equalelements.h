// Finds how many elements at the start of two arrays are equal, many at a time: elements of the same bytes are, unless
// they are no numbers.
#ifndef VQ_EQUALELEMENTS_H
#define VQ_EQUALELEMENTS_H

#include <algorithm>

#include "keyelements.h"

#if defined(__x86_64__) || defined(__i386__)
#define VQ_WIDE_VECTORS
#include <immintrin.h>
// Windows only promises 4 bytes of stack alignment to 32-bit code.
#ifdef __i386__
#define VQ_WIDE_KERNEL [[gnu::noinline, gnu::target("avx2"), gnu::force_align_arg_pointer]]
#else
#define VQ_WIDE_KERNEL [[gnu::noinline, gnu::target("avx2")]]
#endif
#endif

namespace vq {

// The bits of the exponents in an array of floating elements, by four bytes in turn. All of them set tell that an
// element may not be a number, and then does not even equal itself. Both are 0 for elements that are always equal to
// themselves, or whose exponents are not aligned in vectors.
template <std::uint32_t Even, std::uint32_t Odd>
struct Exponents {
    static constexpr bool Any = (Even | Odd) != 0;
    alignas(32) static constexpr std::uint32_t Bits[8] = {Even, Odd, Even, Odd, Even, Odd, Even, Odd};
    // No four bytes without an exponent equal 1 when nothing but exponents is left of them.
    static constexpr std::uint32_t Even1 = Even == 0 ? 1 : Even, Odd1 = Odd == 0 ? 1 : Odd;
    alignas(32) static constexpr std::uint32_t Full[8] = {Even1, Odd1, Even1, Odd1, Even1, Odd1, Even1, Odd1};
};

using WideVector [[gnu::vector_size(32)]] = std::uint32_t;

// Vectors whose differences are gathered before one branch on them: enough that it costs little.
constexpr std::size_t BlockVectors = 8;

// Sets lanes of `all` where elements may differ.
template <class Exponents, class V>
[[gnu::always_inline]] inline void AddDifferences(V& all, const unsigned char* a, const unsigned char* b) {
    V first, second;
    std::memcpy(&first, a, sizeof first);
    std::memcpy(&second, b, sizeof second);
    all |= first ^ second;
    if constexpr (Exponents::Any) {
        V bits, full;
        std::memcpy(&bits, Exponents::Bits, sizeof bits);
        std::memcpy(&full, Exponents::Full, sizeof full);
        all |= V((first & bits) == full);
    }
}

// Written out, since compilers do not unroll it.
template <class Exponents, std::size_t Vectors, class V>
[[gnu::always_inline]] inline void AddBlock(V& all, const unsigned char* a, const unsigned char* b) {
    AddDifferences<Exponents>(all, a, b);
    if constexpr (Vectors > 1) AddBlock<Exponents, Vectors - 1>(all, a + sizeof all, b + sizeof all);
}

inline bool IsZero(const Vector& lanes) {
    std::uint64_t halves[2];
    std::memcpy(halves, &lanes, sizeof halves);
    return (halves[0] | halves[1]) == 0;
}

// The bytes from `i` on that belong to elements known to be equal, in steps of a block and of a vector.
template <class Exponents>
std::size_t EqualByVectors(const unsigned char* a, const unsigned char* b, std::size_t i, std::size_t size) {
    for (; size - i >= BlockVectors * sizeof(Vector); i += BlockVectors * sizeof(Vector)) {
        Vector all = {};
        AddBlock<Exponents, BlockVectors>(all, a + i, b + i);
        if (!IsZero(all)) break;
    }
    for (; size - i >= sizeof(Vector); i += sizeof(Vector)) {
        Vector all = {};
        AddDifferences<Exponents>(all, a + i, b + i);
        if (!IsZero(all)) break;
    }
    return i;
}

#ifdef VQ_WIDE_VECTORS
inline bool HasWideVectors() { return __builtin_cpu_supports("avx2") != 0; }

// The same in steps of a block of wide vectors.
template <class Exponents>
VQ_WIDE_KERNEL std::size_t EqualByWideVectors(const unsigned char* a, const unsigned char* b, std::size_t size) {
    std::size_t i = 0;
    for (; size - i >= BlockVectors * sizeof(WideVector); i += BlockVectors * sizeof(WideVector)) {
        WideVector all = {};
        AddBlock<Exponents, BlockVectors>(all, a + i, b + i);
        if (!_mm256_testz_si256(reinterpret_cast<__m256i>(all), reinterpret_cast<__m256i>(all))) break;
    }
    return i;
}
#endif

template <class Exponents>
std::size_t EqualBytes(const unsigned char* a, const unsigned char* b, std::size_t size) {
    std::size_t i = 0;
#ifdef VQ_WIDE_VECTORS
    if (size >= BlockVectors * sizeof(WideVector) && HasWideVectors()) i = EqualByWideVectors<Exponents>(a, b, size);
#endif
    return EqualByVectors<Exponents>(a, b, i, size);
}

template <class Element>
constexpr bool ExponentsInVectors = Element::IsFloating && sizeof(Vector) % Element::Size == 0;

template <class Element>
constexpr std::uint32_t ExponentAt(unsigned long byte) {
    return ExponentsInVectors<Element> && byte % Element::Size == Element::ExponentAt ? Element::Exponent : 0;
}

// The number of elements from `i` on that are equal as far as whole vectors tell.
template <class Element>
unsigned long EqualRun(const unsigned char* a, const unsigned char* b, unsigned long i, unsigned long count) {
    constexpr unsigned long Size = Element::Size;
    const std::size_t equal = EqualBytes<Exponents<ExponentAt<Element>(0), ExponentAt<Element>(4)>>(
        a + i * Size, b + i * Size, std::size_t{count - i} * Size);
    const unsigned long end = i + static_cast<unsigned long>(equal / Size);
    if constexpr (Element::IsFloating && !ExponentsInVectors<Element>) {
        while (i < end && Element::Load(a + i * Size) == Element::Load(a + i * Size)) ++i;
        return i;
    } else {
        return end;
    }
}

// The first element from `i` on that is not equal to its peer, or `end`.
template <class Element>
unsigned long Unequal(const unsigned char* a, const unsigned char* b, unsigned long i, unsigned long end) {
    constexpr unsigned long Size = Element::Size;
    while (i < end && Element::Load(a + i * Size) == Element::Load(b + i * Size)) ++i;
    return i;
}

// Where a run ended the difference is in the next vector.
template <class Element>
constexpr unsigned long FirstStep = sizeof(Vector) / Element::Size + 1;

// When there was none, bytes differ that do not count. They may go on to do so: runs that end at once become rare, up
// to where they cost next to nothing.
template <class Element>
[[gnu::noinline]] unsigned long EqualByRuns(const unsigned char* a, const unsigned char* b, unsigned long i,
                                            unsigned long count) {
    constexpr unsigned long First = FirstStep<Element>, Most = 256;
    unsigned long step = First, end = i;
    while (i == end && i < count) {
        const unsigned long start = i;
        i = EqualRun<Element>(a, b, i, count);
        step = i - start > step ? First : std::min(step * 4, Most);
        end = i + std::min(count - i, step);
        i = Unequal<Element>(a, b, i, end);
    }
    return i;
}

// The number of elements at the start that are equal.
template <class Element>
unsigned long EqualElements(const unsigned char* a, const unsigned char* b, unsigned long count) {
    const unsigned long run = EqualRun<Element>(a, b, 0, count);
    const unsigned long end = run + std::min(count - run, FirstStep<Element>);
    const unsigned long i = Unequal<Element>(a, b, run, end);
    return i == end && i < count ? EqualByRuns<Element>(a, b, i, count) : i;
}

}  // namespace vq

#undef VQ_WIDE_KERNEL

#endif
