#pragma once

#include "Tools/Server/Wire/Message.h"
#include "Tools/Server/Wire/Outbox.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string_view>

namespace quen::tools::server {

/// What the server asks its client: requests in the other direction.
///
/// Threads: any; whoever asks waits for the answer.
class Questions {
public:
    explicit Questions(MessageSink& sink) : sink_(sink) {}
    Questions(const Questions&) = delete;
    Questions& operator=(const Questions&) = delete;
    ~Questions() = default;

    /// The client's answer; nullopt where it answers with an error, where `stop` comes first, which
    /// the client is told by `$/cancelRequest`, and after `end`.
    std::optional<Json> ask(std::string_view method, const OrderedJson& params,
                            const std::stop_token& stop);

    /// An answer has come in. One that nobody waits for is passed over.
    void take(Message&& response);
    /// Nobody will answer any more.
    void end();

private:
    struct Question {
        bool isAnswered = false;
        std::optional<Json> answer;
    };

    MessageSink& sink_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::map<std::int64_t, Question> open_;
    std::int64_t last_ = 0;
    bool isEnded_ = false;
};

} // namespace quen::tools::server
