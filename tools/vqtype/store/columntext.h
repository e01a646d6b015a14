/// \file
/// The texts of a column's values.
#ifndef VQTYPE_STORE_COLUMNTEXT_H
#define VQTYPE_STORE_COLUMNTEXT_H

#include <memory>
#include <optional>
#include <string>

#include "bytes.h"
#include "schema.h"

namespace store {

/// Gives one text after the other. Not for two threads at once.
class ColumnText {
  public:
    ColumnText(const Column& column, unsigned char format);

    /// The text of the value with that disk form, which is sound, that `load` reads back without loss; none of null.
    std::optional<std::string> Of(ByteView form);

  private:
    unsigned char format_;
    std::unique_ptr<ValueArray> value_;
};

}  // namespace store

#endif
