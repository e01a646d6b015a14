/// \file
/// Strict UTF-8 at the workbench's border, UTF-16 inside.
#ifndef VQTYPE_UTF8_H
#define VQTYPE_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

/// Where a text stops being UTF-8: `offset` bytes from its start.
struct Utf8Fault {
    std::size_t offset;
};

/// The UTF-16 units of a UTF-8 text; a character beyond U+FFFF is two units. Throws Utf8Fault at the first byte that
/// does not belong to the shortest form of a Unicode scalar value.
std::u16string Utf8ToUtf16(std::string_view text);

/// The UTF-8 form of UTF-16 units; half a surrogate pair becomes U+FFFD.
std::string Utf16ToUtf8(std::u16string_view units);

/// Bytes of the UTF-8 character that starts at `text`, and the character in `code`; 0 where there is none. `text` is
/// not empty.
std::size_t DecodeUtf8(std::string_view text, char32_t& code);

/// Columns that a UTF-8 text takes on a terminal: 2 for East Asian wide characters, 0 for combining ones. A byte that
/// is not UTF-8 counts as one column.
std::size_t DisplayWidth(std::string_view text);

#endif
