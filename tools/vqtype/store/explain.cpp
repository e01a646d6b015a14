#include "explain.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "../table.h"

namespace store {

namespace {

std::string WayText(const Explanation& explanation, const Candidate& candidate) {
    if (!candidate.index) return "all records";
    return "index on " + explanation.store.GetSchema()[candidate.index->column].name;
}

// As the manager's estimate has it.
double RowsOf(const Plan& plan, const Candidate& candidate) {
    return candidate.estimate * static_cast<double>(plan.records);
}

std::string ConditionsText(const Query& query, const std::vector<std::size_t>& conditions) {
    std::string text;
    for (const std::size_t i : conditions) text += (text.empty() ? "" : " and ") + query.conditions[i].text;
    return text;
}

// Whole numbers, but of small ones two digits that tell something.
std::string NumberText(double number) {
    return number < 10 ? fmt::format("{:.2g}", number) : fmt::format("{:.0f}", number);
}

std::string RatioText(double estimated, std::uint64_t truth) {
    return truth != 0 ? NumberText(estimated / static_cast<double>(truth)) : "-";
}

std::vector<std::string> CellsOf(const Explanation& explanation, std::size_t i) {
    const Candidate& candidate = explanation.plan.candidates[i];
    const std::string conditions = ConditionsText(explanation.query, candidate.conditions);
    const double rows = RowsOf(explanation.plan, candidate);
    return {WayText(explanation, candidate),
            conditions.empty() ? "-" : Shortened(conditions, 60),
            fmt::format("{:.4g} %", 100 * candidate.estimate),
            NumberText(rows),
            fmt::to_string(explanation.trueRows[i]),
            RatioText(rows, explanation.trueRows[i]),
            (candidate.isCounted ? "" : "about ") + fmt::format("{:.0f}", candidate.keys),
            fmt::format("{:.0f}", candidate.cost)};
}

std::string CandidatesTable(const Explanation& explanation) {
    const Plan& plan = explanation.plan;
    Table table{{"way"},        {"condition"},      {"estimate", true}, {"rows", true},
                {"true", true}, {"of truth", true}, {"scanned", true},  {"cost", true}};
    for (std::size_t i = 0; i < plan.candidates.size(); ++i) table.AddRow(CellsOf(explanation, i));
    if (!explanation.query.conditions.empty()) {
        const std::uint64_t truth = explanation.trueRows.back();
        const auto records = static_cast<double>(std::max<std::uint64_t>(plan.records, 1));
        table.AddRow({"the whole query", "all", fmt::format("{:.4g} %", 100 * plan.matches / records),
                      NumberText(plan.matches), fmt::to_string(truth), RatioText(plan.matches, truth)});
    }
    return table.Format();
}

// --- Conditions that a way leaves to the records

std::vector<std::size_t> LeftOver(const Explanation& explanation) {
    const std::vector<std::size_t>& served = explanation.plan.Chosen().conditions;
    std::vector<std::size_t> left;
    for (std::size_t i = 0; i < explanation.query.conditions.size(); ++i) {
        if (std::find(served.begin(), served.end(), i) == served.end()) left.push_back(i);
    }
    return left;
}

std::vector<std::size_t> NotServed(const Explanation& explanation) {
    std::vector<std::size_t> conditions;
    for (const std::size_t i : LeftOver(explanation)) {
        const Condition& condition = explanation.query.conditions[i];
        const bool isIndexed = explanation.store.FindIndex(condition.column) != nullptr;
        if (isIndexed && !CanNarrow(explanation.store.GetSchema(), condition)) conditions.push_back(i);
    }
    return conditions;
}

std::string LeftOverText(const Explanation& explanation) {
    std::string text;
    for (const std::size_t i : NotServed(explanation)) {
        const Condition& condition = explanation.query.conditions[i];
        text += fmt::format("the index on {} cannot serve: {}\n", explanation.store.GetSchema()[condition.column].name,
                            condition.text);
    }
    const std::vector<std::size_t> left = LeftOver(explanation);
    return left.empty() ? text : text + fmt::format("then: {}\n", ConditionsText(explanation.query, left));
}

const char* OrderText(const Explanation& explanation) {
    if (explanation.query.order.empty()) return "as found";
    return explanation.plan.Chosen().isOrdered ? "by the index" : "by sorting";
}

std::string ChoiceText(const Explanation& explanation) {
    const Plan& plan = explanation.plan;
    const std::string way = WayText(explanation, plan.Chosen());
    if (plan.candidates.size() == 1) return fmt::format("chosen: {}, as no index helps", way);
    return fmt::format("chosen: {}, at the least cost", way);
}

}  // namespace

Explanation Explain(const Store& store, const Transaction& transaction, const Query& query, const Plan& plan) {
    std::vector<std::vector<std::size_t>> sets;
    for (const Candidate& candidate : plan.candidates) sets.push_back(candidate.conditions);
    sets.emplace_back(query.conditions.size());
    std::iota(sets.back().begin(), sets.back().end(), std::size_t{0});
    return {store, query, plan, CountTruly(store, transaction, query, sets)};
}

std::string FormatPlan(const Explanation& explanation) {
    const Candidate& chosen = explanation.plan.Chosen();
    std::string text = CandidatesTable(explanation) + '\n' + ChoiceText(explanation) + '\n';
    if (chosen.index) {
        text += chosen.range.isEmpty ? "range: empty\n"
                                     : fmt::format("range: {} to {}\n", chosen.range.low.text, chosen.range.high.text);
        if (chosen.index->cutKeys != 0) {
            text += fmt::format(
                "cut keys: {}; the ends of texts of 16 characters and more are widened to their first letters\n",
                chosen.index->cutKeys);
        }
    }
    return text + LeftOverText(explanation) + fmt::format("order: {}\n", OrderText(explanation));
}

std::string FormatPlanAsJson(const Explanation& explanation) {
    const Candidate& chosen = explanation.plan.Chosen();
    std::string candidates;
    for (std::size_t i = 0; i < explanation.plan.candidates.size(); ++i) {
        const Candidate& candidate = explanation.plan.candidates[i];
        candidates += fmt::format(
            "{}\n  {{\"way\": {}, \"condition\": {}, \"estimate\": {:.9g}, \"rows\": {}, \"true\": {}, \"scanned\": "
            "{:.0f}, "
            "\"cost\": {:.0f}}}",
            i ? "," : "", Quoted(WayText(explanation, candidate)),
            Quoted(ConditionsText(explanation.query, candidate.conditions)), candidate.estimate,
            NumberText(RowsOf(explanation.plan, candidate)), explanation.trueRows[i], candidate.keys, candidate.cost);
    }
    const bool hasRange = chosen.index && !chosen.range.isEmpty;
    return fmt::format(
        "{{\"candidates\": [{}],\n \"chosen\": {}, \"from\": {}, \"to\": {}, \"notServed\": {}, \"then\": {}, "
        "\"rows\": {}, \"true\": {}, \"order\": {}}}",
        candidates, Quoted(WayText(explanation, chosen)), hasRange ? Quoted(chosen.range.low.text) : "null",
        hasRange ? Quoted(chosen.range.high.text) : "null",
        Quoted(ConditionsText(explanation.query, NotServed(explanation))),
        Quoted(ConditionsText(explanation.query, LeftOver(explanation))), NumberText(explanation.plan.matches),
        explanation.trueRows.back(), Quoted(OrderText(explanation)));
}

std::string Counted(std::uint64_t count, const char* one) {
    return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

std::string FormatWork(const Work& work) {
    return fmt::format("{} scanned, {} read, {}{}{}\n", Counted(work.keysScanned, "key"),
                       Counted(work.recordsRead, "record"), Counted(work.rows, "row"), work.isSorted ? ", sorted" : "",
                       work.gaveUp ? "; the index was given up, as all records cost less" : "");
}

std::string FormatWorkAsJson(const Work& work) {
    return fmt::format("{{\"keysScanned\": {}, \"recordsRead\": {}, \"rows\": {}, \"sorted\": {}, \"gaveUp\": {}}}",
                       work.keysScanned, work.recordsRead, work.rows, work.isSorted, work.gaveUp);
}

}  // namespace store
