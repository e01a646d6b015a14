#include "table.h"

#include <algorithm>
#include <utility>

#include "utf8.h"

namespace {

std::string Padded(const std::string& cell, std::size_t width, bool right) {
    const std::string blanks(width - std::min(width, DisplayWidth(cell)), ' ');
    return right ? blanks + cell : cell + blanks;
}

}  // namespace

void Table::AddRow(std::vector<std::string> cells) {
    cells.resize(columns_.size());
    rows_.push_back(std::move(cells));
}

std::vector<std::size_t> Table::Widths() const {
    std::vector<std::size_t> widths;
    for (const Column& column : columns_) {
        widths.push_back(std::max(DisplayWidth(column.title), DisplayWidth(column.second ? column.second : "")));
    }
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], std::min(DisplayWidth(row[i]), columns_[i].most));
        }
    }
    return widths;
}

std::string Table::Format(unsigned indent) const {
    std::string out;
    Format([&out](const std::string& line) { out += line; }, indent);
    return out;
}

void Table::Format(const std::function<void(const std::string&)>& write, unsigned indent) const {
    const std::vector<std::size_t> widths = Widths();
    const auto addLine = [&](auto cellAt) {
        std::string line(indent, ' ');
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            line += (i ? "  " : "") + Padded(cellAt(i), widths[i], columns_[i].right);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        write(line + '\n');
    };
    const auto dashes = [&](std::size_t i) { return std::string(widths[i], '-'); };

    addLine([&](std::size_t i) { return std::string(columns_[i].title); });
    const auto hasSecond = [](const Column& column) { return column.second != nullptr; };
    if (std::any_of(columns_.begin(), columns_.end(), hasSecond)) {
        addLine([&](std::size_t i) { return std::string(columns_[i].second ? columns_[i].second : ""); });
    }
    addLine(dashes);
    for (const auto& row : rows_) {
        if (row.empty()) {
            addLine(dashes);
        } else {
            addLine([&](std::size_t i) { return row[i]; });
        }
    }
}
