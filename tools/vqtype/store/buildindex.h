/// \file
/// Making an index's tree from the records: keys are sorted first, in memory or in runs on the disk, and appended.
#ifndef VQTYPE_STORE_BUILDINDEX_H
#define VQTYPE_STORE_BUILDINDEX_H

#include <vector>

#include "store.h"

namespace store {

/// Makes the indexes on these columns anew, in one transaction. Takes a bounded amount of memory, whatever the number
/// of records is. `renew` writes the header as this library would: for when these are all indexes that there are.
void BuildIndexes(Store& store, const std::vector<std::size_t>& columns, bool renew);

/// Adds the keys of a batch's records to an index: `forms` holds the disk form of the index's column of each, `ids`
/// their identifiers. They are sorted first, so that neighbours in the tree are written one after the other.
void AddKeys(Store& store, Transaction& transaction, Index& index, const std::vector<ByteView>& forms,
             const std::vector<Id>& ids);

}  // namespace store

#endif
