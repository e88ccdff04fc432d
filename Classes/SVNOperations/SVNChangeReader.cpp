#include "Classes/SVNOperations/SVNChangeReader.h"

#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <cstddef>

namespace quen {

namespace {

/// Where a text's slot is: its last characters tell revisions and the fractions of dates apart.
std::size_t slotOf(std::string_view text, std::size_t slots) noexcept {
    std::size_t hash = text.size();
    for (const char c : text.substr(text.size() - std::min<std::size_t>(text.size(), 6))) {
        hash = hash * 31 + static_cast<unsigned char>(c);
    }
    return hash % slots;
}

/// The text as a String, which is an earlier one where that is still known and says the same.
template <std::size_t slots>
const String& shared(std::array<String, slots>& known, std::string_view text) {
    String& slot = known[slotOf(text, slots)];
    if (slot != text) {
        slot = text;
    }
    return slot;
}

} // namespace

DateFormatter makeReportDateFormatter() {
    DateFormatter formatter;
    formatter.setTimeZone("GMT");
    formatter.setDateFormat("yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'");
    return formatter;
}

const std::optional<Date>& SVNChangeReader::dateOf(std::string_view text) {
    KnownDate& known = dates_[slotOf(text, dates_.size())];
    if (known.text != text) {
        known.date = formatter_.dateFromString(text);
        known.text = text;
    }
    return known.date;
}

void SVNChangeReader::read(const XMLElement& change, Dictionary& record) {
    if (const auto revision = change.attribute("revision")) {
        record.set(QuenSourceControlOperationRevisionKey, shared(revisions_, *revision));
    }
    if (const auto author = change.onlyChild("author")) {
        record.set(QuenSourceControlOperationAuthorKey, shared(authors_, author->text()));
    }
    if (const auto dateText = change.onlyChild("date")) {
        if (const auto date = dateOf(dateText->text())) {
            record.set(QuenSourceControlOperationDateKey, *date);
        }
    }
}

} // namespace quen
