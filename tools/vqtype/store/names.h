/// \file
/// What the parts of a store are called in its file.
#ifndef VQTYPE_STORE_NAMES_H
#define VQTYPE_STORE_NAMES_H

#include <fmt/format.h>

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bytes.h"
#include "record.h"
#include "schema.h"

namespace store {

constexpr const char* HeaderDatabase = "header";
constexpr const char* RecordsDatabase = "records";
/// The database of a column's index, and its entry in the header.
inline std::string IndexName(const Column& column) { return "index " + column.name; }

/// Entries of the header: its text, and the next number. That of an index holds its KeyCounts.
/// @{
constexpr const char* StoreEntry = "store";
constexpr const char* NextEntry = "next";
/// @}

/// The number of a record that is the text of an entry; none where it is anything else.
inline std::optional<std::uint64_t> EntryNumber(std::string_view text) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = number >= 1 && number <= MostRecords && fmt::to_string(number) == text;
    return isNumber ? std::optional(number) : std::nullopt;
}

inline ByteView ViewOf(std::string_view text) {
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}
inline std::string TextOf(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace store

#endif
