#pragma once

#include "Tools/Terminal/Style.h"

#include <ostream>
#include <string>
#include <vector>

namespace quen::tools {

/// Rows in aligned columns, two blanks apart. Widths are counted in terminal cells, so that names
/// in any script line up; nothing is padded at the end of a line.
class Table {
public:
    struct Cell {
        std::string text;
        Style style = Style::plain;
        bool alignsRight = false;
    };
    using Row = std::vector<Cell>;

    void add(Row row) { rows_.push_back(std::move(row)); }
    /// All rows of another table.
    void append(const Table& table) {
        rows_.insert(rows_.end(), table.rows_.begin(), table.rows_.end());
    }
    bool isEmpty() const noexcept { return rows_.empty(); }
    void print(std::ostream& out, const Palette& palette) const;

private:
    std::vector<Row> rows_;
};

} // namespace quen::tools
