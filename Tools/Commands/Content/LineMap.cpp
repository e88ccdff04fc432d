#include "Tools/Commands/Content/LineMap.h"

#include "Foundation/Lines.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace quen::tools {

namespace {

/// `12,3` or `12`: where it begins and how many lines it has.
struct Range {
    std::int64_t start = 0;
    std::int64_t count = 1;
};

Range rangeIn(std::string_view text) {
    Range range;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, range.start);
    if (read.ptr != end && *read.ptr == ',') {
        std::from_chars(read.ptr + 1, end, range.count);
    }
    // Of no lines the one before is named.
    range.start += range.count == 0 ? 1 : 0;
    return range;
}

} // namespace

class LineMap::Reader {
public:
    explicit Reader(std::vector<Block>& blocks) : blocks_(blocks) {}

    void take(std::string_view line) {
        if (old_.count == 0 && new_.count == 0) {
            isInBlock_ = false;
            begin(line);
        } else if (line.starts_with('-')) {
            ++block().oldCount;
            pass(old_);
        } else if (line.starts_with('+')) {
            ++block().newCount;
            pass(new_);
        } else if (!line.starts_with('\\')) {
            isInBlock_ = false;
            pass(old_);
            pass(new_);
        }
    }

private:
    /// `@@ -1,3 +1,4 @@`
    void begin(std::string_view line) {
        const std::size_t plus = line.find(" +");
        const std::size_t end = line.find(" @@", 3);
        if (line.starts_with("@@ -") && plus < end && end != std::string_view::npos) {
            old_ = rangeIn(line.substr(4, plus - 4));
            new_ = rangeIn(line.substr(plus + 2, end - plus - 2));
        }
    }

    static void pass(Range& range) {
        ++range.start;
        range.count -= range.count > 0 ? 1 : 0;
    }

    Block& block() {
        if (!isInBlock_) {
            isInBlock_ = true;
            blocks_.push_back({old_.start, 0, new_.start, 0});
        }
        return blocks_.back();
    }

    std::vector<Block>& blocks_;
    Range old_{0, 0};
    Range new_{0, 0};
    bool isInBlock_ = false;
};

LineMap::LineMap(std::string_view difference) {
    Reader reader(blocks_);
    for (const std::string_view line : linesOf(difference)) {
        reader.take(line);
    }
}

const LineMap::Block* LineMap::blockBefore(std::int64_t newLine) const {
    const auto next = std::upper_bound(
        blocks_.begin(), blocks_.end(), newLine,
        [](std::int64_t line, const Block& block) { return line < block.newStart; });
    return next == blocks_.begin() ? nullptr : &*std::prev(next);
}

std::optional<std::int64_t> LineMap::sameLine(std::int64_t newLine) const {
    const Block* const block = blockBefore(newLine);
    if (block == nullptr) {
        return newLine;
    }
    const std::int64_t behind = newLine - block->newStart - block->newCount;
    return behind < 0 ? std::nullopt : std::optional(block->oldStart + block->oldCount + behind);
}

std::optional<std::int64_t> LineMap::earlierLine(std::int64_t newLine) const {
    if (const auto same = sameLine(newLine)) {
        return same;
    }
    const Block& block = *blockBefore(newLine);
    const std::int64_t place = newLine - block.newStart;
    return place < block.oldCount ? std::optional(block.oldStart + place) : std::nullopt;
}

} // namespace quen::tools
