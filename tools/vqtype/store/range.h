/// \file
/// The part of an index that conditions on its column select: the manager's estimate of its size, and the range of
/// keys to be scanned.
#ifndef VQTYPE_STORE_RANGE_H
#define VQTYPE_STORE_RANGE_H

#include <optional>
#include <string>
#include <vector>

#include "querytext.h"
#include "store.h"

namespace store {

/// One end of a range, both ends included: all keys of a class from, or up to, those that are equal to a stored value
/// when case and accents do not count.
struct RangeEnd {
    KeyClass keyClass;
    Bytes stored = {};  ///< empty: all of the class
    std::string text;   ///< the end as a user reads it
};

struct Range {
    RangeEnd low{KeyClass::Null, {}, "the first key"};
    RangeEnd high{KeyClass::NoNumber, {}, "the last key"};
    bool isEmpty = false;  ///< no value can be selected
};

/// What an index holds.
struct IndexContents {
    double keys = 0, nulls = 0, noNumbers = 0;  ///< nulls and numbers that are none: counted, or estimated where many
    Bytes first, last;                          ///< stored keys of the first and the last value; empty without values

    double Values() const { return keys - nulls - noNumbers; }
};

/// Looks at both ends of an index. Of many nulls only the first ones are counted, and how close their objects' numbers
/// are to each other tells of the others. `records` is the number of all records.
IndexContents LookAt(const Store& store, const Transaction& transaction, const Index& index, std::uint64_t records);

/// True for a condition that an index on its column can narrow.
bool CanNarrow(const Schema& schema, const Condition& condition);

/// Conditions on the column of an index, taken together.
///
/// The estimate is the manager's for each condition. On one column, the least of those that ask for more than a value
/// and the least of those that ask for less overlap by what their sum is above 1; one that asks for equality or for a
/// pattern selects no more than itself.
class Selection {
  public:
    Selection(const Store& store, const Index& index, const IndexContents& contents);

    void Add(const Condition& condition);

    const Range& GetRange() const { return range_; }
    /// The part of the index's keys, from 0 to 1.
    double Estimate() const;

  private:
    struct Bound {
        double estimate = 0;
        std::optional<Bytes> low, high;
    };

    Bound Ask(const Bytes& literal, unsigned short operators) const;
    Bound AskWidened(const Condition& condition, unsigned short operators) const;
    bool NeedsWidening(const Condition& condition) const;
    int Compare(const Bytes& a, const Bytes& b) const;
    void Narrow(RangeEnd low, RangeEnd high);
    void NarrowToValues(const Condition& condition);
    std::string Describe(const Bytes& stored) const;

    const Schema& schema_;
    const Index& index_;
    const IndexContents& contents_;
    VqTypeId type_;
    unsigned char format_;
    Range range_;
    double above_ = 1, below_ = 1, point_ = 1;  // parts of the values
    double classes_ = 1;                        // part of the keys
};

}  // namespace store

#endif
