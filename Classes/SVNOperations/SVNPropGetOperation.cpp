#include "Classes/SVNOperations/SVNPropGetOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNIgnoreList.h"
#include "Classes/SVNOperations/SVNPropertyEdits.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace quen {

namespace {

constexpr std::string_view ignoreProperty = "svn:ignore";

bool asksForIgnoreList(const QuenSourceControlRequest& request) {
    return optionText(request, QuenSourceControlRequestOptionIgnoreItem) == ignoreProperty;
}

bool treeIsValid(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return tree != nullptr && tree->isValid();
}

/// Of several properties the last counts.
class IgnoreListReading : public SVNReading {
public:
    IgnoreListReading() : SVNReading({"target", "property"}) {}

    String text;
    /// The client shows bytes that XML cannot hold in an encoding, and says so.
    bool isEncoded = false;

private:
    void readRecord(const XMLElement& property, std::size_t /*target*/) override {
        if (property.attribute("name") == ignoreProperty) {
            text = property.text();
            isEncoded = property.attribute("encoding").has_value();
        }
    }
};

Error notText(const QuenSourceControlRequest& request) {
    return sourceControlError(
        QuenSourceControlErrorNotIgnored,
        formatText("The names that are ignored in \"%@\" cannot be edited because their list is "
                   "not plain text.",
                   {parentOfFirstFile(request)}),
        {{NSLocalizedRecoverySuggestionErrorKey,
          "Write the list anew with svn propset svn:ignore, and try again."}});
}

} // namespace

SVNOperation::Command SVNPropGetOperation::makeCommand(const QuenSourceControlRequest& request) {
    if (fileCountOf(request) != 1) {
        SVNAssertions(this, "-[SVNPropGetOperation initWithRequest:]",
                      SVNAssertions::operationsFile)
            .fail("Assertion failed: %s",
                  {"SVNPropGetOperation can only operate on one file at a time.",
                   "[self.request.files count] == 1"},
                  710);
    }
    if (!asksForIgnoreList(request)) {
        return {};
    }
    StringArray command{"propget", "--xml", ignoreProperty};
    appendPiece(command, parentOfFirstFile(request));
    return command;
}

/// An edit runs behind the query on the same queue, so that who waits for one waits for both.
template <typename Edit>
void SVNPropGetOperation::queueEdit(const QuenSourceControlRequestPtr& request) {
    const OperationQueuePtr queue = OperationQueue::currentQueue();
    auto edit = std::make_shared<Edit>();
    if (queue != nullptr && edit->initWithRequest(request)) {
        edit_ = edit;
        queue->addOperation(std::move(edit));
    }
}

void SVNPropGetOperation::queueWrite(const QuenSourceControlRequest& request, StringArray names) {
    auto write = std::make_shared<QuenSourceControlRequest>();
    write->initWithType(request.type(), request.sourceTree(), parentOfFirstFile(request),
                        std::move(names), Dictionary());
    queueEdit<SVNPropSetOperation>(write);
}

void SVNPropGetOperation::ignore(const String& name, const StringArray& list) {
    // Only a list of that one name is left alone: in a longer one the name moves to the front.
    if (list.size() == 1 && list.front() == name) {
        return;
    }
    StringArray names{name};
    std::remove_copy(list.begin(), list.end(), std::back_inserter(names), name);
    queueWrite(*request(), std::move(names));
}

void SVNPropGetOperation::unignore(const String& name, StringArray list) {
    if (list.empty()) {
        return;
    }
    const bool wasFound = std::erase(list, name) > 0;
    if (list.empty()) {
        queueEdit<SVNPropDelOperation>(request());
    } else if (wasFound) {
        queueWrite(*request(), std::move(list));
    } else {
        setError({QuenSourceControlErrorDomain, QuenSourceControlErrorNotIgnored});
    }
}

void SVNPropGetOperation::parseOutput(const QuenSourceControlRequest& request) {
    IgnoreListReading reading;
    reading.readWhole(data());
    if (const Error malformed = reading.finish()) {
        setError(malformed);
        return;
    }
    const String file = firstFileOf(request);
    const bool isEdit =
        request.type() == RequestTypeIgnore || request.type() == RequestTypeUnignore;
    if (!isEdit || !asksForIgnoreList(request) || file.isNil() || !treeIsValid(request)) {
        return;
    }
    if (reading.isEncoded) {
        setError(notText(request));
        return;
    }
    const String name = lastPathComponent(file.view());
    if (request.type() == RequestTypeIgnore) {
        ignore(name, ignoreListFromText(reading.text.view()));
    } else {
        unignore(name, ignoreListFromText(reading.text.view()));
    }
}

} // namespace quen
