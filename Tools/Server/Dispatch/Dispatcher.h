#pragma once

#include "Tools/Server/Dispatch/Method.h"
#include "Tools/Server/Dispatch/WorkLanes.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace quen::tools::server {

/// Serves requests side by side. What changes a working copy waits for what changes the same one,
/// in the order of arrival; everything else goes on beside.
///
/// Threads: any.
class Dispatcher {
public:
    /// So many are served at once; the others wait.
    static constexpr std::size_t width = 128;

    explicit Dispatcher(MessageSink& sink) : sink_(sink) {}
    Dispatcher(const Dispatcher&) = delete;
    Dispatcher& operator=(const Dispatcher&) = delete;
    ~Dispatcher();

    void add(Method method);
    std::vector<std::string> methodNames() const;

    /// Puts something around the serving of each request: `arrive` is called when it has come, on
    /// the reader's thread; what it answers is called with the serving, on the worker's. To be set
    /// before the first request.
    using Around = std::function<void(const std::function<void()>& serving)>;
    void surround(std::function<Around(const Call&)> arrive) { arrive_ = std::move(arrive); }

    /// Serves a request; the answer goes to the sink.
    void serve(const Message& request);
    /// Does work of the server's own on a worker's thread; in its turn where it names a working
    /// copy, at once where the text is empty. `work` must not throw.
    void enqueue(const std::string& workingCopy, std::function<void()> work);

    void cancel(const Json& id);
    /// Cancels everything and waits until it is answered; false when `bound` passes first.
    bool end(std::chrono::milliseconds bound);

    /// Waits until nothing is served or waiting; false when `bound` passes first.
    bool waitUntilIdle(std::chrono::milliseconds bound);
    std::size_t callsInFlight() const;
    /// What the server does of its own: enqueued and not done yet.
    std::size_t ownWork() const;
    /// What the requests took that are not answered yet.
    std::size_t bytesInFlight() const;

private:
    CallPtr admit(const Message& request, Call::Facts facts);
    void prepareAndStart(const Method& method, const Message& request, const CallPtr& call);
    void forget(const CallPtr& call);

    MessageSink& sink_;
    std::map<std::string, Method, std::less<>> methods_;
    std::function<Around(const Call&)> arrive_ = [](const Call&) -> Around {
        return [](const std::function<void()>& serving) { serving(); };
    };
    mutable std::mutex mutex_;
    std::condition_variable isAnswered_;
    struct Admitted {
        CallPtr call;
        std::size_t bytes;
    };
    std::map<std::string, Admitted> calls_;
    std::size_t bytes_ = 0;
    std::size_t ownWork_ = 0;
    bool isEnding_ = false;
    /// By working copy; last, so that no work goes on any more while the rest goes.
    WorkLanes lanes_{width};
};

} // namespace quen::tools::server
