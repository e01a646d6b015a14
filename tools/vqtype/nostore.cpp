// The store's commands in a program that was built without it.
#include "error.h"
#include "store/columns.h"
#include "store/commands.h"

namespace store {

namespace {

[[noreturn, maybe_unused]] void Refuse() {
    throw CommandError("this vqtype was built without the store, which stands on LMDB and libcsv");
}

}  // namespace

#ifndef VQTM_HAS_CREATE
void RunCreate(const CreateOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_LOAD
void RunLoad(const LoadOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_INDEX
void RunIndex(const IndexOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_QUERY
void RunQuery(const QueryOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_DUMP
void RunDump(const DumpOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_CHECK
void RunCheck(const CheckOptions&) { Refuse(); }
#endif
#ifndef VQTM_HAS_STATS
void RunStats(const StatsOptions&) { Refuse(); }
#endif

#ifndef VQTM_HAS_STORE
std::vector<Column> ColumnsOf(const std::string&) noexcept { return {}; }
#endif

}  // namespace store
