// `vqtype store query`: a query's rows, and how they were found.
#include <fmt/format.h>

#include <numeric>

#include "../error.h"
#include "../files.h"
#include "commands.h"
#include "explain.h"
#include "rows.h"

namespace store {

namespace {

// The columns that are shown: those of a list of names, or all.
std::vector<std::size_t> ColumnsShown(const Schema& schema, const std::string& names) {
    if (!names.empty()) return ParseColumnList(schema, names, "--columns");
    std::vector<std::size_t> columns(schema.Count());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    return columns;
}

RowStyle StyleOf(const QueryOptions& options) {
    return options.json ? RowStyle::Json : options.csv ? RowStyle::Csv : RowStyle::Table;
}

std::string CountText(const Work& work, const Query& query) {
    std::string text = Counted(work.rows, "row");
    if (work.selected && *work.selected != work.rows) return text + fmt::format(" of {}", *work.selected);
    const bool isAtLimit = query.limit && work.rows == *query.limit && !work.selected;
    return text + (isAtLimit ? ", which is the limit; how many more there are was not counted" : "");
}

// What stands around the rows: JSON is one value as a whole, CSV nothing but rows.
void WriteInFront(RowStyle style, const Explanation& explanation) {
    if (style == RowStyle::Json) Write(fmt::format("{{\"plan\": {},\n\"rows\": ", FormatPlanAsJson(explanation)));
    if (style == RowStyle::Csv) WriteError(FormatPlan(explanation));
    if (style == RowStyle::Table) Write(FormatPlan(explanation) + '\n');
}

void WriteBehind(RowStyle style, const Work& work) {
    if (style == RowStyle::Json) Write(fmt::format(",\"work\": {}}}\n", FormatWorkAsJson(work)));
    if (style == RowStyle::Csv) WriteError(FormatWork(work));
    if (style == RowStyle::Table) Write(FormatWork(work));
}

}  // namespace

void RunQuery(const QueryOptions& options) {
    Store store(options.store, options.noIndex ? Purpose::Scan : Purpose::Read);
    const Query query = ParseQuery(options.query, store.GetSchema(), store.Format());
    const std::vector<std::size_t> columns = ColumnsShown(store.GetSchema(), options.columns);
    const RowStyle style = StyleOf(options);
    Transaction transaction(store.Env(), Access::Read);
    store.ReadIndexes(transaction);
    const Plan plan = MakePlan(store, transaction, query, options.noIndex);
    if (options.explain) WriteInFront(style, Explain(store, transaction, query, plan));
    const std::unique_ptr<RowWriter> rows = MakeRowWriter(style, store.GetHeader(), columns);
    const Work work = Execute(store, transaction, query, plan,
                              [&](ByteView, const std::vector<ByteView>& forms) { rows->Add(forms); });
    store.Env().RequireUnchanged();
    rows->Finish();
    if (style == RowStyle::Table) Write('\n' + CountText(work, query) + '\n');
    if (options.explain) WriteBehind(style, work);
}

}  // namespace store
