#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quen::tools {

/// Where the lines of a file's new text stood in the old one, by a difference of one file in the
/// unified format. Lines count from 1.
class LineMap {
public:
    explicit LineMap(std::string_view difference);

    /// Of a line that is the same in both; absent for one that the difference holds as new.
    std::optional<std::int64_t> sameLine(std::int64_t newLine) const;
    /// Likewise; one that replaced another stood where that one did. Absent only where nothing was
    /// replaced.
    std::optional<std::int64_t> earlierLine(std::int64_t newLine) const;

private:
    /// Lines that were replaced by others.
    struct Block {
        std::int64_t oldStart = 0;
        std::int64_t oldCount = 0;
        std::int64_t newStart = 0;
        std::int64_t newCount = 0;
    };
    class Reader;

    /// The last block that begins at or before the line; null for none.
    const Block* blockBefore(std::int64_t newLine) const;

    /// In the order of the new lines.
    std::vector<Block> blocks_;
};

} // namespace quen::tools
