/// \file
/// Loading a CSV file into a store, a transaction for each batch of rows.
#ifndef VQTYPE_STORE_LOAD_H
#define VQTYPE_STORE_LOAD_H

#include "bytes.h"
#include "store.h"

namespace store {

/// Rows that are ready to be written: records without identifiers and checksums, one behind the other.
struct Batch {
    Bytes bytes;
    std::vector<std::size_t> ends;            ///< of each record in `bytes`
    std::size_t firstLine = 0, lastLine = 0;  ///< of the file

    std::size_t Count() const { return ends.size(); }
    ByteView Record(std::size_t i) const {
        const std::size_t start = i == 0 ? 0 : ends[i - 1];
        return ByteView(bytes).subspan(start, ends[i] - start);
    }
};

/// Writes the batch and its keys in all indexes in one transaction, which is on the disk when this returns; where the
/// map is full it grows, and the batch is written again. Throws CommandError, and nothing of the batch is there.
void WriteBatch(Store& store, const Batch& batch);

}  // namespace store

#endif
