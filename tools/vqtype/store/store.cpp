#include "store.h"

#include <algorithm>

#include "../error.h"
#include "../text.h"
#include "names.h"
#include "newfile.h"

namespace store {

namespace {

// --- Entries of the header: text and its checksum

void WriteEntry(Transaction& transaction, Database header, const std::string& name, const std::string& text) {
    Bytes value;
    Append(value, ViewOf(text));
    SealBytes(value, ViewOf(name));
    transaction.Put(header, ViewOf(name), value);
}

std::optional<std::string> ReadEntry(const Transaction& transaction, Database header, const std::string& name) {
    const std::optional<ByteView> value = transaction.Get(header, ViewOf(name));
    if (!value) return std::nullopt;
    if (!IsSealed(*value, ViewOf(name))) {
        throw CommandError("{}: the store's header is damaged: its entry {} is not what was written",
                           Printable(transaction.Env().Name()), Echo(name));
    }
    return TextOf(Unsealed(*value));
}

std::string RequireEntry(const Transaction& transaction, Database header, const std::string& name) {
    std::optional<std::string> text = ReadEntry(transaction, header, name);
    if (text) return *text;
    throw CommandError("{}: the store's header is damaged: its entry {} is missing",
                       Printable(transaction.Env().Name()), Echo(name));
}

// `parse` reads the text, and gives none where it cannot.
template <class Parse>
auto RequireEntry(const Transaction& transaction, Database header, const std::string& name, Parse parse) {
    const std::string text = RequireEntry(transaction, header, name);
    if (const auto value = parse(text)) return *value;
    throw CommandError("{}: the store's header is damaged: its entry {} is {}", Printable(transaction.Env().Name()),
                       Echo(name), Echo(text));
}

// --- What each purpose bears

bool IsBorne(const Obstacle& obstacle, Purpose purpose) {
    if (purpose == Purpose::Repair) return obstacle.isMended;
    return (purpose == Purpose::Export || purpose == Purpose::Verify) && !obstacle.hidesRecords;
}

void Refuse(const std::string& name, const std::vector<Obstacle>& obstacles, Purpose purpose) {
    std::string reasons;
    bool isMended = true;
    for (const Obstacle& obstacle : obstacles) {
        if (IsBorne(obstacle, purpose)) continue;
        reasons += (reasons.empty() ? "" : "; ") + obstacle.reason;
        isMended = isMended && obstacle.isMended;
    }
    if (reasons.empty()) return;
    throw CommandError("{}: the store cannot be used: {}{}", Printable(name), reasons,
                       isMended ? "; `vqtype store index --rebuild` mends it" : "");
}

Access AccessFor(Purpose purpose) {
    return purpose == Purpose::Write || purpose == Purpose::Repair ? Access::Write : Access::Read;
}

Database RequireHeader(Transaction& transaction) {
    const std::optional<Database> header = transaction.Open(HeaderDatabase, nullptr);
    if (header) return *header;
    throw CommandError("{}: this is a file of LMDB, but no store", Printable(transaction.Env().Name()));
}

void MakeDatabases(Environment&& environment, const Header& header) {
    Transaction transaction(environment, Access::Write);
    const Database database = *transaction.Open(HeaderDatabase, nullptr, true);
    transaction.Open(RecordsDatabase, RecordOrder(header.format), true);
    WriteEntry(transaction, database, StoreEntry, header.Format());
    WriteEntry(transaction, database, NextEntry, "1");
    transaction.Commit();
}

}  // namespace

void Store::Create(const std::string& name, const Header& header) {
    NewFile file(name);
    MakeDatabases(Environment(name, file.TemporaryName()), header);
    file.Keep();
}

Store::Store(const std::string& name, Purpose purpose) : purpose_(purpose), environment_(name, AccessFor(purpose)) {
    Transaction transaction(environment_, Access::Read);
    headerDatabase_ = RequireHeader(transaction);
    header_ = Header::Parse(RequireEntry(transaction, headerDatabase_, StoreEntry), Printable(name) + ": header");
    obstacles_ = Adopt(header_);
    Refuse(name, obstacles_, purpose);
    const std::optional<Database> records = transaction.Open(RecordsDatabase, RecordOrder(header_.format));
    if (!records) throw CommandError("{}: the store is damaged: it has no records' tree", Printable(name));
    records_ = *records;
    transaction.Commit();
    Transaction indexes(environment_, Access::Read);
    ReadIndexes(indexes);
    indexes.Commit();
}

const Index* Store::FindIndex(std::size_t column) const {
    const auto found =
        std::find_if(indexes_.begin(), indexes_.end(), [column](const Index& index) { return index.column == column; });
    return found == indexes_.end() ? nullptr : &*found;
}

std::uint64_t Store::CountRecords(const Transaction& transaction) const {
    return transaction.Statistics(records_).ms_entries;
}

std::uint64_t Store::NextNumber(const Transaction& transaction) const {
    return RequireEntry(transaction, headerDatabase_, NextEntry, EntryNumber);
}

void Store::SetNextNumber(Transaction& transaction, std::uint64_t number) {
    WriteEntry(transaction, headerDatabase_, NextEntry, fmt::to_string(number));
}

Index& Store::MakeIndex(Transaction& transaction, std::size_t column) {
    const Column& described = GetSchema()[column];
    const std::optional<Database> database =
        transaction.Open(IndexName(described), IndexOrder(described.type, Format()), true);
    transaction.Clear(*database);
    const auto place = std::lower_bound(indexes_.begin(), indexes_.end(), column,
                                        [](const Index& index, std::size_t wanted) { return index.column < wanted; });
    const bool isThere = place != indexes_.end() && place->column == column;
    Index& index = isThere ? *place : *indexes_.insert(place, {{}, column, *database});
    index.database = *database;
    SetCounts(transaction, index, {});
    return index;
}

void Store::SetCounts(Transaction& transaction, Index& index, const KeyCounts& counts) {
    static_cast<KeyCounts&>(index) = counts;
    WriteEntry(transaction, headerDatabase_, IndexName(GetSchema()[index.column]), counts.Format());
}

void Store::Renew(Transaction& transaction) {
    header_ = Header::Make(header_.schema, header_.format, header_.defaultCmpOp);
    obstacles_.clear();
    WriteEntry(transaction, headerDatabase_, StoreEntry, header_.Format());
}

void Store::ReadIndexes(Transaction& transaction) {
    std::vector<Index> indexes;
    for (std::size_t i = 0; i < GetSchema().Count(); ++i) {
        const std::string name = IndexName(GetSchema()[i]);
        const bool isRepair = purpose_ == Purpose::Repair;
        const bool isThere =
            transaction.Get(headerDatabase_, ViewOf(name)) || (isRepair && transaction.Open(name, nullptr));
        if (!isThere) continue;
        try {
            indexes.push_back(ReadIndex(transaction, i));
        } catch (const CommandError&) {
            if (isRepair) indexes.push_back({{}, i, 0});  // until MakeIndex makes it anew
            if (!isRepair && purpose_ != Purpose::Scan && purpose_ != Purpose::Export) throw;
        }
    }
    indexes_ = std::move(indexes);
}

Index Store::ReadIndex(Transaction& transaction, std::size_t column) {
    const Column& described = GetSchema()[column];
    const std::string name = IndexName(described);
    const std::optional<Database> database = transaction.Open(name, IndexOrder(described.type, Format()));
    if (database) return {RequireEntry(transaction, headerDatabase_, name, KeyCounts::Parse), column, *database};
    throw CommandError("{}: the store is damaged: the index on {} is missing", Printable(Name()), described.name);
}

}  // namespace store
