/// \file
/// Making an index's tree from the records: keys are sorted first, in memory or in runs on the disk, and appended.
#ifndef VQTYPE_STORE_BUILDINDEX_H
#define VQTYPE_STORE_BUILDINDEX_H

#include <vector>

#include "store.h"

namespace store {

/// Bytes of memory that keys take while indexes are made, all together, before they go to the disk.
constexpr std::size_t SortMemory = std::size_t{96} << 20;

/// Makes the indexes on these columns anew, in one transaction. Without columns these are all indexes that there are,
/// and the header is written as this library would. The keys take `memory` bytes, whatever the number of
/// records is, and a few MB to sort and merge them; what LMDB has written of the trees takes as much again, up to 512
/// MB in one transaction. An index that is there is not made anew where pages of the file are damaged, as its pages
/// could be those of records. Throws CommandError, and the store is as it was, where a record is damaged; the text
/// names it.
void BuildIndexes(Store& store, const std::vector<std::size_t>& columns, std::size_t memory = SortMemory);

/// Adds the keys of a batch's records to an index: `forms` holds the disk form of the index's column of each, `ids`
/// their identifiers. They are sorted first, so that neighbours in the tree are written one after the other.
void AddKeys(Store& store, Transaction& transaction, Index& index, const std::vector<ByteView>& forms,
             const std::vector<Id>& ids);

}  // namespace store

#endif
