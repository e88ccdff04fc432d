#include "Host/Embedding/WorkingCopy.h"

#include "Host/Embedding/OperationStart.h"
#include "Host/Embedding/RequestBuilder.h"
#include "Host/HostSourceTrees.h"
#include "Host/IgnoreEdits.h"
#include "Host/IgnoreLists.h"
#include "Host/RunContext.h"
#include "Host/TaskFailure.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

QuenSourceControlRepositoryPtr orUnnamed(QuenSourceControlRepositoryPtr repository) {
    return repository != nullptr ? std::move(repository)
                                 : std::make_shared<HostRepository>(HostRepository::Facts());
}

QuenSourceControlSourceTreePtr treeOf(const std::string& directory,
                                      const QuenSourceControlRepositoryPtr& repository) {
    return std::make_shared<HostWorkingTree>(
        HostWorkingTree::Facts{.location = directory, .repository = repository});
}

struct Outcome {
    Value result;
    Error error;
};

Outcome outcomeOf(const QuenSourceControlProtocolPtr& provider,
                  const QuenSourceControlRequestPtr& request) {
    Outcome outcome;
    if (const auto operation = runOperation(provider, request, {}, &outcome.error)) {
        outcome.result = operation->result();
        outcome.error = operation->error();
    }
    return outcome;
}

/// Where a name cannot stand in a list; nil where all can.
Error refusalOfNames(const std::vector<std::string>& files, RequestType type) {
    for (const std::string& file : files) {
        const std::string problem = problemOfIgnoredName(file, type);
        if (!problem.empty()) {
            std::string text = "\"";
            text.append(file).append("\" ").append(problem);
            return {QuenSourceControlTaskErrorDomain,
                    TaskErrorCouldNotStart,
                    {{NSLocalizedDescriptionKey, String(text)}}};
        }
    }
    return {};
}

} // namespace

WorkingCopy::WorkingCopy(QuenSourceControlProtocolPtr provider, std::string directory,
                         QuenSourceControlRepositoryPtr repository)
    : provider_(std::move(provider)), directory_(std::move(directory)),
      repository_(orUnnamed(std::move(repository))), tree_(treeOf(directory_, repository_)) {}

Answer<std::vector<StatusItem>> WorkingCopy::localChanges(const std::string& path) const {
    const Outcome outcome =
        outcomeOf(provider_, makeRequest<RequestTypeStatus>().tree(tree_).files({path}).request());
    Answer<std::vector<StatusItem>> answer{statusItems(outcome.result), outcome.error};
    std::erase_if(answer.items, [](const StatusItem& item) {
        return !item.isChanged() && !item.isUnversioned();
    });
    return answer;
}

Answer<std::string> WorkingCopy::localDifference(const std::vector<std::string>& paths) const {
    // Without a range the client would be given no paths; the change of no revision is what is not
    // committed.
    const Outcome outcome = outcomeOf(provider_, makeRequest<RequestTypeDiff>()
                                                     .tree(tree_)
                                                     .files(paths)
                                                     .startingRevision("^")
                                                     .endingRevision("")
                                                     .request());
    return {differenceText(outcome.result), outcome.error};
}

LogPage WorkingCopy::log(const std::string& path, std::size_t size,
                         std::optional<std::int64_t> start, bool withPaths) const {
    // One more tells whether there is a next page.
    auto request = makeRequest<RequestTypeLog>()
                       .tree(tree_, repository_)
                       .files({path})
                       .limit(static_cast<std::int64_t>(size) + 1)
                       .changedPaths(withPaths)
                       .request();
    if (start) {
        request->setStartingRevision(std::to_string(*start));
        request->setEndingRevision("1");
    }
    const Outcome outcome = outcomeOf(provider_, request);
    LogPage page{logEntries(outcome.result), outcome.error, std::nullopt};
    if (page.entries.size() > size) {
        page.next = page.entries[size].revision;
        page.entries.resize(size);
    }
    return page;
}

Answer<std::vector<BlameLine>> WorkingCopy::blame(const std::string& file) const {
    const Outcome outcome = outcomeOf(
        provider_, makeRequest<RequestTypeBlame>().tree(tree_, repository_).file(file).request());
    return {blameLines(outcome.result), outcome.error};
}

Answer<std::optional<ItemInfo>> WorkingCopy::info(const std::string& path) const {
    const Outcome outcome =
        outcomeOf(provider_, makeRequest<RequestTypeInfo>().tree(tree_).files({path}).request());
    const std::vector<ItemInfo> items = itemInfos(outcome.result);
    return {items.empty() ? std::nullopt : std::optional(items.front()), outcome.error};
}

Error WorkingCopy::editIgnored(std::int32_t type, const std::vector<std::string>& files) const {
    if (const Error refusal = refusalOfNames(files, static_cast<RequestType>(type))) {
        return refusal;
    }
    const auto edits = std::make_shared<IgnoreEditRunner>(RunContext::current().toolRunner());
    const RunContext::Scope scope(RunContext::current().withToolRunner(edits));
    auto request = makeRequest<RequestTypeIgnore>().tree(tree_).files(files).request();
    request->setType(type);
    const Outcome outcome = outcomeOf(provider_, request);
    return outcome.error ? outcome.error : edits->error();
}

Error WorkingCopy::addIgnored(const std::vector<std::string>& files) const {
    return editIgnored(RequestTypeIgnore, files);
}

Error WorkingCopy::removeIgnored(const std::vector<std::string>& files) const {
    return editIgnored(RequestTypeUnignore, files);
}

} // namespace quen
