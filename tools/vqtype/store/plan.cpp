#include "plan.h"

#include <algorithm>
#include <cmath>

namespace store {

namespace {

// --- Costs, in records that are met in a row

constexpr double CostOfKey = 0.5;      // the next key of an index
constexpr double CostOfRecord = 4;     // a record that is found by its identifier
constexpr double CostOfSorting = 0.2;  // a comparison
constexpr double UnknownPart = 1.0 / 3;

// What all candidates have in common.
struct Outlook {
    double matches;  // records that all conditions select
    double needed;   // rows that are wanted; all matches without a limit
};

double CostOf(const Candidate& candidate, const Outlook& outlook, bool hasOrder, double records) {
    const bool endsEarly = (!hasOrder || candidate.isOrdered) && outlook.needed < outlook.matches;
    const double scanned = candidate.rows * (endsEarly ? outlook.needed / outlook.matches : 1);
    double cost = candidate.index ? scanned * (CostOfKey + CostOfRecord) : std::min(scanned, records);
    if (hasOrder && !candidate.isOrdered) cost += outlook.matches * std::log2(outlook.matches + 2) * CostOfSorting;
    return cost;
}

// An index gives the order where it is that of one column, all of which is in its keys.
bool GivesOrder(const Query& query, const Index& index) {
    return query.order.size() == 1 && query.order[0].column == index.column && index.cutKeys == 0;
}

Candidate MakeCandidate(const Store& store, const Transaction& transaction, const Query& query, const Index& index,
                        std::uint64_t records) {
    Candidate candidate;
    candidate.index = &index;
    candidate.isOrdered = query.order.empty() || GivesOrder(query, index);
    const IndexContents contents = LookAt(store, transaction, index, records);
    Selection selection(store, index, contents);
    for (std::size_t i = 0; i < query.conditions.size(); ++i) {
        const Condition& condition = query.conditions[i];
        if (condition.column != index.column || !CanNarrow(store.GetSchema(), condition)) continue;
        candidate.conditions.push_back(i);
        selection.Add(condition);
    }
    candidate.range = selection.GetRange();
    candidate.estimate = selection.Estimate();
    candidate.rows = candidate.estimate * contents.keys;
    return candidate;
}

Outlook LookAhead(const Plan& plan, const Query& query) {
    double part = 1;
    std::size_t unknown = query.conditions.size();
    for (const Candidate& candidate : plan.candidates) {
        part *= candidate.estimate;
        unknown -= candidate.conditions.size();
    }
    part *= std::pow(UnknownPart, static_cast<double>(unknown));
    const double matches = part * static_cast<double>(plan.records);
    const double wanted = static_cast<double>(query.limit.value_or(0)) + static_cast<double>(query.offset);
    return {matches, query.limit ? std::min(wanted, matches) : matches};
}

}  // namespace

Plan MakePlan(const Store& store, const Transaction& transaction, const Query& query, bool noIndex) {
    Plan plan;
    plan.records = store.CountRecords(transaction);
    Candidate all;
    all.rows = static_cast<double>(plan.records);
    all.isOrdered = query.order.empty();
    plan.candidates.push_back(all);
    for (const Index& index : store.Indexes()) {
        if (noIndex) break;
        Candidate candidate = MakeCandidate(store, transaction, query, index, plan.records);
        const bool isUseful = !candidate.conditions.empty() || GivesOrder(query, index);
        if (isUseful) plan.candidates.push_back(std::move(candidate));
    }
    const Outlook outlook = LookAhead(plan, query);
    for (Candidate& candidate : plan.candidates) {
        candidate.cost = CostOf(candidate, outlook, !query.order.empty(), all.rows);
    }
    const auto best = std::min_element(plan.candidates.begin(), plan.candidates.end(),
                                       [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
    plan.chosen = static_cast<std::size_t>(best - plan.candidates.begin());
    return plan;
}

}  // namespace store
