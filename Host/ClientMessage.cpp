#include "Host/ClientMessage.h"

#include "Foundation/Lines.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

namespace quen {

namespace {

constexpr std::string_view prefix = "svn: ";
constexpr std::string_view warningPrefix = "svn: warning: ";

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

struct LeadingNumber {
    ClientNumber number;
    /// With the colon and the blank behind it.
    std::size_t length = 0;
};

/// `E210002: ` or `W155007: ` at the start.
std::optional<LeadingNumber> leadingNumber(std::string_view text) {
    if (text.size() < 2 || (text[0] != 'E' && text[0] != 'W') || text[1] == '-') {
        return std::nullopt;
    }
    LeadingNumber leading{{text.front() == 'W', 0}, 0};
    const char* const end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data() + 1, end, leading.number.number);
    if (status != std::errc() || !std::string_view(rest, end).starts_with(": ")) {
        return std::nullopt;
    }
    leading.length = static_cast<std::size_t>(rest - text.data()) + 2;
    return leading;
}

} // namespace

ClientMessage readClientMessage(std::string_view standardError) {
    standardError = standardError.substr(0, standardError.find_last_not_of("\r\n") + 1);
    ClientMessage message;
    std::string text;
    while (!standardError.empty()) {
        std::string_view line = takeLineWithFeed(standardError);
        if (line.starts_with(prefix)) {
            const std::string_view head = line.starts_with(warningPrefix) ? warningPrefix : prefix;
            text += head;
            line.remove_prefix(head.size());
            if (const auto leading = leadingNumber(line)) {
                message.numbers.push_back(leading->number);
                line.remove_prefix(leading->length);
            }
        }
        text += line;
    }
    message.text = text;
    return message;
}

bool holdsOnlyWarnings(std::string_view text) {
    const auto lines = linesOf(text);
    return std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
        return isBlank(line) || line.starts_with(warningPrefix);
    });
}

bool meansAbsentProperty(const std::vector<ClientNumber>& numbers) {
    constexpr ClientNumber notFound{true, 200017};
    constexpr ClientNumber closing{false, 200000};
    return numbers == std::vector{notFound} || numbers == std::vector{notFound, closing};
}

String withoutClientPrefixes(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        std::string_view line = takeLineWithFeed(text);
        line.remove_prefix(line.starts_with(prefix) ? prefix.size() : 0);
        out += line;
    }
    return out;
}

} // namespace quen
