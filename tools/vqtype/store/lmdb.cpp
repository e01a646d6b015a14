#include "lmdb.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "../files.h"
#include "../text.h"
#include "fault.h"

namespace store {

namespace {

constexpr std::size_t FirstMapSize = std::size_t{64} << 20, MostMapSize = std::size_t{1} << 46;
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
    // The beginning of both pages that tell of all others.
    const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    std::vector<unsigned char> bytes(pageSize + 20);
    std::ifstream(path, std::ios::binary)
        .read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const auto at = [&bytes](std::size_t place) {
        std::uint32_t number = 0;
        std::memcpy(&number, bytes.data() + place, sizeof(number));
        return number;
    };
    if (at(OtherMagicAt) == Magic) return "this is a store of a program with other pointers: of 32 bits, or of 64";
    if (at(MagicAt) == __builtin_bswap32(Magic) || at(OtherMagicAt) == __builtin_bswap32(Magic)) {
        return "this is a store of a machine with the other byte order";
    }
    if (at(MagicAt) != Magic && at(pageSize + MagicAt) != Magic) return "this is no store";
    return nullptr;
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

Environment::Environment(const std::string& name, Access access) : name_(name) {
    RequireStoreFile(name);
    const unsigned flags = access == Access::Read ? MDB_RDONLY : 0u;
    int code = Open(name, flags);
    if (code == EACCES && access == Access::Read) {
        isLocked_ = false;
        code = Open(name, flags | MDB_NOLOCK);
    }
    Check(code, "opening the store");
    // What programs left behind that did not end by themselves keeps pages from being used again.
    if (access == Access::Write) Check(mdb_reader_check(Handle(), nullptr), "looking for readers");
}

Environment::Environment(const std::string& name, const std::string& newFile) : name_(name) {
    Check(Open(newFile, 0, FirstMapSize), "making the store");
}

int Environment::Open(const std::string& file, unsigned flags, std::size_t mapSize) {
    IgnoreFileSizeSignal();
    MDB_env* handle = nullptr;
    if (const int code = mdb_env_create(&handle)) return code;
    handle_.reset(handle);
    WatchFaults(handle, name_, isLocked_);
    mdb_env_set_maxdbs(handle, MostDatabases);
    if (mapSize != 0) mdb_env_set_mapsize(handle, mapSize);
    return mdb_env_open(handle, PathOf(file).c_str(), flags | MDB_NOSUBDIR | MDB_NOTLS, 0666);
}

void Environment::Grow(std::size_t bytes) {
    MDB_envinfo info;
    MDB_stat pages;
    Check(mdb_env_info(Handle(), &info), "looking at the map");
    Check(mdb_env_stat(Handle(), &pages), "looking at the map");
    const std::size_t needed = (info.me_last_pgno + 1) * pages.ms_psize + bytes;
    std::size_t size = info.me_mapsize * (bytes == 0 ? 2 : 1);
    while (size < needed && size < MostMapSize) size *= 2;
    Check(mdb_env_set_mapsize(Handle(), size), "growing the map");
}

// LMDB does not tell where its map is. Giving back another map of the file does no harm.
void Environment::GiveBackPages() const {
    mdb_filehandle_t file;
    struct stat facts {};
    Check(mdb_env_get_fd(Handle(), &file), "looking at the map");
    if (::fstat(file, &facts) != 0) return;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        unsigned long first = 0, last = 0, inode = 0;
        char sharing = 0;
        const int read = std::sscanf(line.c_str(), "%lx-%lx %*3c%c %*s %*s %lu", &first, &last, &sharing, &inode);
        if (read != 4 || sharing != 's' || inode != facts.st_ino) continue;
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
    }
}

void Environment::Check(int code, const char* doing) const {
    RequireUnchanged();
    if (code == MDB_SUCCESS) return;
    if (code == MDB_MAP_FULL) throw MapFull("{}: {}: {}", Printable(name_), doing, Reason(code));
    Fail(name_, doing, code);
}

// A page that one transaction frees is written by the second one behind it.
void Environment::RequireUnchanged() const {
    if (unlockedRead_ == 0) return;
    MDB_envinfo info;
    mdb_env_info(Handle(), &info);
    if (info.me_last_txnid < unlockedRead_ + 2) return;
    throw CommandError("{}: the store was changed while it was read, and this user has no permission to lock it",
                       Printable(name_));
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
    if (!environment.isLocked_) environment.unlockedRead_ = mdb_txn_id(handle_);
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
    environment_.Check(code == MDB_NOTFOUND ? MDB_SUCCESS : code, "reading");
    return code == MDB_NOTFOUND ? std::nullopt : std::optional(ViewOf(value));
}

void Transaction::Put(Database database, ByteView key, ByteView value) {
    EndAppending();
    MDB_val keyVal = ValOf(key), valueVal = ValOf(value);
    environment_.Check(mdb_put(handle_, database, &keyVal, &valueVal, 0), "writing");
}

bool Transaction::Insert(Database database, ByteView key, ByteView value) {
    EndAppending();
    MDB_val keyVal = ValOf(key), valueVal = ValOf(value);
    const int code = mdb_put(handle_, database, &keyVal, &valueVal, MDB_NOOVERWRITE);
    if (code == MDB_KEYEXIST) return false;
    environment_.Check(code, "writing");
    return true;
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
    environment_.Check(code == MDB_NOTFOUND ? MDB_SUCCESS : code, "reading");
    if (code == MDB_NOTFOUND) return false;
    key_ = ViewOf(key);
    value_ = ViewOf(value);
    return true;
}

}  // namespace store
