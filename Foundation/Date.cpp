#include "Foundation/Date.h"

#include <array>
#include <cstdio>

namespace quen {

std::string dateText(Date date) {
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day calendar(day);
    const std::chrono::hh_mm_ss time(date - day);
    std::array<char, 64> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ",
        static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
        static_cast<unsigned>(calendar.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
        static_cast<int>(time.subseconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

void DateFormatter::setTimeZone(std::string_view abbreviation) {
    zoneIsKnown_ = abbreviation == "GMT" || abbreviation == "UTC";
}

void DateFormatter::setDateFormat(std::string_view pattern) {
    constexpr std::string_view fields = "yMdHmsS";
    isReportFormat_ = pattern == "yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'";
    pieces_.clear();
    bool quoted = false;
    for (const char c : pattern) {
        if (c == '\'') {
            quoted = !quoted;
        } else if (!quoted && fields.find(c) != std::string_view::npos) {
            if (!pieces_.empty() && pieces_.back().count > 0 && pieces_.back().letter == c) {
                ++pieces_.back().count;
            } else {
                pieces_.push_back({c, 1});
            }
        } else {
            pieces_.push_back({c, 0});
        }
    }
}

namespace {

struct Fields {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int microsecond = 0;

    int* named(char letter) noexcept {
        switch (letter) {
        case 'y': return &year;
        case 'M': return &month;
        case 'd': return &day;
        case 'H': return &hour;
        case 'm': return &minute;
        case 's': return &second;
        default: return &microsecond;
        }
    }

    std::optional<Date> date() const noexcept {
        // The calendar's types would take what is too large for them as something else.
        if (year > static_cast<int>(std::chrono::year::max()) || month > 12 || day > 31) {
            return std::nullopt;
        }
        const std::chrono::year_month_day calendar{std::chrono::year(year),
                                                   std::chrono::month(static_cast<unsigned>(month)),
                                                   std::chrono::day(static_cast<unsigned>(day))};
        if (!calendar.ok() || hour > 23 || minute > 59 || second > 59) {
            return std::nullopt;
        }
        return Date(std::chrono::sys_days(calendar)) + std::chrono::hours(hour) +
               std::chrono::minutes(minute) + std::chrono::seconds(second) +
               std::chrono::microseconds(microsecond);
    }
};

/// The value of exactly `count` leading digits, or -1.
int leadingDigits(std::string_view text, int count) noexcept {
    if (text.size() < static_cast<std::size_t>(count) || count > 9) {
        return -1;
    }
    int value = 0;
    for (const char c : text.substr(0, static_cast<std::size_t>(count))) {
        if (c < '0' || c > '9') {
            return -1;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

/// Numbers at known places of a text; what is not a digit is noted and asked for once, at the end.
class FixedPlaces {
public:
    explicit FixedPlaces(std::string_view text) noexcept : text_(text) {}

    int pair(std::size_t at) noexcept { return digit(at) * 10 + digit(at + 1); }
    bool areDigits() const noexcept { return areDigits_; }
    bool has(std::size_t at, char letter) const noexcept { return text_[at] == letter; }

private:
    int digit(std::size_t at) noexcept {
        const int value = text_[at] - '0';
        areDigits_ &= value >= 0 && value <= 9;
        return value;
    }

    std::string_view text_;
    bool areDigits_ = true;
};

/// What the pieces of the reports' format read, in a fraction of their time: a large log has a date
/// in each record.
std::optional<Date> dateOfReport(std::string_view text) noexcept {
    constexpr std::size_t length = std::string_view("2026-01-31T23:59:59.123456Z").size();
    if (text.size() != length) {
        return std::nullopt;
    }
    FixedPlaces places(text);
    const Fields fields{.year = places.pair(0) * 100 + places.pair(2),
                        .month = places.pair(5),
                        .day = places.pair(8),
                        .hour = places.pair(11),
                        .minute = places.pair(14),
                        .second = places.pair(17),
                        .microsecond =
                            (places.pair(20) * 100 + places.pair(22)) * 100 + places.pair(24)};
    const bool isWellFormed = places.areDigits() && places.has(4, '-') && places.has(7, '-') &&
                              places.has(10, 'T') && places.has(13, ':') && places.has(16, ':') &&
                              places.has(19, '.') && places.has(26, 'Z');
    return isWellFormed ? fields.date() : std::nullopt;
}

/// A fraction of `count` digits in microseconds; digits past the sixth are dropped.
int microseconds(int fraction, int count) noexcept {
    for (; count < 6; ++count) {
        fraction *= 10;
    }
    for (; count > 6; --count) {
        fraction /= 10;
    }
    return fraction;
}

} // namespace

std::optional<Date> DateFormatter::dateFromString(std::string_view text) const noexcept {
    if (!zoneIsKnown_) {
        return std::nullopt;
    }
    if (isReportFormat_) {
        return dateOfReport(text);
    }
    Fields fields;
    for (const Piece& piece : pieces_) {
        if (piece.count == 0) {
            if (text.empty() || text.front() != piece.letter) {
                return std::nullopt;
            }
            text.remove_prefix(1);
            continue;
        }
        const int value = leadingDigits(text, piece.count);
        if (value < 0) {
            return std::nullopt;
        }
        *fields.named(piece.letter) =
            piece.letter == 'S' ? microseconds(value, piece.count) : value;
        text.remove_prefix(static_cast<std::size_t>(piece.count));
    }
    return text.empty() ? fields.date() : std::nullopt;
}

} // namespace quen
