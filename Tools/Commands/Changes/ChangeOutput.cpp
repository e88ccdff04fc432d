#include "Tools/Commands/Changes/ChangeOutput.h"

#include <algorithm>
#include <array>

namespace quen::tools {

namespace {

constexpr std::array<std::string_view, 7> itemBeginnings{
    "Adding  ", "Sending  ", "Deleting  ", "Replacing  ", "Reverted '", "Restored '", "Resolved "};

constexpr std::array<std::string_view, 5> revisionBeginnings{
    "Updated to revision ", "At revision ", "Checked out revision ", "Committed revision ",
    "Exported revision "};

bool isOneOf(char c, std::string_view set) noexcept {
    return set.find(c) != std::string_view::npos;
}

/// Columns: what happened to the text, to the properties, a lost lock, a conflict of trees. The
/// fourth and fifth may also begin a remark such as `(bin)`.
bool hasItemColumns(std::string_view line) noexcept {
    constexpr std::string_view changes = " ADUCGER";
    if (line.size() < 6 || !isOneOf(line[0], changes) || !isOneOf(line[1], changes) ||
        !isOneOf(line[2], " B") || !isOneOf(line[3], " C(")) {
        return false;
    }
    const bool saysSomething = line[0] != ' ' || line[1] != ' ' || line[3] == 'C';
    return saysSomething && (line[3] == '(' || line[4] == ' ');
}

std::string_view digitsAt(std::string_view text) noexcept {
    return text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
}

} // namespace

bool tellsOfItem(std::string_view line) {
    return hasItemColumns(line) || line.ends_with(" marked as resolved.") ||
           std::any_of(itemBeginnings.begin(), itemBeginnings.end(),
                       [&](std::string_view beginning) { return line.starts_with(beginning); });
}

void ChangeOutput::take(std::string_view piece) {
    lines_.take(piece, [this](std::string_view line) { takeLine(line); });
}

void ChangeOutput::takeLine(std::string_view line) {
    if (line.find_first_not_of(' ') == std::string_view::npos) {
        return;
    }
    lastLine_ = line;
    if (takeCommitLine(line)) {
        return;
    }
    if (line.starts_with("--- ")) {
        isRecordingMerge_ = line.starts_with("--- Recording") || line.starts_with("--- Eliding");
    } else if (tellsOfItem(line)) {
        items_ += isRecordingMerge_ ? 0 : 1;
    }
    for (const std::string_view beginning : revisionBeginnings) {
        if (line.starts_with(beginning)) {
            revision_ = digitsAt(line.substr(beginning.size()));
        }
    }
}

/// True where that is all there is to the line.
bool ChangeOutput::takeCommitLine(std::string_view line) {
    constexpr std::string_view warning = "Warning: ";
    if (line.starts_with("Committing transaction")) {
        commit_ = Commit::underWay;
    } else if (line.starts_with("Committed revision ")) {
        commit_ = Commit::made;
    } else if (commit_ == Commit::made && (!warning_.empty() || line.starts_with(warning))) {
        warning_.append(warning_.empty() ? line.substr(warning.size()) : line) += '\n';
        return true;
    }
    return false;
}

} // namespace quen::tools
