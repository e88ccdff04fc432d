#include "Tools/Commands/Content/DiffStat.h"

#include "Host/Text.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <charconv>

namespace quen::tools {

namespace {

constexpr std::size_t leastBar = 8;
constexpr std::size_t leastName = 10;

/// The second number in `-12,5`: how many lines; 1 where there is none.
std::size_t countIn(std::string_view range) {
    const std::size_t comma = range.find(',');
    std::size_t count = 1;
    if (comma != std::string_view::npos) {
        std::from_chars(range.data() + comma + 1, range.data() + range.size(), count);
    }
    return count;
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

} // namespace

void DiffStat::take(std::string_view piece) {
    lines_.take(piece, [this](std::string_view line) { takeLine(line); });
}

void DiffStat::finish() {
    if (!lines_.unended().empty()) {
        takeLine(lines_.unended());
    }
}

/// Lines of a hunk are counted by its heading: a removed line may look like anything.
void DiffStat::takeLine(std::string_view line) {
    if (oldLeft_ + newLeft_ > 0 && !line.empty() && !files_.empty()) {
        const bool isAdded = line.front() == '+';
        const bool isRemoved = line.front() == '-';
        files_.back().added += isAdded ? 1 : 0;
        files_.back().removed += isRemoved ? 1 : 0;
        const bool counts = line.front() != '\\';
        oldLeft_ -= counts && !isAdded && oldLeft_ > 0 ? 1 : 0;
        newLeft_ -= counts && !isRemoved && newLeft_ > 0 ? 1 : 0;
    } else if (line.starts_with("Index: ")) {
        files_.push_back({std::string(line.substr(7))});
    } else if (line.starts_with("Cannot display: file marked as a binary type.") &&
               !files_.empty()) {
        files_.back().isBinary = true;
    } else if (line.starts_with("@@ -")) {
        const std::size_t plus = line.find(" +");
        const std::size_t end = line.find(" @@", 3);
        if (plus != std::string_view::npos && end != std::string_view::npos && plus < end) {
            oldLeft_ = countIn(line.substr(4, plus - 4));
            newLeft_ = countIn(line.substr(plus + 2, end - plus - 2));
        }
    }
}

std::string DiffStat::text(const Palette& palette, std::size_t width) const {
    std::size_t nameWidth = 0;
    std::size_t most = 1;
    std::size_t added = 0;
    std::size_t removed = 0;
    for (const File& file : files_) {
        nameWidth = std::max(nameWidth, terminalWidth(printable(file.path)));
        most = std::max(most, file.added + file.removed);
        added += file.added;
        removed += file.removed;
    }
    const std::size_t numberWidth = std::max<std::size_t>(std::to_string(most).size(), 3);
    const std::size_t fixed = numberWidth + 6;
    const std::size_t room = width > fixed ? width - fixed : 0;
    nameWidth = std::min(nameWidth, std::max(leastName, room > leastBar ? room - leastBar : 0));
    const std::size_t bar = std::max(leastBar, room > nameWidth ? room - nameWidth : 0);
    const auto scaled = [&](std::size_t count) {
        return most <= bar ? count : (count * bar + most - 1) / most;
    };
    std::string text;
    for (const File& file : files_) {
        const std::string name = fittingText(printable(file.path), nameWidth);
        const std::string number =
            file.isBinary ? "bin" : std::to_string(file.added + file.removed);
        text.append(" ").append(name).append(nameWidth - terminalWidth(name), ' ').append(" | ");
        text.append(numberWidth - number.size(), ' ').append(number);
        const bool hasBar = file.added + file.removed > 0;
        text.append(hasBar ? " " : "");
        text.append(palette.paint(Style::good, std::string(scaled(file.added), '+')));
        text.append(palette.paint(Style::bad, std::string(scaled(file.removed), '-')));
        text.append("\n");
    }
    return text + " " + counted(files_.size(), "file") + " changed, " + counted(added, "line") +
           " added, " + counted(removed, "line") + " removed\n";
}

Array DiffStat::records() const {
    Array records = Array::empty();
    for (const File& file : files_) {
        Dictionary record = Dictionary::empty();
        record.set("path", String(file.path));
        record.set("added", static_cast<std::int64_t>(file.added));
        record.set("removed", static_cast<std::int64_t>(file.removed));
        record.set("isBinary", file.isBinary);
        records.append(std::move(record));
    }
    return records;
}

} // namespace quen::tools
