#include "Foundation/OperationQueue.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quen::test {
namespace {

/// Far beyond anything that works; reached only by what hangs.
constexpr std::chrono::seconds patience(20);

using Names = std::vector<std::string>;

class Work : public Operation {
public:
    explicit Work(std::function<void()> work) : work_(std::move(work)) {}
    void main() override { work_(); }

private:
    std::function<void()> work_;
};

OperationPtr operation(std::function<void()> work) {
    return std::make_shared<Work>(std::move(work));
}

/// What happened, in order.
class Journal {
public:
    void add(std::string name) {
        const std::lock_guard lock(mutex_);
        names_.push_back(std::move(name));
    }
    Names names() const {
        const std::lock_guard lock(mutex_);
        return names_;
    }
    OperationPtr entry(const std::string& name) {
        return operation([this, name] { add(name); });
    }

private:
    mutable std::mutex mutex_;
    Names names_;
};

/// A door that stays open once it was opened.
class Door {
public:
    void open() {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
        opened_.notify_all();
    }
    bool pass() {
        std::unique_lock lock(mutex_);
        return opened_.wait_for(lock, patience, [this] { return isOpen_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

/// Whether the work comes to an end. What hangs is left behind for the failed program to take
/// along.
bool ends(std::function<void()> work) {
    std::packaged_task<void()> task(std::move(work));
    std::future<void> end = task.get_future();
    std::thread thread(std::move(task));
    const bool hasEnded = end.wait_for(patience) == std::future_status::ready;
    hasEnded ? thread.join() : thread.detach();
    return hasEnded;
}

bool finishes(const OperationQueuePtr& queue) {
    return ends([queue] { queue->waitUntilAllOperationsAreFinished(); });
}

std::string numbered(const std::string& name, int number) {
    return name + std::to_string(number);
}

class OperationQueueOfAnyWidth : public testing::TestWithParam<std::size_t> {
protected:
    OperationQueuePtr queue_ = OperationQueue::make(GetParam());
    Journal journal_;
};

INSTANTIATE_TEST_SUITE_P(Widths, OperationQueueOfAnyWidth, testing::Values(0, 1, 4));

TEST_P(OperationQueueOfAnyWidth, KnowsItsWidth) {
    EXPECT_EQ(queue_->width(), GetParam());
    EXPECT_EQ(OperationQueue::make()->width(), OperationQueue::defaultWidth);
}

TEST_P(OperationQueueOfAnyWidth, WaitingCoversWhatIsAddedFromInside) {
    std::atomic<int> left = 100;
    std::function<void()> countDown = [&] {
        if (--left > 0) {
            queue_->addOperation(operation(countDown));
        }
    };
    queue_->addOperation(operation(countDown));
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(left, 0);
}

TEST_P(OperationQueueOfAnyWidth, WaitingForNothingEndsAtOnce) {
    EXPECT_TRUE(finishes(queue_));
}

TEST_P(OperationQueueOfAnyWidth, WaitingFromInsideReturnsAtOnce) {
    queue_->addOperation(operation([&] {
        queue_->addOperation(journal_.entry("later"));
        queue_->waitUntilAllOperationsAreFinished();
        journal_.add("waited");
    }));
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(journal_.names().size(), 2U);
}

TEST_P(OperationQueueOfAnyWidth, IsTheCurrentQueueOfItsOperations) {
    OperationQueuePtr inside;
    queue_->addOperation(operation([&] { inside = OperationQueue::currentQueue(); }));
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(inside, queue_);
    EXPECT_EQ(OperationQueue::currentQueue(), nullptr);
}

TEST_P(OperationQueueOfAnyWidth, SurvivesOperationsThatThrow) {
    queue_->addOperation(operation([] { throw std::runtime_error("broken"); }));
    queue_->addOperation(operation([] { throw 1; }));
    queue_->addOperation(journal_.entry("next"));
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(journal_.names(), Names{"next"});
}

TEST_P(OperationQueueOfAnyWidth, DoesNotStartACancelledOperation) {
    const OperationPtr cancelled = journal_.entry("cancelled");
    EXPECT_FALSE(cancelled->isCancelled());
    cancelled->cancel();
    EXPECT_TRUE(cancelled->isCancelled());
    queue_->addOperation(cancelled);
    queue_->addOperation(journal_.entry("next"));
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(journal_.names(), Names{"next"});
}

TEST_P(OperationQueueOfAnyWidth, IgnoresNoOperation) {
    queue_->addOperation(nullptr);
    EXPECT_TRUE(finishes(queue_));
}

TEST_P(OperationQueueOfAnyWidth, LetsGoOfWhatHasEnded) {
    OperationPtr held = journal_.entry("held");
    const std::weak_ptr<Operation> ended = held;
    queue_->addOperation(std::move(held));
    ASSERT_TRUE(finishes(queue_));
    ASSERT_TRUE(ends([&] { queue_.reset(); }));
    EXPECT_TRUE(ended.expired());
}

TEST_P(OperationQueueOfAnyWidth, MayBeLetGoOfInsideItsOwnOperation) {
    Door isAlone;
    Door hasEnded;
    const std::weak_ptr<OperationQueue> watched = queue_;
    const OperationPtr last = operation([&, held = queue_]() mutable {
        EXPECT_TRUE(isAlone.pass());
        held->addOperation(journal_.entry("never"));
        held.reset();
        EXPECT_TRUE(watched.expired());
        EXPECT_EQ(OperationQueue::currentQueue(), nullptr);
        journal_.add("last");
        hasEnded.open();
    });
    // Other threads may take the operation added from inside before the queue goes.
    const bool isInOrder = GetParam() <= 1;
    if (GetParam() == 0) {
        isAlone.open();
        OperationQueue& queue = *queue_;
        queue_.reset();
        queue.addOperation(last);
    } else {
        queue_->addOperation(last);
        queue_.reset();
        isAlone.open();
    }
    ASSERT_TRUE(hasEnded.pass());
    const Names names = journal_.names();
    if (isInOrder) {
        EXPECT_EQ(names, Names{"last"});
    } else {
        EXPECT_EQ(std::count(names.begin(), names.end(), "last"), 1);
    }
}

TEST_P(OperationQueueOfAnyWidth, TakesOperationsFromManyThreads) {
    constexpr int threadCount = 8;
    constexpr int perThread = 500;
    std::atomic<int> runs = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < perThread; ++j) {
                queue_->addOperation(operation([&] { ++runs; }));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(finishes(queue_));
    EXPECT_EQ(runs, threadCount * perThread);
}

TEST_P(OperationQueueOfAnyWidth, CancelReachesTheRunningAndDropsTheWaiting) {
    class Patient : public Operation {
    public:
        void main() override {
            started.open();
            wasCancelledInTime = cancelled.pass();
        }
        void cancel() override {
            Operation::cancel();
            cancelled.open();
        }
        Door started;
        Door cancelled;
        bool wasCancelledInTime = false;
    };
    const auto patient = std::make_shared<Patient>();
    std::thread adding([&] {
        queue_->addOperation(patient);
        if (GetParam() == 1) {
            queue_->addOperation(journal_.entry("waiting"));
        }
    });
    if (GetParam() > 0) {
        adding.join();
    }
    EXPECT_TRUE(patient->started.pass());
    queue_->cancelAllOperations();
    EXPECT_TRUE(finishes(queue_));
    if (adding.joinable()) {
        adding.join();
    }
    EXPECT_TRUE(patient->wasCancelledInTime);
    EXPECT_TRUE(patient->isCancelled());
    EXPECT_EQ(journal_.names(), Names{});
    EXPECT_FALSE(patient->wasSkipped());
    queue_->addOperation(journal_.entry("after"));
    EXPECT_TRUE(finishes(queue_));
    EXPECT_EQ(journal_.names(), Names{"after"});
}

TEST_P(OperationQueueOfAnyWidth, SkipsWhatIsAddedOnceItIsCancelledForGood) {
    const OperationPtr before = journal_.entry("before");
    queue_->addOperation(before);
    EXPECT_TRUE(finishes(queue_));
    queue_->cancel();
    const OperationPtr after = journal_.entry("after");
    queue_->addOperation(after);
    EXPECT_TRUE(finishes(queue_));
    EXPECT_EQ(journal_.names(), Names{"before"});
    EXPECT_FALSE(before->wasSkipped());
    EXPECT_TRUE(after->wasSkipped());
    EXPECT_TRUE(after->isCancelled());
}

// Width 0

TEST(OperationQueueOfWidthZeroTest, RunsOnTheCallersThreadBeforeAddingReturns) {
    const OperationQueuePtr queue = OperationQueue::make(0);
    std::thread::id thread;
    queue->addOperation(operation([&] { thread = std::this_thread::get_id(); }));
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST(OperationQueueOfWidthZeroTest, RunsWhatIsAddedFromInsideRightAfter) {
    const OperationQueuePtr queue = OperationQueue::make(0);
    Journal journal;
    queue->addOperation(operation([&] {
        journal.add("first begins");
        queue->addOperation(operation([&] {
            journal.add("second");
            queue->addOperation(journal.entry("fourth"));
        }));
        queue->addOperation(journal.entry("third"));
        journal.add("first ends");
    }));
    EXPECT_EQ(journal.names(), (Names{"first begins", "first ends", "second", "third", "fourth"}));
}

TEST(OperationQueueOfWidthZeroTest, DropsWhatWasAddedFromInsideWhenCancelled) {
    const OperationQueuePtr queue = OperationQueue::make(0);
    Journal journal;
    const OperationPtr dropped = journal.entry("dropped");
    queue->addOperation(operation([&] {
        queue->addOperation(dropped);
        queue->cancelAllOperations();
        EXPECT_TRUE(dropped->wasSkipped());
        EXPECT_TRUE(dropped->isCancelled());
    }));
    EXPECT_EQ(journal.names(), Names{});
}

TEST(OperationQueueOfWidthZeroTest, NestsInAnotherQueue) {
    const OperationQueuePtr outer = OperationQueue::make(0);
    const OperationQueuePtr inner = OperationQueue::make(0);
    Journal journal;
    const auto nested = [&] {
        outer->addOperation(operation([&] {
            journal.add("outer begins");
            inner->addOperation(operation([&] {
                EXPECT_EQ(OperationQueue::currentQueue(), inner);
                outer->addOperation(journal.entry("added to outer from inner"));
                outer->waitUntilAllOperationsAreFinished();
                inner->addOperation(journal.entry("added to inner"));
                journal.add("inner");
            }));
            EXPECT_EQ(OperationQueue::currentQueue(), outer);
            journal.add("outer ends");
        }));
    };
    ASSERT_TRUE(ends(nested));
    EXPECT_EQ(journal.names(), (Names{"outer begins", "inner", "added to inner", "outer ends",
                                      "added to outer from inner"}));
}

/// Both callers' operations run at once, so neither may leave its own to the other.
TEST(OperationQueueOfWidthZeroTest, RunsEachCallersOperationsOnThatCaller) {
    const OperationQueuePtr queue = OperationQueue::make(0);
    Journal journal;
    Door isRunning;
    Door mayEnd;
    std::thread other([&] {
        queue->addOperation(operation([&] {
            queue->addOperation(journal.entry("other's second"));
            isRunning.open();
            EXPECT_TRUE(mayEnd.pass());
            journal.add("other's first");
        }));
    });
    EXPECT_TRUE(isRunning.pass());
    queue->addOperation(journal.entry("mine"));
    EXPECT_EQ(journal.names(), Names{"mine"});
    mayEnd.open();
    other.join();
    EXPECT_EQ(journal.names(), (Names{"mine", "other's first", "other's second"}));
}

// Width 1

TEST(OperationQueueOfWidthOneTest, RunsInTheOrderOfAdding) {
    const OperationQueuePtr queue = OperationQueue::make(1);
    Journal journal;
    Door mayStart;
    Names expected;
    queue->addOperation(operation([&] {
        EXPECT_TRUE(mayStart.pass());
        queue->addOperation(journal.entry("from inside"));
    }));
    for (int i = 0; i < 100; ++i) {
        expected.push_back(numbered("operation ", i));
        queue->addOperation(journal.entry(expected.back()));
    }
    expected.emplace_back("from inside");
    mayStart.open();
    ASSERT_TRUE(finishes(queue));
    EXPECT_EQ(journal.names(), expected);
}

TEST(OperationQueueOfWidthOneTest, DoesNotRunOnTheCallersThread) {
    const OperationQueuePtr queue = OperationQueue::make(1);
    std::thread::id thread;
    queue->addOperation(operation([&] { thread = std::this_thread::get_id(); }));
    ASSERT_TRUE(finishes(queue));
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_NE(thread, std::thread::id());
}

TEST(OperationQueueOfWidthOneTest, DropsTheWaitingAndAwaitsTheRunningWhenLetGo) {
    OperationQueuePtr queue = OperationQueue::make(1);
    Journal journal;
    Door isRunning;
    Door mayEnd;
    queue->addOperation(operation([&] {
        isRunning.open();
        EXPECT_TRUE(mayEnd.pass());
        journal.add("running");
    }));
    EXPECT_TRUE(isRunning.pass());
    // Waiting operations are dropped before the running one is awaited: this one tells.
    queue->addOperation(operation([&journal, opener = std::shared_ptr<void>(nullptr, [&](void*) {
                                                 mayEnd.open();
                                             })] { journal.add("waiting"); }));
    std::weak_ptr<OperationQueue> watched = queue;
    ASSERT_TRUE(ends([&] {
        queue.reset();
        journal.add("gone");
    }));
    EXPECT_EQ(journal.names(), (Names{"running", "gone"}));
    EXPECT_TRUE(watched.expired());
}

// Wider

TEST(OperationQueueTest, RunsAsManyAtOnceAsItIsWide) {
    constexpr int width = 3;
    const OperationQueuePtr queue = OperationQueue::make(width);
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    Door all;
    for (int i = 0; i < 10 * width; ++i) {
        queue->addOperation(operation([&] {
            const int now = ++running;
            int before = most;
            while (before < now && !most.compare_exchange_weak(before, now)) {
            }
            if (now == width) {
                all.open();
            }
            EXPECT_TRUE(all.pass());
            --running;
        }));
    }
    ASSERT_TRUE(finishes(queue));
    EXPECT_EQ(most, width);
}

} // namespace
} // namespace quen::test
