#include "valueorder.h"

#include <algorithm>
#include <numeric>

namespace {

// The values as an index holds them. In memory some types compare in ways that no sort can go by: dates whose fields of
// -1 stand for any, times of a zone that are equal within a second. Their keys on disk have a whole order.
class StoredKeys {
  public:
    explicit StoredKeys(const ValueArray& values) : id_(values.GetType()) {
        if (Manager().IsFixed(id_)) {
            bytes_ = values.Store(VqFormat_LittleEndian);
            for (unsigned long i = 0; i < values.GetCount(); ++i)
                starts_.push_back(bytes_.size() / values.GetCount() * i);
        } else {
            for (unsigned long i = 0; i < values.GetCount(); ++i) Append(values.Store(VqFormat_LittleEndian, i, 1));
        }
        starts_.push_back(bytes_.size());
    }

    long Compare(unsigned long a, unsigned long b) const {
        int status = VqStatus_Ok;
        return Manager().Cmp(id_, LengthOf(a), &bytes_[starts_[a]], LengthOf(b), &bytes_[starts_[b]], VqCmp_Exact, 1,
                             VqFormat_LittleEndian, status);
    }

  private:
    void Append(const Bytes& key) {
        starts_.push_back(bytes_.size());
        bytes_.insert(bytes_.end(), key.begin(), key.end());
    }
    unsigned long LengthOf(unsigned long i) const { return static_cast<unsigned long>(starts_[i + 1] - starts_[i]); }

    VqTypeId id_;
    Bytes bytes_;
    std::vector<std::size_t> starts_;  // of the keys, and where the last one ends
};

// What is compared before the values themselves. A value that is not equal to itself has no place among the others: a
// sort that asked its comparison would have no order to go by.
enum Rank : char { NullFirst, Ordered, Unordered, NullLast };

class Order {
  public:
    Order(const ValueArray& values, const OrderRule& rule) : values_(values), keys_(values), rule_(rule) {
        for (unsigned long i = 0; i < values.GetCount(); ++i) ranks_.push_back(RankOf(i));
    }

    bool Before(unsigned long a, unsigned long b) const {
        if (ranks_[a] != ranks_[b]) return ranks_[a] < ranks_[b];
        if (ranks_[a] != Ordered) return false;
        return rule_.reverse ? keys_.Compare(b, a) < 0 : keys_.Compare(a, b) < 0;
    }

  private:
    Rank RankOf(unsigned long index) const {
        if (values_.IsNull(index)) return rule_.nullLast || rule_.reverse ? NullLast : NullFirst;
        return keys_.Compare(index, index) == 0 ? Ordered : Unordered;
    }

    const ValueArray& values_;
    const StoredKeys keys_;
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
