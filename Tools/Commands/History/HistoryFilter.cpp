#include "Tools/Commands/History/HistoryFilter.h"

#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <ctime>
#include <iterator>
#include <utility>

namespace quen::tools {

namespace {

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) ==
                      std::tolower(static_cast<unsigned char>(b));
           }) != text.end();
}

constexpr std::array<std::pair<std::string_view, std::chrono::seconds>, 6> units{{
    {"minute", std::chrono::minutes(1)},
    {"hour", std::chrono::hours(1)},
    {"day", std::chrono::days(1)},
    {"week", std::chrono::weeks(1)},
    {"month", std::chrono::months(1)},
    {"year", std::chrono::years(1)},
}};

/// `2 weeks ago`, `3d`: the number, then a unit or its first letter (`m` is a month).
std::optional<std::chrono::seconds> parseAge(std::string_view text) {
    int count = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), count);
    if (read.ec != std::errc() || count < 0 || count > 100000) {
        return std::nullopt;
    }
    std::string_view unit = text.substr(static_cast<std::size_t>(read.ptr - text.data()));
    unit.remove_prefix(unit.starts_with(' ') ? 1 : 0);
    unit.remove_suffix(unit.ends_with(" ago") ? 4 : 0);
    if (unit == "m") {
        return count * std::chrono::seconds(std::chrono::months(1));
    }
    for (const auto& [name, length] : units) {
        const bool isPlural = unit.size() == name.size() + 1 && unit.ends_with('s');
        if (unit == name || unit == name.substr(0, 1) ||
            (isPlural && unit.substr(0, name.size()) == name)) {
            return count * length;
        }
    }
    return std::nullopt;
}

std::optional<Date> parseLocalDate(std::string_view text) {
    for (const char* const pattern : {"%Y-%m-%d %H:%M:%S", "%Y-%m-%d %H:%M", "%Y-%m-%d"}) {
        std::tm parts{};
        const std::string whole(text);
        const char* const end = strptime(whole.c_str(), pattern, &parts);
        if (end != nullptr && *end == '\0') {
            parts.tm_isdst = -1;
            return std::chrono::floor<std::chrono::microseconds>(
                std::chrono::system_clock::from_time_t(std::mktime(&parts)));
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<Date> parseMoment(std::string_view text, Date now) {
    if (text.size() > 2 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, text.size() - 2);
    }
    if (text == "yesterday") {
        return now - std::chrono::days(1);
    }
    if (const auto age = parseAge(text)) {
        return now - *age;
    }
    return parseLocalDate(text);
}

std::optional<Date> dateOf(const CommitFacts& commit) {
    static const DateFormatter formatter = [] {
        DateFormatter made;
        made.setTimeZone("GMT");
        made.setDateFormat("yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'");
        return made;
    }();
    return formatter.dateFromString(commit.date.view());
}

void HistoryFilter::addTo(Subcommand& command) {
    command.option("--author", author, "Show only revisions by NAME (part of the name)")
        .named("NAME");
    command
        .option("--search", text, "Show only revisions with WORDS in the message or a shown path")
        .named("WORDS");
    const auto read = [this](const std::string& word) -> std::string {
        since = parseMoment(word, currentDate());
        return since ? ""
                     : "\"" + word +
                           "\" is not a date. Use a date such as 2024-01-31 or an age such as "
                           "\"2 weeks\".";
    };
    command.option("--since", "DATE", read, "Show only revisions since a date, or an age: 2w");
}

bool HistoryFilter::admits(const HistoryEntry& entry) const {
    if (!author.empty() && !containsIgnoringCase(entry.commit.author.view(), author)) {
        return false;
    }
    if (since) {
        const auto date = dateOf(entry.commit);
        if (!date || *date < *since) {
            return false;
        }
    }
    return text.empty() || containsIgnoringCase(entry.message.view(), text) ||
           std::any_of(entry.paths.begin(), entry.paths.end(), [&](const HistoryPath& path) {
               return containsIgnoringCase(path.path.view(), text);
           });
}

} // namespace quen::tools
