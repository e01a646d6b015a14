#include "rowreader.h"

#include <map>

#include "../error.h"

namespace store {

namespace {

using Formats = std::map<std::size_t, std::string>;  // by column

Formats FormatsOf(const Schema& schema, const std::vector<std::string>& scans) {
    Formats formats;
    for (const std::string& scan : scans) {
        const std::size_t equals = scan.find('=');
        if (equals == scan.npos) throw CommandError("--scan {}: expected column=FORMAT", Echo(scan));
        const std::size_t column = schema.Find(scan.substr(0, equals), "--scan");
        if (!formats.emplace(column, scan.substr(equals + 1)).second) {
            throw CommandError("--scan {}: the column {} has a format already", Echo(scan), schema[column].name);
        }
    }
    return formats;
}

}  // namespace

RowReader::RowReader(const Schema& schema, unsigned char format, const std::vector<CsvField>& header,
                     const std::optional<std::string>& null, const std::vector<std::string>& scans,
                     const std::string& place)
    : schema_(schema), fields_(schema.Count(), None) {
    const Formats formats = FormatsOf(schema, scans);
    for (std::size_t i = 0; i < schema.Count(); ++i) {
        const auto scan = formats.find(i);
        readers_.emplace_back(schema[i], format, null,
                              scan == formats.end() ? std::nullopt : std::optional(scan->second));
    }
    TakeHeader(header, place);
}

void RowReader::TakeHeader(const std::vector<CsvField>& header, const std::string& place) {
    for (const CsvField& field : header) {
        const std::size_t column = schema_.Find(field.text, place);
        if (fields_[column] != None) {
            throw CommandError("{}: the header line has the column {} twice", place, schema_[column].name);
        }
        fields_[column] = columns_.size();
        columns_.push_back(column);
    }
    for (std::size_t i = 0; i < schema_.Count(); ++i) {
        Bytes ignored;
        if (fields_[i] == None && !readers_[i].ReadNull(ignored)) {
            throw CommandError("{}: the header line lacks the column {}, and {} has no null value", place,
                               schema_[i].name, TypeName(schema_[i].type));
        }
    }
}

bool RowReader::Read(const CsvReader& row, Bytes& record) {
    if (!row.IsGood()) return FailAsCsv(row);
    const std::vector<CsvField>& fields = row.Fields();
    if (fields.size() != columns_.size()) {
        return Fail(fmt::format("{} field{}, where the header line has {}: {}", fields.size(),
                                fields.size() == 1 ? "" : "s", columns_.size(), Echo(Trimmed(row.Raw()))));
    }
    const std::size_t start = record.size();
    for (std::size_t i = 0; i < readers_.size(); ++i) {
        FieldReader& reader = readers_[i];
        if (fields_[i] == None ? reader.ReadNull(record) : reader.Read(fields[fields_[i]], record)) continue;
        record.resize(start);
        return Fail(reader.Fault());
    }
    return true;
}

bool RowReader::Fail(std::string text) {
    fault_ = std::move(text);
    return false;
}

bool RowReader::FailAsCsv(const CsvReader& row) {
    const std::size_t field = row.Fault().field;
    const std::string column =
        field < columns_.size() ? "column " + schema_[columns_[field]].name : fmt::format("field {}", field + 1);
    return Fail(fmt::format("{}: {}: {}", column, row.Fault().text, Echo(Trimmed(row.Raw()))));
}

}  // namespace store
