/// \file
/// From a field's text to the disk form of a column's value.
#ifndef VQTYPE_STORE_FIELDREADER_H
#define VQTYPE_STORE_FIELDREADER_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "../textencoder.h"
#include "bytes.h"
#include "csvreader.h"
#include "schema.h"

namespace store {

/// Reads the fields of one column, one after the other. A text is a value as the workbench's other commands take it,
/// but that null is not told by its text: texts of strings are taken as they stand.
///
/// Plain numbers, dates, truth values and strings have a shorter way from the text to the value in memory. Whatever it
/// has doubts about, all faults among them, goes the long way, so that both give the same bytes and the same words.
class FieldReader {
  public:
    /// `null` is the text of null fields; without it they are those without a byte and without quotes. With `scan`
    /// texts are read by the manager under that format. They are values if those print again as the text, but for case,
    /// or if the text is the same value in the type's own form: a format may round a number. So a year has all its
    /// digits. Truth values are true or false, as others have no order. Throws CommandError for a format under
    /// which different values print alike. The column outlives the reader.
    FieldReader(const Column& column, unsigned char format, const std::optional<std::string>& null,
                const std::optional<std::string>& scan = std::nullopt);

    /// Appends the field's disk form. False where it is no value of the column: nothing is appended, and Fault() tells
    /// what was expected.
    bool Read(const CsvField& field, Bytes& record) {
        return IsNull(field) ? ReadNull(record)
                             : (quick_ && ReadQuickly(field.text, record)) || ReadText(field.text, record);
    }
    /// Appends the disk form of null. False where the type has none.
    bool ReadNull(Bytes& record);
    /// The long way, of a field that is not null.
    bool ReadText(std::string_view text, Bytes& record);
    /// The short way, where the column has one. False where it has doubts; nothing is appended.
    bool ReadQuickly(std::string_view text, Bytes& record);

    /// What is wrong with the field that was read last: "column NAME: ...".
    const std::string& Fault() const { return fault_; }

  private:
    // Sets the value at `value` from a text that is one beyond doubt, else gives false.
    using Quick = bool (*)(FieldReader& reader, std::string_view text, void* value);
    struct QuickRow {
        VqTypeId id;
        Quick scan;
    };
    static const QuickRow QuickRows[];
    static Quick QuickOf(VqTypeId id);
    template <bool (*put)(std::string_view text, void* value)>
    static bool ScanBy(FieldReader& reader, std::string_view text, void* value);
    static bool ScanString(FieldReader& reader, std::string_view text, void* value);

    bool IsNull(const CsvField& field) const { return null_ ? field.text == *null_ : field.isAbsent; }
    void Scan(const ValueArray& value, std::string_view text) const;
    void ScanUnder(const char* format, const ValueArray& value, std::string_view text) const;
    bool IsReadBack(const ValueArray& value, std::string_view text, std::string_view printed) const;
    void Append(const ValueArray& value, Bytes& record) const;
    void CheckFormat() const;

    const Column& column_;
    TextOptions options_;
    unsigned char format_;
    std::optional<std::string> null_, scan_;
    std::optional<VqString> scanFormat_;
    std::string place_, nullText_, fault_;
    Bytes nullForm_;
    TextEncoder encoder_;
    Quick quick_;
    ValueArray value_;
    std::size_t size_;  // of a disk form; 0 where that depends on the value
};

}  // namespace store

#endif
