/// \file
/// Putting records into the order that a query asks for.
#ifndef VQTYPE_STORE_ROWSORTER_H
#define VQTYPE_STORE_ROWSORTER_H

#include <cstdint>
#include <memory>
#include <vector>

#include "header.h"
#include "querytext.h"
#include "treekey.h"

namespace store {

/// Collects records by the keys of their columns, one for each column of the order, of values that are not cut. Records
/// that are equal in all columns are in the order of their identifiers, in the direction of the last column. Header and
/// order outlive the sorter.
class RowSorter {
  public:
    /// Of more than `most` records only the first ones are kept. The others are dropped from time to time: once there
    /// are twice as many, and at least `leastDropped` or some megabytes of keys.
    RowSorter(const Header& header, const std::vector<OrderColumn>& order, std::uint64_t most,
              std::size_t leastDropped = 4096);

    void Add(ByteView id, const std::vector<ByteView>& forms);
    /// The identifiers of the records that are kept, in order.
    std::vector<Id> Sorted();

  private:
    void AppendKey(std::size_t column, ByteView form, ByteView id);
    ByteView KeyAt(std::size_t& at) const;
    bool IsBefore(std::size_t a, std::size_t b) const;
    void DropLast();

    const Header& header_;
    const std::vector<OrderColumn>& order_;
    const std::uint64_t most_;
    const std::size_t leastDropped_;
    std::vector<std::unique_ptr<KeyMaker>> makers_;  // one for each column of the order
    Bytes keys_;                                     // of each record, one behind the other, their lengths in front
    std::vector<std::size_t> records_;               // where their keys begin
};

}  // namespace store

#endif
