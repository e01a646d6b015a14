#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "command.h"
#include "csv.h"
#include "error.h"
#include "files.h"
#include "operations.h"
#include "table.h"
#include "valueorder.h"

namespace {

constexpr const char* FileName = "territories.csv";
constexpr std::size_t ListLength = 10;

struct ColumnType {
    const char* title;
    VqTypeId type;
    const char* language;
};

// The world's product needs more than 32 bits, its literacy no more than a float. The year 2026 began at different
// universal times.
constexpr ColumnType ColumnTypes[] = {
    {"code", VqTypeId_VqString, "neutral"},      {"english", VqTypeId_VqString, "english"},
    {"german", VqTypeId_VqString, "german"},     {"french", VqTypeId_VqString, "french"},
    {"swedish", VqTypeId_VqString, "swedish"},   {"population", VqTypeId_VqNull_ulong, "neutral"},
    {"gdp", VqTypeId_VqNull_double, "neutral"},  {"literacy", VqTypeId_VqNull_float, "neutral"},
    {"newyear", VqTypeId_VqDateTime, "neutral"},
};
enum ColumnIndex : std::size_t { Code, English, German, French, Swedish, Population, Gdp, Literacy, NewYear };
constexpr std::size_t ColumnCount = std::size(ColumnTypes);

using Columns = std::vector<std::unique_ptr<ValueArray>>;

// --- Loading

// Where the table may be: named by the user, or installed beside the program. Building puts it there, too.
std::vector<std::filesystem::path> ExampleFolders() {
    std::vector<std::filesystem::path> folders;
    if (const auto folder = EnvironmentVariable("VQ_EXAMPLES")) folders.push_back(PathOf(*folder));
    folders.push_back(ProgramFolder().parent_path() / "share" / "vqtm" / "examples");
    return folders;
}

std::filesystem::path FindTerritories() {
    std::string tried;
    for (const auto& folder : ExampleFolders()) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(folder / FileName, ignored)) return folder / FileName;
        tried += "\n  " + Printable(NameOf(folder));
    }
    throw CommandError("{} is in none of these folders; name the file, or its folder in VQ_EXAMPLES:{}", FileName,
                       tried);
}

void CheckRow(const CsvRow& row, const std::string& name) {
    if (row.fields.size() != ColumnCount) {
        throw CommandError("{}:{}: {} fields; expected {}", name, row.line, row.fields.size(), ColumnCount);
    }
}

void CheckTitles(const CsvRow& row, const std::string& name) {
    for (std::size_t i = 0; i < ColumnCount; ++i) {
        if (row.fields[i] == ColumnTypes[i].title) continue;
        throw CommandError("{}:{}: column {} is {}; expected {}", name, row.line, i + 1, Echo(row.fields[i]),
                           Quoted(ColumnTypes[i].title));
    }
}

std::unique_ptr<ValueArray> LoadColumn(const std::vector<CsvRow>& rows, std::size_t column, const std::string& name) {
    const ColumnType& type = ColumnTypes[column];
    const TextOptions text{VqString::GetDefault8CodeSet(), ParseLanguage(type.language)};
    auto values = std::make_unique<ValueArray>(type.type, static_cast<unsigned long>(rows.size() - 1));
    for (unsigned long i = 0; i < values->GetCount(); ++i) {
        const CsvRow& row = rows[i + 1];
        const std::string& field = row.fields[column];
        if (field.empty()) {
            values->SetNull(i);
        } else {
            values->Scan(i, field, text, fmt::format("{}:{}: {}", name, row.line, type.title));
        }
    }
    return values;
}

Columns LoadTerritories(const std::string& file) {
    const std::string name = Printable(file);
    const std::vector<CsvRow> rows = ParseCsv(ReadFile(file), name);
    if (rows.size() < 2) throw CommandError("{}: no rows; expected titles and at least one territory", name);
    for (const CsvRow& row : rows) CheckRow(row, name);
    CheckTitles(rows[0], name);
    Columns columns;
    for (std::size_t i = 0; i < ColumnCount; ++i) columns.push_back(LoadColumn(rows, i, name));
    return columns;
}

// --- To disk and back

// By the manager's comparison; by their texts where the row has none.
bool AreEqual(const ValueArray& a, const ValueArray& b) {
    const VqTypeId id = a.GetType();
    if (Does(id, "compare")) {
        return Manager().Cmp(id, a.Data(), b.Data(), VqCmp_Exact, a.GetCount(), VqFormat_Memory) == 0;
    }
    for (unsigned long i = 0; i < a.GetCount(); ++i) {
        if (a.PrintExact(i) != b.PrintExact(i)) return false;
    }
    return true;
}

void CheckRoundTrip(const ValueArray& values, unsigned char format, const char* title) {
    const Bytes stored = values.Store(format);
    const ValueArray loaded(values.GetType(), values.GetCount());
    const unsigned long consumed = loaded.Load(stored, format);
    if (consumed != stored.size() || !AreEqual(values, loaded) || loaded.Store(format) != stored) {
        throw CommandError("column {}: what was loaded back is not what was stored", title);
    }
}

// What the columns of one type come to.
struct TypeSummary {
    std::string titles;
    std::size_t values = 0;
    std::size_t nulls = 0;
    std::size_t bytes = 0;

    void Add(const ValueArray& column, const char* title) {
        titles += (titles.empty() ? "" : ", ") + std::string(title);
        values += column.GetCount();
        nulls += column.CountNulls();
        bytes += column.Store(VqFormat_LittleEndian).size();
    }
    std::vector<std::string> Cells(const std::string& name) const {
        return {name,
                titles,
                fmt::to_string(values),
                fmt::to_string(nulls),
                fmt::to_string(bytes),
                fmt::format("{:.1f}", static_cast<double>(bytes) / static_cast<double>(values))};
    }
};

void ShowDiskForm(const Columns& columns) {
    Table table{{"type"}, {"columns"}, {"values", true}, {"nulls", true}, {"bytes", true}, {"a value", true}};
    TypeSummary total;
    for (int i = 0; i < VqTypeCount; ++i) {
        TypeSummary summary;
        for (std::size_t c = 0; c < ColumnCount; ++c) {
            if (ColumnTypes[c].type == i) summary.Add(*columns[c], ColumnTypes[c].title);
        }
        if (summary.values == 0) continue;
        table.AddRow(summary.Cells(TypeName(static_cast<VqTypeId>(i))));
        total.values += summary.values, total.nulls += summary.nulls, total.bytes += summary.bytes;
    }
    table.AddRule();
    table.AddRow(total.Cells("all"));
    Write("\nWhat the table takes on disk:\n\n" + table.Format(2));

    for (std::size_t c = 0; c < ColumnCount; ++c) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            CheckRoundTrip(*columns[c], format, ColumnTypes[c].title);
        }
    }
    Write(
        "\nEvery column was stored little-endian and big-endian, loaded back, compared, and stored again:\n"
        "the values are equal and the bytes are the same.\n");
}

// --- Listings

// Digits of a whole number in groups of three.
std::string Grouped(std::string digits) {
    for (std::size_t i = digits.size(); i > 3;) digits.insert(i -= 3, ",");
    return digits;
}

std::string PrintOrDash(const ValueArray& values, unsigned long index, const char* format) {
    return values.IsNull(index) ? "-" : values.Print(index, format);
}

void ShowLargest(const Columns& columns) {
    Table table{{"", true},           {"code"},           {"territory"},       {"population", true},
                {"GDP in US$", true}, {"literacy", true}, {"2026 began (UTC)"}};
    OrderRule descending;
    descending.reverse = true;
    const std::vector<std::uint32_t> order = SortedOrder(*columns[Population], descending);
    const std::size_t length = std::min(ListLength, order.size());
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned long row = order[i];
        table.AddRow({fmt::to_string(i + 1), columns[Code]->Print(row), columns[English]->Print(row),
                      Grouped(PrintOrDash(*columns[Population], row, "%lu")),
                      Grouped(PrintOrDash(*columns[Gdp], row, "%.0f")), PrintOrDash(*columns[Literacy], row, "%.1f%%"),
                      PrintOrDash(*columns[NewYear], row, "%a %e.%b %H:%M")});
    }
    Write(fmt::format("\nThe {} largest by population:\n\n{}", length, table.Format(2)));
}

void ShowFirstNames(const Columns& columns) {
    Table table{{"English"}, {"German"}, {"French"}, {"Swedish"}};
    std::vector<std::vector<std::uint32_t>> orders;
    for (std::size_t c = English; c <= Swedish; ++c) orders.push_back(SortedOrder(*columns[c], OrderRule{}));
    const std::size_t length = std::min(ListLength, orders[0].size());
    for (std::size_t i = 0; i < length; ++i) {
        std::vector<std::string> cells;
        for (std::size_t c = English; c <= Swedish; ++c) cells.push_back(columns[c]->Print(orders[c - English][i]));
        table.AddRow(std::move(cells));
    }
    Write(fmt::format("\nThe first {} names of each column, sorted:\n\n{}", length, table.Format(2)));
}

void Demo(const std::string& file) {
    const std::string name = file.empty() ? NameOf(FindTerritories()) : file;
    const Columns columns = LoadTerritories(name);
    Write(fmt::format("{}: {} columns of {} values, scanned through the type manager.\n",
                      Printable(NameOf(PathOf(name).filename())), ColumnCount, columns[Code]->GetCount()));
    ShowDiskForm(columns);
    ShowLargest(columns);
    ShowFirstNames(columns);
}

}  // namespace

void AddDemoCommand(CLI::App& program) {
    const auto file = std::make_shared<std::string>();
    CLI::App* command =
        program.add_subcommand("demo", "Load the world's territories, store them, sort them, print them");
    AddText(*command, "FILE", Takes::File, *file, "The table, if not the one that belongs to the program");
    command->footer(
        "Without FILE the table territories.csv is looked for in the folder that the environment variable VQ_EXAMPLES "
        "names, then in the program's own installation.");
    command->callback([file] { Demo(*file); });
}
