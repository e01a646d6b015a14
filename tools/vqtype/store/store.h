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
#include "lmdb.h"
#include "record.h"
#include "treekey.h"

namespace store {

/// An index on one column, as the header tells it. Its keys are counted by LMDB.
struct Index {
    std::size_t column;  ///< in the schema
    Database database;
    std::uint64_t cutKeys = 0;  ///< how many keys are only the beginning of their values
};

/// How a store is opened.
enum class Purpose {
    Read,    ///< records and indexes; refused while anything stands between the store and this library
    Write,   ///< the same, to add records or indexes
    Export,  ///< records alone: refused only where they cannot be read
    Repair,  ///< to rebuild the indexes: refused only where that does not mend it
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
    /// In the order of the schema's columns, as they were when the store was opened or written last.
    const std::vector<Index>& Indexes() const { return indexes_; }
    std::vector<Index>& Indexes() { return indexes_; }
    /// The index on that column, or null.
    const Index* FindIndex(std::size_t column) const;

    std::uint64_t CountRecords(const Transaction& transaction) const;
    /// The number that the next new object gets, from 1.
    std::uint64_t NextNumber(const Transaction& transaction) const;

    /// Within a transaction that writes; seen by others after its commit. Where a transaction is dropped or cannot be
    /// committed, ReadIndexes brings this object back to what the file has.
    /// @{
    void SetNextNumber(Transaction& transaction, std::uint64_t number);
    /// An empty index on the column; one that is there already is emptied.
    Index& MakeIndex(Transaction& transaction, std::size_t column);
    void SetCutKeys(Transaction& transaction, Index& index, std::uint64_t count);
    /// The header as this library would write it now: all indexes have been rebuilt.
    void Renew(Transaction& transaction);
    void ReadIndexes();
    /// @}

  private:
    Environment environment_;
    Header header_;
    std::vector<Obstacle> obstacles_;
    Database headerDatabase_ = 0, records_ = 0;
    std::vector<Index> indexes_;
};

}  // namespace store

#endif
