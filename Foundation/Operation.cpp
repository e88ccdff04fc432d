#include "Foundation/Operation.h"

#include <exception>
#include <utility>

namespace quen {

namespace {

/// Whoever throws here has broken a contract; the host must live on all the same.
template <typename Function> void callGuarded(const Function& function) noexcept {
    try {
        function();
    } catch (const std::exception&) {
        // Nothing can be done about it here.
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
}

} // namespace

Operation::Operation() : ambient_(Ambient::current()) {}

Operation::~Operation() = default;

bool Operation::run() noexcept {
    if (isCancelled()) {
        const bool isSkipped = markSkipped();
        if (isSkipped) {
            tellSkipped();
        }
        return isSkipped;
    }
    if (!begin()) {
        return false;
    }
    {
        const AmbientScope scope(ambientToRunIn());
        callGuarded([this] { main(); });
    }
    hasEnded_.store(true);
    tellCompletion();
    return true;
}

void Operation::setCompletion(Completion completion) {
    completion_ = std::move(completion);
}

bool Operation::markSkipped() noexcept {
    if (!begin()) {
        return false;
    }
    wasSkipped_.store(true);
    hasEnded_.store(true);
    return true;
}

void Operation::tellSkipped() noexcept {
    stop_.request_stop();
    tellCompletion();
}

void Operation::tellCompletion() noexcept {
    const AmbientScope scope(ambientToRunIn());
    if (const Completion completion = std::exchange(completion_, nullptr)) {
        callGuarded([&] { completion(*this); });
    }
}

AmbientPtr Operation::ambientToRunIn() const noexcept {
    return ambient_ != nullptr ? ambient_ : Ambient::current();
}

} // namespace quen
