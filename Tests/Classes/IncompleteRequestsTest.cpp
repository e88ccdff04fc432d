#include "Classes/SVNController.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quen::test {
namespace {

/// Takes one thing away from a request, or puts something odd in its place.
struct Spoil {
    const char* what;
    std::function<void(Request&)> apply;
};

/// A request that has everything that any type may ask for.
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
                        {QuenSourceControlRequestOptionSourceLocation, "http://host/trunk"},
                        {QuenSourceControlRequestOptionLogOutputLimit, 3},
                        {QuenSourceControlRequestOptionSupplyDirectRevision, true}},
            .startingRevision = "1",
            .endingRevision = "2",
            .repositoryToAuthenticate = remote};
}

std::vector<Spoil> absences() {
    return {
        {"no source tree", [](Request& request) { request.sourceTree = nullptr; }},
        {"no destination", [](Request& request) { request.destination = String(); }},
        {"no files", [](Request& request) { request.files.reset(); }},
        {"no options", [](Request& request) { request.options = {}; }},
        {"no start", [](Request& request) { request.startingRevision = String(); }},
        {"no end", [](Request& request) { request.endingRevision = String(); }},
        {"nobody to ask", [](Request& request) { request.repositoryToAuthenticate = nullptr; }},
    };
}

std::vector<Spoil> oddities() {
    const auto option = [](const String& key, const Value& value) {
        return [key, value](Request& request) { request.options.set(key, value); };
    };
    return {
        {"no file", [](Request& request) { request.files = StringArray(); }},
        {"a nil file", [](Request& request) { request.files = StringArray{String()}; }},
        {"an empty file", [](Request& request) { request.files = StringArray{""}; }},
        {"a root", [](Request& request) { request.files = StringArray{"/"}; }},
        {"many files",
         [](Request& request) {
             request.files = StringArray{"a", "b@", "-c"};
         }},
        {"an empty destination", [](Request& request) { request.destination = ""; }},
        {"empty revisions",
         [](Request& request) { request.startingRevision = request.endingRevision = ""; }},
        {"a bare repository", [](Request& request) { request.sourceTree = repository(); }},
        {"a bare working tree", [](Request& request) { request.sourceTree = workingTree(); }},
        {"another tree", [](Request& request) { request.sourceTree = otherTree(); }},
        {"an invalid tree",
         [](Request& request) {
             request.sourceTree = workingTree({.reachable = false, .isValid = false});
         }},
        {"a number for a message", option(QuenSourceControlRequestOptionMessage, 5)},
        {"a list for a message", option(QuenSourceControlRequestOptionMessage, Array::empty())},
        {"a number for a place", option(QuenSourceControlRequestOptionSourceLocation, true)},
        {"a text for a limit", option(QuenSourceControlRequestOptionLogOutputLimit, "-x")},
        {"a text for a choice", option(QuenSourceControlRequestOptionSupplyDirectRevision, "no")},
        {"another property", option(QuenSourceControlRequestOptionIgnoreItem, "svn:externals")},
        {"a number for a property", option(QuenSourceControlRequestOptionIgnoreItem, 1)},
    };
}

/// What a client may say; a run for each file of an ignore request and its edit.
std::vector<std::vector<PreparedRun>> answers() {
    constexpr std::size_t runs = 6;
    return {
        std::vector<PreparedRun>(runs),
        std::vector<PreparedRun>(runs, {.standardOutput = "<properties/>"}),
        std::vector<PreparedRun>(runs, {.standardOutput = "\xFF<", .standardError = "svn: no"}),
        std::vector<PreparedRun>(runs, {.standardError = "svn: E155007: 'a'", .exitStatus = 1}),
        std::vector<PreparedRun>(runs, {.exitStatus = {}, .signal = 9}),
    };
}

constexpr std::int32_t firstType = -1;
constexpr std::int32_t endOfTypes = 41;

/// Asks the controller everything that a host asks, and runs what it answers. Every run must have
/// had whole arguments: the client takes no nil.
class IncompleteRequests : public ::testing::Test {
protected:
    void serve(const Request& prepared) {
        for (const auto& runs : answers_) {
            recorder_.replay(runs);
            const QuenSourceControlRequestPtr request = prepared.make();
            Error reason;
            controller_.authenticationRequiredForRequest(request);
            controller_.validateRequest(request, &reason);
            EXPECT_EQ(reason.code(), -20);
            const QuenSourceControlOperationPtr operation =
                controller_.operationForRequest(request);
            if (operation != nullptr && !operation->error()) {
                operation->main();
                expectWholeArguments();
            }
            ++served_;
        }
    }

    void expectWholeArguments() const {
        for (const ToolInvocation& run : recorder_.invocations()) {
            EXPECT_TRUE(std::ranges::none_of(run.arguments, &String::isNil)) << run.operation;
        }
    }

    SVNController controller_;
    HostRecorder recorder_{3};
    std::size_t served_ = 0;

private:
    const std::vector<std::vector<PreparedRun>> answers_ = answers();
};

TEST_F(IncompleteRequests, WithAnySetOfFieldsAbsentEndInOrder) {
    const std::vector<Spoil> fields = absences();
    for (std::int32_t type = firstType; type < endOfTypes; ++type) {
        for (unsigned set = 0; set < 1U << fields.size(); ++set) {
            Request request = completeRequest(type);
            std::string description = "type " + std::to_string(type);
            for (std::size_t i = 0; i < fields.size(); ++i) {
                if ((set >> i & 1U) != 0) {
                    fields[i].apply(request);
                    description.append(", ").append(fields[i].what);
                }
            }
            SCOPED_TRACE(description);
            serve(request);
        }
    }
    RecordProperty("requests", std::to_string(served_));
    EXPECT_EQ(served_, 42U * 128U * 5U);
}

TEST_F(IncompleteRequests, WithAnyTwoOddThingsEndInOrder) {
    const std::vector<Spoil> odd = oddities();
    for (std::int32_t type = firstType; type < endOfTypes; ++type) {
        for (const Spoil& first : odd) {
            for (const Spoil& second : odd) {
                SCOPED_TRACE(std::to_string(type) + ": " + first.what + ", " + second.what);
                Request request = completeRequest(type);
                first.apply(request);
                second.apply(request);
                serve(request);
            }
        }
    }
    EXPECT_EQ(served_, 42U * odd.size() * odd.size() * 5U);
}

} // namespace
} // namespace quen::test
