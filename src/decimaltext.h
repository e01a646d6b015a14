// Decimal numbers to text and back, eight digits at a time: each is a byte of one 64-bit word, the first in the lowest.
#ifndef VQ_DECIMALTEXT_H
#define VQ_DECIMALTEXT_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vq {

// Bytes that WriteDecimal may touch: sign and 20 digits, in whole words.
inline constexpr std::size_t DecimalRoom = 32;

// --- Words of digits

inline constexpr std::uint32_t EightDigits = 100'000'000;
inline constexpr std::uint64_t DigitZeros = 0x3030303030303030;

constexpr std::uint64_t LowByteFirst(std::uint64_t word) {
    return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

template <class Word = std::uint64_t>
inline std::uint64_t LoadText(const char* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return LowByteFirst(word) >> (std::endian::native == std::endian::little ? 0 : 64 - 8 * sizeof word);
}

inline void StoreText(char* at, std::uint64_t word) {
    word = LowByteFirst(word);
    std::memcpy(at, &word, sizeof word);
}

// The digits of number < 10^8 as bytes 0 to 9. Quotients by 100 and 10 are products, two and four at once.
constexpr std::uint64_t SplitDigits(std::uint32_t number) {
    const std::uint64_t fours = number / 10'000 | std::uint64_t{number % 10'000} << 32;
    const std::uint64_t hundreds = fours * 10'486 >> 20 & 0x0000007F'0000007F;
    const std::uint64_t pairs = hundreds + ((fours - 100 * hundreds) << 16);
    const std::uint64_t tens = pairs * 103 >> 10 & 0x000F'000F'000F'000F;
    return tens + ((pairs - 10 * tens) << 8);
}

// The reverse; neighbours are joined to pairs, fours, and the number.
constexpr std::uint32_t JoinDigits(std::uint64_t digits) {
    const std::uint64_t pairs = digits * (10 * 256 + 1) >> 8 & 0x00FF'00FF'00FF'00FF;
    const std::uint64_t fours = pairs * (100 * 65536 + 1) >> 16 & 0x0000FFFF'0000FFFF;
    return static_cast<std::uint32_t>(fours * (10'000 * (std::uint64_t{1} << 32) + 1) >> 32);
}

// True if all bytes are 0 to 9. A byte that carries into the next one is itself above 0x7F.
constexpr bool AreDigits(std::uint64_t digits) {
    return (((digits + 0x7676767676767676) | digits) & 0x8080808080808080) == 0;
}

// --- Writing

// Without leading zeros; 0 is one digit. For number < 10^4, in half a word.
inline char* WriteFewDigits(char* out, std::uint32_t number) {
    const std::uint32_t hundreds = number * 5243 >> 19;
    const std::uint32_t pairs = hundreds | (number - 100 * hundreds) << 16;
    const std::uint32_t tens = pairs * 103 >> 10 & 0x000F'000F;
    const std::uint32_t digits = tens + ((pairs - 10 * tens) << 8);
    // Not counted in the digits: who allocates for the text need not wait for them.
    const int zeros = (number < 1000) + (number < 100) + (number < 10);
    StoreText(out, (digits | static_cast<std::uint32_t>(DigitZeros)) >> 8 * zeros);
    return out + 4 - zeros;
}

// The same for number < 10^8.
inline char* WriteFirstDigits(char* out, std::uint32_t number) {
    const std::uint64_t digits = SplitDigits(number);
    const int zeros = std::countr_zero(digits | std::uint64_t{1} << 56) / 8;
    StoreText(out, (digits | DigitZeros) >> 8 * zeros);
    return out + 8 - zeros;
}

inline char* WriteEightDigits(char* out, std::uint32_t number) {
    StoreText(out, SplitDigits(number) | DigitZeros);
    return out + 8;
}

// Returns the end of the text; there is no zero character behind it.
inline char* WriteDecimal(char* out, std::uint64_t number) {
    if (number < 10'000) return WriteFewDigits(out, static_cast<std::uint32_t>(number));
    if (number < EightDigits) return WriteFirstDigits(out, static_cast<std::uint32_t>(number));
    const std::uint64_t head = number / EightDigits;
    const auto last = static_cast<std::uint32_t>(number % EightDigits);
    if (head < EightDigits) {
        out = WriteFirstDigits(out, static_cast<std::uint32_t>(head));
    } else {
        out = WriteFirstDigits(out, static_cast<std::uint32_t>(head / EightDigits));
        out = WriteEightDigits(out, static_cast<std::uint32_t>(head % EightDigits));
    }
    return WriteEightDigits(out, last);
}

inline char* WriteSignedDecimal(char* out, std::int64_t number) {
    const auto bits = static_cast<std::uint64_t>(number);
    *out = '-';
    return WriteDecimal(out + (number < 0), number < 0 ? 0 - bits : bits);
}

// --- Reading

// One to seven characters, with nothing read behind them: what two loads have in common is the same.
inline std::uint64_t LoadShortText(const char* at, std::size_t length) {
    if (length >= 4) return LoadText<std::uint32_t>(at) | LoadText<std::uint32_t>(at + length - 4) << 8 * (length - 4);
    const auto byte = [at](std::size_t i) { return LoadText<std::uint8_t>(at + i) << 8 * i; };
    return byte(0) | byte(length / 2) | byte(length - 1);
}

// Reads the characters from `at` to `end`, modulo 2^64; none are 0. False if one of them is no digit.
[[gnu::always_inline]] inline bool ReadDecimal(const char* at, const char* end, std::uint64_t& number) {
    const auto length = static_cast<std::size_t>(end - at);
    if (length < 8) {
        number = 0;
        if (length == 0) return true;
        const std::uint64_t digits = (LoadShortText(at, length) ^ DigitZeros) << 8 * (8 - length);
        number = JoinDigits(digits);
        return AreDigits(digits);
    }
    // The digits that fill no word go up in one, with zeros in front of them; in two steps, because there may be none.
    const std::size_t first = length % 8;
    std::uint64_t digits = (LoadText(at) ^ DigitZeros) << 4 * (8 - first) << 4 * (8 - first);
    bool good = AreDigits(digits);
    number = JoinDigits(digits);
    for (at += first; at != end; at += 8) {
        digits = LoadText(at) ^ DigitZeros;
        good &= AreDigits(digits);
        number = number * EightDigits + JoinDigits(digits);
    }
    return good;
}

}  // namespace vq

#endif
