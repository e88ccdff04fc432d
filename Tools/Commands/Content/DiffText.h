#pragma once

#include "Foundation/Lines.h"
#include "Tools/Terminal/Style.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// The text of a difference for a person, made while the client writes it: safe to show, additions
/// and removals in their colours, the words that differ in bold, the lines between the changes of
/// one file as headings.
class DifferencePainter {
public:
    /// With a width the old lines stand on the left of as many cells and the new ones on the
    /// right; 0 for one below the other.
    explicit DifferencePainter(const Palette& palette, std::size_t sideBySide = 0)
        : palette_(palette), sideBySide_(sideBySide) {}

    /// The next piece, cut anywhere; what can be shown of it by now.
    std::string take(std::string_view piece);
    /// What is left at the end.
    std::string finish();

private:
    void takeLine(std::string_view line);
    void showChange();
    void show(Style style, std::string_view line);
    void showPair(const std::string& removed, const std::string& added, bool isRemoved);

    void showRows();
    void showRow(std::string_view left, char mark, std::string_view right);

    const Palette& palette_;
    const std::size_t sideBySide_;
    LineAssembler lines_;
    bool isInHunk_ = false;
    /// Lines that were removed, and those that were added in their place.
    std::vector<std::string> removed_;
    std::vector<std::string> added_;
    std::string shown_;
};

/// A whole difference, likewise.
std::string shownDifference(std::string_view text, const Palette& palette);

} // namespace quen::tools
