#include "Tools/Server/Dispatch/Questions.h"

#include <utility>

namespace quen::tools::server {

std::optional<Json> Questions::ask(std::string_view method, const OrderedJson& params,
                                   const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    const std::int64_t id = ++last_;
    open_[id];
    lock.unlock();
    const bool isSent = sink_.send(requestText(id, method, params), stop);
    lock.lock();
    if (isSent) {
        changed_.wait(lock, stop, [&] { return isEnded_ || open_.at(id).isAnswered; });
    }
    const bool isGivenUp = isSent && !isEnded_ && !open_.at(id).isAnswered;
    std::optional<Json> answer = std::move(open_.at(id).answer);
    open_.erase(id);
    lock.unlock();
    if (isGivenUp) {
        sink_.offer(notificationText("$/cancelRequest", {{"id", id}}));
    }
    return answer;
}

void Questions::take(Message&& response) {
    const std::lock_guard lock(mutex_);
    const auto question =
        response.id.is_number_integer() ? open_.find(response.id.get<std::int64_t>()) : open_.end();
    if (question == open_.end()) {
        return;
    }
    question->second.isAnswered = true;
    if (response.failure.empty()) {
        question->second.answer = std::move(response.result);
    }
    changed_.notify_all();
}

void Questions::end() {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    changed_.notify_all();
}

} // namespace quen::tools::server
