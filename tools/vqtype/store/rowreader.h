/// \file
/// From the rows of a CSV file to records.
#ifndef VQTYPE_STORE_ROWREADER_H
#define VQTYPE_STORE_ROWREADER_H

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "fieldreader.h"

namespace store {

/// Makes records of rows. A header line tells which field is which column; columns that it leaves out are null.
class RowReader {
  public:
    /// `scans` are texts column=FORMAT. Throws CommandError, its text starting with `place`, for a name in the header
    /// that the schema lacks or that is there twice, and for a column left out that cannot be null. The schema outlives
    /// the reader.
    RowReader(const Schema& schema, unsigned char format, const std::vector<CsvField>& header,
              const std::optional<std::string>& null, const std::vector<std::string>& scans, const std::string& place);

    /// Appends the row's record, without an identifier and a checksum. False, and nothing is appended, for a row that
    /// does not fit: Fault() tells which column and what was expected.
    bool Read(const CsvReader& row, Bytes& record);
    const std::string& Fault() const { return fault_; }

  private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    void TakeHeader(const std::vector<CsvField>& header, const std::string& place);
    bool Fail(std::string text);
    bool FailAsCsv(const CsvReader& row);

    const Schema& schema_;
    std::deque<FieldReader> readers_;   // of each column
    std::vector<std::size_t> fields_;   // the field of each column, or None
    std::vector<std::size_t> columns_;  // the column of each field
    std::string fault_;
};

}  // namespace store

#endif
