#include "explain.h"

#include <fmt/format.h>

#include "../table.h"

namespace store {

namespace {

std::string WayText(const Explanation& explanation, const Candidate& candidate) {
    if (!candidate.index) return "all records";
    return "index on " + explanation.store.GetSchema()[candidate.index->column].name;
}

std::string ConditionsText(const Query& query, const std::vector<std::size_t>& conditions) {
    std::string text;
    for (const std::size_t i : conditions) text += (text.empty() ? "" : " and ") + query.conditions[i].text;
    return text;
}

std::string RatioText(double estimated, std::uint64_t truth) {
    return truth != 0 ? fmt::format("{:.2f}", estimated / static_cast<double>(truth)) : "-";
}

std::string CandidatesTable(const Explanation& explanation) {
    Table table{{"way"},        {"condition"},      {"estimate", true}, {"rows", true},
                {"true", true}, {"of truth", true}, {"cost", true}};
    for (std::size_t i = 0; i < explanation.plan.candidates.size(); ++i) {
        const Candidate& candidate = explanation.plan.candidates[i];
        const std::string conditions = ConditionsText(explanation.query, candidate.conditions);
        table.AddRow({WayText(explanation, candidate), conditions.empty() ? "-" : Shortened(conditions, 60),
                      fmt::format("{:.4g} %", 100 * candidate.estimate), fmt::format("{:.0f}", candidate.rows),
                      fmt::to_string(explanation.trueRows[i]), RatioText(candidate.rows, explanation.trueRows[i]),
                      fmt::format("{:.0f}", candidate.cost)});
    }
    return table.Format();
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
    return {store, query, plan, CountTruly(store, transaction, query, sets)};
}

std::string FormatPlan(const Explanation& explanation) {
    const Candidate& chosen = explanation.plan.Chosen();
    std::string text = CandidatesTable(explanation) + '\n' + ChoiceText(explanation) + '\n';
    if (chosen.index) {
        text += chosen.range.isEmpty ? "range: empty\n"
                                     : fmt::format("range: {} to {}\n", chosen.range.low.text, chosen.range.high.text);
        if (chosen.index->cutKeys != 0) {
            text += fmt::format("cut keys: {}; the ends of texts are widened to their first letters\n",
                                chosen.index->cutKeys);
        }
    }
    return text + fmt::format("order: {}\n", OrderText(explanation));
}

std::string FormatPlanAsJson(const Explanation& explanation) {
    const Candidate& chosen = explanation.plan.Chosen();
    std::string candidates;
    for (std::size_t i = 0; i < explanation.plan.candidates.size(); ++i) {
        const Candidate& candidate = explanation.plan.candidates[i];
        candidates += fmt::format(
            "{}\n  {{\"way\": {}, \"condition\": {}, \"estimate\": {:.9g}, \"rows\": {:.0f}, \"true\": {}, \"cost\": "
            "{:.0f}}}",
            i ? "," : "", Quoted(WayText(explanation, candidate)),
            Quoted(ConditionsText(explanation.query, candidate.conditions)), candidate.estimate, candidate.rows,
            explanation.trueRows[i], candidate.cost);
    }
    const bool hasRange = chosen.index && !chosen.range.isEmpty;
    return fmt::format("{{\"candidates\": [{}],\n \"chosen\": {}, \"from\": {}, \"to\": {}, \"order\": {}}}",
                       candidates, Quoted(WayText(explanation, chosen)),
                       hasRange ? Quoted(chosen.range.low.text) : "null",
                       hasRange ? Quoted(chosen.range.high.text) : "null", Quoted(OrderText(explanation)));
}

std::string FormatWork(const Work& work) {
    return fmt::format("{} keys scanned, {} records read, {} rows{}\n", work.keysScanned, work.recordsRead, work.rows,
                       work.isSorted ? ", sorted" : "");
}

std::string FormatWorkAsJson(const Work& work) {
    return fmt::format("{{\"keysScanned\": {}, \"recordsRead\": {}, \"rows\": {}, \"sorted\": {}}}", work.keysScanned,
                       work.recordsRead, work.rows, work.isSorted);
}

}  // namespace store
