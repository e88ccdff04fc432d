#include "Classes/SVNOperations/SVNBlameOperation.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNChangeReader.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "Foundation/DictionaryKeys.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

namespace quen {

namespace {

class BlameReading : public SVNReading {
public:
    explicit BlameReading(const DateFormatter& formatter)
        : SVNReading({"target", "entry"}), changes_(formatter, memory) {}

private:
    /// A line that is not committed yet has its number alone; one without a number, which the
    /// client never reports, keeps the rest.
    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        Dictionary record = Dictionary::withKeys(keys_, memory);
        if (const auto number = entry.attribute("line-number")) {
            record.set(QuenSourceControlOperationLineNumberKey, String::in(memory, *number));
        }
        if (const auto commit = entry.onlyChild("commit")) {
            changes_.read(*commit, record);
        }
        records.append(std::move(record));
    }

    const DictionaryKeys& keys_ = DictionaryKeys::constant(
        {QuenSourceControlOperationLineNumberKey, QuenSourceControlOperationRevisionKey,
         QuenSourceControlOperationAuthorKey, QuenSourceControlOperationDateKey});
    SVNChangeReader changes_;
};

} // namespace

SVNBlameOperation::SVNBlameOperation()
    : SVNQueryOperation(Malformed::errorAndEmptyResult, "Blame operation data parsed in: %.4f"),
      _formatter(makeReportDateFormatter()) {}

SVNOperation::Command SVNBlameOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"blame", "--xml"};
    appendRevisionRange(command, request);
    appendPiece(command, firstFileOf(request));
    return command;
}

std::unique_ptr<SVNReading>
SVNBlameOperation::makeReading(const QuenSourceControlRequest& /*request*/) {
    return std::make_unique<BlameReading>(_formatter);
}

} // namespace quen
