#include "Foundation/Date.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"

#include <charconv>
#include <ctime>
#include <optional>

namespace quen {

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

/// Any pattern: a date that was read must be one that the client's pattern reads too.
void fuzzPattern(FuzzInput input) {
    const std::string_view pattern = input.line();
    if (const auto date = dateFrom(pattern, input.rest()); date && dateText(*date).size() == 27) {
        require(dateFrom(clientPattern, dateText(*date)) == date, "a date prints as another");
    }
}

} // namespace

void fuzz(FuzzInput input) {
    if (input.rest().starts_with('%')) {
        input.byte();
        fuzzPattern(input);
        return;
    }
    const auto date = dateFrom(clientPattern, input.rest());
    require(date == expectedDate(input.rest()), "the calendars differ");
    require(!date || dateText(*date) == input.rest(), "a date prints as another");
}

} // namespace quen
