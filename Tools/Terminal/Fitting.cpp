#include "Tools/Terminal/Fitting.h"

#include "Host/Text.h"
#include "Tools/Terminal/Marks.h"

#include <algorithm>

namespace quen::tools {

namespace {

constexpr std::size_t leastTextWidth = 20;

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The longest beginning of the text that takes no more than `width` cells.
std::string_view beginning(std::string_view text, std::size_t width) {
    std::size_t end = 0;
    for (std::size_t next = 1; next <= text.size(); ++next) {
        if (next < text.size() && isContinuation(text[next])) {
            continue;
        }
        if (terminalWidth(text.substr(0, next)) > width) {
            break;
        }
        end = next;
    }
    return text.substr(0, end);
}

/// The longest end of the text that takes no more than `width` cells.
std::string_view ending(std::string_view text, std::size_t width) {
    std::size_t start = text.size();
    for (std::size_t next = text.size(); next > 0; --next) {
        if (isContinuation(text[next - 1])) {
            continue;
        }
        if (terminalWidth(text.substr(next - 1)) > width) {
            break;
        }
        start = next - 1;
    }
    return text.substr(start);
}

/// What stands for the part that is left out, as far as there is room for it.
std::string ellipsisIn(std::size_t width) {
    return std::string(beginning(marks().ellipsis, width));
}

} // namespace

std::string fittingText(std::string_view text, std::size_t width) {
    if (terminalWidth(text) <= width) {
        return std::string(text);
    }
    const std::string ellipsis = ellipsisIn(width);
    const std::size_t room = width - terminalWidth(ellipsis);
    const std::size_t front = room / 3;
    return std::string(beginning(text, front)).append(ellipsis).append(ending(text, room - front));
}

std::string startingText(std::string_view text, std::size_t width) {
    if (terminalWidth(text) <= width) {
        return std::string(text);
    }
    const std::string ellipsis = ellipsisIn(width);
    return std::string(beginning(text, width - terminalWidth(ellipsis))).append(ellipsis);
}

std::string columnText(std::string_view text, std::size_t width) {
    std::string shown = startingText(text, width);
    const std::size_t used = terminalWidth(shown);
    return shown.append(width > used ? width - used : 0, ' ');
}

std::string wrappedText(const std::string& text, std::size_t indent, std::size_t width) {
    const std::size_t room = std::max(width > indent ? width - indent : 0, leastTextWidth);
    std::string lines;
    std::size_t used = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::size_t size = terminalWidth(std::string_view(text).substr(at, end - at));
        if (used > 0 && used + 1 + size > room) {
            lines.append("\n").append(indent, ' ');
            used = 0;
        }
        lines.append(used > 0 ? " " : "").append(text, at, end - at);
        used += (used > 0 ? 1 : 0) + size;
        at = end + 1;
    }
    return lines;
}

} // namespace quen::tools
