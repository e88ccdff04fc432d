#include "Tools/Terminal/Times.h"

#include <array>
#include <chrono>
#include <ctime>

namespace quen::tools {

namespace {

using Days = std::chrono::days;
using Seconds = std::chrono::seconds;

/// A unit is used below an age that is easier to say in the next.
struct Unit {
    Seconds length;
    Seconds below;
    const char* name;
};

constexpr std::array units{
    Unit{std::chrono::minutes(1), std::chrono::hours(1), "minute"},
    Unit{std::chrono::hours(1), Days(1), "hour"},
    Unit{Days(1), Days(14), "day"},
    Unit{std::chrono::weeks(1), Days(61), "week"},
    Unit{std::chrono::months(1), std::chrono::years(2), "month"},
    Unit{std::chrono::years(1), Seconds::max(), "year"},
};

} // namespace

std::string ageText(Date date, Date now) {
    const auto age = std::chrono::floor<Seconds>(now - date);
    if (age < std::chrono::minutes(1)) {
        return age < -std::chrono::minutes(1) ? "in the future" : "just now";
    }
    for (const Unit& unit : units) {
        if (age < unit.below) {
            const auto count = age / unit.length;
            return std::to_string(count) + " " + unit.name + (count == 1 ? " ago" : "s ago");
        }
    }
    return "long ago";
}

std::string localDateText(Date date) {
    const std::time_t time =
        std::chrono::system_clock::to_time_t(std::chrono::floor<Seconds>(date));
    std::tm parts{};
    std::array<char, 64> text{};
    if (localtime_r(&time, &parts) == nullptr) {
        return dateText(date);
    }
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", &parts)};
}

Date currentDate() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

} // namespace quen::tools
