/// \file
/// What a store's records are made of: columns with a name and a type, as text
/// `name:VqString(language=de), population:VqInt64`.
#ifndef VQTYPE_STORE_SCHEMA_H
#define VQTYPE_STORE_SCHEMA_H

#include <string>
#include <string_view>
#include <vector>

#include "../text.h"
#include "../values.h"

namespace store {

struct Column {
    std::string name;  ///< a letter or '_', then these and digits; ASCII
    VqTypeId type;
    TextOptions text;  ///< of strings; Unicode and neutral where the schema does not say
};

/// The columns, at least one, in the order of their disk forms in a record. No two names are the same, also when case
/// does not count.
class Schema {
  public:
    /// Reads a schema's text: columns with commas between, each a name, ':' and a type, which for strings can have
    /// `(language=L, codeset=C)` behind it, numbers or names. Throws CommandError, its text starting with `place`, that
    /// tells the position (from 1) and what was expected there.
    static Schema Parse(std::string_view text, const std::string& place);
    /// The text that Parse reads: languages and code sets by name, those that stand for themselves left out.
    std::string Format() const;

    const std::vector<Column>& Columns() const { return columns_; }
    std::size_t Count() const { return columns_.size(); }
    const Column& operator[](std::size_t index) const { return columns_[index]; }

    /// The column of that name, in any case. Throws CommandError, its text starting with `place`, with the nearest name
    /// when there is none.
    std::size_t Find(std::string_view name, const std::string& place) const;

  private:
    std::vector<Column> columns_;
};

/// Reads names of columns with commas between, each found as Schema::Find does; blanks around a name do not count.
/// Throws CommandError, its text starting with `place`, also where a name is missing or a column is there twice.
std::vector<std::size_t> ParseColumnList(const Schema& schema, std::string_view names, const std::string& place);

}  // namespace store

#endif
