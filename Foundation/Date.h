#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// A moment in universal time, to the microsecond.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// `YYYY-MM-DDTHH:MM:SS.ffffffZ`.
QUEN_EXPORT std::string dateText(Date date);

/// Reads dates of one pattern. Set up once, then used by one thread at a time.
///
/// A pattern is made of runs of `y`, `M`, `d`, `H`, `m`, `s` and `S` (as many digits as letters,
/// exactly), of text between single quotes, and of other characters that stand for themselves. A
/// text that does not match from its first to its last character, or that names a moment that does
/// not exist (month 13, 30 February, 24:00:00), is not a date.
class QUEN_EXPORT DateFormatter {
public:
    /// Only "GMT" and "UTC" are known; any other zone makes every date fail.
    void setTimeZone(std::string_view abbreviation);
    void setDateFormat(std::string_view pattern);

    std::optional<Date> dateFromString(std::string_view text) const noexcept;

private:
    /// A run of digits (`letter` and its `count`), or one literal character (`count` 0).
    struct Piece {
        char letter;
        int count;
    };

    std::vector<Piece> pieces_;
    bool isReportFormat_ = false;
    bool zoneIsKnown_ = true;
};

} // namespace quen
