#include "Host/Credentials/SignInRunner.h"

#include "Host/Credentials/HeldOutput.h"
#include "Host/Credentials/SignInSteps.h"
#include "Host/RunContext.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace quen {

namespace {

/// A source that answers without a person could go on for ever.
constexpr int mostAnswers = 10;

/// The secure shell's word that it has taken a host for known, which is what was asked for: without
/// it, a run that has done its work has nothing to complain of.
void dropNoticeOfNewHost(ToolRun& run) {
    constexpr std::string_view notice = "Warning: Permanently added ";
    std::string text(run.errors->bytes());
    const std::size_t at = text.starts_with(notice) ? 0 : text.find("\n" + std::string(notice));
    if (at != std::string::npos) {
        const std::size_t begin = text.starts_with(notice) ? 0 : at + 1;
        text.erase(begin, std::min(text.find('\n', begin), text.size() - 1) - begin + 1);
        run.errors = std::make_shared<Data>(text);
    }
}

ToolRun notStarted(int error) {
    ToolRun run;
    run.end = RunEnd::couldNotStart;
    run.output = run.errors = std::make_shared<Data>();
    run.reason = "no private directory to sign in from: " + std::generic_category().message(error);
    return run;
}

} // namespace

bool mayNeedServer(const StringArray& arguments) {
    constexpr std::array<std::string_view, 11> local{"add",      "cleanup", "revert",     "resolve",
                                                     "resolved", "upgrade", "changelist", "cl",
                                                     "status",   "st",      "--version"};
    if (arguments.empty()) {
        return false;
    }
    const bool asksServer = std::any_of(arguments.begin(), arguments.end(), [](const String& each) {
        return each == "-u" || each == "--show-updates" || each == "-uv" || each == "-vu";
    });
    return asksServer ||
           std::find(local.begin(), local.end(), arguments.front().view()) == local.end();
}

ToolRun SignInRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    if (!mayNeedServer(invocation.arguments)) {
        return runner_->run(invocation, std::move(stop));
    }
    HeldOutput held(invocation.outputWatcher);
    SignInSteps steps(invocation, credentials_, RunContext::current().temporaryDirectory().str(),
                      stop);
    for (int answers = 0;; ++answers) {
        const auto attempt = steps.prepare();
        if (attempt == nullptr) {
            return notStarted(errno);
        }
        ToolInvocation prepared = invocation;
        const EnvironmentChanges changes = attempt->environment();
        prepared.environment.insert(prepared.environment.end(), changes.begin(), changes.end());
        prepared.outputWatcher = held.watcher();
        prepared.uncountedTime = [time = attempt->questionTime()] { return time->soFar(); };
        ToolRun run = runner_->run(prepared, stop);
        if (answers < mostAnswers && steps.isWorthAnotherRun(run, *attempt)) {
            held.drop();
            continue;
        }
        held.release();
        if (attempt->hasAcceptedHostKey()) {
            dropNoticeOfNewHost(run);
        }
        if (steps.failure() && stop.stop_requested()) {
            run.end = RunEnd::cancelled; // while somebody was asked: it would have been made again
        } else {
            run.signInFailure = steps.failure();
        }
        return run;
    }
}

} // namespace quen
