#include "Classes/SVNOperations/SVNStatusOperation.h"

#include "Classes/SVNOperations/SVNStatusVocabulary.h"
#include "Foundation/DictionaryKeys.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

namespace quen {

namespace {

class StatusReading : public SVNReading {
public:
    explicit StatusReading(const SVNOperation& operation)
        : SVNReading({"target", "entry"}), operation_(operation) {}

private:
    using Word = std::optional<std::string_view>;

    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        Dictionary record = Dictionary::withKeys(keys_, memory);
        // An entry without a path is kept, under an empty one: its status may still be told.
        record.set(QuenSourceControlOperationPathKey,
                   String::in(memory, entry.attribute("path").value_or("")));
        record.set(QuenSourceControlOperationWCStatusKey, workingCopyStatus(entry));
        record.set(QuenSourceControlOperationRepositoryStatusKey, repositoryStatus(entry));
        records.append(std::move(record));
    }

    std::uint32_t workingCopyStatus(const XMLElement& entry) {
        const auto status = entry.firstChild("wc-status");
        if (!status) {
            return 0;
        }
        const bool isCopied = status->attribute("copied") == "true";
        const Word item = status->attribute("item");
        const Word props = status->attribute("props");
        const std::uint32_t itemValue =
            valueOf(item, workingCopyStatusValue(item.value_or(""), isCopied),
                    [isCopied](const SVNOperation& operation, const String& word) {
                        operation.statusValueForWorkingCopyStringValue(word, isCopied);
                    });
        const std::uint32_t propertyValue =
            valueOf(props, propertyStatusValue(props.value_or("")),
                    [](const SVNOperation& operation, const String& word) {
                        operation.propertyStatusValueForWorkingCopyStringValue(word);
                    });
        return itemValue | propertyValue;
    }

    std::uint32_t repositoryStatus(const XMLElement& entry) {
        const auto status = entry.firstChild("repos-status");
        if (!status) {
            return 0;
        }
        const Word item = status->attribute("item");
        return valueOf(item, repositoryStatusValue(item.value_or("")),
                       [](const SVNOperation& operation, const String& word) {
                           operation.statusValueForRepositoryStringValue(word);
                       });
    }

    /// The value of a word. One that has none is mapped again later, by the method that complains.
    template <typename Complaint>
    std::uint32_t valueOf(Word word, std::optional<std::uint32_t> value, Complaint complain) {
        if (!value) {
            remarks.later([complain, &operation = operation_,
                           text = word ? String(*word) : String()] { complain(operation, text); });
        }
        return value.value_or(0);
    }

    const SVNOperation& operation_;
    const DictionaryKeys& keys_ = DictionaryKeys::constant(
        {QuenSourceControlOperationPathKey, QuenSourceControlOperationWCStatusKey,
         QuenSourceControlOperationRepositoryStatusKey});
};

} // namespace

SVNStatusOperation::SVNStatusOperation()
    : SVNQueryOperation(Malformed::errorAndEmptyResult, "Status operation data parsed in: %.4f") {}

SVNOperation::Command SVNStatusOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"status"};
    if (request.type() == RequestTypeRemoteStatus) {
        command.emplace_back("-u");
    }
    command.insert(command.end(), {"--no-ignore", "--xml"});
    appendFiles(command, request);
    return command;
}

std::unique_ptr<SVNReading>
SVNStatusOperation::makeReading(const QuenSourceControlRequest& /*request*/) {
    return std::make_unique<StatusReading>(*this);
}

void SVNStatusOperation::parseOutput(const QuenSourceControlRequest& request) {
    SVNQueryOperation::parseOutput(request);
    // Status reports are the large ones that hosts ask for all the time: the buffer goes at once.
    if (const DataPtr report = data()) {
        report->marl_shouldCollect();
    }
    setData(nullptr);
}

} // namespace quen
