/// \file
/// What is counted of an index's keys, as the index itself would tell it only when it is read as a whole.
#ifndef VQTYPE_STORE_KEYCOUNTS_H
#define VQTYPE_STORE_KEYCOUNTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bytes.h"

namespace store {

struct KeyCounts {
    std::uint64_t cutKeys = 0;    ///< keys that are only the beginning of their values
    std::uint64_t nulls = 0;      ///< keys of class Null
    std::uint64_t noNumbers = 0;  ///< keys of class NoNumber

    /// Takes a tree's key into account.
    void Count(ByteView key);
    KeyCounts& operator+=(const KeyCounts& other);
    bool operator==(const KeyCounts&) const = default;

    /// The text "cut keys=2, nulls=0, no numbers=0", as the header has it.
    std::string Format() const;
    /// None for any other text.
    static std::optional<KeyCounts> Parse(std::string_view text);
};

/// Each count and its name.
constexpr struct {
    const char* name;
    std::uint64_t KeyCounts::*count;
} KeyCountFields[] = {
    {"cut keys", &KeyCounts::cutKeys}, {"nulls", &KeyCounts::nulls}, {"no numbers", &KeyCounts::noNumbers}};

}  // namespace store

#endif
