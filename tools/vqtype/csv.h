/// \file
/// Comma-separated values: quoted fields, doubled quotes, line breaks inside quotes, LF and CRLF, a byte order mark.
#ifndef VQTYPE_CSV_H
#define VQTYPE_CSV_H

#include <string>
#include <string_view>
#include <vector>

/// One row and the line of the file on which it begins, from 1.
struct CsvRow {
    std::size_t line;
    std::vector<std::string> fields;
};

/// All rows of `text`, empty lines aside. `name` is the file's in errors. Throws CommandError at a quote that is never
/// closed, or that is followed by text.
std::vector<CsvRow> ParseCsv(std::string_view text, const std::string& name);

#endif
