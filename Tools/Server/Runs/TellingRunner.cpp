#include "Tools/Server/Runs/TellingRunner.h"

#include "Foundation/ShellWord.h"

#include <chrono>
#include <string>

namespace quen::tools::server {

namespace {

/// `svn status --xml '/home/me/my wc': status 0, 12 ms`.
std::string sentenceAbout(const ToolInvocation& invocation, const ToolRun& run,
                          std::chrono::milliseconds time) {
    std::string text = "svn";
    for (const String& argument : invocation.arguments) {
        text += " " + shellWord(argument.view());
    }
    text += ": ";
    if (run.exitStatus) {
        text += "status " + std::to_string(*run.exitStatus);
    } else {
        text += run.signal ? "signal " + std::to_string(*run.signal) : "not started";
    }
    return text + ", " + std::to_string(time.count()) + " ms";
}

} // namespace

ToolRun TellingRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    const auto begin = std::chrono::steady_clock::now();
    runs_.count(invocation.arguments.empty() ? "" : invocation.arguments.front().str());
    ToolRun run = runner_->run(invocation, std::move(stop));
    if (log_.wants(WindowLog::log)) {
        log_.say(WindowLog::log,
                 sentenceAbout(invocation, run,
                               std::chrono::duration_cast<std::chrono::milliseconds>(
                                   std::chrono::steady_clock::now() - begin)));
    }
    return run;
}

} // namespace quen::tools::server
