#include "Classes/SVNOperations/SVNPropGetOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNIgnoreList.h"
#include "Classes/SVNOperations/SVNPropertyEdits.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

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

StringArray commandFor(const QuenSourceControlRequest& request) {
    StringArray command{"propget", "--xml", ignoreProperty};
    appendPiece(command, parentOfFirstFile(request));
    return command;
}

/// An edit runs behind the query on the same queue, so that who waits for one waits for both.
template <typename Edit> void queueEdit(const QuenSourceControlRequestPtr& request) {
    const OperationQueuePtr queue = OperationQueue::currentQueue();
    auto edit = std::make_shared<Edit>();
    if (queue != nullptr && edit->initWithRequest(request)) {
        queue->addOperation(std::move(edit));
    }
}

void queueWrite(const QuenSourceControlRequest& query, StringArray names) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(query.type(), query.sourceTree(), parentOfFirstFile(query),
                          std::move(names), Dictionary());
    queueEdit<SVNPropSetOperation>(request);
}

bool treeIsValid(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return tree != nullptr && tree->isValid();
}

void ignore(const String& name, const StringArray& list, const QuenSourceControlRequest& query) {
    // Only a list of that one name is left alone: in a longer one the name moves to the front.
    if (list.size() == 1 && list.front() == name) {
        return;
    }
    if (!treeIsValid(query)) {
        return;
    }
    StringArray names{name};
    std::remove_copy(list.begin(), list.end(), std::back_inserter(names), name);
    queueWrite(query, std::move(names));
}

/// An error where the name is not in a list that holds others.
Error unignore(const String& name, StringArray list, const QuenSourceControlRequestPtr& query) {
    if (!treeIsValid(*query) || list.empty()) {
        return {};
    }
    const bool wasFound = std::erase(list, name) > 0;
    if (list.empty()) {
        queueEdit<SVNPropDelOperation>(query);
    } else if (wasFound) {
        queueWrite(*query, std::move(list));
    } else {
        return {QuenSourceControlErrorDomain, -11};
    }
    return {};
}

/// Of several properties the last counts.
class IgnoreListReading : public SVNReading {
public:
    IgnoreListReading() : SVNReading({"target", "property"}) {}

    String text;

private:
    void readRecord(const XMLElement& property, std::size_t /*target*/) override {
        if (property.attribute("name") == ignoreProperty) {
            text = property.text();
        }
    }
};

} // namespace

bool SVNPropGetOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    const QuenSourceControlRequest& asked = *this->request();
    const SVNAssertions assertions(this, "-[SVNPropGetOperation initWithRequest:]",
                                   SVNAssertions::operationsFile);
    if (fileCountOf(asked) != 1) {
        assertions.fail("Assertion failed: %s",
                        {"SVNPropGetOperation can only operate on one file at a time.",
                         "[self.request.files count] == 1"},
                        710);
    }
    if (asksForIgnoreList(asked)) {
        setCommand(commandFor(asked));
    }
    return true;
}

void SVNPropGetOperation::parseData() {
    IgnoreListReading reading;
    reading.readWhole(data());
    if (const Error malformed = reading.finish()) {
        setError(malformed);
        return;
    }
    const QuenSourceControlRequestPtr query = request();
    if (!asksForIgnoreList(*query) || firstFileOf(*query).isNil()) {
        return;
    }
    const String file = firstFileOf(*query);
    const String name = lastPathComponent(file.view());
    if (query->type() == RequestTypeIgnore) {
        ignore(name, ignoreListFromText(reading.text.view()), *query);
    } else if (query->type() == RequestTypeUnignore) {
        if (Error notFound = unignore(name, ignoreListFromText(reading.text.view()), query)) {
            setError(std::move(notFound));
        }
    }
}

} // namespace quen
