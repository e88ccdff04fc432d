#include "Foundation/Ambient.h"

#include <utility>

namespace quen {

namespace {

/// The scope lies on the thread's stack and owns what is current, so that nothing is left to be
/// destroyed when the thread ends.
thread_local const AmbientScope* innermost; // NOLINT(*-avoid-non-const-global-variables)

} // namespace

AmbientPtr Ambient::current() noexcept {
    return innermost == nullptr ? nullptr : innermost->ambient_;
}

AmbientScope::AmbientScope(AmbientPtr ambient) noexcept
    : ambient_(std::move(ambient)), outer_(innermost) {
    innermost = this;
}

AmbientScope::~AmbientScope() {
    innermost = outer_;
}

} // namespace quen
