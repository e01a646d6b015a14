/// \file
/// Conditions put to values as they are stored: the manager's comparison of disk forms decides, in the store's byte
/// order. Comparisons are literal; `like` reads its literal as a pattern. The store's operation says whether case and
/// accents count.
#ifndef VQTYPE_STORE_PREDICATE_H
#define VQTYPE_STORE_PREDICATE_H

#include <memory>
#include <vector>

#include "header.h"
#include "querytext.h"
#include "treekey.h"

namespace store {

/// One condition. It and the schema outlive the predicate. Not for two threads at once.
class Predicate {
  public:
    Predicate(const Condition& condition, const Header& header);

    const Condition& GetCondition() const { return condition_; }
    bool Selects(ByteView form);

  private:
    int Compare(ByteView form, const Bytes& literal) const;
    bool Passes(ByteView form) const;

    const Condition& condition_;
    VqTypeId type_;
    unsigned char format_;
    unsigned short operation_;
    VqCompareFunc compare_;
    KeyMaker classes_;
    bool isNumber_;  // all literals are equal to themselves
};

/// All conditions of a query, or some of them.
class Filter {
  public:
    explicit Filter(const Header& header) : header_(header) {}
    void Add(const Condition& condition) { predicates_.push_back(std::make_unique<Predicate>(condition, header_)); }

    bool Selects(const std::vector<ByteView>& forms);
    /// The same where all conditions are on the column with that disk form.
    bool Selects(ByteView form);

  private:
    const Header& header_;
    std::vector<std::unique_ptr<Predicate>> predicates_;
};

}  // namespace store

#endif
