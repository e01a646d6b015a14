/// \file
/// What the subcommands of `vqtype store` do, once their options are read.
#ifndef VQTYPE_STORE_COMMANDS_H
#define VQTYPE_STORE_COMMANDS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace store {

struct CreateOptions {
    std::string store;  ///< the file
    std::string schema;
    std::string order = "little";
    bool ignoreCase = false;  ///< predicates of this store do not distinguish case
    bool ignoreAccents = false;
};
void RunCreate(const CreateOptions& options);

struct LoadOptions {
    std::string store, file;            ///< "-" is standard input
    std::optional<std::string> null;    ///< the text of null fields; without it a field that is empty and not quoted
    std::vector<std::string> scan;      ///< column=FORMAT
    std::optional<std::string> reject;  ///< rows that did not fit are written there
    std::uint64_t batch = 0;            ///< rows of a transaction; 0 leaves it to the program
    bool batches = false;               ///< report each batch once it is committed
    bool quiet = false;                 ///< no progress
};
void RunLoad(const LoadOptions& options);

struct IndexOptions {
    std::string store;
    std::string columns;   ///< names with commas between, an index each
    bool rebuild = false;  ///< those, or all there are, from the records under this library's order
};
void RunIndex(const IndexOptions& options);

struct QueryOptions {
    std::string store, query;
    bool explain = false;  ///< candidates, estimates, true counts in front of the rows
    bool json = false, csv = false;
    bool noIndex = false;  ///< look at every record
    std::string columns;   ///< names with commas between; empty: all
};
void RunQuery(const QueryOptions& options);

struct DumpOptions {
    std::string store;
    std::optional<std::string> null;  ///< as `load` takes it
    bool schema = false;              ///< the commands that make the store anew, and no rows
};
void RunDump(const DumpOptions& options);

struct CheckOptions {
    std::string store;
    bool json = false;
};
void RunCheck(const CheckOptions& options);

struct StatsOptions {
    std::string store;
    bool json = false;
};
void RunStats(const StatsOptions& options);

}  // namespace store

#endif
