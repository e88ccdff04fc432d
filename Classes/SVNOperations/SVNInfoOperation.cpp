#include "Classes/SVNOperations/SVNInfoOperation.h"

#include "Classes/SVNOperations/SVNChangeReader.h"
#include "Foundation/DictionaryKeys.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <utility>

namespace quen {

namespace {

class InfoReading : public SVNReading {
public:
    explicit InfoReading(const DateFormatter& formatter)
        : SVNReading({"entry"}), changes_(formatter, memory) {}

private:
    /// An item that was never committed has no record.
    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        const auto commit = entry.onlyChild("commit");
        if (!commit) {
            return;
        }
        Dictionary record = Dictionary::withKeys(keys_, memory);
        if (const auto url = entry.onlyChild("url")) {
            record.set(QuenSourceControlOperationRemoteOriginKey, String::in(memory, url->text()));
        }
        if (const auto repository = entry.onlyChild("repository")) {
            if (const auto root = repository->onlyChild("root")) {
                record.set(QuenSourceControlOperationRepositoryRootKey,
                           String::in(memory, root->text()));
            }
        }
        changes_.read(*commit, record);
        records.append(std::move(record));
    }

    const DictionaryKeys& keys_ = DictionaryKeys::constant(
        {QuenSourceControlOperationRemoteOriginKey, QuenSourceControlOperationRepositoryRootKey,
         QuenSourceControlOperationRevisionKey, QuenSourceControlOperationAuthorKey,
         QuenSourceControlOperationDateKey});
    SVNChangeReader changes_;
};

bool isCheck(const QuenSourceControlRequest& request) {
    const RequestFacts* const facts = requestFactsOf(request.type());
    return facts != nullptr && facts->isCheck;
}

} // namespace

SVNInfoOperation::SVNInfoOperation() : _formatter(makeReportDateFormatter()) {}

SVNOperation::Command SVNInfoOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"info", "--xml"};
    appendFiles(command, request);
    return command;
}

std::unique_ptr<SVNReading> SVNInfoOperation::makeReading(const QuenSourceControlRequest& request) {
    return isCheck(request) ? nullptr : std::make_unique<InfoReading>(_formatter);
}

} // namespace quen
