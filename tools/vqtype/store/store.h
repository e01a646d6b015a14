/// \file
/// A store: typed records and their indexes in one LMDB file.
///
///     database     keys                    values
///     header       names                   text: "store" the header, "index NAME" each index, "next" the next number
///     records      object identifiers      records (record.h)
///     index NAME   tree keys (treekey.h)   nothing
///
/// Each value of `header` ends with its checksum, as records do.
#ifndef VQTYPE_STORE_STORE_H
#define VQTYPE_STORE_STORE_H

#include <cstdint>
#include <string>
#include <vector>

#include "header.h"
#include "keycounts.h"
#include "lmdb.h"
#include "record.h"
#include "treekey.h"

namespace store {

/// An index on one column, with what the header counts of its keys; all of them are counted by LMDB.
struct Index : KeyCounts {
    std::size_t column;  ///< in the schema
    Database database;
};

/// How a store is opened.
enum class Purpose {
    Read,    ///< records and indexes; refused while anything stands between the store and this library
    Write,   ///< the same, to add records or indexes
    Scan,    ///< as Read, but for an index that is damaged, which is left out
    Export,  ///< records alone: refused only where they cannot be read
    Repair,  ///< to rebuild the indexes, the damaged ones too: refused only where that does not mend it
    Verify,  ///< to look at everything: nothing is refused but what cannot be read; Obstacles() tells
};

class Store {
  public:
    /// Makes the file of a new store without records. Throws CommandError where there is one already.
    static void Create(const std::string& name, const Header& header);

    /// Opens a store and makes the library's settings those of the store. Throws CommandError, with the reason and what
    /// mends it, where that cannot be.
    Store(const std::string& name, Purpose purpose);

    const std::string& Name() const { return environment_.Name(); }
    Environment& Env() { return environment_; }
    const Header& GetHeader() const { return header_; }
    const Schema& GetSchema() const { return header_.schema; }
    unsigned char Format() const { return header_.format; }
    const std::vector<Obstacle>& Obstacles() const { return obstacles_; }

    Database Records() const { return records_; }
    /// In the order of the schema's columns, as they were at the last call of ReadIndexes or change.
    const std::vector<Index>& Indexes() const { return indexes_; }
    std::vector<Index>& Indexes() { return indexes_; }
    /// The index on that column, or null.
    const Index* FindIndex(std::size_t column) const;

    std::uint64_t CountRecords(const Transaction& transaction) const;
    /// Reads which indexes there are, and the counts of their keys, as that transaction sees them. It comes first in
    /// every transaction that uses indexes: other programs make them, and add keys, at any time. Their databases are
    /// open until the transaction is dropped or, where it is committed, from then on.
    void ReadIndexes(Transaction& transaction);
    /// The number that the next new object gets, from 1.
    std::uint64_t NextNumber(const Transaction& transaction) const;

    /// Within a transaction that writes; seen by others after its commit.
    /// @{
    void SetNextNumber(Transaction& transaction, std::uint64_t number);
    /// An empty index on the column; one that is there already is emptied.
    Index& MakeIndex(Transaction& transaction, std::size_t column);
    void SetCounts(Transaction& transaction, Index& index, const KeyCounts& counts);
    /// The header as this library would write it now: all indexes have been rebuilt.
    void Renew(Transaction& transaction);
    /// @}

  private:
    Index ReadIndex(Transaction& transaction, std::size_t column);

    Purpose purpose_;
    Environment environment_;
    Header header_;
    std::vector<Obstacle> obstacles_;
    Database headerDatabase_ = 0, records_ = 0;
    std::vector<Index> indexes_;
};

}  // namespace store

#endif
