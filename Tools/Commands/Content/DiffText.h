#pragma once

#include "Foundation/Lines.h"
#include "Tools/Terminal/Style.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// The text of a difference for a person, made while the client writes it: safe to show, additions
/// and removals in their colours, the words that differ in bold, the lines between the changes of
/// one file as headings.
class DifferencePainter {
public:
    explicit DifferencePainter(const Palette& palette) : palette_(palette) {}

    /// The next piece, cut anywhere; what can be shown of it by now.
    std::string take(std::string_view piece);
    /// What is left at the end.
    std::string finish();

private:
    void takeLine(std::string_view line);
    void showChange();
    void show(Style style, std::string_view line);
    void showPair(const std::string& removed, const std::string& added, bool isRemoved);

    const Palette& palette_;
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
