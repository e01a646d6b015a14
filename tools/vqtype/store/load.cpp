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

// LMDB keeps the pages of a transaction in memory, and waits for the disk at its end.
constexpr std::size_t BatchBytes = std::size_t{8} << 20;

constexpr std::uint64_t RowsBetweenUpdates = 1024;

// A file that is read or written already must not be made anew.
void CheckReject(const LoadOptions& options) {
    if (!options.reject) return;
    for (const std::string& other : {options.file, options.store}) {
        std::error_code ignored;
        if (std::filesystem::equivalent(PathOf(*options.reject), PathOf(other), ignored)) {
            throw CommandError("--reject {}: this is the file that is {}", Printable(*options.reject),
                               &other == &options.store ? "loaded into" : "loaded");
        }
    }
}

class Load {
  public:
    explicit Load(const LoadOptions& options)
        : options_(options),
          name_(options.file == "-" ? "standard input" : Printable(options.file)),
          store_(options.store, Purpose::Write),
          csv_(OpenSource(options.file, size_)),
          progress_("loading", size_, options.quiet) {}

    void Run() {
        if (csv_.Next()) ReadAll(Header());
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
            BatchWriter writer(store_, [this](const Batch& batch) { NoteCommit(batch); });
            ReadBatches(rows, writer);
            writer.Finish();
        } catch (const CommandError& error) {
            progress_.Clear();
            throw CommandError("{}\n{}", error.what(), Committed());
        }
        rejects_->Finish();
    }

    void ReadBatches(RowReader& rows, BatchWriter& writer) {
        Batch batch;
        for (std::uint64_t count = 1; csv_.Next(); ++count) {
            if (count % RowsBetweenUpdates == 0) Update(count);
            ReadRow(rows, batch);
            if (batch.bytes.size() < BatchBytes && (options_.batch == 0 || batch.Count() < options_.batch)) continue;
            writer.Put(batch);
        }
        if (batch.Count() != 0) writer.Put(batch);
    }

    void ReadRow(RowReader& rows, Batch& batch) {
        if (rows.Read(csv_, batch.bytes)) {
            if (batch.Count() == 0) batch.firstLine = csv_.Line();
            batch.ends.push_back(batch.bytes.size());
            batch.lastLine = csv_.LastLine();
        } else {
            const std::size_t line = csv_.IsGood() ? csv_.Line() : csv_.Fault().line;
            rejects_->Add(csv_.Raw(), fmt::format("{}:{}: {}", name_, line, rows.Fault()));
        }
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
        Write(fmt::format("committed {} rows, to line {}\n", rows_, line_));
        FlushOutput();
    }

    std::string Committed() const {
        if (rows_ == 0) return "no row is in the store that was not there before";
        return fmt::format("committed {} rows, to line {}; nothing behind that is in the store", rows_, line_);
    }

    void Summarize() {
        progress_.Clear();
        const std::uint64_t rejected = rejects_ ? rejects_->Count() : 0;
        Write(fmt::format("{}: {} rows loaded, {} rejected\n", name_, rows_, rejected));
        if (rejected == 0) return;
        FlushOutput();
        throw CommandError("{}: {} of {} rows did not fit{}", name_, rejected, rows_ + rejected,
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
};

}  // namespace

void RunLoad(const LoadOptions& options) {
    CheckReject(options);
    Load(options).Run();
}

}  // namespace store
