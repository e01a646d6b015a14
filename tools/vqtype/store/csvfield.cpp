#include "csvfield.h"

#include "../error.h"

namespace store {

namespace {

bool NeedsQuotes(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    return text.empty() || text.find_first_of("\",\r\n") != text.npos || blanks.find(text.front()) != text.npos ||
           blanks.find(text.back()) != text.npos;
}

}  // namespace

void AppendCsvField(std::string& line, std::string_view text) {
    if (!NeedsQuotes(text)) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

void RefuseNullAlone(std::string_view place, std::string_view column, std::string_view mending) {
    throw CommandError("{}: column {}: a null alone would be a line without a byte, which is no row: {}", place, column,
                       mending);
}

}  // namespace store
