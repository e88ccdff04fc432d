#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

namespace quen::tools::server {

/// Where messages go.
class MessageSink {
public:
    MessageSink() = default;
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;
    virtual ~MessageSink() = default;

    /// Hands over one message. Waits while more is on its way than is good, until `stop`. False
    /// where it cannot arrive any more, or the wait was stopped. From any thread.
    virtual bool send(std::string body, const std::stop_token& stop) = 0;

    /// The same for what may be left out (progress, the log): never waits. False where it was left
    /// out because the reader is behind.
    virtual bool offer(std::string body) = 0;
};

/// One writer for all: messages leave whole, one after the other, on a thread of its own.
///
/// A client that reads slowly blocks nobody at first; past `highWater` bytes on their way, who
/// sends waits, so that a run of the client stands still rather than memory grows, and what may be
/// left out is. Work that makes no messages goes on.
class Outbox : public MessageSink {
public:
    static constexpr std::size_t defaultHighWater = std::size_t{16} << 20U;

    /// `write` writes all of a text; false when that is not possible any more.
    using Write = std::function<bool(std::string_view)>;

    explicit Outbox(Write write, std::size_t highWater = defaultHighWater);
    Outbox(const Outbox&) = delete;
    Outbox& operator=(const Outbox&) = delete;
    /// Drops what has not left.
    ~Outbox() override;

    bool send(std::string body, const std::stop_token& stop) override;
    bool offer(std::string body) override;

    /// Waits until everything has left; false when `bound` passes first, or it cannot leave.
    bool flush(std::chrono::milliseconds bound);

    /// Nothing more is written; whoever waits for room is told that nothing can arrive.
    void breakOff();

    std::size_t bytesWaiting() const;

private:
    void work();

    Write write_;
    std::size_t highWater_;
    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<std::string> waiting_;
    std::size_t bytes_ = 0;
    bool isBroken_ = false;
    bool isEnding_ = false;
    std::thread writer_;
};

} // namespace quen::tools::server
