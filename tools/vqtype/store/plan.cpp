#include "plan.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "predicate.h"

namespace store {

namespace {

constexpr double CostOfSorting = 0.2;  // a comparison, in records that are met in a row
constexpr double UnknownPart = 1.0 / 3;

// What an index may cost in any case.
constexpr double LeastGivenUp = 10000;

// Keys that are counted, and records that are looked at where there are more.
constexpr double MostCounted = 5000;
constexpr std::uint64_t SampleSize = 200;

double CostOf(const Candidate& candidate, const Plan& plan, const Query& query) {
    const double wanted = static_cast<double>(query.limit.value_or(0)) + static_cast<double>(query.offset);
    const bool endsEarly = query.limit && candidate.isOrdered && wanted < plan.matches;
    const double scanned = candidate.keys * (endsEarly ? wanted / plan.matches : 1);
    const double cost = scanned * (candidate.index ? CostOfKey + CostOfRecord : 1);
    return candidate.isOrdered ? cost : cost + plan.matches * std::log2(plan.matches + 2) * CostOfSorting;
}

// An index gives the order where it is that of one column, all of which is in its keys.
bool GivesOrder(const Query& query, const Index& index) {
    return query.order.size() == 1 && query.order[0].column == index.column && index.cutKeys == 0;
}

// The part of some records, at equal distances, that these conditions select.
double SampledPart(const Store& store, const Transaction& transaction, const Query& query, const Candidate& candidate,
                   std::uint64_t records) {
    Filter filter(store.GetHeader());
    for (const std::size_t i : candidate.conditions) filter.Add(query.conditions[i]);
    const RecordForm form(store.GetSchema(), store.Format());
    std::vector<ByteView> forms;
    double selected = 0;
    for (std::uint64_t i = 0; i < SampleSize; ++i) {
        const Id id = IdOf(1 + i * records / SampleSize, store.Format());
        const std::optional<ByteView> record = transaction.Get(store.Records(), id);
        selected += record && form.Split(*record, forms).empty() && filter.Selects(forms);
    }
    return selected / static_cast<double>(SampleSize);
}

// Of many keys the manager's estimate is taken as far as it is within what chance makes of a sample.
void CountKeys(const Store& store, const Transaction& transaction, const Query& query, std::uint64_t records,
               Candidate& candidate) {
    RangeCursor cursor(store, transaction, *candidate.index, candidate.range);
    double counted = 0;
    while (counted < MostCounted && cursor.Next()) ++counted;
    candidate.isCounted = counted < MostCounted;
    candidate.keys = counted;
    if (candidate.isCounted) return;
    const double part = SampledPart(store, transaction, query, candidate, records);
    const double error = 3 * std::sqrt((part * (1 - part) + 1.0 / SampleSize) / SampleSize);
    const double expected = std::clamp(candidate.estimate, part - error, part + error);
    candidate.keys = std::max(counted, expected * static_cast<double>(records));
}

// None where the index helps nothing.
std::optional<Candidate> MakeCandidate(const Store& store, const Transaction& transaction, const Query& query,
                                       const Index& index, std::uint64_t records) {
    Candidate candidate;
    candidate.index = &index;
    for (std::size_t i = 0; i < query.conditions.size(); ++i) {
        const Condition& condition = query.conditions[i];
        const bool isServed = condition.column == index.column && CanNarrow(store.GetSchema(), condition);
        if (isServed) candidate.conditions.push_back(i);
    }
    if (candidate.conditions.empty() && !GivesOrder(query, index)) return std::nullopt;
    candidate.isOrdered = query.order.empty() || GivesOrder(query, index);
    const IndexContents contents = LookAt(transaction, index);
    Selection selection(store, index, contents);
    for (const std::size_t i : candidate.conditions) selection.Add(query.conditions[i]);
    candidate.range = selection.GetRange();
    candidate.estimate = selection.Estimate();
    candidate.keys = contents.keys;
    if (!candidate.conditions.empty()) CountKeys(store, transaction, query, records, candidate);
    return candidate;
}

double ExpectMatches(const Plan& plan, const Query& query) {
    const auto records = static_cast<double>(plan.records);
    double part = 1;
    std::size_t unknown = query.conditions.size();
    for (const Candidate& candidate : plan.candidates) {
        part *= std::min(1.0, candidate.keys / std::max(records, 1.0));
        unknown -= candidate.conditions.size();
    }
    return part * std::pow(UnknownPart, static_cast<double>(unknown)) * records;
}

}  // namespace

Plan MakePlan(const Store& store, const Transaction& transaction, const Query& query, bool noIndex) {
    Plan plan;
    plan.records = store.CountRecords(transaction);
    Candidate all;
    all.keys = static_cast<double>(plan.records);
    all.isOrdered = query.order.empty();
    plan.candidates.push_back(all);
    for (const Index& index : store.Indexes()) {
        if (noIndex) break;
        auto candidate = MakeCandidate(store, transaction, query, index, plan.records);
        if (candidate) plan.candidates.push_back(std::move(*candidate));
    }
    plan.matches = ExpectMatches(plan, query);
    for (Candidate& candidate : plan.candidates) candidate.cost = CostOf(candidate, plan, query);
    plan.mostCost = std::max(LeastGivenUp, plan.candidates[0].cost);
    const auto best = std::min_element(plan.candidates.begin(), plan.candidates.end(),
                                       [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
    plan.chosen = static_cast<std::size_t>(best - plan.candidates.begin());
    return plan;
}

}  // namespace store
