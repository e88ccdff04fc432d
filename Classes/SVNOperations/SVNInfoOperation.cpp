#include "Classes/SVNOperations/SVNInfoOperation.h"

#include "Classes/SVNOperations/SVNChangeReader.h"
#include "Classes/SVNOperations/SVNReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <optional>
#include <utility>

namespace quen {

namespace {

StringArray commandFor(const QuenSourceControlRequest& request) {
    StringArray command{"info", "--xml"};
    appendFiles(command, request);
    return command;
}

/// nullopt for an item that was never committed.
std::optional<Dictionary> recordFor(const XMLElement& entry, SVNChangeReader& changes) {
    const auto commit = entry.onlyChild("commit");
    if (!commit) {
        return std::nullopt;
    }
    Dictionary record = Dictionary::withCapacity(5);
    if (const auto url = entry.onlyChild("url")) {
        record.set(QuenSourceControlOperationRemoteOriginKey, String(url->text()));
    }
    if (const auto repository = entry.onlyChild("repository")) {
        if (const auto root = repository->onlyChild("root")) {
            record.set(QuenSourceControlOperationRepositoryRootKey, String(root->text()));
        }
    }
    changes.read(*commit, record);
    return record;
}

} // namespace

bool SVNInfoOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(commandFor(*this->request()));
    _formatter = makeReportDateFormatter();
    return true;
}

void SVNInfoOperation::parseData() {
    const std::int32_t type = request()->type();
    if (type == RequestTypeInfoCheck || type == RequestTypeInfoCheckAlternate) {
        return;
    }
    Array records = Array::empty();
    SVNChangeReader changes(_formatter);
    const Error malformed =
        readReport(data(), {"entry"}, [&](const XMLElement& entry, std::size_t) {
            if (auto record = recordFor(entry, changes)) {
                records.append(*std::move(record));
            }
        });
    if (malformed) {
        setError(malformed);
        return;
    }
    setResult(std::move(records));
}

} // namespace quen
