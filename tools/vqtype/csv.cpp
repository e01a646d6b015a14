#include "csv.h"

#include <algorithm>

#include "error.h"

namespace {

class Parser {
  public:
    Parser(std::string_view text, const std::string& name) : text_(text), name_(name) {
        if (text_.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3;
    }

    std::vector<CsvRow> Parse() {
        std::vector<CsvRow> rows;
        while (at_ < text_.size()) {
            CsvRow row = ParseRow();
            if (row.fields.size() > 1 || !row.fields[0].empty()) rows.push_back(std::move(row));
        }
        return rows;
    }

  private:
    CsvRow ParseRow() {
        CsvRow row{line_, {ParseField()}};
        while (Skip(",")) row.fields.push_back(ParseField());
        if (at_ < text_.size() && !Skip("\r\n") && !Skip("\n")) {
            throw CommandError("{}:{}: text behind a closing quote", name_, line_);
        }
        ++line_;
        return row;
    }

    std::string ParseField() {
        if (Skip("\"")) return ParseQuoted();
        const std::size_t start = at_;
        at_ = std::min(text_.find_first_of(",\n", at_), text_.size());
        if (at_ > start && at_ < text_.size() && text_[at_] == '\n' && text_[at_ - 1] == '\r') --at_;
        return std::string(text_.substr(start, at_ - start));
    }

    std::string ParseQuoted() {
        const std::size_t opened = line_;
        std::string field;
        for (;;) {
            const std::size_t quote = text_.find('"', at_);
            if (quote == text_.npos) throw CommandError("{}:{}: a quote is opened and never closed", name_, opened);
            const std::string_view part = text_.substr(at_, quote - at_);
            line_ += static_cast<std::size_t>(std::count(part.begin(), part.end(), '\n'));
            field += part;
            at_ = quote + 1;
            if (!Skip("\"")) return field;
            field += '"';
        }
    }

    bool Skip(std::string_view expected) {
        if (text_.substr(at_, expected.size()) != expected) return false;
        at_ += expected.size();
        return true;
    }

    std::string_view text_;
    const std::string& name_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
};

}  // namespace

std::vector<CsvRow> ParseCsv(std::string_view text, const std::string& name) { return Parser(text, name).Parse(); }
