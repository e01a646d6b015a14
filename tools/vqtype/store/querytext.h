/// \file
/// The language of queries:
///
///     query      [condition {and condition}] [order by column [asc|desc] {, column [asc|desc]}]
///                [limit NUMBER [offset NUMBER]]
///     condition  column (= | != | <> | < | <= | > | >=) literal
///                column [not] like pattern
///                column [not] between literal and literal
///                column is [not] null
///
/// Words are understood in any case. A literal is a text in single quotes, where two stand for one, or a bare word. A
/// column in double quotes may have the name of a word of the language. The empty query is all rows.
#ifndef VQTYPE_STORE_QUERYTEXT_H
#define VQTYPE_STORE_QUERYTEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bytes.h"
#include "schema.h"

namespace store {

/// What a condition asks of a value. Null is selected by Null alone; a value that is not equal to itself (not a number)
/// by Unequal, NotBetween and NotNull alone.
enum class Test : unsigned char {
    Equal,
    Unequal,
    Less,
    AtMost,
    Greater,
    AtLeast,
    Like,
    NotLike,
    NotBetween,
    Null,
    NotNull,
};

/// One condition; `between` is two, AtLeast and AtMost.
struct Condition {
    std::size_t column = 0;  ///< in the schema
    Test test = Test::NotNull;
    Bytes literal = {};     ///< disk form; empty for Null and NotNull
    Bytes upper = {};       ///< disk form of the second literal of NotBetween
    std::string text = {};  ///< the condition as the user would write it
};

struct OrderColumn {
    std::size_t column;
    bool isDescending;
};

struct Query {
    std::vector<Condition> conditions;  ///< all must hold
    std::vector<OrderColumn> order;
    std::optional<std::uint64_t> limit;
    std::uint64_t offset = 0;
};

/// Reads a query on records of that schema, whose disk forms are in the byte order of `format`. Throws CommandError
/// that tells the position, in characters from 1, what stands there and what was expected.
Query ParseQuery(std::string_view text, const Schema& schema, unsigned char format);

/// True for rows that have patterns to be `like`: texts, and dates with a * for a field.
bool HasPatterns(VqTypeId type);

}  // namespace store

#endif
