#include "csvreader.h"

#include <csv.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "../error.h"
#include "../files.h"
#include "../text.h"
#include "descriptor.h"

namespace store {

namespace {

constexpr std::size_t ChunkSize = std::size_t{1} << 18;

}  // namespace

// --- Bytes of a file

namespace {

[[noreturn]] void FailToRead(const std::string& name) {
    throw CommandError("{}: cannot be read: {}", name, std::strerror(errno));
}

}  // namespace

ByteSource OpenSource(const std::string& name, std::uint64_t& size, std::function<void()> wait) {
    const bool isInput = name == "-";
    const std::string shown = isInput ? "standard input" : Printable(name);
    const int number = isInput ? STDIN_FILENO : ::open(PathOf(name).c_str(), O_RDONLY | O_CLOEXEC);
    if (number < 0) throw CommandError("{}: cannot be opened: {}", shown, std::strerror(errno));
    const auto file = std::make_shared<Descriptor>(number);
    struct stat status {};
    if (::fstat(*file, &status) != 0) FailToRead(shown);
    size = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
    return [file, shown, wait = std::move(wait)](char* to, std::size_t most) {
        constexpr int milliseconds = 100;
        pollfd input{*file, POLLIN, 0};
        while (wait && ::poll(&input, 1, milliseconds) == 0) wait();
        for (;;) {
            const ssize_t count = ::read(*file, to, most);
            if (count >= 0) return static_cast<std::size_t>(count);
            if (errno != EINTR) FailToRead(shown);
        }
    };
}

// --- libcsv

// Takes a row line by line, so that what it tells without a place can be given one.
class CsvReader::Machine {
  public:
    Machine() {
        if (csv_init(&parser_, CSV_STRICT | CSV_EMPTY_IS_NULL) != 0) throw std::bad_alloc();
        csv_set_space_func(&parser_, [](unsigned char) { return 0; });
        csv_set_blk_size(&parser_, 4096);
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() { csv_free(&parser_); }

    void Begin() {
        csv_fini(&parser_, nullptr, nullptr, nullptr);
        text_.clear();
        fields_.clear();
        isEnded_ = isBroken_ = false;
    }
    // False where the line has what no row has.
    bool Take(std::string_view line) {
        const std::size_t taken = csv_parse(&parser_, line.data(), line.size(), TakeField, EndRow, this);
        if (csv_error(&parser_) == CSV_ENOMEM) throw std::bad_alloc();
        return taken == line.size() && !isBroken_;
    }
    bool IsEnded() const { return isEnded_; }
    // A carriage return stood in the row, where it ended one for libcsv.
    bool IsBroken() const { return isBroken_; }
    bool IsInQuotes() const { return parser_.quoted != 0; }
    // Fields that have ended, without those behind such a carriage return.
    std::size_t Count() const { return isBroken_ ? brokenAt_ : fields_.size(); }
    // Bytes of the field that has not ended.
    std::size_t OpenSize() const { return parser_.entry_pos; }

    void Get(std::vector<CsvField>& fields) const {
        std::size_t start = 0;
        for (const Field& field : fields_) {
            fields.push_back({std::string_view(text_).substr(start, field.end - start), field.isAbsent});
            start = field.end;
        }
    }

  private:
    struct Field {
        std::size_t end;
        bool isAbsent;
    };

    static Machine& Of(void* data) { return *static_cast<Machine*>(data); }

    static void TakeField(void* text, std::size_t size, void* data) {
        Machine& machine = Of(data);
        machine.isBroken_ |= machine.isEnded_;
        if (text) machine.text_.append(static_cast<const char*>(text), size);
        machine.fields_.push_back({machine.text_.size(), text == nullptr});
    }
    static void EndRow(int, void* data) {
        Machine& machine = Of(data);
        if (!machine.isEnded_) machine.brokenAt_ = machine.fields_.size() - 1;
        machine.isEnded_ = true;
    }

    csv_parser parser_;
    std::string text_;
    std::vector<Field> fields_;
    bool isEnded_ = false, isBroken_ = false;
    std::size_t brokenAt_ = 0;
};

// --- Lines

std::string_view Trimmed(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

CsvReader::CsvReader(ByteSource source, bool usesShortcut)
    : source_(std::move(source)), usesShortcut_(usesShortcut), machine_(std::make_unique<Machine>()) {
    while (filled_ < 3 && Fill()) continue;
    if (filled_ >= 3 && std::memcmp(buffer_.data(), "\xEF\xBB\xBF", 3) == 0) at_ = 3;
}

CsvReader::~CsvReader() = default;

// More bytes behind those that there are. Those in front of the row go.
bool CsvReader::Fill() {
    if (isEnded_) return false;
    if (rowStart_ != 0) std::memmove(buffer_.data(), buffer_.data() + rowStart_, filled_ - rowStart_);
    dropped_ += rowStart_;
    filled_ -= rowStart_;
    lineStart_ -= rowStart_;
    at_ -= rowStart_;
    rowStart_ = 0;
    if (buffer_.size() < filled_ + ChunkSize) buffer_.resize(filled_ + ChunkSize);
    const std::size_t count = source_(buffer_.data() + filled_, ChunkSize);
    isEnded_ = count == 0;
    filled_ += count;
    return !isEnded_;
}

// Makes the next line that of TheLine(). False at the end. A line that passes the row's limit is cut there, wherever
// the reads ended.
bool CsvReader::NextLine() {
    lineStart_ = at_;
    for (std::size_t searched = 0;;) {
        const std::size_t from = lineStart_ + searched;
        const void* found = from == filled_ ? nullptr : std::memchr(buffer_.data() + from, '\n', filled_ - from);
        if (found) {
            at_ = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) + 1;
            break;
        }
        searched = filled_ - lineStart_;
        at_ = filled_;
        if (at_ - rowStart_ > RowLimit || !Fill()) break;
    }
    isTooLong_ = at_ - rowStart_ > RowLimit;
    if (isTooLong_) at_ = std::max(rowStart_ + RowLimit, lineStart_ + 1);
    line_ += at_ > lineStart_;
    return at_ > lineStart_;
}

// Leaves out what is still to come of a line that was cut.
void CsvReader::SkipLine() {
    for (isTooLong_ = false; buffer_[at_ - 1] != '\n';) {
        rowStart_ = at_;
        if (at_ == filled_ && !Fill()) return;
        const void* found = std::memchr(buffer_.data() + at_, '\n', filled_ - at_);
        at_ = found ? static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) + 1 : filled_;
    }
}

// --- Rows

bool CsvReader::Next() {
    fields_.clear();
    fault_.text.clear();
    if (isTooLong_) SkipLine();
    do {
        rowStart_ = at_;
        if (!NextLine()) return false;
    } while (Trimmed(TheLine()).empty());
    firstLine_ = line_;
    const std::string_view row = Trimmed(TheLine());
    const bool isPlain = usesShortcut_ && !isTooLong_ && row.find('"') == row.npos && row.find('\r') == row.npos;
    if (isPlain) {
        Cut(row);
    } else {
        Parse();
    }
    if (IsGood()) CheckSizes();
    return true;
}

void CsvReader::Cut(std::string_view row) {
    for (std::size_t start = 0;;) {
        const std::string_view field = row.substr(start, row.find(',', start) - start);
        fields_.push_back({field, field.empty()});
        start += field.size() + 1;
        if (start > row.size()) return;
    }
}

void CsvReader::Parse() {
    machine_->Begin();
    Opening opening{0, 0, 0};
    for (;;) {
        const std::size_t before = machine_->Count();
        if (!TakeLine(opening)) return;
        if (machine_->IsEnded()) return machine_->Get(fields_);
        if (opening.line == 0 || machine_->Count() > before) opening = {line_, machine_->Count(), at_ - rowStart_};
        if (machine_->OpenSize() > FieldLimit) {
            return FailAt(opening, "the quote that opens here is not closed within 1 MiB");
        }
        if (!NextLine()) return FailAt(opening, "the quote that opens here is not closed before the end of the file");
    }
}

// False where the row is none.
bool CsvReader::TakeLine(const Opening& opening) {
    const bool isLast = !isTooLong_ && !TheLine().ends_with('\n');
    if (!isTooLong_ && machine_->Take(TheLine()) && (!isLast || machine_->Take("\n"))) return true;
    const std::string reason = isTooLong_               ? "the row is longer than 16 MiB"
                               : machine_->IsBroken()   ? "a carriage return stands outside of quotes"
                               : machine_->IsInQuotes() ? "text stands behind a closing quote"
                                                        : "a quote stands in a field that does not begin with one";
    if (opening.line == 0) {
        Fail(machine_->Count(), reason);
    } else {
        FailAt(opening, fmt::format("a quote opens here, and on line {} {}", line_, reason));
    }
    return false;
}

void CsvReader::CheckSizes() {
    if (at_ - rowStart_ <= FieldLimit) return;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (fields_[i].text.size() > FieldLimit) return FailAsTooLong(i);
    }
}

// The line on which the field begins is behind all line breaks of those in front of it.
void CsvReader::FailAsTooLong(std::size_t field) {
    const auto breaks = [this](std::size_t i) {
        return static_cast<std::size_t>(std::count(fields_[i].text.begin(), fields_[i].text.end(), '\n'));
    };
    Opening opening{firstLine_, field, 0};
    for (std::size_t i = 0; i < field; ++i) opening.line += breaks(i);
    for (std::size_t line = firstLine_; line <= opening.line; ++line) opening.size = Raw().find('\n', opening.size) + 1;
    constexpr const char* reason = "the field is longer than 1 MiB";
    if (breaks(field) > 0) return FailAt(opening, reason);
    Fail(field, reason);
    fault_.line = opening.line;
}

void CsvReader::Fail(std::size_t field, std::string text) { fault_ = {line_, field, std::move(text)}; }

// The row ends with the line on which the field began, and the next is the next line: the quote was none.
void CsvReader::FailAt(const Opening& opening, std::string text) {
    line_ = opening.line;
    at_ = rowStart_ + opening.size;
    isTooLong_ = false;
    Fail(opening.field, std::move(text));
}

}  // namespace store
