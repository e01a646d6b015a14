#include "rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "../files.h"
#include "../table.h"
#include "../textrules.h"
#include "columntext.h"
#include "csvfield.h"

namespace store {

namespace {

// --- Texts of values

constexpr std::string_view NumberFormats[] = {"%hd", "%hu", "%d", "%ld", "%u", "%lu", "%S", "%f", "%lf"};

bool IsNumber(VqTypeId type) {
    if (type == VqTypeId_d_Interval || type == VqTypeId_VqSeal) return true;
    const auto* const end = std::end(NumberFormats);
    return std::find(std::begin(NumberFormats), end, RowFormat(type)) != end;
}

struct ColumnShown {
    ColumnShown(const Header& header, std::size_t column)
        : index(column),
          name(header.schema[column].name),
          type(TypeName(header.schema[column].type)),
          isNumber(IsNumber(header.schema[column].type)),
          text(header.schema[column], header.format) {}

    std::size_t index;
    std::string name, type;
    bool isNumber;
    ColumnText text;

    std::optional<std::string> Of(const std::vector<ByteView>& forms) { return text.Of(forms[index]); }
};

using ColumnsShown = std::vector<ColumnShown>;

ColumnsShown MakeColumns(const Header& header, const std::vector<std::size_t>& columns) {
    ColumnsShown shown;
    for (const std::size_t column : columns) shown.emplace_back(header, column);
    return shown;
}

// --- Table

// Of the rows of a table, which are held to be laid out; and the width up to which a cell widens its column.
constexpr std::size_t TableBytes = 4 << 20, MostWidth = 64;

std::string CellText(const std::optional<std::string>& text) {
    if (!text) return "-";
    return *text == "-" ? Quoted(*text) : Printable(*text);
}

class TableWriter : public RowWriter {
  public:
    explicit TableWriter(ColumnsShown columns) : columns_(std::move(columns)) {}

    void Add(const std::vector<ByteView>& forms) override {
        if (bytes_ >= TableBytes) WriteTable();
        std::vector<std::string> cells;
        for (ColumnShown& column : columns_) {
            cells.push_back(CellText(column.Of(forms)));
            bytes_ += sizeof(std::string) + cells.back().size();
        }
        rows_.push_back(std::move(cells));
    }

    void Finish() override {
        if (!rows_.empty() || !isBegun_) WriteTable();
    }

  private:
    void WriteTable() {
        std::vector<Table::Column> titles;
        for (ColumnShown& column : columns_) {
            titles.push_back({column.name.c_str(), column.isNumber, column.type.c_str(), MostWidth});
        }
        Table table(std::move(titles));
        for (std::vector<std::string>& row : rows_) table.AddRow(std::move(row));
        if (isBegun_) Write("\n");
        table.Format([](const std::string& line) { Write(line); });
        isBegun_ = true;
        rows_.clear();
        bytes_ = 0;
    }

    ColumnsShown columns_;
    std::vector<std::vector<std::string>> rows_;
    std::size_t bytes_ = 0;
    bool isBegun_ = false;
};

// --- Streams

constexpr std::size_t BytesHeld = 1 << 16;

class StreamWriter : public RowWriter {
  public:
    void Add(const std::vector<ByteView>& forms) override {
        AppendRow(text_, forms);
        if (text_.size() >= BytesHeld) Flush();
    }
    void Finish() override {
        AppendEnd(text_);
        Flush();
    }

  protected:
    StreamWriter(ColumnsShown columns, std::string begin) : columns_(std::move(columns)), text_(std::move(begin)) {}

    virtual void AppendRow(std::string& text, const std::vector<ByteView>& forms) = 0;
    virtual void AppendEnd(std::string&) {}

    ColumnsShown columns_;

  private:
    void Flush() {
        Write(text_);
        text_.clear();
    }
    std::string text_;
};

// The numbers of JSON's grammar, as far as values print such: those with a fraction or an exponent, too, but not inf.
bool IsJsonNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789+-.eE") == text.npos;
}

std::string JsonValue(const ColumnShown& column, const std::optional<std::string>& text) {
    if (!text) return "null";
    if (column.isNumber && IsJsonNumber(*text)) return *text;
    if (column.type == "VqBoolean" && (*text == "TRUE" || *text == "FALSE")) return Lowered(*text);
    return Quoted(*text);
}

class JsonWriter : public StreamWriter {
  public:
    explicit JsonWriter(ColumnsShown columns) : StreamWriter(std::move(columns), "[") {}

  private:
    void AppendRow(std::string& text, const std::vector<ByteView>& forms) override {
        text += isFirst_ ? "\n{" : ",\n{";
        isFirst_ = false;
        const char* separator = "";
        for (ColumnShown& column : columns_) {
            text += fmt::format("{}{}: {}", separator, Quoted(column.name), JsonValue(column, column.Of(forms)));
            separator = ", ";
        }
        text += '}';
    }
    void AppendEnd(std::string& text) override { text += isFirst_ ? "]\n" : "\n]\n"; }

    bool isFirst_ = true;
};

class CsvWriter : public StreamWriter {
  public:
    explicit CsvWriter(ColumnsShown columns) : StreamWriter(std::move(columns), "") {
        std::string titles;
        for (ColumnShown& column : columns_) titles += (titles.empty() ? "" : ",") + column.name;
        Write(titles + '\n');
    }

  private:
    void AppendRow(std::string& text, const std::vector<ByteView>& forms) override {
        const char* separator = "";
        for (ColumnShown& column : columns_) {
            text += separator;
            separator = ",";
            const std::optional<std::string> value = column.Of(forms);
            if (!value && columns_.size() == 1) RefuseNullAlone("--csv", column.name, "show another column with it");
            if (value) AppendCsvField(text, *value);
        }
        text += '\n';
    }
};

}  // namespace

std::unique_ptr<RowWriter> MakeRowWriter(RowStyle style, const Header& header,
                                         const std::vector<std::size_t>& columns) {
    ColumnsShown shown = MakeColumns(header, columns);
    if (style == RowStyle::Json) return std::make_unique<JsonWriter>(std::move(shown));
    if (style == RowStyle::Csv) return std::make_unique<CsvWriter>(std::move(shown));
    return std::make_unique<TableWriter>(std::move(shown));
}

}  // namespace store
