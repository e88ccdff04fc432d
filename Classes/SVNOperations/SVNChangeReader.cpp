#include "Classes/SVNOperations/SVNChangeReader.h"

#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen {

namespace {

/// The text as a String, which is the previous one where that says the same.
const String& shared(String& previous, std::string_view text) {
    if (previous != text) {
        previous = text;
    }
    return previous;
}

} // namespace

DateFormatter makeReportDateFormatter() {
    DateFormatter formatter;
    formatter.setTimeZone("GMT");
    formatter.setDateFormat("yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'");
    return formatter;
}

void SVNChangeReader::read(const XMLElement& change, Dictionary& record) {
    if (const auto revision = change.attribute("revision")) {
        record.set(QuenSourceControlOperationRevisionKey, shared(revision_, *revision));
    }
    if (const auto author = change.onlyChild("author")) {
        record.set(QuenSourceControlOperationAuthorKey, shared(author_, author->text()));
    }
    if (const auto dateText = change.onlyChild("date")) {
        if (const auto date = formatter_.dateFromString(dateText->text())) {
            record.set(QuenSourceControlOperationDateKey, *date);
        }
    }
}

} // namespace quen
