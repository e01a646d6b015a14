#include <algorithm>

#include "../files.h"
#include "../table.h"
#include "../text.h"
#include "buildindex.h"
#include "commands.h"

namespace store {
namespace {

using Columns = std::vector<std::size_t>;

std::size_t FindColumn(const Schema& schema, const std::string& name) {
    const std::size_t column = schema.Find(name, "COLUMN");
    if (CanIndex(schema[column].type)) return column;
    throw CommandError(
        "COLUMN {}: {} has no order of its own, so that it cannot be indexed (`vqtype types` shows "
        "which can)",
        schema[column].name, TypeName(schema[column].type));
}

std::string WithoutBlanks(std::string name) {
    std::erase_if(name, [](char c) { return c == ' '; });
    return name;
}

// Names with commas between, in the schema's order.
Columns ParseColumns(const Schema& schema, const std::string& names) {
    Columns columns;
    for (std::size_t start = 0; start <= names.size();) {
        const std::size_t end = std::min(names.find(',', start), names.size());
        columns.push_back(FindColumn(schema, WithoutBlanks(names.substr(start, end - start))));
        start = end + 1;
    }
    std::sort(columns.begin(), columns.end());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
    return columns;
}

Columns IndexedColumns(const Store& store) {
    Columns columns;
    for (const Index& index : store.Indexes()) columns.push_back(index.column);
    return columns;
}

// --- What was made

std::string Note(VqTypeId type, const char* done) {
    return IsInByteOrder(type) ? std::string(done) + "; by raw bytes, so that it answers `is null` alone" : done;
}

void AddIndex(Table& table, Store& store, const Transaction& transaction, const Index& index, const char* done) {
    const Column& column = store.GetSchema()[index.column];
    const MDB_stat statistics = transaction.Statistics(index.database);
    table.AddRow({column.name, TypeName(column.type), fmt::to_string(statistics.ms_entries),
                  fmt::to_string(index.cutKeys), fmt::to_string(statistics.ms_branch_pages + statistics.ms_leaf_pages),
                  Note(column.type, done)});
}

std::string Report(Store& store, const Columns& asked, const Columns& made, const char* done) {
    Table table{{"index"}, {"type"}, {"entries", true}, {"cut keys", true}, {"pages", true}, {""}};
    const Transaction transaction(store.Env(), Access::Read);
    for (const std::size_t column : asked) {
        const bool isMade = std::find(made.begin(), made.end(), column) != made.end();
        AddIndex(table, store, transaction, *store.FindIndex(column), isMade ? done : "was there already");
    }
    return table.Format();
}

// --- Either way

void MakeMissing(const IndexOptions& options) {
    if (options.columns.empty()) throw UsageError("COLUMNS: expected the columns to index, or --rebuild");
    Store store(options.store, Purpose::Write);
    const Columns asked = ParseColumns(store.GetSchema(), options.columns);
    Columns missing;
    for (const std::size_t column : asked) {
        if (store.FindIndex(column) == nullptr) missing.push_back(column);
    }
    if (!missing.empty()) BuildIndexes(store, missing, false);
    Write(Report(store, asked, missing, "made"));
}

Columns ColumnsToRebuild(const Store& store, const IndexOptions& options) {
    if (options.columns.empty()) return IndexedColumns(store);
    if (!store.Obstacles().empty()) {
        throw CommandError("{}: {}; that concerns all indexes: --rebuild without COLUMNS", Printable(options.store),
                           store.Obstacles().front().reason);
    }
    return ParseColumns(store.GetSchema(), options.columns);
}

void Rebuild(const IndexOptions& options) {
    Store store(options.store, Purpose::Repair);
    const Columns columns = ColumnsToRebuild(store, options);
    BuildIndexes(store, columns, options.columns.empty());
    Write(columns.empty() ? fmt::format("{}: has no indexes\n", Printable(options.store))
                          : Report(store, columns, columns, "made anew"));
}

}  // namespace

void RunIndex(const IndexOptions& options) { options.rebuild ? Rebuild(options) : MakeMissing(options); }

}  // namespace store
