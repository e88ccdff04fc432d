#include "Host/Process/RunClock.h"

namespace quen {

namespace {

class SteadyClock : public RunClock {
public:
    TimePoint now() const noexcept override { return std::chrono::steady_clock::now(); }
};

} // namespace

const RunClock& RunClock::steady() noexcept {
    static const SteadyClock clock;
    return clock;
}

} // namespace quen
