#include "Foundation/RunningHere.h"

#include <utility>

namespace quen {

namespace {

thread_local const RunningHere* top; // NOLINT(*-avoid-non-const-global-variables)

} // namespace

RunningHere::RunningHere(const void* ofState, std::weak_ptr<OperationQueue> ofQueue) noexcept
    : state(ofState), queue(std::move(ofQueue)), outer(top) {
    top = this;
}

RunningHere::~RunningHere() {
    top = outer;
}

const RunningHere* RunningHere::innermost() noexcept {
    return top;
}

const RunningHere* RunningHere::of(const void* state) noexcept {
    const RunningHere* here = top;
    while (here != nullptr && here->state != state) {
        here = here->outer;
    }
    return here;
}

} // namespace quen
