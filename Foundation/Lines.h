#pragma once

#include "Foundation/Export.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// Texts taken apart into lines. A line ends at a line feed or at the end of the text; the line
/// feed behind the last line begins no further one. A carriage return is part of its line.
///
/// Every view lives as long as the text that it was taken from.

/// Removes the first line and its line feed from the text. The line, without its line feed; the
/// empty text has an empty one.
QUEN_EXPORT std::string_view takeLine(std::string_view& text) noexcept;

/// The same, with the line feed where the line has one.
QUEN_EXPORT std::string_view takeLineWithFeed(std::string_view& text) noexcept;

/// All lines, without their line feeds; none for the empty text.
QUEN_EXPORT std::vector<std::string_view> linesOf(std::string_view text);

/// Without blanks, tabs and carriage returns at either end.
QUEN_EXPORT std::string_view trimmed(std::string_view line) noexcept;

/// Lines of a text that arrives in pieces, cut anywhere. Not for several threads at once.
class QUEN_EXPORT LineAssembler {
public:
    /// Of a longer line no more than its first `longestLine` bytes is given.
    explicit LineAssembler(std::size_t longestLine = std::string_view::npos)
        : longestLine_(longestLine) {}

    /// Calls `line` with each line that ends in the piece, without its line feed. The views live
    /// during the call.
    template <typename Function> void take(std::string_view piece, Function line) {
        for (auto end = piece.find('\n'); end != std::string_view::npos; end = piece.find('\n')) {
            if (unended_.empty()) {
                line(piece.substr(0, std::min(end, longestLine_)));
            } else {
                keep(piece.substr(0, end));
                line(std::string_view(unended_));
                unended_.clear();
            }
            piece.remove_prefix(end + 1);
        }
        keep(piece);
    }

    /// The beginning of a line whose end has not arrived; empty where there is none.
    const std::string& unended() const noexcept { return unended_; }

private:
    void keep(std::string_view piece) {
        unended_ += piece.substr(0, longestLine_ - std::min(longestLine_, unended_.size()));
    }

    std::size_t longestLine_;
    std::string unended_;
};

} // namespace quen
