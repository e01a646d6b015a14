#include "buildindex.h"
#include "load.h"

namespace store {

namespace {

// The records as they are kept, one behind the other, and the identifiers under which they are.
struct Sealed {
    Bytes bytes;
    std::vector<std::size_t> ends;
    std::vector<Id> ids;

    ByteView Record(std::size_t i) const {
        const std::size_t start = i == 0 ? 0 : ends[i - 1];
        return ByteView(bytes).subspan(start, ends[i] - start);
    }
};

Sealed Seal(const Batch& batch, std::uint64_t number, unsigned char format) {
    Sealed sealed;
    sealed.bytes.reserve(batch.bytes.size() + batch.Count() * sizeof(std::uint32_t));
    Bytes record;
    for (std::size_t i = 0; i < batch.Count(); ++i) {
        const ByteView forms = batch.Record(i);
        record.assign(forms.begin(), forms.end());
        sealed.ids.push_back(IdOf(number + i, format));
        SealBytes(record, sealed.ids.back());
        Append(sealed.bytes, record);
        sealed.ends.push_back(sealed.bytes.size());
    }
    return sealed;
}

// Numbers grow, but not in every byte order do the identifiers' forms.
void WriteRecords(Store& store, Transaction& transaction, const Sealed& sealed) {
    bool isAscending = true;
    for (std::size_t i = 0; i < sealed.ids.size(); ++i) {
        isAscending = isAscending && transaction.Append(store.Records(), sealed.ids[i], sealed.Record(i));
        if (isAscending || transaction.Insert(store.Records(), sealed.ids[i], sealed.Record(i))) continue;
        throw CommandError("{}: the store is damaged: there is a record {} already, where the next one is to be",
                           Printable(store.Name()), NumberOf(sealed.ids[i], store.Format()));
    }
}

void WriteKeys(Store& store, Transaction& transaction, const Sealed& sealed) {
    if (store.Indexes().empty()) return;
    const RecordForm form(store.GetSchema(), store.Format());
    std::vector<std::vector<ByteView>> columns(store.GetSchema().Count());
    std::vector<ByteView> forms;
    for (std::size_t i = 0; i < sealed.ids.size(); ++i) {
        const std::string fault = form.Split(sealed.Record(i), forms);
        if (!fault.empty()) throw CommandError("{}: a new record cannot be read: {}", store.Name(), fault);
        for (const Index& index : store.Indexes()) columns[index.column].push_back(forms[index.column]);
    }
    for (Index& index : store.Indexes()) {
        AddKeys(store, transaction, index, columns[index.column], sealed.ids);
        store.Env().GiveBackPages();
    }
}

void Write(Store& store, const Batch& batch) {
    Transaction transaction(store.Env(), Access::Write);
    store.ReadIndexes(transaction);
    const std::uint64_t number = store.NextNumber(transaction);
    if (batch.Count() >= MostRecords - number) {
        throw CommandError("{}: the store is full: it has no numbers for more records", Printable(store.Name()));
    }
    const Sealed sealed = Seal(batch, number, store.Format());
    WriteRecords(store, transaction, sealed);
    WriteKeys(store, transaction, sealed);
    store.SetNextNumber(transaction, number + batch.Count());
    transaction.Commit();
}

}  // namespace

void WriteBatch(Store& store, const Batch& batch) {
    for (;;) {
        try {
            return Write(store, batch);
        } catch (const MapFull&) {
            store.Env().Grow();
        }
    }
}

}  // namespace store
