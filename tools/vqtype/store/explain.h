/// \file
/// A plan as people and programs read it: how each candidate was judged, and how right that was.
#ifndef VQTYPE_STORE_EXPLAIN_H
#define VQTYPE_STORE_EXPLAIN_H

#include <cstdint>
#include <string>
#include <vector>

#include "execute.h"

namespace store {

/// A plan, and how many records the conditions of each of its candidates truly select, and all conditions together.
struct Explanation {
    const Store& store;
    const Query& query;
    const Plan& plan;
    std::vector<std::uint64_t> trueRows;  ///< as many as candidates, and that of the whole query
};

/// Explains a plan; reads every record once, to count.
Explanation Explain(const Store& store, const Transaction& transaction, const Query& query, const Plan& plan);

/// A table of the candidates, and lines that tell the choice, the range and the order.
std::string FormatPlan(const Explanation& explanation);
/// The same as a JSON object.
std::string FormatPlanAsJson(const Explanation& explanation);

/// "1 row", "2 rows".
std::string Counted(std::uint64_t count, const char* one);
/// One line: what the execution took.
std::string FormatWork(const Work& work);
std::string FormatWorkAsJson(const Work& work);

}  // namespace store

#endif
