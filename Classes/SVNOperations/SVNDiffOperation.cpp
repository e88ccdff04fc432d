#include "Classes/SVNOperations/SVNDiffOperation.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "Classes/SVNOperations/SVNStatusVocabulary.h"
#include "Foundation/PegPath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

#include <utility>

namespace quen {

namespace {

/// The files between two revisions or, where the start is written as the one before the end
/// (`12^`), the change that the end made.
void appendRange(StringArray& command, const QuenSourceControlRequest& request) {
    const String start = request.startingRevision();
    const String end = request.endingRevision();
    if (!start.contains("^")) {
        command.insert(command.end(), {"-r", revisionRange(start, end)});
    } else {
        command.emplace_back("-c");
        appendPiece(command, end);
    }
    appendFiles(command, request);
}

/// A location pinned to a revision, where the request pins. Always another `@`, also behind a name
/// that already ends in one.
void appendPinned(StringArray& command, const String& location, const String& revision,
                  bool isPinned) {
    const bool hasPeg = isPinned && !location.isNil() && !revision.isNil();
    appendPiece(command, hasPeg ? withPeg(location, revision) : location);
}

class SummaryReading : public SVNReading {
public:
    explicit SummaryReading(const SVNOperation& operation)
        : SVNReading({"paths", "path"}), operation_(operation) {}

private:
    /// Only what the first `paths` holds counts.
    void readRecord(const XMLElement& path, std::size_t paths) override {
        if (paths > 0) {
            return;
        }
        Dictionary record = Dictionary::withCapacity(3);
        if (const auto item = path.attribute("item")) {
            record.set(QuenSourceControlOperationWCStatusKey, statusValueOf(*item));
        }
        const auto kind = path.attribute("kind");
        if (kind == "dir" || kind == "file") {
            record.set(QuenSourceControlOperationIsLeafKey, kind == "file");
        }
        // An element always has a text; one without content has an empty one, kept as it is.
        record.set(QuenSourceControlOperationPathKey, String(path.text()));
        records.append(std::move(record));
    }

    /// A word without a value is mapped again later, by the method that complains.
    std::uint32_t statusValueOf(std::string_view item) {
        const auto value = workingCopyStatusValue(item, false);
        if (!value) {
            remarks.later([&operation = operation_, word = String(item)] {
                operation.statusValueForWorkingCopyStringValue(word, false);
            });
        }
        return value.value_or(0);
    }

    const SVNOperation& operation_;
};

} // namespace

SVNOperation::Command SVNDiffOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"diff"};
    const bool isPinned = suppliesDirectRevision(request);
    if (!request.startingRevision().isNil() && !isPinned) {
        appendRange(command, request);
    } else if (!request.destination().isNil()) {
        command.insert(command.end(), {"--summarize", "--xml"});
        appendPinned(command, firstFileOf(request), request.startingRevision(), isPinned);
        appendPinned(command, request.destination(), request.endingRevision(), isPinned);
    }
    return command;
}

std::unique_ptr<SVNReading> SVNDiffOperation::makeReading(const QuenSourceControlRequest& request) {
    return request.destination().isNil() ? nullptr : std::make_unique<SummaryReading>(*this);
}

void SVNDiffOperation::parseOutput(const QuenSourceControlRequest& request) {
    const DataPtr output = data();
    if (output == nullptr || output->isEmpty()) {
        return;
    }
    if (request.destination().isNil()) {
        parseText();
    } else {
        SVNQueryOperation::parseOutput(request);
    }
}

void SVNDiffOperation::parseText() {
    const String text = quensc_stringFromData(data());
    if (!text.isNil()) {
        setResult(Array{Dictionary{{QuenSourceControlOperationContentKey, text}}});
    }
}

} // namespace quen
