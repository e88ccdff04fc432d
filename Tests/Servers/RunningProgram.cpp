#include "Tests/Servers/RunningProgram.h"

#include <optional>

namespace quen::test {

RunningProgram::RunningProgram(const Sandbox& sandbox, const Sandbox::Words& words) {
    Sandbox::Words mortal{"setpriv", "--pdeathsig", "TERM", "--"};
    mortal.insert(mortal.end(), words.begin(), words.end());
    ProcessInvocation invocation = sandbox.invocation(mortal, sandbox.root());
    invocation.limits.total = std::nullopt;
    outcome_ = std::async(std::launch::async,
                          [this, invocation] { return runProcess(invocation, stop_.get_token()); });
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
    stop_.request_stop();
    const ProcessOutcome outcome = outcome_.get();
    return std::string(outcome.output->bytes()) + std::string(outcome.errors->bytes()) +
           outcome.reason.str();
}

} // namespace quen::test
