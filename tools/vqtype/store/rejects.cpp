#include "rejects.h"

#include <cerrno>
#include <cstring>

#include "../error.h"
#include "../files.h"
#include "../text.h"

namespace store {

Rejects::Rejects(std::function<void(const std::string&)> tell, const std::optional<std::string>& kept,
                 std::string_view header)
    : tell_(std::move(tell)) {
    if (!kept) return;
    name_ = Printable(*kept);
    file_.reset(std::fopen(PathOf(*kept).c_str(), "wb"));
    if (!file_) throw CommandError("--reject {}: cannot be opened: {}", name_, std::strerror(errno));
    Keep(header);
}

void Rejects::Add(std::string_view row, const std::string& fault) {
    if (count_++ < ToldInFull) tell_(fault);
    if (file_) Keep(row);
}

void Rejects::Flush() {
    if (file_) Check(std::fflush(file_.get()) == 0);
}

void Rejects::Finish() {
    if (count_ > ToldInFull) tell_(fmt::format("and {} more like these", count_ - ToldInFull));
    Flush();
}

// The last row of a file may lack its line break.
void Rejects::Keep(std::string_view row) {
    const bool isWhole = row.empty() || row.ends_with('\n');
    Check(std::fwrite(row.data(), 1, row.size(), file_.get()) == row.size() &&
          (isWhole || std::fputc('\n', file_.get()) != EOF));
}

void Rejects::Check(bool isDone) const {
    if (!isDone) throw CommandError("--reject {}: cannot be written: {}", name_, std::strerror(errno));
}

}  // namespace store
