#include "check.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

#include "../files.h"
#include "checkkeys.h"
#include "columntext.h"
#include "commands.h"
#include "names.h"
#include "pages.h"
#include "snapshot.h"
#include "store.h"

namespace store {

namespace {

// A transaction of LMDB that reads: its pages stay as they are while others write.
struct Snapshot {
    explicit Snapshot(const std::string& name)
        : environment(name, Access::Read), transaction(environment, Access::Read) {}
    std::uint64_t Number() const { return mdb_txn_id(transaction.Handle()); }

    Environment environment;
    Transaction transaction;
};

// --- Trees

class Nothing : public TreeVisitor {
  public:
    void Separator(ByteView) override {}
    void Entry(ByteView, ByteView) override {}
};

// The entries of the header, as they stand.
class HeaderReader : public TreeVisitor {
  public:
    explicit HeaderReader(Findings& findings) : findings_(findings) {}

    void Separator(ByteView key) override {
        if (!order_.TakeSeparator(key)) Report("a key in its branch pages is not in its place");
    }
    void Entry(ByteView key, ByteView value) override {
        const std::string name = TextOf(key);
        if (!order_.TakeEntry(key)) Report("entry {} is not in its place", Quoted(name));
        if (IsSealed(value, key)) {
            entries_[name] = TextOf(Unsealed(value));
        } else {
            Report("entry {} is not what was written: the checksum is another", Quoted(name));
        }
    }

    // The entry's text, which is taken away; none where it is missing, which is told.
    std::optional<std::string> Take(const std::string& name) {
        const auto node = entries_.extract(name);
        if (!node.empty()) return node.mapped();
        Report("entry {} is missing", Quoted(name));
        return std::nullopt;
    }
    // The same for what `parse` reads from the text.
    template <class Parse>
    auto Take(const std::string& name, Parse parse) {
        const std::optional<std::string> text = Take(name);
        const auto value = text ? parse(*text) : std::nullopt;
        if (text && !value) Report("entry {} is {}", Quoted(name), Echo(*text));
        return value;
    }
    bool Has(const std::string& name) const { return entries_.count(name) != 0; }
    void ReportRest() {
        for (const auto& entry : entries_) Report("entry {} is unknown", Quoted(entry.first));
    }

  private:
    template <class... Args>
    void Report(fmt::format_string<Args...> format, Args&&... args) {
        findings_.Add("header", "header: " + fmt::format(format, std::forward<Args>(args)...));
    }

    Findings& findings_;
    std::map<std::string, std::string> entries_;
    KeyOrder order_{KeyOrder::ByBytes};
};

class RecordChecker : public TreeVisitor {
  public:
    RecordChecker(const Header& header, Findings& findings)
        : header_(header),
          form_(header.schema, header.format),
          order_(OrderOf(RecordOrder(header.format))),
          findings_(findings) {
        for (const Column& column : header.schema.Columns()) {
            values_.emplace_back(std::make_unique<ValueArray>(column.type, 1));
            texts_.emplace_back(column, header.format);
        }
    }

    void Separator(ByteView key) override {
        if (key.size() != IdSize) return Report("a key in their branch pages is none");
        if (!order_.TakeSeparator(key)) Report("a key in their branch pages is not in its place");
    }
    void Entry(ByteView id, ByteView record) override {
        ++count_;
        if (id.size() != IdSize) return Report(fmt::format("a key of {} bytes is no identifier", id.size()));
        const std::uint64_t number = NumberOf(id, header_.format);
        const std::string name = fmt::format("record {}", number);
        highest_ = std::max(highest_, number);
        const Id same = IdOf(number, header_.format);
        if (!std::equal(id.begin(), id.end(), same.begin()))
            Report(name + ": its identifier is none that a store gives");
        if (!order_.TakeEntry(id)) Report(name + ": it is not in its place");
        std::string fault = form_.Check(id, record, forms_);
        if (fault.empty()) fault = Load();
        if (!fault.empty()) Report(name + ": " + fault);
    }

    std::uint64_t Count() const { return count_; }
    std::uint64_t Highest() const { return highest_; }

  private:
    void Report(std::string text) { findings_.Add("records", std::move(text)); }
    static KeyOrder::Compare OrderOf(MDB_cmp_func* order) {
        return [order](ByteView a, ByteView b) {
            const auto valOf = [](ByteView bytes) {
                return MDB_val{bytes.size(), const_cast<unsigned char*>(bytes.data())};
            };
            const MDB_val first = valOf(a), second = valOf(b);
            return order(&first, &second);
        };
    }

    // Every value takes all of its form, and has a text.
    std::string Load() {
        for (std::size_t i = 0; i < texts_.size(); ++i) {
            const Column& column = header_.schema[i];
            const std::size_t size =
                Manager().Load(column.type, values_[i]->At(0), forms_[i].data(), header_.format, 1);
            if (size != forms_[i].size()) {
                return fmt::format("column {}: its value takes {} of its {} bytes", column.name, size,
                                   forms_[i].size());
            }
            try {
                texts_[i].Of(forms_[i]);
            } catch (const CommandError& error) {
                return fmt::format("column {}: {}", column.name, error.what());
            }
        }
        return "";
    }

    const Header& header_;
    RecordForm form_;
    KeyOrder order_;
    Findings& findings_;
    std::vector<std::unique_ptr<ValueArray>> values_;
    std::vector<ColumnText> texts_;
    std::vector<ByteView> forms_;
    std::uint64_t count_ = 0, highest_ = 0;
};

// --- The whole

class StoreCheck {
  public:
    explicit StoreCheck(const std::string& name) : name_(name) {}

    CheckResult Run() {
        RequireStoreFile(name_);
        if (OpenPages()) CheckTrees();
        return std::move(result_);
    }

  private:
    void Report(const std::string& part, std::string text) { result_.findings.Add(part, std::move(text)); }

    bool OpenPages() {
        const auto attempt = [this](const PageReport& report) { return ReadMeta(report); };
        return ReadMetaPages(attempt, report_);
    }

    bool ReadMeta(const PageReport& report) {
        bool isSound = true;
        snapshot_.reset();
        pages_.emplace(name_);
        const bool isReadable = pages_->ReadMeta(std::nullopt, [&](const std::string& what) {
            isSound = false;
            report(what);
        });
        // LMDB calculates with what the meta pages say, whatever that is.
        if (!isReadable || !isSound) return isReadable;
        try {
            snapshot_.emplace(name_);
        } catch (const CommandError& error) {
            report(error.what());
            return true;
        }
        pages_.emplace(name_);
        return pages_->ReadMeta(snapshot_->Number(), report);
    }

    void CheckTrees() {
        use_.emplace(pages_->MakeUse());
        trees_ = pages_->ReadDatabases(*use_, report_);
        const std::optional<PageTree> headerTree = TakeTree(HeaderDatabase), records = TakeTree(RecordsDatabase);
        if (!headerTree) Report("header", "header: its tree is missing");
        if (!records) Report("records", "records: their tree is missing");
        HeaderReader entries(result_.findings);
        if (headerTree) Walk(*headerTree, entries);
        const std::optional<Header> header = headerTree ? ReadHeader(entries) : std::nullopt;
        if (header) {
            if (records) CheckRecords(*header, *records, entries);
            CheckIndexes(*header, records, entries);
            entries.ReportRest();
        } else if (records) {
            WalkPages(*records);
        }
        for (const PageTree& tree : trees_) {
            if (header) Report("pages", fmt::format("database {} is unknown", Quoted(tree.name)));
            WalkPages(tree);
        }
        pages_->CheckFreeList(*use_, report_);
    }

    std::optional<PageTree> TakeTree(const std::string& name) {
        const auto found =
            std::find_if(trees_.begin(), trees_.end(), [&name](const PageTree& tree) { return tree.name == name; });
        if (found == trees_.end()) return std::nullopt;
        PageTree tree = std::move(*found);
        trees_.erase(found);
        return tree;
    }

    void Walk(const PageTree& tree, TreeVisitor& visitor) { pages_->Walk(tree, visitor, *use_, report_); }
    void WalkPages(const PageTree& tree) {
        Nothing nothing;
        Walk(tree, nothing);
    }

    // None where the records cannot be understood.
    std::optional<Header> ReadHeader(HeaderReader& entries) {
        const std::optional<std::string> text = entries.Take(StoreEntry);
        if (!text) return std::nullopt;
        try {
            Header header = Header::Parse(*text, "header");
            bool hidesRecords = false;
            for (const Obstacle& obstacle : Adopt(header)) {
                Report("header", "header: " + obstacle.reason);
                ++result_.obstacles;
                result_.isMended = result_.isMended && obstacle.isMended;
                hidesRecords = hidesRecords || obstacle.hidesRecords;
            }
            return hidesRecords ? std::nullopt : std::optional(std::move(header));
        } catch (const CommandError& error) {
            Report("header", error.what());
            return std::nullopt;
        }
    }

    void CheckRecords(const Header& header, const PageTree& tree, HeaderReader& entries) {
        RecordChecker records(header, result_.findings);
        Walk(tree, records);
        result_.records = records.Count();
        const std::optional<std::uint64_t> next = entries.Take(NextEntry, EntryNumber);
        if (!next || *next == records.Highest() + 1) return;
        Report("header",
               fmt::format("header: the next record is {}, and the last one is {}", *next, records.Highest()));
    }

    void CheckIndexes(const Header& header, const std::optional<PageTree>& records, HeaderReader& entries) {
        for (std::size_t i = 0; i < header.schema.Count(); ++i) {
            const std::string name = IndexName(header.schema[i]);
            const std::optional<PageTree> tree = TakeTree(name);
            if (!tree && !entries.Has(name)) continue;
            ++result_.indexes;
            const std::optional<KeyCounts> counts = entries.Take(name, KeyCounts::Parse);
            if (!tree) {
                Report(name, name + ": its tree is missing");
            } else if (!CanIndex(header.schema[i].type)) {
                Report(name, name + ": the column's values have no order");
                WalkPages(*tree);
            } else {
                CheckIndex(header, i, records, *tree, counts);
            }
        }
    }

    void CheckIndex(const Header& header, std::size_t column, const std::optional<PageTree>& records,
                    const PageTree& tree, const std::optional<KeyCounts>& counts) {
        ExpectedKeys expected(header, column, result_.records);
        if (records) {
            PageUse use = pages_->MakeUse();
            pages_->Walk(*records, expected, use, [](const std::string&) {});
        }
        expected.Finish();
        IndexChecker checker(header, column, expected, tree.name, result_.findings);
        Walk(tree, checker);
        checker.Finish(counts);
    }

    const std::string name_;
    CheckResult result_;
    const PageReport report_ = [this](const std::string& what) { Report("pages", what); };
    std::optional<Snapshot> snapshot_;
    std::optional<PageFile> pages_;
    std::optional<PageUse> use_;
    std::vector<PageTree> trees_;  // that have not been looked at
};

// --- Output

std::string CountsOf(const Findings& findings) {
    std::string text;
    for (const auto& [part, count] : findings.Parts()) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, part);
    }
    return text;
}

std::string Plural(std::uint64_t count, const char* one, const char* more) {
    return fmt::format("{} {}", count, count == 1 ? one : more);
}

std::string Lines(const CheckResult& result) {
    const Findings& findings = result.findings;
    if (findings.Count() == 0) {
        return fmt::format("sound: {}, {}\n", Plural(result.records, "record", "records"),
                           Plural(result.indexes, "index", "indexes"));
    }
    std::string lines;
    for (const std::string& text : findings.Texts()) lines += text + '\n';
    if (findings.Count() > findings.Texts().size()) {
        lines +=
            fmt::format("and {} more: of all, {}\n", findings.Count() - findings.Texts().size(), CountsOf(findings));
    }
    return lines + fmt::format("{}: {}\n",
                               result.IsDamaged() ? "damaged" : "not damaged, but not to be used by this library",
                               Plural(findings.Count(), "finding", "findings"));
}

std::string Json(const std::string& name, const CheckResult& result) {
    const Findings& findings = result.findings;
    std::string texts, parts;
    for (const std::string& text : findings.Texts()) texts += (texts.empty() ? "" : ",") + Quoted(Printable(text));
    for (const auto& [part, count] : findings.Parts()) {
        parts += fmt::format("{}{}:{}", parts.empty() ? "" : ",", Quoted(part), count);
    }
    return fmt::format(
        "{{\"store\":{},\"sound\":{},\"records\":{},\"indexes\":{},\"findings\":{},\"parts\":{{{}}},\"texts\":[{}]}}\n",
        Quoted(Printable(name)), findings.Count() == 0, result.records, result.indexes, findings.Count(), parts, texts);
}

}  // namespace

CheckResult CheckStore(const std::string& name) { return StoreCheck(name).Run(); }

void RunCheck(const CheckOptions& options) {
    const CheckResult result = CheckStore(options.store);
    Write(options.json ? Json(options.store, result) : Lines(result));
    if (result.findings.Count() == 0) return;
    const std::string name = Printable(options.store), count = Plural(result.findings.Count(), "finding", "findings");
    if (result.IsDamaged()) throw CommandError("{}: the store is damaged: {}", name, count);
    throw CommandError("{}: this library cannot use the store: {}{}", name, count,
                       result.isMended ? "; `vqtype store index --rebuild` mends it" : "");
}

}  // namespace store
