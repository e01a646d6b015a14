/// \file
/// Fields of CSV files as the store writes them.
#ifndef VQTYPE_STORE_CSVFIELD_H
#define VQTYPE_STORE_CSVFIELD_H

#include <string>
#include <string_view>

namespace store {

/// Appends a text as a field that reads as itself: in quotes where it holds what ends a field or a row, where a reader
/// could drop blanks at its ends, and where it is empty, as a field without quotes would be null.
void AppendCsvField(std::string& line, std::string_view text);

/// Throws CommandError, for a row of one column that is null: it would be a line without a byte, which no reader takes
/// for a row. `place` is the beginning of the text, `mending` its end: what the user can do.
[[noreturn]] void RefuseNullAlone(std::string_view place, std::string_view column, std::string_view mending);

}  // namespace store

#endif
