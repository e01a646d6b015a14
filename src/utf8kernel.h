// UTF-8 to 16-bit units and back: the conversions of long and short texts, in several instruction sets.
//
// A block of bytes or units is judged whole, by bit masks, and the bytes that belong to the result are moved together:
// by an instruction where there is one, else by a shuffle from a table. Tails go the same way, so that short texts gain
// as well. Sequences of four bytes and more, zero characters and faults are left to the caller.
#ifndef VQ_UTF8KERNEL_H
#define VQ_UTF8KERNEL_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "textunit.h"

#if defined(__x86_64__) || defined(__i386__)
#define VQ_UTF8_X86 1
#include <immintrin.h>
#endif

namespace vq {

// How far a conversion has come. Units lie in the machine's order at any address.
struct Utf8Cursor {
    const unsigned char* in;
    unsigned char* out;
};

struct Utf8Kernel {
    const char* name;
    bool (*supported)();  // by this processor
    // Decodes characters of one to three bytes until the end of input or room, a zero character, a longer form or a
    // fault. May leave some that `DecodePortable` would take.
    Utf8Cursor (*decode)(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd);
    // Encodes units until the end of input, a zero unit, or a character for which there is no room. May leave some that
    // `EncodePortable` would take, and may write behind what it has encoded, within the room.
    Utf8Cursor (*encode)(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd);
    // Bytes that begin a character: no fewer than the text has characters.
    std::size_t (*countStarts)(const unsigned char* in, const unsigned char* inEnd);
    // UTF-8 bytes that the units up to the end or a zero unit take.
    std::size_t (*countBytes)(const unsigned char* in, const unsigned char* inEnd);
};

constexpr bool ContinuesUtf8(unsigned char byte) { return (byte & 0xC0) == 0x80; }

constexpr std::size_t Utf8Length(unsigned short unit) { return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3; }

// --- Any machine

// Length of the character of one to three bytes at `in`, and its unit; 0 where there is none.
inline std::size_t DecodeShort(const unsigned char* in, std::size_t n, unsigned short& unit) {
    const unsigned lead = in[0];
    if (lead < 0x80) {
        unit = static_cast<unsigned short>(lead);
        return 1;
    }
    if (lead < 0xC2 || lead >= 0xF0 || n < 2 || !ContinuesUtf8(in[1])) return 0;
    const unsigned second = in[1] & 0x3Fu;
    if (lead < 0xE0) {
        unit = static_cast<unsigned short>((lead & 0x1F) << 6 | second);
        return 2;
    }
    unit = static_cast<unsigned short>((lead & 0x0F) << 12 | second << 6);
    if (n < 3 || !ContinuesUtf8(in[2]) || unit < 0x800) return 0;
    unit = static_cast<unsigned short>(unit | (in[2] & 0x3F));
    return 3;
}

// Writes the bytes of `unit`; returns their number.
inline std::size_t EncodeShort(unsigned char* out, unsigned short unit) {
    const std::size_t length = Utf8Length(unit);
    if (length == 1) {
        out[0] = static_cast<unsigned char>(unit);
        return length;
    }
    if (length == 3) *out++ = static_cast<unsigned char>(0xE0 | unit >> 12);
    out[0] = static_cast<unsigned char>(length == 3 ? 0x80 | (unit >> 6 & 0x3F) : 0xC0 | unit >> 6);
    out[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    return length;
}

inline Utf8Cursor DecodePortable(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd) {
    while (at.in != inEnd && outEnd - at.out >= 2) {
        unsigned short unit = 0;
        const std::size_t length = DecodeShort(at.in, static_cast<std::size_t>(inEnd - at.in), unit);
        if (length == 0 || unit == 0) break;
        StoreUnit(at.out, unit);
        at.in += length;
        at.out += 2;
    }
    return at;
}

inline Utf8Cursor EncodePortable(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd) {
    while (at.in != inEnd) {
        const unsigned short unit = LoadUnit(at.in);
        if (unit == 0 || outEnd - at.out < static_cast<std::ptrdiff_t>(Utf8Length(unit))) break;
        at.in += 2;
        at.out += EncodeShort(at.out, unit);
    }
    return at;
}

inline std::size_t CountStartsPortable(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    for (; in != inEnd; ++in) n += ContinuesUtf8(*in) ? 0 : 1;
    return n;
}

inline std::size_t CountBytesPortable(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    for (; in != inEnd && LoadUnit(in) != 0; in += 2) n += Utf8Length(LoadUnit(in));
    return n;
}

#ifdef VQ_UTF8_X86

// Windows only promises 4 bytes of stack alignment to 32-bit code.
#ifdef __i386__
#define VQ_ALIGN_STACK __attribute__((force_align_arg_pointer))
#else
#define VQ_ALIGN_STACK
#endif
#define VQ_SSSE3 __attribute__((target("ssse3,popcnt")))
#define VQ_AVX512 __attribute__((target("avx512f,avx512bw,avx512vbmi,avx512vbmi2,popcnt")))

// --- What a block of UTF-8 holds: one bit a byte, the first byte lowest

template <class Mask>
struct Utf8Block {
    Mask ascii;          // 1 to 0x7F
    Mask continuation;   // 0x80 to 0xBF
    Mask lead2;          // 0xC0 to 0xDF
    Mask lead3;          // 0xE0 to 0xEF
    Mask shortestLead3;  // 0xE0
    Mask early;          // below 0xA0
    Mask fault;          // zero, 0xC0, 0xC1 and from 0xF0 up
};

// The last bytes of the characters that are whole and right up to the block's first fault. A fault stands at its
// character's last byte at the latest, so that no character with one is taken.
template <class Mask>
Mask WholeCharacters(const Utf8Block<Mask>& block) {
    const Mask followers = static_cast<Mask>((block.lead2 | block.lead3) << 1 | block.lead3 << 2);
    const Mask overlong = static_cast<Mask>(block.shortestLead3 << 1 & block.early);
    const Mask fault = static_cast<Mask>(block.fault | overlong | (followers ^ block.continuation));
    const Mask ends = static_cast<Mask>(block.ascii | block.lead2 << 1 | block.lead3 << 2);
    return static_cast<Mask>(ends & ((fault & -fault) - 1));
}

// --- 16 bytes at a time

// Entry m lists the places of m's set bits, so that a shuffle by it moves those bytes together.
struct GatherTable {
    alignas(8) unsigned char places[256][8];
    constexpr GatherTable() : places() {
        for (unsigned mask = 0; mask < 256; ++mask) {
            unsigned n = 0;
            for (unsigned bit = 0; bit < 8; ++bit) {
                if (mask >> bit & 1) places[mask][n++] = static_cast<unsigned char>(bit);
            }
        }
    }
};
inline constexpr GatherTable Gather;

VQ_SSSE3 inline __m128i GatherOf(unsigned mask) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(Gather.places[mask & 0xFF]));
}

VQ_SSSE3 inline unsigned BitsOf(__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }

VQ_SSSE3 inline std::uint16_t WholeCharactersSsse3(__m128i bytes) {
    const __m128i highThree = _mm_and_si128(bytes, _mm_set1_epi8(-0x20));
    const __m128i highFour = _mm_and_si128(bytes, _mm_set1_epi8(-0x10));
    const __m128i overlong2 = _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(-2)), _mm_set1_epi8(-0x40));
    const __m128i fault = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_setzero_si128()), overlong2),
                                       _mm_cmpeq_epi8(highFour, _mm_set1_epi8(-0x10)));
    const auto mask = [](unsigned bits) { return static_cast<std::uint16_t>(bits); };
    return WholeCharacters<std::uint16_t>(
        {mask(BitsOf(_mm_cmpgt_epi8(bytes, _mm_setzero_si128()))),
         mask(BitsOf(_mm_cmplt_epi8(bytes, _mm_set1_epi8(-0x40)))),
         mask(BitsOf(_mm_cmpeq_epi8(highThree, _mm_set1_epi8(-0x40)))),
         mask(BitsOf(_mm_cmpeq_epi8(highFour, _mm_set1_epi8(-0x20)))),
         mask(BitsOf(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(-0x20)))),
         mask(BitsOf(_mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(-0x61)), bytes))), mask(BitsOf(fault))});
}

// The unit of each character stands where its last byte does: low bytes and high bytes.
struct UnitBytes {
    __m128i low, high;
};

VQ_SSSE3 inline UnitBytes UnitsOfSsse3(__m128i bytes) {
    const __m128i payloads = _mm_setr_epi8(0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F,  //
                                           0x3F, 0x3F, 0x3F, 0x3F, 0x1F, 0x1F, 0x0F, 0);
    const __m128i highNibbles = _mm_and_si128(_mm_srli_epi16(bytes, 4), _mm_set1_epi8(0x0F));
    const __m128i payload = _mm_and_si128(bytes, _mm_shuffle_epi8(payloads, highNibbles));
    const __m128i lead3 = _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(-0x10)), _mm_set1_epi8(-0x20));
    const __m128i notAscii = _mm_cmplt_epi8(bytes, _mm_setzero_si128());
    const __m128i before = _mm_and_si128(_mm_slli_si128(payload, 1), notAscii);
    const __m128i first = _mm_slli_si128(_mm_and_si128(payload, lead3), 2);
    const __m128i middleLow = _mm_and_si128(_mm_slli_epi16(before, 6), _mm_set1_epi8(-0x40));
    const __m128i middleHigh = _mm_and_si128(_mm_srli_epi16(before, 2), _mm_set1_epi8(0x0F));
    return {_mm_or_si128(payload, middleLow), _mm_or_si128(middleHigh, _mm_slli_epi16(first, 4))};
}

// Up to 8 units, those of the bytes whose bits are set.
VQ_SSSE3 inline __m128i GatherUnits(UnitBytes units, unsigned mask) {
    const __m128i places = GatherOf(mask);
    return _mm_unpacklo_epi8(_mm_shuffle_epi8(units.low, places), _mm_shuffle_epi8(units.high, places));
}

VQ_SSSE3 inline __m128i LoadUpTo16(const unsigned char* in, std::size_t n) {
    if (n >= 16) return _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    alignas(16) unsigned char padded[16] = {};
    std::memcpy(padded, in, n);
    return _mm_load_si128(reinterpret_cast<const __m128i*>(padded));
}

VQ_SSSE3 inline void Store16(unsigned char* out, __m128i bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
}

VQ_SSSE3 VQ_ALIGN_STACK inline Utf8Cursor DecodeSsse3(Utf8Cursor at, const unsigned char* inEnd,
                                                      unsigned char* outEnd) {
    while (at.in != inEnd) {
        const __m128i bytes = LoadUpTo16(at.in, static_cast<std::size_t>(inEnd - at.in));
        const std::size_t room = static_cast<std::size_t>(outEnd - at.out);
        unsigned char staged[32];
        unsigned char* const out = room >= sizeof staged ? at.out : staged;
        if (BitsOf(_mm_cmpgt_epi8(bytes, _mm_setzero_si128())) == 0xFFFF && room >= sizeof staged) {
            Store16(out, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
            Store16(out + 16, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
            at = {at.in + 16, at.out + 32};
            continue;
        }
        const unsigned whole = WholeCharactersSsse3(bytes);
        const std::size_t size = 2 * static_cast<std::size_t>(__builtin_popcount(whole));
        if (whole == 0 || size > room) break;
        const UnitBytes units = UnitsOfSsse3(bytes);
        Store16(out, GatherUnits(units, whole));
        const UnitBytes upper{_mm_srli_si128(units.low, 8), _mm_srli_si128(units.high, 8)};
        Store16(out + 2 * __builtin_popcount(whole & 0xFF), GatherUnits(upper, whole >> 8));
        if (out == staged) std::memcpy(at.out, staged, size);
        at = {at.in + std::bit_width(whole), at.out + size};
    }
    return at;
}

// Writes the bytes that are not zero, and up to 7 behind each 8 of them. Returns how many they are.
VQ_SSSE3 inline std::size_t StoreNonZero(unsigned char* out, __m128i bytes) {
    const unsigned mask = ~BitsOf(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())) & 0xFFFF;
    const auto store = [](unsigned char* to, __m128i eight)
                           VQ_SSSE3 { _mm_storel_epi64(reinterpret_cast<__m128i*>(to), eight); };
    store(out, _mm_shuffle_epi8(bytes, GatherOf(mask)));
    store(out + __builtin_popcount(mask & 0xFF), _mm_shuffle_epi8(_mm_srli_si128(bytes, 8), GatherOf(mask >> 8)));
    return static_cast<std::size_t>(__builtin_popcount(mask));
}

VQ_SSSE3 inline __m128i Choose(__m128i condition, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(condition, yes), _mm_andnot_si128(condition, no));
}

// Units below 0x800, each as the two bytes in its place; the first is zero for ASCII.
VQ_SSSE3 inline __m128i TwoBytesSsse3(__m128i units) {
    const __m128i first = _mm_srli_epi16(units, 6);
    const __m128i second = _mm_and_si128(_mm_slli_epi16(units, 8), _mm_set1_epi16(0x3F00));
    const __m128i both = _mm_or_si128(_mm_or_si128(first, second), _mm_set1_epi16(static_cast<short>(0x80C0)));
    return Choose(_mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F)), both, _mm_slli_epi16(units, 8));
}

// Units in 32 bits each, as three bytes with zeros before the shorter ones and a zero behind.
VQ_SSSE3 inline __m128i ThreeBytesSsse3(__m128i units) {
    const __m128i last = _mm_and_si128(_mm_slli_epi32(units, 16), _mm_set1_epi32(0x3F0000));
    const __m128i middle = _mm_and_si128(_mm_slli_epi32(units, 2), _mm_set1_epi32(0x3F00));
    const __m128i marks =
        Choose(_mm_cmpgt_epi32(units, _mm_set1_epi32(0x7FF)), _mm_set1_epi32(0x8080E0), _mm_set1_epi32(0x80C000));
    const __m128i all = _mm_or_si128(_mm_or_si128(last, middle), _mm_or_si128(marks, _mm_srli_epi32(units, 12)));
    return Choose(_mm_cmpgt_epi32(units, _mm_set1_epi32(0x7F)), all, _mm_slli_epi32(units, 16));
}

// All bits of the first n bytes, n up to 16.
VQ_SSSE3 inline __m128i FirstBytes(std::size_t n) {
    static constexpr std::uint64_t Window[4] = {~std::uint64_t{0}, ~std::uint64_t{0}, 0, 0};
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(reinterpret_cast<const char*>(Window) + 16 - n));
}

// Most bytes that one step of 8 units writes.
inline constexpr std::size_t StepRoom = 32;

VQ_SSSE3 VQ_ALIGN_STACK inline Utf8Cursor EncodeSsse3(Utf8Cursor at, const unsigned char* inEnd,
                                                      unsigned char* outEnd) {
    while (at.in != inEnd) {
        const std::size_t left = static_cast<std::size_t>(inEnd - at.in);
        const __m128i loaded = LoadUpTo16(at.in, left);
        const unsigned zeros = BitsOf(_mm_cmpeq_epi16(loaded, _mm_setzero_si128()));
        const std::size_t taken = std::min(static_cast<std::size_t>(std::countr_zero(zeros)), std::size_t{16});
        if (taken == 0) break;
        const __m128i units = _mm_and_si128(loaded, FirstBytes(taken));
        const std::size_t room = static_cast<std::size_t>(outEnd - at.out);
        unsigned char staged[StepRoom];
        unsigned char* const out = room >= StepRoom ? at.out : staged;
        std::size_t size;
        const __m128i above7 = _mm_subs_epu16(units, _mm_set1_epi16(0x7F));
        const __m128i above11 = _mm_subs_epu16(units, _mm_set1_epi16(0x7FF));
        if (BitsOf(_mm_cmpeq_epi16(above7, _mm_setzero_si128())) == 0xFFFF) {
            _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
            size = taken / 2;
        } else if (BitsOf(_mm_cmpeq_epi16(above11, _mm_setzero_si128())) == 0xFFFF) {
            size = StoreNonZero(out, TwoBytesSsse3(units));
        } else {
            size = StoreNonZero(out, ThreeBytesSsse3(_mm_unpacklo_epi16(units, _mm_setzero_si128())));
            size += StoreNonZero(out + size, ThreeBytesSsse3(_mm_unpackhi_epi16(units, _mm_setzero_si128())));
        }
        if (size > room) break;
        if (out == staged) std::memcpy(at.out, staged, size);
        at = {at.in + taken, at.out + size};
    }
    return at;
}

VQ_SSSE3 VQ_ALIGN_STACK inline std::size_t CountStartsSsse3(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    for (; inEnd - in >= 16; in += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        n += static_cast<std::size_t>(__builtin_popcount(BitsOf(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(-0x41)))));
    }
    return n + CountStartsPortable(in, inEnd);
}

VQ_SSSE3 VQ_ALIGN_STACK inline std::size_t CountBytesSsse3(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    for (; inEnd - in >= 16; in += 16) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        if (BitsOf(_mm_cmpeq_epi16(units, _mm_setzero_si128())) != 0) break;
        const __m128i one = _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(0x7F)), _mm_setzero_si128());
        const __m128i atMostTwo = _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(0x7FF)), _mm_setzero_si128());
        n += 24 - static_cast<std::size_t>(__builtin_popcount(BitsOf(_mm_packs_epi16(one, atMostTwo))));
    }
    return n + CountBytesPortable(in, inEnd);
}

// --- 64 bytes at a time

// g++ takes the operands that its own intrinsics leave undefined for faults of their callers.
#ifndef __clang__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif

template <class Mask>
constexpr Mask LowBits(std::size_t n) {
    return n >= 8 * sizeof(Mask) ? static_cast<Mask>(~Mask{0}) : static_cast<Mask>((Mask{1} << n) - 1);
}

struct PlaceTable {
    alignas(64) unsigned char at[64];
};

// The place that each byte of a shuffle comes from; 64 up are those of a second vector.
template <class Place>
constexpr PlaceTable PlacesBy(Place place) {
    PlaceTable table{};
    for (unsigned i = 0; i < 64; ++i) table.at[i] = static_cast<unsigned char>(place(i));
    return table;
}
inline constexpr PlaceTable OneBefore = PlacesBy([](unsigned i) { return (i + 63) % 64; });
inline constexpr PlaceTable TwoBefore = PlacesBy([](unsigned i) { return (i + 62) % 64; });
inline constexpr PlaceTable LowerPairs = PlacesBy([](unsigned i) { return i / 2 + i % 2 * 64; });
inline constexpr PlaceTable UpperPairs = PlacesBy([](unsigned i) { return 32 + i / 2 + i % 2 * 64; });

VQ_AVX512 inline __m512i PlacesOf(const PlaceTable& table) { return _mm512_load_si512(table.at); }

VQ_AVX512 inline __m512i Bytes512(int byte) { return _mm512_set1_epi8(static_cast<char>(byte)); }

VQ_AVX512 inline Utf8Block<std::uint64_t> JudgeAvx512(__m512i bytes) {
    const __m512i highThree = _mm512_and_si512(bytes, Bytes512(0xE0));
    const __m512i highFour = _mm512_and_si512(bytes, Bytes512(0xF0));
    const std::uint64_t faults = _mm512_testn_epi8_mask(bytes, bytes) |
                                 _mm512_cmpeq_epi8_mask(_mm512_and_si512(bytes, Bytes512(0xFE)), Bytes512(0xC0)) |
                                 _mm512_cmpeq_epi8_mask(highFour, Bytes512(0xF0));
    return {.ascii = _mm512_cmpgt_epi8_mask(bytes, _mm512_setzero_si512()),
            .continuation = _mm512_cmplt_epi8_mask(bytes, Bytes512(0xC0)),
            .lead2 = _mm512_cmpeq_epi8_mask(highThree, Bytes512(0xC0)),
            .lead3 = _mm512_cmpeq_epi8_mask(highFour, Bytes512(0xE0)),
            .shortestLead3 = _mm512_cmpeq_epi8_mask(bytes, Bytes512(0xE0)),
            .early = _mm512_cmplt_epu8_mask(bytes, Bytes512(0xA0)),
            .fault = faults};
}

VQ_AVX512 inline void StoreUnits(unsigned char* out, __m512i lower, __m512i upper, std::size_t count) {
    _mm512_mask_storeu_epi16(out, LowBits<std::uint32_t>(count), lower);
    if (count > 32) _mm512_mask_storeu_epi16(out + 64, LowBits<std::uint32_t>(count - 32), upper);
}

// The units of the characters of `block` whose last bytes are `whole`.
VQ_AVX512 inline void StoreCharacters(unsigned char* out, __m512i bytes, const Utf8Block<std::uint64_t>& block,
                                      std::uint64_t whole) {
    __m512i payload = _mm512_mask_sub_epi8(bytes, block.continuation, bytes, Bytes512(0x80));
    payload = _mm512_mask_sub_epi8(payload, block.lead2, bytes, Bytes512(0xC0));
    payload = _mm512_mask_sub_epi8(payload, block.lead3, bytes, Bytes512(0xE0));
    const __m512i before = _mm512_maskz_permutexvar_epi8(block.continuation, PlacesOf(OneBefore), payload);
    const __m512i first = _mm512_maskz_permutexvar_epi8(block.lead3 << 2, PlacesOf(TwoBefore), payload);
    const __m512i middleLow = _mm512_and_si512(_mm512_slli_epi16(before, 6), Bytes512(0xC0));
    const __m512i middleHigh = _mm512_and_si512(_mm512_srli_epi16(before, 2), Bytes512(0x0F));
    const __m512i low = _mm512_maskz_compress_epi8(whole, _mm512_or_si512(payload, middleLow));
    const __m512i high = _mm512_maskz_compress_epi8(whole, _mm512_or_si512(middleHigh, _mm512_slli_epi16(first, 4)));
    StoreUnits(out, _mm512_permutex2var_epi8(low, PlacesOf(LowerPairs), high),
               _mm512_permutex2var_epi8(low, PlacesOf(UpperPairs), high),
               static_cast<std::size_t>(__builtin_popcountll(whole)));
}

VQ_AVX512 VQ_ALIGN_STACK inline Utf8Cursor DecodeAvx512(Utf8Cursor at, const unsigned char* inEnd,
                                                        unsigned char* outEnd) {
    while (at.in != inEnd) {
        const std::size_t left = static_cast<std::size_t>(inEnd - at.in);
        const std::size_t room = static_cast<std::size_t>(outEnd - at.out) / 2;
        const __m512i bytes = _mm512_maskz_loadu_epi8(LowBits<std::uint64_t>(left), at.in);
        const std::uint64_t ascii = _mm512_cmpgt_epi8_mask(bytes, _mm512_setzero_si512());
        if (ascii == LowBits<std::uint64_t>(left)) {
            const std::size_t count = std::min(left, std::size_t{64});
            if (count > room) break;
            StoreUnits(at.out, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)),
                       _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)), count);
            at = {at.in + count, at.out + 2 * count};
            continue;
        }
        const Utf8Block<std::uint64_t> block = JudgeAvx512(bytes);
        const std::uint64_t whole = WholeCharacters(block);
        const std::size_t count = static_cast<std::size_t>(__builtin_popcountll(whole));
        if (count == 0 || count > room) break;
        StoreCharacters(at.out, bytes, block, whole);
        at = {at.in + std::bit_width(whole), at.out + 2 * count};
    }
    return at;
}

// Stores the bytes that are not zero, if there is room; returns how many they are.
VQ_AVX512 inline std::size_t StoreNonZero(unsigned char* out, __m512i bytes, std::size_t room) {
    const std::uint64_t mask = _mm512_test_epi8_mask(bytes, bytes);
    const std::size_t size = static_cast<std::size_t>(__builtin_popcountll(mask));
    const __m512i together = _mm512_maskz_compress_epi8(mask, bytes);
    if (size <= room) _mm512_mask_storeu_epi8(out, LowBits<std::uint64_t>(size), together);
    return size;
}

VQ_AVX512 inline __m512i TwoBytesAvx512(__m512i units) {
    const __m512i first = _mm512_srli_epi16(units, 6);
    const __m512i second = _mm512_and_si512(_mm512_slli_epi16(units, 8), _mm512_set1_epi16(0x3F00));
    const __m512i both = _mm512_or_si512(_mm512_or_si512(first, second), _mm512_set1_epi16(static_cast<short>(0x80C0)));
    return _mm512_mask_mov_epi16(_mm512_slli_epi16(units, 8), _mm512_cmpgt_epu16_mask(units, _mm512_set1_epi16(0x7F)),
                                 both);
}

VQ_AVX512 inline __m512i ThreeBytesAvx512(__m512i units) {
    const __m512i last = _mm512_and_si512(_mm512_slli_epi32(units, 16), _mm512_set1_epi32(0x3F0000));
    const __m512i middle = _mm512_and_si512(_mm512_slli_epi32(units, 2), _mm512_set1_epi32(0x3F00));
    const __m512i marks =
        _mm512_mask_mov_epi32(_mm512_set1_epi32(0x80C000), _mm512_cmpgt_epi32_mask(units, _mm512_set1_epi32(0x7FF)),
                              _mm512_set1_epi32(0x8080E0));
    const __m512i all =
        _mm512_or_si512(_mm512_or_si512(last, middle), _mm512_or_si512(marks, _mm512_srli_epi32(units, 12)));
    return _mm512_mask_mov_epi32(_mm512_slli_epi32(units, 16), _mm512_cmpgt_epi32_mask(units, _mm512_set1_epi32(0x7F)),
                                 all);
}

VQ_AVX512 VQ_ALIGN_STACK inline Utf8Cursor EncodeAvx512(Utf8Cursor at, const unsigned char* inEnd,
                                                        unsigned char* outEnd) {
    while (at.in != inEnd) {
        const std::size_t left = static_cast<std::size_t>(inEnd - at.in) / 2;
        const std::size_t room = static_cast<std::size_t>(outEnd - at.out);
        const __m512i loaded = _mm512_maskz_loadu_epi16(LowBits<std::uint32_t>(left), at.in);
        const std::uint32_t zeros = _mm512_testn_epi16_mask(loaded, loaded);
        const std::size_t taken = static_cast<std::size_t>(std::countr_zero(zeros));
        const __m512i units = _mm512_maskz_mov_epi16(LowBits<std::uint32_t>(taken), loaded);
        const std::uint32_t above7 = _mm512_cmpgt_epu16_mask(units, _mm512_set1_epi16(0x7F));
        std::size_t size;
        if (above7 == 0) {
            size = taken;
            if (size <= room) {
                _mm512_mask_cvtepi16_storeu_epi8(at.out, LowBits<std::uint32_t>(size), units);
            }
        } else if (_mm512_cmpgt_epu16_mask(units, _mm512_set1_epi16(0x7FF)) == 0) {
            size = StoreNonZero(at.out, TwoBytesAvx512(units), room);
        } else {
            const __m512i lower = ThreeBytesAvx512(_mm512_cvtepu16_epi32(_mm512_castsi512_si256(units)));
            size = StoreNonZero(at.out, lower, room);
            if (size <= room && taken > 16) {
                const __m512i upper = ThreeBytesAvx512(_mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(units, 1)));
                size += StoreNonZero(at.out + size, upper, room - size);
            }
        }
        if (size == 0 || size > room) break;
        at = {at.in + 2 * taken, at.out + size};
    }
    return at;
}

VQ_AVX512 VQ_ALIGN_STACK inline std::size_t CountStartsAvx512(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    while (in != inEnd) {
        const std::size_t left = std::min(static_cast<std::size_t>(inEnd - in), std::size_t{64});
        const __m512i bytes = _mm512_maskz_loadu_epi8(LowBits<std::uint64_t>(left), in);
        const std::uint64_t continuations = _mm512_cmplt_epi8_mask(bytes, Bytes512(0xC0));
        n += left - static_cast<std::size_t>(__builtin_popcountll(continuations));
        in += left;
    }
    return n;
}

VQ_AVX512 VQ_ALIGN_STACK inline std::size_t CountBytesAvx512(const unsigned char* in, const unsigned char* inEnd) {
    std::size_t n = 0;
    while (in != inEnd) {
        const std::size_t left = std::min(static_cast<std::size_t>(inEnd - in) / 2, std::size_t{32});
        const __m512i units = _mm512_maskz_loadu_epi16(LowBits<std::uint32_t>(left), in);
        const std::size_t taken = static_cast<std::size_t>(
            std::countr_zero(static_cast<std::uint32_t>(_mm512_testn_epi16_mask(units, units))));
        const std::uint32_t kept = LowBits<std::uint32_t>(taken);
        const std::uint32_t above7 = _mm512_mask_cmpgt_epu16_mask(kept, units, _mm512_set1_epi16(0x7F));
        const std::uint32_t above11 = _mm512_mask_cmpgt_epu16_mask(kept, units, _mm512_set1_epi16(0x7FF));
        n += taken + static_cast<std::size_t>(__builtin_popcount(above7) + __builtin_popcount(above11));
        if (taken < 32) break;
        in += 64;
    }
    return n;
}

inline bool HasSsse3() { return __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("popcnt"); }

inline bool HasAvx512() {
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi") &&
           __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("popcnt");
}

#ifndef __clang__
#pragma GCC diagnostic pop
#endif

#undef VQ_AVX512
#undef VQ_SSSE3
#undef VQ_ALIGN_STACK
#endif

// The fastest first; the last runs everywhere.
inline constexpr Utf8Kernel Utf8Kernels[] = {
#ifdef VQ_UTF8_X86
    {"avx512", HasAvx512, DecodeAvx512, EncodeAvx512, CountStartsAvx512, CountBytesAvx512},
    {"ssse3", HasSsse3, DecodeSsse3, EncodeSsse3, CountStartsSsse3, CountBytesSsse3},
#endif
    {"portable", [] { return true; }, DecodePortable, EncodePortable, CountStartsPortable, CountBytesPortable},
};

}  // namespace vq

#endif
