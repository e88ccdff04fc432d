#include "Classes/SVNController.h"
#include "Host/ClassName.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/Trees.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quen::test {
namespace {

constexpr std::array allInputs{RequestInput::sourceTree,
                               RequestInput::repositoryToAuthenticate,
                               RequestInput::destination,
                               RequestInput::files,
                               RequestInput::startingRevision,
                               RequestInput::endingRevision,
                               RequestInput::message,
                               RequestInput::sourceLocation,
                               RequestInput::logOutputFilesChanged,
                               RequestInput::logOutputLimit,
                               RequestInput::logStopOnBranching,
                               RequestInput::supplyDirectRevision};

/// A request that brings along everything, for a repository elsewhere.
Request completeRequest(std::int32_t type) {
    const QuenSourceControlRepositoryPtr remote =
        repository({.name = "tree",
                    .location = "http://host/repository",
                    .user = "alice",
                    .trunkLocation = "http://host/repository/trunk",
                    .branchesLocation = "http://host/repository/branches"});
    return {.type = type,
            .sourceTree = remote,
            .destination = "http://host/repository/b.c",
            .files = StringArray{"http://host/repository/a.c"},
            .options = {{QuenSourceControlRequestOptionMessage, "Why"},
                        {QuenSourceControlRequestOptionSourceLocation, "http://host/elsewhere"},
                        {QuenSourceControlRequestOptionLogOutputFilesChanged, true},
                        {QuenSourceControlRequestOptionLogOutputLimit, 3},
                        {QuenSourceControlRequestOptionLogStopOnBranching, true},
                        {QuenSourceControlRequestOptionSupplyDirectRevision, true}},
            .startingRevision = "1",
            .endingRevision = "2",
            .repositoryToAuthenticate = remote};
}

/// The same, with its items in a working copy.
Request localRequest(std::int32_t type) {
    Request request = completeRequest(type);
    request.destination = "b.c";
    request.files = StringArray{"a.c"};
    return request;
}

void takeAway(RequestInput input, Request& request) {
    switch (input) {
    case RequestInput::sourceTree: request.sourceTree = nullptr; break;
    case RequestInput::repositoryToAuthenticate: request.repositoryToAuthenticate = nullptr; break;
    case RequestInput::destination: request.destination = nullptr; break;
    case RequestInput::files:
    case RequestInput::oneFile: request.files.reset(); break;
    case RequestInput::startingRevision: request.startingRevision = nullptr; break;
    case RequestInput::endingRevision: request.endingRevision = nullptr; break;
    default: request.options.set(String(nameOfRequestInput(input)), Value()); break;
    }
}

/// Everything that the provider answers to a request.
struct Answer {
    bool needsAuthentication = false;
    bool isValid = false;
    String className;
    std::optional<StringArray> arguments;
    Error error;
    std::vector<AssertionFacts> assertions;

    friend bool operator==(const Answer&, const Answer&) = default;
};

Answer answerTo(const Request& prepared) {
    const HostRecorder recorder;
    SVNController controller;
    const QuenSourceControlRequestPtr request = prepared.make();
    Answer answer;
    answer.needsAuthentication = controller.authenticationRequiredForRequest(request);
    answer.isValid = controller.validateRequest(request, nullptr);
    const auto operation = controller.operationForRequest(request);
    if (operation != nullptr) {
        answer.className = classNameOf(*operation);
        answer.error = operation->error();
    }
    const auto task = std::dynamic_pointer_cast<QuenSourceControlTaskOperation>(operation);
    if (task != nullptr) {
        answer.arguments = task->arguments();
        if (prepared.type == RequestTypeExportFile && answer.arguments) {
            answer.arguments->pop_back(); // a temporary place, new each time
        }
    }
    answer.assertions = recorder.assertionFacts();
    return answer;
}

bool names(const RequestFacts& facts, RequestInput input) {
    const auto isIn = [input](const RequestInputs& inputs) {
        return inputs.contains(input) ||
               (input == RequestInput::files && inputs.contains(RequestInput::oneFile));
    };
    return isIn(facts.checked) || isIn(facts.alsoRequired) || isIn(facts.optional);
}

TEST(RequestFacts, NameTheInputsThatMakeADifferenceAndNoOther) {
    for (const RequestFacts& facts : requestFactsTable) {
        for (const RequestInput input : allInputs) {
            bool makesADifference = false;
            for (const Request& complete :
                 {completeRequest(facts.type), localRequest(facts.type)}) {
                Request request = complete;
                takeAway(input, request);
                makesADifference = makesADifference || answerTo(request) != answerTo(complete);
            }
            EXPECT_EQ(makesADifference, names(facts, input))
                << facts.name << " without " << nameOfRequestInput(input);
        }
    }
}

TEST(RequestFacts, RequireWhatTheProviderOrTheClientRefusesToGoWithout) {
    for (const RequestFacts& facts : requestFactsTable) {
        const Answer whole = answerTo(completeRequest(facts.type));
        EXPECT_EQ(whole.isValid, true);
        EXPECT_EQ(whole.assertions.empty(), !facts.isUnreachable) << facts.type;
        EXPECT_EQ(whole.error, Error());
        for (const RequestInput input : facts.checked) {
            Request request = completeRequest(facts.type);
            takeAway(input, request);
            EXPECT_FALSE(answerTo(request).assertions.empty())
                << facts.name << " without " << nameOfRequestInput(input);
        }
        for (const RequestInput input : facts.optional) {
            Request request = completeRequest(facts.type);
            takeAway(input, request);
            EXPECT_EQ(answerTo(request).assertions, std::vector<AssertionFacts>())
                << facts.name << " without " << nameOfRequestInput(input);
            EXPECT_EQ(answerTo(request).error, Error());
        }
    }
}

TEST(RequestFacts, NameTheClassThatServes) {
    for (const RequestFacts& facts : requestFactsTable) {
        EXPECT_EQ(answerTo(completeRequest(facts.type)).className.view(), facts.operation);
    }
}

TEST(RequestFacts, TellWhichFilesReachTheClient) {
    const StringArray files{"http://host/repository/1", "http://host/repository/2",
                            "http://host/repository/3"};
    const std::map<RequestFiles, std::vector<bool>> expected{
        {RequestFiles::none, {false, false, false}},
        {RequestFiles::first, {true, false, false}},
        {RequestFiles::last, {false, false, true}},
        {RequestFiles::all, {true, true, true}},
        {RequestFiles::single, {false, false, false}}};
    for (const RequestFacts& facts : requestFactsTable) {
        Request request = completeRequest(facts.type);
        request.files = files;
        request.options = {};
        const Answer answer = answerTo(request);
        if (!answer.arguments) {
            continue; // the chain of an ignore request: its queries are tested with it
        }
        std::vector<bool> used;
        for (const String& file : files) {
            used.push_back(std::ranges::count(*answer.arguments, file) > 0);
        }
        EXPECT_EQ(used, expected.at(facts.files)) << facts.name;
    }
}

TEST(RequestFacts, GiveEachServedTypeOneNameOfItsOwn) {
    std::set<std::string_view> seen;
    for (const RequestFacts& facts : requestFactsTable) {
        EXPECT_EQ(requestFactsOf(facts.type), &facts);
        EXPECT_EQ(nameOfRequestType(facts.type), facts.name);
        if (facts.isServed()) {
            EXPECT_TRUE(facts.name.starts_with("RequestType"));
            EXPECT_TRUE(seen.insert(facts.name).second) << facts.name;
            EXPECT_EQ(requestTypeNamed(facts.name), facts.type);
        }
    }
    EXPECT_EQ(seen.size(), 30U);
}

TEST(RequestFacts, KnowNothingOutsideTheTable) {
    for (const std::int32_t type : {-1, 40, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(requestFactsOf(type), nullptr);
        EXPECT_EQ(nameOfRequestType(type), "");
    }
    for (const std::string_view name : {"", "RequestType", "requesttypestatus", "15"}) {
        EXPECT_EQ(requestTypeNamed(name), std::nullopt);
    }
}

// Results

RequestResultType typeOf(const Value& value) {
    if (value.integer() != nullptr) {
        return RequestResultType::integer;
    }
    if (value.boolean() != nullptr) {
        return RequestResultType::boolean;
    }
    if (value.date() != nullptr) {
        return RequestResultType::date;
    }
    if (value.filePath() != nullptr) {
        return RequestResultType::filePath;
    }
    return value.dictionary() != nullptr ? RequestResultType::dictionary
                                         : RequestResultType::string;
}

using ResultTypes = std::map<String, RequestResultType>;

ResultTypes declaredFor(std::int32_t type) {
    ResultTypes types;
    for (const RequestResultKey& each : requestFactsOf(type)->resultKeys) {
        types[*each.key] = each.type;
    }
    return types;
}

/// The keys in the result that the provider makes of a report, added to those found so far.
void addResults(ResultTypes& found, const Request& prepared, std::string_view report) {
    const HostRecorder recorder;
    SVNController controller;
    const auto operation = std::dynamic_pointer_cast<QuenSourceControlTaskOperation>(
        controller.operationForRequest(prepared.make()));
    operation->setData(dataOf(report));
    operation->parseData();
    ASSERT_NE(operation->result().array(), nullptr) << prepared.type;
    for (const Value& record : *operation->result().array()) {
        for (const auto& entry : *record.dictionary()) {
            found[entry.key] = typeOf(entry.value);
        }
    }
}

struct Reported {
    std::int32_t type;
    const char* report;
};

TEST(RequestFacts, DeclareTheKeysOfTheResults) {
    for (const Reported& each : {Reported{RequestTypeStatus, "status/working-copy.xml"},
                                 Reported{RequestTypeRemoteStatus, "status/remote.xml"},
                                 Reported{RequestTypeInfo, "info/items.xml"},
                                 Reported{RequestTypeList, "list/directory.xml"},
                                 Reported{RequestTypeListBranches, "list/directory.xml"},
                                 Reported{RequestTypeLog, "log/with-files.xml"},
                                 Reported{RequestTypeLogAll, "log/with-files.xml"},
                                 Reported{RequestTypeBlame, "blame/file.xml"},
                                 Reported{RequestTypeCommit, "commit/changes.txt"}}) {
        ResultTypes found;
        addResults(found, completeRequest(each.type),
                   testData("Reports/" + std::string(each.report)));
        EXPECT_EQ(found, declaredFor(each.type)) << nameOfRequestType(each.type);
    }
}

TEST(RequestFacts, DeclareTheKeysOfADifferenceInBothForms) {
    ResultTypes found;
    Request request = completeRequest(RequestTypeDiff);
    addResults(found, request, testData("Reports/diff/summary.xml"));
    request.destination = nullptr;
    addResults(found, request, "Index: a.c\n");
    EXPECT_EQ(found, declaredFor(RequestTypeDiff));
}

TEST(RequestFacts, DeclareTheKeysOfABranch) {
    ResultTypes found;
    addResults(found, completeRequest(RequestTypeCurrentBranch),
               "<info><entry><url>http://host/repository/branches/b</url></entry></info>");
    EXPECT_EQ(found, declaredFor(RequestTypeCurrentBranch));
}

TEST(RequestFacts, DeclareTheKeysOfWhatArrivesOnDisk) {
    Request request = completeRequest(RequestTypeCheckout);
    request.destination = "/";
    ResultTypes found;
    addResults(found, request, "");
    EXPECT_EQ(found, declaredFor(RequestTypeCheckout));
    EXPECT_EQ(declaredFor(RequestTypeExportFile), declaredFor(RequestTypeCheckout));
}

TEST(RequestFacts, DeclareNoKeysForTypesWithoutRecords) {
    for (const RequestFacts& facts : requestFactsTable) {
        if (facts.isCheck || !facts.isServed()) {
            EXPECT_TRUE(facts.resultKeys.isEmpty()) << facts.name;
        }
    }
}

} // namespace
} // namespace quen::test
