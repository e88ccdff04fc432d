#include "Tests/Servers/RunningProgram.h"

#include <optional>

namespace quen::test {

RunningProgram::RunningProgram(const Sandbox& sandbox, const Sandbox::Words& words) {
    Sandbox::Words mortal{"setpriv", "--pdeathsig", "TERM", "--"};
    mortal.insert(mortal.end(), words.begin(), words.end());
    ProcessInvocation invocation = sandbox.invocation(mortal, sandbox.root());
    invocation.totalLimit = std::nullopt;
    outcome_ = std::async(std::launch::async,
                          [this, invocation] { return runProcess(invocation, canceller_); });
}

RunningProgram::~RunningProgram() {
    if (outcome_.valid()) {
        end();
    }
}

bool RunningProgram::endsWithin(std::chrono::milliseconds time) const {
    return outcome_.wait_for(time) == std::future_status::ready;
}

std::string RunningProgram::end() {
    canceller_.cancel();
    const ProcessOutcome outcome = outcome_.get();
    return std::string(outcome.output->bytes()) + std::string(outcome.errors->bytes()) +
           outcome.reason.str();
}

} // namespace quen::test
