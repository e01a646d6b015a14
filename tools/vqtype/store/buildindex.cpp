#include "buildindex.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <utility>

#include "../text.h"
#include "keysorter.h"
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

// What has been read of the map counts as memory of this process, until it is given back.
class ReadPages {
  public:
    void Add(ByteView bytes) {
        const auto first = reinterpret_cast<std::uintptr_t>(bytes.data()), last = first + bytes.size();
        first_ = std::min(first_, first);
        last_ = std::max(last_, last);
    }
    // They are read again from the file where they are wanted.
    void GiveBack() {
        const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
        if (first_ < last_)
            ::madvise(reinterpret_cast<void*>(first_ / page * page), last_ - first_ / page * page, MADV_DONTNEED);
        *this = ReadPages();
    }

  private:
    std::uintptr_t first_ = ~std::uintptr_t{0}, last_ = 0;
};

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
    ReadPages pages;
    std::vector<ByteView> forms;
    std::uint64_t count = 0;
    for (bool more = record.First(); more; more = record.Next()) {
        CheckRecord(store, form, record, forms);
        for (const auto& keys : all) keys->Add(forms[keys->column], record.Key());
        pages.Add(record.Value());
        ++count;
        if (count % often == 0) progress.Update(count, count);
        if (count % often == 0 && MemoryOf(all) > memory) Spill(all);
        if (count % seldom == 0) pages.GiveBack();
    }
    pages.GiveBack();
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

void Build(Store& store, std::vector<std::size_t> columns, std::size_t memory, KeySorter::Use use) {
    Transaction transaction(store.Env(), Access::Write);
    store.ReadIndexes(transaction);
    const bool areAll = columns.empty();
    if (areAll) {
        for (const Index& index : store.Indexes()) columns.push_back(index.column);
    }
    AllKeys all;
    for (const std::size_t column : columns) all.push_back(std::make_unique<Keys>(store, column, use));
    if (!all.empty()) Collect(store, transaction, all, memory);
    for (const auto& keys : all) store.SetCounts(transaction, store.MakeIndex(transaction, keys->column), keys->counts);
    SortEach(all, [&](Keys& keys) { WriteTree(store, transaction, keys); });
    if (areAll) store.Renew(transaction);
    transaction.Commit();
}

// Address space for the trees, so that they are not made twice: no key is larger than its record, a node's head and
// half a page left empty aside.
void MakeRoom(Store& store, std::size_t indexes) {
    MDB_stat records;
    {
        const Transaction transaction(store.Env(), Access::Read);
        records = transaction.Statistics(store.Records());
    }
    const std::size_t pages = records.ms_leaf_pages + records.ms_branch_pages + records.ms_overflow_pages;
    store.Env().Grow(1 + (pages * records.ms_psize + records.ms_entries * IdSize) * indexes);
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
    keys.sorter.Drain([&](ByteView key) {
        isBehind = isBehind && transaction.Append(index.database, key, {});
        if (!isBehind) transaction.Put(index.database, key, {});
    });
    if (keys.counts != KeyCounts()) store.SetCounts(transaction, index, keys.counts += index);
}

}  // namespace store
