#include "Tools/Server/Dispatch/WorkProgress.h"

#include <utility>

namespace quen::tools::server {

std::string WorkProgress::text(OrderedJson value) const {
    return notificationText("$/progress",
                            {{"token", OrderedJson(token_)}, {"value", std::move(value)}});
}

void WorkProgress::begin(const std::string& title, const std::stop_token& stop) {
    if (token_.is_null()) {
        return;
    }
    const std::lock_guard lock(mutex_);
    isOpen_ = sink_.send(text({{"kind", "begin"}, {"title", title}, {"cancellable", true}}), stop);
    last_ = std::chrono::steady_clock::now();
}

void WorkProgress::report(const std::string& message, std::size_t items) {
    if (token_.is_null()) {
        return;
    }
    const std::lock_guard lock(mutex_);
    const auto now = std::chrono::steady_clock::now();
    if (isOpen_ && now - last_ >= interval) {
        last_ = now;
        sink_.offer(text({{"kind", "report"}, {"message", message}, {"items", items}}));
    }
}

void WorkProgress::end(const std::string& message) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isOpen_, false)) {
        sink_.send(text({{"kind", "end"}, {"message", message}}), {});
    }
}

} // namespace quen::tools::server
