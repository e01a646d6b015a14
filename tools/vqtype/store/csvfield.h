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

}  // namespace store

#endif
