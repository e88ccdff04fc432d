#pragma once

#include <cstddef>
#include <string_view>

namespace quen {

/// A place in a report. Private to the XML reader.
struct XMLPlace {
    std::size_t byte = 0;
    /// Counted from 1; a carriage return with or without a line feed ends a line, and so does a
    /// line feed alone.
    std::size_t line = 1;
    /// The characters before it in its line.
    std::size_t column = 0;

    /// Moves line and column behind `text`, which is UTF-8. The report may be in another encoding,
    /// so the bytes are left to the caller.
    void passText(std::string_view text) noexcept {
        for (const char c : text) {
            pass(c);
        }
    }

private:
    void pass(char c) noexcept {
        const bool isSecondOfPair = c == '\n' && isBehindReturn_;
        isBehindReturn_ = c == '\r';
        if (isSecondOfPair) {
            return;
        }
        if (c == '\n' || c == '\r') {
            ++line;
            column = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80) {
            ++column;
        }
    }

    bool isBehindReturn_ = false;
};

} // namespace quen
