#include "Classes/SVNOperations/SVNRevisions.h"

#include "Foundation/Format.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen {

namespace {

constexpr std::string_view head = "HEAD";
constexpr std::string_view base = "BASE";

/// What `-r` is given; nil where the request names no revision.
String rangeOf(const QuenSourceControlRequest& request) {
    const String start = headOrBaseRevision(request.startingRevision());
    const String end = request.endingRevision();
    if (end.isNil()) {
        return start;
    }
    if (!start.isNil()) {
        return revisionRange(start, end);
    }
    const bool isRepository =
        std::dynamic_pointer_cast<QuenSourceControlRepository>(request.sourceTree()) != nullptr;
    return revisionRange(isRepository ? head : base, end);
}

} // namespace

String headOrBaseRevision(const String& revision) {
    if (revision == QuenSourceControlHEADRevisionName) {
        return head;
    }
    return revision == QuenSourceControlBASERevisionName ? String(base) : revision;
}

String headOnlyRevision(const String& revision) {
    const String word = headOrBaseRevision(revision);
    return revision == QuenSourceControlBASERevisionName ? String(head) : word;
}

String revisionRange(const String& start, const String& end) {
    return formatText("%@:%@", {start, end});
}

void appendRevisionRange(StringArray& command, const QuenSourceControlRequest& request) {
    const String range = rangeOf(request);
    if (!range.isNil()) {
        command.insert(command.end(), {"-r", range});
    }
}

bool suppliesDirectRevision(const QuenSourceControlRequest& request) {
    return request.options()[QuenSourceControlRequestOptionSupplyDirectRevision].boolValue();
}

} // namespace quen
