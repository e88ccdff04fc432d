#include "Classes/SVNController.h"
#include "Host/ClassName.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/RequestBuilder.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {
namespace {

constexpr const char* method = "-[SVNController operationForRequest:]";
constexpr const char* file = "Classes/SVNController";

/// Something that a type must bring along.
enum class Need { someFiles, oneFile, destination, sourceTree, message, messageNotNil, origin };

struct Row {
    std::int32_t type;
    std::vector<Need> needs;
    /// Empty where no class serves the type.
    const char* className;

    friend void PrintTo(const Row& row, std::ostream* out) { *out << "type " << row.type; }
};

AssertionFacts assertionFor(Need need) {
    switch (need) {
    case Need::someFiles: return AssertionFacts::plain(method, file, "[request.files count] > 0");
    case Need::oneFile: return AssertionFacts::plain(method, file, "[request.files count] == 1");
    case Need::destination: return AssertionFacts::plain(method, file, "request.destination");
    case Need::sourceTree: return AssertionFacts::plain(method, file, "request.sourceTree");
    case Need::message:
        return AssertionFacts::plain(
            method, file, "[request.options objectForKey:QuenSourceControlRequestOptionMessage]");
    case Need::messageNotNil:
        return AssertionFacts::notNil(
            method, file, "([request.options objectForKey:QuenSourceControlRequestOptionMessage])");
    case Need::origin: break;
    }
    return AssertionFacts::notNil(
        method, file,
        "([request.options objectForKey:QuenSourceControlRequestOptionSourceLocation])");
}

/// A request that meets every type's needs.
Request completeRequest(std::int32_t type) {
    return {.type = type,
            .sourceTree = repository({.name = "tree",
                                      .location = "http://host/repository",
                                      .trunkLocation = "http://host/repository/trunk",
                                      .branchesLocation = "http://host/repository/branches"}),
            .destination = "http://host/repository/b.c",
            .files = StringArray{"http://host/repository/a.c"},
            .options = {
                {QuenSourceControlRequestOptionMessage, "Why"},
                {QuenSourceControlRequestOptionSourceLocation, "http://host/repository/trunk"}}};
}

void takeAway(Need need, Request& request) {
    switch (need) {
    case Need::someFiles: request.files = StringArray(); break;
    case Need::oneFile: request.files = StringArray{"a.c", "b.c"}; break;
    case Need::destination: request.destination = nullptr; break;
    case Need::sourceTree: request.sourceTree = nullptr; break;
    case Need::message:
    case Need::messageNotNil:
        request.options.set(QuenSourceControlRequestOptionMessage, Value());
        break;
    case Need::origin:
        request.options.set(QuenSourceControlRequestOptionSourceLocation, Value());
        break;
    }
}

class Dispatch : public testing::TestWithParam<Row> {
protected:
    /// What the controller itself found wrong; an initialiser may have more to say.
    std::vector<AssertionFacts> controllersAssertions() const {
        std::vector<AssertionFacts> own;
        for (AssertionFacts& facts : recorder_.assertionFacts()) {
            if (facts.method == method) {
                own.push_back(std::move(facts));
            }
        }
        return own;
    }

    static void expectClass(const QuenSourceControlOperationPtr& operation) {
        ASSERT_NE(operation, nullptr);
        EXPECT_EQ(classNameOf(*operation), GetParam().className);
    }

    HostRecorder recorder_{1};
    SVNController controller_;
};

class ServedTypes : public Dispatch {};

TEST_P(ServedTypes, ACompleteRequestGetsItsClassWithoutComplaint) {
    const QuenSourceControlRequestPtr request = completeRequest(GetParam().type).make();
    const QuenSourceControlOperationPtr operation = controller_.operationForRequest(request);
    ASSERT_NE(operation, nullptr);
    expectClass(operation);
    EXPECT_EQ(operation->request(), request);
    EXPECT_EQ(recorder_.assertionFacts(), std::vector<AssertionFacts>());
}

TEST_P(ServedTypes, ABareRequestFailsEveryPreconditionInOrderAndGetsItsClassAllTheSame) {
    expectClass(controller_.operationForRequest(Request{.type = GetParam().type}.make()));
    std::vector<AssertionFacts> expected;
    for (const Need need : GetParam().needs) {
        expected.push_back(assertionFor(need));
    }
    EXPECT_EQ(controllersAssertions(), expected);
}

TEST_P(ServedTypes, EachPreconditionFailsByItself) {
    for (const Need need : GetParam().needs) {
        recorder_.clear();
        Request request = completeRequest(GetParam().type);
        takeAway(need, request);
        expectClass(controller_.operationForRequest(request.make()));
        EXPECT_EQ(controllersAssertions(), std::vector{assertionFor(need)});
    }
}

TEST_P(ServedTypes, EachCallMakesANewOperation) {
    const QuenSourceControlRequestPtr request = completeRequest(GetParam().type).make();
    EXPECT_NE(controller_.operationForRequest(request), controller_.operationForRequest(request));
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, ServedTypes,
    testing::Values(
        Row{0, {}, "SVNAddOperation"},
        Row{1, {Need::message, Need::destination}, "SVNCopyOperation"},
        Row{2, {Need::message}, "SVNRemoveOperation"},
        Row{3, {Need::someFiles}, "SVNCommitOperation"},
        Row{4, {Need::someFiles, Need::sourceTree}, "SVNIgnoreOperation"},
        Row{5, {}, "SVNRemoveOperation"}, Row{6, {Need::someFiles}, "SVNResolveOperation"},
        Row{7, {Need::someFiles}, "SVNRevertOperation"},
        Row{8, {Need::destination}, "SVNMakeDirectoryOperation"},
        Row{9, {Need::destination, Need::sourceTree, Need::oneFile}, "SVNMergeOperation"},
        Row{10, {Need::destination}, "SVNCopyOperation"},
        Row{11, {Need::someFiles, Need::destination, Need::sourceTree}, "SVNMoveOperation"},
        Row{12, {Need::someFiles, Need::sourceTree}, "SVNIgnoreOperation"},
        Row{13, {Need::someFiles, Need::sourceTree}, "SVNUpdateOperation"},
        Row{14, {Need::someFiles, Need::destination}, "SVNSwitchOperation"},
        Row{15, {Need::someFiles}, "SVNStatusOperation"},
        Row{16, {Need::someFiles}, "SVNStatusOperation"},
        Row{17, {Need::someFiles}, "SVNListOperation"},
        Row{18, {Need::someFiles}, "SVNLogOperation"},
        Row{19, {Need::someFiles}, "SVNInfoOperation"},
        Row{20, {Need::someFiles, Need::destination}, "SVNCheckoutOperation"},
        Row{21, {Need::oneFile}, "SVNExportFileOperation"},
        Row{23, {Need::oneFile, Need::messageNotNil, Need::origin}, "SVNImportOperation"},
        Row{25, {Need::sourceTree}, "SVNListOperation"}, Row{26, {}, "SVNCurrentBranchOperation"},
        Row{28, {Need::oneFile}, "SVNBlameOperation"},
        Row{30, {Need::sourceTree}, "SVNDiffOperation"},
        Row{31, {Need::someFiles}, "SVNInfoOperation"},
        Row{32, {Need::someFiles}, "SVNInfoOperation"}, Row{39, {}, "SVNLogOperation"}),
    TypeName());

class UnservedTypes : public testing::TestWithParam<std::int32_t> {};

TEST_P(UnservedTypes, GetNothingAndNoComplaint) {
    const HostRecorder recorder(3);
    SVNController controller;
    EXPECT_EQ(controller.operationForRequest(Request{.type = GetParam()}.make()), nullptr);
    EXPECT_EQ(controller.operationForRequest(completeRequest(GetParam()).make()), nullptr);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
    EXPECT_EQ(recorder.log(), std::vector<LogLine>());
}

INSTANTIATE_TEST_SUITE_P(All, UnservedTypes,
                         testing::Values(std::numeric_limits<std::int32_t>::min(), -1, 22, 24, 33,
                                         34, 35, 36, 37, 38, 40,
                                         std::numeric_limits<std::int32_t>::max()));

class UnreachableTypes : public testing::TestWithParam<std::int32_t> {};

TEST_P(UnreachableTypes, AreReportedAndGetNothing) {
    const HostRecorder recorder;
    EXPECT_EQ(SVNController().operationForRequest(completeRequest(GetParam()).make()), nullptr);
    EXPECT_EQ(recorder.assertionFacts(), std::vector{AssertionFacts::unreachable(method, file)});
}

INSTANTIATE_TEST_SUITE_P(Both, UnreachableTypes, testing::Values(27, 29));

TEST(DispatchPreconditions, ACountOfSomeFilesAdmitsMany) {
    const HostRecorder recorder;
    EXPECT_NE(SVNController().operationForRequest(
                  Request{.type = RequestTypeStatus, .files = {{"a.c", "b.c"}}}.make()),
              nullptr);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

TEST(DispatchPreconditions, AnEmptyTextIsThere) {
    const HostRecorder recorder;
    Request request = completeRequest(RequestTypeRemoteCopy);
    request.destination = "";
    request.options = {{QuenSourceControlRequestOptionMessage, ""}};
    SVNController().operationForRequest(request.make());
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

TEST(DispatchPreconditions, AFailureNamesItsReceiverItsMessageAndALine) {
    const HostRecorder recorder;
    SVNController controller;
    controller.operationForRequest(Request{.type = RequestTypeStatus}.make());
    const std::vector<MarlAssertionFailure> failures = recorder.assertions();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures.front().receiver, &controller);
    EXPECT_EQ(failures.front().selector, "operationForRequest:");
    EXPECT_GT(failures.front().line, 0);
    EXPECT_EQ(messageOf(failures.front()), "Assertion failed: [request.files count] > 0");
}

TEST(DispatchPreconditions, NoRequestGetsNothing) {
    const HostRecorder recorder;
    EXPECT_EQ(SVNController().operationForRequest(nullptr), nullptr);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

} // namespace
} // namespace quen::test
