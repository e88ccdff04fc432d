#include "Foundation/Date.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"

#include <charconv>
#include <ctime>
#include <optional>
#include <string>

namespace quen::fuzz {

namespace {

constexpr std::string_view clientPattern = "yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'";

bool hasShape(std::string_view text, std::string_view shape) {
    bool has = text.size() == shape.size();
    for (std::size_t i = 0; has && i < shape.size(); ++i) {
        has = shape[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == shape[i];
    }
    return has;
}

int numberAt(std::string_view text, std::size_t position, std::size_t length) {
    int number = 0;
    std::from_chars(text.data() + position, text.data() + position + length, number);
    return number;
}

/// By the C library's calendar: a moment exists when it comes back unchanged.
std::optional<Date> expectedDate(std::string_view text) {
    if (!hasShape(text, "0000-00-00T00:00:00.000000Z")) {
        return std::nullopt;
    }
    std::tm asked{};
    asked.tm_year = numberAt(text, 0, 4) - 1900;
    asked.tm_mon = numberAt(text, 5, 2) - 1;
    asked.tm_mday = numberAt(text, 8, 2);
    asked.tm_hour = numberAt(text, 11, 2);
    asked.tm_min = numberAt(text, 14, 2);
    asked.tm_sec = numberAt(text, 17, 2);
    std::tm normal = asked;
    const std::time_t seconds = timegm(&normal);
    if (normal.tm_year != asked.tm_year || normal.tm_mon != asked.tm_mon ||
        normal.tm_mday != asked.tm_mday || normal.tm_hour != asked.tm_hour ||
        normal.tm_min != asked.tm_min || normal.tm_sec != asked.tm_sec) {
        return std::nullopt;
    }
    return Date(std::chrono::seconds(seconds) + std::chrono::microseconds(numberAt(text, 20, 6)));
}

std::optional<Date> dateFrom(std::string_view pattern, std::string_view text) {
    DateFormatter formatter;
    formatter.setTimeZone("GMT");
    formatter.setDateFormat(pattern);
    return formatter.dateFromString(text);
}

/// The digits that stand where a pattern without quotes has its last run of the letter.
std::string digitsFor(char letter, std::string_view pattern, std::string_view text) {
    const std::size_t end = pattern.rfind(letter);
    if (end == std::string_view::npos) {
        return {};
    }
    const std::size_t before = pattern.find_last_not_of(letter, end);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    return std::string(text.substr(begin, end + 1 - begin));
}

void requireField(int value, int otherwise, const std::string& digits) {
    require(value == (digits.empty() ? otherwise : std::stoi(digits)), "another number was read");
}

/// Any pattern: a date that was read has the very numbers of its text.
void fuzzPattern(FuzzInput input) {
    const std::string_view pattern = input.line();
    const std::string_view text = input.rest();
    const auto date = dateFrom(pattern, text);
    if (!date || pattern.find('\'') != std::string_view::npos) {
        return;
    }
    const auto second = std::chrono::floor<std::chrono::seconds>(*date);
    const std::time_t seconds = second.time_since_epoch().count();
    std::tm calendar{};
    gmtime_r(&seconds, &calendar);
    requireField(calendar.tm_year + 1900, 1970, digitsFor('y', pattern, text));
    requireField(calendar.tm_mon + 1, 1, digitsFor('M', pattern, text));
    requireField(calendar.tm_mday, 1, digitsFor('d', pattern, text));
    requireField(calendar.tm_hour, 0, digitsFor('H', pattern, text));
    requireField(calendar.tm_min, 0, digitsFor('m', pattern, text));
    requireField(calendar.tm_sec, 0, digitsFor('s', pattern, text));
    std::string fraction = digitsFor('S', pattern, text);
    fraction.resize(6, '0');
    requireField(static_cast<int>((*date - second).count()), 0, fraction);
}

} // namespace

void run(FuzzInput input) {
    if (input.rest().starts_with('%')) {
        input.byte();
        fuzzPattern(input);
        return;
    }
    const auto date = dateFrom(clientPattern, input.rest());
    require(date == expectedDate(input.rest()), "the calendars differ");
    require(!date || dateText(*date) == input.rest(), "a date prints as another");
}

} // namespace quen::fuzz
