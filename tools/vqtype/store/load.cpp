#include "load.h"

#include <filesystem>

#include "../files.h"
#include "../text.h"
#include "batchwriter.h"
#include "commands.h"
#include "progress.h"
#include "rejects.h"
#include "rowreader.h"

namespace store {

namespace {

// LMDB keeps the pages of a transaction in memory, and waits for the disk at its end. A key can change a page of its
// own.
constexpr std::size_t BatchBytes = std::size_t{8} << 20, BatchRows = std::size_t{1} << 18,
                      BatchKeys = std::size_t{1} << 15;

std::size_t MostRows(const LoadOptions& options, std::size_t indexes) {
    if (options.batch != 0) return options.batch;
    return indexes == 0 ? BatchRows : std::max(BatchKeys / indexes, std::size_t{1});
}

constexpr std::uint64_t RowsBetweenUpdates = 1024;

std::string Rows(std::uint64_t count) { return fmt::format("{} row{}", count, count == 1 ? "" : "s"); }

// A file that is read or written already must not be made anew.
void CheckReject(const LoadOptions& options) {
    if (!options.reject) return;
    const auto refuse = [&options](const std::string& file, const char* what) {
        std::error_code ignored;
        if (!std::filesystem::equivalent(PathOf(*options.reject), PathOf(file), ignored)) return;
        throw CommandError("--reject {}: this is {}", Printable(*options.reject), what);
    };
    refuse(options.file == "-" ? "/dev/stdin" : options.file, "the file that is loaded");
    refuse(options.store, "the store");
    refuse(options.store + "-lock", "the store's lock");
}

class Load {
  public:
    explicit Load(const LoadOptions& options)
        : options_(options),
          name_(options.file == "-" ? "standard input" : Printable(options.file)),
          store_(options.store, Purpose::Write),
          csv_(OpenSource(options.file, size_, [this] { Wait(); })),
          progress_("loading", size_, options.quiet) {}

    void Run() {
        CheckReject(options_);
        if (!csv_.Next()) throw CommandError("{}: there is no header line, which names the columns", name_);
        ReadAll(Header());
        Summarize();
    }

  private:
    RowReader Header() {
        const std::string place = fmt::format("{}:{}", name_, csv_.Line());
        if (!csv_.IsGood()) throw CommandError("{}: the header line is none: {}", place, csv_.Fault().text);
        return RowReader(store_.GetSchema(), store_.Format(), csv_.Fields(), options_.null, options_.scan, place);
    }

    void ReadAll(RowReader rows) {
        rejects_.emplace([this](const std::string& line) { Tell(line); }, options_.reject, csv_.Raw());
        try {
            writer_.emplace(store_, [this](const Batch& batch) { NoteCommit(batch); });
            ReadBatches(rows, *writer_);
            writer_->Finish();
            rejects_->Finish();
        } catch (const CommandError& error) {
            writer_.reset();
            progress_.Clear();
            throw CommandError("{}\n{}", error.what(), Committed());
        }
    }

    void ReadBatches(RowReader& rows, BatchWriter& writer) {
        const std::size_t most = MostRows(options_, store_.Indexes().size());
        Batch batch;
        for (std::uint64_t count = 1; csv_.Next(); ++count) {
            writer.Check();
            if (count % RowsBetweenUpdates == 0) Update(count);
            ReadRow(rows, batch);
            if (batch.bytes.size() >= BatchBytes || batch.Count() >= most) Put(writer, batch);
        }
        if (batch.Count() != 0) Put(writer, batch);
    }

    // A batch that is reported has its rejected rows in their file, too.
    void Put(BatchWriter& writer, Batch& batch) {
        rejects_->Flush();
        writer.Put(batch);
    }

    void ReadRow(RowReader& rows, Batch& batch) {
        if (rows.Read(csv_, batch.bytes)) {
            NoteLines();
            if (batch.Count() == 0) batch.firstLine = csv_.Line();
            batch.ends.push_back(batch.bytes.size());
            batch.lastLine = csv_.LastLine();
        } else {
            const std::size_t line = csv_.IsGood() ? csv_.Line() : csv_.Fault().line;
            rejects_->Add(csv_.Raw(), fmt::format("{}:{}: {}", name_, line, rows.Fault()));
        }
    }

    // Two stray quotes make all that stands between them one field.
    void NoteLines() {
        constexpr std::size_t many = 1000;
        if (isNoted_ || csv_.LastLine() - csv_.Line() < many) return;
        isNoted_ = true;
        Tell(fmt::format("{}:{}: this row runs to line {}, as a quote joins these lines; it is loaded", name_,
                         csv_.Line(), csv_.LastLine()));
    }

    // While no input comes, what has failed is told.
    void Wait() {
        if (writer_) writer_->Check();
    }

    // --- What is told: by two threads, of which only one may write to the terminal

    void Update(std::uint64_t rows) {
        const std::lock_guard lock(mutex_);
        progress_.Update(rows, csv_.Position());
    }

    void Tell(const std::string& line) {
        const std::lock_guard lock(mutex_);
        progress_.Clear();
        WriteError(line + "\n");
    }

    void NoteCommit(const Batch& batch) {
        const std::lock_guard lock(mutex_);
        rows_ += batch.Count();
        line_ = batch.lastLine;
        if (!options_.batches) return;
        progress_.Clear();
        Write(fmt::format("committed {}, to line {}\n", Rows(rows_), line_));
        FlushOutput();
    }

    std::string Committed() const {
        if (rows_ == 0) return "no row is in the store that was not there before";
        return fmt::format("committed {}, to line {}; nothing behind that is in the store", Rows(rows_), line_);
    }

    void Summarize() {
        progress_.Clear();
        const std::uint64_t rejected = rejects_ ? rejects_->Count() : 0;
        Write(fmt::format("{}: {} loaded, {} rejected\n", name_, Rows(rows_), rejected));
        if (rejected == 0) return;
        FlushOutput();
        throw CommandError("{}: {} of {} did not fit{}", name_, rejected, Rows(rows_ + rejected),
                           options_.reject ? fmt::format(" and are in {}", Printable(*options_.reject)) : "");
    }

    const LoadOptions& options_;
    std::string name_;
    Store store_;
    std::uint64_t size_ = 0;
    CsvReader csv_;
    std::optional<Rejects> rejects_;
    std::mutex mutex_;
    Progress progress_;
    std::uint64_t rows_ = 0;  // committed
    std::size_t line_ = 0;    // the last of these
    bool isNoted_ = false;    // that a row has many lines
    std::optional<BatchWriter> writer_;
};

}  // namespace

void RunLoad(const LoadOptions& options) { Load(options).Run(); }

}  // namespace store
