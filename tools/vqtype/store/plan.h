/// \file
/// How a query's records are found: by looking at all of them, or through one index.
///
/// The manager tells of each index what part of its keys the conditions on its column select. Values are seldom spread
/// evenly, though: the keys of the range are counted, as long as they are few, and where they are many a sample of the
/// records tells how many. What remains of the records after all conditions is taken to be the product of the parts,
/// and a third for each condition that no index tells of. A record that is found by its key costs as much as a few that
/// are met in a row; an order that no index gives costs a sort. A limit ends a scan early where the order allows it.
/// The least cost wins.
#ifndef VQTYPE_STORE_PLAN_H
#define VQTYPE_STORE_PLAN_H

#include <cstdint>
#include <vector>

#include "range.h"

namespace store {

/// What a way costs, in records that are met in a row.
constexpr double CostOfKey = 0.5;   ///< the next key of an index
constexpr double CostOfRecord = 4;  ///< a record that is found by its identifier

/// A way to find the records.
struct Candidate {
    const Index* index = nullptr;         ///< null: all records are looked at, in the order of their identifiers
    std::vector<std::size_t> conditions;  ///< of the query, those that narrow the range
    Range range;
    double estimate = 1;     ///< part of the records that is in the range by the manager's estimate, from 0 to 1
    double keys = 0;         ///< in the range: counted or, where they are many, expected; of no index, the records
    bool isCounted = true;   ///< `keys` is exact
    bool isOrdered = false;  ///< records come in the query's order
    double cost = 0;         ///< of records met in a row
};

struct Plan {
    std::vector<Candidate> candidates;  ///< all records first, then the indexes in the order of the columns
    std::size_t chosen = 0;
    std::uint64_t records = 0;  ///< of the store
    double matches = 0;         ///< records that all conditions are expected to select
    double mostCost = 0;        ///< at which an index that led to no row is given up

    const Candidate& Chosen() const { return candidates[chosen]; }
};

/// Plans the query. With `noIndex` all records are looked at. The store and the query outlive the plan.
Plan MakePlan(const Store& store, const Transaction& transaction, const Query& query, bool noIndex);

}  // namespace store

#endif
