#include "Classes/SVNOperations/SVNLogOperation.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNChangeReader.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "Classes/SVNOperations/SVNStatusVocabulary.h"
#include "Foundation/DictionaryKeys.h"
#include "Foundation/PegPath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <cstddef>
#include <utility>

namespace quen {

namespace {

/// Never more than one file, for the client takes those behind the first as paths below it.
void appendTarget(StringArray& command, const QuenSourceControlRequest& request) {
    const String file = firstFileOf(request);
    if (file.isEmpty()) {
        return;
    }
    const String peg =
        suppliesDirectRevision(request) ? headOrBaseRevision(request.startingRevision()) : String();
    command.push_back(peg.isNil() ? file : locationAtRevision(file, peg));
}

class LogReading : public SVNReading {
public:
    LogReading(const SVNLogOperation& operation, const DateFormatter& formatter)
        : SVNReading({"logentry"}), operation_(operation), changes_(formatter, memory) {}

private:
    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        Dictionary record = Dictionary::withKeys(keys_, memory);
        changes_.read(entry, record);
        if (const auto paths = entry.onlyChild("paths")) {
            record.set(QuenSourceControlOperationFilesKey, filesIn(*paths));
        }
        if (const auto message = entry.onlyChild("msg")) {
            record.set(QuenSourceControlOperationMessageKey, String::in(memory, message->text()));
        }
        records.append(std::move(record));
    }

    static std::size_t countOf(const XMLElement::Children& children) noexcept {
        std::size_t count = 0;
        for (auto child = children.begin(); child != children.end(); ++child) {
            ++count;
        }
        return count;
    }

    Dictionary filesIn(const XMLElement& paths) {
        const auto children = paths.children("path");
        Dictionary files = Dictionary::withCapacity(countOf(children), memory);
        for (const XMLElement& path : children) {
            files.set(String::in(memory, path.text()), statusValueOf(path));
        }
        return files;
    }

    /// A path without an action is mapped again later, by the method that complains.
    std::uint32_t statusValueOf(const XMLElement& path) {
        const auto action = path.attribute("action");
        if (!action) {
            remarks.later([&operation = operation_] {
                operation.statusValueForRepositoryShortStringValue({});
            });
        }
        return logActionStatusValue(action.value_or("")).value_or(0);
    }

    const SVNLogOperation& operation_;
    const DictionaryKeys& keys_ = DictionaryKeys::constant(
        {QuenSourceControlOperationRevisionKey, QuenSourceControlOperationAuthorKey,
         QuenSourceControlOperationDateKey, QuenSourceControlOperationFilesKey,
         QuenSourceControlOperationMessageKey});
    SVNChangeReader changes_;
};

} // namespace

SVNLogOperation::SVNLogOperation()
    : SVNQueryOperation(Malformed::error, "Time to set parse log operation data: %.4f"),
      _formatter(makeReportDateFormatter()) {}

SVNOperation::Command SVNLogOperation::makeCommand(const QuenSourceControlRequest& request) {
    const Dictionary& options = request.options();
    StringArray command{"log", "--xml"};
    if (options[QuenSourceControlRequestOptionLogStopOnBranching].boolValue()) {
        command.emplace_back("--stop-on-copy");
    }
    const String limit = optionText(request, QuenSourceControlRequestOptionLogOutputLimit);
    if (!limit.isNil()) {
        command.insert(command.end(), {"--limit", limit});
    }
    appendRevisionRange(command, request);
    appendTarget(command, request);
    if (options[QuenSourceControlRequestOptionLogOutputFilesChanged].boolValue()) {
        command.emplace_back("-v");
    }
    return command;
}

std::unique_ptr<SVNReading>
SVNLogOperation::makeReading(const QuenSourceControlRequest& /*request*/) {
    return std::make_unique<LogReading>(*this, _formatter);
}

} // namespace quen
