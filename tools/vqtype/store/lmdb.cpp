#include "lmdb.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "../files.h"
#include "../text.h"
#include "fault.h"

namespace store {

namespace {

constexpr std::size_t FirstMapSize = std::size_t{64} << 20;
constexpr unsigned MostDatabases = 1024;

// --- Words

struct Words {
    int code;
    const char* text;
};

constexpr Words Reasons[] = {
    {MDB_MAP_FULL, "the map is full"},
    {MDB_INVALID, "this is no store, or its first page is damaged"},
    {MDB_VERSION_MISMATCH, "the file is one of another version of LMDB"},
    {MDB_CORRUPTED, "the store's pages are damaged; `vqtype store check` tells where"},
    {MDB_PAGE_NOTFOUND, "the store's pages are damaged; `vqtype store check` tells where"},
    {MDB_PANIC, "an earlier failure has shut the store for this program"},
    {MDB_READERS_FULL, "too many programs read the store at once"},
    {MDB_DBS_FULL, "the store has too many indexes"},
    {MDB_TXN_FULL, "a transaction writes too much at once"},
    {ENOSPC, "the disk is full; what was committed is kept"},
    {EDQUOT, "the quota of disk space is used up; what was committed is kept"},
    {EFBIG, "the file cannot grow, as the size of files is limited; what was committed is kept"},
    // LMDB's word for a file that took only a part of what was written, too.
    {EIO, "the disk is full, the size of files is limited, or the disk is at fault; what was committed is kept"},
    {EACCES, "no permission"},
    {EPERM, "no permission"},
    {EROFS, "the file lies on a disk that can only be read"},
    {ENOMEM, "there is too little memory or address space"},
};

std::string Reason(int code) {
    for (const Words& reason : Reasons) {
        if (reason.code == code) return reason.text;
    }
    return mdb_strerror(code);
}

[[noreturn]] void Fail(const std::string& name, const char* doing, int code) {
    throw CommandError("{}: {}: {}", Printable(name), doing, Reason(code));
}

// --- Files that are no stores

constexpr std::uint32_t Magic = 0xBEEFC0DE;
// Behind the head of a page, which holds the page's number: 8 bytes, or 4 where pointers have 32 bits.
constexpr std::size_t MagicAt = sizeof(std::size_t) + 8, OtherMagicAt = MagicAt == 16 ? 12 : 16;

const char* Fault(const std::filesystem::path& path) {
    std::array<unsigned char, 20> bytes{};
    std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(bytes.data()), bytes.size());
    const auto at = [&bytes](std::size_t place) {
        std::uint32_t number = 0;
        std::memcpy(&number, bytes.data() + place, sizeof(number));
        return number;
    };
    if (at(OtherMagicAt) == Magic) return "this is a store of a program with other pointers: of 32 bits, or of 64";
    if (at(MagicAt) == __builtin_bswap32(Magic) || at(OtherMagicAt) == __builtin_bswap32(Magic)) {
        return "this is a store of a machine with the other byte order";
    }
    return nullptr;
}

void ClaimFile(const std::string& name) {
    const int file = ::open(PathOf(name).c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
    if (file >= 0) {
        ::close(file);
    } else if (errno == EEXIST) {
        throw CommandError("{}: there is a file of this name already", Printable(name));
    } else {
        throw CommandError("{}: cannot be made: {}", Printable(name), std::strerror(errno));
    }
}

// LMDB's write of a file that must not grow ends in EFBIG then, and not in a signal.
void IgnoreFileSizeSignal() { std::signal(SIGXFSZ, SIG_IGN); }

}  // namespace

void RequireStoreFile(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = PathOf(name);
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    const auto refuse = [&name](const char* why) { throw CommandError("{}: {}", Printable(name), why); };
    if (status.type() == std::filesystem::file_type::not_found) {
        refuse("there is no such store; `vqtype store create` makes one");
    }
    if (error) throw CommandError("{}: {}", Printable(name), error.message());
    if (std::filesystem::is_directory(status)) refuse("this is a folder; a store is a file");
    if (!std::filesystem::is_regular_file(status)) refuse("this is no file; a store is one");
    if (std::filesystem::file_size(path, error) == 0) refuse("this file is empty, and no store");
    if (const char* fault = Fault(path)) refuse(fault);
}

// --- Environments

Environment::Environment(const std::string& name, Access access, bool isNew) : name_(name) {
    if (isNew) {
        ClaimFile(name);
    } else {
        RequireStoreFile(name);
    }
    IgnoreFileSizeSignal();
    const unsigned flags = MDB_NOSUBDIR | MDB_NOTLS | (access == Access::Read ? MDB_RDONLY : 0u);
    int code = Open(flags, isNew);
    // Who may only read cannot make the lock file.
    if (code == EACCES && access == Access::Read) code = Open(flags | MDB_NOLOCK, isNew);
    Check(code, "opening the store");
    // What programs left behind that did not end by themselves keeps pages from being used again.
    if (access == Access::Write) Check(mdb_reader_check(Handle(), nullptr), "looking for readers");
}

int Environment::Open(unsigned flags, bool isNew) {
    MDB_env* handle = nullptr;
    if (const int code = mdb_env_create(&handle)) return code;
    handle_.reset(handle);
    WatchFaults(handle, name_);
    mdb_env_set_maxdbs(handle, MostDatabases);
    if (isNew) mdb_env_set_mapsize(handle, FirstMapSize);
    return mdb_env_open(handle, PathOf(name_).c_str(), flags, 0666);
}

void Environment::Grow(std::size_t bytes) {
    MDB_envinfo info;
    MDB_stat pages;
    Check(mdb_env_info(Handle(), &info), "looking at the map");
    Check(mdb_env_stat(Handle(), &pages), "looking at the map");
    const std::size_t needed = (info.me_last_pgno + 1) * pages.ms_psize + bytes;
    std::size_t size = info.me_mapsize * (bytes == 0 ? 2 : 1);
    while (size < needed) size *= 2;
    Check(mdb_env_set_mapsize(Handle(), size), "growing the map");
}

void Environment::Check(int code, const char* doing) const {
    if (code == MDB_SUCCESS) return;
    if (code == MDB_MAP_FULL) throw MapFull("{}: {}: {}", Printable(name_), doing, Reason(code));
    Fail(name_, doing, code);
}

// --- Transactions

Transaction::Transaction(Environment& environment, Access access) : environment_(environment) {
    const unsigned flags = access == Access::Read ? MDB_RDONLY : 0;
    const auto begin = [&] { return mdb_txn_begin(environment.Handle(), nullptr, flags, &handle_); };
    int code = begin();
    if (code == MDB_MAP_RESIZED) {
        // Another program has made it grow.
        environment.Check(mdb_env_set_mapsize(environment.Handle(), 0), "growing the map");
        code = begin();
    } else if (code == MDB_READERS_FULL) {
        mdb_reader_check(environment.Handle(), nullptr);
        code = begin();
    }
    environment.Check(code, "beginning a transaction");
}

Transaction::~Transaction() {
    EndAppending();
    if (handle_) mdb_txn_abort(handle_);
}

void Transaction::Commit() {
    EndAppending();
    MDB_txn* const handle = std::exchange(handle_, nullptr);  // which does not outlive this, whatever comes
    environment_.Check(mdb_txn_commit(handle), "writing");
}

std::optional<Database> Transaction::Open(const std::string& name, MDB_cmp_func* order, bool isNew) {
    Database database = 0;
    const int code = mdb_dbi_open(handle_, name.c_str(), isNew ? MDB_CREATE : 0u, &database);
    // A file of LMDB that is no store of ours can have a key of that name without a database.
    if (code == MDB_NOTFOUND || code == MDB_INCOMPATIBLE) return std::nullopt;
    environment_.Check(code, "opening a database");
    if (order) environment_.Check(mdb_set_compare(handle_, database, order), "opening a database");
    return database;
}

void Transaction::Drop(Database database) {
    EndAppending();
    environment_.Check(mdb_drop(handle_, database, 1), "removing a database");
}

void Transaction::Clear(Database database) {
    EndAppending();
    environment_.Check(mdb_drop(handle_, database, 0), "emptying a database");
}

MDB_stat Transaction::Statistics(Database database) const {
    MDB_stat statistics;
    environment_.Check(mdb_stat(handle_, database, &statistics), "looking at a database");
    return statistics;
}

namespace {

MDB_val ValOf(ByteView bytes) { return {bytes.size(), const_cast<unsigned char*>(bytes.data())}; }

ByteView ViewOf(const MDB_val& value) { return {static_cast<const unsigned char*>(value.mv_data), value.mv_size}; }

}  // namespace

std::optional<ByteView> Transaction::Get(Database database, ByteView key) const {
    MDB_val keyVal = ValOf(key), value;
    const int code = mdb_get(handle_, database, &keyVal, &value);
    if (code == MDB_NOTFOUND) return std::nullopt;
    environment_.Check(code, "reading");
    return ViewOf(value);
}

void Transaction::Put(Database database, ByteView key, ByteView value) {
    EndAppending();
    MDB_val keyVal = ValOf(key), valueVal = ValOf(value);
    environment_.Check(mdb_put(handle_, database, &keyVal, &valueVal, 0), "writing");
}

bool Transaction::Append(Database database, ByteView key, ByteView value) {
    if (!appender_ || appended_ != database) BeginAppending(database);
    MDB_val keyVal = ValOf(key), valueVal = ValOf(value);
    const int code = mdb_cursor_put(appender_, &keyVal, &valueVal, MDB_APPEND);
    if (code == MDB_KEYEXIST) return false;
    environment_.Check(code, "writing");
    return true;
}

// A cursor that stays behind the last key does not look for it again.
void Transaction::BeginAppending(Database database) {
    EndAppending();
    environment_.Check(mdb_cursor_open(handle_, database, &appender_), "writing");
    appended_ = database;
}

void Transaction::EndAppending() {
    if (appender_) mdb_cursor_close(std::exchange(appender_, nullptr));
}

// --- Cursors

Cursor::Cursor(const Transaction& transaction, Database database) : environment_(transaction.Env()) {
    MDB_cursor* handle = nullptr;
    environment_.Check(mdb_cursor_open(transaction.Handle(), database, &handle), "reading");
    handle_.reset(handle);
}

bool Cursor::Seek(ByteView key) {
    key_ = key;
    return Move(MDB_SET_RANGE);
}

bool Cursor::Move(MDB_cursor_op operation) {
    MDB_val key = ValOf(key_), value;
    const int code = mdb_cursor_get(handle_.get(), &key, &value, operation);
    if (code == MDB_NOTFOUND) return false;
    environment_.Check(code, "reading");
    key_ = ViewOf(key);
    value_ = ViewOf(value);
    return true;
}

}  // namespace store
