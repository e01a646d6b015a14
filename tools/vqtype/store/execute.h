/// \file
/// Carrying out a plan: candidates are met one by one, put to the conditions, sorted where the plan does not give the
/// order, and handed on.
#ifndef VQTYPE_STORE_EXECUTE_H
#define VQTYPE_STORE_EXECUTE_H

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "plan.h"

namespace store {

/// What a query took.
struct Work {
    std::uint64_t keysScanned = 0;          ///< of the index
    std::uint64_t recordsRead = 0;          ///< for the conditions, and again for rows that had to be sorted
    std::uint64_t rows = 0;                 ///< handed on
    std::optional<std::uint64_t> selected;  ///< records that all conditions select, where all were looked for
    bool isSorted = false;                  ///< the rows were sorted
    bool gaveUp = false;                    ///< the index turned out dearer than all records, which were looked at
};

/// Takes a row: its object's identifier, and its columns' disk forms, which are valid until it returns.
using RowSink = std::function<void(ByteView id, const std::vector<ByteView>& forms)>;

/// Hands the query's rows on, one after the other. Where no order was asked for or the index gives it, each as it is
/// found; else once all are sorted, of which only the keys and identifiers are kept, and of little more than the rows
/// that the limit asks for. An index is given up where it has cost more than a look at all records and led to no row
/// yet that was handed on. Throws CommandError at a record or an index that is damaged: no row is handed on whose bytes
/// are not those that were written.
Work Execute(const Store& store, const Transaction& transaction, const Query& query, const Plan& plan,
             const RowSink& sink);

/// How many records the conditions with these indices in the query select, for each set: by a look at every record.
std::vector<std::uint64_t> CountTruly(const Store& store, const Transaction& transaction, const Query& query,
                                      const std::vector<std::vector<std::size_t>>& sets);

}  // namespace store

#endif
