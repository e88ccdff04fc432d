#pragma once

#include "Tools/Server/Wire/Message.h"
#include "Tools/Server/Wire/Outbox.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quen::test {

using tools::server::Json;

/// Takes the place of the streams: keeps every message that the server sends.
class FakeClient : public tools::server::MessageSink {
public:
    static constexpr std::chrono::seconds bound{20};

    bool send(std::string body, const std::stop_token& /*stop*/) override {
        const std::lock_guard lock(mutex_);
        const Json& message = messages_.emplace_back(Json::parse(body));
        if (!message.contains("method")) {
            answers_.try_emplace(message.at("id").dump(), messages_.size() - 1);
        }
        changed_.notify_all();
        return true;
    }
    bool offer(std::string body) override { return send(std::move(body), {}); }

    std::vector<Json> messages() const {
        const std::lock_guard lock(mutex_);
        return messages_;
    }

    /// The first message for which `fits` holds; nullopt when none came within the bound.
    std::optional<Json> waitFor(const std::function<bool(const Json&)>& fits) const {
        std::unique_lock lock(mutex_);
        auto found = messages_.end();
        changed_.wait_for(lock, bound, [&] {
            found = std::find_if(messages_.begin(), messages_.end(), fits);
            return found != messages_.end();
        });
        return found == messages_.end() ? std::nullopt : std::optional<Json>(*found);
    }

    /// The answer to a request; null when none came within the bound.
    Json answer(const Json& id) const {
        std::unique_lock lock(mutex_);
        auto found = answers_.end();
        changed_.wait_for(lock, bound, [&] {
            found = answers_.find(id.dump());
            return found != answers_.end();
        });
        return found == answers_.end() ? Json() : messages_[found->second];
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<Json> messages_;
    /// Where each answer is among the messages, by its id: a load of requests asks for thousands.
    std::map<std::string, std::size_t> answers_;
};

} // namespace quen::test
