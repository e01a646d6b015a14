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
    double keys = 0, nulls = 0, noNumbers = 0;
    Bytes first, last;  ///< stored keys of the first and the last value; empty without values

    double Values() const { return keys - nulls - noNumbers; }
};

/// Looks at both ends of the values of an index.
IndexContents LookAt(const Transaction& transaction, const Index& index);

/// The keys of an index that are in a range, in the tree's order or, backward, from the last one on.
class RangeCursor {
  public:
    RangeCursor(const Store& store, const Transaction& transaction, const Index& index, const Range& range,
                bool isBackward = false);

    /// To the next key, at first to the first one. False where there is none.
    bool Next();
    ByteView Key() const { return cursor_.Key(); }

  private:
    bool IsInside() const;

    VqTypeId type_;
    unsigned char format_;
    Bytes low_, high_;
    Cursor cursor_;
    bool isBackward_, isEmpty_, isBegun_ = false;
};

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
        Bytes literal = {};  // of which they are the ends
    };

    Bound Ask(const Bytes& literal, unsigned short operators) const;
    Bound AskWidened(const Condition& condition, unsigned short operators) const;
    bool NeedsWidening(const Condition& condition) const;
    int Compare(const Bytes& a, const Bytes& b) const;
    void Narrow(RangeEnd low, RangeEnd high);
    void NarrowToValues(const Condition& condition);
    std::string Describe(const Bytes& stored) const;
    std::string DescribeEnd(const Bytes& literal, bool isHigh) const;

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
