#include "buildindex.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <utility>

#include "../text.h"
#include "keysorter.h"
#include "names.h"
#include "pages.h"
#include "progress.h"

namespace store {
namespace {

// The keys of one index on their way.
struct Keys {
    Keys(const Store& store, std::size_t number, KeySorter::Use use)
        : column(number),
          maker(store.GetSchema()[number], store.Format()),
          sorter(store.GetSchema()[number].type, store.Format(), store.Name(), use) {}

    void Add(ByteView form, ByteView id) {
        key.clear();
        maker.Append(key, form, id);
        counts.Count(key);
        sorter.Add(key);
    }

    std::size_t column;
    KeyMaker maker;
    KeySorter sorter;
    Bytes key;
    KeyCounts counts;
};
using AllKeys = std::vector<std::unique_ptr<Keys>>;

std::size_t MemoryOf(const AllKeys& all) {
    std::size_t memory = 0;
    for (const auto& keys : all) memory += keys->sorter.Memory();
    return memory;
}

void Spill(const AllKeys& all) {
    (*std::max_element(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return a->sorter.Memory() < b->sorter.Memory();
    }))->sorter.Spill();
}

// --- From the records

void CheckRecord(const Store& store, const RecordForm& form, const Cursor& record, std::vector<ByteView>& forms) {
    const std::string fault = form.Check(record.Key(), record.Value(), forms);
    if (fault.empty()) return;
    throw CommandError("{}: record {}: {}; `vqtype store check` tells all that is damaged", Printable(store.Name()),
                       NumberOf(record.Key(), store.Format()), fault);
}

void Collect(const Store& store, const Transaction& transaction, const AllKeys& all, std::size_t memory) {
    constexpr std::uint64_t often = 1024, seldom = 65536;
    const RecordForm form(store.GetSchema(), store.Format());
    Progress progress("indexing", store.CountRecords(transaction));
    Cursor record(transaction, store.Records());
    std::vector<ByteView> forms;
    std::uint64_t count = 0;
    std::size_t held = 0;
    for (bool more = record.First(); more; more = record.Next()) {
        CheckRecord(store, form, record, forms);
        for (const auto& keys : all) {
            held -= keys->sorter.Memory();
            keys->Add(forms[keys->column], record.Key());
            held += keys->sorter.Memory();
            if (held <= memory) continue;
            Spill(all);
            held = MemoryOf(all);
        }
        ++count;
        if (count % often == 0) progress.Update(count, count);
        if (count % seldom == 0) transaction.Env().GiveBackPages();
    }
    transaction.Env().GiveBackPages();
}

// --- Sorting on one thread, while this one writes

// Calls `write` for the keys of each index, once they are sorted. The other thread begins with those that are most,
// this one with those that are least.
void SortEach(const AllKeys& all, const std::function<void(Keys&)>& write) {
    std::deque<Keys*> waiting;
    for (const auto& keys : all) waiting.push_back(keys.get());
    std::sort(waiting.begin(), waiting.end(),
              [](const Keys* a, const Keys* b) { return a->sorter.Bytes() < b->sorter.Bytes(); });
    Keys* other = nullptr;
    std::future<void> isSorted;
    const auto start = [&] {
        if (waiting.empty()) return;
        other = waiting.back();
        waiting.pop_back();
        isSorted = std::async(std::launch::async, [other] { other->sorter.Sort(); });
    };
    for (start(); other != nullptr;) {
        const bool isBusy = isSorted.wait_for(std::chrono::seconds(0)) == std::future_status::timeout;
        if (isBusy && !waiting.empty()) {
            Keys& own = *waiting.front();
            waiting.pop_front();
            own.sorter.Sort();
            write(own);
        } else {
            Keys& sorted = *std::exchange(other, nullptr);
            isSorted.get();
            start();
            write(sorted);
        }
    }
}

// --- Into the trees

// The hints have put keys in another order than the manager's.
class OutOfOrder : public CommandError {
  public:
    using CommandError::CommandError;
};

void WriteTree(Store& store, Transaction& transaction, Keys& keys) {
    const Database database = store.FindIndex(keys.column)->database;
    keys.sorter.Drain([&](ByteView key) {
        if (transaction.Append(database, key, {})) return;
        throw OutOfOrder("{}: index on {}: the order of its keys contradicts itself", Printable(store.Name()),
                         store.GetSchema()[keys.column].name);
    });
}

// LMDB takes all pages that a tree names for free where the tree is emptied. Where one is part of something else, too,
// that would be written over.
void RequireSoundPages(const Store& store, const Transaction& transaction) {
    bool areSound = true;
    const PageReport note = [&](const std::string&) { areSound = false; }, ignore = [](const std::string&) {};
    PageFile file(store.Name());
    if (file.ReadMeta(mdb_txn_id(transaction.Handle()) - 1, ignore)) {
        PageUse use = file.MakeUse();
        for (const PageTree& tree : file.ReadDatabases(use, note)) areSound &= file.WalkPages(tree, use, ignore);
        file.CheckFreeList(use, note);
        if (areSound) return;
    }
    throw CommandError(
        "{}: its pages are damaged, so that no index can be made in place of another; `vqtype store dump`, `create` "
        "and "
        "`load` make the store anew",
        Printable(store.Name()));
}

void Build(Store& store, std::vector<std::size_t> columns, std::size_t memory, KeySorter::Use use) {
    Transaction transaction(store.Env(), Access::Write);
    store.ReadIndexes(transaction);
    const bool areAll = columns.empty();
    if (areAll) {
        for (const Index& index : store.Indexes()) columns.push_back(index.column);
    }
    const bool isAnyThere = std::any_of(columns.begin(), columns.end(), [&](std::size_t column) {
        return transaction.Open(IndexName(store.GetSchema()[column]), nullptr).has_value();
    });
    if (isAnyThere) RequireSoundPages(store, transaction);
    AllKeys all;
    for (const std::size_t column : columns) all.push_back(std::make_unique<Keys>(store, column, use));
    if (!all.empty()) Collect(store, transaction, all, memory);
    for (const auto& keys : all) store.SetCounts(transaction, store.MakeIndex(transaction, keys->column), keys->counts);
    SortEach(all, [&](Keys& keys) { WriteTree(store, transaction, keys); });
    if (areAll) store.Renew(transaction);
    transaction.Commit();
}

// Address space for the trees, so that they are not made twice. The stored keys of all columns are not larger than the
// records; each has an identifier, a class and a node's head besides. What the trees tell of themselves can be damaged.
void MakeRoom(Store& store, std::size_t indexes) {
    MDB_stat records;
    {
        const Transaction transaction(store.Env(), Access::Read);
        records = transaction.Statistics(store.Records());
    }
    constexpr std::size_t eachKey = IdSize + 1 + 10;
    MDB_envinfo info;
    mdb_env_info(store.Env().Handle(), &info);
    const std::size_t bytes = info.me_last_pgno * records.ms_psize;
    store.Env().Grow(1 + bytes + std::min(records.ms_entries * eachKey, bytes) * indexes);
}

}  // namespace

void BuildIndexes(Store& store, const std::vector<std::size_t>& columns, std::size_t memory) {
    KeySorter::Use use = KeySorter::Use::Hints;
    MakeRoom(store, columns.empty() ? store.Indexes().size() : columns.size());
    for (;;) {
        try {
            return Build(store, columns, memory, use);
        } catch (const MapFull&) {
            store.Env().Grow();
        } catch (const OutOfOrder&) {
            if (std::exchange(use, KeySorter::Use::Comparisons) == KeySorter::Use::Comparisons) throw;
        }
    }
}

void AddKeys(Store& store, Transaction& transaction, Index& index, const std::vector<ByteView>& forms,
             const std::vector<Id>& ids) {
    Keys keys(store, index.column, KeySorter::Use::Hints);
    for (std::size_t i = 0; i < forms.size(); ++i) keys.Add(forms[i], ids[i]);
    keys.sorter.Sort();
    bool isBehind = true;  // all keys that are there
    constexpr std::uint64_t seldom = 2048;
    std::uint64_t count = 0;
    keys.sorter.Drain([&](ByteView key) {
        if (++count % seldom == 0) transaction.Env().GiveBackPages();
        isBehind = isBehind && transaction.Append(index.database, key, {});
        if (!isBehind) transaction.Put(index.database, key, {});
    });
    if (keys.counts != KeyCounts()) store.SetCounts(transaction, index, keys.counts += index);
}

}  // namespace store
