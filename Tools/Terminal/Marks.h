#pragma once

#include <string_view>

namespace quen::tools {

/// What this program adds to a text that is not its own, or draws: characters where the person's
/// locale is one of UTF-8, otherwise ASCII. Every such mark is one of these.
struct Marks {
    /// For what is left out.
    std::string_view ellipsis;
    /// For a character that is not shown.
    std::string_view replacement;

    /// Of a graph, each one cell wide.
    struct Graph {
        std::string_view node;
        std::string_view line;
        /// A line that another one leaves or reaches, to the right, to the left.
        std::string_view teeRight, teeLeft;
        /// Runs along a row.
        std::string_view across;
        /// In the cell of a line that begins in the row, or ends in it, and runs across; `Right` is
        /// the one at the right end.
        std::string_view beginRight, beginLeft, endRight, endLeft;
        /// In the cell beside that one: where characters cannot bend, a line goes aslant there.
        std::string_view besideBeginRight, besideBeginLeft, besideEndRight, besideEndLeft;
        /// For columns that there is no room for.
        std::string_view more;
    } graph;
};

/// Those of the locale that the environment names (LC_ALL, LC_CTYPE or LANG, the first that is
/// set). It is read once.
const Marks& marks() noexcept;

/// Those of a locale by its name, such as `de_DE.UTF-8` or `C`.
const Marks& marksOf(std::string_view locale) noexcept;

} // namespace quen::tools
