#pragma once

#include "Foundation/XMLBytes.h"

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

    /// Whether the last character passed was a carriage return.
    bool isBehindReturn() const noexcept { return isBehindReturn_; }

    /// The same for what holds no carriage return, quickly, and with the bytes.
    void passPlain(std::string_view text) noexcept {
        const std::size_t feed = text.rfind('\n');
        if (feed != std::string_view::npos) {
            line += xmlbytes::lineFeedsIn(text);
            column = 0;
        }
        byte += text.size();
        passText(text.substr(feed + 1)); // npos + 1 is 0
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
