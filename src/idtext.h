// Text of identifiers and references: one engine for the directives of all of them.
#ifndef IDTEXT_H
#define IDTEXT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

class VqString;

namespace vq {

// The numbers that identifiers are made of, and their letters in formats.
enum IdNumber : std::size_t { Database, High, Low, Block, ClassNumber, Version, IdNumberCount };
inline constexpr std::string_view IdLetters = "DHLBCV";

constexpr bool IsLong(IdNumber number) { return number == Low || number == Block; }

// Those that a value does not have are 0.
using IdNumbers = std::array<std::uint32_t, IdNumberCount>;

// What the formats of a type can name, as letters.
struct IdDirectives {
    std::string_view named;
    std::string_view positional;  // in the order in which %h and %l take them
};

// Printing makes `out` the text, in the code set and language that it has.
void PrintNullId(VqString& out);
void PrintIdText(VqString& out, const IdNumbers& numbers, const IdDirectives& directives, const char* format);

// Scanning is false, and all numbers stay, where the text is null or begins with the null print string.
bool ScanIdText(IdNumbers& numbers, const VqString& text, const IdDirectives& directives, const char* format);
// The exchange text of any identifier, or a number alone, which is an object's.
bool ScanIdExchange(IdNumbers& numbers, const VqString& text);

}  // namespace vq

#endif
