#pragma once

#include "Tools/Commands/History/GraphNodes.h"
#include "Tools/Terminal/Marks.h"
#include "Tools/Terminal/Style.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quen::tools {

/// One row of a graph, and how many cells it takes.
struct GraphRow {
    std::string text;
    std::size_t cells = 0;
};

/// What stands at the left of one revision's text, row by row.
struct GraphRows {
    /// Rows without a text: lines that come together at the revision.
    std::vector<GraphRow> before;
    /// The row of the revision; nothing for one that is not shown.
    std::optional<GraphRow> node;
    /// Rows behind it, which may carry text: lines that part.
    std::vector<GraphRow> after;
    /// Every further row.
    GraphRow margin;

    /// How many cells the rows that carry text take, with the blank behind them.
    std::size_t width() const;
};

/// Draws lines of history, a column each, while revisions come in, the youngest first. A line keeps
/// its column until it ends; a new one takes the first that is free.
class BranchGraph {
public:
    /// The next revision of a branch; absent where it is not known.
    using NextOn = std::function<std::optional<std::int64_t>(const std::string& branch)>;

    /// At most `mostCells` are drawn; what is further right is left out.
    BranchGraph(const Marks& marks, const Palette& palette, std::size_t mostCells)
        : marks_(marks.graph), palette_(palette), mostCells_(mostCells) {}

    /// The rows of the next revision. One that is not shown lets its lines pass, and what it merged
    /// is not told of.
    GraphRows add(const GraphNode& node, bool isShown, const NextOn& nextOn);

private:
    /// A line that leads to the youngest revision of a branch up to a number.
    struct Line {
        std::string branch;
        std::int64_t upTo = 0;
    };
    struct Cell {
        std::string_view mark = " ";
        std::size_t column = 0;
    };
    using Row = std::vector<Cell>;
    /// How a row across ends at the far end.
    enum class End { begins, ends, goesOn };

    std::vector<std::size_t> columnsTo(const GraphNode& node) const;
    std::size_t freeColumn();
    void dropFreeColumns();
    std::optional<std::size_t> columnShared(const GraphParent& parent, std::size_t own,
                                            std::int64_t revision, const NextOn& nextOn) const;
    std::vector<GraphRow> follow(const GraphNode& node, std::size_t column, const NextOn& nextOn);
    std::vector<GraphRow> branchOff(const GraphNode& node, std::size_t column,
                                    const NextOn& nextOn);

    Row lines() const;
    /// From the line of one column, which goes on, to another.
    Row across(std::size_t from, std::size_t to, End end) const;
    GraphRow drawn(const Row& row) const;

    const Marks::Graph& marks_;
    const Palette& palette_;
    const std::size_t mostCells_;
    /// By column; nothing where it is free.
    std::vector<std::optional<Line>> columns_;
};

} // namespace quen::tools
