#include <cstring>
#include <filesystem>
#include <iterator>
#include <optional>
#include <sstream>

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

using Text = std::optional<std::string>;

struct IndexFacts {
    std::string column;
    std::uint64_t entries = 0, cutKeys = 0, nulls = 0;
    Text first, last;  // of the values that are not null, where their records can be read
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
Text ValueOf(const Store& store, const Transaction& transaction, std::size_t column, ByteView key) {
    TreeKey parts;
    if (!TreeKey::Read(key, parts)) return std::nullopt;
    const std::optional<ByteView> record = transaction.Get(store.Records(), parts.id);
    std::vector<ByteView> forms;
    if (!record || !RecordForm(store.GetSchema(), store.Format()).Check(parts.id, *record, forms).empty()) {
        return std::nullopt;
    }
    return ColumnText(store.GetSchema()[column], store.Format()).Of(forms[column]);
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
    facts.nulls = index.nulls;
    Cursor cursor(transaction, index.database);
    bool isThere = cursor.First();
    for (; isThere && IsNullKey(cursor.Key()); isThere = cursor.Next()) continue;
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
    std::error_code failure;
    facts.fileSize = std::filesystem::file_size(PathOf(store.Name()), failure);
    if (failure) throw CommandError("{}: {}", Printable(store.Name()), failure.message());
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

std::string Shown(const Text& value) { return value ? Echo(*value) : "-"; }

std::string Tables(const Store& store, const Facts& facts) {
    Table values({{"fact"}, {"value"}});
    values.AddRow({"store", Printable(store.Name())});
    for (const auto& [name, number] : NumberLines(facts)) values.AddRow({name, fmt::to_string(number)});
    for (const Line& line : HeaderLines(store)) values.AddRow({line.first, line.second});

    Table trees({{"database"},
                 {"entries", true},
                 {"depth", true},
                 {"branch pages", true},
                 {"leaf pages", true},
                 {"overflow pages", true}});
    for (const TreeFacts& tree : facts.trees) {
        const MDB_stat& pages = tree.pages;
        trees.AddRow({tree.name, fmt::to_string(pages.ms_entries), fmt::to_string(pages.ms_depth),
                      fmt::to_string(pages.ms_branch_pages), fmt::to_string(pages.ms_leaf_pages),
                      fmt::to_string(pages.ms_overflow_pages)});
    }
    std::string text = values.Format() + '\n' + trees.Format();
    if (facts.indexes.empty()) return text;
    Table indexes({{"index"}, {"keys", true}, {"cut", true}, {"nulls", true}, {"first"}, {"last"}});
    for (const IndexFacts& index : facts.indexes) {
        indexes.AddRow({index.column, fmt::to_string(index.entries), fmt::to_string(index.cutKeys),
                        fmt::to_string(index.nulls), Shown(index.first), Shown(index.last)});
    }
    return text + '\n' + indexes.Format();
}

// --- Facts as JSON

std::string JsonText(const Text& text) { return text ? Quoted(*text) : "null"; }

// The list, of what `one` makes of each.
template <class Items, class One>
std::string JsonList(const Items& items, One one) {
    std::string list;
    for (const auto& item : items) list += (list.empty() ? "" : ",") + one(item);
    return '[' + list + ']';
}

// Code points, and null for a wildcard that there is not.
std::string JsonWildcards(const std::string& wildcards) {
    std::istringstream text(wildcards);
    const std::vector<std::string> words(std::istream_iterator<std::string>(text), {});
    return JsonList(words, [](const std::string& word) { return JsonText(word == "-" ? Text() : word); });
}

std::string JsonLanguage(const CollationLanguage& one) {
    return fmt::format(R"({{"language":{},"codeSet":{},"class":{}}})", one.language, one.codeSet, one.collationClass);
}

std::string JsonHeader(const Store& store) {
    const Header& header = store.GetHeader();
    return fmt::format(
        R"("schema":{},"byteOrder":"{}","library":{},"orderVersion":"{:08x}","nativeCodeSet":{},"ignoreCase":{},)"
        R"("ignoreAccents":{},"wildcards":{},"languages":{},"canBeUsed":{},"obstacles":{})",
        Quoted(header.schema.Format()), header.format == VqFormat_BigEndian ? "big" : "little",
        Quoted(header.libraryVersion), header.orderVersion, header.nativeCodeSet,
        (header.defaultCmpOp & VqCmp_IgnoreCase) != 0, (header.defaultCmpOp & VqCmp_IgnoreAccents) != 0,
        JsonWildcards(header.wildcards), JsonList(header.languages, JsonLanguage), store.Obstacles().empty(),
        JsonList(store.Obstacles(), [](const Obstacle& obstacle) { return Quoted(obstacle.reason); }));
}

std::string JsonTree(const TreeFacts& tree) {
    const MDB_stat& pages = tree.pages;
    return fmt::format(R"({{"name":{},"entries":{},"depth":{},"branchPages":{},"leafPages":{},"overflowPages":{}}})",
                       Quoted(tree.name), pages.ms_entries, pages.ms_depth, pages.ms_branch_pages, pages.ms_leaf_pages,
                       pages.ms_overflow_pages);
}

std::string JsonIndex(const IndexFacts& index) {
    return fmt::format(R"({{"column":{},"keys":{},"cut":{},"nulls":{},"first":{},"last":{}}})", Quoted(index.column),
                       index.entries, index.cutKeys, index.nulls, JsonText(index.first), JsonText(index.last));
}

std::string Json(const Store& store, const Facts& facts) {
    return fmt::format(
        R"({{"store":{},"records":{},"fileSize":{},"mapSize":{},"pageSize":{},"freePages":{},{},"databases":{},)"
        "\"indexes\":{}}}\n",
        Quoted(Printable(store.Name())), facts.records, facts.fileSize, facts.mapSize, facts.pageSize, facts.freePages,
        JsonHeader(store), JsonList(facts.trees, JsonTree), JsonList(facts.indexes, JsonIndex));
}

}  // namespace

void RunStats(const StatsOptions& options) {
    Store store(options.store, Purpose::Verify);
    const Facts facts = FactsOf(store);
    Write(options.json ? Json(store, facts) : Tables(store, facts));
}

}  // namespace store
