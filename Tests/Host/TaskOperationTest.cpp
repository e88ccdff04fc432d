#include "Host/TaskErrors.h"
#include "Tests/Host/ScriptedOperation.h"
#include "Tests/Support/HostRecorder.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quen::test {
namespace {

using Calls = std::vector<std::string>;

class TaskOperation : public testing::Test {
protected:
    HostRecorder recorder_;
    ScriptedOperation operation_;
};

TEST_F(TaskOperation, StartsAsItsRequestLeavesIt) {
    QuenSourceControlTaskOperation operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
    EXPECT_EQ(operation.request(), nullptr);
    const auto request = Request{}.make();
    EXPECT_TRUE(operation.initWithRequest(request));
    EXPECT_EQ(operation.request(), request);
    EXPECT_EQ(operation.launchPath(), String());
    EXPECT_EQ(operation.arguments(), std::nullopt);
    EXPECT_EQ(operation.data(), nullptr);
    EXPECT_EQ(operation.result(), Value());
    EXPECT_EQ(operation.error(), Error());
}

TEST_F(TaskOperation, RunsTheToolAsAsked) {
    recorder_.replay({{}});
    operation_.main();
    const std::vector<ToolInvocation> invocations = recorder_.invocations();
    ASSERT_EQ(invocations.size(), 1U);
    EXPECT_EQ(invocations.front().operationClass, "ScriptedOperation");
    EXPECT_EQ(invocations.front().launchPath, "/tools/svn");
    EXPECT_EQ(invocations.front().arguments, (StringArray{"command", "a.c"}));
}

TEST_F(TaskOperation, ParsesBeforeItTranslates) {
    recorder_.replay({{.standardOutput = "report", .standardError = "svn: E1: x\r\n\n"}});
    operation_.main();
    EXPECT_EQ(operation_.calls, (Calls{"parseData", "errorFromErrorMessage: svn: x"}));
    EXPECT_EQ(operation_.parsedText, "report");
    EXPECT_EQ(operation_.data()->bytes(), "report");
}

TEST_F(TaskOperation, TranslatesNothingThatIsEmpty) {
    for (const char* const standardError : {"", "\n", "\r\n\r\n"}) {
        operation_.calls.clear();
        recorder_.replay({{.standardError = standardError}});
        operation_.main();
        EXPECT_EQ(operation_.calls, Calls{"parseData"});
    }
}

TEST_F(TaskOperation, ParsesAlsoWhatAFailedRunLeft) {
    recorder_.replay({{.standardOutput = "<info>", .exitStatus = 1}});
    operation_.main();
    EXPECT_EQ(operation_.parsedText, "<info>");
}

TEST_F(TaskOperation, ParsesNothingOfAToolThatCouldNotStart) {
    recorder_.replay({{.standardError = "x", .end = RunEnd::couldNotStart, .reason = "why"}});
    operation_.main();
    EXPECT_EQ(operation_.calls, Calls());
    EXPECT_EQ(operation_.data(), nullptr);
    EXPECT_EQ(operation_.error().code(), TaskErrorCouldNotStart);
}

TEST_F(TaskOperation, IsNotRunWhenItHasAnErrorAlready) {
    const Error error("domain", -23);
    operation_.setError(error);
    operation_.main();
    EXPECT_EQ(operation_.error(), error);
    EXPECT_EQ(operation_.calls, Calls());
    EXPECT_TRUE(recorder_.invocations().empty());
}

TEST_F(TaskOperation, IsNotRunWithoutArguments) {
    operation_.setArguments(std::nullopt);
    operation_.main();
    EXPECT_EQ(operation_.error(), Error());
    EXPECT_EQ(operation_.calls, Calls());
    EXPECT_TRUE(recorder_.invocations().empty());
}

TEST_F(TaskOperation, IsRunWithNoArgumentsAtAll) {
    recorder_.replay({{}});
    operation_.setArguments(StringArray());
    operation_.main();
    EXPECT_EQ(recorder_.invocations().size(), 1U);
}

TEST_F(TaskOperation, ThatWasCancelledBeforeSaysSo) {
    recorder_.replay({{.standardOutput = "report"}});
    operation_.cancel();
    operation_.main();
    EXPECT_EQ(operation_.error(),
              taskError(TaskErrorCancelled, "The operation was cancelled before it had finished."));
}

TEST_F(TaskOperation, ThatAQueueSkippedSaysSoWithoutARun) {
    const OperationQueuePtr queue = OperationQueue::make(0);
    queue->cancel();
    const auto operation = std::make_shared<ScriptedOperation>();
    queue->addOperation(operation);
    EXPECT_EQ(operation->calls, Calls());
    EXPECT_EQ(operation->error(),
              taskError(TaskErrorCancelled, "The operation was cancelled before it had finished."));
    EXPECT_TRUE(recorder_.invocations().empty());
}

TEST_F(TaskOperation, ThatIsCancelledAfterwardsStaysAsItIs) {
    recorder_.replay({{.standardOutput = "report"}});
    operation_.main();
    operation_.cancel();
    EXPECT_EQ(operation_.error(), Error());
}

/// Has the operation cancelled while its tool runs.
class CancellingRunner : public ReplayRunner {
public:
    explicit CancellingRunner(QuenSourceControlOperation& operation)
        : ReplayRunner(std::vector<PreparedRun>(1)), operation_(operation) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override {
        operation_.cancel();
        return ReplayRunner::run(invocation, std::move(stop));
    }

private:
    QuenSourceControlOperation& operation_;
};

TEST_F(TaskOperation, ThatIsCancelledMeanwhileCancelsItsTool) {
    const RunContext::Scope scope(
        recorder_.context().withToolRunner(std::make_shared<CancellingRunner>(operation_)));
    operation_.main();
    EXPECT_EQ(operation_.error().code(), TaskErrorCancelled);
}

TEST_F(TaskOperation, LeavesResultAndErrorAloneWhereNothingIsParsed) {
    recorder_.replay({{.standardOutput = "report"}});
    QuenSourceControlTaskOperation operation;
    operation.initWithRequest(Request{}.make());
    operation.setArguments(StringArray{"command"});
    operation.main();
    EXPECT_EQ(operation.result(), Value());
    EXPECT_EQ(operation.error(), Error());
    EXPECT_EQ(operation.data()->bytes(), "report");
}

/// Its result is the output.
class TextOperation : public ScriptedOperation {
public:
    void parseData() override {
        if (!data()->bytes().empty()) {
            setResult(String(data()->bytes()));
        }
    }
};

/// Where something that the client started still held its output open.
TEST_F(TaskOperation, TellsThatATextMayLackItsRest) {
    struct Case {
        const char* name;
        PreparedRun run;
        std::int32_t type;
        std::int64_t code;
    };
    constexpr std::int64_t none = 0;
    for (const auto& [name, run, type, code] :
         {Case{"a text",
               {.standardOutput = "half", .leftOutputOpen = true},
               RequestTypeDiff,
               TaskErrorOutputCut},
          Case{"a whole text", {.standardOutput = "whole"}, RequestTypeDiff, none},
          Case{"no text", {.leftOutputOpen = true}, RequestTypeDiff, none},
          Case{"a report that shows whether it is whole",
               {.standardOutput = "<?xml version=\"1.0\"?><a/>", .leftOutputOpen = true},
               RequestTypeDiff,
               none},
          Case{"a client whose work is done",
               {.standardOutput = "Committed revision 2.", .leftOutputOpen = true},
               RequestTypeCommit,
               none},
          Case{"a client that failed",
               {.standardOutput = "half", .exitStatus = 7, .leftOutputOpen = true},
               RequestTypeDiff,
               7},
          Case{"a client that was cancelled",
               {.standardOutput = "half",
               .signal = 15,
               .end = RunEnd::cancelled,
               .leftOutputOpen = true},
               RequestTypeDiff,
               TaskErrorCancelled}}) {
        recorder_.replay({run});
        TextOperation operation;
        operation.initWithRequest(Request{.type = type}.make());
        operation.main();
        EXPECT_EQ(operation.error() ? operation.error().code() : none, code) << name;
    }
}

class ThrowingOperation : public ScriptedOperation {
public:
    void parseData() override { throw std::runtime_error("out of paper"); }
};

TEST_F(TaskOperation, LetsNothingThrownEscape) {
    recorder_.replay({{}});
    ThrowingOperation operation;
    operation.main();
    EXPECT_EQ(operation.error(),
              taskError(TaskErrorFailed, "The client's report could not be read: out of paper"));
}

TEST_F(TaskOperation, TranslatesOutsideARunToo) {
    EXPECT_EQ(operation_.QuenSourceControlTaskOperation::errorFromErrorMessage(nullptr), Error());
    EXPECT_EQ(operation_.QuenSourceControlTaskOperation::errorFromErrorMessage(""), Error());
    const Error error = operation_.QuenSourceControlTaskOperation::errorFromErrorMessage("svn: x");
    EXPECT_EQ(error.domain(), QuenSourceControlTaskErrorDomain);
    EXPECT_EQ(error.localizedDescription(), "x");
}

TEST(PlainOperation, HasNothingToDo) {
    QuenSourceControlOperation operation;
    ASSERT_TRUE(operation.initWithRequest(Request{}.make()));
    operation.main();
    EXPECT_EQ(operation.result(), Value());
    EXPECT_EQ(operation.error(), Error());
}

TEST(PlainOperation, KeepsResultAndErrorSideBySide) {
    QuenSourceControlOperation operation;
    const Error error("domain", 1);
    operation.setResult(Array{"a"});
    operation.setError(error);
    EXPECT_EQ(operation.result(), Value(Array{"a"}));
    EXPECT_EQ(operation.error(), error);
}

} // namespace
} // namespace quen::test
