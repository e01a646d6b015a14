#include "../files.h"
#include "columntext.h"
#include "commands.h"
#include "csvfield.h"
#include "names.h"
#include "snapshot.h"
#include "store.h"

namespace store {

namespace {

// --- Records as lines

// What damaged pages hide is told; all records that can be reached go on.
class Dumper : public TreeVisitor {
  public:
    Dumper(Store& store, const std::optional<std::string>& null)
        : store_(store), null_(null), form_(store.GetSchema(), store.Format()), fields_(store.GetSchema().Count()) {
        for (const Column& column : store.GetSchema().Columns()) {
            texts_.emplace_back(column, store.Format());
            lines_ += (lines_.empty() ? "" : ",") + column.name;
        }
        lines_ += '\n';
    }

    void Run() {
        const PageReport report = [this](const std::string& what) {
            LeaveOut(fmt::format("{}: {}", Printable(store_.Name()), what));
        };
        const PageSnapshot snapshot(store_.Env(), report);
        PageUse use = snapshot.Pages().MakeUse();
        for (const PageTree& tree : snapshot.Pages().ReadDatabases(use, report)) {
            if (tree.name == RecordsDatabase) snapshot.Pages().Walk(tree, *this, use, report);
        }
        Flush();
        store_.Env().RequireUnchanged();
        if (damages_ > 0)
            throw CommandError("{}: the store is damaged; its other records are all here", Printable(store_.Name()));
    }

    void Separator(ByteView) override {}
    void Entry(ByteView id, ByteView record) override {
        const std::string fault = id.size() == IdSize ? form_.Check(id, record, forms_) : "it has no identifier";
        if (!fault.empty()) return LeaveOut(fmt::format("{}: {}", PlaceOf(id), fault));
        for (std::size_t i = 0; i < forms_.size(); ++i) {
            try {
                fields_[i] = texts_[i].Of(forms_[i]);
            } catch (const CommandError& error) {
                return LeaveOut(
                    fmt::format("{}: column {}: {}", PlaceOf(id), store_.GetSchema()[i].name, error.what()));
            }
        }
        for (std::size_t i = 0; i < forms_.size(); ++i) {
            if (i > 0) lines_ += ',';
            AddField(id, i, fields_[i]);
        }
        lines_ += '\n';
        if (lines_.size() >= BytesHeld) Flush();
    }

  private:
    static constexpr std::size_t BytesHeld = 1 << 16;
    static constexpr std::uint64_t ToldInFull = 20;

    void Flush() {
        Write(lines_);
        lines_.clear();
    }

    void LeaveOut(const std::string& what) {
        if (++damages_ <= ToldInFull) WriteError(what + '\n');
    }

    std::string PlaceOf(ByteView id) const {
        const std::string number = id.size() == IdSize ? fmt::to_string(NumberOf(id, store_.Format())) : "?";
        return fmt::format("{}: record {}", Printable(store_.Name()), number);
    }

    void AddField(ByteView id, std::size_t column, const std::optional<std::string>& text) {
        const std::string& name = store_.GetSchema()[column].name;
        if (text && null_ && *text == *null_) {
            throw CommandError(
                "{}: column {}: the text {} is not null, and would be read as null: choose another --null", PlaceOf(id),
                name, Echo(*text));
        }
        if (text) return AppendCsvField(lines_, *text);
        if (null_) return AppendCsvField(lines_, *null_);
        if (forms_.size() > 1) return;
        RefuseNullAlone(PlaceOf(id), name, "give a --null");
    }

    Store& store_;
    const std::optional<std::string>& null_;
    const RecordForm form_;
    std::vector<ColumnText> texts_;
    std::vector<ByteView> forms_;
    std::vector<std::optional<std::string>> fields_;
    std::string lines_;
    std::uint64_t damages_ = 0;
};

// --- The commands that make a store like it

// A word as a shell takes it.
std::string ShellWord(const std::string& word) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./,:=+-";
    if (!word.empty() && word.find_first_not_of(plain) == word.npos) return word;
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

// The store's name, which must not begin as options do.
std::string ShellName(const std::string& name) { return ShellWord(name[0] == '-' ? "./" + name : name); }

std::string Commands(const Store& store) {
    const Header& header = store.GetHeader();
    std::string create =
        fmt::format("vqtype store create {} --schema {}", ShellName(store.Name()), ShellWord(header.schema.Format()));
    if (header.format == VqFormat_BigEndian) create += " --order big";
    if (header.defaultCmpOp & VqCmp_IgnoreCase) create += " --ignore-case";
    if (header.defaultCmpOp & VqCmp_IgnoreAccents) create += " --ignore-accents";
    std::string columns;
    for (const Index& index : store.Indexes()) {
        columns += (columns.empty() ? "" : ",") + header.schema[index.column].name;
    }
    if (columns.empty()) return create + '\n';
    return fmt::format("{}\nvqtype store index {} {}\n", create, ShellName(store.Name()), columns);
}

}  // namespace

void RunDump(const DumpOptions& options) {
    Store store(options.store, Purpose::Export);
    if (options.schema) return Write(Commands(store));
    Dumper(store, options.null).Run();
}

}  // namespace store
