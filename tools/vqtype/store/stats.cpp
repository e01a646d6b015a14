#include <cstring>
#include <filesystem>

#include "../files.h"
#include "../table.h"
#include "columntext.h"
#include "commands.h"
#include "names.h"
#include "store.h"

namespace store {

namespace {

// --- Facts

struct TreeFacts {
    std::string name;
    MDB_stat pages;
};

struct IndexFacts {
    std::string column;
    std::uint64_t entries = 0, cutKeys = 0, nulls = 0;
    std::string first, last;  // values that are not null
};

struct Facts {
    std::uint64_t records = 0, fileSize = 0, mapSize = 0, pageSize = 0, freePages = 0;
    std::vector<TreeFacts> trees;
    std::vector<IndexFacts> indexes;
};

// The list of free pages is LMDB's first database. Each entry begins with how many it has.
std::uint64_t CountFreePages(const Transaction& transaction) {
    constexpr Database FreePages = 0;
    std::uint64_t count = 0;
    Cursor cursor(transaction, FreePages);
    for (bool isThere = cursor.First(); isThere; isThere = cursor.Next()) {
        std::uint64_t pages = 0;
        if (cursor.Value().size() >= sizeof pages) std::memcpy(&pages, cursor.Value().data(), sizeof pages);
        count += pages;
    }
    return count;
}

// A value as the record of its key has it: a key can be less.
std::string ValueOf(const Store& store, const Transaction& transaction, std::size_t column, ByteView key) {
    TreeKey parts;
    if (!TreeKey::Read(key, parts)) return "damaged";
    const std::optional<ByteView> record = transaction.Get(store.Records(), parts.id);
    std::vector<ByteView> forms;
    if (!record || !RecordForm(store.GetSchema(), store.Format()).Check(parts.id, *record, forms).empty())
        return "damaged";
    const std::optional<std::string> text = ColumnText(store.GetSchema()[column], store.Format()).Of(forms[column]);
    return text ? Echo(*text) : "damaged";
}

bool IsNullKey(ByteView key) {
    TreeKey parts;
    return TreeKey::Read(key, parts) && parts.keyClass == KeyClass::Null;
}

IndexFacts FactsOf(const Store& store, const Transaction& transaction, const Index& index) {
    IndexFacts facts;
    facts.column = store.GetSchema()[index.column].name;
    facts.entries = transaction.Statistics(index.database).ms_entries;
    facts.cutKeys = index.cutKeys;
    Cursor cursor(transaction, index.database);
    bool isThere = cursor.First();
    for (; isThere && IsNullKey(cursor.Key()); isThere = cursor.Next()) ++facts.nulls;
    if (!isThere) return facts;
    facts.first = ValueOf(store, transaction, index.column, cursor.Key());
    cursor.Last();
    facts.last = ValueOf(store, transaction, index.column, cursor.Key());
    return facts;
}

Facts FactsOf(Store& store) {
    Transaction transaction(store.Env(), Access::Read);
    store.ReadIndexes(transaction);
    MDB_envinfo map;
    store.Env().Check(mdb_env_info(store.Env().Handle(), &map), "looking at the map");
    Facts facts;
    facts.records = store.CountRecords(transaction);
    facts.fileSize = std::filesystem::file_size(PathOf(store.Name()));
    facts.mapSize = map.me_mapsize;
    facts.freePages = CountFreePages(transaction);
    const auto add = [&](const std::string& name, Database database) {
        facts.trees.push_back({name, transaction.Statistics(database)});
    };
    add(HeaderDatabase, *transaction.Open(HeaderDatabase, nullptr));
    add(RecordsDatabase, store.Records());
    for (const Index& index : store.Indexes()) {
        add(IndexName(store.GetSchema()[index.column]), index.database);
        facts.indexes.push_back(FactsOf(store, transaction, index));
    }
    facts.pageSize = facts.trees.front().pages.ms_psize;
    return facts;
}

// --- Facts as text

std::string Languages(const Header& header) {
    std::string text;
    for (const CollationLanguage& one : header.languages) {
        text += fmt::format("{}{} in {}, class {}", text.empty() ? "" : "; ", DescribeLanguage(one.language),
                            DescribeCodeSet(one.codeSet), one.collationClass);
    }
    return text.empty() ? "none" : text;
}

std::string Usable(const Store& store) {
    std::string reasons;
    for (const Obstacle& obstacle : store.Obstacles()) reasons += (reasons.empty() ? "no: " : "; ") + obstacle.reason;
    return reasons.empty() ? "yes" : reasons;
}

using Line = std::pair<const char*, std::string>;

std::vector<Line> HeaderLines(const Store& store) {
    const Header& header = store.GetHeader();
    const bool ignoresCase = header.defaultCmpOp & VqCmp_IgnoreCase;
    const bool ignoresAccents = header.defaultCmpOp & VqCmp_IgnoreAccents;
    return {
        {"schema", header.schema.Format()},
        {"byte order", header.format == VqFormat_BigEndian ? "big" : "little"},
        {"library", header.libraryVersion},
        {"order version", fmt::format("{:08x}", header.orderVersion)},
        {"native code set", DescribeCodeSet(header.nativeCodeSet)},
        {"comparison", fmt::format("{:#x}{}{}", header.defaultCmpOp, ignoresCase ? ", case ignored" : "",
                                   ignoresAccents ? ", accents ignored" : "")},
        {"wildcards", header.wildcards},
        {"languages", Languages(header)},
        {"can be used", Usable(store)},
    };
}

std::vector<std::pair<const char*, std::uint64_t>> NumberLines(const Facts& facts) {
    return {{"records", facts.records},
            {"file size", facts.fileSize},
            {"map size", facts.mapSize},
            {"page size", facts.pageSize},
            {"free pages", facts.freePages}};
}

std::string Tables(const Store& store, const Facts& facts) {
    Table values({{"FACT"}, {"VALUE"}});
    values.AddRow({"store", Printable(store.Name())});
    for (const auto& [name, number] : NumberLines(facts)) values.AddRow({name, fmt::to_string(number)});
    for (const Line& line : HeaderLines(store)) values.AddRow({line.first, line.second});

    Table trees({{"DATABASE"},
                 {"ENTRIES", true},
                 {"DEPTH", true},
                 {"BRANCH PAGES", true},
                 {"LEAF PAGES", true},
                 {"OVERFLOW PAGES", true}});
    for (const TreeFacts& tree : facts.trees) {
        const MDB_stat& pages = tree.pages;
        trees.AddRow({tree.name, fmt::to_string(pages.ms_entries), fmt::to_string(pages.ms_depth),
                      fmt::to_string(pages.ms_branch_pages), fmt::to_string(pages.ms_leaf_pages),
                      fmt::to_string(pages.ms_overflow_pages)});
    }
    std::string text = values.Format() + '\n' + trees.Format();
    if (facts.indexes.empty()) return text;
    Table indexes({{"INDEX"}, {"KEYS", true}, {"CUT", true}, {"NULLS", true}, {"FIRST"}, {"LAST"}});
    for (const IndexFacts& index : facts.indexes) {
        indexes.AddRow({index.column, fmt::to_string(index.entries), fmt::to_string(index.cutKeys),
                        fmt::to_string(index.nulls), index.first, index.last});
    }
    return text + '\n' + indexes.Format();
}

// --- Facts as JSON

std::string Key(std::string name) {
    for (char& c : name) c = c == ' ' ? '_' : c;
    return Quoted(name);
}

std::string Json(const Store& store, const Facts& facts) {
    std::string text = "{\"store\":" + Quoted(Printable(store.Name()));
    for (const auto& [name, number] : NumberLines(facts)) text += fmt::format(",{}:{}", Key(name), number);
    for (const Line& line : HeaderLines(store)) text += fmt::format(",{}:{}", Key(line.first), Quoted(line.second));
    std::string trees, indexes;
    for (const TreeFacts& tree : facts.trees) {
        trees += fmt::format(
            "{}{{\"name\":{},\"entries\":{},\"depth\":{},\"branch_pages\":{},\"leaf_pages\":{},\"overflow_pages\":{}}}",
            trees.empty() ? "" : ",", Quoted(tree.name), tree.pages.ms_entries, tree.pages.ms_depth,
            tree.pages.ms_branch_pages, tree.pages.ms_leaf_pages, tree.pages.ms_overflow_pages);
    }
    for (const IndexFacts& index : facts.indexes) {
        indexes += fmt::format("{}{{\"column\":{},\"keys\":{},\"cut\":{},\"nulls\":{},\"first\":{},\"last\":{}}}",
                               indexes.empty() ? "" : ",", Quoted(index.column), index.entries, index.cutKeys,
                               index.nulls, Quoted(index.first), Quoted(index.last));
    }
    return fmt::format("{},\"databases\":[{}],\"indexes\":[{}]}}\n", text, trees, indexes);
}

}  // namespace

void RunStats(const StatsOptions& options) {
    Store store(options.store, Purpose::Verify);
    const Facts facts = FactsOf(store);
    Write(options.json ? Json(store, facts) : Tables(store, facts));
}

}  // namespace store
