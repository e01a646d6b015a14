// The store's commands in a program that was built without it.
#include "error.h"
#include "store/columns.h"
#include "store/commands.h"

namespace store {

namespace {

[[noreturn]] void Refuse() {
    throw CommandError("this vqtype was built without the store, which stands on LMDB, libcsv and libdeflate");
}

}  // namespace

void RunCreate(const CreateOptions&) { Refuse(); }
void RunLoad(const LoadOptions&) { Refuse(); }
void RunIndex(const IndexOptions&) { Refuse(); }
void RunQuery(const QueryOptions&) { Refuse(); }
void RunDump(const DumpOptions&) { Refuse(); }
void RunCheck(const CheckOptions&) { Refuse(); }
void RunStats(const StatsOptions&) { Refuse(); }

std::vector<Column> ColumnsOf(const std::string&) noexcept { return {}; }

}  // namespace store
