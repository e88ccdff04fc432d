#include "Host/Embedding/OperationStart.h"
#include "Host/RunContext.h"

#include <gtest/gtest.h>
#include <memory>

namespace quen::test {
namespace {

/// A client that writes in two pieces, or ends at once where it is stopped.
class PiecesRunner : public ToolRunner {
public:
    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override {
        ++runs;
        auto output = std::make_shared<Data>();
        for (const std::string_view piece : {"abc", "defg"}) {
            output->append(piece);
            invocation.outputWatcher(piece);
        }
        return {.end = stop.stop_requested() ? RunEnd::cancelled : RunEnd::ended,
                .exitStatus = 0,
                .signal = {},
                .output = output,
                .errors = std::make_shared<Data>(),
                .reason = {}};
    }
    int runs = 0;
};

class TaskProvider : public QuenSourceControlProtocol {
public:
    bool authenticationRequiredForRequest(const QuenSourceControlRequestPtr&) override {
        return false;
    }
    bool validateRequest(const QuenSourceControlRequestPtr&, Error* error) override {
        *error = Error("D", 1, {{NSLocalizedDescriptionKey, "not now"}});
        return isValid;
    }
    QuenSourceControlOperationPtr
    operationForRequest(const QuenSourceControlRequestPtr& request) override {
        if (!isServed) {
            return nullptr;
        }
        auto operation = std::make_shared<QuenSourceControlTaskOperation>();
        operation->initWithRequest(request);
        operation->setLaunchPath("/nowhere/svn");
        operation->setArguments(StringArray{"status"});
        operation->setError(refusal);
        return operation;
    }
    bool isValid = true;
    bool isServed = true;
    Error refusal;
};

class OperationStart : public ::testing::Test {
protected:
    OperationListeners listeners() {
        OperationListeners made;
        made.progress = [this](std::size_t count) { bytes = count; };
        made.completion = [this](QuenSourceControlOperation& operation) {
            ++completions;
            wasCancelled = operation.isCancelled();
        };
        made.stop = stop.get_token();
        return made;
    }

    std::shared_ptr<PiecesRunner> runner = std::make_shared<PiecesRunner>();
    RunContext::Scope scope{RunContext::current().withToolRunner(runner)};
    std::shared_ptr<TaskProvider> provider = std::make_shared<TaskProvider>();
    QuenSourceControlRequestPtr request = std::make_shared<QuenSourceControlRequest>();
    OperationQueuePtr queue = OperationQueue::make(0);
    std::stop_source stop;
    Error error;
    std::size_t bytes = 0;
    int completions = 0;
    bool wasCancelled = false;
};

TEST_F(OperationStart, TellsOfProgressAndTheEnd) {
    EXPECT_NE(startOperation(provider, request, *queue, listeners(), &error), nullptr);
    EXPECT_EQ(bytes, 7U);
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(wasCancelled);
}

TEST_F(OperationStart, AStopBeforeTheRunSkipsItAndIsTold) {
    stop.request_stop();
    const auto operation = startOperation(provider, request, *queue, listeners(), &error);
    ASSERT_NE(operation, nullptr);
    EXPECT_EQ(runner->runs, 0);
    EXPECT_EQ(completions, 1);
    EXPECT_TRUE(wasCancelled);
    EXPECT_TRUE(operation->error());
}

TEST_F(OperationStart, AQueueThatDropsItIsTold) {
    queue->cancel();
    startOperation(provider, request, *queue, listeners(), &error);
    EXPECT_EQ(runner->runs, 0);
    EXPECT_EQ(completions, 1);
    EXPECT_TRUE(wasCancelled);
}

TEST_F(OperationStart, AStopAfterTheEndIsOfNoConsequence) {
    auto operation = startOperation(provider, request, *queue, listeners(), &error);
    operation.reset();
    stop.request_stop();
    EXPECT_EQ(completions, 1);
}

TEST_F(OperationStart, WhatIsNotStartedIsToldWithItsReason) {
    provider->isValid = false;
    EXPECT_EQ(runOperation(provider, request, listeners(), &error), nullptr);
    EXPECT_EQ(error.localizedDescription(), "not now");
    provider->isValid = true;
    provider->isServed = false;
    EXPECT_EQ(runOperation(provider, request, listeners(), &error), nullptr);
    EXPECT_EQ(error.localizedDescription(), "The provider does not serve requests of type 0.");
    provider->isServed = true;
    provider->refusal = Error("D", 2, {{NSLocalizedDescriptionKey, "no branches"}});
    EXPECT_EQ(runOperation(provider, request, listeners(), &error), nullptr);
    EXPECT_EQ(error.localizedDescription(), "no branches");
    EXPECT_EQ(completions, 0);
    EXPECT_EQ(runner->runs, 0);
}

} // namespace
} // namespace quen::test
