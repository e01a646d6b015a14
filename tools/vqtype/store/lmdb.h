/// \file
/// LMDB with owners for its handles and words for its errors. A thin layer: it knows keys and values as bytes.
///
/// All failures are CommandErrors that begin with the file's name. A full disk, a file that cannot grow, and a file
/// that is none of LMDB's (or one of another pointer width) are told as such.
#ifndef VQTYPE_STORE_LMDB_H
#define VQTYPE_STORE_LMDB_H

#include <lmdb.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "../error.h"
#include "bytes.h"

namespace store {

/// The map is too small for what a transaction writes. Environment::Grow, then do the transaction again.
class MapFull : public CommandError {
  public:
    using CommandError::CommandError;
};

enum class Access { Read, Write };

/// Throws CommandError, with the reason, for a file that can be no store: one that is missing, empty, or another
/// machine's.
void RequireStoreFile(const std::string& name);

/// One file and its lock file `FILE-lock`.
class Environment {
  public:
    /// Opens the file. Who may read it but not make its lock file reads without locks, see RequireUnchanged.
    Environment(const std::string& name, Access access);
    /// Makes an empty store of the file `newFile`, to write; it will be called `name`, as errors do already.
    Environment(const std::string& name, const std::string& newFile);

    const std::string& Name() const { return name_; }
    MDB_env* Handle() const { return handle_.get(); }

    /// Doubles the map, or makes it large enough for `bytes` more than the file has. No transaction may be alive.
    void Grow(std::size_t bytes = 0);
    /// Gives back the memory of pages that have been read: it counts as this process's, until then. They are read again
    /// where they are wanted.
    void GiveBackPages() const;
    /// Throws for a code of LMDB that is not 0; `doing` says what failed ("reading index name"). MapFull where it is
    /// that. Whatever the code is, throws as RequireUnchanged does.
    void Check(int code, const char* doing) const;
    /// Throws where the last transaction reads without locks, and others have written so much since its beginning that
    /// its pages may be used for something else: what has been read since the last call may be anything.
    void RequireUnchanged() const;

  private:
    friend class Transaction;
    int Open(const std::string& file, unsigned flags, std::size_t mapSize = 0);

    struct Close {
        void operator()(MDB_env* handle) const { mdb_env_close(handle); }
    };
    std::string name_;
    std::unique_ptr<MDB_env, Close> handle_;
    bool isLocked_ = true;
    std::size_t unlockedRead_ = 0;  // the number of the last transaction that reads without locks; 0 for none
};

using Database = MDB_dbi;

/// A transaction: a snapshot that is read, or changes that nobody sees before Commit and that its destructor drops.
class Transaction {
  public:
    /// One that changes waits for the end of another program's.
    Transaction(Environment& environment, Access access);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    Environment& Env() const { return environment_; }
    MDB_txn* Handle() const { return handle_; }

    /// Makes all changes last: they are on the disk when this returns.
    void Commit();

    /// Opens a database by name; none when there is no such. With `isNew` it is made where it is missing. `order` null
    /// is LMDB's own, by bytes.
    std::optional<Database> Open(const std::string& name, MDB_cmp_func* order, bool isNew = false);
    /// Removes all that the database holds; it stays open.
    void Clear(Database database);
    MDB_stat Statistics(Database database) const;

    /// The value of that key; none when there is no such key. Valid until the next change in this transaction.
    std::optional<ByteView> Get(Database database, ByteView key) const;
    /// Writes the key's value, also where it had one.
    void Put(Database database, ByteView key, ByteView value);
    /// The same for a new key. False, and nothing changes, where it has a value.
    bool Insert(Database database, ByteView key, ByteView value);
    /// The same for a key behind all others, which costs no search as long as the transaction writes nothing else.
    /// False, and nothing changes, for one that is not.
    bool Append(Database database, ByteView key, ByteView value);

  private:
    void BeginAppending(Database database);
    void EndAppending();

    Environment& environment_;
    MDB_txn* handle_ = nullptr;
    MDB_cursor* appender_ = nullptr;  // behind the last key of `appended_`
    Database appended_ = 0;
};

/// A place among a database's keys. All moves give false where there is no key.
class Cursor {
  public:
    Cursor(const Transaction& transaction, Database database);

    bool First() { return Move(MDB_FIRST); }
    bool Last() { return Move(MDB_LAST); }
    bool Next() { return Move(MDB_NEXT); }
    bool Previous() { return Move(MDB_PREV); }
    /// To the first key that is not below `key` in the database's order.
    bool Seek(ByteView key);
    /// To the last key that is below `key`.
    bool SeekBefore(ByteView key) { return Seek(key) ? Previous() : Last(); }

    ByteView Key() const { return key_; }
    ByteView Value() const { return value_; }

  private:
    bool Move(MDB_cursor_op operation);

    struct Close {
        void operator()(MDB_cursor* handle) const { mdb_cursor_close(handle); }
    };
    const Environment& environment_;
    std::unique_ptr<MDB_cursor, Close> handle_;
    ByteView key_, value_;
};

}  // namespace store

#endif
