/// \file
/// Rows of an answer as text: a table, JSON, or CSV as `load` takes it.
#ifndef VQTYPE_STORE_ROWS_H
#define VQTYPE_STORE_ROWS_H

#include <memory>
#include <string>
#include <vector>

#include "bytes.h"
#include "header.h"

namespace store {

enum class RowStyle {
    Table,  ///< names, types, rows; laid out as many rows at a time as take a few megabytes
    Json,   ///< an array of objects, one a line; written row by row
    Csv,    ///< a header line and rows; written row by row. A null alone in a row is refused by a CommandError
};

/// Writes rows to standard output.
class RowWriter {
  public:
    virtual ~RowWriter() = default;

    /// Takes the disk forms of all columns of the schema.
    virtual void Add(const std::vector<ByteView>& forms) = 0;
    /// Writes what is still to come.
    virtual void Finish() = 0;
};

/// A writer of these columns of the schema. The header outlives it.
std::unique_ptr<RowWriter> MakeRowWriter(RowStyle style, const Header& header, const std::vector<std::size_t>& columns);

}  // namespace store

#endif
