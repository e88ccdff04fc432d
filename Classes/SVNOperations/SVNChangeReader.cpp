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

} // namespace

DateFormatter makeReportDateFormatter() {
    DateFormatter formatter;
    formatter.setTimeZone("GMT");
    formatter.setDateFormat("yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'");
    return formatter;
}

const String& SVNChangeReader::KnownTexts::of(std::string_view text, RecordMemory& memory) {
    String& slot = slots_[slotOf(text, slots_.size())];
    if (slot == text) {
        return slot;
    }
    if (!slot.isNil() && slots_.size() < most_ && ++lost_ == slots_.size()) {
        slots_.assign(4 * slots_.size(), String());
        lost_ = 0;
        return of(text, memory);
    }
    return slot = String::in(memory, text);
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
        record.set(QuenSourceControlOperationRevisionKey, revisions_.of(*revision, memory_));
    }
    if (const auto author = change.onlyChild("author")) {
        record.set(QuenSourceControlOperationAuthorKey, authors_.of(author->text(), memory_));
    }
    if (const auto dateText = change.onlyChild("date")) {
        if (const auto date = dateOf(dateText->text())) {
            record.set(QuenSourceControlOperationDateKey, *date);
        }
    }
}

} // namespace quen
