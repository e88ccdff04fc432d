#pragma once

#include "Tools/Server/Dispatch/Dispatcher.h"
#include "Tools/Server/Dispatch/Questions.h"
#include "Tools/Server/Dispatch/WindowLog.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quen::tools::server {

/// The life of a conversation: initialize, initialized, requests, shutdown, exit. It knows JSON-RPC
/// and no method but these; what the server can do is added from outside.
///
/// Threads: `receive` is for one thread at a time; the rest for any.
class Server {
public:
    /// What the client says of itself.
    struct Client {
        std::optional<std::int64_t> processId;
        std::vector<std::string> roots;
        std::string toolsDirectory;
        std::optional<std::chrono::milliseconds> totalLimit;
        std::optional<std::chrono::milliseconds> idleLimit;
        std::optional<std::uint32_t> logLevel;
    };

    enum class Received {
        served,
        /// The text is not JSON, which has been answered.
        notJson,
        /// The conversation is over.
        exit,
    };

    explicit Server(MessageSink& sink)
        : sink_(sink), dispatcher_(sink), log_(sink), questions_(sink) {}

    Dispatcher& dispatcher() noexcept { return dispatcher_; }
    Questions& questions() noexcept { return questions_; }
    WindowLog& log() noexcept { return log_; }
    void add(Notice notice) { notices_.emplace(notice.name, notice); }
    /// What `initialize` answers, and what follows `initialized`.
    void onInitialize(std::function<OrderedJson(const Client&)> answer) {
        onInitialize_ = std::move(answer);
    }
    void onInitialized(std::function<void()> begin) { onInitialized_ = std::move(begin); }

    /// Takes one message in. Never throws for what it holds.
    Received receive(std::string_view body);
    /// Tells of bad framing.
    void tellFault(const std::string& fault);

    /// 0 after `shutdown`, 1 before it.
    int exitStatus() const noexcept { return stage_ == Stage::shutDown ? 0 : 1; }
    /// Called with the process to watch, when the client names one.
    void onParent(std::function<void(std::int64_t)> watch) { onParent_ = std::move(watch); }

    /// Called at the beginning of the end: work that no request asked for must end too.
    void onEnd(std::function<void()> stop) { onEnd_ = std::move(stop); }

    /// Cancels everything and waits for it; false when `bound` passes first.
    bool end(std::chrono::milliseconds bound);

private:
    enum class Stage { fresh, running, shutDown };

    void takeRequest(const Message& request);
    Received takeNotification(const Message& notification);
    void initialize(const Message& request);
    void fail(const Message& request, int code, const std::string& message);

    MessageSink& sink_;
    Dispatcher dispatcher_;
    WindowLog log_;
    Questions questions_;
    std::map<std::string, Notice, std::less<>> notices_;
    std::function<OrderedJson(const Client&)> onInitialize_;
    std::function<void()> onInitialized_;
    std::function<void(std::int64_t)> onParent_;
    std::function<void()> onEnd_;
    Stage stage_ = Stage::fresh;
};

} // namespace quen::tools::server
