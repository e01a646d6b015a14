#include "valueorder.h"

#include <algorithm>
#include <numeric>

namespace {

// What is compared before the values themselves. A value that is not equal to itself has no place among the others: a
// sort that asked its comparison would have no order to go by.
enum Rank : char { NullFirst, Ordered, Unordered, NullLast };

class Order {
  public:
    Order(const ValueArray& values, const OrderRule& rule) : values_(values), rule_(rule) {
        for (unsigned long i = 0; i < values.GetCount(); ++i) ranks_.push_back(RankOf(i));
    }

    bool Before(unsigned long a, unsigned long b) const {
        if (ranks_[a] != ranks_[b]) return ranks_[a] < ranks_[b];
        if (ranks_[a] != Ordered) return false;
        return rule_.reverse ? values_.Compare(b, a) < 0 : values_.Compare(a, b) < 0;
    }

  private:
    Rank RankOf(unsigned long index) const {
        if (values_.IsNull(index)) return rule_.nullLast || rule_.reverse ? NullLast : NullFirst;
        return values_.Compare(index, index) == 0 ? Ordered : Unordered;
    }

    const ValueArray& values_;
    const OrderRule& rule_;
    std::vector<Rank> ranks_;
};

}  // namespace

std::vector<std::uint32_t> SortedOrder(const ValueArray& values, const OrderRule& rule) {
    const Order order(values, rule);
    const auto before = [&](unsigned long a, unsigned long b) { return order.Before(a, b); };
    std::vector<std::uint32_t> indices(values.GetCount());
    std::iota(indices.begin(), indices.end(), 0u);
    std::stable_sort(indices.begin(), indices.end(), before);
    if (rule.unique) {
        const auto notBefore = [&](unsigned long a, unsigned long b) { return !before(a, b); };
        indices.erase(std::unique(indices.begin(), indices.end(), notBefore), indices.end());
    }
    return indices;
}
