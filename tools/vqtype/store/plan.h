/// \file
/// How a query's records are found: by looking at all of them, or through one index.
///
/// The manager tells of each index what part of its keys the conditions on its column select. What remains of the
/// records after all conditions is taken to be the product of these parts, and a third for each condition that no index
/// tells of. A record that is found by its key costs as much as a few that are met in a row; an order that no index
/// gives costs a sort. A limit ends a scan early where the order allows it. The least cost wins.
#ifndef VQTYPE_STORE_PLAN_H
#define VQTYPE_STORE_PLAN_H

#include <cstdint>
#include <vector>

#include "range.h"

namespace store {

/// A way to find the records.
struct Candidate {
    const Index* index = nullptr;         ///< null: all records are looked at, in the order of their identifiers
    std::vector<std::size_t> conditions;  ///< of the query, those that narrow the range
    Range range;
    double estimate = 1;     ///< part of the records that is in the range, from 0 to 1
    double rows = 0;         ///< the same in records
    bool isOrdered = false;  ///< records come in the query's order
    double cost = 0;         ///< of records met in a row
};

struct Plan {
    std::vector<Candidate> candidates;  ///< all records first, then the indexes in the order of the columns
    std::size_t chosen = 0;
    std::uint64_t records = 0;  ///< of the store

    const Candidate& Chosen() const { return candidates[chosen]; }
};

/// Plans the query. With `noIndex` all records are looked at. The store and the query outlive the plan.
Plan MakePlan(const Store& store, const Transaction& transaction, const Query& query, bool noIndex);

}  // namespace store

#endif
