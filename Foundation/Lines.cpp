#include "Foundation/Lines.h"

namespace quen {

std::string_view takeLine(std::string_view& text) noexcept {
    const std::string_view line = takeLineWithFeed(text);
    return line.substr(0, line.size() - (line.ends_with('\n') ? 1 : 0));
}

std::string_view takeLineWithFeed(std::string_view& text) noexcept {
    const std::size_t feed = text.find('\n');
    const std::size_t length = feed == std::string_view::npos ? text.size() : feed + 1;
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(length);
    return line;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(takeLine(text));
    }
    return lines;
}

std::string_view trimmed(std::string_view line) noexcept {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = line.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

} // namespace quen
