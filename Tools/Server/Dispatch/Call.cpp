#include "Tools/Server/Dispatch/Call.h"

#include <utility>

namespace quen::tools::server {

Call::Call(Facts facts, MessageSink& sink)
    : facts_(std::move(facts)), sink_(sink), progress_(sink, facts_.workDoneToken) {}

bool Call::begin() {
    {
        const std::lock_guard lock(mutex_);
        if (state_ != State::waiting) {
            return false;
        }
        state_ = State::served;
    }
    progress_.begin(facts_.method, stop());
    return true;
}

void Call::answer(OrderedJson result) {
    std::string text = resultText(facts_.id, result);
    // Many times the size of its text, which may have to wait for a client that reads slowly.
    result = nullptr;
    answerWith(std::move(text), "done");
}

void Call::fail(const ProtocolError& error) {
    answerWith(errorText(facts_.id, error.code, error.what(), error.data),
               error.code == RequestCancelled ? "cancelled" : "failed");
}

void Call::answerWith(std::string text, const std::string& ending) {
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(state_, State::answered) == State::answered) {
            return;
        }
    }
    progress_.end(ending);
    // The answer of a cancelled request arrives all the same.
    sink_.send(std::move(text), {});
}

bool Call::cancel() {
    stop_.request_stop();
    {
        const std::lock_guard lock(mutex_);
        if (state_ != State::waiting) {
            return false;
        }
    }
    fail(requestCancelled(false));
    return true;
}

void Call::throwIfCancelled() const {
    if (stop().stop_requested()) {
        throw requestCancelled(false);
    }
}

void Call::sendPart(const OrderedJson& records) {
    sink_.send(notificationText("$/progress", {{"token", OrderedJson(facts_.partialResultToken)},
                                               {"value", records}}),
               stop());
}

} // namespace quen::tools::server
