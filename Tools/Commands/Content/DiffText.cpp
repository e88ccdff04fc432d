#include "Tools/Commands/Content/DiffText.h"

#include "Foundation/Lines.h"
#include "Tools/Commands/Session/Records.h"

namespace quen::tools {

namespace {

/// Hunks of files begin with `@@`, those of properties with `##`.
bool beginsHunk(std::string_view line) {
    return line.starts_with("@@ ") || line.starts_with("## ");
}

/// Whether a line can belong to a hunk: else what follows is not part of it.
bool continuesHunk(std::string_view line) {
    return !line.empty() && std::string_view(" +-\\").find(line.front()) != std::string_view::npos;
}

Style styleInHunk(std::string_view line) {
    switch (line.front()) {
    case '+': return Style::good;
    case '-': return Style::bad;
    case '\\': return Style::faint;
    default: return Style::plain;
    }
}

} // namespace

std::string shownDifference(std::string_view text, const Palette& palette) {
    std::string shown;
    bool isInHunk = false;
    for (const std::string_view line : linesOf(text)) {
        Style style = Style::heading;
        if (beginsHunk(line)) {
            isInHunk = true;
            style = Style::changed;
        } else {
            isInHunk = isInHunk && continuesHunk(line);
            style = isInHunk ? styleInHunk(line) : style;
        }
        shown += palette.paint(style, printableLine(line)) + "\n";
    }
    return shown;
}

} // namespace quen::tools
