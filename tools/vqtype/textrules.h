/// \file
/// How values are written on the command line: each type has a text that loses nothing.
#ifndef VQTYPE_TEXTRULES_H
#define VQTYPE_TEXTRULES_H

#include <optional>
#include <string>
#include <string_view>

#include "vqtypes.h"

/// A type's text, and which texts are values of it.
struct TextRule {
    const char* format;  ///< under which it prints and scans; null where another text loses nothing instead
    bool (*accepts)(std::string_view text);  ///< null: those that print again as they were read
    std::string expected;                    ///< what a text must be, for errors
};

/// The rule of the row. Rows of plain numbers and texts have the rule of their format.
TextRule TextRuleOf(VqTypeId id);

/// The row's own format.
std::string RowFormat(VqTypeId id);

/// A format that the user gave, or else the row's own, as the manager takes it: text in the default 8-bit code set.
class ChosenFormat {
  public:
    /// Throws CommandError for characters that the set does not have.
    ChosenFormat(VqTypeId id, const std::optional<std::string>& format);
    const char* Get() const { return text_.StrGet(); }
    const std::string& Utf8() const { return utf8_; }

  private:
    std::string utf8_;
    VqString text_;
};

#endif
