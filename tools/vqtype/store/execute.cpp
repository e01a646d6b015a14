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
    Search(const Store& store, const Transaction& transaction, const Query& query, double mostCost, Work& work)
        : store_(store),
          transaction_(transaction),
          query_(query),
          work_(work),
          form_(store.GetSchema(), store.Format()),
          mostCost_(mostCost) {}

    // Visits the records that the plan's way finds. True when nobody ended it.
    bool Run(const Candidate& way, const Visit& visit) {
        return way.index ? ScanIndex(way, visit) : ScanRecords(visit);
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
        Filter ofKey(store_.GetHeader()), all(store_.GetHeader());
        for (const Condition& condition : query_.conditions) {
            if (condition.column == way.index->column) ofKey.Add(condition);
            all.Add(condition);
        }
        const bool isBackward = !query_.order.empty() && way.isOrdered && query_.order[0].isDescending;
        RangeCursor cursor(store_, transaction_, *way.index, way.range, isBackward);
        std::vector<ByteView> forms;
        while (cursor.Next()) {
            ++work_.keysScanned;
            work_.gaveUp = IsTooDear();
            if (work_.gaveUp) return false;
            const TreeKey key = KeyAt(cursor, *way.index);
            if (!key.isCut && key.keyClass != KeyClass::Null && !ofKey.Selects(key.stored)) continue;
            Read(key.id, forms);
            if (all.Selects(forms) && !visit(key.id, forms)) return false;
        }
        return true;
    }

    bool IsTooDear() const {
        const double cost =
            static_cast<double>(work_.keysScanned) * CostOfKey + static_cast<double>(work_.recordsRead) * CostOfRecord;
        return work_.rows == 0 && cost > mostCost_;
    }

    TreeKey KeyAt(const RangeCursor& cursor, const Index& index) const {
        const Column& column = store_.GetSchema()[index.column];
        TreeKey key;
        bool is = TreeKey::Read(cursor.Key(), key);
        if (is && key.keyClass != KeyClass::Null && Manager().IsFixed(column.type)) {
            is = key.stored.size() == Manager().DiskLenGet(column.type, nullptr, store_.Format(), 1, VqFormat_Memory);
        }
        if (is) return key;
        throw CommandError("{}: the index on {} has a key that is none; `vqtype store check` lists all damage",
                           Printable(store_.Name()), column.name);
    }

    const Store& store_;
    const Transaction& transaction_;
    const Query& query_;
    Work& work_;
    RecordForm form_;
    const double mostCost_;
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
    if (work.gaveUp && way.index) return;
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
    Search search(store, transaction, query, plan.mostCost, work);
    const auto run = [&](const Candidate& way) {
        if (way.isOrdered) return RunInOrder(search, query, way, sink, work);
        RunSorted(search, store, query, way, sink, work);
    };
    run(plan.Chosen());
    if (work.gaveUp) run(plan.candidates[0]);
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
    Search(store, transaction, all, 0, work).Run({}, [&](ByteView, const std::vector<ByteView>& forms) {
        for (std::size_t i = 0; i < filters.size(); ++i) counts[i] += filters[i].Selects(forms);
        return true;
    });
    return counts;
}

}  // namespace store
