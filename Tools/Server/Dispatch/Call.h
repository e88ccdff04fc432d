#pragma once

#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/Dispatch/WorkProgress.h"

#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

namespace quen::tools::server {

/// One request from its arrival to its answer, of which there is exactly one.
///
/// Threads: any.
class Call {
public:
    struct Facts {
        Json id;
        std::string method;
        /// What the client wants progress and parts under; null where it does not.
        Json workDoneToken;
        Json partialResultToken;
        /// The client says that no person asked for it.
        bool isBackground = false;
    };

    Call(Facts facts, MessageSink& sink);
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() = default;

    const Json& id() const noexcept { return facts_.id; }
    const std::string& method() const noexcept { return facts_.method; }
    bool isBackground() const noexcept { return facts_.isBackground; }
    WorkProgress& progress() noexcept { return progress_; }

    /// Whoever serves it begins; false where it has been answered by a cancel meanwhile.
    bool begin();
    /// The answer; the first one counts.
    void answer(OrderedJson result);
    void fail(const ProtocolError& error);

    /// One that waits is answered at once, which is told by true; one that is being served is asked
    /// to end.
    bool cancel();
    std::stop_token stop() const noexcept { return stop_.get_token(); }
    /// Throws the answer of a cancelled request where it is one: for the steps between runs.
    void throwIfCancelled() const;

    /// Whether records are to be sent as they come.
    bool wantsParts() const noexcept { return !facts_.partialResultToken.is_null(); }
    /// Sends records ahead of the answer. Waits for a client that reads slowly.
    void sendPart(const OrderedJson& records);

private:
    enum class State { waiting, served, answered };

    void answerWith(std::string text, const std::string& ending);

    Facts facts_;
    MessageSink& sink_;
    WorkProgress progress_;
    std::stop_source stop_;
    std::mutex mutex_;
    State state_ = State::waiting;
};

using CallPtr = std::shared_ptr<Call>;

} // namespace quen::tools::server
