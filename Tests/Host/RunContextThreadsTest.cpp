#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlManager.h"
#include "QuenFoundation/QuenSourceControlOperation.h"
#include "Tests/Support/RequestBuilder.h"

#include <array>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace quen::test {
namespace {

constexpr std::size_t contexts = 8;
constexpr std::size_t threads = 8;
constexpr std::size_t operations = 1000;

/// What a context was told, and what it was told wrongly. From any thread.
class Ledger {
public:
    void note(const std::string& what) {
        const std::lock_guard lock(mutex_);
        notes_.push_back(what);
    }
    std::multiset<std::string> notes() const {
        const std::lock_guard lock(mutex_);
        return {notes_.begin(), notes_.end()};
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> notes_;
};

/// Answers with what the run was to be like.
class EchoRunner : public ToolRunner {
public:
    explicit EchoRunner(Ledger& ledger) : ledger_(ledger) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token /*stop*/) override {
        const std::string settings =
            "run of " + invocation.arguments.front().str() + " in " +
            invocation.workingDirectory.str() + ", " + invocation.environment.front().first.str() +
            "=" + invocation.environment.front().second.str() + ", " +
            std::to_string(invocation.limits.total.value_or(std::chrono::milliseconds(0)).count()) +
            " ms";
        ledger_.note(settings);
        invocation.outputWatcher(settings);
        ToolRun run;
        run.exitStatus = 0;
        run.output = std::make_shared<const Data>(settings);
        run.errors = std::make_shared<const Data>();
        return run;
    }

private:
    Ledger& ledger_;
};

/// Uses all that a context has, by the ways that a provider has.
class BusyOperation : public QuenSourceControlTaskOperation {
public:
    explicit BusyOperation(const std::string& name) {
        initWithRequest(Request{}.make());
        setArguments(StringArray{String(name)});
    }

    void parseData() override {
        const String name = arguments()->front();
        const std::array<FormatArgument, 1> words{name};
        QuenSourceControlManager::sourceControlLogAspect()->_logAtLogLevel(1, "log of %@", words);
        MarlAssertionFailure failure;
        failure.format = "assertion of " + name.str();
        MarlAssertionFailureHandler(failure);
        setResult(String(RunContext::current().toolsDirectory()));
    }
};

struct Surroundings {
    explicit Surroundings(std::size_t number)
        : name(std::to_string(number)), isLogged(number % 2 == 0),
          context(RunContext()
                      .withToolRunner(std::make_shared<EchoRunner>(ledger))
                      .withToolsDirectory("/tools/" + name)
                      .withWorkingDirectory("/directories/" + name)
                      .withEnvironment({{"NAME", name}})
                      .withLimits({.total = std::chrono::milliseconds(1000 + number)})
                      .withLogLevel(isLogged ? 1 : 0)
                      .withLogHandler([this](std::uint32_t /*level*/, const String& text) {
                          ledger.note(text.str());
                      })
                      .withAssertionHandler([this](const MarlAssertionFailure& failure) {
                          ledger.note(messageOf(failure).str());
                      })
                      .withOutputWatcher(
                          [this](const QuenSourceControlOperation& operation, std::string_view) {
                              const auto& task =
                                  dynamic_cast<const QuenSourceControlTaskOperation&>(operation);
                              ledger.note("output of " + task.arguments()->front().str());
                          })) {}

    /// What an operation of that name must leave here.
    void expect(const std::string& operation) {
        expected.insert("run of " + operation + " in /directories/" + name + ", NAME=" + name +
                        ", 100" + name + " ms");
        expected.insert("output of " + operation);
        expected.insert("assertion of " + operation);
        expected.insert("end of " + operation);
        if (isLogged) {
            expected.insert("log of " + operation);
        }
    }

    const std::string name;
    const bool isLogged;
    Ledger ledger;
    const RunContext context;
    std::multiset<std::string> expected;
};

/// Where its operations get their context from.
enum class Way { madeIn, addedIn, followsOneMadeIn };

/// Runs what it is given after it, on the same queue.
class FollowedOperation : public Operation {
public:
    explicit FollowedOperation(std::function<OperationPtr()> follower)
        : follower_(std::move(follower)) {}
    void main() override { OperationQueue::currentQueue()->addOperation(follower_()); }

private:
    const std::function<OperationPtr()> follower_;
};

OperationPtr busyOperation(Surroundings& here, const std::string& name) {
    auto operation = std::make_shared<BusyOperation>(name);
    operation->setCompletion([&here, name](Operation& ended) {
        const auto& result = dynamic_cast<const QuenSourceControlOperation&>(ended).result();
        const bool isHere =
            RunContext::current() == here.context && result == Value("/tools/" + here.name);
        here.ledger.note((isHere ? "end of " : "end elsewhere of ") + name);
    });
    return operation;
}

void addTo(const OperationQueuePtr& queue, Surroundings& here, const std::string& name, Way way) {
    here.expect(name);
    if (way == Way::addedIn) {
        const OperationPtr operation = busyOperation(here, name);
        const RunContext::Scope scope(here.context);
        queue->addOperation(operation);
        return;
    }
    OperationPtr operation;
    {
        const RunContext::Scope scope(here.context);
        if (way == Way::madeIn) {
            operation = busyOperation(here, name);
        } else {
            operation = std::make_shared<FollowedOperation>(
                [&here, name] { return busyOperation(here, name); });
        }
    }
    queue->addOperation(operation);
}

TEST(RunContextThreadsTest, ContextsSideBySideSeeNothingOfEachOther) {
    std::vector<std::unique_ptr<Surroundings>> all;
    for (std::size_t number = 0; number < contexts; ++number) {
        all.push_back(std::make_unique<Surroundings>(number));
    }
    const OperationQueuePtr queue = OperationQueue::make(threads);
    constexpr std::array<Way, 3> ways{Way::madeIn, Way::addedIn, Way::followsOneMadeIn};
    for (std::size_t i = 0; i < operations; ++i) {
        addTo(queue, *all[i % contexts], std::to_string(i), ways[i % ways.size()]);
    }
    queue->waitUntilAllOperationsAreFinished();
    for (const auto& each : all) {
        EXPECT_EQ(each->ledger.notes(), each->expected) << "context " << each->name;
    }
}

} // namespace
} // namespace quen::test
