#include "Tools/Commands/Content/DiffText.h"

#include "Host/Text.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace quen::tools {

namespace {

/// Longer changes are shown as they are: nobody compares their lines one by one.
constexpr std::size_t mostPaired = 200;

/// Hunks of files begin with `@@`, those of properties with `##`.
bool beginsHunk(std::string_view line) {
    return line.starts_with("@@ ") || line.starts_with("## ");
}

/// Whether a line can belong to a hunk: else what follows is not part of it.
bool continuesHunk(std::string_view line) {
    return !line.empty() && std::string_view(" +-\\").find(line.front()) != std::string_view::npos;
}

bool isInWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// Safe to show, with blanks up to each eighth cell in the place of tabs.
std::string withoutTabs(std::string_view line) {
    const std::string safe = printableLine(line);
    std::string text;
    std::size_t width = 0;
    std::size_t start = 0;
    for (auto tab = safe.find('\t'); tab != std::string::npos; tab = safe.find('\t', start)) {
        const std::string part = safe.substr(start, tab - start);
        const std::size_t blanks = 8 - (width + terminalWidth(part)) % 8;
        text.append(part).append(blanks, ' ');
        width += terminalWidth(part) + blanks;
        start = tab + 1;
    }
    return text.append(safe, start);
}

/// How far two lines are alike from their beginning, in whole words.
std::size_t commonBeginning(std::string_view one, std::string_view other) {
    const auto [end, otherEnd] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    auto size = static_cast<std::size_t>(end - one.begin());
    const auto cutsWord = [&](std::string_view line) {
        return size > 0 && size < line.size() && isInWord(line[size - 1]) && isInWord(line[size]);
    };
    while (cutsWord(one) || cutsWord(other)) {
        --size;
    }
    return size;
}

std::size_t commonEnd(std::string_view one, std::string_view other) {
    const auto [end, otherEnd] =
        std::mismatch(one.rbegin(), one.rend(), other.rbegin(), other.rend());
    auto size = static_cast<std::size_t>(end - one.rbegin());
    const auto cutsWord = [&](std::string_view line) {
        return size > 0 && size < line.size() && isInWord(line[line.size() - size - 1]) &&
               isInWord(line[line.size() - size]);
    };
    while (cutsWord(one) || cutsWord(other)) {
        --size;
    }
    return size;
}

} // namespace

std::string DifferencePainter::take(std::string_view piece) {
    lines_.take(piece, [this](std::string_view line) { takeLine(line); });
    return std::exchange(shown_, {});
}

std::string DifferencePainter::finish() {
    if (!lines_.unended().empty()) {
        takeLine(lines_.unended());
    }
    showChange();
    return std::exchange(shown_, {});
}

void DifferencePainter::takeLine(std::string_view line) {
    if (isInHunk_ && line.starts_with('-') && added_.empty()) {
        removed_.emplace_back(line);
        return;
    }
    if (isInHunk_ && line.starts_with('+')) {
        added_.emplace_back(line);
        return;
    }
    showChange();
    if (isInHunk_ && line.starts_with('-')) {
        removed_.emplace_back(line);
        return;
    }
    if (beginsHunk(line)) {
        isInHunk_ = true;
        show(Style::changed, line);
        return;
    }
    isInHunk_ = isInHunk_ && continuesHunk(line);
    if (sideBySide_ > 0 && isInHunk_ && line.starts_with(' ')) {
        return showRow(line.substr(1), ' ', line.substr(1));
    }
    show(!isInHunk_ ? Style::heading : line.front() == '\\' ? Style::faint : Style::plain, line);
}

/// Lines that were replaced one by one are compared word by word.
void DifferencePainter::showChange() {
    if (sideBySide_ > 0) {
        return showRows();
    }
    const bool isPaired = removed_.size() == added_.size() && removed_.size() <= mostPaired;
    for (std::size_t i = 0; i < removed_.size(); ++i) {
        isPaired ? showPair(removed_[i], added_[i], true) : show(Style::bad, removed_[i]);
    }
    for (std::size_t i = 0; i < added_.size(); ++i) {
        isPaired ? showPair(removed_[i], added_[i], false) : show(Style::good, added_[i]);
    }
    removed_.clear();
    added_.clear();
}

void DifferencePainter::showRows() {
    const auto textAt = [](const std::vector<std::string>& lines, std::size_t i) {
        return i < lines.size() ? std::string_view(lines[i]).substr(1) : std::string_view();
    };
    for (std::size_t i = 0; i < std::max(removed_.size(), added_.size()); ++i) {
        const bool isBoth = i < removed_.size() && i < added_.size();
        const char mark = isBoth ? '|' : i < removed_.size() ? '<' : '>';
        showRow(textAt(removed_, i), mark, textAt(added_, i));
    }
    removed_.clear();
    added_.clear();
}

void DifferencePainter::showRow(std::string_view left, char mark, std::string_view right) {
    // Shown only where one side has it and the other has not.
    const bool isReturn =
        (mark == '>' || left.ends_with('\r')) && (mark == '<' || right.ends_with('\r'));
    if (isReturn) {
        left.remove_suffix(mark == '>' ? 0 : 1);
        right.remove_suffix(mark == '<' ? 0 : 1);
    }
    const std::size_t width = (sideBySide_ - std::min<std::size_t>(sideBySide_, 3)) / 2;
    const std::string before = startingText(withoutTabs(left), width);
    const std::string after = startingText(withoutTabs(right), width);
    const bool isChange = mark != ' ';
    std::string line = palette_.paint(isChange ? Style::bad : Style::plain, before);
    if (isChange || !after.empty()) {
        line.append(width - std::min(width, terminalWidth(before)), ' ');
        line.append(" ").append(1, mark);
    }
    if (!after.empty()) {
        line.append(" ").append(palette_.paint(isChange ? Style::good : Style::plain, after));
    }
    shown_ += line + "\n";
}

void DifferencePainter::show(Style style, std::string_view line) {
    shown_ += palette_.paint(style, printableLine(line)) + "\n";
}

void DifferencePainter::showPair(const std::string& removed, const std::string& added,
                                 bool isRemoved) {
    const std::string_view before = std::string_view(removed).substr(1);
    const std::string_view after = std::string_view(added).substr(1);
    const std::string_view line = isRemoved ? before : after;
    const Style style = isRemoved ? Style::bad : Style::good;
    const std::size_t start = commonBeginning(before, after);
    const std::size_t end = commonEnd(before.substr(start), after.substr(start));
    const std::size_t middle = line.size() - start - end;
    if (!palette_.isColoured() || start + end == 0 || middle == 0) {
        show(style, isRemoved ? removed : added);
        return;
    }
    shown_ += palette_.paint(style, (isRemoved ? "-" : "+") + printableLine(line.substr(0, start)));
    shown_ += palette_.paintBold(style, printableLine(line.substr(start, middle)));
    shown_ += palette_.paint(style, printableLine(line.substr(start + middle))) + "\n";
}

std::string shownDifference(std::string_view text, const Palette& palette) {
    DifferencePainter painter(palette);
    std::string shown = painter.take(text);
    return shown.append(painter.finish());
}

} // namespace quen::tools
