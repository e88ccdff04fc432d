#include "Tools/Server/Wire/Outbox.h"

#include <chrono>
#include <condition_variable>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using namespace std::chrono_literals;

/// A reader that takes nothing until it is told to.
class SlowReader {
public:
    Outbox::Write write() {
        return [this](std::string_view /*text*/) {
            std::unique_lock lock(mutex_);
            return changed_.wait_for(lock, 20s, [this] { return reads_; });
        };
    }
    void begin() {
        const std::lock_guard lock(mutex_);
        reads_ = true;
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool reads_ = false;
};

TEST(Outbox, MessagesOfManyThreadsLeaveWhole) {
    std::string written;
    Outbox outbox([&](std::string_view text) {
        written += text;
        return true;
    });
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&outbox, i] {
            for (int j = 0; j < 100; ++j) {
                outbox.send(std::string(50, static_cast<char>('a' + i)), {});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(outbox.flush(10s));
    const std::string header = "Content-Length: 50\r\n\r\n";
    ASSERT_EQ(written.size(), 800 * (header.size() + 50));
    for (std::size_t at = 0; at < written.size(); at += header.size() + 50) {
        ASSERT_EQ(written.substr(at, header.size()), header);
        const std::string body = written.substr(at + header.size(), 50);
        ASSERT_EQ(body, std::string(50, body.front()));
    }
}

class BehindASlowReader : public ::testing::Test {
protected:
    SlowReader reader;
    Outbox outbox{reader.write(), 100};
    std::stop_source stop;
    /// Fills it, and sends more than there is room for.
    std::future<bool> sendTooMuch() {
        EXPECT_TRUE(outbox.send(std::string(90, 'a'), {}));
        return std::async(std::launch::async,
                          [this] { return outbox.send(std::string(90, 'b'), stop.get_token()); });
    }
};

TEST_F(BehindASlowReader, WhoSendsWaits) {
    auto second = sendTooMuch();
    EXPECT_EQ(second.wait_for(100ms), std::future_status::timeout);
    EXPECT_EQ(outbox.bytesWaiting(), 90U);
    reader.begin();
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(outbox.flush(10s));
}

TEST_F(BehindASlowReader, AWaitIsStopped) {
    auto second = sendTooMuch();
    stop.request_stop();
    EXPECT_FALSE(second.get());
    reader.begin();
}

TEST_F(BehindASlowReader, AWaitEndsWhenItIsBrokenOff) {
    auto second = sendTooMuch();
    outbox.breakOff();
    EXPECT_FALSE(second.get());
    reader.begin();
}

TEST_F(BehindASlowReader, WhatMayBeLeftOutIs) {
    EXPECT_TRUE(outbox.offer(std::string(50, 'a')));
    EXPECT_FALSE(outbox.offer(std::string(10, 'b')));
    reader.begin();
    EXPECT_TRUE(outbox.flush(10s));
    EXPECT_TRUE(outbox.offer("c"));
}

TEST(Outbox, AMessageLargerThanTheMarkGoesAlone) {
    std::size_t written = 0;
    Outbox outbox(
        [&](std::string_view text) {
            written += text.size();
            return true;
        },
        100);
    EXPECT_TRUE(outbox.send(std::string(1000, 'a'), {}));
    EXPECT_TRUE(outbox.flush(10s));
    EXPECT_GT(written, 1000U);
}

TEST(Outbox, NobodyWaitsForAReaderThatIsGone) {
    Outbox outbox([](std::string_view) { return false; }, 10);
    outbox.send("a", {});
    EXPECT_FALSE(outbox.flush(10s));
    EXPECT_FALSE(outbox.send("b", {}));
    EXPECT_FALSE(outbox.offer("c"));
}

} // namespace

} // namespace quen::test
