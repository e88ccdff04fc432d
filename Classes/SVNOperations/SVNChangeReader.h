#pragma once

#include "Foundation/Date.h"
#include "Foundation/XMLReport.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// For the dates of the client's reports: always universal time with six digits of a second. The
/// client writes no date in another form; one that differs all the same is left out.
DateFormatter makeReportDateFormatter();

/// Reads what reports say of a change: its revision, its author, its date. Each is left out where
/// the element has none, or more than one. One reader reads one report: what it says again and
/// again (the author of ten thousand lines, the revision and the date of a block of them) is one
/// text, and a date is read once.
class SVNChangeReader {
public:
    /// The formatter must outlive the reader.
    explicit SVNChangeReader(const DateFormatter& formatter) : formatter_(formatter) {}

    /// Adds what `change`, a `commit` or a `logentry`, has to say to a record.
    void read(const XMLElement& change, Dictionary& record);

private:
    struct KnownDate {
        std::string text;
        std::optional<Date> date;
    };

    const std::optional<Date>& dateOf(std::string_view text);

    const DateFormatter& formatter_;
    /// What was read last of those that share a slot.
    std::array<String, 256> revisions_;
    std::array<String, 16> authors_;
    std::array<KnownDate, 64> dates_;
};

} // namespace quen
