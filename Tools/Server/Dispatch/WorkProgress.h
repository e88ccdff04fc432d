#pragma once

#include "Tools/Server/Wire/Message.h"
#include "Tools/Server/Wire/Outbox.h"

#include <chrono>
#include <cstddef>
#include <mutex>
#include <stop_token>
#include <string>

namespace quen::tools::server {

/// Tells a client how a long work goes: begin, reports, end, under the client's own token. Without
/// a token it tells nothing. Reports come at most ten a second; one that comes too early is left
/// out.
///
/// Threads: any.
class WorkProgress {
public:
    static constexpr std::chrono::milliseconds interval{100};

    /// A null token is none.
    WorkProgress(MessageSink& sink, Json token) : sink_(sink), token_(std::move(token)) {}

    void begin(const std::string& title, const std::stop_token& stop);
    void report(const std::string& message, std::size_t items);
    /// Ends what was begun, once.
    void end(const std::string& message);

private:
    std::string text(OrderedJson value) const;

    MessageSink& sink_;
    Json token_;
    std::mutex mutex_;
    std::chrono::steady_clock::time_point last_;
    bool isOpen_ = false;
};

} // namespace quen::tools::server
