#include "Tools/Commands/History/BranchGraph.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quen::tools {

namespace {

constexpr std::array columnStyles{Style::good, Style::changed, Style::bad, Style::warning};

} // namespace

std::size_t GraphRows::width() const {
    std::size_t cells = std::max(margin.cells, node ? node->cells : 0);
    for (const GraphRow& row : after) {
        cells = std::max(cells, row.cells);
    }
    return cells;
}

std::vector<std::size_t> BranchGraph::columnsTo(const GraphNode& node) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i] && columns_[i]->branch == node.branch &&
            node.revision <= columns_[i]->upTo) {
            found.push_back(i);
        }
    }
    return found;
}

std::size_t BranchGraph::freeColumn() {
    const auto found = std::find(columns_.begin(), columns_.end(), std::nullopt);
    const auto column = static_cast<std::size_t>(found - columns_.begin());
    columns_.resize(std::max(columns_.size(), column + 1));
    return column;
}

/// At the right end alone: a line keeps its column.
void BranchGraph::dropFreeColumns() {
    while (!columns_.empty() && !columns_.back()) {
        columns_.pop_back();
    }
}

/// A line that leads to the same revision as one to the parent would.
std::optional<std::size_t> BranchGraph::columnShared(const GraphParent& parent, std::size_t own,
                                                     std::int64_t revision,
                                                     const NextOn& nextOn) const {
    // Where nothing was read of the branch, it is the next one if none can lie between.
    const std::int64_t next = nextOn(parent.branch).value_or(revision - 1);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const bool leadsThere = columns_[i] && i != own && columns_[i]->branch == parent.branch &&
                                next <= columns_[i]->upTo;
        if (leadsThere && next <= parent.upTo) {
            return i;
        }
    }
    return std::nullopt;
}

/// What comes next on the revision's own line.
std::vector<GraphRow> BranchGraph::follow(const GraphNode& node, std::size_t column,
                                          const NextOn& nextOn) {
    if (!node.hasPrevious) {
        columns_[column].reset();
        return {};
    }
    const GraphParent& previous = node.parents.front();
    columns_[column] = Line{previous.branch, previous.upTo};
    const auto shared = previous.branch == node.branch
                            ? std::nullopt
                            : columnShared(previous, column, node.revision, nextOn);
    if (!shared) {
        return {};
    }
    GraphRow row = drawn(across(*shared, column, End::ends));
    columns_[column].reset();
    return {std::move(row)};
}

/// The lines to what was merged.
std::vector<GraphRow> BranchGraph::branchOff(const GraphNode& node, std::size_t column,
                                             const NextOn& nextOn) {
    std::vector<GraphRow> rows;
    for (std::size_t i = node.hasPrevious ? 1 : 0; i < node.parents.size(); ++i) {
        const GraphParent& parent = node.parents[i];
        const auto shared = columnShared(parent, column, node.revision, nextOn);
        const std::size_t other = shared ? *shared : freeColumn();
        rows.push_back(drawn(across(column, other, shared ? End::goesOn : End::begins)));
        if (!shared) {
            columns_[other] = Line{parent.branch, parent.upTo};
        }
    }
    return rows;
}

GraphRows BranchGraph::add(const GraphNode& node, bool isShown, const NextOn& nextOn) {
    GraphRows rows;
    std::vector<std::size_t> leading = columnsTo(node);
    if (leading.empty() && isShown) {
        leading.push_back(freeColumn());
        columns_[leading.front()] = Line{node.branch, node.revision};
    }
    for (std::size_t i = 1; i < leading.size(); ++i) {
        rows.before.push_back(drawn(across(leading.front(), leading[i], End::ends)));
        columns_[leading[i]].reset();
    }
    dropFreeColumns();
    if (isShown) {
        Row row = lines();
        row[2 * leading.front()].mark = marks_.node;
        rows.node = drawn(row);
        rows.after = branchOff(node, leading.front(), nextOn);
    }
    if (!leading.empty()) {
        for (GraphRow& row : follow(node, leading.front(), nextOn)) {
            rows.after.push_back(std::move(row));
        }
    }
    dropFreeColumns();
    rows.margin = drawn(lines());
    return rows;
}

BranchGraph::Row BranchGraph::lines() const {
    Row row(2 * columns_.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i].column = i / 2;
        row[i].mark = i % 2 == 0 && columns_[i / 2] ? marks_.line : " ";
    }
    return row;
}

BranchGraph::Row BranchGraph::across(std::size_t from, std::size_t to, End end) const {
    const bool goesRight = from < to;
    Row row = lines();
    for (std::size_t i = 2 * std::min(from, to) + 1; i < 2 * std::max(from, to); ++i) {
        const bool isLine = i % 2 == 0 && columns_[i / 2];
        row[i] = {isLine ? row[i].mark : marks_.across, isLine ? i / 2 : to};
    }
    row[2 * from].mark = goesRight ? marks_.teeRight : marks_.teeLeft;
    const std::size_t beside = goesRight ? 2 * to - 1 : 2 * to + 1;
    const bool isEnd = end == End::ends;
    row[beside].mark = goesRight ? (isEnd ? marks_.besideEndRight : marks_.besideBeginRight)
                                 : (isEnd ? marks_.besideEndLeft : marks_.besideBeginLeft);
    row[2 * to].mark = end == End::goesOn ? (goesRight ? marks_.teeLeft : marks_.teeRight)
                       : goesRight        ? (isEnd ? marks_.endRight : marks_.beginRight)
                                          : (isEnd ? marks_.endLeft : marks_.beginLeft);
    return row;
}

GraphRow BranchGraph::drawn(const Row& row) const {
    GraphRow drawn;
    drawn.cells = std::min(row.size(), mostCells_);
    // The last cell is always a blank.
    const std::size_t cut = drawn.cells < row.size() ? drawn.cells - 2 : row.size();
    for (std::size_t i = 0; i < drawn.cells; ++i) {
        const bool hidesNode =
            i == cut && std::any_of(row.begin() + static_cast<std::ptrdiff_t>(i), row.end(),
                                    [&](const Cell& cell) { return cell.mark == marks_.node; });
        const std::string_view mark = hidesNode  ? marks_.node
                                      : i == cut ? marks_.more
                                      : i > cut  ? " "
                                                 : row[i].mark;
        const Style style = columnStyles[row[i].column % columnStyles.size()];
        drawn.text += mark == " " ? " " : palette_.paint(style, mark);
    }
    return drawn;
}

} // namespace quen::tools
