#include "Classes/SVNOperations/SVNIgnoreOperation.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/IgnoreListReport.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <pthread.h>
#include <string>
#include <utility>

namespace quen::test {

namespace {

Request ignoring(const std::optional<StringArray>& files, std::int32_t type = RequestTypeIgnore) {
    return {.type = type, .sourceTree = workingTree(), .files = files};
}

Request unignoring(const StringArray& files) {
    return ignoring(files, RequestTypeUnignore);
}

StringArray get(const String& directory) {
    return {"SVNPropGetOperation", "propget", "--xml", "svn:ignore", directory};
}

StringArray set(const String& names, const String& directory) {
    return {"SVNPropSetOperation", "propset", "svn:ignore", names, directory};
}

StringArray remove(const String& directory) {
    return {"SVNPropDelOperation", "propdel", "svn:ignore", directory};
}

Error wrapped(const Error& error, const String& description, const String& suggestion) {
    return {QuenSourceControlErrorDomain,
            -11,
            {{NSLocalizedDescriptionKey, description},
             {QuenSourceControlUnderlyingErrorsKey, error},
             {NSLocalizedRecoverySuggestionErrorKey, suggestion}}};
}

Error wrappedAlone(const Error& error, const std::string& file) {
    return wrapped(error, "An error occurred trying to unignore the file \"" + file + "\".",
                   "Check the file's ignore properties and try again.");
}

Error wrappedAmongMany(const Error& error) {
    return wrapped(error, "An error occurred trying to unignore the files.",
                   "Check the files' ignore properties and try again.");
}

Error aggregate(const Array& errors) {
    return {QuenSourceControlErrorDomain, -1, {{QuenSourceControlUnderlyingErrorsKey, errors}}};
}

Error cancelledError() {
    return {QuenSourceControlTaskErrorDomain,
            TaskErrorCancelled,
            {{NSLocalizedDescriptionKey, "The operation was cancelled before it had finished."}}};
}

const Error notFound(QuenSourceControlErrorDomain, -11);

// The chain

struct ChainCase {
    std::string_view name;
    Request request;
    std::vector<PreparedRun> runs;
    /// Every run of the client, in order: class and arguments.
    std::vector<StringArray> asked;
    Error error = {};
};

class SVNIgnoreChainTest : public testing::TestWithParam<ChainCase> {};

TEST_P(SVNIgnoreChainTest, RunsOneFileAfterAnother) {
    HostRecorder recorder;
    recorder.replay(GetParam().runs);
    const auto operation = makeOperation<SVNIgnoreOperation>(GetParam().request);
    operation->main();
    EXPECT_EQ(asked(recorder.invocations()), GetParam().asked);
    EXPECT_EQ(operation->result(), Value(Array::empty()));
    EXPECT_EQ(operation->error(), GetParam().error);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

INSTANTIATE_TEST_SUITE_P(
    OneFile, SVNIgnoreChainTest,
    testing::Values(
        ChainCase{"ignore of the only name",
                  ignoring(StringArray{"/w/a"}),
                  {listRun("a\n")},
                  {get("/w")}},
        ChainCase{"ignore of a new name",
                  ignoring(StringArray{"/w/a"}),
                  {listRun("b\nc\n"), editRun()},
                  {get("/w"), set("a\nb\nc", "/w")}},
        ChainCase{"ignore without a list",
                  ignoring(StringArray{"/w/a"}),
                  {noListRun(), editRun()},
                  {get("/w"), set("a", "/w")}},
        ChainCase{"unignore without a list", unignoring({"/w/a"}), {noListRun()}, {get("/w")}},
        ChainCase{"unignore of the only name",
                  unignoring({"/w/a"}),
                  {listRun("a\na\n"), editRun()},
                  {get("/w"), remove("/w")}},
        ChainCase{"unignore of a name among others",
                  unignoring({"/w/a"}),
                  {listRun("b\na\n"), editRun()},
                  {get("/w"), set("b", "/w")}},
        ChainCase{"unignore of a name that is not there",
                  unignoring({"/w/a"}),
                  {listRun("b\n")},
                  {get("/w")},
                  aggregate({wrappedAlone(notFound, "/w/a")})},
        ChainCase{"the file is named as the request gave it",
                  unignoring({"/w/i@2x.png"}),
                  {listRun("b\n")},
                  {get("/w")},
                  aggregate({wrappedAlone(notFound, "/w/i@2x.png")})},
        ChainCase{"a failing edit leaves no trace",
                  ignoring(StringArray{"/w/a"}),
                  {noListRun(), failedRun()},
                  {get("/w"), set("a", "/w")}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    SeveralFiles, SVNIgnoreChainTest,
    testing::Values(ChainCase{"none", ignoring(StringArray{}), {}, {}},
                    ChainCase{"absent", ignoring(std::nullopt), {}, {}},
                    // The second query reads what the first edit left.
                    ChainCase{"two of one directory end with the second in front",
                              ignoring(StringArray{"/w/a", "/w/b"}),
                              {noListRun(), editRun(), listRun("a"), editRun()},
                              {get("/w"), set("a", "/w"), get("/w"), set("b\na", "/w")}},
                    ChainCase{"two of two directories",
                              ignoring(StringArray{"/v/a", "/w/src/b"}),
                              {listRun("c\n"), editRun(), noListRun(), editRun()},
                              {get("/v"), set("a\nc", "/v"), get("/w/src"), set("b", "/w/src")}},
                    ChainCase{"two of one directory are unignored",
                              unignoring({"/w/a", "/w/b"}),
                              {listRun("a\nb\n"), editRun(), listRun("b"), editRun()},
                              {get("/w"), set("b", "/w"), get("/w"), remove("/w")}},
                    ChainCase{"the same file twice",
                              ignoring(StringArray{"/w/a", "/w/a"}),
                              {noListRun(), editRun(), listRun("a")},
                              {get("/w"), set("a", "/w"), get("/w")}},
                    ChainCase{"of three the second fails",
                              unignoring({"/w/a", "/w/b", "/w/c"}),
                              {listRun("a\nc\n"), editRun(), listRun("c"), listRun("c"), editRun()},
                              {get("/w"), set("c", "/w"), get("/w"), get("/w"), remove("/w")},
                              aggregate({wrappedAmongMany(notFound)})},
                    ChainCase{"all fail",
                              unignoring({"/w/a", "/w/b"}),
                              {listRun("c"), listRun("c")},
                              {get("/w"), get("/w")},
                              aggregate({wrappedAmongMany(notFound), wrappedAmongMany(notFound)})}),
    CaseName());

// How a query fails

struct FailureCase {
    std::string_view name;
    PreparedRun run;
    String domain;
    std::int64_t code;
};

class SVNIgnoreFailureTest : public testing::TestWithParam<FailureCase> {};

TEST_P(SVNIgnoreFailureTest, IsWrappedWhateverItIs) {
    for (const std::int32_t type : {RequestTypeIgnore, RequestTypeUnignore}) {
        HostRecorder recorder;
        recorder.replay({GetParam().run});
        const auto operation =
            makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a"}, type));
        operation->main();
        const Array* const errors =
            operation->error().userInfo()[QuenSourceControlUnderlyingErrorsKey].array();
        ASSERT_NE(errors, nullptr);
        ASSERT_EQ(errors->count(), 1U);
        const Error* const outer = (*errors)[0].error();
        ASSERT_NE(outer, nullptr);
        const Error* const inner = outer->userInfo()[QuenSourceControlUnderlyingErrorsKey].error();
        ASSERT_NE(inner, nullptr);
        EXPECT_EQ(inner->domain(), GetParam().domain);
        EXPECT_EQ(inner->code(), GetParam().code);
        EXPECT_EQ(operation->error(), aggregate({wrappedAlone(*inner, "/w/a")}));
        EXPECT_EQ(operation->result(), Value(Array::empty()));
        EXPECT_EQ(recorder.invocations().size(), 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNIgnoreFailureTest,
    testing::Values(FailureCase{"the client's own error", failedRun(),
                                "QuenSourceControlTaskErrorDomain", 155010},
                    FailureCase{
                        "a translated error",
                        {.standardOutput = testData("Reports/propget/not-a-working-copy.xml"),
                         .standardError = "svn: E155007: '/w' is not a working copy\n",
                         .exitStatus = 1},
                        QuenSourceControlErrorDomain,
                        -71},
                    FailureCase{"output that cannot be parsed",
                                {.standardOutput = "<properties>"},
                                "XMLParserErrorDomain",
                                3}),
    CaseName());

TEST(SVNIgnoreOperationTest, AnotherIgnoreItemIsReplacedInTheQueryAlone) {
    HostRecorder recorder;
    recorder.replay({noListRun(), editRun()});
    Request request = ignoring(StringArray{"/w/a"});
    request.options = {{QuenSourceControlRequestOptionIgnoreItem, "svn:global-ignores"},
                       {QuenSourceControlRequestOptionMessage, "m"}};
    const auto operation = makeOperation<SVNIgnoreOperation>(request);
    operation->main();
    EXPECT_EQ(asked(recorder.invocations()), (std::vector<StringArray>{get("/w"), set("a", "/w")}));
    EXPECT_EQ(operation->request()->options(), request.options);
}

TEST(SVNIgnoreOperationTest, TheRequestsOwnFilesStayAsTheyAre) {
    HostRecorder recorder;
    recorder.replay({noListRun(), editRun()});
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/i@2x.png"}));
    operation->main();
    EXPECT_EQ(operation->request()->files(), (StringArray{"/w/i@2x.png"}));
    EXPECT_EQ(asked(recorder.invocations()),
              (std::vector<StringArray>{get("/w"), set("i@2x.png@", "/w")}));
}

TEST(SVNIgnoreOperationTest, ATreeThatIsNotValidIsQueriedAndNotEdited) {
    HostRecorder recorder;
    recorder.replay({noListRun()});
    Request request = ignoring(StringArray{"/w/a"});
    request.sourceTree = workingTree({.isValid = false});
    const auto operation = makeOperation<SVNIgnoreOperation>(request);
    operation->main();
    EXPECT_EQ(asked(recorder.invocations()), (std::vector<StringArray>{get("/w")}));
    EXPECT_EQ(operation->error(), Error());
}

TEST(SVNIgnoreOperationTest, EachRunOfMainHasAQueueOfItsOwn) {
    HostRecorder recorder;
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{}));
    EXPECT_EQ(operation->operationQueue(), nullptr);
    operation->main();
    const OperationQueuePtr first = operation->operationQueue();
    ASSERT_NE(first, nullptr);
    operation->main();
    EXPECT_NE(operation->operationQueue(), nullptr);
    EXPECT_NE(operation->operationQueue(), first);
    operation->setOperationQueue(first);
    EXPECT_EQ(operation->operationQueue(), first);
}

TEST(SVNIgnoreOperationTest, RunsWithinAHostsOwnQueue) {
    HostRecorder recorder;
    recorder.replay({noListRun(), editRun()});
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a"}));
    const OperationQueuePtr hosts = OperationQueue::make();
    hosts->addOperation(operation);
    hosts->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(asked(recorder.invocations()), (std::vector<StringArray>{get("/w"), set("a", "/w")}));
    EXPECT_NE(operation->operationQueue(), hosts);
    EXPECT_EQ(operation->result(), Value(Array::empty()));
}

TEST(SVNIgnoreOperationTest, CancelledItStartsWithNoFurtherFile) {
    HostRecorder recorder;
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a", "/w/b"}));
    operation->cancel();
    operation->main();
    EXPECT_EQ(recorder.invocations().size(), 0U);
    EXPECT_EQ(operation->result(), Value(Array::empty()));
    EXPECT_EQ(operation->error(),
              aggregate({wrappedAmongMany(cancelledError()), wrappedAmongMany(cancelledError())}));
}

PreparedRun cancelledRun() {
    return {.signal = 15, .end = RunEnd::cancelled};
}

/// Cancels the whole operation while one of its clients runs; how that one ends is prepared.
class CancellingRunner : public ReplayRunner {
public:
    CancellingRunner(QuenSourceControlOperation& operation, String victim,
                     std::vector<PreparedRun> runs)
        : ReplayRunner(std::move(runs)), operation_(operation), victim_(std::move(victim)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override {
        ToolRun run = ReplayRunner::run(invocation, std::move(stop));
        if (invocation.operationClass == victim_) {
            operation_.cancel();
        }
        return run;
    }

private:
    QuenSourceControlOperation& operation_;
    const String victim_;
};

/// An operation of the files /w/a and /w/b that is cancelled while a client of the first one runs.
struct CancelCase {
    std::string_view name;
    /// The class whose run meets the cancel.
    const char* victim;
    std::vector<PreparedRun> runs;
    std::vector<StringArray> asked;
    /// The files that were not served to their end, in order.
    std::vector<const char*> failed;
};

class SVNIgnoreCancelTest : public testing::TestWithParam<CancelCase> {};

TEST_P(SVNIgnoreCancelTest, FailsTheFilesThatWereNotServedAndNoOther) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a", "/w/b"}));
    const auto runner =
        std::make_shared<CancellingRunner>(*operation, GetParam().victim, GetParam().runs);
    const RunContext::Scope scope(recorder.context().withToolRunner(runner));
    operation->main();
    EXPECT_EQ(asked(runner->invocations()), GetParam().asked);
    const Array errors =
        *operation->error().userInfo()[QuenSourceControlUnderlyingErrorsKey].array();
    ASSERT_EQ(errors.count(), GetParam().failed.size());
    for (const Value& error : errors) {
        const Error cause =
            *error.error()->userInfo()[QuenSourceControlUnderlyingErrorsKey].error();
        EXPECT_EQ(cause.domain(), QuenSourceControlTaskErrorDomain);
        EXPECT_EQ(cause.code(), TaskErrorCancelled);
        EXPECT_EQ(error, Value(wrappedAmongMany(cause)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNIgnoreCancelTest,
    testing::Values(CancelCase{"the query is ended",
                               "SVNPropGetOperation",
                               {cancelledRun()},
                               {get("/w")},
                               {"/w/a", "/w/b"}},
                    CancelCase{"the query comes to its end and its edit does not run",
                               "SVNPropGetOperation",
                               {listRun("c\n")},
                               {get("/w")},
                               {"/w/a", "/w/b"}},
                    CancelCase{"the query comes to its end and there is nothing to edit",
                               "SVNPropGetOperation",
                               {listRun("a\n")},
                               {get("/w")},
                               {"/w/b"}},
                    CancelCase{"the edit is ended",
                               "SVNPropSetOperation",
                               {listRun("c\n"), cancelledRun()},
                               {get("/w"), set("a\nc", "/w")},
                               {"/w/a", "/w/b"}},
                    CancelCase{"the edit comes to its end",
                               "SVNPropSetOperation",
                               {listRun("c\n"), editRun()},
                               {get("/w"), set("a\nc", "/w")},
                               {"/w/b"}}),
    CaseName());

TEST(SVNIgnoreOperationTest, CancelledAtTheLastFilesEditThatCameToItsEndItHasServedThemAll) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a"}));
    const auto runner = std::make_shared<CancellingRunner>(*operation, "SVNPropSetOperation",
                                                           std::vector{listRun("c\n"), editRun()});
    const RunContext::Scope scope(recorder.context().withToolRunner(runner));
    operation->main();
    EXPECT_EQ(runner->invocations().size(), 2U);
    EXPECT_EQ(operation->error(), Error());
}

TEST(SVNIgnoreOperationTest, AQueueThatItIsGivenIsStoredAndNothingElse) {
    HostRecorder recorder;
    recorder.replay({{}});
    SVNIgnoreOperation operation;
    const OperationQueuePtr queue = OperationQueue::make(0);
    operation.cancel();
    operation.setOperationQueue(queue);
    EXPECT_EQ(operation.operationQueue(), queue);
    struct Work : Operation {
        void main() override { hasRun = true; }
        bool hasRun = false;
    };
    const auto work = std::make_shared<Work>();
    queue->addOperation(work);
    EXPECT_TRUE(work->hasRun);
}

TEST(SVNIgnoreOperationTest, WithoutARequestThereIsNoOperation) {
    SVNIgnoreOperation operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

/// While it lives no thread can be started: the stack that each would get fits in no address space.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&attributes_);
        pthread_attr_t huge;
        pthread_getattr_default_np(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 60);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;
    ~NoMoreThreads() {
        pthread_setattr_default_np(&attributes_);
        pthread_attr_destroy(&attributes_);
    }

private:
    pthread_attr_t attributes_{};
};

TEST(SVNIgnoreOperationTest, WithoutAThreadToBeHadTheFilesFail) {
    HostRecorder recorder;
    const auto operation = makeOperation<SVNIgnoreOperation>(ignoring(StringArray{"/w/a", "/w/b"}));
    {
        const NoMoreThreads exhausted;
        operation->main();
    }
    EXPECT_EQ(recorder.invocations().size(), 0U);
    EXPECT_EQ(operation->result(), Value(Array::empty()));
    EXPECT_EQ(operation->error(),
              aggregate({wrappedAmongMany(notFound), wrappedAmongMany(notFound)}));
}

/// Threads can be had again from the second file on: its query is the second to ask for the user.
class RepositoryOfRelief : public HostRepository {
public:
    RepositoryOfRelief() : HostRepository(Facts()) {}

    String user() const override {
        if (timesAsked_++ > 0) {
            shortage_.reset();
        }
        return {};
    }

private:
    mutable int timesAsked_ = 0;
    mutable std::optional<NoMoreThreads> shortage_{std::in_place};
};

TEST(SVNIgnoreOperationTest, AFileThatFailedForWantOfAThreadIsNotServedLaterOn) {
    HostRecorder recorder;
    recorder.replay({noListRun(), editRun()});
    Request request = ignoring(StringArray{"/v/a", "/w/b"});
    request.sourceTree = std::make_shared<RepositoryOfRelief>();
    const auto operation = makeOperation<SVNIgnoreOperation>(request);
    operation->main();
    EXPECT_EQ(asked(recorder.invocations()), (std::vector<StringArray>{get("/w"), set("b", "/w")}));
    EXPECT_EQ(operation->error(), aggregate({wrappedAmongMany(notFound)}));
}

} // namespace

} // namespace quen::test
