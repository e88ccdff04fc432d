#include "Tools/Terminal/Table.h"

#include "Host/Text.h"

#include <algorithm>

namespace quen::tools {

namespace {

/// Empty cells at the end of a row leave no blanks there.
std::size_t countUpToLastText(const Table::Row& row) {
    std::size_t count = row.size();
    while (count > 0 && row[count - 1].text.empty()) {
        --count;
    }
    return count;
}

} // namespace

void Table::print(std::ostream& out, const Palette& palette) const {
    std::vector<std::size_t> widths;
    for (const Row& row : rows_) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], terminalWidth(row[i].text));
        }
    }
    for (const Row& row : rows_) {
        const std::size_t count = countUpToLastText(row);
        for (std::size_t i = 0; i < count; ++i) {
            const bool isLast = i + 1 == count;
            const std::string padding(widths[i] - terminalWidth(row[i].text), ' ');
            out << (row[i].alignsRight ? padding : "") << palette.paint(row[i].style, row[i].text)
                << (row[i].alignsRight || isLast ? "" : padding) << (isLast ? "" : "  ");
        }
        out << '\n';
    }
}

} // namespace quen::tools
