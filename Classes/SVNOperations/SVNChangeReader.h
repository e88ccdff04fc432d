#pragma once

#include "Foundation/Date.h"
#include "Foundation/RecordMemory.h"
#include "Foundation/XMLReport.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
    /// The formatter and the memory must outlive the reader.
    SVNChangeReader(const DateFormatter& formatter, RecordMemory& memory)
        : formatter_(formatter), memory_(memory) {}

    /// Adds what `change`, a `commit` or a `logentry`, has to say to a record.
    void read(const XMLElement& change, Dictionary& record);

private:
    /// Texts that come again are one String each: those that were read last of all that share a
    /// slot. The slots become more, up to `most`, where texts keep taking each other's.
    class KnownTexts {
    public:
        KnownTexts(std::size_t slots, std::size_t most) : slots_(slots), most_(most) {}
        const String& of(std::string_view text, RecordMemory& memory);

    private:
        std::vector<String> slots_;
        std::size_t most_;
        std::size_t lost_ = 0;
    };

    struct KnownDate {
        std::string text;
        std::optional<Date> date;
    };

    const std::optional<Date>& dateOf(std::string_view text);

    const DateFormatter& formatter_;
    RecordMemory& memory_;
    KnownTexts revisions_{64, 16384};
    KnownTexts authors_{16, 1024};
    /// What was read last of those that share a slot.
    std::array<KnownDate, 64> dates_;
};

} // namespace quen
