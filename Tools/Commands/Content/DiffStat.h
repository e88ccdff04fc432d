#pragma once

#include "Foundation/Lines.h"
#include "Foundation/Value.h"
#include "Tools/Terminal/Style.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// How much a difference changes in each file, counted while the client writes it.
class DiffStat {
public:
    void take(std::string_view piece);
    void finish();

    /// `greet.c | 12 +++++++-----` for each file, in at most `width` cells, and a line for all.
    std::string text(const Palette& palette, std::size_t width) const;
    /// `[{path, added, removed, isBinary}]`.
    Array records() const;
    bool isEmpty() const { return files_.empty(); }

private:
    struct File {
        std::string path;
        std::size_t added = 0;
        std::size_t removed = 0;
        bool isBinary = false;
    };

    void takeLine(std::string_view line);

    LineAssembler lines_;
    std::vector<File> files_;
    /// What the hunk's own heading promises.
    std::size_t oldLeft_ = 0;
    std::size_t newLeft_ = 0;
};

} // namespace quen::tools
