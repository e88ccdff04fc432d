#include "Tools/Commands/Content/DiffSummary.h"

#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Terminal/StatusWords.h"
#include "Tools/Terminal/Table.h"

#include <cstdint>
#include <iostream>

namespace quen::tools {

namespace {

/// The client compares places by URL. Explained where there is none.
Outcome<std::string> urlOf(Session& session, const SourceTree& source,
                           const std::string& location) {
    if (isRepositoryURL(location)) {
        return location;
    }
    const auto operation =
        session.query(makeRequest(RequestTypeInfo, source, {clientPath(location)}));
    if (!operation) {
        return operation.explained();
    }
    const Array* const records = (*operation)->result().array();
    if (records == nullptr || records->count() == 0) {
        return session.fail("\"" + printable(location) + "\" was never committed.");
    }
    const Dictionary& record = *(*records)[0].dictionary();
    return record[QuenSourceControlOperationRemoteOriginKey].stringValue().str();
}

/// Both places are pinned, to the youngest revision where no other is given; the `@` that begins it
/// must be the only one.
QuenSourceControlRequestPtr requestFor(const SourceTree& source, const std::string& oldURL,
                                       const std::string& newURL, const RevisionRange& revisions) {
    auto request =
        makeRequest(RequestTypeDiff, source, {withEncodedAt(oldURL)},
                    Dictionary{{QuenSourceControlRequestOptionSupplyDirectRevision, true}});
    request->setDestination(withEncodedAt(newURL));
    request->setStartingRevision(revisions.isRange() ? revisions.start : "HEAD");
    request->setEndingRevision(revisions.isRange() ? revisions.end : "HEAD");
    return request;
}

/// A path below the old place, by the name that it has there.
std::string shownName(const std::string& path, const std::string& oldURL) {
    if (path == oldURL) {
        return ".";
    }
    return printable(isBelow(path, oldURL) ? percentDecoded(path.substr(oldURL.size() + 1)) : path);
}

void printForPeople(const Array& records, const std::string& oldURL, const Palette& palette) {
    Table table;
    for (const Value& value : records) {
        const Dictionary& record = *value.dictionary();
        const std::int64_t* const status = record[QuenSourceControlOperationWCStatusKey].integer();
        const auto words =
            wordsForStatus(status == nullptr ? 0 : static_cast<std::uint32_t>(*status));
        // The summary knows no word for changed properties.
        const StatusWord word =
            words.empty() ? StatusWord{"properties modified", Style::changed} : words.front();
        const bool isDirectory = record[QuenSourceControlOperationIsLeafKey].boolean() != nullptr &&
                                 !record[QuenSourceControlOperationIsLeafKey].boolValue();
        const std::string name =
            shownName(record[QuenSourceControlOperationPathKey].stringValue().str(), oldURL);
        table.add({{word.text, word.style}, {isDirectory && name != "." ? name + "/" : name}});
    }
    table.print(std::cout, palette);
}

} // namespace

std::string faultOfSummary(const DiffTargets& targets) {
    const std::size_t count = targets.paths.size();
    if (count == 2 || (count == 1 && targets.revisions.isRange())) {
        return "";
    }
    return "--summarize compares two places, OLD and NEW, or one place in two revisions, -r A:B. "
           "What has changed in a working copy is shown by `quen status`.";
}

int showSummary(Session& session, const SourceTree& source, const DiffTargets& targets) {
    const auto oldURL = urlOf(session, source, targets.paths.front());
    const auto newURL =
        oldURL && targets.paths.size() > 1 ? urlOf(session, source, targets.paths.back()) : oldURL;
    if (!oldURL || !newURL) {
        return (oldURL ? newURL : oldURL).status();
    }
    const auto operation = session.perform(requestFor(source, *oldURL, *newURL, targets.revisions));
    return showRecords(session, operation, [&](const Array& records) {
        printForPeople(records, *oldURL, session.options().palette());
    });
}

} // namespace quen::tools
