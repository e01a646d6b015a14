#include <algorithm>

#include "../files.h"
#include "../table.h"
#include "../text.h"
#include "buildindex.h"
#include "commands.h"

namespace store {
namespace {

using Columns = std::vector<std::size_t>;

// In the schema's order.
Columns ParseColumns(const Schema& schema, const std::string& names) {
    Columns columns = ParseColumnList(schema, names, "COLUMNS");
    for (const std::size_t column : columns) {
        if (CanIndex(schema[column].type)) continue;
        throw CommandError(
            "COLUMNS: {}: {} has no order of its own, so that it cannot be indexed (`vqtype types` shows which can)",
            schema[column].name, TypeName(schema[column].type));
    }
    std::sort(columns.begin(), columns.end());
    return columns;
}

Columns IndexedColumns(const Store& store) {
    Columns columns;
    for (const Index& index : store.Indexes()) columns.push_back(index.column);
    return columns;
}

// --- What was made

std::string Note(VqTypeId type, const char* done) {
    return IsInByteOrder(type) ? std::string(done) + "; by raw bytes, so that it serves no comparison" : done;
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
    Transaction transaction(store.Env(), Access::Read);
    store.ReadIndexes(transaction);
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
    if (!missing.empty()) BuildIndexes(store, missing);
    Write(Report(store, asked, missing, "made"));
}

// None for all.
Columns ColumnsToRebuild(const Store& store, const std::string& names) {
    if (names.empty()) return {};
    if (!store.Obstacles().empty()) {
        throw CommandError("{}: {}; that concerns all indexes: --rebuild without COLUMNS", Printable(store.Name()),
                           store.Obstacles().front().reason);
    }
    const Columns columns = ParseColumns(store.GetSchema(), names);
    for (const std::size_t column : columns) {
        if (store.FindIndex(column)) continue;
        throw CommandError("COLUMNS: {} has no index to rebuild; without --rebuild one is made",
                           store.GetSchema()[column].name);
    }
    return columns;
}

void Rebuild(const IndexOptions& options) {
    Store store(options.store, Purpose::Repair);
    const Columns asked = ColumnsToRebuild(store, options.columns);
    BuildIndexes(store, asked);
    const Columns made = asked.empty() ? IndexedColumns(store) : asked;
    Write(made.empty() ? fmt::format("{}: has no indexes\n", Printable(options.store))
                       : Report(store, made, made, "made anew"));
}

}  // namespace

void RunIndex(const IndexOptions& options) { options.rebuild ? Rebuild(options) : MakeMissing(options); }

}  // namespace store
