/// \file
/// Tables of text, aligned by display width. Nothing is ever cut.
#ifndef VQTYPE_TABLE_H
#define VQTYPE_TABLE_H

#include <functional>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

/// Collects rows of UTF-8 cells and lays them out in columns two blanks apart.
class Table {
  public:
    struct Column {
        const char* title;
        bool right = false;            ///< numbers stand right-aligned
        const char* second = nullptr;  ///< stands under the title
        /// A cell that is wider stands out of its column, which it does not widen.
        std::size_t most = std::numeric_limits<std::size_t>::max();
    };

    Table(std::initializer_list<Column> columns) : columns_(columns) {}
    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row; cells that are missing at its end are empty.
    void AddRow(std::vector<std::string> cells);
    /// Adds a line of dashes under every column.
    void AddRule() { rows_.emplace_back(); }

    /// The whole table with its titles, one line a row, without blanks at line ends. `indent` blanks precede each line.
    std::string Format(unsigned indent = 0) const;
    /// The same, handed on line by line.
    void Format(const std::function<void(const std::string&)>& write, unsigned indent = 0) const;

  private:
    std::vector<std::size_t> Widths() const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;  // an empty row is a rule
};

#endif
