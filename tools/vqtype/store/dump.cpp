#include "../files.h"
#include "columntext.h"
#include "commands.h"
#include "csvfield.h"
#include "store.h"

namespace store {

namespace {

// --- Records as lines

class Dumper {
  public:
    Dumper(Store& store, const std::optional<std::string>& null)
        : store_(store), null_(null), form_(store.GetSchema(), store.Format()) {
        for (const Column& column : store.GetSchema().Columns()) {
            texts_.emplace_back(column, store.Format());
            lines_ += (lines_.empty() ? "" : ",") + column.name;
        }
        lines_ += '\n';
    }

    void Run() {
        const Transaction transaction(store_.Env(), Access::Read);
        Cursor cursor(transaction, store_.Records());
        for (bool isThere = cursor.First(); isThere; isThere = cursor.Next()) {
            AddRecord(cursor.Key(), cursor.Value());
            if (lines_.size() >= BytesHeld) Flush();
        }
        Flush();
        if (damaged_ == 0) return;
        throw CommandError("{}: damaged records are left out: {}", Printable(store_.Name()), damaged_);
    }

  private:
    static constexpr std::size_t BytesHeld = 1 << 16;
    static constexpr std::uint64_t ToldInFull = 20;

    void Flush() {
        Write(lines_);
        lines_.clear();
    }

    void AddRecord(ByteView id, ByteView record) {
        const std::string fault = id.size() == IdSize ? form_.Check(id, record, forms_) : "it has no identifier";
        if (!fault.empty()) return LeaveOut(id, fault);
        for (std::size_t i = 0; i < forms_.size(); ++i) {
            if (i > 0) lines_ += ',';
            AddField(id, i, texts_[i].Of(forms_[i]));
        }
        lines_ += '\n';
    }

    void LeaveOut(ByteView id, const std::string& fault) {
        if (++damaged_ <= ToldInFull) WriteError(fmt::format("{}: {}\n", PlaceOf(id), fault));
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
        throw CommandError("{}: column {}: a null alone would be a line without a byte, which is no row: give a --null",
                           PlaceOf(id), name);
    }

    Store& store_;
    const std::optional<std::string>& null_;
    const RecordForm form_;
    std::vector<ColumnText> texts_;
    std::vector<ByteView> forms_;
    std::string lines_;
    std::uint64_t damaged_ = 0;
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
