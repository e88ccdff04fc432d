#include "Foundation/Operation.h"
#include "Foundation/OperationQueue.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quen::test {
namespace {

using Words = std::vector<std::string>;

struct Named : Ambient {
    explicit Named(std::string givenName) : name(std::move(givenName)) {}
    const std::string name;
};

AmbientPtr named(const std::string& name) {
    return std::make_shared<Named>(name);
}

std::string currentName() {
    const AmbientPtr current = Ambient::current();
    return current == nullptr ? "none" : std::static_pointer_cast<const Named>(current)->name;
}

/// Says what happens to it, and where.
class Telling : public Operation {
public:
    explicit Telling(Words& words, std::function<void()> work = {})
        : words_(words), work_(std::move(work)) {
        setCompletion([this](Operation& ended) {
            words_.push_back(std::string(ended.wasSkipped() ? "skipped" : "ended") + " in " +
                             currentName());
        });
    }

    void main() override {
        words_.push_back("main in " + currentName());
        if (work_) {
            work_();
        }
    }

private:
    Words& words_;
    const std::function<void()> work_;
};

TEST(AmbientTest, IsTheInnermostScopesAndEndsWithIt) {
    EXPECT_EQ(currentName(), "none");
    const AmbientScope outer(named("outer"));
    EXPECT_EQ(currentName(), "outer");
    {
        const AmbientScope inner(named("inner"));
        EXPECT_EQ(currentName(), "inner");
        const AmbientScope hiding(nullptr);
        EXPECT_EQ(currentName(), "none");
    }
    EXPECT_EQ(currentName(), "outer");
}

TEST(OperationTest, RunsWhereItWasMade) {
    Words words;
    std::unique_ptr<Telling> operation;
    {
        const AmbientScope scope(named("maker"));
        operation = std::make_unique<Telling>(words);
    }
    const AmbientScope scope(named("runner"));
    EXPECT_TRUE(operation->run());
    EXPECT_EQ(words, (Words{"main in maker", "ended in maker"}));
    EXPECT_EQ(currentName(), "runner");
}

TEST(OperationTest, ThatWasMadeNowhereRunsWhereItIsRun) {
    Words words;
    Telling operation(words);
    const AmbientScope scope(named("runner"));
    operation.run();
    EXPECT_EQ(words, (Words{"main in runner", "ended in runner"}));
}

TEST(OperationTest, ThatWasMadeNowhereRunsWhereItWasAdded) {
    Words words;
    const OperationQueuePtr queue = OperationQueue::make(1);
    {
        const AmbientScope scope(named("adder"));
        queue->addOperation(std::make_shared<Telling>(words));
    }
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(words, (Words{"main in adder", "ended in adder"}));
}

TEST(OperationTest, RunsOnce) {
    Words words;
    Telling operation(words);
    EXPECT_TRUE(operation.run());
    EXPECT_FALSE(operation.run());
    EXPECT_EQ(words, (Words{"main in none", "ended in none"}));
    EXPECT_TRUE(operation.hasEnded());
}

TEST(OperationTest, IsSkippedWhereItIsCancelledBefore) {
    Words words;
    Telling operation(words);
    operation.cancel();
    EXPECT_FALSE(operation.hasEnded());
    EXPECT_TRUE(operation.run());
    EXPECT_FALSE(operation.run());
    EXPECT_EQ(words, Words{"skipped in none"});
    EXPECT_TRUE(operation.wasSkipped());
    EXPECT_TRUE(operation.hasEnded());
}

TEST(OperationTest, TellsOfTheCancelThroughItsToken) {
    Words words;
    Telling operation(words, [&] {
        const std::stop_callback callback(operation.stopToken(),
                                          [&] { words.emplace_back("stop"); });
        operation.cancel();
    });
    operation.run();
    EXPECT_EQ(words, (Words{"main in none", "stop", "ended in none"}));
    EXPECT_FALSE(operation.wasSkipped());
}

TEST(OperationTest, EndsWhateverIsThrown) {
    Words words;
    Telling operation(words, [] { throw std::runtime_error("out of paper"); });
    EXPECT_TRUE(operation.run());
    EXPECT_EQ(words, (Words{"main in none", "ended in none"}));
    Telling other(words);
    other.setCompletion([](Operation&) { throw 1; });
    EXPECT_TRUE(other.run());
}

/// Each way in which a queue lets go of an operation without running it.
TEST(OperationTest, TellsThatItsQueueDroppedIt) {
    struct Case {
        const char* name;
        std::function<void(OperationQueuePtr& queue)> drop;
    };
    for (const Case& way : {Case{"cancelled", [](auto& queue) { queue->cancelAllOperations(); }},
                            Case{"cancelled for good", [](auto& queue) { queue->cancel(); }},
                            Case{"let go", [](auto& queue) { queue.reset(); }}}) {
        Words words;
        OperationQueuePtr queue = OperationQueue::make(0);
        OperationQueue* const inside = queue.get();
        inside->addOperation(std::make_shared<Telling>(words, [&] {
            inside->addOperation(std::make_shared<Telling>(words));
            way.drop(queue);
            words.emplace_back("dropped");
        }));
        EXPECT_EQ(words, (Words{"main in none", "skipped in none", "dropped", "ended in none"}))
            << way.name;
    }
}

TEST(OperationTest, AHandlerMayAddToItsQueueAndWaitForIt) {
    for (const std::size_t width : {std::size_t{0}, std::size_t{2}}) {
        Words words;
        const OperationQueuePtr queue = OperationQueue::make(width);
        const auto first = std::make_shared<Telling>(words);
        first->setCompletion([&](Operation&) {
            queue->addOperation(std::make_shared<Telling>(words));
            queue->waitUntilAllOperationsAreFinished();
        });
        first->cancel();
        queue->addOperation(first);
        queue->waitUntilAllOperationsAreFinished();
        EXPECT_EQ(words, (Words{"main in none", "ended in none"})) << width;
    }
}

} // namespace
} // namespace quen::test
