#include "execute.h"

#include <algorithm>
#include <limits>

#include "../text.h"
#include "predicate.h"
#include "rowsorter.h"

namespace store {

namespace {

constexpr std::uint64_t NoLimit = std::numeric_limits<std::uint64_t>::max();

// Takes a record that all conditions select; false ends the search.
using Visit = std::function<bool(ByteView id, const std::vector<ByteView>& forms)>;

class Search {
  public:
    Search(const Store& store, const Transaction& transaction, const Query& query, Work& work)
        : store_(store),
          transaction_(transaction),
          query_(query),
          work_(work),
          form_(store.GetSchema(), store.Format()) {}

    // Visits the records that the plan's way finds. True when nobody ended it.
    bool Run(const Candidate& way, const Visit& visit) {
        if (!way.index) return ScanRecords(visit);
        return way.range.isEmpty || ScanIndex(way, visit);
    }

    // Splits the record of that identifier and sees that it is what was written.
    void Read(ByteView id, std::vector<ByteView>& forms) {
        const std::optional<ByteView> record = transaction_.Get(store_.Records(), id);
        ++work_.recordsRead;
        if (!record) Refuse(id, "an index has a key of it, but there is no record");
        RefuseFault(id, form_.Check(id, *record, forms));
    }

  private:
    [[noreturn]] void Refuse(ByteView id, const std::string& fault) const {
        throw CommandError("{}: object {}: {}; `vqtype store check` lists all damage", Printable(store_.Name()),
                           NumberOf(id, store_.Format()), fault);
    }
    void RefuseFault(ByteView id, const std::string& fault) const {
        if (!fault.empty()) Refuse(id, fault);
    }

    // Checksums are compared of what is selected alone: that is all that is handed on.
    bool ScanRecords(const Visit& visit) {
        Filter filter(store_.GetHeader());
        for (const Condition& condition : query_.conditions) filter.Add(condition);
        Cursor cursor(transaction_, store_.Records());
        std::vector<ByteView> forms;
        for (bool is = cursor.First(); is; is = cursor.Next()) {
            ++work_.recordsRead;
            RefuseFault(cursor.Key(), form_.Split(cursor.Value(), forms));
            if (!filter.Selects(forms)) continue;
            RefuseFault(cursor.Key(), form_.Check(cursor.Key(), cursor.Value(), forms));
            if (!visit(cursor.Key(), forms)) return false;
        }
        return true;
    }

    // Conditions on the index's column are put to its keys, where these are whole, before a record is read.
    bool ScanIndex(const Candidate& way, const Visit& visit) {
        Filter ofKey(store_.GetHeader()), others(store_.GetHeader()), all(store_.GetHeader());
        for (const Condition& condition : query_.conditions) {
            (condition.column == way.index->column ? ofKey : others).Add(condition);
            all.Add(condition);
        }
        std::vector<ByteView> forms;
        return ScanKeys(way, [&](const TreeKey& key) {
            const bool isWhole = !key.isCut && key.keyClass != KeyClass::Null;
            if (isWhole && !ofKey.Selects(key.stored)) return true;
            Read(key.id, forms);
            return !(isWhole ? others : all).Selects(forms) || visit(key.id, forms);
        });
    }

    bool ScanKeys(const Candidate& way, const std::function<bool(const TreeKey&)>& take) {
        const VqTypeId type = store_.GetSchema()[way.index->column].type;
        const Bytes low = ScanEnd(way.range.low.keyClass, way.range.low.stored, End::Below);
        const Bytes high = ScanEnd(way.range.high.keyClass, way.range.high.stored, End::Above);
        const bool isBackward = !query_.order.empty() && way.isOrdered && query_.order[0].isDescending;
        const auto isInside = [&](ByteView key) {
            return isBackward ? CompareTreeKeys(type, store_.Format(), low, key) < 0
                              : CompareTreeKeys(type, store_.Format(), key, high) < 0;
        };
        Cursor cursor(transaction_, way.index->database);
        bool is = isBackward ? GoToLast(cursor, high) : cursor.Seek(low);
        for (; is && isInside(cursor.Key()); is = isBackward ? cursor.Previous() : cursor.Next()) {
            ++work_.keysScanned;
            TreeKey key;
            if (!TreeKey::Read(cursor.Key(), key)) {
                throw CommandError("{}: the index on {} has a key that is none; `vqtype store check` lists all damage",
                                   Printable(store_.Name()), store_.GetSchema()[way.index->column].name);
            }
            if (!take(key)) return false;
        }
        return true;
    }

    static bool GoToLast(Cursor& cursor, const Bytes& high) {
        return cursor.Seek(high) ? cursor.Previous() : cursor.Last();
    }

    const Store& store_;
    const Transaction& transaction_;
    const Query& query_;
    Work& work_;
    RecordForm form_;
};

std::uint64_t RowsNeeded(const Query& query) {
    const std::uint64_t limit = query.limit.value_or(NoLimit);
    return limit > NoLimit - query.offset ? NoLimit : limit + query.offset;
}

void RunInOrder(Search& search, const Query& query, const Candidate& way, const RowSink& sink, Work& work) {
    const std::uint64_t needed = RowsNeeded(query);
    if (needed == 0 || query.limit == 0) return;
    std::uint64_t selected = 0;
    const bool isWhole = search.Run(way, [&](ByteView id, const std::vector<ByteView>& forms) {
        if (++selected > query.offset) ++work.rows, sink(id, forms);
        return selected < needed;
    });
    if (isWhole) work.selected = selected;
}

void RunSorted(Search& search, const Store& store, const Query& query, const Candidate& way, const RowSink& sink,
               Work& work) {
    RowSorter sorter(store.GetHeader(), query.order, RowsNeeded(query));
    work.isSorted = true;
    work.selected = 0;
    search.Run(way, [&](ByteView id, const std::vector<ByteView>& forms) {
        ++*work.selected;
        sorter.Add(id, forms);
        return true;
    });
    const std::vector<Id> ids = sorter.Sorted();
    std::vector<ByteView> forms;
    for (std::size_t i = std::min<std::uint64_t>(query.offset, ids.size()); i < ids.size(); ++i) {
        search.Read(ids[i], forms);
        ++work.rows;
        sink(ids[i], forms);
    }
}

}  // namespace

Work Execute(const Store& store, const Transaction& transaction, const Query& query, const Plan& plan,
             const RowSink& sink) {
    Work work;
    Search search(store, transaction, query, work);
    const Candidate& way = plan.Chosen();
    if (way.isOrdered) {
        RunInOrder(search, query, way, sink, work);
    } else {
        RunSorted(search, store, query, way, sink, work);
    }
    return work;
}

std::vector<std::uint64_t> CountTruly(const Store& store, const Transaction& transaction, const Query& query,
                                      const std::vector<std::vector<std::size_t>>& sets) {
    std::vector<Filter> filters;
    for (const std::vector<std::size_t>& set : sets) {
        filters.emplace_back(store.GetHeader());
        for (const std::size_t condition : set) filters.back().Add(query.conditions[condition]);
    }
    std::vector<std::uint64_t> counts(sets.size());
    Work work;
    Query all;
    Search(store, transaction, all, work).Run({}, [&](ByteView, const std::vector<ByteView>& forms) {
        for (std::size_t i = 0; i < filters.size(); ++i) counts[i] += filters[i].Selects(forms);
        return true;
    });
    return counts;
}

}  // namespace store
