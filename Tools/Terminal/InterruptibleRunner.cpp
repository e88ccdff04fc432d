#include "Tools/Terminal/InterruptibleRunner.h"

#include "Tools/Terminal/InterruptWatch.h"

namespace quen::tools {

ToolRun InterruptibleRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    std::stop_source either;
    const std::stop_callback forward(std::move(stop), [&] { either.request_stop(); });
    const InterruptWatch::Action action([&] { either.request_stop(); });
    return runner_->run(invocation, either.get_token());
}

} // namespace quen::tools
